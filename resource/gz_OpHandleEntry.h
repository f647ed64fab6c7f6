// gz_OpHandleEntry: the handle instances bound to one operator type.
#pragma once

#include "resource/GZ_BindingHandleInfo.h"

#include <string>
#include <unordered_map>
#include <vector>

/// The handle bindings of one operator key: its handle instances in order, the index of the
/// current instance (the one links are added to; -1 when none) and the next instance id.
/// Instances are indexed by (type, description) so that finding one does not scan the list;
/// the index keeps the first of equal instances, as a forward search would.
class gz_OpHandleEntry
{
public:
    const std::vector<GZ_BindingHandleInfo> &handles() const { return myHandles; }
    bool empty() const { return myHandles.empty(); }

    int currentIndex() const { return myCurrent; }
    void setCurrentIndex(int index) { myCurrent = index; }
    GZ_BindingHandleInfo *current();
    int nextId() const { return myNextId; }

    /// Index of the first instance of that type and description, or -1.
    int find(const std::string &gz_name, const std::string &gz_description) const;
    /// Appends a new instance with the next id and makes it current.
    GZ_BindingHandleInfo &append(const std::string &gz_name, const std::string &gz_description,
                                 GZ_SettingList default_settings);
    /// Removes, in every instance (or only those of `gz_description` when given), the links
    /// of `op_parm` (all links when it is empty); instances left without links go.
    void unbind(const char *gz_description, const std::string &op_parm);

private:
    static std::string instanceKey(const std::string &gz_name, const std::string &gz_description);
    void rebuildIndex();

    int myCurrent = -1;
    int myNextId = 0;
    std::vector<GZ_BindingHandleInfo> myHandles;
    std::unordered_map<std::string, int> myIndex;
};
