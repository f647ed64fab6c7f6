// HostText: the character classes the host's readers share.
#pragma once

#include <string>

/// What counts as a blank inside one line, for every reader of the host's text (commands,
/// preprocessed data files): space, tab, carriage return, form feed, vertical tab. A newline
/// is never a blank: it ends the line.
class HostText
{
public:
    static bool isBlank(char c)
    {
        return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v';
    }

    /// Whether a line holds nothing but blanks.
    static bool isBlankLine(const std::string &line)
    {
        for (char c : line)
            if (!isBlank(c))
                return false;
        return true;
    }
};
