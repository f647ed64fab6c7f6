// GZ_BindingHandleInfo: one handle instance bound to an operator type, with its links.
#include "resource/GZ_BindingHandleInfo.h"

#include <algorithm>

GZ_BindingHandleInfo::GZ_BindingHandleInfo(std::string gz_name, std::string gz_description,
                                           GZ_SettingList default_settings, int id)
    : myGZName(std::move(gz_name)), myGZDescription(std::move(gz_description)),
      myDefaultSettings(std::move(default_settings)), myId(id)
{
}

std::string GZ_BindingHandleInfo::linkKey(const std::string &op_parm, const std::string &gz_parm)
{
    // Parameter names never hold a NUL, so it separates the two halves unambiguously.
    std::string key;
    key.reserve(op_parm.size() + gz_parm.size() + 1);
    key.append(op_parm).push_back('\0');
    key.append(gz_parm);
    return key;
}

bool GZ_BindingHandleInfo::hasBinding(const std::string &op_parm, const std::string &gz_parm) const
{
    return myLinkIndex.count(linkKey(op_parm, gz_parm)) != 0;
}

void GZ_BindingHandleInfo::addBinding(const std::string &op_parm, const std::string &gz_parm)
{
    myBindings.emplace_back(op_parm, gz_parm);
    myLinkIndex.insert(linkKey(op_parm, gz_parm));
}

void GZ_BindingHandleInfo::removeBindings(const std::string &op_parm)
{
    if (op_parm.empty())
    {
        myBindings.clear();
        myLinkIndex.clear();
        return;
    }
    for (const GZ_BindingParmInfo &link : myBindings)
    {
        if (link.getOpParm() == op_parm)
            myLinkIndex.erase(myLinkIndex.find(linkKey(op_parm, link.getGZParm())));
    }
    auto removed =
        std::remove_if(myBindings.begin(), myBindings.end(),
                       [&](const GZ_BindingParmInfo &link) { return link.getOpParm() == op_parm; });
    myBindings.erase(removed, myBindings.end());
}
