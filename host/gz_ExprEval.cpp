// gz_ExprEval: evaluates a parsed expression tree against a HostExprContext.
#include "host/gz_ExprEval.h"

#include "host/HostChannelManager.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{
bool isTrue(const HostExprValue &v)
{
    return v.myIsString ? !v.myString.empty() : v.myNumber != 0.0;
}

constexpr double theDegreesToRadians = 3.14159265358979323846 / 180.0;
} // namespace

bool gz_ExprEval::fail(const std::string &message)
{
    if (myError.empty())
        myError = message;
    return false;
}

bool gz_ExprEval::number(double v, HostExprValue &value)
{
    if (std::isnan(v))
        return fail("Result is not a number");
    value = HostExprValue::number(v);
    return true;
}

bool gz_ExprEval::eval(const gz_ExprNode &node, HostExprValue &value)
{
    switch (node.myKind)
    {
    case gz_ExprNode::Kind::Number:
        value = HostExprValue::number(node.myNumber);
        return true;
    case gz_ExprNode::Kind::String:
        value = HostExprValue::string(node.myText);
        return true;
    case gz_ExprNode::Kind::Variable:
        return evalVariable(node, value);
    case gz_ExprNode::Kind::Unary:
        return evalUnary(node, value);
    case gz_ExprNode::Kind::Power:
        return evalPower(node, value);
    case gz_ExprNode::Kind::Chain:
        return evalChain(node, value);
    case gz_ExprNode::Kind::Call:
        return evalCall(node, value);
    }
    return fail("Bad expression");
}

bool gz_ExprEval::evalChain(const gz_ExprNode &node, HostExprValue &value)
{
    HostExprValue acc;
    if (!eval(*node.myArgs[0], acc))
        return false;
    for (size_t i = 0; i < node.myOps.size(); ++i)
    {
        const std::string &op = node.myOps[i];
        // && and || do not evaluate their right side when the left decides.
        if ((op == "&&" && !isTrue(acc)) || (op == "||" && isTrue(acc)))
        {
            acc = HostExprValue::number(op == "||" ? 1.0 : 0.0);
            continue;
        }
        HostExprValue rhs;
        if (!eval(*node.myArgs[i + 1], rhs))
            return false;
        HostExprValue result;
        if (!applyBinary(op, acc, rhs, result))
            return false;
        acc = std::move(result);
    }
    value = std::move(acc);
    return true;
}

bool gz_ExprEval::applyBinary(const std::string &op, const HostExprValue &lhs,
                              const HostExprValue &rhs, HostExprValue &value)
{
    const bool strings = lhs.myIsString && rhs.myIsString;
    if (op == "+" && (lhs.myIsString || rhs.myIsString))
    {
        value = HostExprValue::string(lhs.toString() + rhs.toString());
        return true;
    }
    if (op == "&&" || op == "||")
        return number(isTrue(rhs) ? 1.0 : 0.0, value);
    if (op == "==" || op == "!=" || op == "<" || op == ">" || op == "<=" || op == ">=")
    {
        int cmp;
        if (strings)
            cmp = lhs.myString.compare(rhs.myString);
        else
        {
            const double a = lhs.toNumber(), b = rhs.toNumber();
            cmp = a < b ? -1 : (a > b ? 1 : 0);
        }
        bool result = op == "=="   ? cmp == 0
                      : op == "!=" ? cmp != 0
                      : op == "<"  ? cmp < 0
                      : op == ">"  ? cmp > 0
                      : op == "<=" ? cmp <= 0
                                   : cmp >= 0;
        return number(result ? 1.0 : 0.0, value);
    }
    const double a = lhs.toNumber(), b = rhs.toNumber();
    if (op == "+")
        return number(a + b, value);
    if (op == "-")
        return number(a - b, value);
    if (op == "*")
        return number(a * b, value);
    if (b == 0.0)
        return fail("Division by zero");
    if (op == "/")
        return number(a / b, value);
    return number(std::fmod(a, b), value);
}

bool gz_ExprEval::evalUnary(const gz_ExprNode &node, HostExprValue &value)
{
    HostExprValue operand;
    if (!eval(*node.myArgs[0], operand))
        return false;
    if (node.myText == "!")
        return number(isTrue(operand) ? 0.0 : 1.0, value);
    const double v = operand.toNumber();
    return number(node.myText == "-" ? -v : v, value);
}

bool gz_ExprEval::evalPower(const gz_ExprNode &node, HostExprValue &value)
{
    HostExprValue base, exponent;
    if (!eval(*node.myArgs[0], base) || !eval(*node.myArgs[1], exponent))
        return false;
    return number(std::pow(base.toNumber(), exponent.toNumber()), value);
}

bool gz_ExprEval::evalVariable(const gz_ExprNode &node, HostExprValue &value)
{
    const HostChannelManager &manager = HostChannelManager::get();
    const double t = myContext.getTime();
    if (node.myText == "T")
        return number(t, value);
    if (node.myText == "FF")
        return number(manager.timeToFrame(t), value);
    if (node.myText == "F")
        return number(std::round(manager.timeToFrame(t)), value);
    if (node.myText == "FPS")
        return number(manager.getFramesPerSecond(), value);
    return fail("Unknown variable: $" + node.myText);
}

bool gz_ExprEval::evalChannel(const gz_ExprNode &node, bool asString, HostExprValue &value)
{
    HostExprValue path;
    if (!eval(*node.myArgs[0], path))
        return false;
    std::string error;
    if (!myContext.evaluateChannel(path.toString(), asString, value, error))
        return fail(error.empty() ? "Bad channel: " + path.toString() : error);
    if (asString && !value.myIsString)
        value = HostExprValue::string(value.toString());
    if (!asString && value.myIsString)
        value = HostExprValue::number(value.toNumber());
    return true;
}

bool gz_ExprEval::evalCall(const gz_ExprNode &node, HostExprValue &value)
{
    const std::string &name = node.myText;
    const size_t argc = node.myArgs.size();
    auto wrongCount = [&]() { return fail("Wrong number of arguments to " + name + "()"); };

    if (name == "ch" || name == "chs")
    {
        if (argc != 1)
            return wrongCount();
        return evalChannel(node, name == "chs", value);
    }

    std::vector<HostExprValue> args(argc);
    for (size_t i = 0; i < argc; ++i)
    {
        if (!eval(*node.myArgs[i], args[i]))
            return false;
    }
    auto num = [&](size_t i) { return args[i].toNumber(); };

    struct Unary
    {
        const char *myName;
        double (*myFunc)(double);
    };
    static const Unary theUnary[] = {
        {"abs", [](double x) { return std::fabs(x); }},
        {"ceil", [](double x) { return std::ceil(x); }},
        {"floor", [](double x) { return std::floor(x); }},
        {"round", [](double x) { return std::round(x); }},
        {"int", [](double x) { return std::trunc(x); }},
        {"sqrt", [](double x) { return std::sqrt(x); }},
        {"sin", [](double x) { return std::sin(x * theDegreesToRadians); }},
        {"cos", [](double x) { return std::cos(x * theDegreesToRadians); }},
        {"tan", [](double x) { return std::tan(x * theDegreesToRadians); }},
        {"atof", [](double x) { return x; }},
    };
    for (const Unary &f : theUnary)
    {
        if (name != f.myName)
            continue;
        if (argc != 1)
            return wrongCount();
        return number(f.myFunc(num(0)), value);
    }
    if (name == "strlen")
    {
        if (argc != 1)
            return wrongCount();
        return number(static_cast<double>(args[0].toString().size()), value);
    }
    if (name == "min" || name == "max")
    {
        if (argc == 0)
            return wrongCount();
        double result = num(0);
        for (size_t i = 1; i < argc; ++i)
            result = name == "min" ? std::min(result, num(i)) : std::max(result, num(i));
        return number(result, value);
    }
    if (name == "clamp")
    {
        if (argc != 3)
            return wrongCount();
        return number(std::min(std::max(num(0), num(1)), num(2)), value);
    }
    return fail("Unknown function: " + name + "()");
}
