// GZ_Undo: the undo records of persistent handles and groups.
#include "persistent/GZ_Undo.h"

#include "host/HostCommandManager.h"
#include "persistent/GZ_Manager.h"
#include "persistent/GZ_OHLGroup.h"
#include "persistent/GZ_OHLPersistent.h"

#include <algorithm>
#include <sstream>

namespace
{
GZ_OHLPersistent *findGZ(const GZ_Manager *manager, const std::string &name)
{
    return manager->findGZ(name.c_str());
}

GZ_OHLGroup *findGroup(const GZ_Manager *manager, const std::string &name)
{
    return manager->getGroup(manager->getGroupIndex(name.c_str()));
}

std::string gzScript(const GZ_Manager *manager, int index)
{
    std::ostringstream os;
    manager->savePersistentGZs(os, index);
    return os.str();
}

std::string groupScript(const GZ_Manager *manager, int index)
{
    std::ostringstream os;
    manager->savePersistentGroups(os, index);
    return os.str();
}
} // namespace

// ---------------------------------------------------------------------------------------
// Script records

GZ_Undo::GZ_Undo(GZ_Manager *manager, const std::string &name) : myManager(manager), myName(name) {}

void GZ_Undo::setScript(const std::string &text)
{
    myScript = text;
    std::replace(myScript.begin(), myScript.end(), '\n', ';');
    setMemoryUsage(myScript.size() + 64);
}

void GZ_Undo::runScript() const
{
    HostExecOptions options;
    options.history = false;
    options.output = false;
    options.errors = false;
    HostCommandManager::getInstance()->execute(myScript, options);
}

GZ_UndoGZ::GZ_UndoGZ(GZ_Manager *manager, GZ_OHLPersistent *handle)
    : GZ_Undo(manager, handle->getName()), myMemberships(membershipsOf(*handle))
{
    setScript(gzScript(manager, manager->getGZIndex(handle)));
}

std::vector<GZ_UndoGZ::Membership> GZ_UndoGZ::membershipsOf(const GZ_OHLPersistent &handle)
{
    std::vector<Membership> memberships;
    for (const GZ_OHLGroup *group : handle.getGroups())
        memberships.push_back({group->getName(), group->getGZIndex(&handle)});
    return memberships;
}

void GZ_UndoGZ::recreate(const std::vector<Membership> &memberships) const
{
    const int count = myManager->getNumGZs();
    runScript();
    // The script appends the handle; finding it by name could find another one that the
    // free-name rule let keep the name.
    if (myManager->getNumGZs() != count + 1)
        return;
    GZ_OHLPersistent *handle = myManager->getGZ(count);
    for (const Membership &membership : memberships)
        myManager->insertGZinGroup(handle, findGroup(myManager, membership.group),
                                   membership.index);
}

GZ_OHLPersistent *GZ_UndoGZ::find() const
{
    return findGZ(myManager, getName());
}

// When the handle is gone (a node rename gave it another name, say), the record does
// nothing: re-running its script would create a second handle beside the renamed one.
void GZ_UndoGZ::swap()
{
    const int index = myManager->getGZIndex(getName().c_str());
    GZ_OHLPersistent *handle = myManager->getGZ(index);
    if (!handle)
        return;
    const std::string current = gzScript(myManager, index);
    const std::vector<Membership> groups = membershipsOf(*handle);
    myManager->removeGZ(handle);
    recreate(groups);
    setScript(current);
}

void GZ_UndoAddGZ::undo()
{
    if (GZ_OHLPersistent *handle = find())
        myManager->removeGZ(handle);
}

void GZ_UndoAddGZ::redo()
{
    recreate(memberships());
}

void GZ_UndoRemoveGZ::undo()
{
    recreate(memberships());
}

void GZ_UndoRemoveGZ::redo()
{
    if (GZ_OHLPersistent *handle = find())
        myManager->removeGZ(handle);
}

GZ_UndoGroup::GZ_UndoGroup(GZ_Manager *manager, GZ_OHLGroup *group)
    : GZ_Undo(manager, group->getName())
{
    setScript(groupScript(manager, manager->getGroupIndex(group)));
}

GZ_OHLGroup *GZ_UndoGroup::find() const
{
    return findGroup(myManager, getName());
}

void GZ_UndoGroup::swap()
{
    const int index = myManager->getGroupIndex(getName().c_str());
    GZ_OHLGroup *group = myManager->getGroup(index);
    if (!group)
        return;
    const std::string current = groupScript(myManager, index);
    myManager->removeGroup(group);
    runScript();
    setScript(current);
}

void GZ_UndoAddGroup::undo()
{
    if (GZ_OHLGroup *group = find())
        myManager->removeGroup(group);
}

void GZ_UndoAddGroup::redo()
{
    runScript();
}

void GZ_UndoRemoveGroup::undo()
{
    runScript();
}

void GZ_UndoRemoveGroup::redo()
{
    if (GZ_OHLGroup *group = find())
        myManager->removeGroup(group);
}

GZ_UndoGroupMember::GZ_UndoGroupMember(GZ_Manager *manager, GZ_OHLGroup *group,
                                       GZ_OHLPersistent *handle, bool adding)
    : myManager(manager), myGroup(group->getName()), myHandle(handle->getName()),
      myIndex(adding ? group->getNumGZs() : group->getGZIndex(handle)), myAdding(adding)
{
    setMemoryUsage(sizeof(*this) + myGroup.size() + myHandle.size());
}

void GZ_UndoGroupMember::apply(bool add) const
{
    GZ_OHLGroup *group = findGroup(myManager, myGroup);
    GZ_OHLPersistent *handle = findGZ(myManager, myHandle);
    if (!group || !handle || myIndex < 0)
        return;
    if (add)
        myManager->insertGZinGroup(handle, group, myIndex);
    else if (group->contains(handle))
        myManager->removeGZfromGroup(handle, group);
}

// ---------------------------------------------------------------------------------------
// Order and names

void GZ_UndoSwapGZs::undo()
{
    myManager->swapGZs(myFirst, mySecond);
}

void GZ_UndoSwapGroups::undo()
{
    myManager->swapGroups(myFirst, mySecond);
}

GZ_UndoNameGZ::GZ_UndoNameGZ(GZ_Manager *manager, const char *old_name, const char *new_name)
    : myOldName(old_name ? old_name : ""), myNewName(new_name ? new_name : ""), myManager(manager)
{
}

void GZ_UndoNameGZ::undo()
{
    if (GZ_OHLPersistent *handle = findGZ(myManager, givenName()))
        handle->setName(myOldName.c_str());
}

// The scene is as it was before the rename, so the requested name gives the same name.
void GZ_UndoNameGZ::redo()
{
    if (GZ_OHLPersistent *handle = findGZ(myManager, myOldName))
        handle->setName(myNewName.c_str());
}

GZ_UndoNameGroup::GZ_UndoNameGroup(GZ_Manager *manager, const char *old_name, const char *new_name)
    : myOldName(old_name ? old_name : ""), myNewName(new_name ? new_name : ""), myManager(manager)
{
}

void GZ_UndoNameGroup::undo()
{
    if (GZ_OHLGroup *group = findGroup(myManager, givenName()))
        group->setName(myOldName.c_str());
}

// The scene is as it was before the rename, so the requested name gives the same name.
void GZ_UndoNameGroup::redo()
{
    if (GZ_OHLGroup *group = findGroup(myManager, myOldName))
        group->setName(myNewName.c_str());
}

// ---------------------------------------------------------------------------------------
// Values and flags

GZ_UndoColorGZ::GZ_UndoColorGZ(GZ_Manager *manager, GZ_OHLPersistent *handle)
    : myManager(manager), myName(handle->getName()), myColor(handle->getActiveColor())
{
}

void GZ_UndoColorGZ::undo()
{
    GZ_OHLPersistent *handle = findGZ(myManager, myName);
    if (!handle)
        return;
    const HostColor current = handle->getActiveColor();
    handle->setActiveColor(myColor);
    myColor = current;
}

GZ_UndoDisplay::GZ_UndoDisplay(GZ_Manager *manager, GZ_OHLPersistent *handle)
    : myManager(manager), myName(handle->getName())
{
}

void GZ_UndoDisplay::undo()
{
    if (GZ_OHLPersistent *handle = findGZ(myManager, myName))
        setDisplay(handle, !getDisplay(handle));
}

bool GZ_UndoDisplayChild::getDisplay(GZ_OHLPersistent *handle) const
{
    return handle->getDisplayInChild();
}

void GZ_UndoDisplayChild::setDisplay(GZ_OHLPersistent *handle, bool display) const
{
    handle->setDisplayInChild(display);
}

bool GZ_UndoDisplayParent::getDisplay(GZ_OHLPersistent *handle) const
{
    return handle->getDisplayInParent();
}

void GZ_UndoDisplayParent::setDisplay(GZ_OHLPersistent *handle, bool display) const
{
    handle->setDisplayInParent(display);
}

bool GZ_UndoDisplaySibling::getDisplay(GZ_OHLPersistent *handle) const
{
    return handle->getDisplayInSibling();
}

void GZ_UndoDisplaySibling::setDisplay(GZ_OHLPersistent *handle, bool display) const
{
    handle->setDisplayInSibling(display);
}

GZ_UndoExposeGZ::GZ_UndoExposeGZ(GZ_Manager *manager, GZ_OHLPersistent *handle)
    : myManager(manager), myName(handle->getName())
{
}

void GZ_UndoExposeGZ::undo()
{
    if (GZ_OHLPersistent *handle = findGZ(myManager, myName))
        handle->setExpose(!handle->getExpose());
}

GZ_UndoPaneMaskGZ::GZ_UndoPaneMaskGZ(GZ_Manager *manager, GZ_OHLPersistent *handle)
    : myName(handle->getName()), myMask(handle->getPaneMask()), myManager(manager)
{
}

void GZ_UndoPaneMaskGZ::undo()
{
    GZ_OHLPersistent *handle = findGZ(myManager, myName);
    if (!handle)
        return;
    const std::string current = handle->getPaneMask();
    handle->setPaneMask(myMask.c_str());
    myMask = current;
}
