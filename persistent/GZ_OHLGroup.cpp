// GZ_OHLGroup: a named, ordered set of persistent handles.
#include "persistent/GZ_OHLGroup.h"

#include "link/gz_UndoBlock.h"
#include "persistent/GZ_Manager.h"
#include "persistent/GZ_OHLPersistent.h"
#include "persistent/GZ_Undo.h"

#include <algorithm>

GZ_OHLGroup::GZ_OHLGroup(GZ_Manager *manager, const char *name, bool is_master)
    : myManager(manager), myName(name ? name : ""), myIsMaster(is_master)
{
}

GZ_OHLGroup::~GZ_OHLGroup()
{
    clearMembers();
}

void GZ_OHLGroup::setName(const char *name)
{
    const std::string requested = name ? name : "";
    if (requested == myName)
        return;
    gz_UndoBlock block("Change Handle Group Name");
    GZ_UndoNameGroup *record =
        block.add<GZ_UndoNameGroup>(myManager, myName.c_str(), requested.c_str());
    myManager->renameGroup(this, myManager->getFreeGroupName(requested.c_str()));
    if (record)
        record->setGivenName(myName);
    myManager->groupChanged(this, GZ_CHANGE_NAME);
}

void GZ_OHLGroup::exposeGZs() const
{
    setExposeAll(true);
}

void GZ_OHLGroup::hideGZs() const
{
    setExposeAll(false);
}

void GZ_OHLGroup::setExposeAll(bool expose) const
{
    if (myMembers.empty())
        return;
    gz_UndoBlock block(expose ? "Expose Handle Group" : "Hide Handle Group");
    const std::vector<GZ_OHLPersistent *> members = myMembers.items();
    for (auto it = members.rbegin(); it != members.rend(); ++it)
        (*it)->setExpose(expose);
}

bool GZ_OHLGroup::insertMember(GZ_OHLPersistent *handle, int index)
{
    if (!myMembers.insert(index, handle))
        return false;
    if (!myIsMaster)
        handle->myGroups.push_back(this);
    return true;
}

bool GZ_OHLGroup::eraseMember(GZ_OHLPersistent *handle)
{
    if (!myMembers.erase(handle))
        return false;
    if (!myIsMaster)
    {
        std::vector<GZ_OHLGroup *> &groups = handle->myGroups;
        groups.erase(std::find(groups.begin(), groups.end(), this));
    }
    return true;
}

void GZ_OHLGroup::clearMembers()
{
    if (!myIsMaster)
    {
        myMembers.forEach(
            [this](GZ_OHLPersistent *handle)
            {
                std::vector<GZ_OHLGroup *> &groups = handle->myGroups;
                groups.erase(std::find(groups.begin(), groups.end(), this));
            });
    }
    myMembers.clear();
}
