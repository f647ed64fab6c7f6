// GZ_Manager: the process-wide owner of persistent handles and handle groups.
#include "persistent/GZ_Manager.h"

#include "link/gz_UndoBlock.h"
#include "persistent/GZ_OHLPersistent.h"
#include "persistent/GZ_Undo.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_ResourceManager.h"

#include <algorithm>

namespace
{
GZ_Manager *theManager = nullptr;

HostErrorSeverity savePersistentHandles(std::ostream &os)
{
    return theManager ? theManager->save(os) : HOST_ERR_NONE;
}

} // namespace

GZ_Manager *GZgetManager()
{
    // Never destroyed: handles watch nodes, and the scene may go away before static
    // destructors run.
    if (!theManager)
        theManager = new GZ_Manager();
    return theManager;
}

GZ_Manager::GZ_Manager() : myMasterGroup(this, "Handles", /*is_master=*/true)
{
    installCommands();
    GZ_ResourceManager::setPersistentHandleSaver(&savePersistentHandles);
}

GZ_Manager::~GZ_Manager()
{
    const std::vector<GZ_OHLGroup *> groups = myGroups.items();
    myGroups.clear();
    for (auto it = groups.rbegin(); it != groups.rend(); ++it)
        delete *it;
    const std::vector<GZ_OHLPersistent *> handles = myMasterGroup.myMembers.items();
    myMasterGroup.clearMembers();
    for (auto it = handles.rbegin(); it != handles.rend(); ++it)
        delete *it;
    if (theManager == this)
        theManager = nullptr;
}

// ---------------------------------------------------------------------------------------
// Handles

std::string GZ_Manager::getFreeGZName(const char *name) const
{
    return myGZNames.freeName(name, "Handle");
}

int GZ_Manager::appendGZ(GZ_OHLPersistent *handle)
{
    myMasterGroup.appendMember(handle);
    handle->myListed = true;
    myGZNames.add(handle->getName(), handle);
    return getNumGZs() - 1;
}

int GZ_Manager::addGZ(const char *name, const char *type)
{
    gz_UndoBlock block("Create New Handle");
    GZ_ResourceManager *resources = GZgetResourceManager();
    const GZ_GZTemplate *gz_template =
        (resources && type) ? resources->getOpHandleLinkTemplate(type) : nullptr;
    if (!gz_template)
        return -1;
    auto *handle = new GZ_OHLPersistent(this, getFreeGZName(name).c_str(), *gz_template);
    const int index = appendGZ(handle);
    gzChanged(handle, GZ_CHANGE_ADD);
    block.add<GZ_UndoAddGZ>(this, handle);
    return index;
}

int GZ_Manager::addGZ(const char *name, const GZ_OpHandleLink &link)
{
    gz_UndoBlock block("Create New Handle");
    auto *handle = new GZ_OHLPersistent(this, getFreeGZName(name).c_str(), link.getTemplate());
    handle->setEqual(link);
    const int index = appendGZ(handle);
    gzChanged(handle, GZ_CHANGE_ADD);
    block.add<GZ_UndoAddGZ>(this, handle);
    return index;
}

void GZ_Manager::deleteGZ(GZ_OHLPersistent *handle)
{
    myGZNames.remove(handle->getName(), handle);
    delete handle;
}

void GZ_Manager::removeGZ(GZ_OHLPersistent *handle)
{
    if (!handle || !myMasterGroup.contains(handle))
        return;
    gz_UndoBlock block("Delete Handle");
    block.add<GZ_UndoRemoveGZ>(this, handle);
    // Only the groups that hold it; the order of visits changes nothing, as no group is
    // told.
    const std::vector<GZ_OHLGroup *> groups = handle->myGroups;
    for (auto it = groups.rbegin(); it != groups.rend(); ++it)
        (*it)->eraseMember(handle);
    myMasterGroup.eraseMember(handle);
    handle->myListed = false;
    gzChanged(handle, GZ_CHANGE_REMOVE);
    deleteGZ(handle);
}

void GZ_Manager::changeGZNodes(GZ_OHLPersistent &handle, const char *label,
                               const std::function<void()> &change)
{
    gz_UndoBlock block(label);
    block.add<GZ_UndoGZ>(this, &handle);
    gzChanged(&handle, GZ_CHANGE_REMOVE);
    change();
    gzChanged(&handle, GZ_CHANGE_ADD);
}

void GZ_Manager::removeAllGZs()
{
    gz_UndoBlock block("Remove All Handles");
    const std::vector<GZ_OHLPersistent *> handles = myMasterGroup.myMembers.items();
    if (block.accepts())
        for (auto it = handles.rbegin(); it != handles.rend(); ++it)
            block.add<GZ_UndoRemoveGZ>(this, *it);
    myGroups.forEach([](GZ_OHLGroup *group) { group->clearMembers(); });
    myMasterGroup.clearMembers();
    for (GZ_OHLPersistent *handle : handles)
        handle->myListed = false;
    for (auto it = handles.rbegin(); it != handles.rend(); ++it)
    {
        gzChanged(*it, GZ_CHANGE_REMOVE);
        deleteGZ(*it);
    }
}

int GZ_Manager::getGZIndex(const char *name) const
{
    if (!name)
        return -1;
    // Every rename goes through the free-name rule, so names are unique; should two be
    // alike all the same, the last one wins.
    int best = -1;
    myGZNames.forEachHolder(
        name, [this, &best](const void *holder)
        { best = std::max(best, getGZIndex(static_cast<const GZ_OHLPersistent *>(holder))); });
    return best;
}

GZ_OHLPersistent *GZ_Manager::findGZ(const char *name) const
{
    if (!name)
        return nullptr;
    const void *last = nullptr;
    bool shared = false;
    myGZNames.forEachHolder(name,
                            [&last, &shared](const void *holder)
                            {
                                shared = last != nullptr;
                                last = holder;
                            });
    if (shared)
        return getGZ(getGZIndex(name));
    // A handle leaves the list before its name leaves the index (listeners hear of the
    // removal in between), so the list has the last word.
    auto *handle = static_cast<GZ_OHLPersistent *>(const_cast<void *>(last));
    return handle && handle->myListed ? handle : nullptr;
}

int GZ_Manager::getGZIndex(const GZ_OHLPersistent *handle) const
{
    return myMasterGroup.getGZIndex(handle);
}

int GZ_Manager::getGZIndex(const GZ_OpHandleLink &link) const
{
    // An equal handle is attached to exactly the link's nodes, so when the link has a node
    // only the handles on that node can match. Without nodes, every handle is a candidate.
    if (HostNode *first = link.getOpNode(0))
    {
        for (int index : handlesWithOp(first))
            if (getGZ(index)->isEqual(link))
                return index;
        return -1;
    }
    for (int i = getNumGZs() - 1; i >= 0; --i)
        if (getGZ(i)->isEqual(link))
            return i;
    return -1;
}

void GZ_Manager::swapGZs(int i, int j)
{
    if (!getGZ(i) || !getGZ(j))
        return;
    gz_UndoBlock block("Reorder Handles");
    block.add<GZ_UndoSwapGZs>(this, i, j);
    myMasterGroup.swapGZs(i, j);
    gzChanged(getGZ(i), GZ_CHANGE_ORDER);
}

void GZ_Manager::renameGZ(GZ_OHLPersistent *handle, const std::string &name)
{
    // Only handles in the list are indexed; one being built is indexed when appended.
    const bool listed = myMasterGroup.contains(handle);
    if (listed)
        myGZNames.remove(handle->myName, handle);
    handle->myName = name;
    if (listed)
        myGZNames.add(handle->myName, handle);
}

// ---------------------------------------------------------------------------------------
// Handles by node

void GZ_Manager::indexNode(GZ_OHLPersistent *handle, const HostNode *node)
{
    auto inserted = myNodeIndex.try_emplace(node);
    if (inserted.second)
        inserted.first->second.first = handle;
    else
        inserted.first->second.more.push_back(handle);
}

void GZ_Manager::unindexNode(GZ_OHLPersistent *handle, const HostNode *node)
{
    auto it = myNodeIndex.find(node);
    if (it == myNodeIndex.end())
        return;
    NodeHandles &handles = it->second;
    if (handles.first == handle)
    {
        if (handles.more.empty())
        {
            myNodeIndex.erase(it);
            return;
        }
        handles.first = handles.more.front();
        handles.more.erase(handles.more.begin());
        return;
    }
    auto found = std::find(handles.more.begin(), handles.more.end(), handle);
    if (found != handles.more.end())
        handles.more.erase(found);
}

std::vector<int> GZ_Manager::handlesWithOp(const HostNode *node) const
{
    std::vector<int> indices;
    auto it = myNodeIndex.find(node);
    if (it == myNodeIndex.end())
        return indices;
    auto add = [this, &indices](const GZ_OHLPersistent *handle)
    {
        const int index = getGZIndex(handle);
        if (index >= 0)
            indices.push_back(index);
    };
    add(it->second.first);
    for (const GZ_OHLPersistent *handle : it->second.more)
        add(handle);
    std::sort(indices.rbegin(), indices.rend());
    return indices;
}

void GZ_Manager::addGZsWithOp(HostNode &node, std::vector<int> &list) const
{
    for (int index : handlesWithOp(&node))
        if (std::find(list.begin(), list.end(), index) == list.end())
            list.push_back(index);
}

// ---------------------------------------------------------------------------------------
// Groups

std::string GZ_Manager::getFreeGroupName(const char *name) const
{
    return myGroupNames.freeName(name, "Group");
}

int GZ_Manager::addGroup(const char *name)
{
    gz_UndoBlock block("Create New Handle Group");
    auto *group = new GZ_OHLGroup(this, getFreeGroupName(name).c_str());
    myGroups.append(group);
    myGroupNames.add(group->getName(), group);
    block.add<GZ_UndoAddGroup>(this, group);
    groupChanged(group, GZ_CHANGE_ADD);
    return getNumGroups() - 1;
}

void GZ_Manager::removeGroup(GZ_OHLGroup *group)
{
    if (!group || !myGroups.contains(group))
        return;
    gz_UndoBlock block("Delete Handle Group");
    block.add<GZ_UndoRemoveGroup>(this, group);
    myGroups.erase(group);
    groupChanged(group, GZ_CHANGE_REMOVE);
    myGroupNames.remove(group->getName(), group);
    delete group;
}

int GZ_Manager::getGroupIndex(const char *name) const
{
    if (!name)
        return -1;
    int best = -1;
    myGroupNames.forEachHolder(
        name, [this, &best](const void *holder)
        { best = std::max(best, getGroupIndex(static_cast<const GZ_OHLGroup *>(holder))); });
    return best;
}

void GZ_Manager::addGZtoGroup(int gz_index, int group_index)
{
    addGZtoGroup(getGZ(gz_index), getGroup(group_index));
}

void GZ_Manager::addGZtoGroup(GZ_OHLPersistent *handle, GZ_OHLGroup *group)
{
    if (!group || !handle || group->contains(handle))
        return;
    gz_UndoBlock block("Add To Handle Group");
    block.add<GZ_UndoGroupMember>(this, group, handle, /*adding=*/true);
    group->appendMember(handle);
    groupChanged(group, GZ_CHANGE_MEMBERS);
}

void GZ_Manager::removeGZfromGroup(int gz_index, int group_index)
{
    removeGZfromGroup(getGZ(gz_index), getGroup(group_index));
}

void GZ_Manager::removeGZfromGroup(GZ_OHLPersistent *handle, GZ_OHLGroup *group)
{
    if (!group || !handle)
        return;
    gz_UndoBlock block("Remove From Handle Group");
    block.add<GZ_UndoGroupMember>(this, group, handle, /*adding=*/false);
    group->eraseMember(handle);
    groupChanged(group, GZ_CHANGE_MEMBERS);
}

void GZ_Manager::insertGZinGroup(GZ_OHLPersistent *handle, GZ_OHLGroup *group, int member_index)
{
    if (!handle || !group || !group->insertMember(handle, member_index))
        return;
    groupChanged(group, GZ_CHANGE_MEMBERS);
}

void GZ_Manager::clearGroup(int group_index)
{
    GZ_OHLGroup *group = getGroup(group_index);
    if (!group)
        return;
    gz_UndoBlock block("Clear Handle Group");
    block.add<GZ_UndoGroup>(this, group);
    group->clearMembers();
    groupChanged(group, GZ_CHANGE_MEMBERS);
}

void GZ_Manager::swapGroups(int i, int j)
{
    if (!getGroup(i) || !getGroup(j))
        return;
    gz_UndoBlock block("Reorder Handle Groups");
    block.add<GZ_UndoSwapGroups>(this, i, j);
    myGroups.swap(i, j);
    groupChanged(getGroup(i), GZ_CHANGE_ORDER);
}

void GZ_Manager::renameGroup(GZ_OHLGroup *group, const std::string &name)
{
    const bool listed = myGroups.contains(group);
    if (listed)
        myGroupNames.remove(group->myName, group);
    group->myName = name;
    if (listed)
        myGroupNames.add(group->myName, group);
}

// ---------------------------------------------------------------------------------------
// Listeners

void GZ_Manager::addGZCallback(GZCallback callback, void *data)
{
    myGZCallbacks.add(callback, data);
}

void GZ_Manager::removeGZCallback(GZCallback callback, void *data)
{
    myGZCallbacks.remove(callback, data);
}

void GZ_Manager::addGroupCallback(GroupCallback callback, void *data)
{
    myGroupCallbacks.add(callback, data);
}

void GZ_Manager::removeGroupCallback(GroupCallback callback, void *data)
{
    myGroupCallbacks.remove(callback, data);
}

void GZ_Manager::gzChanged(GZ_OHLPersistent *handle, GZ_ChangeType change) const
{
    myGZCallbacks.forEach([&](GZCallback callback, void *data) { callback(handle, change, data); });
}

void GZ_Manager::groupChanged(GZ_OHLGroup *group, GZ_ChangeType change) const
{
    myGroupCallbacks.forEach([&](GroupCallback callback, void *data)
                             { callback(group, change, data); });
}
