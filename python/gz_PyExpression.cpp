// gz_PyExpression: evaluates scripting-language parameter expressions, compiled once per text.
#include "python/gz_PyRuntime.h"

#include "host/HostExpression.h"
#include "host/HostParm.h"
#include "host/HostScriptEvaluator.h"

#include <pybind11/embed.h>

#include <memory>
#include <string>
#include <unordered_map>

namespace py = pybind11;

namespace gz_py
{
namespace
{
/// Nested expression evaluations (an expression reading a parameter whose expression reads
/// another...) are limited as the host's own expressions are, which stops cycles long
/// before the machine stack would overflow.
constexpr int theMaxNesting = HostExpression::theMaxNesting;

/// The evaluator the host calls. Expressions run in one namespace of their own, which holds
/// zum and, for short expressions, its names for the evaluation's place and time: pwd(),
/// ch(), frame(), time(). Each text is compiled once; the code objects are kept by text.
class Evaluator : public HostScriptEvaluator
{
public:
    Evaluator()
    {
        py::module_ zum = py::module_::import("zum");
        myGlobals["__builtins__"] = py::module_::import("builtins");
        myGlobals["zum"] = zum;
        for (const char *name : {"pwd", "ch", "frame", "time", "fps"})
            myGlobals[name] = zum.attr(name);
    }

    bool evaluate(const HostParm &parm, const std::string &text, double time, HostExprValue &value,
                  std::string &error) override
    {
        if (myDepth >= theMaxNesting)
        {
            error = "Python expressions nested too deeply";
            return false;
        }
        ++myDepth;
        pushEvalFrame({parm.getNode(), time});
        RunGuard guard(/*interruptible=*/false);
        bool ok = false;
        try
        {
            ok = convert(evalCode(code(text)), value, error);
        }
        catch (py::error_already_set &e)
        {
            error = exceptionLine(e);
        }
        catch (const std::exception &e)
        {
            error = e.what();
        }
        popEvalFrame();
        --myDepth;
        return ok;
    }

private:
    /// The compiled form of `text`; a text that does not compile raises on every use (it
    /// is not kept: the syntax error must be reported each time).
    const py::object &code(const std::string &text)
    {
        auto it = myCode.find(text);
        if (it != myCode.end())
            return it->second;
        if (myCode.size() >= 4096)
            myCode.clear();
        py::object compiled = myCompile(text, "<expression>", "eval");
        return myCode.emplace(text, std::move(compiled)).first->second;
    }

    py::object evalCode(const py::object &code)
    {
        PyObject *result = PyEval_EvalCode(code.ptr(), myGlobals.ptr(), myGlobals.ptr());
        if (!result)
            throw py::error_already_set();
        return py::reinterpret_steal<py::object>(result);
    }

    /// Numbers (bool and int included) and strings are values; anything else is an error.
    static bool convert(const py::object &result, HostExprValue &value, std::string &error)
    {
        if (py::isinstance<py::str>(result))
        {
            value = HostExprValue::string(result.cast<std::string>());
            return true;
        }
        if (PyFloat_Check(result.ptr()) || PyLong_Check(result.ptr()))
        {
            value = HostExprValue::number(PyFloat_AsDouble(result.ptr()));
            if (!PyErr_Occurred())
                return true;
            throw py::error_already_set();
        }
        error = "Python expression gave " +
                py::str(result.get_type().attr("__name__")).cast<std::string>() +
                ", not a number or a string";
        return false;
    }

    py::dict myGlobals;
    py::object myCompile = py::module_::import("builtins").attr("compile");
    std::unordered_map<std::string, py::object> myCode;
    int myDepth = 0;
};

std::unique_ptr<Evaluator> theEvaluator;
} // namespace

void installExpressionEvaluator()
{
    theEvaluator = std::make_unique<Evaluator>();
    HostScriptEvaluator::install(theEvaluator.get());
}

void removeExpressionEvaluator()
{
    HostScriptEvaluator::install(nullptr);
    theEvaluator.reset();
}
} // namespace gz_py
