// HostPython: the host's embedded Python interpreter, its "zum" module, scripting-language
// expressions and the registration of viewer handles and states written in Python.
#pragma once

#include "host/HostExpression.h"

#include <string>
#include <utility>
#include <vector>

class HostNode;

/// The host's scripting layer: one CPython interpreter per process. Starting it makes the
/// modules "zum", "viewerhandle.interface" and "viewerstate.interface" importable, installs
/// the evaluator of scripting-language parameter expressions (HostScriptEvaluator) and sends
/// Python's standard output and error to the host's command streams. Nothing here throws:
/// a Python error is printed with its traceback (or returned), the host goes on, and undo
/// blocks opened by the code that failed are closed. While Python code runs, an interrupt
/// (SIGINT) raises KeyboardInterrupt in it; between runs the host's own handling stands.
///
/// Single-threaded, like the host. Python code runs on the host's main thread only.
class HostPython
{
public:
    /// Starts the interpreter; true when it runs (also when it ran already).
    static bool start();
    /// Removes the expression evaluator and finalizes the interpreter.
    static void stop();
    static bool isRunning();

    /// Runs statements in the interpreter's main namespace, which persists between runs.
    /// `source` names the text in tracebacks. False when the code raised; the traceback went
    /// to the host's error stream.
    static bool runText(const std::string &text, const std::string &source);
    /// Runs a file as the main program, with sys.argv = [path] + args. False when it cannot
    /// be read (`error` says why) or raised (traceback printed).
    static bool runFile(const std::string &path, const std::vector<std::string> &args,
                        std::string &error);

    /// An option handed to a callback: its name and value (a number or a string).
    using Option = std::pair<std::string, HostExprValue>;

    /// Runs a parameter callback written in Python. With `node` made the current node, runs
    ///   kwargs = {'node': zum.node('PATH'), 'parm': zum.parm('PATH/PARM'), 'NAME': VALUE...}
    /// (the 'parm' entry only when `parm_name` is not empty) in a fresh namespace that has
    /// "zum", then `text` in the same namespace, its source named `source`. A failure of the
    /// first step is reported as "Error setting kwargs:", of the second as "Error running
    /// callback:", each followed by the traceback, in `errors`; the function returns false.
    /// The previous current node is restored and undo blocks left open are closed.
    static bool runCallback(HostNode &node, const std::string &parm_name,
                            const std::vector<Option> &options, const std::string &text,
                            const std::string &source, std::string &errors);
    /// The kwargs statement runCallback runs first, for the same arguments.
    static std::string kwargsStatement(const HostNode &node, const std::string &parm_name,
                                       const std::vector<Option> &options);
    /// A Python literal of a value: numbers in their shortest exact form, strings quoted.
    static std::string literal(const HostExprValue &value);

    /// Runs every "viewer_handles/*.py" and "viewer_states/*.py" file of the search path
    /// (the first directory that has a file of a name wins) and registers the template that
    /// each file's createViewerHandleTemplate() or createViewerStateTemplate() returns.
    /// Problems are reported on the host's error stream. Returns the number registered.
    static int registerSearchPathResources();
    /// Runs one such file and registers its template; false after reporting a problem.
    /// `label` names the file in messages and tracebacks.
    static bool registerResourceFile(const std::string &path, const std::string &label,
                                     bool is_state);
};
