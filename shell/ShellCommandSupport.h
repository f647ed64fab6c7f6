// ShellCommandSupport: the checks and the undo step every command handler shares.
#pragma once

#include "host/HostCommandArgs.h"

#include <string>

class HostNode;
class HostUndoManager;
class Shell;

/// Checks the argument count (command name included); `most` < 0 means no upper bound. On a
/// wrong count it reports and shows the usage.
bool shellCheckCount(const HostCommandArgs &args, int least, int most);
/// Reports a wrong argument count and shows the usage; returns false.
bool shellReportCount(const HostCommandArgs &args);

/// The node at `path`, or null after reporting "COMMAND: unknown node PATH".
HostNode *shellFindNode(Shell &shell, const HostCommandArgs &args, const std::string &path);

/// Runs the callback of the parameter (or channel) `name` of `node` after parmset changed it,
/// as the host does when a user sets a value; a parameter without a callback does nothing.
void shellRunSetCallback(Shell &shell, HostNode &node, const std::string &name);

/// One undo step named after the command, for the handler's lifetime; a command that records
/// nothing leaves no step.
class ShellUndoBlock
{
public:
    ShellUndoBlock(Shell &shell, const HostCommandArgs &args);
    ~ShellUndoBlock();
    ShellUndoBlock(const ShellUndoBlock &) = delete;
    ShellUndoBlock &operator=(const ShellUndoBlock &) = delete;

private:
    HostUndoManager &myUndo;
    int myId;
};
