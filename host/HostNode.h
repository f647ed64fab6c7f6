// HostNode: a node of the scene, with its parameters, flags, child network and event callbacks.
#pragma once

#include "host/HostNodeCallbackList.h"
#include "host/HostParmList.h"
#include "host/HostSpareLayout.h"

#include <memory>
#include <string>
#include <vector>

class HostDirector;
class HostNetwork;
class HostOperator;

/// Events a node sends to its callbacks. The codes are grouped: 2 deleted; 3 renamed;
/// 11, 12, 15, 16 and 17 are changes of the node's data; 13 and 18 change its interface.
enum HostNodeEvent
{
    HOST_NODE_CREATED = 1,            ///< data: null
    HOST_NODE_DELETED = 2,            ///< data: null; sent before the node goes away
    HOST_NODE_RENAMED = 3,            ///< data: the previous name (const char *)
    HOST_NODE_PARM_CHANGED = 11,      ///< data: the HostParm * that changed
    HOST_NODE_FLAG_CHANGED = 12,      ///< data: null
    HOST_NODE_INTERFACE_CHANGED = 13, ///< data: null; spare parameters changed
    HOST_NODE_INPUT_CHANGED = 15,     ///< data: null
    HOST_NODE_CHANNEL_CHANGED = 16,   ///< data: the HostParm * whose channels changed
    HOST_NODE_DATA_CHANGED = 17,      ///< data: null
    HOST_NODE_TEMPLATES_CHANGED = 18  ///< data: null; the operator's templates were replaced
};

/// A node-event callback: the node, the callee it was registered with, the event and its data.
using HostNodeEventCallback = void (*)(HostNode *node, void *callee, HostNodeEvent event,
                                       void *data);

/// A node. Owned by the network it lives in; owns its parameter list and its child network
/// (when its operator type has a child table). Nodes without an operator type are managers
/// (the root "/" and "/obj"). Unique ids come from the director and are never reused.
class HostNode
{
public:
    /// Bits of the flag word.
    enum Flag : unsigned
    {
        FLAG_DISPLAY = 0x0001,
        FLAG_RENDER = 0x0002,
        FLAG_TEMPLATE = 0x0004,
        FLAG_BYPASS = 0x0008,
        FLAG_HARD_LOCKED = 0x0010,
        FLAG_SELECTED = 0x0020,
        /// Raised while a handle reads a value, so that evaluation knows who asks.
        FLAG_HANDLE_READ = 0x4000
    };

    /// Write permission for owner, group and others: the access a handle needs.
    static constexpr unsigned ACCESS_WRITE = 0x92;

    ~HostNode();
    HostNode(const HostNode &) = delete;
    HostNode &operator=(const HostNode &) = delete;

    const std::string &getName() const { return myName; }
    /// Full path from the root: "/obj/geo1". The root is "/".
    std::string getFullPath() const;
    int getUniqueId() const { return myUniqueId; }
    /// The operator type; null for manager nodes.
    HostOperator *getOperator() const { return myOperator; }
    /// The operator type's name, or empty for managers.
    const std::string &getOperatorName() const;
    /// The network type of the table the operator belongs to (0 Object ... 6 Top), or -1.
    int getNetworkTypeId() const;

    HostNetwork *getParentNetwork() const { return myParent; }
    /// The node that owns the network this node lives in; null for the root.
    HostNode *getParent() const;
    /// The network of this node's children, or null.
    HostNetwork *getChildNetwork() const { return myChildren.get(); }
    HostDirector *getDirector() const { return myDirector; }

    /// Resolves a path: an absolute path starts at the root; a relative one starts at this
    /// node, "." staying in place, ".." going to the parent and a name going to a child
    /// ("../geo2" is a sibling, "box1" a child). Null when nothing matches.
    HostNode *findNode(const std::string &path) const;
    /// The relative path from this node to `target` (as `findNode` reads it): "." for the
    /// node itself, "../geo2" for a sibling.
    std::string getRelativePathTo(const HostNode &target) const;

    // Parameters.
    HostParmList &getParmList() { return *myParms; }
    const HostParmList &getParmList() const { return *myParms; }
    HostParm *getParm(const std::string &name) const { return myParms->getParm(name); }
    /// Resolves a channel name on this node ("tx", "t", an alias); null when not found.
    HostParm *findChannel(const std::string &channel, int &vec_index) const
    {
        return myParms->findChannel(channel, vec_index);
    }
    /// Resolves a channel name as bindings and ch() use it: "tx" (a channel, a parameter
    /// name for its first component, or an alias) on this node, or a path to another node's
    /// channel ("../geo2/tx", "/obj/geo1/tx"). Sets the node, parameter and component;
    /// false (all cleared) when nothing matches. Implemented in HostParmChannels.cpp.
    bool resolveChannel(const std::string &name, HostNode *&node, HostParm *&parm,
                        int &vectorIndex) const;
    /// Whether the node may be changed at all: it grants write access. Repairs of references
    /// leave the parameters of other nodes alone unless this holds.
    bool canModify() const { return (myPermissions & ACCESS_WRITE) == ACCESS_WRITE; }
    /// Whether the node grants `mask` (permission bits, see ACCESS_WRITE) on `parm`.
    bool canAccess(unsigned mask, const HostParm &parm) const;
    unsigned getPermissions() const { return myPermissions; }
    void setPermissions(unsigned mode) { myPermissions = mode; }
    /// Whether the user interface may change component k: write access, component unlocked
    /// and enabled.
    bool canModifyFromUI(const HostParm &parm, int k) const;

    /// Records the parameter's whole state for undo (when the undo manager accepts records).
    void saveParmForUndo(const HostParm &parm);
    /// Records component k of `parm` only, for a change that touches no other.
    void saveComponentForUndo(const HostParm &parm, int k);
    /// Pre-change notification: called before a parameter changes, after it was saved. The
    /// reference host keeps no cooked data, so there is nothing to invalidate yet; it counts
    /// the changes so that tests and tools can see them.
    void parmChanging(HostParm &parm);
    /// Number of pre-change notifications so far.
    int getNumParmChanges() const { return myParmChanges; }
    /// Post-change notification: input interests of the parameter, then the parameter-changed
    /// event to the node's callbacks.
    void parmChanged(HostParm &parm);

    /// The user-level write: refused (false) when the UI may not modify the component;
    /// otherwise saves for undo, sets the constant and notifies.
    bool setParmValue(HostParm &parm, int k, double value);
    bool setParmString(HostParm &parm, int k, const std::string &text,
                       HostStringMeaning meaning = HOST_STRING_LITERAL);
    /// Bakes component k: the value it has at `time` stays as its constant (a string
    /// parameter keeps the text as a plain value) and its channel or expression goes; saved
    /// for undo and notified. False, changing nothing, when the node may not be modified or
    /// the component is locked or out of range; true without a change for a constant.
    bool bakeParmValue(HostParm &parm, int k, double time);

    /// Brings the groups that input interests watch up to date at `time`: the reference host
    /// keeps no cooked groups, so with `notify` it tells the interests of every watched
    /// parameter. Returns the number of watched parameters.
    int updateInputGroups(double time, bool notify);

    /// Runs the callback of a parameter's template with this node. Returns its result, or 0
    /// when the template has no callback.
    int runParmCallback(HostParm &parm, int data, double time);

    // Spare parameters: extra templates owned by the node, appended to its parameters.
    const HostParmTemplateList &getSpareTemplates() const { return mySpareTemplates; }
    /// Replaces the spare templates and rebuilds the spare parameters; values of parameters
    /// whose name and size survive are kept. Sends HOST_NODE_INTERFACE_CHANGED.
    void setSpareTemplates(const HostParmTemplateList &templates);
    /// The import records placed among the spare templates.
    const std::vector<HostImportRecord> &getSpareImports() const { return mySpareImports; }
    /// The whole spare interface: templates and import records.
    HostSpareLayout getSpareLayout() const { return {mySpareTemplates, mySpareImports}; }
    /// Replaces templates and import records as `setSpareTemplates` does (not undoable; see
    /// HostSpareUpdate for the undoable edit).
    void setSpareLayout(const HostSpareLayout &layout);
    /// Rebuilds every parameter after the operator's templates changed, keeping values of
    /// parameters whose name and size survive. A spare parameter that clashes with a name or
    /// channel the operator now uses is renamed ("amt1", an instance pattern "w#_1"). Sends
    /// HOST_NODE_TEMPLATES_CHANGED.
    void rebuildParms();

    // Flags.
    unsigned getFlags() const { return myFlags; }
    bool getFlag(unsigned mask) const { return (myFlags & mask) != 0; }
    /// Sets or clears flag bits and sends HOST_NODE_FLAG_CHANGED when the word changed.
    void setFlag(unsigned mask, bool on);
    /// Replaces the flag word without notifying (for transient bits such as FLAG_HANDLE_READ).
    void setFlagWord(unsigned flags) { myFlags = flags; }

    // Event callbacks.
    /// Registers (callee, callback); a pair already registered is not added twice.
    void addEventCallback(void *callee, HostNodeEventCallback cb);
    /// Removes (callee, callback); safe while events are being sent.
    void removeEventCallback(void *callee, HostNodeEventCallback cb);
    bool hasEventCallback(void *callee, HostNodeEventCallback cb) const;
    int getNumEventCallbacks() const;
    /// Sends an event to every callback, in registration order. Callbacks may remove
    /// themselves or others; removed callbacks are not called afterwards.
    void sendEvent(HostNodeEvent event, void *data = nullptr);

private:
    friend class HostNetwork;
    friend class HostDirector;
    HostNode(HostDirector *director, HostNetwork *parent, HostOperator *op, const std::string &name,
             int unique_id);
    void buildParms();

    HostDirector *myDirector;
    HostNetwork *myParent;
    HostOperator *myOperator;
    std::string myName;
    int myUniqueId;
    unsigned myFlags = 0;
    unsigned myPermissions = 0777;
    HostParmTemplateList mySpareTemplates;
    std::vector<HostImportRecord> mySpareImports;
    std::unique_ptr<HostParmList> myParms;
    std::unique_ptr<HostNetwork> myChildren;
    HostNodeCallbackList<HostNodeEventCallback> myCallbacks;
    int myParmChanges = 0;
};
