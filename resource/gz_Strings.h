// gz_Strings: small text helpers shared by the registry sources.
#pragma once

#include <string>

namespace gz
{

/// The text, or the empty string for null.
inline std::string str(const char *text)
{
    return text ? std::string(text) : std::string();
}

/// ASCII lower case; network tokens and table names are plain ASCII.
std::string toLower(const std::string &text);

/// Whether `word` is one of the blank-separated words of `words` (compared exactly).
bool containsWord(const std::string &words, const std::string &word);

} // namespace gz
