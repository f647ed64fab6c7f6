// ShellCommandSupport: argument checks, node lookup and the per-command undo step.
#include "shell/ShellCommandSupport.h"

#include "host/HostDirector.h"
#include "host/HostUndoManager.h"
#include "shell/Shell.h"

#include <ostream>

bool shellCheckCount(const HostCommandArgs &args, int least, int most)
{
    if (args.argc() >= least && (most < 0 || args.argc() <= most))
        return true;
    return shellReportCount(args);
}

bool shellReportCount(const HostCommandArgs &args)
{
    args.err() << args.commandName() << ": wrong number of arguments\n";
    args.showUsage();
    return false;
}

HostNode *shellFindNode(Shell &shell, const HostCommandArgs &args, const std::string &path)
{
    // Relative paths start at the current node, which callbacks set to their own node.
    HostNode *node = shell.director().findNode(path, shell.director().getCurrentNode());
    if (!node)
        args.err() << args.commandName() << ": unknown node " << path << "\n";
    return node;
}

ShellUndoBlock::ShellUndoBlock(Shell &shell, const HostCommandArgs &args)
    : myUndo(shell.director().getUndoManager()),
      myId(myUndo.beginUndoBlock(args.commandName().c_str()))
{
}

ShellUndoBlock::~ShellUndoBlock()
{
    myUndo.endUndoBlock(myId);
}
