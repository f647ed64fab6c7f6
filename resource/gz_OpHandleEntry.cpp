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
    int current_id = current_handle ? current_handle->getId() : -1;
    bool removed_any = false;
    std::vector<GZ_BindingHandleInfo> kept;
    kept.reserve(myHandles.size());
    for (GZ_BindingHandleInfo &handle : myHandles)
    {
        const bool chosen = !gz_description || handle.getGZDescription() == gz_description;
        if (chosen)
            handle.removeBindings(op_parm);
        if (chosen && handle.getBindings().empty())
        {
            removed_any = true;
            if (handle.getId() == current_id)
                current_id = -1;
            continue;
        }
        kept.push_back(std::move(handle));
    }
    if (!removed_any)
        return;
    myHandles = std::move(kept);
    myCurrent = -1;
    for (int i = 0; i < static_cast<int>(myHandles.size()); ++i)
    {
        if (myHandles[i].getId() == current_id)
            myCurrent = i;
    }
    rebuildIndex();
}

void gz_OpHandleEntry::rebuildIndex()
{
    myIndex.clear();
    for (int i = 0; i < static_cast<int>(myHandles.size()); ++i)
        myIndex.emplace(instanceKey(myHandles[i].getGZName(), myHandles[i].getGZDescription()), i);
}
