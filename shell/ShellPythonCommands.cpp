// ShellPythonCommands: the python command, and gzsh's use of the embedded interpreter.
#include "shell/Shell.h"
#include "shell/ShellCommand.h"
#include "shell/ShellCommandSupport.h"
#include "shell/ShellScripting.h"

#include "persistent/GZ_ScriptOperator.h"

#if GZ_WITH_PYTHON
#include "python/HostPython.h"
#endif

#include <ostream>

namespace
{
bool theEnabled = false;

/// python [-c TEXT] [FILE [ARGS...]]: runs Python in gzsh's interpreter. An exception prints
/// its traceback on the error stream; the script that ran the command goes on.
void cmdPython(Shell &, HostCommandArgs &args)
{
    if (!args.found('c') && args.argc() < 2)
    {
        args.err() << "python: give -c TEXT or a FILE\n";
        args.showUsage();
        return;
    }
    if (!ShellScripting::isOn())
    {
        args.err() << "python: " << ShellScripting::offReason() << "\n";
        return;
    }
    if (args.found('c'))
        ShellScripting::runText(args.argp('c'));
    if (args.argc() < 2)
        return;
    std::string path, error;
    if (!Shell::findScript(args.arg(1), path))
    {
        args.err() << "python: cannot find " << args.arg(1) << "\n";
        return;
    }
    std::vector<std::string> file_args(args.args().begin() + 2, args.args().end());
    if (!ShellScripting::runFile(path, file_args, error) && !error.empty())
        args.err() << "python: " << error << "\n";
}
} // namespace

std::vector<ShellCommand> shellPythonCommands()
{
    return {
        {"python", "c:", "python [-c TEXT] [FILE [ARGS...]]", &cmdPython, true,
         "Runs Python in gzsh's interpreter: TEXT, then FILE (found as given, else on the search "
         "path) with sys.argv = FILE and ARGS.",
         "-c TEXT  run TEXT first"},
    };
}

bool ShellScripting::isPythonFile(const std::string &path)
{
    return path.size() > 3 && path.compare(path.size() - 3, 3, ".py") == 0;
}

#if GZ_WITH_PYTHON

bool ShellScripting::isBuilt()
{
    return true;
}

bool ShellScripting::isOn()
{
    return theEnabled && HostPython::isRunning();
}

void ShellScripting::start(bool enabled)
{
    theEnabled = enabled;
    if (!enabled || !HostPython::start())
        return;
    HostPython::registerSearchPathResources();
    // The library reaches the interpreter only through this hook, so it keeps no tie to it.
    GZ_ScriptOperator::setScriptRunner(&HostPython::runCallback);
}

void ShellScripting::stop()
{
    GZ_ScriptOperator::setScriptRunner(nullptr);
    HostPython::stop();
}

const char *ShellScripting::offReason()
{
    return theEnabled ? "the interpreter did not start" : "scripting is off (gzsh -n)";
}

bool ShellScripting::runFile(const std::string &path, const std::vector<std::string> &args,
                             std::string &error)
{
    if (!isOn())
    {
        error = offReason();
        return false;
    }
    return HostPython::runFile(path, args, error);
}

bool ShellScripting::runText(const std::string &text)
{
    return isOn() && HostPython::runText(text, "<string>");
}

#else

bool ShellScripting::isBuilt()
{
    return false;
}

bool ShellScripting::isOn()
{
    return false;
}

void ShellScripting::start(bool enabled)
{
    theEnabled = enabled;
}

void ShellScripting::stop() {}

const char *ShellScripting::offReason()
{
    return theEnabled ? "this gzsh is built without Python" : "scripting is off (gzsh -n)";
}

bool ShellScripting::runFile(const std::string &, const std::vector<std::string> &,
                             std::string &error)
{
    error = offReason();
    return false;
}

bool ShellScripting::runText(const std::string &)
{
    return false;
}

#endif
