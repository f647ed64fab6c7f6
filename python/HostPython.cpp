// HostPython: starting and stopping the interpreter, running text, files and callbacks.
#include "python/HostPython.h"

#include "python/gz_PyRuntime.h"

#include "host/HostCommandManager.h"
#include "host/HostDirector.h"
#include "host/HostExpression.h"
#include "host/HostNode.h"
#include "host/HostReader.h"
#include "host/HostUndoManager.h"

#include <pybind11/embed.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <set>
#include <system_error>

namespace py = pybind11;
namespace fs = std::filesystem;

namespace
{
bool theRunning = false;
struct sigaction thePythonHandler;
bool theHavePythonHandler = false;
/// Python's interrupt handler is in place (an outer run put it there).
bool theInterruptible = false;

std::ostream &hostErr()
{
    return HostCommandManager::getInstance()->err();
}

py::dict mainNamespace()
{
    return py::module_::import("__main__").attr("__dict__").cast<py::dict>();
}

/// A namespace of its own for code that must not see the main one: builtins and zum.
py::dict freshNamespace(const std::string &name)
{
    py::dict globals;
    globals["__name__"] = name;
    globals["__builtins__"] = py::module_::import("builtins");
    globals["zum"] = py::module_::import("zum");
    return globals;
}

/// Compiles and runs `text` in `globals`; throws error_already_set when Python raised.
void execIn(const std::string &text, const std::string &source, py::dict &globals)
{
    py::object code = py::module_::import("builtins").attr("compile")(text, source, "exec");
    PyObject *result = PyEval_EvalCode(code.ptr(), globals.ptr(), globals.ptr());
    if (!result)
        throw py::error_already_set();
    Py_DECREF(result);
}

/// Reports an exception that ended a run: a SystemExit with a status of 0 or None ends the
/// code quietly, one with a message prints it, anything else prints its traceback. Returns
/// whether the run counts as a success.
bool reportRunError(py::error_already_set &error)
{
    if (error.matches(PyExc_SystemExit))
    {
        py::object code = error.value().attr("code");
        if (code.is_none() || (py::isinstance<py::int_>(code) && code.cast<long long>() == 0))
            return true;
        if (!py::isinstance<py::int_>(code))
            hostErr() << py::str(code).cast<std::string>() << "\n";
        return false;
    }
    hostErr() << gz_py::exceptionTraceback(error);
    return false;
}

/// The files "SUBDIR/*.py" of the search path, by name, the first directory's file winning.
std::vector<std::string> searchPathFiles(const char *subdir)
{
    std::set<std::string> seen;
    std::vector<std::string> found;
    for (const std::string &dir : HostReader::getSearchPath())
    {
        std::error_code ec;
        std::vector<fs::path> files;
        for (const fs::directory_entry &entry : fs::directory_iterator(fs::path(dir) / subdir, ec))
            if (entry.path().extension() == ".py" && entry.is_regular_file(ec))
                files.push_back(entry.path());
        std::sort(files.begin(), files.end());
        for (const fs::path &file : files)
            if (seen.insert(file.filename().string()).second)
                found.push_back(file.string());
    }
    return found;
}
} // namespace

// ---------------------------------------------------------------------------------------------
// Shared helpers

namespace gz_py
{
std::string exceptionLine(py::error_already_set &error)
{
    // The host's own errors say what failed; a nested evaluation's message passes through
    // the outer ones unchanged.
    if (error.matches(py::module_::import("zum").attr("Error")))
        return py::str(error.value()).cast<std::string>();
    std::string type = py::str(error.type().attr("__qualname__")).cast<std::string>();
    const std::string module = py::str(error.type().attr("__module__")).cast<std::string>();
    if (module != "builtins")
        type = module + "." + type;
    std::string message = py::str(error.value()).cast<std::string>();
    std::replace(message.begin(), message.end(), '\n', ' ');
    return message.empty() ? type : type + ": " + message;
}

std::string exceptionTraceback(py::error_already_set &error)
{
    py::object format = py::module_::import("traceback").attr("format_exception");
    py::object trace =
        error.trace() ? py::reinterpret_borrow<py::object>(error.trace()) : py::none();
    py::object lines = format(error.type(), error.value(), trace);
    return py::str("").attr("join")(lines).cast<std::string>();
}

RunGuard::RunGuard(bool interruptible) : myUndoDepth(HostUndoManager::current().getBlockDepth())
{
    if (interruptible && theHavePythonHandler && !theInterruptible)
        mySwapped = theInterruptible = sigaction(SIGINT, &thePythonHandler, &myPrevious) == 0;
}

RunGuard::~RunGuard()
{
    if (mySwapped)
    {
        sigaction(SIGINT, &myPrevious, nullptr);
        theInterruptible = false;
        // An interrupt that arrived as the code ended must not surface in the next run.
        if (PyErr_CheckSignals() != 0)
            PyErr_Clear();
    }
    HostUndoManager &undo = HostUndoManager::current();
    while (undo.getBlockDepth() > myUndoDepth)
        undo.endUndoBlock();
}

void RunGuard::capturePythonHandler()
{
    theHavePythonHandler = sigaction(SIGINT, nullptr, &thePythonHandler) == 0;
}
} // namespace gz_py

// ---------------------------------------------------------------------------------------------
// Lifetime

bool HostPython::start()
{
    if (theRunning)
        return true;
    try
    {
        py::initialize_interpreter(/*init_signal_handlers=*/false, 0, nullptr,
                                   /*add_program_dir_to_path=*/false);
    }
    catch (const std::exception &e)
    {
        hostErr() << "python: cannot start the interpreter: " << e.what() << "\n";
        return false;
    }
    theRunning = true;
    try
    {
        py::module_ sys = py::module_::import("sys");
        py::module_ zum = py::module_::import("zum");
        sys.attr("stdout") = zum.attr("_HostStream")(false);
        sys.attr("stderr") = zum.attr("_HostStream")(true);
        sys.attr("argv") = py::list();
        // Typed code starts with the host's module at hand.
        mainNamespace()["zum"] = zum;
        // Python's interrupt handler is installed once and kept aside: RunGuard puts it in
        // place only while Python code runs, so an interrupt at the host's prompt stays the
        // host's business.
        struct sigaction host_handler;
        sigaction(SIGINT, nullptr, &host_handler);
        py::module_ signal = py::module_::import("signal");
        signal.attr("signal")(signal.attr("SIGINT"), signal.attr("default_int_handler"));
        gz_py::RunGuard::capturePythonHandler();
        sigaction(SIGINT, &host_handler, nullptr);
        gz_py::defineResourceInterfaces();
    }
    catch (py::error_already_set &e)
    {
        hostErr() << "python: cannot set up the interpreter:\n" << gz_py::exceptionTraceback(e);
        stop();
        return false;
    }
    gz_py::installExpressionEvaluator();
    return true;
}

void HostPython::stop()
{
    if (!theRunning)
        return;
    gz_py::removeExpressionEvaluator();
    py::finalize_interpreter();
    theRunning = false;
    theHavePythonHandler = false;
}

bool HostPython::isRunning()
{
    return theRunning;
}

// ---------------------------------------------------------------------------------------------
// Running code

bool HostPython::runText(const std::string &text, const std::string &source)
{
    if (!start())
        return false;
    gz_py::RunGuard guard;
    try
    {
        py::dict globals = mainNamespace();
        execIn(text, source, globals);
        return true;
    }
    catch (py::error_already_set &e)
    {
        return reportRunError(e);
    }
}

bool HostPython::runFile(const std::string &path, const std::vector<std::string> &args,
                         std::string &error)
{
    std::string text;
    if (!HostReader::readFile(path, text))
    {
        error = "cannot read " + path;
        return false;
    }
    if (!start())
    {
        error = "the interpreter is not running";
        return false;
    }
    gz_py::RunGuard guard;
    try
    {
        py::list argv;
        argv.append(path);
        for (const std::string &arg : args)
            argv.append(arg);
        py::module_::import("sys").attr("argv") = argv;
        py::dict globals = mainNamespace();
        globals["__file__"] = path;
        execIn(text, path, globals);
        return true;
    }
    catch (py::error_already_set &e)
    {
        return reportRunError(e);
    }
}

// ---------------------------------------------------------------------------------------------
// Callbacks

std::string HostPython::literal(const HostExprValue &value)
{
    if (!value.myIsString)
    {
        if (std::isnan(value.myNumber))
            return "float('nan')";
        if (std::isinf(value.myNumber))
            return value.myNumber > 0 ? "float('inf')" : "float('-inf')";
        return HostExpression::formatNumber(value.myNumber);
    }
    std::string quoted = "'";
    for (unsigned char c : value.myString)
    {
        switch (c)
        {
        case '\\':
            quoted += "\\\\";
            break;
        case '\'':
            quoted += "\\'";
            break;
        case '\n':
            quoted += "\\n";
            break;
        case '\r':
            quoted += "\\r";
            break;
        case '\t':
            quoted += "\\t";
            break;
        default:
            if (c < 0x20 || c == 0x7f)
            {
                char escaped[8];
                std::snprintf(escaped, sizeof escaped, "\\x%02x", c);
                quoted += escaped;
            }
            else
                quoted += static_cast<char>(c);
        }
    }
    return quoted + "'";
}

std::string HostPython::kwargsStatement(const HostNode &node, const std::string &parm_name,
                                        const std::vector<Option> &options)
{
    const std::string path = node.getFullPath();
    std::string text = "kwargs = {'node': zum.node(" + literal(HostExprValue::string(path)) + ")";
    if (!parm_name.empty())
        text +=
            ", 'parm': zum.parm(" + literal(HostExprValue::string(path + "/" + parm_name)) + ")";
    for (const Option &option : options)
        text += ", " + literal(HostExprValue::string(option.first)) + ": " + literal(option.second);
    return text + "}";
}

bool HostPython::runCallback(HostNode &node, const std::string &parm_name,
                             const std::vector<Option> &options, const std::string &text,
                             const std::string &source, std::string &errors)
{
    errors.clear();
    if (!start())
    {
        errors = "Error setting kwargs:\nthe interpreter is not running\n";
        return false;
    }
    HostDirector *director = node.getDirector();
    // Kept by id: the callback may delete the previous current node (its own, say).
    HostNode *previous = director->getCurrentNode();
    const int previous_id = previous ? previous->getUniqueId() : -1;
    director->setCurrentNode(&node);
    const std::string kwargs = kwargsStatement(node, parm_name, options);
    bool ok = false;
    {
        gz_py::RunGuard guard;
        py::dict globals = freshNamespace("__main__");
        const char *stage = "Error setting kwargs:\n";
        try
        {
            execIn(kwargs, "<kwargs>", globals);
            stage = "Error running callback:\n";
            execIn(text, source, globals);
            ok = true;
        }
        catch (py::error_already_set &e)
        {
            errors = stage + gz_py::exceptionTraceback(e);
        }
    }
    director->setCurrentNode(previous_id >= 0 ? director->findNodeById(previous_id) : nullptr);
    return ok;
}

// ---------------------------------------------------------------------------------------------
// Handles and states on the search path

bool HostPython::registerResourceFile(const std::string &path, const std::string &label,
                                      bool is_state)
{
    const char *factory = is_state ? "createViewerStateTemplate" : "createViewerHandleTemplate";
    std::string text;
    if (!HostReader::readFile(path, text))
    {
        hostErr() << label << ": cannot read\n";
        return false;
    }
    if (!start())
        return false;
    gz_py::RunGuard guard;
    try
    {
        py::dict globals = freshNamespace(fs::path(path).stem().string());
        globals["__file__"] = path;
        execIn(text, label, globals);
        if (!globals.contains(factory))
        {
            hostErr() << label << ": defines no " << factory << "()\n";
            return false;
        }
        py::object made = globals[factory]();
        if (!py::hasattr(made, "register"))
        {
            hostErr() << label << ": " << factory << "() returned no template\n";
            return false;
        }
        made.attr("register")();
        return true;
    }
    catch (py::error_already_set &e)
    {
        hostErr() << label << ": cannot register:\n" << gz_py::exceptionTraceback(e);
        return false;
    }
}

int HostPython::registerSearchPathResources()
{
    int registered = 0;
    for (const bool is_state : {false, true})
    {
        const char *subdir = is_state ? "viewer_states" : "viewer_handles";
        for (const std::string &file : searchPathFiles(subdir))
        {
            const std::string label =
                std::string(subdir) + "/" + fs::path(file).filename().string();
            registered += registerResourceFile(file, label, is_state) ? 1 : 0;
        }
    }
    return registered;
}
