// ShellPersistent: gzsh's side of persistent handles — scene clearing and the drag commands.
#pragma once

#include "shell/ShellCommand.h"

#include <vector>

class HostDirector;

/// What gzsh does with the library's persistent handles beyond the pom* commands (which the
/// library installs itself): it empties them with the scene, and drives them by name from
/// the command line as the viewer's drag would.
class ShellPersistent
{
public:
    /// Deletes every persistent handle and group without leaving undo steps: a new or
    /// loaded scene starts without them.
    static void clear(HostDirector &director);
    /// handledrag -P and handleget -P.
    static std::vector<ShellCommand> commands();
};
