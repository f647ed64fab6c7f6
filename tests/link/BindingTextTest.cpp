// Tests of the binding text: projections and channel names.
#include "link/GZ_OpHandleLink.h"
#include "link/gz_Binding.h"

#include <gtest/gtest.h>

namespace
{

struct Parsed
{
    std::string channel;
    double a, b, c, d;
};

Parsed parse(const std::string &text)
{
    Parsed p;
    GZ_OpHandleLink::extractProjection(p.channel, text, p.a, p.b, p.c, p.d);
    return p;
}

void expectIdentity(const Parsed &p)
{
    EXPECT_EQ(p.a, 1.0);
    EXPECT_EQ(p.b, 0.0);
    EXPECT_EQ(p.c, 0.0);
    EXPECT_EQ(p.d, 1.0);
}

} // namespace

TEST(BindingText, ProjectionFieldsAndChannelName)
{
    Parsed p = parse("{2,0,0,1,tx}");
    EXPECT_EQ(p.channel, "tx");
    EXPECT_EQ(p.a, 2.0);
    EXPECT_EQ(p.d, 1.0);

    p = parse("{0.5, 0, 0, 1 ,  ty  }");
    EXPECT_EQ(p.channel, "ty");
    EXPECT_EQ(p.a, 0.5);

    p = parse("{ -1e1,\t+3 , 2., .5 ,\n../geo2/rz \t}trailing");
    EXPECT_EQ(p.channel, "../geo2/rz");
    EXPECT_EQ(p.a, -10.0);
    EXPECT_EQ(p.b, 3.0);
    EXPECT_EQ(p.c, 2.0);
    EXPECT_EQ(p.d, 0.5);

    // Without a closing brace the rest of the text is the body.
    p = parse("{3,0,0,1, scale");
    EXPECT_EQ(p.channel, "scale");
    EXPECT_EQ(p.a, 3.0);
}

TEST(BindingText, PlainNamesAndExpressionsKeepTheIdentity)
{
    Parsed p = parse("tx");
    EXPECT_EQ(p.channel, "tx");
    expectIdentity(p);

    p = parse(" {2,0,0,1,tx}"); // only a leading brace makes a projection
    EXPECT_EQ(p.channel, " {2,0,0,1,tx}");
    expectIdentity(p);

    p = parse("!3*2");
    EXPECT_EQ(p.channel, "!3*2");
    expectIdentity(p);

    p = parse("");
    EXPECT_EQ(p.channel, "");
    expectIdentity(p);
}

TEST(BindingText, MalformedProjectionsBecomeTheIdentity)
{
    // Singular mappings cannot be inverted.
    Parsed p = parse("{1,1,1,1,tx}");
    EXPECT_EQ(p.channel, "tx");
    expectIdentity(p);

    // Too few fields: the missing numbers are 0 and the name is empty.
    p = parse("{2,3}");
    EXPECT_EQ(p.channel, "");
    expectIdentity(p);

    // Fields that are no numbers read as 0.
    p = parse("{a,b,c,d,tx}");
    EXPECT_EQ(p.channel, "tx");
    expectIdentity(p);

    // A field with a number prefix reads the prefix; hex and words are not numbers.
    p = parse("{2x,0x10,inf,1,tz}");
    EXPECT_EQ(p.channel, "tz");
    EXPECT_EQ(p.a, 2.0);
    EXPECT_EQ(p.b, 0.0);
    EXPECT_EQ(p.c, 0.0);
    EXPECT_EQ(p.d, 1.0);

    p = parse("{}");
    EXPECT_EQ(p.channel, "");
    expectIdentity(p);

    std::string channel;
    GZ_OpHandleLink::extractChannelName(channel, "{2,0,0,1,  ry }");
    EXPECT_EQ(channel, "ry");
}

TEST(BindingText, MappingAndItsInverse)
{
    gz::Projection p;
    p.a = 2;
    p.b = 1;
    p.c = 0.5;
    p.d = 3;
    for (double v : {-4.0, -1.0, 0.0, 0.25, 7.0})
        EXPECT_NEAR(p.toParm(p.toHandle(v)), v, 1e-12) << v;
    gz::Projection identity;
    EXPECT_EQ(identity.toParm(1.25), 1.25);
    EXPECT_EQ(identity.toHandle(-3.5), -3.5);
    EXPECT_EQ(gz::parseLeadingDecimal("-.5e2x"), -50.0);
    EXPECT_EQ(gz::parseLeadingDecimal("1e"), 1.0);
    EXPECT_EQ(gz::parseLeadingDecimal("."), 0.0);
}
