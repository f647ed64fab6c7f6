// GZ_Manager: the process-wide owner of persistent handles and handle groups.
#pragma once

#include "host/HostCallbackList.h"
#include "host/HostErrorSeverity.h"
#include "persistent/GZ_OHLGroup.h"
#include "persistent/gz_NameIndex.h"
#include "persistent/gz_OrderedList.h"

#include <functional>
#include <iosfwd>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

class GZ_OHLPersistent;
class GZ_OpHandleLink;
class HostNode;

/// The change reported to the listeners of handles and groups.
enum GZ_ChangeType
{
    GZ_CHANGE_NAME = 0,
    GZ_CHANGE_ADD = 1,
    GZ_CHANGE_REMOVE = 2,
    GZ_CHANGE_MEMBERS = 3,
    GZ_CHANGE_EXPOSE = 4,
    GZ_CHANGE_HIDE = 5,
    GZ_CHANGE_PANE_MASK = 6,
    GZ_CHANGE_DISPLAY = 7,
    GZ_CHANGE_COLOR = 8,
    GZ_CHANGE_ORDER = 9,
    GZ_CHANGE_SETTINGS = 10
};

/// Owns the persistent handles (handles placed in the scene independently of any tool) and
/// the named groups that collect them. Creates, finds, reorders and deletes them, gives each
/// a unique name (the free-name rule), wraps every change in a named host undo block with an
/// undo record, and tells the registered listeners about each change. Writes them as pom*
/// command lines for scene saving and undo, and installs those commands.
///
/// One per process: `GZgetManager()` creates it on first use. Owns every handle and group;
/// groups hold non-owning pointers to handles. Lookups by name, by handle and by attached
/// node use indexes, so every operation costs O(log n) or less in the number of handles
/// (removing a handle also visits the groups that hold it), and saving is linear.
class GZ_Manager
{
public:
    using GZCallback = void (*)(GZ_OHLPersistent *, GZ_ChangeType, void *);
    using GroupCallback = void (*)(GZ_OHLGroup *, GZ_ChangeType, void *);

    virtual ~GZ_Manager();
    GZ_Manager(const GZ_Manager &) = delete;
    GZ_Manager &operator=(const GZ_Manager &) = delete;

    // Handles ------------------------------------------------------------------------------

    /// Creates a handle of op-handle-link template `type` under a free name made from `name`;
    /// returns its index, or -1 when no such template is registered.
    int addGZ(const char *name, const char *type);
    /// Creates a handle that copies a live link (template, nodes, bindings, settings).
    int addGZ(const char *name, const GZ_OpHandleLink &link);
    void removeGZ(GZ_OHLPersistent *handle);
    /// Changes the nodes of a handle (attach, detach, clear) in one undo block labelled
    /// `label`, whose record keeps the handle's former lines; listeners hear a removal
    /// before and an addition after.
    void changeGZNodes(GZ_OHLPersistent &handle, const char *label,
                       const std::function<void()> &change);
    /// Deletes every handle; undoing it restores the handles and their places in groups.
    void removeAllGZs();
    int getNumGZs() const { return myMasterGroup.getNumGZs(); }
    GZ_OHLPersistent *getGZ(int index) const { return myMasterGroup.getGZ(index); }
    /// The index of the last handle of exactly that name, or -1.
    int getGZIndex(const char *name) const;
    /// The last handle of exactly that name, or null: getGZ(getGZIndex(name)) without
    /// computing an index when, as almost always, one handle holds the name.
    GZ_OHLPersistent *findGZ(const char *name) const;
    /// The index of the last handle equal to `link` (GZ_OpHandleLink::isEqual), or -1.
    int getGZIndex(const GZ_OpHandleLink &link) const;
    /// The index of a handle, or -1 when it is not one of this manager's.
    int getGZIndex(const GZ_OHLPersistent *handle) const;
    void swapGZs(int i, int j);
    std::string getFreeGZName(const char *name) const;

    // Groups -------------------------------------------------------------------------------

    int addGroup(const char *name);
    void removeGroup(GZ_OHLGroup *group);
    int getNumGroups() const { return myGroups.size(); }
    GZ_OHLGroup *getGroup(int index) const { return myGroups.at(index); }
    /// The index of the last group of exactly that name, or -1.
    int getGroupIndex(const char *name) const;
    int getGroupIndex(const GZ_OHLGroup *group) const { return myGroups.indexOf(group); }
    void addGZtoGroup(int gz_index, int group_index);
    void removeGZfromGroup(int gz_index, int group_index);
    /// The same for a handle and a group already found (null: nothing happens).
    void addGZtoGroup(GZ_OHLPersistent *handle, GZ_OHLGroup *group);
    void removeGZfromGroup(GZ_OHLPersistent *handle, GZ_OHLGroup *group);
    void clearGroup(int group_index);
    /// Puts a handle into a group at a member index (at the end when the index is past it)
    /// without an undo record, as undo does when it re-creates a handle that was a member.
    void insertGZinGroup(GZ_OHLPersistent *handle, GZ_OHLGroup *group, int member_index);
    void swapGroups(int i, int j);
    std::string getFreeGroupName(const char *name) const;
    /// The group of all handles ("Handles"), in their user-visible order.
    const GZ_OHLGroup &getMasterGroup() const { return myMasterGroup; }

    // Listeners ----------------------------------------------------------------------------

    /// Adds a listener unless exactly that (callback, data) pair is registered.
    void addGZCallback(GZCallback callback, void *data);
    void removeGZCallback(GZCallback callback, void *data);
    void addGroupCallback(GroupCallback callback, void *data);
    void removeGroupCallback(GroupCallback callback, void *data);
    /// Calls every handle listener, in registration order.
    void gzChanged(GZ_OHLPersistent *handle, GZ_ChangeType change) const;
    void groupChanged(GZ_OHLGroup *group, GZ_ChangeType change) const;

    // Saved form and refresh commands ----------------------------------------------------

    /// The scene-save entry: the handles, then the groups that refer to them.
    HostErrorSeverity save(std::ostream &os);
    /// Every handle (index < 0) or the one at `index` as pom* command lines.
    HostErrorSeverity savePersistentGZs(std::ostream &os, int index) const;
    HostErrorSeverity savePersistentGroups(std::ostream &os, int index) const;
    /// Commands that re-apply the settings and attachments of every handle attached to
    /// `node` (after the host rebuilt it).
    HostErrorSeverity getRefreshGZCommands(std::ostream &os, HostNode *node) const;
    /// Commands that move every handle attached to from[j] over to to[j]: a rename with the
    /// paths substituted, a detach, and the handle's lines with the new paths.
    HostErrorSeverity getRefreshGZCommands(std::ostream &os, const std::vector<HostNode *> &from,
                                           const std::vector<HostNode *> &to) const;

private:
    friend GZ_Manager *GZgetManager();
    friend class GZ_OHLPersistent;
    friend class GZ_OHLGroup;

    GZ_Manager();
    void installCommands();
    /// Appends to `list` (once each) the index of every handle attached to `node`, from the
    /// last handle to the first.
    void addGZsWithOp(HostNode &node, std::vector<int> &list) const;
    /// Handles attached to `node` in descending index order.
    std::vector<int> handlesWithOp(const HostNode *node) const;
    int appendGZ(GZ_OHLPersistent *handle);
    void deleteGZ(GZ_OHLPersistent *handle);

    // Index maintenance, called by handles and groups.
    void renameGZ(GZ_OHLPersistent *handle, const std::string &name);
    void renameGroup(GZ_OHLGroup *group, const std::string &name);
    void indexNode(GZ_OHLPersistent *handle, const HostNode *node);
    void unindexNode(GZ_OHLPersistent *handle, const HostNode *node);

    GZ_OHLGroup myMasterGroup;
    gz_OrderedList<GZ_OHLGroup> myGroups;
    HostCallbackList<GZCallback> myGZCallbacks{HostDuplicates::Refused};
    HostCallbackList<GroupCallback> myGroupCallbacks{HostDuplicates::Refused};

    gz_NameIndex myGZNames;
    gz_NameIndex myGroupNames;
    // The handles attached to each node; one inline, more only when nodes share handles.
    struct NodeHandles
    {
        GZ_OHLPersistent *first = nullptr;
        std::vector<GZ_OHLPersistent *> more;
    };
    std::unordered_map<const HostNode *, NodeHandles> myNodeIndex;
};

/// The persistent handle manager, created (with its commands installed) on the first call.
GZ_Manager *GZgetManager();
