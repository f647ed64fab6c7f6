// gz_OpHandleEntry: the handle instances bound to one operator type.
#include "resource/gz_OpHandleEntry.h"

GZ_BindingHandleInfo *gz_OpHandleEntry::current()
{
    if (myCurrent < 0 || myCurrent >= static_cast<int>(myHandles.size()))
        return nullptr;
    return &myHandles[myCurrent];
}

std::string gz_OpHandleEntry::instanceKey(const std::string &gz_name,
                                          const std::string &gz_description)
{
    std::string key;
    key.reserve(gz_name.size() + gz_description.size() + 1);
    key.append(gz_name).push_back('\0');
    key.append(gz_description);
    return key;
}

int gz_OpHandleEntry::find(const std::string &gz_name, const std::string &gz_description) const
{
    auto it = myIndex.find(instanceKey(gz_name, gz_description));
    return it == myIndex.end() ? -1 : it->second;
}

GZ_BindingHandleInfo &gz_OpHandleEntry::append(const std::string &gz_name,
                                               const std::string &gz_description,
                                               GZ_SettingList default_settings)
{
    const int index = static_cast<int>(myHandles.size());
    myHandles.emplace_back(gz_name, gz_description, std::move(default_settings), myNextId++);
    myIndex.emplace(instanceKey(gz_name, gz_description), index);
    myCurrent = index;
    return myHandles.back();
}

void gz_OpHandleEntry::unbind(const char *gz_description, const std::string &op_parm)
{
    const GZ_BindingHandleInfo *current_handle = current();
    const int current_id = current_handle ? current_handle->getId() : -1;
    std::vector<bool> removed(myHandles.size(), false);
    bool removed_any = false;
    for (size_t i = 0; i < myHandles.size(); ++i)
    {
        GZ_BindingHandleInfo &handle = myHandles[i];
        if (gz_description && handle.getGZDescription() != gz_description)
            continue;
        handle.removeBindings(op_parm);
        removed[i] = handle.getBindings().empty();
        removed_any = removed_any || removed[i];
    }
    if (!removed_any)
        return;

    // Compact in place, keeping the order; ids are unique, so the current one is found again.
    size_t kept = 0;
    myCurrent = -1;
    for (size_t i = 0; i < myHandles.size(); ++i)
    {
        if (removed[i])
            continue;
        if (kept != i)
            myHandles[kept] = std::move(myHandles[i]);
        if (myHandles[kept].getId() == current_id)
            myCurrent = static_cast<int>(kept);
        ++kept;
    }
    myHandles.erase(myHandles.begin() + kept, myHandles.end());
    rebuildIndex();
}

void gz_OpHandleEntry::rebuildIndex()
{
    myIndex.clear();
    for (int i = 0; i < static_cast<int>(myHandles.size()); ++i)
        myIndex.emplace(instanceKey(myHandles[i].getGZName(), myHandles[i].getGZDescription()), i);
}
