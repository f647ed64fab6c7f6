// HostPatternMatch: wildcard matching of names, alone or against a list of alternatives.
#pragma once

#include <string>

/// Wildcards: "*" any run of characters (also none), "?" any one character; everything else
/// matches itself. A multi-pattern holds alternatives separated by commas or blanks; a name
/// matches when it matches any of them. Matching is linear in the text times the pattern at
/// worst (no backtracking blow-up).
class HostPatternMatch
{
public:
    static bool match(const std::string &text, const std::string &pattern);
    static bool matchMulti(const std::string &text, const std::string &patterns);
    /// Whether the pattern contains a wildcard.
    static bool hasWildcards(const std::string &pattern);
};
