// GZ_OHLPersistent: a persistent handle, a live handle link kept in the scene under a name.
#pragma once

#include "host/HostColor.h"
#include "link/GZ_OpHandleLink.h"
#include "link/GZ_SettingList.h"

#include <string>
#include <vector>

class GZ_GZTemplate;
class GZ_Manager;
class GZ_OHLGroup;

/// A handle the user placed in the scene independently of any tool: a GZ_OpHandleLink with
/// a unique name, a pane mask, visibility and display flags and its own settings. Created
/// and deleted only by GZ_Manager, which owns it. Every user-visible setter opens a named
/// undo block, records the old state and notifies the manager's listeners.
///
/// It follows its nodes: deleting one of several attached nodes detaches it, deleting the
/// last deletes the handle, and renaming a node renames the handle where its name holds the
/// old node name as a word.
class GZ_OHLPersistent : public GZ_OpHandleLink
{
public:
    ~GZ_OHLPersistent() override;

    const std::string &getName() const { return myName; }
    const std::string &getPaneMask() const { return myPaneMask; }
    bool getExpose() const { return myExpose; }
    bool getDisplayAlways() const { return myDisplayAlways; }
    bool getDisplayInChild() const { return myDisplayInChild; }
    bool getDisplayInParent() const { return myDisplayInParent; }
    bool getDisplayInSibling() const { return myDisplayInSibling; }
    GZ_SettingList &getSettingList() { return mySettingList; }
    const GZ_SettingList &getSettingList() const { return mySettingList; }
    GZ_OpHandleLink *getGZOwner() const { return myOwner; }
    GZ_Manager *getManager() const { return myManager; }
    /// The groups that hold this handle (the master group is not among them).
    const std::vector<GZ_OHLGroup *> &getGroups() const { return myGroups; }

    /// Renames under the free-name rule ("Change Handle Name").
    void setName(const char *name);
    /// Always records and notifies, even for the current mask.
    void setPaneMask(const char *mask);
    void setExpose(bool expose);
    void setDisplayInParent(bool display);
    void setDisplayInChild(bool display);
    void setDisplayInSibling(bool display);
    /// No undo and no notification.
    void setDisplayAlways(bool display) { myDisplayAlways = display; }
    void setActiveColor(const HostColor &color) override;
    /// Replaces the settings with those of the text; no undo.
    void setSettings(const char *text);
    void clearSettingList() { mySettingList.clear(); }
    /// The live handle presenting this one in a viewer; only stored.
    void setGZOwner(GZ_OpHandleLink *owner) { myOwner = owner; }

    /// Copies a live link's nodes and bindings, then its settings into this handle's list.
    int setEqual(const GZ_OpHandleLink &link) override;
    /// Node deleted and node renamed; every other event is ignored.
    void handleOpChange(HostNode *node, HostNodeEvent event, void *data) override;

    // Attaching and detaching keep the manager's index of handles by node up to date.
    int attach(HostNode &node) override;
    int detach(HostNode &node) override;
    void detachAll() override;

private:
    friend class GZ_Manager;
    friend class GZ_OHLGroup;

    GZ_OHLPersistent(GZ_Manager *manager, const char *name, const GZ_GZTemplate &gz_template);

    using DisplayFlag = bool GZ_OHLPersistent::*;
    // Shared body of the three display setters.
    template <typename Record>
    void setDisplayFlag(DisplayFlag flag, bool display, const char *show_label,
                        const char *hide_label);
    void nodeRenamed(HostNode &node, const char *old_name);

    GZ_Manager *myManager;
    std::string myName;
    /// The groups (other than the master group) that hold this handle. Next to the name:
    /// adding a member to a group reads one and changes the other, and in a big scene each
    /// cache line of a handle read is a miss.
    std::vector<GZ_OHLGroup *> myGroups;
    /// In the manager's list. Kept by the manager next to the name, which every command
    /// naming the handle reads anyway, so that finding a handle by name does not also look
    /// it up in the list's index (a second scattered read in a big scene).
    bool myListed = false;
    std::string myPaneMask;
    bool myExpose = true;
    bool myDisplayInParent = true;
    bool myDisplayInChild = true;
    bool myDisplayInSibling = true;
    bool myDisplayAlways;
    GZ_SettingList mySettingList;
    GZ_OpHandleLink *myOwner = nullptr;
};
