// HostDialogStream: tokens, comments, includes and error reports of dialog scripts.
#include "host/HostDialogStream.h"

#include "host/HostDiagnostics.h"
#include "host/HostDialogQuote.h"
#include "host/HostReader.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

/// One text being read: a file or a string, with its position.
struct HostDialogStream::Source
{
    std::string myName;
    std::string myText;
    std::size_t myPos = 0;
    int myLine = 1;
    bool myLineStart = true; ///< only blanks since the last newline
};

namespace
{
bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}
bool isSingle(char c)
{
    return c == '{' || c == '}' || c == '[' || c == ']';
}
bool isText(unsigned char c)
{
    return c >= 0x20 || c == '\t' || c == '\n' || c == '\r';
}

std::string dirOf(const std::string &path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

bool isFile(const std::string &path)
{
    std::error_code ec;
    return std::filesystem::is_regular_file(path, ec);
}

bool readWhole(const std::string &path, std::string &text, bool &too_large)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return false;
    in.seekg(0, std::ios::end);
    const std::streamoff size = in.tellg();
    too_large = size > static_cast<std::streamoff>(HostDialogStream::MAX_FILE_BYTES);
    if (size < 0 || too_large)
        return false;
    in.seekg(0);
    text.assign(static_cast<std::size_t>(size), '\0');
    in.read(&text[0], size);
    return static_cast<bool>(in) || size == 0;
}
} // namespace

HostDialogStream::HostDialogStream() = default;
HostDialogStream::~HostDialogStream() = default;

bool HostDialogStream::openFile(const std::string &path, int option)
{
    mySources.clear();
    myOption = option;
    myFileName = path;
    return pushFile(path, (option & OPTIONAL) != 0);
}

void HostDialogStream::openString(const std::string &text, const std::string &name, int option)
{
    mySources.clear();
    myOption = option;
    myFileName = name;
    auto src = std::make_unique<Source>();
    src->myName = name;
    src->myText = text;
    mySources.push_back(std::move(src));
}

bool HostDialogStream::pushFile(const std::string &name, bool optional)
{
    std::string path = name;
    if (!isFile(path))
    {
        bool found = false;
        // Beside the including file, then on the include path, then on the search path.
        std::vector<std::string> dirs;
        if (!mySources.empty() && name.empty() == false && name[0] != '/')
            dirs.push_back(dirOf(mySources.back()->myName));
        for (const std::string &d : myIncludePath)
            dirs.push_back(d.empty() || d.back() == '/' ? d : d + '/');
        for (const std::string &d : dirs)
        {
            if (d.empty())
                continue;
            if (isFile(d + name))
            {
                path = d + name;
                found = true;
                break;
            }
        }
        if (!found && !HostReader::findFile(name, path))
        {
            if (!optional)
                error("Unable to open \"" + name + "\"");
            return false;
        }
    }
    auto src = std::make_unique<Source>();
    bool too_large = false;
    if (!readWhole(path, src->myText, too_large))
    {
        if (too_large)
            error("\"" + name + "\" is too large to be a dialog script");
        else if (!optional)
            error("Unable to read \"" + name + "\"");
        return false;
    }
    src->myName = path;
    mySources.push_back(std::move(src));
    return true;
}

void HostDialogStream::report(bool is_error, const std::string &file, int line,
                              const std::string &message)
{
    HostDiagnostics::report(is_error ? HostDiagSeverity::Error : HostDiagSeverity::Warning, file,
                            line, message);
}

void HostDialogStream::error(const std::string &message)
{
    if (myStopped)
        return;
    report(/*is_error=*/true, getFileName(), getLine(), message);
    if (++myErrors >= MAX_ERRORS)
    {
        report(/*is_error=*/true, getFileName(), getLine(), "Too many errors; reading stopped");
        myStopped = true;
    }
}

void HostDialogStream::warning(const std::string &message)
{
    if (!myStopped)
        report(/*is_error=*/false, getFileName(), getLine(), message);
}

const std::string &HostDialogStream::getFileName() const
{
    return myFileName;
}

int HostDialogStream::getLine() const
{
    return myLine;
}

void HostDialogStream::directive(const std::string &line)
{
    // "#include FILE" (FILE quoted or bare); any other "#" line is a comment.
    if ((myOption & INCLUDES) == 0 || line.compare(0, 8, "#include") != 0 ||
        (line.size() > 8 && !isBlank(line[8]) && line[8] != '"'))
        return;
    std::string name = line.substr(8);
    const std::size_t b = name.find_first_not_of(" \t\r");
    const std::size_t e = name.find_last_not_of(" \t\r");
    name = b == std::string::npos ? std::string() : name.substr(b, e - b + 1);
    if (name.size() >= 2 && name.front() == '"' && name.back() == '"')
        name = HostDialogQuote::unescape(name.substr(1, name.size() - 2));
    if (name.empty())
    {
        error("#include without a file name");
        return;
    }
    if (static_cast<int>(mySources.size()) > MAX_INCLUDE_DEPTH)
    {
        error("#include nested too deeply");
        return;
    }
    pushFile(name, /*optional=*/false);
}

bool HostDialogStream::skipBlanksAndComments()
{
    while (!mySources.empty() && !myStopped)
    {
        Source &s = *mySources.back();
        if (s.myPos >= s.myText.size())
        {
            if (mySources.size() == 1)
                return false;
            mySources.pop_back();
            continue;
        }
        const char c = s.myText[s.myPos];
        if (isBlank(c))
        {
            if (c == '\n')
            {
                ++s.myLine;
                s.myLineStart = true;
            }
            ++s.myPos;
            continue;
        }
        if (c == '#' && s.myLineStart)
        {
            std::size_t end = s.myText.find('\n', s.myPos);
            if (end == std::string::npos)
                end = s.myText.size();
            const std::string line = s.myText.substr(s.myPos, end - s.myPos);
            s.myPos = end;
            myFileName = s.myName;
            myLine = s.myLine;
            directive(line);
            continue;
        }
        if (!isText(static_cast<unsigned char>(c)))
        {
            myFileName = s.myName;
            myLine = s.myLine;
            ++s.myPos;
            char buf[48];
            std::snprintf(buf, sizeof buf, "Unexpected byte 0x%02x", static_cast<unsigned char>(c));
            error(buf);
            continue;
        }
        return true;
    }
    return false;
}

bool HostDialogStream::readToken(std::string &token, bool &quoted, int &line, std::size_t &start)
{
    token.clear();
    quoted = false;
    if (!skipBlanksAndComments())
        return false;
    Source &s = *mySources.back();
    start = s.myPos;
    s.myLineStart = false;
    myFileName = s.myName;
    line = s.myLine;
    const std::string &t = s.myText;
    if (isSingle(t[s.myPos]))
    {
        token = t[s.myPos++];
        return true;
    }
    if (t[s.myPos] != '"')
    {
        const std::size_t b = s.myPos;
        while (s.myPos < t.size() && !isBlank(t[s.myPos]) && !isSingle(t[s.myPos]) &&
               t[s.myPos] != '"' && isText(static_cast<unsigned char>(t[s.myPos])))
            ++s.myPos;
        token = t.substr(b, s.myPos - b);
        return true;
    }
    quoted = true;
    const std::size_t b = ++s.myPos;
    while (s.myPos < t.size() && t[s.myPos] != '"')
    {
        if (t[s.myPos] == '\\' && s.myPos + 1 < t.size())
            ++s.myPos;
        if (t[s.myPos] == '\n')
            ++s.myLine;
        ++s.myPos;
    }
    if (s.myPos >= t.size())
    {
        myLine = line;
        error("Unterminated string");
    }
    token = HostDialogQuote::unescape(t.substr(b, s.myPos - b));
    if (s.myPos < t.size())
        ++s.myPos;
    return true;
}

bool HostDialogStream::fill()
{
    if (myHasPeek)
        return true;
    const std::string file = myFileName;
    const int line = myLine;
    myHasPeek = readToken(myPeek, myPeekQuoted, myPeekLine, myPeekStart);
    myPeekDepth = mySources.size();
    myPeekFile = myFileName;
    // Peeking must not move the position that messages report.
    myFileName = file;
    myLine = line;
    return myHasPeek;
}

bool HostDialogStream::getToken(std::string &token, bool *quoted)
{
    if (!fill())
        return false;
    myHasPeek = false;
    token.swap(myPeek);
    if (quoted)
        *quoted = myPeekQuoted;
    myFileName = myPeekFile;
    myLine = myPeekLine;
    return true;
}

bool HostDialogStream::peekToken(std::string &token, bool *quoted)
{
    if (!fill())
        return false;
    token = myPeek;
    if (quoted)
        *quoted = myPeekQuoted;
    return true;
}

bool HostDialogStream::atEnd()
{
    return !fill();
}

bool HostDialogStream::nextOnSameLine()
{
    return fill() && myPeekFile == myFileName && myPeekLine == myLine;
}

std::string HostDialogStream::getRestOfLine()
{
    std::string rest;
    if (myHasPeek)
    {
        // A token peeked on a later line stays; one on this line is read again as raw text.
        if (!(myPeekFile == myFileName && myPeekLine == myLine) || myPeekDepth != mySources.size())
            return rest;
        myHasPeek = false;
        mySources.back()->myPos = myPeekStart;
        mySources.back()->myLine = myPeekLine;
    }
    if (mySources.empty())
        return rest;
    Source &s = *mySources.back();
    std::size_t end = s.myText.find('\n', s.myPos);
    if (end == std::string::npos)
        end = s.myText.size();
    rest += s.myText.substr(s.myPos, end - s.myPos);
    s.myPos = end;
    const std::size_t b = rest.find_first_not_of(" \t\r");
    const std::size_t e = rest.find_last_not_of(" \t\r");
    return b == std::string::npos ? std::string() : rest.substr(b, e - b + 1);
}

void HostDialogStream::skipBlock()
{
    int depth = 1;
    std::string token;
    bool quoted = false;
    while (depth > 0 && getToken(token, &quoted))
    {
        if (quoted)
            continue;
        if (token == "{")
            ++depth;
        else if (token == "}")
            --depth;
    }
}
