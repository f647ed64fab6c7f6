// Fuzz target: expression text through the lexer, parser and evaluator, with a context whose
// channels are more expressions (so ch() recursion is exercised too).
#include "host/HostExpression.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace
{
/// Every channel path names the fuzzed text itself, so ch() recurses until the limit stops it.
class SelfContext : public HostExprContext
{
public:
    explicit SelfContext(const std::string &text) : myText(text) {}
    double getTime() const override { return 0.5; }
    bool evaluateChannel(const std::string &path, bool, HostExprValue &value,
                         std::string &error) const override
    {
        if (path.size() % 2 == 0)
        {
            error = "Bad channel: " + path;
            return false;
        }
        return HostExpression(myText).evaluate(*this, value, error);
    }

private:
    const std::string &myText;
};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    HostExpression expr(text);
    SelfContext context(text);
    HostExprValue value;
    std::string error;
    const bool ok = expr.evaluate(context, value, error);
    if (!ok && (value.myIsString || value.myNumber != 0.0 || error.empty()))
        __builtin_trap(); // a failure must give 0 and a message
    std::string path;
    expr.getChannelReference(path);
    // A quoted string reads back as itself.
    HostExprTimeContext time(0.0);
    if (HostExpression(HostExpression::quoteString(text)).evaluateString(time, error) != text)
        __builtin_trap();
    return 0;
}
