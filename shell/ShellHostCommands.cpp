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
    if (!shellCheckCount(args, 3, 3))
        return;
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
    if (!shellCheckCount(args, 2, -1))
        return;
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
    if (!shellCheckCount(args, 3, 3))
        return;
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
    if (!shellCheckCount(args, 1, 2))
        return;
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
    if (!shellCheckCount(args, 4, -1))
        return;
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
        return;
    }
    if (!ShellParmAccess::set(*node, args.arg(2), values, error))
        args.err() << "parmset: " << error << "\n";
}

void cmdParmGet(Shell &shell, HostCommandArgs &args)
{
    if (!shellCheckCount(args, 3, 3))
        return;
    HostNode *node = shellFindNode(shell, args, args.arg(1));
    if (!node)
        return;
    std::string text, error;
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
    if (!shellCheckCount(args, 1, 2))
        return;
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
    if (!shellCheckCount(args, 1, 1))
        return;
    if (!shell.director().getUndoManager().undo())
        args.err() << "undo: nothing to undo\n";
}

void cmdRedo(Shell &shell, HostCommandArgs &args)
{
    if (!shellCheckCount(args, 1, 1))
        return;
    if (!shell.director().getUndoManager().redo())
        args.err() << "redo: nothing to redo\n";
}

void cmdSceneNew(Shell &shell, HostCommandArgs &args)
{
    if (!shellCheckCount(args, 1, 1))
        return;
    ShellScene::clear(shell.director());
}

void cmdSceneSave(Shell &shell, HostCommandArgs &args)
{
    if (!shellCheckCount(args, 2, 2))
        return;
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
    if (!shellCheckCount(args, 2, 2))
        return;
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
    if (!shellCheckCount(args, 2, 2))
        return;
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

void cmdHelp(Shell &shell, HostCommandArgs &args)
{
    if (!shellCheckCount(args, 1, 2))
        return;
    HostCommandManager &commands = shell.commands();
    if (args.argc() == 2)
    {
        if (!commands.isInstalled(args.arg(1)))
        {
            args.err() << "help: unknown command " << args.arg(1) << "\n";
            return;
        }
        args.out() << commands.usage(args.arg(1)) << "\n";
        return;
    }
    for (const std::string &name : commands.commandNames())
        args.out() << commands.usage(name) << "\n";
}

void cmdExit(Shell &shell, HostCommandArgs &args)
{
    if (!shellCheckCount(args, 1, 1))
        return;
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
    if (!shellCheckCount(args, 2, -1))
        return;
    for (int i = 1; i < args.argc(); ++i)
        if (!shell.commands().unsetVariable(args.arg(i)))
            args.err() << "unset: " << args.arg(i) << " is not set\n";
}
} // namespace

std::vector<ShellCommand> shellHostCommands()
{
    return {
        {"nodeadd", "", "nodeadd TYPE PATH", &cmdNodeAdd},
        {"noderm", "", "noderm PATH...", &cmdNodeRm},
        {"nodemv", "", "nodemv PATH NEWNAME", &cmdNodeMv},
        {"nodels", "", "nodels [PATH]", &cmdNodeLs},
        {"parmset", "ep", "parmset [-e|-p] PATH PARM VALUE...", &cmdParmSet},
        {"parmget", "", "parmget PATH CHANNEL", &cmdParmGet},
        {"tcur", "", "tcur [SECONDS]", &cmdTcur},
        {"undo", "", "undo", &cmdUndo},
        {"redo", "", "redo", &cmdRedo},
        {"scenenew", "", "scenenew", &cmdSceneNew},
        {"scenesave", "", "scenesave FILE", &cmdSceneSave, /*allowedWhileLoading=*/false},
        {"sceneload", "", "sceneload FILE", &cmdSceneLoad, /*allowedWhileLoading=*/false},
        {"source", "", "source FILE", &cmdSource},
        {"echo", "", "echo [WORDS...]", &cmdEcho},
        {"help", "", "help [COMMAND]", &cmdHelp},
        {"exit", "", "exit", &cmdExit, /*allowedWhileLoading=*/false},
        {"set", "", "set [NAME [VALUE...]]", &cmdSet},
        {"unset", "", "unset NAME...", &cmdUnset},
    };
}
