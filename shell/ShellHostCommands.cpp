// ShellHostCommands: gzsh's host commands — nodes, parameters, time, undo, scenes, files.
#include "shell/Shell.h"
#include "shell/ShellChannels.h"
#include "shell/ShellCommand.h"
#include "shell/ShellCommandSupport.h"
#include "shell/ShellNodeUndo.h"
#include "shell/ShellParmAccess.h"
#include "shell/ShellPersistent.h"
#include "shell/ShellScene.h"

#include "host/HostChannelManager.h"
#include "host/HostCommandManager.h"
#include "host/HostDirector.h"
#include "host/HostNetwork.h"
#include "host/HostNode.h"
#include "host/HostParm.h"
#include "host/HostParmList.h"
#include "host/HostReader.h"
#include "host/HostRenameRepair.h"

#include <cstdio>
#include <fstream>
#include <memory>
#include <ostream>
#include <sstream>

namespace
{

std::string formatG(double value)
{
    char text[40];
    std::snprintf(text, sizeof(text), "%g", value);
    return text;
}

// Reads a script for source and sceneload; reports and returns false when it cannot.
bool readScript(const HostCommandArgs &args, const std::string &name, std::string &text)
{
    std::string path;
    if (Shell::findScript(name, path) && HostReader::readFile(path, text))
        return true;
    args.err() << args.commandName() << ": cannot read " << name << "\n";
    return false;
}

std::string baseName(const std::string &path)
{
    size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

void cmdNodeAdd(Shell &shell, HostCommandArgs &args)
{
    ShellUndoBlock block(shell, args);
    std::string error;
    HostNode *node = shell.director().createNode(args.arg(1), args.arg(2), &error);
    if (!node)
    {
        args.err() << "nodeadd: " << (error.empty() ? "cannot create " + args.arg(2) : error)
                   << "\n";
        return;
    }
    shell.director().getUndoManager().addToUndoBlock(
        std::make_unique<ShellUndoNodeCreate>(shell.director(), *node));
}

void cmdNodeRm(Shell &shell, HostCommandArgs &args)
{
    ShellUndoBlock block(shell, args);
    HostDirector &director = shell.director();
    for (int i = 1; i < args.argc(); ++i)
    {
        HostNode *node = shellFindNode(shell, args, args.arg(i));
        if (!node)
            continue;
        if (!node->getOperator())
        {
            args.err() << "noderm: cannot delete " << args.arg(i) << "\n";
            continue;
        }
        auto record = std::make_unique<ShellUndoNodeDelete>(director, *node);
        if (!director.deleteNode(node))
        {
            args.err() << "noderm: cannot delete " << args.arg(i) << "\n";
            continue;
        }
        director.getUndoManager().addToUndoBlock(std::move(record));
    }
}

void cmdNodeMv(Shell &shell, HostCommandArgs &args)
{
    HostNode *node = shellFindNode(shell, args, args.arg(1));
    if (!node)
        return;
    if (!node->getOperator())
    {
        args.err() << "nodemv: cannot rename " << args.arg(1) << "\n";
        return;
    }
    if (node->getName() == args.arg(2))
        return;
    ShellUndoBlock block(shell, args);
    HostDirector &director = shell.director();
    auto record = std::make_unique<ShellUndoNodeRename>(director, *node, args.arg(2));
    // Found while the old paths still resolve; written once the new name is in place.
    const HostRenameRepair repair(*node, args.arg(2));
    std::string error;
    if (!director.renameNode(node, args.arg(2), &error))
    {
        args.err() << "nodemv: "
                   << (error.empty() ? "cannot rename " + args.arg(1) + " to " + args.arg(2)
                                     : error)
                   << "\n";
        return;
    }
    director.getUndoManager().addToUndoBlock(std::move(record));
    std::vector<std::string> warnings;
    repair.apply(director.getTime(), warnings);
    for (const std::string &warning : warnings)
        args.err() << "nodemv: " << warning << "\n";
}

void cmdNodeLs(Shell &shell, HostCommandArgs &args)
{
    const std::string path = args.argc() > 1 ? args.arg(1) : "/";
    HostNode *node = shellFindNode(shell, args, path);
    if (!node)
        return;
    const HostNetwork *children = node->getChildNetwork();
    if (!children)
    {
        args.err() << "nodels: " << path << " cannot have children\n";
        return;
    }
    for (int i = 0; i < children->getNumNodes(); ++i)
        args.out() << children->getNode(i)->getName() << "\n";
}

void cmdParmSet(Shell &shell, HostCommandArgs &args)
{
    HostNode *node = shellFindNode(shell, args, args.arg(1));
    if (!node)
        return;
    ShellUndoBlock block(shell, args);
    std::vector<std::string> values(args.args().begin() + 3, args.args().end());
    std::string error;
    if (args.found('e') || args.found('p'))
    {
        const HostStringMeaning language =
            args.found('p') ? HOST_STRING_SCRIPT : HOST_STRING_EXPRESSION;
        if (!ShellChannels::setExpressions(*node, args.arg(2), values, language, error))
            args.err() << "parmset: " << error << "\n";
        else
            shellRunSetCallback(shell, *node, args.arg(2));
        return;
    }
    HostParm *multi = node->getParm(args.arg(2));
    double count = 0;
    if (multi && multi->hasInstances() && values.size() == 1 &&
        ShellParmAccess::parseNumber(values[0], count))
    {
        // A multiparm's (or ramp's) value is its number of instances.
        if (!node->getParmList().setInstanceCount(*multi, static_cast<int>(count)))
            args.err() << "parmset: cannot give " << args.arg(2) << " " << values[0]
                       << " instances\n";
        return;
    }
    if (!ShellParmAccess::set(*node, args.arg(2), values, error))
        args.err() << "parmset: " << error << "\n";
    else
        shellRunSetCallback(shell, *node, args.arg(2));
}

void cmdParmGet(Shell &shell, HostCommandArgs &args)
{
    HostNode *node = shellFindNode(shell, args, args.arg(1));
    if (!node)
        return;
    std::string text, error;
    HostNode *owner = nullptr;
    HostParm *parm = nullptr;
    int k = -1;
    if (args.found('e') && node->resolveChannel(args.arg(2), owner, parm, k) &&
        parm->hasExpression(k))
    {
        args.out() << parm->getExpression(k) << "\n";
        return;
    }
    HostChannelManager::get().takeEvalErrors(); // report only what this evaluation finds
    if (!ShellParmAccess::get(*node, args.arg(2), shell.director().getTime(), text, error))
    {
        args.err() << "parmget: " << error << "\n";
        return;
    }
    args.out() << text << "\n";
    for (const std::string &message : HostChannelManager::get().takeEvalErrors())
        args.err() << "parmget: " << message << "\n";
}

void cmdTcur(Shell &shell, HostCommandArgs &args)
{
    if (args.argc() == 1)
    {
        args.out() << formatG(shell.director().getTime()) << "\n";
        return;
    }
    double seconds = 0.0;
    if (!ShellParmAccess::parseNumber(args.arg(1), seconds))
    {
        args.err() << "tcur: not a number: " << args.arg(1) << "\n";
        return;
    }
    shell.director().setTime(seconds);
}

void cmdUndo(Shell &shell, HostCommandArgs &args)
{
    if (!shell.director().getUndoManager().undo())
        args.err() << "undo: nothing to undo\n";
}

void cmdRedo(Shell &shell, HostCommandArgs &args)
{
    if (!shell.director().getUndoManager().redo())
        args.err() << "redo: nothing to redo\n";
}

void cmdSceneNew(Shell &shell, HostCommandArgs &)
{
    ShellScene::clear(shell.director());
}

void cmdSceneSave(Shell &shell, HostCommandArgs &args)
{
    std::ostringstream text;
    HostErrorSeverity severity = ShellScene::write(text, shell.director());
    if (severity >= HOST_ERR_WARNING)
        args.err() << "scenesave: the library could not save its part of the scene\n";
    std::ofstream file(args.arg(1), std::ios::binary | std::ios::trunc);
    if (!file || !(file << text.str()) || !file.flush())
        args.err() << "scenesave: cannot write " << args.arg(1) << "\n";
}

void cmdSceneLoad(Shell &shell, HostCommandArgs &args)
{
    std::string text;
    if (!readScript(args, args.arg(1), text))
        return;
    HostDirector &director = shell.director();
    HostCommandManager &commands = shell.commands();
    ShellScene::clear(director);
    const bool was_loading = director.isLoading();
    const bool commands_loading = commands.isLoading();
    director.setLoading(true);
    commands.setLoading(true);
    director.getUndoManager().disable();
    HostExecOptions options;
    options.source = baseName(args.arg(1));
    options.locateCommandErrors = true;
    commands.execute(text, options);
    director.getUndoManager().enable();
    commands.setLoading(commands_loading);
    director.setLoading(was_loading);
}

void cmdSource(Shell &shell, HostCommandArgs &args)
{
    std::string text;
    if (!readScript(args, args.arg(1), text))
        return;
    HostExecOptions options;
    options.source = baseName(args.arg(1));
    options.locateCommandErrors = true;
    shell.commands().execute(text, options);
}

void cmdEcho(Shell &, HostCommandArgs &args)
{
    for (int i = 1; i < args.argc(); ++i)
        args.out() << (i > 1 ? " " : "") << args.arg(i);
    args.out() << "\n";
}

/// The synopsis of a command, the sentence on what it does, and its option lines indented.
void writeHelp(const HostCommandManager &commands, const std::string &name, std::ostream &os)
{
    os << commands.usage(name) << "\n";
    const std::string summary = commands.summary(name);
    if (!summary.empty())
        os << summary << "\n";
    std::istringstream options(commands.optionHelp(name));
    for (std::string line; std::getline(options, line);)
        os << "  " << line << "\n";
}

void cmdHelp(Shell &shell, HostCommandArgs &args)
{
    HostCommandManager &commands = shell.commands();
    if (args.argc() == 2)
    {
        if (!commands.isInstalled(args.arg(1)))
        {
            args.err() << "help: unknown command " << args.arg(1) << "\n";
            return;
        }
        writeHelp(commands, args.arg(1), args.out());
        return;
    }
    for (const std::string &name : commands.commandNames())
        args.out() << commands.usage(name) << "\n";
}

void cmdExit(Shell &shell, HostCommandArgs &)
{
    shell.commands().requestExit();
}

void cmdSet(Shell &shell, HostCommandArgs &args)
{
    HostCommandManager &commands = shell.commands();
    if (args.argc() == 1)
    {
        for (const auto &variable : commands.variables())
            args.out() << "set " << variable.first << " "
                       << HostCommandManager::protectString(variable.second) << "\n";
        return;
    }
    if (!HostCommandManager::isValidVariableName(args.arg(1)))
    {
        args.err() << "set: invalid variable name " << args.arg(1) << "\n";
        return;
    }
    std::string value;
    for (int i = 2; i < args.argc(); ++i)
        value += (i > 2 ? " " : "") + args.arg(i);
    commands.setVariable(args.arg(1), value);
}

void cmdUnset(Shell &shell, HostCommandArgs &args)
{
    for (int i = 1; i < args.argc(); ++i)
        if (!shell.commands().unsetVariable(args.arg(i)))
            args.err() << "unset: " << args.arg(i) << " is not set\n";
}
} // namespace

std::vector<ShellCommand> shellHostCommands()
{
    return {
        {"nodeadd", "", "nodeadd TYPE PATH", &cmdNodeAdd, true,
         "Creates a node of operator type TYPE at PATH.", "", 3, 3},
        {"noderm", "", "noderm PATH...", &cmdNodeRm, true,
         "Deletes each node with everything inside it, in order; one undo step for all.", "", 2,
         -1},
        {"nodemv", "", "nodemv PATH NEWNAME", &cmdNodeMv, true,
         "Renames a node; the node's listeners get the renamed event with the old name.", "", 3, 3},
        {"nodels", "", "nodels [PATH]", &cmdNodeLs, true,
         "Writes the names of PATH's children (default /), one per line, in creation order.", "", 1,
         2},
        {"parmset", "ep", "parmset [-e|-p] PATH PARM VALUE...", &cmdParmSet, true,
         "Sets a parameter.",
         "-e  the values are expressions of the host's expression language\n-p  the values are "
         "expressions of the scripting language",
         4, -1},
        {"parmget", "e", "parmget [-e] PATH CHANNEL", &cmdParmGet, true,
         "Writes the value of a channel (or of a parameter's first component) at the current "
         "time.",
         "-e  write the channel's expression instead, when it has one", 3, 3},
        {"tcur", "", "tcur [SECONDS]", &cmdTcur, true,
         "Without an argument writes the current time in seconds (%g); with one, sets it.", "", 1,
         2},
        {"undo", "", "undo", &cmdUndo, true, "Undoes the last step.", "", 1, 1},
        {"redo", "", "redo", &cmdRedo, true, "Redoes the last undone one.", "", 1, 1},
        {"scenenew", "", "scenenew", &cmdSceneNew, true,
         "Deletes every node, resets the time and clears the undo history.", "", 1, 1},
        {"scenesave", "", "scenesave FILE", &cmdSceneSave, /*allowedWhileLoading=*/false,
         "Writes the scene to FILE as commands.", "", 2, 2},
        {"sceneload", "", "sceneload FILE", &cmdSceneLoad, /*allowedWhileLoading=*/false,
         "Reads FILE (as given, else on the search path), clears the scene as scenenew does, and "
         "runs FILE with the loading flag set and undo off, so the loaded scene starts with no "
         "history.",
         "", 2, 2},
        {"source", "", "source FILE", &cmdSource, true,
         "Runs the commands of FILE (as given, else on the search path; any stream, /dev/stdin "
         "too).",
         "", 2, 2},
        {"echo", "", "echo [WORDS...]", &cmdEcho, true,
         "Writes the words separated by one blank, then a newline."},
        {"help", "", "help [COMMAND]", &cmdHelp, true,
         "Without an argument writes the synopsis of every command, host and library, sorted by "
         "name, one per line; with one, that command's synopsis, what it does and its options.",
         "", 1, 2},
        {"exit", "", "exit", &cmdExit, /*allowedWhileLoading=*/false,
         "Stops gzsh: the current script, every script that ran it, and the remaining FILEs and -c "
         "text.",
         "", 1, 1},
        {"set", "", "set [NAME [VALUE...]]", &cmdSet, true,
         "Sets the variable NAME to the values joined by single blanks."},
        {"unset", "", "unset NAME...", &cmdUnset, true, "Removes variables.", "", 2, -1},
    };
}
