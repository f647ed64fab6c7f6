// HostPreprocessor: directives, comments, includes and token reading.
#include "host/HostPreprocessor.h"

#include "host/HostDiagnostics.h"
#include "host/HostText.h"

#include <cctype>
#include <fstream>
#include <sstream>

namespace
{
// Deep enough for any sane configuration; stops circular includes.
constexpr size_t theMaxIncludeDepth = 32;

bool isIdentStart(char c)
{
    return std::isalpha(static_cast<unsigned char>(c)) || c == '_';
}
bool isIdentChar(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}
std::string trim(const std::string &s)
{
    size_t b = 0, e = s.size();
    while (b < e && HostText::isBlank(s[b]))
        ++b;
    while (e > b && HostText::isBlank(s[e - 1]))
        --e;
    return s.substr(b, e - b);
}

std::string directoryOf(const std::string &path)
{
    size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

bool fileReadable(const std::string &path)
{
    std::ifstream in(path);
    return static_cast<bool>(in);
}

// Recursive-descent evaluator of #if expressions: integers, identifiers (their macro value,
// 0 when undefined), defined(NAME) / defined NAME, !, &&, ||, ==, !=, <, >, <=, >= and
// parentheses.
class ConditionParser
{
public:
    ConditionParser(const std::string &text, const std::map<std::string, std::string> &macros)
        : myText(text), myMacros(macros)
    {
    }

    long parse(bool &ok)
    {
        long value = parseOr(0);
        skipBlanks();
        ok = !myFailed && myPos == myText.size();
        return value;
    }

private:
    static constexpr int theMaxDepth = 64;

    void skipBlanks()
    {
        while (myPos < myText.size() && HostText::isBlank(myText[myPos]))
            ++myPos;
    }
    bool accept(const char *op)
    {
        skipBlanks();
        size_t n = std::char_traits<char>::length(op);
        if (myText.compare(myPos, n, op) != 0)
            return false;
        myPos += n;
        return true;
    }
    long parseOr(int depth)
    {
        long v = parseAnd(depth);
        while (!myFailed && accept("||"))
            v = parseAnd(depth) || v;
        return v;
    }
    long parseAnd(int depth)
    {
        long v = parseCompare(depth);
        while (!myFailed && accept("&&"))
            v = parseCompare(depth) && v;
        return v;
    }
    long parseCompare(int depth)
    {
        long v = parseUnary(depth);
        for (;;)
        {
            if (accept("=="))
                v = v == parseUnary(depth);
            else if (accept("!="))
                v = v != parseUnary(depth);
            else if (accept("<="))
                v = v <= parseUnary(depth);
            else if (accept(">="))
                v = v >= parseUnary(depth);
            else if (accept("<"))
                v = v < parseUnary(depth);
            else if (accept(">"))
                v = v > parseUnary(depth);
            else
                return v;
        }
    }
    long parseUnary(int depth)
    {
        if (depth > theMaxDepth)
            return fail();
        if (accept("!"))
            return !parseUnary(depth + 1);
        if (accept("("))
        {
            long v = parseOr(depth + 1);
            if (!accept(")"))
                return fail();
            return v;
        }
        return parsePrimary();
    }
    long parsePrimary()
    {
        skipBlanks();
        if (myPos < myText.size() && std::isdigit(static_cast<unsigned char>(myText[myPos])))
            return parseNumber(myText.substr(myPos), &myPos);
        std::string name = identifier();
        if (name.empty())
            return fail();
        if (name != "defined")
        {
            auto it = myMacros.find(name);
            return it == myMacros.end() ? 0 : parseNumber(it->second, nullptr);
        }
        bool paren = accept("(");
        skipBlanks();
        std::string macro = identifier();
        if (macro.empty() || (paren && !accept(")")))
            return fail();
        return myMacros.count(macro) ? 1 : 0;
    }
    std::string identifier()
    {
        size_t b = myPos;
        if (myPos < myText.size() && isIdentStart(myText[myPos]))
            while (myPos < myText.size() && isIdentChar(myText[myPos]))
                ++myPos;
        return myText.substr(b, myPos - b);
    }
    // Leading decimal digits only; a macro whose value is not a number counts as 0.
    long parseNumber(const std::string &s, size_t *advance)
    {
        size_t i = 0;
        long v = 0;
        while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i])))
        {
            if (v < 100000000000L)
                v = v * 10 + (s[i] - '0');
            ++i;
        }
        if (advance)
            *advance += i;
        return v;
    }
    long fail()
    {
        myFailed = true;
        return 0;
    }

    const std::string &myText;
    const std::map<std::string, std::string> &myMacros;
    size_t myPos = 0;
    bool myFailed = false;
};
} // namespace

struct HostPreprocessor::Source
{
    std::string path;
    std::unique_ptr<std::istream> in;
    int line = 0;
};

HostPreprocessor::HostPreprocessor() = default;
HostPreprocessor::~HostPreprocessor() = default;

bool HostPreprocessor::open(const std::string &path, const std::vector<std::string> &options)
{
    auto file = std::make_unique<std::ifstream>(path);
    if (!*file)
        return false;
    openText("", path, options);
    myStack.back()->in = std::move(file);
    return true;
}

void HostPreprocessor::openText(const std::string &text, const std::string &name,
                                const std::vector<std::string> &options)
{
    myStack.clear();
    myConditionals.clear();
    myPushedBack.clear();
    myInBlockComment = false;
    myHaveTokenLine = false;
    myExpandMacros = false;
    myPassHashLines = false;
    for (const std::string &option : options)
    {
        if (option == "-x")
            myExpandMacros = true;
        else if (option == "-P")
            myPassHashLines = true;
    }
    auto source = std::make_unique<Source>();
    source->path = name;
    source->in = std::make_unique<std::istringstream>(text);
    myStack.push_back(std::move(source));
}

bool HostPreprocessor::readRawLine(std::string &line, std::string &file, int &number)
{
    while (!myStack.empty())
    {
        Source &top = *myStack.back();
        if (std::getline(*top.in, line))
        {
            ++top.line;
            file = top.path;
            number = top.line;
            return true;
        }
        myStack.pop_back();
    }
    return false;
}

void HostPreprocessor::directiveProblem(const std::string &file, int number,
                                        const std::string &message)
{
    // The directive's line becomes the current location, as a delivered line's would.
    myFileName = file;
    myLineNumber = number;
    reportProblem(file, number, message);
}

void HostPreprocessor::reportProblem(const std::string &file, int number,
                                     const std::string &message) const
{
    if (myProblemHandler)
        myProblemHandler(file, number, message);
    else
        HostDiagnostics::report(HostDiagSeverity::Error, file, number, message);
}

bool HostPreprocessor::getLine(std::string &line)
{
    skipRestOfLine();
    return nextLine(line);
}

bool HostPreprocessor::nextLine(std::string &line)
{
    if (!myPushedBack.empty())
    {
        line = myPushedBack.back();
        myPushedBack.pop_back();
        return true;
    }
    std::string raw, file;
    int number = 0;
    while (readRawLine(raw, file, number))
    {
        bool startsInComment = myInBlockComment;
        std::string text = stripComments(raw);
        std::string trimmed = trim(text);
        if (!startsInComment && !trimmed.empty() && trimmed[0] == '#')
        {
            std::string emitted;
            if (handleDirective(trimmed, file, number, emitted))
            {
                myFileName = file;
                myLineNumber = number;
                line = emitted;
                return true;
            }
            continue;
        }
        if (!active())
            continue;
        myFileName = file;
        myLineNumber = number;
        line = myExpandMacros ? expandMacros(text) : text;
        return true;
    }
    if (!myConditionals.empty())
    {
        // Report each unbalanced conditional once, at the line that opened it.
        Conditional open = myConditionals.back();
        myConditionals.clear();
        reportProblem(open.file, open.line, "missing #endif");
    }
    return false;
}

void HostPreprocessor::ungetLine(const std::string &line)
{
    myPushedBack.push_back(line);
}

std::string HostPreprocessor::stripComments(const std::string &line)
{
    std::string out;
    out.reserve(line.size());
    char quote = 0;
    for (size_t i = 0; i < line.size(); ++i)
    {
        char c = line[i];
        if (myInBlockComment)
        {
            if (c == '*' && i + 1 < line.size() && line[i + 1] == '/')
            {
                myInBlockComment = false;
                ++i;
                out += ' ';
            }
            continue;
        }
        if (quote)
        {
            out += c;
            if (c == '\\' && i + 1 < line.size())
                out += line[++i];
            else if (c == quote)
                quote = 0;
            continue;
        }
        if (c == '"' || c == '\'')
            quote = c;
        else if (c == '/' && i + 1 < line.size() && line[i + 1] == '/')
            break;
        else if (c == '/' && i + 1 < line.size() && line[i + 1] == '*')
        {
            myInBlockComment = true;
            ++i;
            continue;
        }
        out += c;
    }
    return out;
}

bool HostPreprocessor::handleDirective(const std::string &line, const std::string &file, int number,
                                       std::string &emitted)
{
    size_t pos = 1;
    while (pos < line.size() && HostText::isBlank(line[pos]))
        ++pos;
    size_t end = pos;
    while (end < line.size() && isIdentChar(line[end]))
        ++end;
    const std::string word = line.substr(pos, end - pos);
    const std::string rest = trim(line.substr(end));

    if (word == "ifdef" || word == "ifndef" || word == "if")
    {
        bool parent = active();
        bool value = false;
        bool ok = true;
        if (word == "if")
            value = evaluateCondition(rest, ok);
        else
            value = isDefined(rest) == (word == "ifdef");
        myConditionals.push_back({parent, parent && value, value, false, number, file});
        if (!ok && parent)
            directiveProblem(file, number, "bad #if expression: " + rest);
        return false;
    }
    if (word == "elif" || word == "else" || word == "endif")
    {
        if (myConditionals.empty())
        {
            directiveProblem(file, number, "#" + word + " without #if");
            return false;
        }
        Conditional &c = myConditionals.back();
        if (word == "endif")
        {
            myConditionals.pop_back();
            return false;
        }
        if (c.sawElse)
        {
            directiveProblem(file, number, "#" + word + " after #else");
            return false;
        }
        bool value = true, ok = true;
        if (word == "elif")
            value = evaluateCondition(rest, ok);
        else
            c.sawElse = true;
        c.active = c.parentActive && !c.anyTaken && value;
        c.anyTaken = c.anyTaken || value;
        return false;
    }
    if (!active())
        return false;
    if (word == "define")
    {
        size_t n = 0;
        while (n < rest.size() && isIdentChar(rest[n]))
            ++n;
        if (n == 0)
        {
            directiveProblem(file, number, "#define without a name");
            return false;
        }
        myMacros[rest.substr(0, n)] = trim(rest.substr(n));
        return false;
    }
    if (word == "undef")
    {
        myMacros.erase(rest);
        return false;
    }
    if (word == "include")
    {
        pushInclude(rest, file, number);
        return false;
    }
    if (word == "error")
    {
        // Located like the preprocessor's own problems, so the message says where it stands.
        directiveProblem(file, number, rest.empty() ? "#error" : rest);
        return false;
    }
    if (myPassHashLines)
    {
        emitted = myExpandMacros ? expandMacros(line) : line;
        return true;
    }
    directiveProblem(file, number, "unknown directive: " + line);
    return false;
}

void HostPreprocessor::pushInclude(const std::string &included, const std::string &file, int number)
{
    std::string name = included;
    if (name.size() >= 2 && ((name.front() == '"' && name.back() == '"') ||
                             (name.front() == '<' && name.back() == '>')))
        name = name.substr(1, name.size() - 2);
    if (name.empty())
    {
        directiveProblem(file, number, "#include without a file name");
        return;
    }
    if (myStack.size() >= theMaxIncludeDepth)
    {
        directiveProblem(file, number, "includes nested too deeply: " + name);
        return;
    }
    std::string path = resolveInclude(name, file);
    auto in = path.empty() ? nullptr : std::make_unique<std::ifstream>(path);
    if (!in || !*in)
    {
        directiveProblem(file, number, "cannot open include file \"" + name + "\"");
        return;
    }
    auto source = std::make_unique<Source>();
    source->path = path;
    source->in = std::move(in);
    myStack.push_back(std::move(source));
}

std::string HostPreprocessor::resolveInclude(const std::string &name, const std::string &from) const
{
    if (!name.empty() && name[0] == '/')
        return fileReadable(name) ? name : std::string();
    std::string dir = directoryOf(from);
    std::string beside = dir.empty() ? name : dir + "/" + name;
    if (fileReadable(beside))
        return beside;
    for (const std::string &d : mySearchPath)
    {
        std::string candidate = d + "/" + name;
        if (fileReadable(candidate))
            return candidate;
    }
    return std::string();
}

std::string HostPreprocessor::expandMacros(const std::string &line) const
{
    if (myMacros.empty())
        return line;
    std::string out;
    char quote = 0;
    for (size_t i = 0; i < line.size();)
    {
        char c = line[i];
        if (quote)
        {
            out += c;
            if (c == '\\' && i + 1 < line.size())
                out += line[++i];
            else if (c == quote)
                quote = 0;
            ++i;
            continue;
        }
        if (c == '"' || c == '\'')
        {
            quote = c;
            out += c;
            ++i;
            continue;
        }
        if (!isIdentStart(c))
        {
            out += c;
            ++i;
            continue;
        }
        size_t end = i;
        while (end < line.size() && isIdentChar(line[end]))
            ++end;
        std::string word = line.substr(i, end - i);
        auto it = myMacros.find(word);
        // One level of substitution: a macro's value is not expanded again, so a macro
        // defined in terms of itself cannot loop.
        out += it == myMacros.end() ? word : it->second;
        i = end;
    }
    return out;
}

bool HostPreprocessor::evaluateCondition(const std::string &expr, bool &ok) const
{
    ConditionParser parser(expr, myMacros);
    return parser.parse(ok) != 0 && ok;
}

bool HostPreprocessor::fillTokenLine()
{
    while (!myHaveTokenLine || myTokenPos >= myTokenLine.size() || atLineEnd())
    {
        if (!nextLine(myTokenLine))
        {
            myHaveTokenLine = false;
            return false;
        }
        myHaveTokenLine = true;
        myTokenPos = 0;
    }
    return true;
}

bool HostPreprocessor::atLineEnd()
{
    if (!myHaveTokenLine)
        return true;
    while (myTokenPos < myTokenLine.size() && HostText::isBlank(myTokenLine[myTokenPos]))
        ++myTokenPos;
    return myTokenPos >= myTokenLine.size();
}

bool HostPreprocessor::getLineToken(std::string &token, bool *quoted)
{
    if (atLineEnd())
        return false;
    token.clear();
    char c = myTokenLine[myTokenPos];
    bool isQuoted = (c == '"' || c == '\'');
    if (quoted)
        *quoted = isQuoted;
    if (!isQuoted)
    {
        while (myTokenPos < myTokenLine.size() && !HostText::isBlank(myTokenLine[myTokenPos]))
            token += myTokenLine[myTokenPos++];
        return true;
    }
    ++myTokenPos;
    while (myTokenPos < myTokenLine.size() && myTokenLine[myTokenPos] != c)
    {
        if (myTokenLine[myTokenPos] == '\\' && myTokenPos + 1 < myTokenLine.size())
            ++myTokenPos;
        token += myTokenLine[myTokenPos++];
    }
    if (myTokenPos < myTokenLine.size())
        ++myTokenPos; // closing quote; an unterminated string ends with its line
    return true;
}

bool HostPreprocessor::getToken(std::string &token, bool *quoted)
{
    if (!fillTokenLine())
        return false;
    return getLineToken(token, quoted);
}

void HostPreprocessor::skipRestOfLine()
{
    myHaveTokenLine = false;
    myTokenPos = 0;
}

std::string HostPreprocessor::restOfLine()
{
    if (!myHaveTokenLine)
        return std::string();
    std::string rest = myTokenPos < myTokenLine.size() ? myTokenLine.substr(myTokenPos) : "";
    skipRestOfLine();
    return rest;
}
