// Shell: gzsh itself — start-up, command-line arguments, running files, text and the prompt.
#pragma once

#include <string>
#include <vector>

class HostCommandManager;
class HostDirector;

/// The reference host shell. Starts the host and the library (operator catalogue, class
/// manager, resource manager, bindings), installs the shell's command groups in the
/// process-wide command interpreter, and runs script files, -c text, standard input or an
/// interactive prompt. Uses the process-wide director and interpreter; one per process.
class Shell
{
public:
    /// Exit statuses of gzsh.
    enum Status
    {
        STATUS_OK = 0,     ///< every line ran
        STATUS_FAILED = 1, ///< a file could not be read or a line could not run
        STATUS_USAGE = 2   ///< bad usage of gzsh itself
    };

    Shell();
    Shell(const Shell &) = delete;
    Shell &operator=(const Shell &) = delete;

    /// Runs gzsh with its command-line arguments and returns the exit status.
    int main(int argc, const char *const *argv);

    /// Puts `dirs`, then the shipped data directory, on the search path, installs the
    /// operator catalogue, starts the library and installs the commands. Commands and the
    /// catalogue are installed once per process.
    void startup(const std::vector<std::string> &dirs);

    /// Runs a script file (found as given, else on the search path). `label` names it in
    /// messages (its file name when empty). False when the file cannot be read.
    bool runFile(const std::string &path, const std::string &label = "");
    /// Runs a Python file (found as given, else on the search path) in gzsh's interpreter.
    /// False when the file cannot be found; when it cannot run the reason is reported.
    bool runPythonFile(const std::string &path);
    /// Runs text; `label` names it in the interpreter's messages.
    void runText(const std::string &text, const std::string &label);
    /// Reads commands from the interactive prompt until end of input or `exit`.
    void runPrompt();

    /// Finds a script file: as given when it exists, else on the search path. False when
    /// neither exists.
    static bool findScript(const std::string &name, std::string &path);

    /// The exit status so far: failed when a file could not be read or a line could not run.
    int status() const;
    void setFileFailed() { myFileFailed = true; }

    HostCommandManager &commands() const { return *myCommands; }
    HostDirector &director() const;

    /// The shipped data directory: the installed one next to the executable's prefix when it
    /// exists, else the source tree's.
    static std::string dataDirectory();
    /// The one-line usage of gzsh.
    static const char *usageLine();

private:
    void installCommands();
    void startLibrary();

    HostCommandManager *myCommands;
    bool myFileFailed = false;
    /// Python runs unless gzsh -n turned it off.
    bool myScripting = true;
};
