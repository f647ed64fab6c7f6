// GZ_OpHandleLink: a live handle instance bound to the parameters of the nodes it drives.
#pragma once

#include "host/HostChannel.h"
#include "host/HostColor.h"
#include "host/HostNode.h"
#include "host/HostParmType.h"
#include "host/HostUndoManager.h"
#include "link/GZ_Vector.h"

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class GZ_GZTemplate;
class GZ_SettingList;
class HostCommandArgs;
class HostDirector;
class HostOperator;
class HostParm;

/// One live instance of an op-handle-link template: a handle shown in a viewer, attached to
/// one or more nodes, whose handle parameters are bound to parameters of those nodes by
/// binding text (a channel name, a projection "{a,b,c,d,name}" or an expression "!expr").
///
/// The host's handle classes derive from it, override the virtual hooks and read and write
/// node values through the protected value operations. The link does not own its nodes or
/// its template; it registers a node-event callback on every node it watches (the keyframe
/// nodes) and input interests on watched group parameters, and removes all of them when the
/// node is detached, deleted, or the link is destroyed.
///
/// Cost: attaching and detaching are linear in the number of handle parameters; a value
/// read or write resolves one channel name (a hash lookup) and follows channel references.
class GZ_OpHandleLink
{
public:
    using StringArray = std::vector<std::string>;
    /// An input-group interest callback: the link and the host's notification data.
    using InterestCallback = void (*)(void *link, void *data);

    /// One input-group interest of a handle parameter. A table of interests ends with an
    /// entry whose callback is null.
    class GZ_Interest
    {
    public:
        GZ_Interest(int handle_parm_index = -1, InterestCallback callback = nullptr)
            : myHandleParmIndex(handle_parm_index), myCallback(callback)
        {
        }

        int myHandleParmIndex;
        InterestCallback myCallback;
    };

    /// Lets a client take over value access: the link delegates the operations of the same
    /// names to it (see the value operations). Implemented outside this library.
    class LateBinding
    {
    public:
        virtual ~LateBinding() = default;
        virtual void beginHandleChange(GZ_OpHandleLink *link, void *data) = 0;
        virtual void endHandleChange(GZ_OpHandleLink *link, void *data) = 0;
        virtual void updateStateValues(GZ_OpHandleLink *link, void *data) = 0;
        virtual void updateHandleValues(GZ_OpHandleLink *link) = 0;
        virtual int getParmValue(GZ_OpHandleLink *link, int index, std::string &value,
                                 const std::string &dflt) = 0;
        virtual int getParmValue(GZ_OpHandleLink *link, int index, double &value) = 0;
        virtual int getParmValue(GZ_OpHandleLink *link, int index, int &value, int dflt) = 0;
        virtual int setParmValue(GZ_OpHandleLink *link, int index, const std::string &value) = 0;
        virtual int setParmValue(GZ_OpHandleLink *link, int index, int value, bool set_key) = 0;
        virtual int setParmValue(GZ_OpHandleLink *link, int index, double value, bool set_key) = 0;
        virtual bool isParmEnabled(GZ_OpHandleLink *link, int index) = 0;
    };

    explicit GZ_OpHandleLink(const GZ_GZTemplate &gz_template);
    GZ_OpHandleLink(const GZ_OpHandleLink &) = delete;
    GZ_OpHandleLink &operator=(const GZ_OpHandleLink &) = delete;

    // Virtual operations, in slot order.
    virtual ~GZ_OpHandleLink();
    /// Attaches a node (and watches it); -1 when it is already attached, else 0.
    virtual int attach(HostNode &node);
    /// Detaches a node; -1 when it was not attached, else 0.
    virtual int detach(HostNode &node);
    virtual void detachAll();
    virtual bool getShowOpPath() const { return myShowOpPath; }
    /// Called after every rebuild of the description, with the previous description.
    virtual void descriptionChanged(const char *previous);
    virtual void onDeletion();
    virtual void handleOpNodeChange(HostNode &node);
    virtual void handleOpUIChange(HostNode &node);
    virtual int wantsOpNodeChange(const HostNode &node) const;
    virtual bool flagOpNodeChangeNeeded(HostNode &node);
    /// 1 when no attached node has that network type id and operator type name, else 0.
    virtual int refreshBindings(int network_type_id, const char *operator_type_name);
    /// The binding list of attached node `opnum` (an empty list when out of range).
    virtual const StringArray &allParmNames(int opnum) const;
    virtual void setActiveColor(const HostColor &color);
    virtual int isEqual(const GZ_OpHandleLink &other) const;
    virtual int setEqual(const GZ_OpHandleLink &other);
    virtual void loadSettings(const GZ_SettingList &settings);
    virtual void saveSettings(GZ_SettingList &settings, bool for_node) const;
    virtual void saveSettingsToAppropriateLocation();
    virtual void forceUpdateFromOpParms();
    /// The derived handle reads the node values again.
    virtual void updateFromOpParms();
    /// A handle parameter became bound; returns 1.
    virtual int justLinked(int handle_parm_index);
    /// A handle parameter became unbound, disabled or hidden.
    virtual void justUnlinked(int handle_parm_index);
    virtual GZ_Interest *getInputGroupInterests() const;
    /// The override time when set, else the calling thread's evaluation time.
    virtual double getTime() const;
    virtual int hasTimeInterest() const;
    virtual void handleTimeChange();
    virtual void handleOpChange(HostNode *node, HostNodeEvent event, void *data);
    virtual void setOwnerOp(const char *path);
    virtual void setOwnerOpGroup(const char *name);

    // Template.
    const GZ_GZTemplate &getTemplate() const { return *myTemplate; }
    int getNumHandleParms() const;
    /// Index of a handle parameter by name, or -1.
    int findHandleParmIndex(const char *name) const;
    bool ethereal() const;

    // Bindings per operator type and per attached node.
    /// The bindings of every handle parameter for nodes of that operator type, created empty.
    /// The reference is good until the next attach: lists are shared between links and
    /// nodes while nobody changes them (see gz_SharedBindings), and this one is made the
    /// link's own before it is returned.
    StringArray &opParmNames(const char *operator_type_name);
    void clearOpTypeParmNamesMap();
    /// Stores a binding; expressions and empty bindings leave the handle parameter on node 0,
    /// others call justLinked. Returns 1.
    int linkOpParm(const char *operator_type_name, int handle_parm_index, const char *binding);
    /// linkOpParm by handle parameter name; 0 when the name is unknown.
    int linkOpParmToHandleParm(const char *operator_type_name, const char *handle_parm_name,
                               const char *binding);
    const StringArray &linkedParmNames(int opnum) const { return allParmNames(opnum); }
    int getLinkedParmCount() const { return static_cast<int>(myNodeParmNames.size()); }
    bool hasLinkedParms() const { return !myNodeParmNames.empty(); }
    /// Appends a copy of the bindings of node `opnum`'s operator type as that node's list.
    void addParmNames(int opnum);
    /// Deletes binding list `opnum`; later lists move up.
    void removeParmNames(int opnum);
    /// The attached node that drives a handle parameter, as an index; -1 when out of range.
    int getOpnumForHandleParmIndex(int index) const;

    // Attached and watched nodes.
    int getNumOps() const { return static_cast<int>(myOps.size()); }
    HostNode *getOpNode(int i) const;
    bool hasOpNode(const HostNode &node) const { return myOpSet.count(&node) != 0; }
    int getKeyframeNumOps() const { return static_cast<int>(myKeyframeOps.size()); }
    HostNode *getKeyframeOpNode(int i) const;
    bool hasKeyframeOpNode(const HostNode &node) const { return myKeyframeSet.count(&node) != 0; }
    void attachForKeyframe(HostNode &node);
    void detachForKeyframe(HostNode &node);
    void detachAllForKeyframe();
    /// The first attached node (in attach order) of that network type id and operator type.
    HostNode *findOpNode(int network_type_id, const char *operator_type_name) const;
    /// The node whose parameters the bindings refer to, for an attached node.
    HostNode *getOwnerOpRelativeTo(HostNode *node) const;
    /// The operator type whose last settings apply: that of the single attached node when
    /// operator-type settings are allowed, else null.
    HostOperator *lastSettingsOperatorTypeRestriction() const;

    // Identity, description and display.
    int id() const { return myId; }
    void id(int id) { myId = id; }
    const std::string &getRootDescription() const { return myRootDescription; }
    void setRootDescription(const char *text);
    const std::string &getDescription() const { return myDescription; }
    void buildDescription();
    const std::string &getOwnerOp() const { return myOwnerOp; }
    const std::string &getOwnerOpGroup() const { return myOwnerOpGroup; }
    const HostColor &getActiveColor() const { return myActiveColor; }
    /// The colour of a handle that nobody recoloured: red.
    static const HostColor &getDefaultColor();
    void setShowOpPath(bool show) { myShowOpPath = show; }
    bool getIsTimeOverride() const { return myIsTimeOverride; }
    void setIsTimeOverride(bool on) { myIsTimeOverride = on; }
    double getTimeOverrideTime() const { return myTimeOverrideTime; }
    void setTimeOverrideTime(double time) { myTimeOverrideTime = time; }

    // Which setting sources the handle may be loaded from.
    bool allowsUsingPerOpSettingsTable() const { return myAllowPerOpSettingsTable; }
    void setAllowUsingPerOpSettingsTable(bool on) { myAllowPerOpSettingsTable = on; }
    bool allowsUsingLastSettingsTable() const { return myAllowLastSettingsTable; }
    void setAllowUsingLastSettingsTable(bool on) { myAllowLastSettingsTable = on; }
    bool allowsUsingOpTypeSettings() const { return myAllowOpTypeSettings; }
    void setAllowUsingOpTypeSettings(bool on) { myAllowOpTypeSettings = on; }
    bool allowsUsingLastVisibilitySetting() const { return myAllowLastVisibilitySetting; }
    void setAllowUsingLastVisibilitySetting(bool on) { myAllowLastVisibilitySetting = on; }

    // Settings.
    /// Applies settings text on top of the current settings (only settings already present
    /// take the new values).
    void updateSettings(const char *text);
    void loadSettingsFromTables(bool use_last_table);
    void removeSettingsFromTables();

    // Late binding and proxy.
    void setLateBinding(LateBinding *late_binding) { myLateBinding = late_binding; }
    bool hasLateBinding() const { return myLateBinding != nullptr; }
    bool hasLateBinding(const LateBinding *late_binding) const
    {
        return late_binding && late_binding == myLateBinding;
    }
    LateBinding *getLateBinding() const { return myLateBinding; }
    /// Registers `owner` in the host's proxy table; the index is a weak reference to it.
    void allocProxy(void *owner);
    void freeProxy();
    int getProxyIndex() const { return myProxyIndex; }

    // Handle parameter activation.
    int activateHandleParm(int index) { return justLinked(index); }
    void disableHandleParm(int index) { justUnlinked(index); }
    /// Passes every handle parameter not named in names[first...] to justUnlinked.
    void isolateHandleParms(int first, const StringArray &names);
    /// Marks every bound component as driven (or not) by an active handle.
    void setBindingState(bool active);
    void doUpdateFromOpParms() { handleTimeChange(); }
    /// Hides the handle parameters whose bound components on `node` are locked.
    void updateParmLockStatus(HostNode &node);

    // Input-group interests.
    const StringArray &getInputGroupInterestNames() const { return myInputGroupInterestNames; }
    std::string getFirstInputGroupInterestName() const;
    void addAllInputGroupInterests(int opnum);
    void removeAllInputGroupInterests(int opnum);
    int addInputGroupInterest(int handle_parm_index, InterestCallback callback, int opnum);
    void removeInputGroupInterest(int handle_parm_index, InterestCallback callback, int opnum);

    // Command operations and their text form.
    /// One line per attached node: prefix, the node path and "binding:handleparm" pairs,
    /// each in the command language's protected form.
    int writeOptions(std::ostream &os, const char *prefix) const;
    /// Reads the words writeOptions wrote (argument 2 the node path, then the pairs).
    int runBindCommand(HostCommandArgs &args);
    int runUnbindCommand(HostCommandArgs &args);

    // Binding text.
    /// The channel name and mapping of a binding (the identity for a plain channel name).
    static void extractProjection(std::string &out, const std::string &text, double &a, double &b,
                                  double &c, double &d);
    static void extractChannelName(std::string &out, const std::string &text);
    /// Whether a handle may not drive that channel of `node` at `time`.
    static bool isOpParmLocked(const std::string &channel_name, HostNode &node, double time,
                               HostParm **out_parm = nullptr, HostNode **out_node = nullptr);
    /// The node-event callback registered on every watched node.
    static void handleOpChangeCallback(HostNode *node, void *callee, HostNodeEvent event,
                                       void *data);

    // Value access used by tools outside the handle class.
    int iterateParms(int opnum, const std::function<void(const HostParm &, int)> &fn) const;
    int iterateParms(int opnum, const std::function<void(HostParm &, int)> &fn, bool access_check);
    bool isParmEnabled(int index, int opnum) const;

    // Channel operations of the handle's menu and hotkeys. Each works on the bound
    // components of keyframe node `opnum`, or of every keyframe node when `opnum` is
    // negative, walking each node's bindings from the last to the first. Refused and
    // unresolvable components are skipped silently. While the resource manager's parameter
    // cache is open, keying and scoping hand the components to the cache instead.

    /// Keys handle parameters `first` to `last` (every binding when either is negative) at
    /// getTime(), in one undo block ("Create Key(s)" unless named), and scopes the keyed
    /// channels with one scope command when the preferences ask for it.
    void setKeys(int opnum, int first, int last, const char *undo_name = nullptr);
    /// Removes the keys at getTime(); a channel left without segments goes.
    void removeKeys(int opnum);
    void deleteChannels(int opnum);
    /// Toggles the locked flag of every lockable component.
    void lockParms(int opnum);
    /// These three leave alone the parameters this link watches through input-group
    /// interests: they hold the handle's input, not a value to reset.
    void revertToDefaults(int opnum);
    void revertToFactoryDefaults(int opnum);
    /// Makes the current values the defaults; records no undo.
    void overwriteDefaults(int opnum);
    /// Scopes the bound channels (added to the scope when `add_mode` is non-zero) and
    /// names their motion-channel overrides with "chopscope".
    void editChannels(int add_mode, int opnum);
    /// Moves the scene time to the nearest key of a bound channel before (direction < 0)
    /// or after (direction >= 0) getTime(), when there is one.
    void findKey(int direction, int opnum);

protected:
    // Reading values.
    int getParmValue(int index, double &value, double dflt) const;
    int getParmValue(int index, int &value, int dflt) const;
    int getParmValue(int index, std::string &value, const std::string &dflt) const;
    int getParmInstValue(int index, const int *instances, double &value, double dflt,
                         int nesting) const;
    int getParmInstValue(int index, const int *instances, int &value, int dflt, int nesting) const;
    int getParmInstValue(int index, const int *instances, std::string &value,
                         const std::string &dflt, int nesting) const;
    void getParmVector3(int index, GZ_Vector3 &value, double dflt) const;
    void getParmInstVector3(int index, const int *instances, GZ_Vector3 &value, double dflt) const;
    bool readParm(int index, const std::function<void(const HostParm &, int)> &fn) const;
    HostChannelState getParmState(int index, int opnum) const;
    std::string getOpParmLabel(int index) const;
    int performParmCallback(int index, int data);

    // Writing values.
    int setParmValue(int index, double value, bool set_key);
    int setParmValue(int index, int value, bool set_key);
    int setParmValue(int index, const std::string &value,
                     HostStringMeaning meaning = HOST_STRING_LITERAL);
    int setParmInstValue(int index, const int *instances, double value, bool set_key, int nesting);
    int setParmInstValue(int index, const int *instances, int value, bool set_key, int nesting);
    int setParmInstValue(int index, const int *instances, const std::string &value,
                         HostStringMeaning meaning, int nesting);
    void setParmVector3(int index, const GZ_Vector3 &value);
    void setParmInstVector3(int index, const int *instances, const GZ_Vector3 &value);
    bool modifyParm(int index, const std::function<void(HostParm &, int)> &fn, bool access_check);
    /// Gives the component of handle parameter `to` the channel of handle parameter `from`
    /// (or removes its channel when `from` has none), keeping its current value as constant.
    void copyKeyStructure(int from, int to);

    /// Writes one number through the animation layer and channel references, with the
    /// change tolerance, the zero snap, undo and (for animatable types) a key.
    int setOpParmValue(HostNode *node, HostParm *parm, int vector_index, double value,
                       bool set_key);
    int setOpParmValue(HostNode *node, HostParm *parm, int vector_index, int value, bool set_key);
    int setOpParmValue(HostNode *node, HostParm *parm, int vector_index, const std::string &value,
                       HostStringMeaning meaning);

    // The change bracket, delegated to the late binding.
    void beginHandleChange(void *data);
    void endHandleChange(void *data);
    void updateStateValues(void *data);
    void updateHandleValues();

    // Distributed undo: one host undo block around a drag that writes many parameters.
    void beginDistributedUndoBlock(const char *name,
                                   HostUndoBlockType type = HOST_UNDO_BLOCK_NORMAL);
    void endDistributedUndoBlock();
    bool inDistributedUndoBlock() const { return myDistributedUndoBlockId >= 0; }
    int getDistributedUndoBlockId() const { return myDistributedUndoBlockId; }

    /// Whether the host's debug-log flag for undo diagnostics is on: asked once per process
    /// and cached (-1 until asked). Tests reset it to -1 to ask again.
    static int theUndoDebugFlag;

private:
    struct Resolved;
    struct InterestRecord;
    struct BoundComponent;
    using ComponentFn = std::function<void(const BoundComponent &)>;

    /// Calls `fn` with each keyframe node index that an operation on `opnum` visits.
    void forEachChannelNode(int opnum, const std::function<void(int)> &fn) const;
    /// The per-node walk: bindings `first` to `last` of node `opnum` (all when either is
    /// negative), from the last to the first, resolved on the keyframe node (the attached
    /// node when `on_attached`) and followed through channel references.
    void walkBoundComponents(int opnum, int first, int last, bool on_attached,
                             const ComponentFn &fn) const;
    /// Whether this link has an input-group interest on the parameter.
    bool watchesParm(const HostParm &parm) const;
    /// forEachChannelNode and walkBoundComponents over every binding, inside one undo block.
    void changeBoundComponents(int opnum, const char *undo_name, bool on_attached,
                               const ComponentFn &fn);

    /// Resolves handle parameter `index` through its op number (or `opnum` when it is 0 or
    /// more) to a node, parameter and component; see Resolved for what is filled.
    bool resolve(int index, int opnum, const int *instances, int nesting, bool project,
                 Resolved &out) const;
    int readNumber(int index, const int *instances, int nesting, bool as_int, double &value) const;
    int writeNumber(int index, const int *instances, int nesting, double value, bool set_key,
                    bool as_int);
    int readString(int index, const int *instances, int nesting, std::string &value) const;
    int writeString(int index, const int *instances, int nesting, const std::string &value,
                    HostStringMeaning meaning);
    int indexOfOp(const HostNode &node) const;
    /// Whether the undo diagnostics are printed (the cached host debug-log flag).
    static bool undoDebugLogging();
    std::string bindingOf(int opnum, int index) const;
    /// The operator type's bindings, pooled so that nodes and other links can share them.
    std::shared_ptr<const StringArray> sharedOpParmNames(const std::string &operator_type_name);

    const GZ_GZTemplate *myTemplate;
    std::unordered_map<std::string, std::shared_ptr<const StringArray>> myOpTypeParmNames;
    std::vector<int> myHandleParmOpnums;
    std::vector<std::shared_ptr<const StringArray>> myNodeParmNames;
    std::vector<HostNode *> myOps;
    std::vector<HostNode *> myKeyframeOps;
    StringArray myInputGroupInterestNames;
    int myId = -1;
    GZ_Interest *myCurrentInterests = nullptr;
    std::string myRootDescription;
    std::string myDescription;
    std::string myOwnerOp;
    std::string myOwnerOpGroup;
    HostColor myActiveColor;
    int myDistributedUndoBlockId = -1;
    bool myAllowPerOpSettingsTable = true;
    bool myAllowLastSettingsTable = true;
    bool myAllowOpTypeSettings = true;
    bool myAllowLastVisibilitySetting = true;
    bool myShowOpPath = true;
    bool myIsTimeOverride = false;
    double myTimeOverrideTime = -1.0;
    LateBinding *myLateBinding = nullptr;
    int myProxyIndex = -1;

    // Indexes and records that keep lookups constant-time and callbacks removable.
    std::unordered_set<const HostNode *> myOpSet;
    std::unordered_set<const HostNode *> myKeyframeSet;
    std::vector<InterestRecord> myInterestRecords;
    HostDirector *myProxyDirector = nullptr;
};
