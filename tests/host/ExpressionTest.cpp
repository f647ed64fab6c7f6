// Tests of HostExpression: results, errors, channel references and recursion limits.
#include "host/HostChannelManager.h"
#include "host/HostExpression.h"

#include <gtest/gtest.h>

#include <map>

namespace
{
/// Channels are named texts holding expressions; ch() evaluates them recursively.
class MapContext : public HostExprContext
{
public:
    explicit MapContext(double time = 0.0) : myTime(time) {}
    double getTime() const override { return myTime; }
    bool evaluateChannel(const std::string &path, bool, HostExprValue &value,
                         std::string &error) const override
    {
        auto it = myChannels.find(path);
        if (it == myChannels.end())
        {
            error = "Bad channel: " + path;
            return false;
        }
        return HostExpression(it->second).evaluate(*this, value, error);
    }

    double myTime;
    std::map<std::string, std::string> myChannels;
};

double num(const std::string &text, const HostExprContext &context)
{
    std::string error;
    HostExprValue value;
    EXPECT_TRUE(HostExpression(text).evaluate(context, value, error)) << text << ": " << error;
    return value.toNumber();
}

std::string str(const std::string &text, const HostExprContext &context)
{
    std::string error;
    std::string result = HostExpression(text).evaluateString(context, error);
    EXPECT_EQ(error, "") << text;
    return result;
}

std::string errorOf(const std::string &text, const HostExprContext &context)
{
    std::string error;
    HostExprValue value;
    EXPECT_FALSE(HostExpression(text).evaluate(context, value, error)) << text;
    EXPECT_FALSE(value.myIsString);
    EXPECT_EQ(value.myNumber, 0.0);
    return error;
}
} // namespace

TEST(HostExpressionEval, ArithmeticPrecedenceAndComparisons)
{
    MapContext context;
    EXPECT_EQ(num("1 + 2 * 3", context), 7.0);
    EXPECT_EQ(num("(1 + 2) * 3", context), 9.0);
    EXPECT_EQ(num("10 - 4 - 3", context), 3.0);
    EXPECT_EQ(num("2 ^ 3 ^ 2", context), 512.0);
    EXPECT_EQ(std::tuple(num("-2 ^ 2", context), num("2 ^ -1", context)), std::tuple(-4.0, 0.5));
    EXPECT_EQ(std::tuple(num("7 % 3", context), num("1.5e1 / .5", context)), std::tuple(1.0, 30.0));
    EXPECT_EQ(num("--3", context), 3.0);
    EXPECT_EQ(num("3 > 2 && 2 >= 2 && 1 != 2 && !(1 == 2)", context), 1.0);
    EXPECT_EQ(num("1 < 0 || 0", context), 0.0);
    EXPECT_EQ(num("\"abc\" < \"abd\"", context), 1.0);
    EXPECT_EQ(num("\"10\" < 9", context), 0.0); // mixed: compared as numbers
    EXPECT_EQ(num("max(1, 5, 3) + min(4, -2) + clamp(9, 0, 2) + abs(-1)", context), 6.0);
    EXPECT_NEAR(num("sin(90) + cos(0)", context), 2.0, 1e-12);
    EXPECT_EQ(num("int(-2.7) + floor(-2.5) + round(2.5)", context), -2.0);
}

TEST(HostExpressionEval, StringsAndNumberText)
{
    MapContext context;
    EXPECT_EQ(str("'a' + \"b\" + 1.5", context), "ab1.5");
    EXPECT_EQ(str("\"say \\\"hi\\\"\"", context), "say \"hi\"");
    EXPECT_EQ(str("0.1 + 0.2", context), "0.30000000000000004");
    EXPECT_EQ(std::tuple(str("1/4", context), str("-0", context)), std::tuple("0.25", "0"));
    EXPECT_EQ(str("1e21", context), "1e+21");
    EXPECT_EQ(num("strlen(\"four\") + atof(\" 2.5 \")", context), 6.5);
    EXPECT_EQ(HostExprValue::string("12abc").toNumber(), 0.0);

    const std::string tricky = "a\"b\\c\nd";
    EXPECT_EQ(str(HostExpression::quoteString(tricky), context), tricky);
}

TEST(HostExpressionEval, TimeVariables)
{
    HostChannelManager::get().reset();
    MapContext context(1.5);
    EXPECT_EQ(std::tuple(num("$T", context), num("$FF", context)), std::tuple(1.5, 37.0));
    EXPECT_EQ(std::tuple(num("$F", context), num("$FPS", context)), std::tuple(37.0, 24.0));
    MapContext between(0.02);
    EXPECT_EQ(num("$F", between), 1.0);
    EXPECT_NEAR(num("$FF", between), 1.48, 1e-12);
}

TEST(HostExpressionEval, ErrorsYieldZeroAndAMessage)
{
    MapContext context;
    EXPECT_EQ(errorOf("1 +", context), "Syntax error: unexpected end of expression");
    EXPECT_EQ(errorOf("(1", context), "Syntax error: unexpected end of expression");
    EXPECT_EQ(errorOf("1 2", context), "Syntax error: unexpected '2'");
    EXPECT_EQ(errorOf("1 # 2", context), "Syntax error: unexpected character '#'");
    EXPECT_EQ(errorOf("\"open", context), "Syntax error: unterminated string");
    EXPECT_EQ(errorOf("foo", context), "Syntax error: 'foo' is not a function call");
    EXPECT_EQ(errorOf("foo(1)", context), "Unknown function: foo()");
    EXPECT_EQ(errorOf("$NOPE + 1", context), "Unknown variable: $NOPE");
    EXPECT_EQ(errorOf("1 / (2 - 2)", context), "Division by zero");
    EXPECT_EQ(errorOf("5 % 0", context), "Division by zero");
    EXPECT_EQ(errorOf("sqrt(-1)", context), "Result is not a number");
    EXPECT_EQ(errorOf("ch(\"a\", 2)", context), "Wrong number of arguments to ch()");
    EXPECT_EQ(errorOf("ch(\"missing\")", context), "Bad channel: missing");
    EXPECT_EQ(errorOf("", context), "Syntax error: unexpected end of expression");

    // Short-circuit: the failing right side is never evaluated.
    EXPECT_EQ(std::tuple(num("0 && 1/0", context), num("1 || 1/0", context)), std::tuple(0.0, 1.0));

    std::string error;
    EXPECT_EQ(HostExpression("1/0").evaluateString(context, error), "");
    EXPECT_EQ(error, "Division by zero");
}

TEST(HostExpressionEval, NestingAndRecursionAreBounded)
{
    MapContext context;
    std::string deep(HostExpression::theMaxNesting, '(');
    deep += "1" + std::string(HostExpression::theMaxNesting, ')');
    EXPECT_EQ(num(deep, context), 1.0);

    std::string tooDeep(100000, '(');
    EXPECT_EQ(errorOf(tooDeep + "1" + std::string(100000, ')'), context),
              "Expression nested too deeply");
    EXPECT_EQ(errorOf(std::string(100000, '-') + "1", context), "Expression nested too deeply");

    std::string longSum = "0";
    for (int i = 0; i < 100000; ++i)
        longSum += "+1";
    EXPECT_EQ(num(longSum, context), 100000.0);

    context.myChannels["a"] = "ch(\"b\") + 1";
    context.myChannels["b"] = "ch(\"a\") + 1";
    context.myChannels["self"] = "chs(\"self\")";
    context.myChannels["c"] = "ch(\"d\") * 2";
    context.myChannels["d"] = "\"21\"";
    EXPECT_EQ(errorOf("ch(\"a\")", context), "Expression recursion too deep");
    EXPECT_EQ(errorOf("chs(\"self\")", context), "Expression recursion too deep");
    EXPECT_EQ(num("ch(\"c\")", context), 42.0);
    // The deepest parse inside the deepest chain of ch() calls still fits the stack.
    const int depth = 120;
    context.myChannels["deep"] = std::string(depth, '(') + "ch(\"deep\")" + std::string(depth, ')');
    EXPECT_EQ(errorOf(context.myChannels["deep"], context), "Expression recursion too deep");

    // After a failed deep evaluation the nesting count is back to zero.
    EXPECT_EQ(num(deep, context), 1.0);
}

TEST(HostExpressionReference, OnlyASingleChCallWithALiteralPath)
{
    std::string path;
    EXPECT_TRUE(HostExpression("ch(\"../geo1/tx\")").getChannelReference(path));
    EXPECT_EQ(path, "../geo1/tx");
    EXPECT_TRUE(HostExpression(" chs( '/obj/geo1/file' ) ").getChannelReference(path));
    EXPECT_EQ(path, "/obj/geo1/file");
    EXPECT_FALSE(HostExpression("ch(\"tx\") + 1").getChannelReference(path));
    EXPECT_FALSE(HostExpression("-ch(\"tx\")").getChannelReference(path));
    EXPECT_FALSE(HostExpression("ch(\"t\" + \"x\")").getChannelReference(path));
    EXPECT_FALSE(HostExpression("abs(\"tx\")").getChannelReference(path));
    EXPECT_FALSE(HostExpression("ch(\"tx\"").getChannelReference(path));
}
