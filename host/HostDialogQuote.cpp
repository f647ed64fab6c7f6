// HostDialogQuote: escaping and unescaping of dialog-script strings.
#include "host/HostDialogQuote.h"

namespace
{
const char HEX[] = "0123456789abcdef";

int hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

void escapeControl(std::string &out, unsigned char c)
{
    switch (c)
    {
    case '\n':
        out += "\\n";
        return;
    case '\r':
        out += "\\r";
        return;
    case '\t':
        out += "\\t";
        return;
    default:
        out += "\\x";
        out += HEX[c >> 4];
        out += HEX[c & 15];
    }
}
} // namespace

std::string HostDialogQuote::escape(const std::string &text, bool alternative)
{
    std::string out;
    out.reserve(text.size() + 2);
    for (char ch : text)
    {
        const unsigned char c = static_cast<unsigned char>(ch);
        if (ch == '\\' || ch == '"')
        {
            out += '\\';
            out += ch;
        }
        else if (!alternative && (c < 0x20 || c == 0x7f))
            escapeControl(out, c);
        else
            out += ch;
    }
    return out;
}

std::string HostDialogQuote::quote(const std::string &text, bool alternative)
{
    return '"' + escape(text, alternative) + '"';
}

std::string HostDialogQuote::unescape(const std::string &text)
{
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        if (text[i] != '\\' || i + 1 == text.size())
        {
            out += text[i];
            continue;
        }
        const char e = text[++i];
        if (e == 'n')
            out += '\n';
        else if (e == 'r')
            out += '\r';
        else if (e == 't')
            out += '\t';
        else if (e == 'x' && i + 2 < text.size() && hexValue(text[i + 1]) >= 0 &&
                 hexValue(text[i + 2]) >= 0)
        {
            out += static_cast<char>(hexValue(text[i + 1]) * 16 + hexValue(text[i + 2]));
            i += 2;
        }
        else
            out += e;
    }
    return out;
}
