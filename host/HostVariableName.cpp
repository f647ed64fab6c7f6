// HostVariableName: validity, forcing, encoding and decoding of variable names.
#include "host/HostVariableName.h"

#include <cstring>

namespace
{
const char PREFIX[] = "xn__";
const std::size_t PREFIX_LEN = 4;

bool isAlpha(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}
bool isExtra(char c, const char *extra)
{
    return extra && c && std::strchr(extra, c);
}
bool isNameChar(char c, const char *extra)
{
    return isAlpha(c) || isDigit(c) || c == '_' || isExtra(c, extra);
}

int hexValue(char c)
{
    if (isDigit(c))
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}
} // namespace

bool HostVariableName::isValid(const std::string &name, const char *extra)
{
    if (name.empty() || isDigit(name[0]))
        return false;
    for (char c : name)
        if (!isNameChar(c, extra))
            return false;
    return true;
}

bool HostVariableName::forceValidName(std::string &name, const char *extra)
{
    if (name.empty())
        return false;
    std::string out;
    out.reserve(name.size() + 1);
    if (isDigit(name[0]))
        out += '_';
    for (char c : name)
        out += isNameChar(c, extra) ? c : '_';
    if (out == name)
        return false;
    name = out;
    return true;
}

bool HostVariableName::isEncoded(const std::string &name)
{
    return name.compare(0, PREFIX_LEN, PREFIX) == 0;
}

std::string HostVariableName::encode(const std::string &text)
{
    if (isValid(text, "#") && !isEncoded(text))
        return text;
    static const char HEX[] = "0123456789abcdef";
    std::string out = PREFIX;
    for (char ch : text)
    {
        const unsigned char c = static_cast<unsigned char>(ch);
        if (isAlpha(ch) || isDigit(ch) || ch == '#')
            out += ch;
        else if (ch == '_')
            out += "__";
        else
        {
            out += '_';
            out += HEX[c >> 4];
            out += HEX[c & 15];
        }
    }
    return out;
}

std::string HostVariableName::decode(const std::string &name)
{
    if (!isEncoded(name))
        return name;
    std::string out;
    for (std::size_t i = PREFIX_LEN; i < name.size(); ++i)
    {
        if (name[i] != '_')
        {
            out += name[i];
            continue;
        }
        if (i + 1 < name.size() && name[i + 1] == '_')
        {
            out += '_';
            ++i;
            continue;
        }
        if (i + 2 >= name.size() || hexValue(name[i + 1]) < 0 || hexValue(name[i + 2]) < 0)
            return name; // not a well-formed encoding: the name stands for itself
        out += static_cast<char>(hexValue(name[i + 1]) * 16 + hexValue(name[i + 2]));
        i += 2;
    }
    return out;
}
