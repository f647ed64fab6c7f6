// gz_Strings: small text helpers shared by the registry sources.
#include "resource/gz_Strings.h"

#include <cctype>

namespace gz
{

std::string toLower(const std::string &text)
{
    std::string lower(text);
    for (char &c : lower)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return lower;
}

// Words of a word list are separated by blanks and line breaks alike, unlike the host's
// readers, for which a line break ends a line; form feeds and vertical tabs belong to words.
static bool isWordSeparator(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool containsWord(const std::string &words, const std::string &word)
{
    const size_t n = words.size();
    size_t i = 0;
    while (i < n)
    {
        while (i < n && isWordSeparator(words[i]))
            ++i;
        size_t end = i;
        while (end < n && !isWordSeparator(words[end]))
            ++end;
        if (end > i && words.compare(i, end - i, word) == 0)
            return true;
        i = end;
    }
    return false;
}

} // namespace gz
