// HostDirector: the root of the scene; node lookup, current node, time, undo, scene save.
#pragma once

#include "host/HostErrorSeverity.h"
#include "host/HostMultiParmLinks.h"
#include "host/HostReferenceIndex.h"
#include "host/HostUndoManager.h"

#include <iosfwd>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

class HostNetwork;
class HostNode;

/// The scene: a root node "/" whose network holds manager nodes ("/obj", an Object network).
/// Finds nodes by path and by unique id, keeps the current node, the current time and frame
/// rate, the undo manager, the scene-save callback, a scene-loading flag, debug-log flags
/// and a proxy table (small integer handles that stand for objects and go stale safely).
///
/// Directors can be constructed (tests make their own); one of them is current at a time,
/// and `instance()` returns it, creating a default director on first use. `clearScene`
/// returns a director to its initial state; unique ids keep counting so they are never
/// reused.
class HostDirector
{
public:
    /// The scene-save callback: writes the library's part of a scene.
    using SaveCallback = HostErrorSeverity (*)(std::ostream &os);

    HostDirector();
    ~HostDirector();
    HostDirector(const HostDirector &) = delete;
    HostDirector &operator=(const HostDirector &) = delete;

    /// The current director (a default one is made on first use).
    static HostDirector *instance();
    /// Makes this director the current one.
    void makeCurrent();

    /// Deletes every node under the managers (sending their deleted events), empties the
    /// undo stacks, resets time, current node, loading flag. Managers stay.
    void clearScene();

    // Nodes.
    HostNode *getRoot() const { return myRoot.get(); }
    /// The node at an absolute path ("/obj/geo1"), or relative to `relative_to`.
    HostNode *findNode(const std::string &path, const HostNode *relative_to = nullptr) const;
    HostNode *findNodeById(int unique_id) const;
    /// Creates a node of operator `type` at a full path: the parent must exist and its
    /// child table must hold `type`; the name must be valid and free. Null with a message
    /// in *error otherwise. `unique_id` and `position` are for undo (see
    /// `HostNetwork::createNode`).
    HostNode *createNode(const std::string &type, const std::string &full_path,
                         std::string *error = nullptr, int unique_id = -1, int position = -1);
    /// Deletes a node (not the root or a manager); false when it cannot.
    bool deleteNode(HostNode *node);
    bool renameNode(HostNode *node, const std::string &new_name, std::string *error = nullptr);
    /// Number of live nodes, managers included.
    int getNumNodes() const { return myNumNodes; }

    /// The current node (cleared when it is deleted).
    HostNode *getCurrentNode() const;
    void setCurrentNode(HostNode *node);

    // Time.
    double getTime() const { return myTime; }
    /// Also drops channel values pending at the previous time (see HostChannel).
    void setTime(double seconds)
    {
        myTime = seconds;
        ++myTimeEpoch;
    }
    /// Changes whenever the time is set; pending channel values remember the epoch.
    unsigned long long getTimeEpoch() const { return myTimeEpoch; }
    double getFps() const { return myFps; }
    void setFps(double fps);
    /// Frame numbers start at 1 at time 0: frame = time * fps + 1.
    double timeToFrame(double seconds) const { return seconds * myFps + 1.0; }
    double frameToTime(double frame) const { return (frame - 1.0) / myFps; }

    // Undo.
    HostUndoManager &getUndoManager() { return myUndo; }

    /// Which parameter components refer to which channels (ch() and chs() paths).
    HostReferenceIndex &getReferenceIndex() { return myReferences; }
    const HostReferenceIndex &getReferenceIndex() const { return myReferences; }
    /// The multiparm link records of every node.
    HostMultiParmLinks &getMultiParmLinks() { return myMultiParmLinks; }
    const HostMultiParmLinks &getMultiParmLinks() const { return myMultiParmLinks; }

    // Scene save and load.
    void setSaveCallback(SaveCallback cb) { mySaveCallback = cb; }
    SaveCallback getSaveCallback() const { return mySaveCallback; }
    /// Runs the save callback into `os` (no callback: HOST_ERR_NONE).
    HostErrorSeverity runSaveCallback(std::ostream &os) const;
    /// Set while a scene file is being loaded.
    bool isLoading() const { return myLoading; }
    void setLoading(bool loading) { myLoading = loading; }

    // Debug-log flags (small integers, off unless set).
    bool getDebugFlag(int flag) const;
    void setDebugFlag(int flag, bool on);

    // Proxy table: an index that stands for a pointer until it is freed.
    int allocProxy(void *object);
    void freeProxy(int index);
    /// The object of a live proxy index, or null.
    void *getProxy(int index) const;

private:
    friend class HostNetwork;
    friend class HostNode;
    int allocateId() { return myNextId++; }
    /// Whether an id was handed out before and no live node holds it.
    bool isReusableId(int id) const { return id >= 0 && id < myNextId && !findNodeById(id); }
    void registerNode(HostNode *node);
    void unregisterNode(HostNode *node);
    void makeManagers();

    HostReferenceIndex myReferences; // before myRoot: parameters leave it as nodes go
    HostMultiParmLinks myMultiParmLinks;
    std::unique_ptr<HostNode> myRoot;
    /// Nodes by unique id (ids are handed out in order from 0); null for a freed id.
    std::vector<HostNode *> myById;
    int myNumNodes = 0;
    int myNextId = 0;
    int myCurrentNodeId = -1;
    double myTime = 0.0;
    unsigned long long myTimeEpoch = 0;
    double myFps = 24.0;
    HostUndoManager myUndo;
    SaveCallback mySaveCallback = nullptr;
    bool myLoading = false;
    std::vector<int> myDebugFlags;
    std::vector<void *> myProxies;
};
