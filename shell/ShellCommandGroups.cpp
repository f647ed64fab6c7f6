// ShellCommandGroups: the list of gzsh's command groups.
#include "shell/ShellCommand.h"

const std::vector<ShellCommandGroup> &shellCommandGroups()
{
    static const std::vector<ShellCommandGroup> theGroups = {
        &shellHostCommands,
        &shellChannelCommands,
        &shellStateCommands,
        &shellHandleCommands,
        &shellHandleOpCommands,
        &shellPythonCommands,
        &shellSpareCommands,
        &shellOpTypeCommands,
    };
    return theGroups;
}
