// HostCommandParser: the command-language tokenizer and the protected-string writer.
#include "host/HostCommandParser.h"
#include "host/HostText.h"

#include <ostream>
#include <sstream>
#include <utility>

namespace
{
bool isNameStart(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool isNameChar(char c)
{
    return isNameStart(c) || (c >= '0' && c <= '9');
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
} // namespace

HostCommandParser::HostCommandParser(std::string text, int first_line, VariableLookup variables)
    : myText(std::move(text)), myLine(first_line), myVariables(std::move(variables))
{
}

// Reads from just after an opening single quote; false when there is no closing quote.
bool HostCommandParser::readSingleQuoted(std::string &word)
{
    size_t close = myText.find('\'', myPos);
    if (close == std::string::npos)
        return false;
    for (size_t i = myPos; i < close; ++i)
        if (myText[i] == '\n')
            ++myLine;
    word.append(myText, myPos, close - myPos);
    myPos = close + 1;
    return true;
}

// Reads from just after an opening double quote; false when there is no closing quote.
bool HostCommandParser::readDoubleQuoted(std::string &word)
{
    const size_t end = myText.size();
    while (myPos < end)
    {
        char c = myText[myPos];
        if (c == '"')
        {
            ++myPos;
            return true;
        }
        if (c == '\\' && myPos + 1 < end && (myText[myPos + 1] == '"' || myText[myPos + 1] == '$'))
        {
            word += myText[myPos + 1];
            myPos += 2;
            continue;
        }
        if (c == '$')
        {
            expandVariable(word);
            continue;
        }
        if (c == '\n')
            ++myLine;
        word += c;
        ++myPos;
    }
    return false;
}

std::string HostCommandParser::expandVariables(const std::string &text, VariableLookup variables)
{
    HostCommandParser parser(text, 1, std::move(variables));
    std::string out;
    while (parser.myPos < parser.myText.size())
    {
        if (parser.myText[parser.myPos] == '$')
            parser.expandVariable(out);
        else
            out += parser.myText[parser.myPos++];
    }
    return out;
}

// At a '$': appends the value of $NAME or ${NAME}, or the text as written when the name is
// not set or the '$' starts no name.
void HostCommandParser::expandVariable(std::string &word)
{
    const size_t end = myText.size();
    size_t start = myPos + 1;
    bool braced = start < end && myText[start] == '{';
    if (braced)
        ++start;
    size_t stop = start;
    if (stop < end && isNameStart(myText[stop]))
        while (stop < end && isNameChar(myText[stop]))
            ++stop;
    bool named = stop > start && (!braced || (stop < end && myText[stop] == '}'));
    if (!named)
    {
        word += '$';
        ++myPos;
        return;
    }
    size_t after = braced ? stop + 1 : stop;
    const std::string *value =
        myVariables ? myVariables(myText.substr(start, stop - start)) : nullptr;
    if (value)
        word += *value;
    else
        word.append(myText, myPos, after - myPos);
    myPos = after;
}

void HostCommandParser::failUnterminated(HostParsedCommand &cmd, char quote, int quote_line)
{
    cmd.words.clear();
    cmd.line = quote_line;
    cmd.error = quote == '"' ? "unterminated double quote" : "unterminated single quote";
    // The caller resumes on the line after the one that opened the quote, so one bad line
    // costs only that line.
    myLine = quote_line + 1;
}

bool HostCommandParser::next(HostParsedCommand &cmd)
{
    cmd.words.clear();
    // Room for most commands at once: undo replays scripts of many short commands, and
    // growing the list word by word cost more allocations than the words themselves.
    if (cmd.words.capacity() == 0)
        cmd.words.reserve(8);
    cmd.error.clear();
    cmd.line = myLine;

    const size_t end = myText.size();
    std::string word;
    bool in_word = false;
    bool quoted = false;

    auto finish_word = [&]()
    {
        if (in_word && (quoted || !word.empty()))
            cmd.words.push_back({word, quoted});
        word.clear();
        in_word = false;
        quoted = false;
    };

    while (myPos < end)
    {
        char c = myText[myPos];
        if (!in_word)
        {
            if (HostText::isBlank(c))
            {
                ++myPos;
                continue;
            }
            if (c == '\n' || c == ';')
            {
                ++myPos;
                if (c == '\n')
                    ++myLine;
                if (!cmd.words.empty())
                    return true;
                cmd.line = myLine;
                continue;
            }
            if (c == '#')
            {
                while (myPos < end && myText[myPos] != '\n')
                    ++myPos;
                continue;
            }
            if (c == '\\' && myPos + 1 < end && myText[myPos + 1] == '\n')
            {
                myPos += 2;
                ++myLine;
                continue;
            }
            if (cmd.words.empty())
                cmd.line = myLine;
            in_word = true;
        }

        if (HostText::isBlank(c) || c == '\n' || c == ';')
        {
            finish_word();
            continue;
        }
        if (c == '\\')
        {
            if (myPos + 1 >= end)
            {
                word += '\\';
                ++myPos;
                continue;
            }
            char escaped = myText[myPos + 1];
            myPos += 2;
            if (escaped == '\n')
            {
                ++myLine;
                continue;
            }
            word += escaped;
            quoted = true;
            continue;
        }
        if (c == '\'' || c == '"')
        {
            size_t quote_pos = myPos;
            int quote_line = myLine;
            ++myPos;
            bool closed = c == '\'' ? readSingleQuoted(word) : readDoubleQuoted(word);
            if (!closed)
            {
                size_t resume = myText.find('\n', quote_pos);
                myPos = resume == std::string::npos ? end : resume + 1;
                failUnterminated(cmd, c, quote_line);
                return true;
            }
            quoted = true;
            continue;
        }
        if (c == '$')
        {
            expandVariable(word);
            continue;
        }
        word += c;
        ++myPos;
    }
    finish_word();
    return !cmd.words.empty();
}

bool HostCommandParser::needsMoreLines(const std::string &text)
{
    bool word_start = true;
    for (size_t i = 0; i < text.size(); ++i)
    {
        const char c = text[i];
        if (c == '#' && word_start)
        {
            i = text.find('\n', i);
            if (i == std::string::npos)
                return false;
            continue;
        }
        word_start = HostText::isBlank(c) || c == '\n' || c == ';';
        if (c == '\\')
        {
            if (++i == text.size())
                return true;
        }
        else if (c == '\'')
        {
            i = text.find('\'', i + 1);
            if (i == std::string::npos)
                return true;
        }
        else if (c == '"')
        {
            for (++i; i < text.size() && text[i] != '"'; ++i)
                if (text[i] == '\\' && i + 1 < text.size() &&
                    (text[i + 1] == '"' || text[i + 1] == '$'))
                    ++i;
            if (i >= text.size())
                return true;
        }
    }
    return false;
}

bool HostCommandParser::isPlainWord(const std::string &text)
{
    if (text.empty() || text[0] == '#')
        return false;
    if (text[0] == '-' && text.size() >= 2 && (isLetter(text[1]) || text == "--"))
        return false;
    for (char ch : text)
    {
        unsigned char c = static_cast<unsigned char>(ch);
        if (c <= ' ' || c == 0x7f)
            return false;
        if (c == ';' || c == '"' || c == '\'' || c == '\\' || c == '$')
            return false;
    }
    return true;
}

void HostCommandParser::protect(std::ostream &os, const std::string &text)
{
    if (isPlainWord(text))
    {
        os << text;
        return;
    }
    if (text.find('\'') == std::string::npos)
    {
        os << '\'' << text << '\'';
        return;
    }
    protectQuoted(os, text);
}

void HostCommandParser::protectQuoted(std::ostream &os, const std::string &text)
{
    // Double quotes: only '"' and '$' need a backslash. A backslash right before the closing
    // quote would escape it, so trailing backslashes are written after the quotes.
    size_t body = text.size();
    while (body > 0 && text[body - 1] == '\\')
        --body;
    os << '"';
    for (size_t i = 0; i < body; ++i)
    {
        if (text[i] == '"' || text[i] == '$')
            os << '\\';
        os << text[i];
    }
    os << '"';
    for (size_t i = body; i < text.size(); ++i)
        os << "\\\\";
}

std::string HostCommandParser::protect(const std::string &text)
{
    std::ostringstream os;
    protect(os, text);
    return os.str();
}
