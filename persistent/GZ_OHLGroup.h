// GZ_OHLGroup: a named, ordered set of persistent handles.
#pragma once

#include "persistent/gz_OrderedList.h"

#include <string>
#include <vector>

class GZ_Manager;
class GZ_OHLPersistent;

/// A named group of persistent handles, in the user's order. Created and deleted only by
/// the manager, which also changes its membership (so that the change has its undo block,
/// record and notification). Does not own its handles; deleting a group leaves them alone.
/// The manager's list of all handles is a group too (the master group "Handles").
///
/// Cost: membership tests, index lookups and removal are O(log n) in the members.
class GZ_OHLGroup
{
public:
    virtual ~GZ_OHLGroup();
    GZ_OHLGroup(const GZ_OHLGroup &) = delete;
    GZ_OHLGroup &operator=(const GZ_OHLGroup &) = delete;

    const std::string &getName() const { return myName; }
    /// Renames the group under the free-name rule, with undo ("Change Handle Group Name").
    void setName(const char *name);
    int getNumGZs() const { return myMembers.size(); }
    /// The member at an index, or null when out of range.
    GZ_OHLPersistent *getGZ(int index) const { return myMembers.at(index); }
    int getGZIndex(const GZ_OHLPersistent *handle) const { return myMembers.indexOf(handle); }
    bool contains(const GZ_OHLPersistent *handle) const { return myMembers.contains(handle); }
    /// The members in order (a copy).
    std::vector<GZ_OHLPersistent *> getGZs() const { return myMembers.items(); }
    /// Exposes (hides) every member, last to first, in one undo block.
    void exposeGZs() const;
    void hideGZs() const;

private:
    friend class GZ_Manager;

    GZ_OHLGroup(GZ_Manager *manager, const char *name, bool is_master = false);
    /// Exchanges two members; the manager checks the indices.
    void swapGZs(int i, int j) { myMembers.swap(i, j); }
    // Membership, kept in step with each handle's list of the groups that hold it (the
    // master group is not listed there: every handle is in it).
    bool appendMember(GZ_OHLPersistent *handle) { return insertMember(handle, getNumGZs()); }
    bool insertMember(GZ_OHLPersistent *handle, int index);
    bool eraseMember(GZ_OHLPersistent *handle);
    void clearMembers();
    void setExposeAll(bool expose) const;

    GZ_Manager *myManager;
    std::string myName;
    gz_OrderedList<GZ_OHLPersistent> myMembers;
    bool myIsMaster;
};
