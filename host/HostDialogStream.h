// HostDialogStream: the token reader of dialog scripts.
#pragma once

#include <memory>
#include <string>
#include <vector>

/// Reads a dialog script as tokens: words, double-quoted strings (unescaped through
/// HostDialogQuote), and the single-character tokens "{", "}", "[" and "]". A line whose first
/// non-blank character is "#" is a comment, except "#include FILE", which (with the INCLUDES
/// option) reads FILE in its place, found as given, beside the including file, on the include
/// path, then on the host's search path.
///
/// Problems are reported through HostDiagnostics as "FILE[LINE]: message" and reading goes on;
/// after MAX_ERRORS errors the stream reports once more and then ends, so no input can keep a
/// reader busy forever. Files larger than MAX_FILE_BYTES are refused whole.
///
/// The integer option is a set of bits: OPTIONAL (a missing file is skipped silently) and
/// INCLUDES (the "#include" directive is honoured; without it such a line is a comment).
class HostDialogStream
{
public:
    enum Option
    {
        OPTIONAL = 1,
        INCLUDES = 16
    };
    static constexpr std::size_t MAX_FILE_BYTES = 64u << 20;
    static constexpr int MAX_ERRORS = 100;
    static constexpr int MAX_INCLUDE_DEPTH = 16;

    HostDialogStream();
    ~HostDialogStream();
    HostDialogStream(const HostDialogStream &) = delete;
    HostDialogStream &operator=(const HostDialogStream &) = delete;

    /// Opens a file (as given, then on the host's search path). False when it cannot be read
    /// (reported unless the OPTIONAL bit is set) or is too large.
    bool openFile(const std::string &path, int option = 0);
    /// Reads `text`; `name` stands for the file name in messages.
    void openString(const std::string &text, const std::string &name = "<string>", int option = 0);
    int getOption() const { return myOption; }

    void setIncludePath(const std::vector<std::string> &dirs) { myIncludePath = dirs; }
    const std::vector<std::string> &getIncludePath() const { return myIncludePath; }

    /// The next token; false at the end. `quoted` tells a quoted string from a word.
    bool getToken(std::string &token, bool *quoted = nullptr);
    /// The next token without consuming it.
    bool peekToken(std::string &token, bool *quoted = nullptr);
    /// Whether the next token starts on the line of the last token read.
    bool nextOnSameLine();
    /// The raw rest of the line after the last token read, trimmed of blanks; consumed.
    std::string getRestOfLine();
    /// Skips tokens up to and including the "}" that closes a block whose "{" was just read.
    void skipBlock();
    /// Whether reading has ended (end of input, or too many errors).
    bool atEnd();

    /// File and line of the last token read (of the next one before any was read).
    const std::string &getFileName() const;
    int getLine() const;

    /// Reports "FILE[LINE]: message" at the last token's position.
    void error(const std::string &message);
    void warning(const std::string &message);
    int getErrorCount() const { return myErrors; }

private:
    struct Source;
    bool fill();
    bool readToken(std::string &token, bool &quoted, int &line, std::size_t &start);
    bool skipBlanksAndComments();
    void directive(const std::string &line);
    bool pushFile(const std::string &path, bool optional);
    void report(bool is_error, const std::string &file, int line, const std::string &message);

    std::vector<std::unique_ptr<Source>> mySources;
    std::vector<std::string> myIncludePath;
    std::string myFileName;
    int myLine = 0;
    int myOption = 0;
    int myErrors = 0;
    bool myStopped = false;
    bool myHasPeek = false;
    std::string myPeek;
    bool myPeekQuoted = false;
    int myPeekLine = 0;
    std::size_t myPeekStart = 0; ///< offset of the peeked token in the innermost source
    std::size_t myPeekDepth = 0; ///< number of sources open when it was peeked
    std::string myPeekFile;
};
