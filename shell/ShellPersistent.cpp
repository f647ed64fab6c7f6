// ShellPersistent: clearing persistent handles and groups with the scene.
#include "shell/ShellPersistent.h"

#include "host/HostDirector.h"
#include "host/HostUndoManager.h"
#include "persistent/GZ_Manager.h"

void ShellPersistent::clear(HostDirector &director)
{
    GZ_Manager *manager = GZgetManager();
    HostUndoManager &undo = director.getUndoManager();
    undo.disable();
    manager->removeAllGZs();
    for (int i = manager->getNumGroups() - 1; i >= 0; --i)
        manager->removeGroup(manager->getGroup(i));
    undo.enable();
}
