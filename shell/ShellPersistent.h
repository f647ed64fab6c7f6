// ShellPersistent: gzsh's side of persistent handles beyond the pom* commands.
#pragma once

class HostDirector;

/// What gzsh does with the library's persistent handles beyond the pom* commands (which the
/// library installs itself): it empties them with the scene. The drag commands that drive
/// them by name live with the other handle commands.
class ShellPersistent
{
public:
    /// Deletes every persistent handle and group without leaving undo steps: a new or
    /// loaded scene starts without them.
    static void clear(HostDirector &director);
};
