// ShellStateCommands: gzsh's commands about viewer states.
#include "shell/Shell.h"
#include "shell/ShellCommand.h"

#include "host/HostOperatorTable.h"
#include "resource/GZ_ResourceManager.h"
#include "resource/GZ_StateTemplate.h"

#include <ostream>

namespace
{

/// statels [-t TABLE] [-v VIEWER]: the states of one viewer type and network, in list order.
void cmdStateLs(Shell &, HostCommandArgs &args)
{
    GZ_ResourceManager *manager = GZgetResourceManager();
    if (!manager)
    {
        args.err() << args.commandName() << ": No resource manager\n";
        return;
    }

    const char *viewer_token = args.found('v') ? args.argp('v') : "SceneViewer";
    GZ_ViewerType viewer;
    if (!GZ_ResourceManager::getViewerType(viewer_token, viewer))
    {
        args.err() << args.commandName() << ": Unknown viewer type: " << viewer_token << "\n";
        return;
    }

    // Either name of a table will do ("Sop" or "SOP"); the manager knows tables by type name.
    const char *table_name = args.found('t') ? args.argp('t') : "Sop";
    const HostOperatorTable *table = HostOperatorTable::getTable(table_name);
    GZ_NetworkType network;
    if (!table || !GZ_ResourceManager::getNetworkType(table->getTypeName().c_str(), network))
    {
        args.err() << args.commandName() << ": Unknown operator table: " << table_name << "\n";
        return;
    }

    for (const GZ_StateTemplate *state : manager->stateList(viewer, network))
        args.out() << state->name() << "\n";
}

} // namespace

std::vector<ShellCommand> shellStateCommands()
{
    return {
        {"statels", "t:v:", "statels [-t TABLE] [-v VIEWER]", &cmdStateLs, true,
         "Writes the names of the states in the list of viewer type VIEWER.",
         "-t TABLE  the network, by table name (Sop) or type name (SOP); default Sop\n-v VIEWER  "
         "SceneViewer (the default), CompositeViewer or SceneGraphViewer",
         1, 1},
    };
}
