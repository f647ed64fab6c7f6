// HostCommandParser: splits command-language text into commands and words, and its inverse.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

/// One word of a parsed command. `quoted` is set when any part of the word was quoted or
/// escaped; such a word is never taken as an option and is kept even when empty.
struct HostCommandWord
{
    std::string text;
    bool quoted = false;
};

/// One command: its words (the first is the command name) and the line it starts on.
/// When the text could not be parsed, `error` holds the reason and `words` is empty.
struct HostParsedCommand
{
    std::vector<HostCommandWord> words;
    int line = 0;
    std::string error;
};

/// Reads the command language one command at a time, so that variables set by one command
/// are seen by the next. The grammar:
///
///   - Blanks (space, tab, CR, FF, VT) separate words; a newline or ';' ends a command.
///   - '#' at the start of a word begins a comment that runs to the end of the line.
///   - Single quotes take everything up to the next single quote literally (newlines too).
///   - Double quotes take their content literally except that \" gives " and \$ gives $, and
///     $NAME and ${NAME} are expanded; any other backslash stays as it is, so a "\\" inside
///     double quotes is two backslashes (settings text relies on this).
///   - Outside quotes a backslash takes the next character literally; a backslash before a
///     newline joins the lines.
///   - $NAME and ${NAME} outside single quotes are replaced by the variable's value; a name
///     that is not set is left as written. NAME is a letter or '_' followed by letters,
///     digits and '_'.
///   - Adjacent quoted and unquoted parts form one word.
///   - An unterminated quote fails the command that contains it; parsing resumes on the
///     line after the one on which the quote was opened.
///
/// Cost: linear in the text, which the parser copies.
class HostCommandParser
{
public:
    /// Returns the value of a variable, or null when it is not set.
    using VariableLookup = std::function<const std::string *(const std::string &name)>;

    explicit HostCommandParser(std::string text, int first_line = 1, VariableLookup variables = {});

    /// Parses the next non-empty command into `cmd`; false when the text is used up.
    bool next(HostParsedCommand &cmd);

    /// Writes `text` so that the parser reads it back as exactly one word equal to it, and
    /// never as an option. A plain word is written as it is; anything else is quoted.
    static void protect(std::ostream &os, const std::string &text);
    static std::string protect(const std::string &text);

    /// Writes `text` always inside double quotes (with the escapes `protect` uses), for
    /// words such as settings text whose saved form shows them quoted even when plain.
    static void protectQuoted(std::ostream &os, const std::string &text);

    /// Whether `text` stops inside a quote or right after a backslash, so that a prompt
    /// should read another line before running it.
    static bool needsMoreLines(const std::string &text);

    /// Whether `text` can be written without quotes.
    static bool isPlainWord(const std::string &text);

    /// `text` with its $NAME and ${NAME} expanded as the parser expands them in words (an
    /// unset name stays as written); nothing else in the text is special.
    static std::string expandVariables(const std::string &text, VariableLookup variables);

private:
    bool readSingleQuoted(std::string &word);
    bool readDoubleQuoted(std::string &word);
    void expandVariable(std::string &word);
    void failUnterminated(HostParsedCommand &cmd, char quote, int quote_line);

    const std::string myText;
    size_t myPos = 0;
    int myLine;
    VariableLookup myVariables;
};
