// HostCommandManager: the host's command interpreter (installation, parsing, execution).
#pragma once

#include "host/HostArgCounts.h"
#include "host/HostCommandArgs.h"

#include <functional>
#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <vector>

struct HostParsedCommand;

/// A command handler. Handlers report on the streams of their arguments and never throw.
using HostCommandCallback = std::function<void(HostCommandArgs &)>;

/// How one piece of text is run.
struct HostExecOptions
{
    /// Remember the text in the history (what the interactive prompt typed).
    bool history = false;
    /// Send command output to the current output stream; when false it is discarded.
    /// Errors reach the error stream unless `errors` is false.
    bool output = true;
    /// Send error messages (the interpreter's and the commands') to the current error
    /// stream; when false they are discarded and failed lines are not counted, so that
    /// text the library runs on its own behalf (undo scripts) stays silent.
    bool errors = true;
    /// Name of the file or source the text came from; when set, the interpreter's own
    /// messages begin with "SOURCE:LINE: ".
    std::string source;
    /// Line number of the first line of the text.
    int firstLine = 1;
    /// With `source`: every line a command writes to the error stream begins with
    /// "SOURCE:LINE: " too (files run by other commands, whose errors would not otherwise
    /// say where they stand).
    bool locateCommandErrors = false;
    /// Streams that take this text's output and errors instead of the current ones, so that
    /// a caller (a script) gets them back; null keeps the current ones. Not owned.
    std::ostream *out = nullptr;
    std::ostream *err = nullptr;
    /// Check every command without running any: an unterminated quote, an unknown command
    /// or option, a missing option value or a wrong argument count is reported through
    /// HostDiagnostics as an error at SOURCE and LINE (no usage lines follow), and no
    /// handler is called. Variables are expanded as they stand when the check starts.
    bool checkOnly = false;
};

/// The host's command interpreter. Commands are installed by name with an option string (a
/// letter followed by one ':' per value it takes, so "r:::" takes three values; a bare
/// letter is a flag), a handler, a flag saying whether the command may run while a scene
/// is loading, and a usage text.
///
/// Text is run one command at a time (see HostCommandParser for the grammar). Options come
/// after the command name and before the positional arguments; the first word that is not
/// an option ends them, and so does "--" (which is dropped). A word is an option cluster
/// when it is unquoted, starts with '-' and its second character is a letter, so negative
/// numbers such as -1 or -.5 are positional. Flags may be combined ("-gv"); an option that
/// takes values takes the rest of its cluster as its first value ("-tsop") and the
/// following words as the others, whatever they look like.
///
/// A line that cannot run (unterminated quote, unknown command, unknown option, missing
/// option value, command refused while loading) is reported on the error stream and
/// counted; the following lines still run. Execution nests (a command may run text), up to
/// a fixed depth. Single-threaded; the process-wide instance lives until exit.
class HostCommandManager
{
public:
    HostCommandManager();
    ~HostCommandManager();
    HostCommandManager(const HostCommandManager &) = delete;
    HostCommandManager &operator=(const HostCommandManager &) = delete;

    /// The process-wide interpreter, created on first use and never destroyed.
    static HostCommandManager *getInstance();

    // Installation -------------------------------------------------------------------

    /// Installs a command. `allowed_while_loading` false keeps the command from running
    /// while a scene is being loaded (it writes files or otherwise reaches outside the
    /// session). `usage` is the argument synopsis, command name first; when null, one is
    /// made from the option string. Returns false and changes nothing when a command of
    /// that name exists or the option string is malformed.
    bool installCommand(const char *name, const char *options, HostCommandCallback callback,
                        bool allowed_while_loading = true, const char *usage = nullptr);
    /// Removes a command; false when it was not installed.
    bool uninstallCommand(const std::string &name);
    bool isInstalled(const std::string &name) const;
    /// Replaces the usage text of an installed command.
    bool setUsage(const std::string &name, const std::string &usage);
    /// The usage text of a command, or the empty string when it is not installed.
    std::string usage(const std::string &name) const;
    /// The positional argument counts (command name included) a command accepts. Only a
    /// check (HostExecOptions::checkOnly) uses them: running commands check their own counts.
    bool setArgumentCounts(const std::string &name, const HostArgCounts &counts);
    /// Sets what `help COMMAND` shows besides the usage: a sentence on what the command does
    /// and its option lines (see HostCommandRow).
    bool setHelp(const std::string &name, const std::string &summary,
                 const std::string &option_help);
    /// The sentence and the option lines of a command; empty when it has none.
    std::string summary(const std::string &name) const;
    std::string optionHelp(const std::string &name) const;
    /// The option string a command was installed with.
    std::string optionString(const std::string &name) const;
    bool allowedWhileLoading(const std::string &name) const;
    /// The handler of a command (empty when it is not installed), so that a caller can
    /// reinstall the command wrapped in one of its own.
    HostCommandCallback handler(const std::string &name) const;
    /// Every installed command name, sorted.
    std::vector<std::string> commandNames() const;

    // Execution ----------------------------------------------------------------------

    /// Runs every command of `text`. Returns true when every command ran (a command that
    /// reports an error on its stream still ran).
    bool execute(const std::string &text, const HostExecOptions &options);
    bool execute(const std::string &text, bool add_to_history = false, bool show_output = true);

    /// The streams that commands write to outside any execution; std::cout and std::cerr
    /// at first. Not owned.
    void setStreams(std::ostream *out, std::ostream *err);
    /// The streams of the current execution (output is a discarding stream while output is
    /// suppressed).
    std::ostream &out() const { return *myCurrentOut; }
    std::ostream &err() const { return *myCurrentErr; }

    /// Lines that could not run since the last reset.
    int failedLines() const { return myFailedLines; }
    void resetFailedLines() { myFailedLines = 0; }

    /// Asks the interpreter to stop: the current and every enclosing execution return
    /// after the running command. Cleared by clearExitRequest.
    void requestExit() { myExitRequested = true; }
    bool exitRequested() const { return myExitRequested; }
    void clearExitRequest() { myExitRequested = false; }

    /// While set, commands installed with allowed_while_loading false are refused.
    void setLoading(bool loading) { myLoading = loading; }
    bool isLoading() const { return myLoading; }

    // Variables and history -------------------------------------------------------------

    void setVariable(const std::string &name, const std::string &value);
    bool unsetVariable(const std::string &name);
    /// The value of a variable, or null when it is not set.
    const std::string *variable(const std::string &name) const;
    const std::map<std::string, std::string> &variables() const { return myVariables; }
    /// `text` with $NAME and ${NAME} replaced by the variable's value, else by the process
    /// environment's (so "$HOME" works in paths); names set in neither stay as written.
    std::string expandVariables(const std::string &text) const;
    /// Whether `name` can be a variable name ($NAME).
    static bool isValidVariableName(const std::string &name);

    const std::vector<std::string> &history() const { return myHistory; }
    void clearHistory() { myHistory.clear(); }

    // Protected strings -----------------------------------------------------------------

    /// Writes `text` so that the parser reads it back as one argument equal to it: a plain
    /// word as it is, anything else quoted.
    static void protectString(std::ostream &os, const std::string &text);
    static std::string protectString(const std::string &text);
    /// The same, but always inside double quotes (settings text in saved lines).
    static void protectQuotedString(std::ostream &os, const std::string &text);

private:
    struct Command
    {
        std::string options;
        std::map<char, int> valueCounts;
        HostCommandCallback callback;
        bool allowedWhileLoading = true;
        std::string usage;
        std::string summary;
        std::string optionHelp;
        HostArgCounts counts;
    };
    bool runCommand(const HostParsedCommand &cmd, const HostExecOptions &options);
    /// Runs a command's handler; its error lines are prefixed with the location when asked.
    void callHandler(const std::string &name, const HostCommandCallback &callback,
                     std::vector<std::string> positional, const HostExecOptions &options, int line,
                     const std::function<void(HostCommandArgs &)> &prepare);
    /// Reports a line that cannot run, on the error stream or, in a check, as a diagnostic.
    void reportAt(const HostExecOptions &options, int line, const std::string &message) const;
    /// The usage line that follows such a report (none in a check).
    void reportUsage(const HostExecOptions &options, const Command &command) const;
    /// The end of a checked command: its argument count; true when it would run.
    bool checkCount(const HostExecOptions &options, int line, const std::string &name,
                    const Command &command, int argc, bool count_option) const;
    static bool parseOptionString(const char *options, std::map<char, int> &counts);
    static std::string makeUsage(const std::string &name, const std::string &options);

    std::map<std::string, std::shared_ptr<Command>> myCommands;
    std::map<std::string, std::string> myVariables;
    std::vector<std::string> myHistory;
    std::ostream *myDefaultOut;
    std::ostream *myDefaultErr;
    std::ostream *myCurrentOut;
    std::ostream *myCurrentErr;
    std::unique_ptr<std::ostream> myNullStream;
    int myDepth = 0;
    int myFailedLines = 0;
    bool myExitRequested = false;
    bool myLoading = false;
};
