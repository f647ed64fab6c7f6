// HostPatternMatch: wildcard and multi-pattern matching.
#include "host/HostPatternMatch.h"

bool HostPatternMatch::match(const std::string &text, const std::string &pattern)
{
    // Greedy matching with one remembered star: each star only ever moves forward.
    std::size_t t = 0, p = 0, star = std::string::npos, mark = 0;
    while (t < text.size())
    {
        if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == text[t]))
        {
            ++t;
            ++p;
        }
        else if (p < pattern.size() && pattern[p] == '*')
        {
            star = p++;
            mark = t;
        }
        else if (star != std::string::npos)
        {
            p = star + 1;
            t = ++mark;
        }
        else
            return false;
    }
    while (p < pattern.size() && pattern[p] == '*')
        ++p;
    return p == pattern.size();
}

bool HostPatternMatch::matchMulti(const std::string &text, const std::string &patterns)
{
    std::size_t b = 0;
    while (b < patterns.size())
    {
        const std::size_t e = patterns.find_first_of(", \t\n", b);
        const std::size_t end = e == std::string::npos ? patterns.size() : e;
        if (end > b && match(text, patterns.substr(b, end - b)))
            return true;
        b = end + 1;
    }
    return false;
}

bool HostPatternMatch::hasWildcards(const std::string &pattern)
{
    return pattern.find_first_of("*?") != std::string::npos;
}
