// HostExpression: a parsed expression of the host's expression language and its evaluator.
#include "host/HostExpression.h"

#include "host/gz_ExprEval.h"
#include "host/gz_ExprParser.h"

#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace
{
thread_local int theNesting = 0;

/// Counts one level of nested evaluation on this thread.
class NestingGuard
{
public:
    NestingGuard() { ++theNesting; }
    ~NestingGuard() { --theNesting; }
    bool tooDeep() const { return theNesting > HostExpression::theMaxNesting; }
};
} // namespace

double HostExprValue::toNumber() const
{
    if (!myIsString)
        return myNumber;
    const char *start = myString.c_str();
    char *end = nullptr;
    errno = 0;
    const double v = std::strtod(start, &end);
    if (end == start)
        return 0.0;
    while (*end && std::isspace(static_cast<unsigned char>(*end)))
        ++end;
    if (*end != '\0' || std::isnan(v))
        return 0.0;
    return v;
}

std::string HostExprValue::toString() const
{
    return myIsString ? myString : HostExpression::formatNumber(myNumber);
}

bool HostExprTimeContext::evaluateChannel(const std::string &path, bool, HostExprValue &,
                                          std::string &error) const
{
    error = "No channel context for " + path;
    return false;
}

HostExpression::HostExpression(std::string text) : myText(std::move(text))
{
    parse();
}

HostExpression::HostExpression(const HostExpression &other) : myText(other.myText)
{
    parse();
}

HostExpression &HostExpression::operator=(const HostExpression &other)
{
    if (this != &other)
    {
        myText = other.myText;
        parse();
    }
    return *this;
}

HostExpression::~HostExpression() = default;

void HostExpression::parse()
{
    myParseError.clear();
    gz_ExprParser parser(myText);
    myRoot = parser.parse(myParseError);
}

bool HostExpression::evaluate(const HostExprContext &context, HostExprValue &value,
                              std::string &error) const
{
    value = HostExprValue();
    if (!myRoot)
    {
        error = myParseError;
        return false;
    }
    NestingGuard guard;
    if (guard.tooDeep())
    {
        error = "Expression recursion too deep";
        return false;
    }
    gz_ExprEval evaluator(context);
    HostExprValue result;
    if (!evaluator.eval(*myRoot, result))
    {
        error = evaluator.getError();
        return false;
    }
    value = std::move(result);
    return true;
}

double HostExpression::evaluateNumber(const HostExprContext &context, std::string &error) const
{
    HostExprValue value;
    if (!evaluate(context, value, error))
        return 0.0;
    return value.toNumber();
}

std::string HostExpression::evaluateString(const HostExprContext &context, std::string &error) const
{
    HostExprValue value;
    if (!evaluate(context, value, error))
        return std::string();
    return value.toString();
}

bool HostExpression::getChannelReference(std::string &path) const
{
    if (!myRoot || myRoot->myKind != gz_ExprNode::Kind::Call)
        return false;
    if (myRoot->myText != "ch" && myRoot->myText != "chs")
        return false;
    if (myRoot->myArgs.size() != 1 || myRoot->myArgs[0]->myKind != gz_ExprNode::Kind::String)
        return false;
    path = myRoot->myArgs[0]->myText;
    return true;
}

std::string HostExpression::formatNumber(double value)
{
    if (value == 0.0)
        return "0"; // also for -0, which would otherwise print as "-0"
    char buf[40];
    for (int precision = 1; precision <= 17; ++precision)
    {
        std::snprintf(buf, sizeof buf, "%.*g", precision, value);
        if (std::strtod(buf, nullptr) == value)
            break;
    }
    return buf;
}

const char *HostExpression::meaningName(int meaning)
{
    switch (meaning)
    {
    case 0:
        return "";
    case 1:
        return "expr";
    case 2:
        return "python";
    default:
        return "";
    }
}

int HostExpression::meaningFromName(const std::string &name)
{
    if (name.empty())
        return 0;
    if (name == "expr")
        return 1;
    if (name == "python")
        return 2;
    return -1;
}

std::string HostExpression::quoteString(const std::string &text)
{
    std::string quoted = "\"";
    for (char c : text)
    {
        if (c == '"' || c == '\\')
            quoted += '\\';
        if (c == '\n')
        {
            quoted += "\\n";
            continue;
        }
        if (c == '\t')
        {
            quoted += "\\t";
            continue;
        }
        quoted += c;
    }
    quoted += '"';
    return quoted;
}
