// HostDialogQuote: the one quoting helper of the dialog-script grammar.
#pragma once

#include <string>

/// Escaping of double-quoted dialog-script strings. Every writer of dialog-script text and the
/// reader go through here, so what one writes the other reads back unchanged.
///
/// Normal mode escapes the backslash and the double quote with a backslash, writes newline,
/// carriage return and tab as \n, \r and \t, and every other byte below 0x20 (and 0x7f) as
/// \xHH, so a quoted string always stays on one line. The alternative mode (used for ramp
/// tags, whose values are long multi-line point lists) escapes only the backslash and the
/// double quote and keeps every other byte as it is, newlines included. `unescape` reads both.
class HostDialogQuote
{
public:
    /// The escaped text, without the surrounding quotes.
    static std::string escape(const std::string &text, bool alternative = false);
    /// The text, escaped and in double quotes.
    static std::string quote(const std::string &text, bool alternative = false);
    /// Undoes `escape` (either mode). Unknown escapes keep the escaped character; a backslash
    /// at the end is kept.
    static std::string unescape(const std::string &text);
};
