// ShellHandleOpCommands: gzsh's handle menu operations on a node's bound handle, and the
// parameter cache periods that batch their keys and scopes.
#include "shell/Shell.h"
#include "shell/ShellCommand.h"
#include "shell/ShellCommandSupport.h"
#include "shell/ShellHandle.h"
#include "shell/ShellResourceManager.h"

#include "host/HostNode.h"
#include "link/GZ_OpHandleLink.h"

#include <memory>
#include <ostream>
#include <string>

namespace
{

/// One entry of a handle's menu, acting on every node of the link.
struct HandleOperation
{
    const char *myName;
    void (*myRun)(GZ_OpHandleLink &link);
};

const HandleOperation theOperations[] = {
    {"setkeys", [](GZ_OpHandleLink &link) { link.setKeys(-1, -1, -1); }},
    {"removekeys", [](GZ_OpHandleLink &link) { link.removeKeys(-1); }},
    {"deletechannels", [](GZ_OpHandleLink &link) { link.deleteChannels(-1); }},
    {"lock", [](GZ_OpHandleLink &link) { link.lockParms(-1); }},
    {"revert", [](GZ_OpHandleLink &link) { link.revertToDefaults(-1); }},
    {"factory", [](GZ_OpHandleLink &link) { link.revertToFactoryDefaults(-1); }},
    {"overwrite", [](GZ_OpHandleLink &link) { link.overwriteDefaults(-1); }},
    {"scope", [](GZ_OpHandleLink &link) { link.editChannels(0, -1); }},
    {"scopeadd", [](GZ_OpHandleLink &link) { link.editChannels(1, -1); }},
    {"nextkey", [](GZ_OpHandleLink &link) { link.findKey(1, -1); }},
    {"prevkey", [](GZ_OpHandleLink &link) { link.findKey(-1, -1); }},
};

const HandleOperation *findOperation(const std::string &name)
{
    for (const HandleOperation &op : theOperations)
    {
        if (name == op.myName)
            return &op;
    }
    return nullptr;
}

// handleop OPERATION NODEPATH DESCRIPTION
void cmdHandleOp(Shell &shell, HostCommandArgs &args)
{
    const HandleOperation *op = findOperation(args.arg(1));
    if (!op)
    {
        args.err() << "handleop: unknown operation " << args.arg(1) << "\n";
        return;
    }
    HostNode *node = shellFindNode(shell, args, args.arg(2));
    if (!node)
        return;
    std::unique_ptr<ShellHandle> link =
        ShellHandle::create(*node, args.arg(3), args.commandName(), args.err());
    if (!link)
        return;
    // The operation opens its own undo block, which is the whole undo step.
    op->myRun(*link);
}

// parmcache begin|end
void cmdParmCache(Shell &shell, HostCommandArgs &args)
{
    if (args.arg(1) == "begin")
    {
        ShellResourceManager::beginParmsCache();
        return;
    }
    if (args.arg(1) != "end")
    {
        args.err() << "parmcache: expected begin or end, not " << args.arg(1) << "\n";
        args.showUsage();
        return;
    }
    ShellUndoBlock block(shell, args);
    if (!ShellResourceManager::endParmsCache(shell.director()))
        args.err() << "parmcache: no cache period is open\n";
}

} // namespace

std::vector<ShellCommand> shellHandleOpCommands()
{
    return {
        {"handleop", "", "handleop OPERATION NODEPATH DESCRIPTION", &cmdHandleOp, true,
         "Runs an entry of a handle's menu on the node at NODEPATH through the handle a tool would "
         "show for it.",
         "", 4, 4},
        {"parmcache", "", "parmcache begin|end", &cmdParmCache, true,
         "Opens and closes a parameter cache period, in which handle operations collect the "
         "channels they would key or scope instead of doing it.",
         "", 2, 2},
    };
}
