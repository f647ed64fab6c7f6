// GZ_Manager: the pom* commands that create, change, list and save persistent handles.
#include "persistent/GZ_Manager.h"

#include "host/HostCommandManager.h"
#include "host/HostCommandTable.h"
#include "host/HostNode.h"
#include "link/gz_UndoBlock.h"
#include "persistent/GZ_OHLPersistent.h"
#include "persistent/GZ_Undo.h"

#include <algorithm>
#include <cstdlib>
#include <ostream>
#include <strings.h>

namespace
{
// Argument counts exclude the command name (argument 0).
int numArgs(const HostCommandArgs &args)
{
    return args.argc() - 1;
}

GZ_OHLPersistent *findGZ(GZ_Manager &manager, const std::string &name)
{
    return manager.findGZ(name.c_str());
}

GZ_OHLGroup *findGroup(GZ_Manager &manager, const std::string &name)
{
    return manager.getGroup(manager.getGroupIndex(name.c_str()));
}

GZ_OHLPersistent *findGZOrReport(GZ_Manager &manager, HostCommandArgs &args,
                                 const std::string &name)
{
    GZ_OHLPersistent *handle = findGZ(manager, name);
    if (!handle)
        args.err() << "Unknown handle: " << name << "\n";
    return handle;
}

GZ_OHLGroup *findGroupOrReport(GZ_Manager &manager, HostCommandArgs &args, const std::string &name,
                               const char *message)
{
    GZ_OHLGroup *group = findGroup(manager, name);
    if (!group)
        args.err() << message << name << "\n";
    return group;
}

const char *const theUnknownGroup = "Unknown handle group: ";

/// Names with control characters are refused: undo keeps a handle's lines as one
/// ';'-separated command line, in which a newline inside a name would become a ';'.
bool acceptName(HostCommandArgs &args, const std::string &name)
{
    for (char ch : name)
    {
        const unsigned char c = static_cast<unsigned char>(ch);
        if (c < ' ' || c == 0x7f)
        {
            args.err() << args.arg(0) << ": a name cannot hold control characters\n";
            return false;
        }
    }
    return true;
}

/// An option's on/off value: missing or empty is off, "on" (any case) is on, anything else
/// is on exactly when its leading decimal integer is not zero ("off", "no" and "0" are off).
bool flagValue(const char *value)
{
    if (!value || !*value)
        return false;
    if (strcasecmp(value, "on") == 0)
        return true;
    return std::strtol(value, nullptr, 10) != 0;
}

const char *onOff(bool on)
{
    return on ? "on" : "off";
}

/// The options shared by pomadd and pomset, in their order of application. With `print`
/// and none of them given, writes the handle's state as a pomset line.
void applyOptions(GZ_OHLPersistent &handle, HostCommandArgs &args, bool print)
{
    if (args.found('e'))
        handle.setExpose(flagValue(args.argp('e')));
    if (args.found('p'))
        handle.setDisplayInParent(flagValue(args.argp('p')));
    if (args.found('c'))
        handle.setDisplayInChild(flagValue(args.argp('c')));
    if (args.found('s'))
        handle.setDisplayInSibling(flagValue(args.argp('s')));
    if (args.found('r'))
        handle.setActiveColor(
            HostColor(HostColor::RGB, args.fargp('r', 0), args.fargp('r', 1), args.fargp('r', 2)));
    if (args.found('m'))
        handle.setPaneMask(args.argp('m'));

    if (!print)
        return;
    for (char option : {'e', 'p', 'c', 's', 'r', 'm'})
        if (args.found(option))
            return;
    const HostColor &color = handle.getActiveColor();
    std::ostream &os = args.out();
    os << "pomset -e " << onOff(handle.getExpose()) << " -p " << onOff(handle.getDisplayInParent())
       << " -c " << onOff(handle.getDisplayInChild()) << " -s "
       << onOff(handle.getDisplayInSibling()) << " -r " << color.component(0) << " "
       << color.component(1) << " " << color.component(2);
    if (handle.getPaneMask() != "*")
        os << " -m " << handle.getPaneMask();
    os << " " << handle.getName() << "\n";
}

void pomadd(GZ_Manager &manager, HostCommandArgs &args)
{
    if (args.found('g'))
    {
        if (numArgs(args) != 1)
            return args.showUsage();
        if (!acceptName(args, args.arg(1)))
            return;
        const int index = manager.addGroup(args.argv(1));
        if (args.found('v'))
            args.out() << manager.getGroup(index)->getName() << "\n";
        return;
    }
    if (numArgs(args) != 2)
        return args.showUsage();
    if (!acceptName(args, args.arg(1)))
        return;
    const int index = manager.addGZ(args.argv(1), args.argv(2));
    if (index < 0)
    {
        args.err() << "Invalid handle type: " << args.arg(2) << "\n";
        return;
    }
    applyOptions(*manager.getGZ(index), args, /*print=*/false);
}

void pomremove(GZ_Manager &manager, HostCommandArgs &args)
{
    if (numArgs(args) != 1)
        return args.showUsage();
    if (args.found('g'))
    {
        if (GZ_OHLGroup *group = findGroupOrReport(manager, args, args.arg(1), theUnknownGroup))
            manager.removeGroup(group);
        return;
    }
    if (GZ_OHLPersistent *handle = findGZOrReport(manager, args, args.arg(1)))
        manager.removeGZ(handle);
}

void pomscript(GZ_Manager &manager, HostCommandArgs &args)
{
    const bool groups = args.found('g');
    if (numArgs(args) == 0)
    {
        if (groups)
            manager.savePersistentGroups(args.out(), -1);
        else
            manager.savePersistentGZs(args.out(), -1);
        return;
    }
    if (numArgs(args) != 1)
        return args.showUsage();
    if (groups)
    {
        const int index = manager.getGroupIndex(args.argv(1));
        if (index < 0)
            args.err() << theUnknownGroup << args.arg(1) << "\n";
        else
            manager.savePersistentGroups(args.out(), index);
        return;
    }
    const int index = manager.getGZIndex(args.argv(1));
    if (index < 0)
        args.err() << "Unknown handle: " << args.arg(1) << "\n";
    else
        manager.savePersistentGZs(args.out(), index);
}

void pomset(GZ_Manager &manager, HostCommandArgs &args)
{
    if (numArgs(args) != 1)
        return args.showUsage();
    if (args.found('g'))
    {
        GZ_OHLGroup *group = findGroupOrReport(manager, args, args.arg(1), "Unknown group: ");
        if (!group)
            return;
        for (GZ_OHLPersistent *handle : group->getGZs())
            applyOptions(*handle, args, /*print=*/true);
        return;
    }
    if (GZ_OHLPersistent *handle = findGZOrReport(manager, args, args.arg(1)))
        applyOptions(*handle, args, /*print=*/true);
}

// The -g forms of pomattach and pomdetach: the group, then each handle in turn.
template <typename Change>
void changeMembers(GZ_Manager &manager, HostCommandArgs &args, Change change)
{
    if (numArgs(args) < 2)
        return args.showUsage();
    GZ_OHLGroup *group = findGroup(manager, args.arg(1));
    if (!group)
    {
        args.err() << theUnknownGroup << args.arg(1) << "\n";
        return;
    }
    for (int a = 2; a < args.argc(); ++a)
    {
        GZ_OHLPersistent *handle = manager.findGZ(args.argv(a));
        if (!handle)
            args.err() << "Unknown handle: " << args.arg(a) << "\n";
        else
            change(handle, group);
    }
}

/// The attached nodes that drive at least one handle parameter.
std::vector<HostNode *> drivingNodes(const GZ_OHLPersistent &handle)
{
    std::vector<HostNode *> nodes;
    for (int k = 0; k < handle.getNumOps(); ++k)
    {
        const auto &names = handle.linkedParmNames(k);
        for (int j = 0; j < static_cast<int>(names.size()) && j < handle.getNumHandleParms(); ++j)
            if (!names[j].empty() && handle.getOpnumForHandleParmIndex(j) == k)
            {
                nodes.push_back(handle.getOpNode(k));
                break;
            }
    }
    return nodes;
}

/// A handle parameter follows one node: binding it on another node takes it from the first.
/// A node that drove parameters before the attach and drives none after it is detached, so
/// no node stays attached to nothing, and the command says so.
void detachBypassed(GZ_OHLPersistent &handle, const std::vector<HostNode *> &before,
                    HostCommandArgs &args)
{
    const std::vector<HostNode *> after = drivingNodes(handle);
    for (HostNode *node : before)
        if (std::find(after.begin(), after.end(), node) == after.end() && handle.hasOpNode(*node))
        {
            args.err() << args.arg(0) << ": " << node->getFullPath() << " drives no parameter of "
                       << handle.getName() << " any more and is detached\n";
            handle.detach(*node);
        }
}

void pomattach(GZ_Manager &manager, HostCommandArgs &args)
{
    if (args.found('g'))
        return changeMembers(manager, args,
                             [&manager](GZ_OHLPersistent *handle, GZ_OHLGroup *group)
                             { manager.addGZtoGroup(handle, group); });
    if (numArgs(args) < 2)
        return args.showUsage();
    GZ_OHLPersistent *handle = findGZOrReport(manager, args, args.arg(1));
    if (!handle)
        return;
    manager.changeGZNodes(*handle, "Attach Op To Handle",
                          [&]()
                          {
                              handle->id(args.found('i') ? args.iargp('i') : -1);
                              const std::vector<HostNode *> before = drivingNodes(*handle);
                              handle->runBindCommand(args);
                              detachBypassed(*handle, before, args);
                          });
}

void pomdetach(GZ_Manager &manager, HostCommandArgs &args)
{
    if (args.found('g'))
        return changeMembers(manager, args,
                             [&manager](GZ_OHLPersistent *handle, GZ_OHLGroup *group)
                             { manager.removeGZfromGroup(handle, group); });
    if (numArgs(args) < 1)
        return args.showUsage();
    GZ_OHLPersistent *handle = findGZOrReport(manager, args, args.arg(1));
    if (!handle)
        return;
    manager.changeGZNodes(*handle, "Detach Op From Handle",
                          [&]() { handle->runUnbindCommand(args); });
}

void pomclear(GZ_Manager &manager, HostCommandArgs &args)
{
    if (numArgs(args) != 1)
        return args.showUsage();
    if (args.found('g'))
    {
        const int index = manager.getGroupIndex(args.argv(1));
        if (index < 0)
            args.err() << theUnknownGroup << args.arg(1) << "\n";
        else
            manager.clearGroup(index);
        return;
    }
    GZ_OHLPersistent *handle = findGZOrReport(manager, args, args.arg(1));
    if (!handle)
        return;
    manager.changeGZNodes(*handle, "Clear Ops From Handle",
                          [&]() { handle->runUnbindCommand(args); });
}

void pomls(GZ_Manager &manager, HostCommandArgs &args)
{
    std::ostream &os = args.out();
    if (numArgs(args) > 1)
        return args.showUsage();
    if (args.found('g'))
    {
        if (numArgs(args) == 0)
        {
            for (int i = 0; i < manager.getNumGroups(); ++i)
                os << manager.getGroup(i)->getName() << "\n";
            return;
        }
        if (GZ_OHLGroup *group = findGroupOrReport(manager, args, args.arg(1), theUnknownGroup))
            for (GZ_OHLPersistent *handle : group->getGZs())
                os << handle->getName() << "\n";
        return;
    }
    if (numArgs(args) == 0)
    {
        for (GZ_OHLPersistent *handle : manager.getMasterGroup().getGZs())
            os << handle->getName() << "\n";
        return;
    }
    if (GZ_OHLPersistent *handle = findGZOrReport(manager, args, args.arg(1)))
        for (int i = 0; i < handle->getNumOps(); ++i)
            os << handle->getOpNode(i)->getFullPath() << "\n";
}

void pomrename(GZ_Manager &manager, HostCommandArgs &args)
{
    if (numArgs(args) != 2)
        return args.showUsage();
    if (!acceptName(args, args.arg(2)))
        return;
    if (args.found('g'))
    {
        if (GZ_OHLGroup *group = findGroupOrReport(manager, args, args.arg(1), theUnknownGroup))
            group->setName(args.argv(2));
        return;
    }
    if (GZ_OHLPersistent *handle = findGZOrReport(manager, args, args.arg(1)))
        handle->setName(args.argv(2));
}

void pomparm(GZ_Manager &manager, HostCommandArgs &args)
{
    const bool groups = args.found('g');
    if (numArgs(args) != 2)
    {
        args.err() << (groups ? "Error: pomparm requires a handle group and handle settings.\n"
                              : "Error: pomparm requires a handle name and handle settings.\n");
        return;
    }
    if (groups)
    {
        GZ_OHLGroup *group = findGroupOrReport(manager, args, args.arg(1), "Unknown group: ");
        if (!group)
            return;
        for (GZ_OHLPersistent *handle : group->getGZs())
            handle->setSettings(args.argv(2));
        return;
    }
    if (GZ_OHLPersistent *handle = findGZOrReport(manager, args, args.arg(1)))
        handle->setSettings(args.argv(2));
}

// The option lines of pomadd and pomset.
#define GZ_POM_STATE_OPTIONS                                                                       \
    "-e V  exposed (on or off)\n-p V  shown in parent networks\n-c V  shown in child networks\n"   \
    "-s V  shown in sibling networks\n-r R G B  the active colour\n"                               \
    "-m MASK  the viewer-pane mask (* for all panes)"

const HostCommandRow<GZ_Manager> thePomCommands[] = {
    {"pomadd", "gc:e:m:p:r:::s:v",
     "pomadd [-e on|off] [-p on|off] [-c on|off] [-s on|off] [-r R G B] [-m MASK] NAME TYPE"
     " | pomadd -g [-v] GROUP",
     &pomadd, true,
     "Creates a handle of handle type TYPE (an op-handle-link template such as xform) named NAME, "
     "then applies the options.",
     GZ_POM_STATE_OPTIONS "\n"
                          "-g  create the group GROUP instead\n"
                          "-v  with -g, write the name the group got"},
    {"pomremove", "g", "pomremove NAME | pomremove -g GROUP", &pomremove, true,
     "Deletes a handle (and takes it out of its groups), or a group (its handles stay).",
     "-g  a group"},
    {"pomscript", "g", "pomscript [NAME] | pomscript -g [GROUP]", &pomscript, true,
     "Writes the commands that re-create every handle (or one), or every group (or one).",
     "-g  groups"},
    {"pomset", "gc:e:m:p:r:::s:",
     "pomset [-e on|off] [-p on|off] [-c on|off] [-s on|off] [-r R G B] [-m MASK] NAME"
     " | pomset -g [OPTIONS] GROUP",
     &pomset, true, "Applies the options of pomadd to a handle or to every member of a group.",
     GZ_POM_STATE_OPTIONS "\n"
                          "-g  every member of the group GROUP"},
    {"pomattach", "gi:",
     "pomattach [-i ID] NAME NODEPATH [NODEPARM:HANDLEPARM...] | pomattach -g GROUP HANDLE...",
     &pomattach, true,
     "Attaches the node at NODEPATH to the handle, binding each handle parameter to a node "
     "parameter.",
     "-i ID  the handle's id (-1 without)\n"
     "-g  add handles to the group GROUP instead"},
    {"pomdetach", "g", "pomdetach NAME [NODEPATH] | pomdetach -g GROUP HANDLE...", &pomdetach, true,
     "Detaches one node from the handle, or every node; or takes handles out of a group.",
     "-g  take handles out of the group GROUP"},
    {"pomclear", "g", "pomclear NAME | pomclear -g GROUP", &pomclear, true,
     "Detaches every node from the handle, or empties the group.", "-g  empty the group GROUP"},
    {"pomls", "g", "pomls [NAME] | pomls -g [GROUP]", &pomls, true,
     "Writes one name per line: every handle; the full path of each node attached to NAME; every "
     "group; the members of GROUP.",
     "-g  groups"},
    {"pomrename", "g", "pomrename OLD NEW | pomrename -g OLD NEW", &pomrename, true,
     "Renames a handle or a group under the free-name rule (a taken NEW gets a numbered variant).",
     "-g  a group"},
    {"pomparm", "g", "pomparm NAME SETTINGS | pomparm -g GROUP SETTINGS", &pomparm, true,
     "Replaces the handle's settings (of every member of the group) with the settings text.",
     "-g  every member of the group GROUP"},
};
#undef GZ_POM_STATE_OPTIONS
} // namespace

void GZ_Manager::installCommands()
{
    // The manager outlives the interpreter's use of it: it is never destroyed.
    HostCommandTable::install<GZ_Manager>(*HostCommandManager::getInstance(), thePomCommands,
                                          &GZgetManager);
}
