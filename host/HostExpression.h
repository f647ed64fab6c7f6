// HostExpression: a parsed expression of the host's expression language and its evaluator.
#pragma once

#include <memory>
#include <string>

struct gz_ExprNode;

/// The value of an expression: a number or a string.
struct HostExprValue
{
    bool myIsString = false;
    double myNumber = 0.0;
    std::string myString;

    static HostExprValue number(double v)
    {
        HostExprValue value;
        value.myNumber = v;
        return value;
    }
    static HostExprValue string(std::string s)
    {
        HostExprValue value;
        value.myIsString = true;
        value.myString = std::move(s);
        return value;
    }

    /// As a number: a string that reads whole as a number gives that number, others 0.
    double toNumber() const;
    /// As text: numbers are written in their shortest exact form ("0.5", "3", "1e+20").
    std::string toString() const;
};

/// What an expression needs from where it is evaluated: the time and the channels.
class HostExprContext
{
public:
    virtual ~HostExprContext() = default;

    /// The evaluation time in seconds.
    virtual double getTime() const = 0;
    /// The value of the channel that `path` names ("tx", "../geo1/tx", "/obj/geo1/tx"),
    /// relative to the node that owns the expression; as a string for chs(). Returns false
    /// with `error` set when the path names no channel or its evaluation failed.
    virtual bool evaluateChannel(const std::string &path, bool asString, HostExprValue &value,
                                 std::string &error) const = 0;
};

/// A context with a fixed time and no channels: ch() and chs() fail.
class HostExprTimeContext : public HostExprContext
{
public:
    explicit HostExprTimeContext(double time) : myTime(time) {}
    double getTime() const override { return myTime; }
    bool evaluateChannel(const std::string &path, bool asString, HostExprValue &value,
                         std::string &error) const override;

private:
    double myTime;
};

/// An expression of the host's expression language, parsed once and evaluated on demand.
///
/// The language: numbers, single- or double-quoted strings, + - * / % ^ (power), unary
/// minus, plus and "!", comparisons (== != < > <= >=, on strings when both sides are
/// strings), && and ||, parentheses, the variables $T (time in seconds), $F (frame, rounded
/// to a whole number), $FF (frame with its fraction) and $FPS, and the functions ch(path),
/// chs(path), abs, ceil, floor, round, int, sqrt, sin, cos, tan (degrees), min, max, clamp,
/// strlen and atof. "+" joins when either side is a string.
///
/// Evaluation never throws and never crashes: an error (a syntax error, an unknown name, a
/// division by zero, a missing channel, nesting or ch() recursion too deep) yields 0 or ""
/// and a message. Nested evaluations (an expression reading a channel whose value is another
/// expression) are limited to theMaxNesting per thread, which stops ch() cycles.
///
/// Owns its parse tree; copying re-parses. Parsing is linear in the text length.
class HostExpression
{
public:
    static constexpr int theMaxNesting = 32;

    explicit HostExpression(std::string text = std::string());
    HostExpression(const HostExpression &other);
    HostExpression &operator=(const HostExpression &other);
    ~HostExpression();

    const std::string &getText() const { return myText; }
    /// Whether the text parsed; when not, getParseError() says why.
    bool isValid() const { return myRoot != nullptr; }
    const std::string &getParseError() const { return myParseError; }

    /// Evaluate; on failure `value` is 0 (or "" when `asString`) and `error` is set.
    bool evaluate(const HostExprContext &context, HostExprValue &value, std::string &error) const;
    double evaluateNumber(const HostExprContext &context, std::string &error) const;
    std::string evaluateString(const HostExprContext &context, std::string &error) const;

    /// When the whole expression is a single ch("path") (or chs("path")) call with a string
    /// literal argument, sets `path` and returns true: the component is a channel reference.
    bool getChannelReference(std::string &path) const;

    /// The number as expressions and values print it: the shortest text that reads back to
    /// the same double.
    static std::string formatNumber(double value);
    /// The host's name of a string meaning: "" for a plain value, "expr" for this language,
    /// "python" for the scripting language; and back (unknown names give -1).
    static const char *meaningName(int meaning);
    static int meaningFromName(const std::string &name);
    /// Quote a text as an expression string literal that reads back to the same text.
    static std::string quoteString(const std::string &text);

private:
    void parse();

    std::string myText;
    std::unique_ptr<gz_ExprNode> myRoot;
    std::string myParseError;
};
