// GZ_BindingHandleInfo: one handle instance bound to an operator type, with its links.
#pragma once

#include "link/GZ_SettingList.h"
#include "resource/GZ_BindingParmInfo.h"

#include <string>
#include <unordered_set>
#include <vector>

/// One handle instance bound to an operator type: the op-handle-link type, the description
/// that tells instances of one type apart, the default settings, the id (its sequence number
/// within the operator type) and the parameter links in order of binding.
/// The links are indexed so that checking for an existing link does not scan them.
/// Equality is identity: two instances compare equal only when they are the same object.
class GZ_BindingHandleInfo
{
public:
    GZ_BindingHandleInfo(std::string gz_name, std::string gz_description,
                         GZ_SettingList default_settings, int id);

    const std::string &getGZName() const { return myGZName; }
    const std::string &getGZDescription() const { return myGZDescription; }
    const GZ_SettingList &getDefaultSettings() const { return myDefaultSettings; }
    GZ_SettingList &getDefaultSettings() { return myDefaultSettings; }
    int getId() const { return myId; }
    const std::vector<GZ_BindingParmInfo> &getBindings() const { return myBindings; }

    /// Whether a link of exactly this operator parameter and handle parameter exists.
    bool hasBinding(const std::string &op_parm, const std::string &gz_parm) const;
    /// Appends a link; duplicates are the caller's concern (see hasBinding).
    void addBinding(const std::string &op_parm, const std::string &gz_parm);
    /// Removes every link whose operator parameter is `op_parm` (case-sensitive), or every
    /// link when `op_parm` is empty; the order of the remaining links is kept.
    void removeBindings(const std::string &op_parm);

    bool operator==(const GZ_BindingHandleInfo &other) const { return this == &other; }
    bool operator!=(const GZ_BindingHandleInfo &other) const { return this != &other; }

private:
    static std::string linkKey(const std::string &op_parm, const std::string &gz_parm);

    std::string myGZName;
    std::string myGZDescription;
    GZ_SettingList myDefaultSettings;
    int myId = 0;
    std::vector<GZ_BindingParmInfo> myBindings;
    std::unordered_multiset<std::string> myLinkIndex;
};
