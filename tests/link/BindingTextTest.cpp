// Tests of the binding text: projections and channel names.
#include "link/GZ_OpHandleLink.h"
#include "link/gz_Binding.h"

#include <gtest/gtest.h>

#include <tuple>

namespace
{

/// The channel name and the four numbers of a binding.
std::tuple<std::string, double, double, double, double> parse(const std::string &text)
{
    std::string channel;
    double a, b, c, d;
    GZ_OpHandleLink::extractProjection(channel, text, a, b, c, d);
    return {channel, a, b, c, d};
}

using P = std::tuple<std::string, double, double, double, double>;

} // namespace

TEST(BindingText, ProjectionFieldsAndChannelName)
{
    EXPECT_EQ(parse("{2,0,0,1,tx}"), (P{"tx", 2, 0, 0, 1}));
    EXPECT_EQ(parse("{0.5, 0, 0, 1 ,  ty  }"), (P{"ty", 0.5, 0, 0, 1}));
    EXPECT_EQ(parse("{ -1e1,\t+3 , 2., .5 ,\n../geo2/rz \t}trailing"),
              (P{"../geo2/rz", -10, 3, 2, 0.5}));
    EXPECT_EQ(parse("{3,0,0,1, scale"), (P{"scale", 3, 0, 0, 1})); // no closing brace
    // A field with a number prefix reads the prefix; hex and words are no numbers.
    EXPECT_EQ(parse("{2x,0x10,inf,1,tz}"), (P{"tz", 2, 0, 0, 1}));

    // Plain names, expressions and text not starting with "{" keep the identity.
    EXPECT_EQ(parse("tx"), (P{"tx", 1, 0, 0, 1}));
    EXPECT_EQ(parse(" {2,0,0,1,tx}"), (P{" {2,0,0,1,tx}", 1, 0, 0, 1}));
    EXPECT_EQ(parse("!3*2"), (P{"!3*2", 1, 0, 0, 1}));
    EXPECT_EQ(parse(""), (P{"", 1, 0, 0, 1}));

    std::string channel;
    GZ_OpHandleLink::extractChannelName(channel, "{2,0,0,1,  ry }");
    EXPECT_EQ(channel, "ry");
}

TEST(BindingText, MalformedProjectionsBecomeTheIdentity)
{
    EXPECT_EQ(parse("{1,1,1,1,tx}"), (P{"tx", 1, 0, 0, 1})); // singular
    EXPECT_EQ(parse("{2,3}"), (P{"", 1, 0, 0, 1}));          // too few fields
    EXPECT_EQ(parse("{a,b,c,d,tx}"), (P{"tx", 1, 0, 0, 1})); // no numbers
    EXPECT_EQ(parse("{}"), (P{"", 1, 0, 0, 1}));

    gz::Projection p{2, 1, 0.5, 3};
    for (double v : {-4.0, -1.0, 0.0, 0.25, 7.0})
        EXPECT_NEAR(p.toParm(p.toHandle(v)), v, 1e-12) << v;
    EXPECT_EQ(gz::Projection().toParm(1.25), 1.25);
    EXPECT_EQ(gz::parseLeadingDecimal("-.5e2x"), -50.0);
    EXPECT_EQ(gz::parseLeadingDecimal("1e"), 1.0);
    EXPECT_EQ(gz::parseLeadingDecimal("."), 0.0);
}
