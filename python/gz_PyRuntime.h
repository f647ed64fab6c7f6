// gz_PyRuntime: what the parts of the scripting layer share inside GZPython (not installed
// for users: it includes pybind11).
#pragma once

#include <pybind11/pybind11.h>

#include <csignal>
#include <stdexcept>
#include <string>

class HostNode;

namespace gz_py
{
namespace py = pybind11;

/// zum.Error: a host operation refused what Python asked (bad path, locked parameter...).
struct Error : std::runtime_error
{
    using std::runtime_error::runtime_error;
};
/// zum.ObjectWasDeleted: a Node or Parm object whose node or parameter no longer exists.
struct ObjectWasDeleted : Error
{
    using Error::Error;
};

/// Where a scripting-language expression is being evaluated: its node and time. zum.pwd(),
/// zum.time() and zum.frame() answer from the innermost one.
struct EvalFrame
{
    const HostNode *node;
    double time;
};
const EvalFrame *currentEvalFrame();
void pushEvalFrame(const EvalFrame &frame);
void popEvalFrame();

/// The exception that is set, as "Type: message" on one line (the form expression errors
/// take); clears it.
std::string exceptionLine(py::error_already_set &error);
/// The exception with its traceback, as Python prints it; clears it.
std::string exceptionTraceback(py::error_already_set &error);

/// Held around every run of Python code on the host's behalf: undo blocks that the code
/// opened and left open are closed when it ends, and, when `interruptible` (and no run
/// encloses this one), an interrupt raises KeyboardInterrupt in Python while it lives.
/// Expressions are not interruptible: the swap would cost more than most of them.
class RunGuard
{
public:
    explicit RunGuard(bool interruptible = true);
    ~RunGuard();
    RunGuard(const RunGuard &) = delete;
    RunGuard &operator=(const RunGuard &) = delete;

    /// Remembers Python's own interrupt handler, once the interpreter has installed it.
    static void capturePythonHandler();

private:
    struct sigaction myPrevious;
    bool mySwapped = false;
    int myUndoDepth;
};

/// Defines the zum module's contents in `m`.
void defineZum(py::module_ &m);
/// Creates the modules "viewerhandle.interface" and "viewerstate.interface".
void defineResourceInterfaces();
/// Installs and removes the evaluator of scripting-language expressions.
void installExpressionEvaluator();
void removeExpressionEvaluator();
} // namespace gz_py
