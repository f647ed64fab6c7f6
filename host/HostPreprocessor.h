// HostPreprocessor: a line and token reader for data files with C-style directives and comments.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// Reads a text file the way the host reads its configuration files: C and C++ comments are
/// removed, `#include "file"`, `#define`/`#undef`, `#ifdef`/`#ifndef`/`#if`/`#elif`/`#else`/
/// `#endif` are obeyed, and every delivered line knows the file and line it came from (across
/// includes).
///
/// Problems the reader finds itself (a missing include file, an unbalanced conditional, an
/// include nested too deep) and `#error` directives go to the problem handler with their file
/// and line, never into the text: a comment line such as "# errors are ..." stays text.
/// Without a handler they are reported through the host's diagnostics channel as
/// "FILE[LINE]: message". Nothing throws; a file that cannot be opened makes `open` return
/// false.
///
/// Options given to `open` (unknown ones are ignored):
///   ""   no effect (accepted so that callers can pass a fixed option list);
///   "-x" expand object-like macros in text lines (whole identifiers outside quoted strings);
///   "-P" pass lines that start with '#' but are no directive through as text (comment lines of
///        data files); without it such lines are reported as unknown directives.
///
/// Cost: one pass over the text; memory is the open files' lines plus the macro table.
class HostPreprocessor
{
public:
    HostPreprocessor();
    ~HostPreprocessor();
    HostPreprocessor(const HostPreprocessor &) = delete;
    HostPreprocessor &operator=(const HostPreprocessor &) = delete;

    /// Receives each problem as it is met while lines are read.
    using ProblemHandler =
        std::function<void(const std::string &file, int line, const std::string &message)>;
    void setProblemHandler(ProblemHandler handler) { myProblemHandler = std::move(handler); }

    /// Directories searched, in order, for include files not found beside the including file.
    void setSearchPath(std::vector<std::string> dirs) { mySearchPath = std::move(dirs); }

    /// Opens a file; false (and nothing to read) when it cannot be read.
    bool open(const std::string &path, const std::vector<std::string> &options = {});
    /// Reads text that did not come from a file; `name` is used in locations.
    void openText(const std::string &text, const std::string &name,
                  const std::vector<std::string> &options = {});

    /// The next text line, comments and directives removed; drops what token reading left of
    /// the current line. False at the end of input.
    bool getLine(std::string &line);
    /// Makes the next getLine return `line` again (one level).
    void ungetLine(const std::string &line);

    /// Token reading on top of lines: the next blank-separated word or quoted string ("..." or
    /// '...', a backslash makes the next character literal), crossing line breaks. `quoted`
    /// tells whether it was a quoted string. False at the end of input.
    bool getToken(std::string &token, bool *quoted = nullptr);
    /// Like getToken, but never leaves the current line; false at its end.
    bool getLineToken(std::string &token, bool *quoted = nullptr);
    /// Whether the current line holds no more tokens.
    bool atLineEnd();
    /// Drops what is left of the current line.
    void skipRestOfLine();
    /// What is left of the current line, untouched (for free-form fields).
    std::string restOfLine();

    /// File name and line number of the line most recently delivered.
    const std::string &fileName() const { return myFileName; }
    int lineNumber() const { return myLineNumber; }

    bool isDefined(const std::string &name) const { return myMacros.count(name) != 0; }
    void define(const std::string &name, const std::string &value = "1") { myMacros[name] = value; }

private:
    struct Source;
    struct Conditional
    {
        bool parentActive;
        bool active;
        bool anyTaken;
        bool sawElse;
        int line;
        std::string file;
    };

    bool nextLine(std::string &line);
    bool readRawLine(std::string &line, std::string &file, int &number);
    /// Obeys one directive line; true when it is text after all (a '#' line under "-P"),
    /// which is then in `emitted`.
    bool handleDirective(const std::string &line, const std::string &file, int number,
                         std::string &emitted);
    bool active() const { return myConditionals.empty() || myConditionals.back().active; }
    void pushInclude(const std::string &name, const std::string &file, int number);
    std::string resolveInclude(const std::string &name, const std::string &from) const;
    std::string stripComments(const std::string &line);
    std::string expandMacros(const std::string &line) const;
    bool evaluateCondition(const std::string &expr, bool &ok) const;
    void directiveProblem(const std::string &file, int number, const std::string &message);
    void reportProblem(const std::string &file, int number, const std::string &message) const;
    bool fillTokenLine();

    std::vector<std::unique_ptr<Source>> myStack;
    std::vector<Conditional> myConditionals;
    std::map<std::string, std::string> myMacros;
    std::vector<std::string> mySearchPath;
    ProblemHandler myProblemHandler;
    bool myExpandMacros = false;
    bool myPassHashLines = false;
    bool myInBlockComment = false;

    std::string myFileName;
    int myLineNumber = 0;
    std::vector<std::string> myPushedBack;

    // Token cursor over the current line.
    std::string myTokenLine;
    size_t myTokenPos = 0;
    bool myHaveTokenLine = false;
};
