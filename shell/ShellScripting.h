// ShellScripting: gzsh's embedded Python, when gzsh is built with it.
#pragma once

#include <string>
#include <vector>

/// Starts and stops gzsh's Python interpreter and runs Python files for the shell. Without
/// Python in the build (GZ_WITH_PYTHON off), or after `gzsh -n`, nothing is started: Python
/// files and the python command report that scripting is off, and scripting-language
/// expressions read as not evaluated.
class ShellScripting
{
public:
    /// Whether this gzsh was built with Python.
    static bool isBuilt();
    /// Whether scripting runs: built in, not turned off, and started.
    static bool isOn();
    /// Starts the interpreter and registers the viewer handles and states written in Python
    /// found on the search path. Does nothing when `enabled` is false (gzsh -n).
    static void start(bool enabled);
    static void stop();
    /// Why scripting is not on, as messages say it.
    static const char *offReason();

    /// Runs a Python file with its arguments; false (with `error` set when the file could not
    /// be read) when it could not run or raised (the traceback was printed).
    static bool runFile(const std::string &path, const std::vector<std::string> &args,
                        std::string &error);
    /// Runs Python text in the interpreter's main namespace; false when it raised.
    static bool runText(const std::string &text);

    static bool isPythonFile(const std::string &path);
};
