// HostParm: one parameter of a node, with its components' values and states.
#pragma once

#include "host/HostChannel.h"
#include "host/HostFiledReference.h"
#include "host/HostParmTemplate.h"

#include <memory>
#include <string>
#include <vector>

class HostChannel;
class HostNode;
class HostParmList;

/// One component of a parameter. The value is a constant number or text; the expression slot
/// and the channel belong to the animation layer, which gives them meaning. Plain value:
/// copying a component copies its whole state (the channel pointer is shared; the animation
/// layer copies channels on write).
///
/// Every node holds many components and every undo snapshot copies them, so the rarely set
/// parts are shared, immutable blocks: a default that differs from the template's and a
/// motion-channel override path. Null means "as the template has it" and "none".
struct HostParmComponent
{
    double myValue = 0.0;     ///< the constant number
    std::string myString;     ///< the constant text (string parameters)
    std::string myExpression; ///< an expression replacing the constant, when not empty
    std::shared_ptr<HostChannel> myChannel; ///< keys, when the component is animated
    /// What "revert to default" restores when it is not the template's default.
    std::shared_ptr<const HostParmDefault> myDefault;
    /// Motion-channel override path, when a motion channel drives the component.
    std::shared_ptr<const std::string> myOverride;
    HostStringMeaning myMeaning = HOST_STRING_LITERAL; ///< how myString reads
    bool myLocked = false;                             ///< a locked component refuses changes
    bool myEnabled = true;                             ///< a disabled component is shown greyed out
    bool myActive = false; ///< highlighted as driven by an active handle

    bool operator==(const HostParmComponent &o) const;
    bool operator!=(const HostParmComponent &o) const { return !(*this == o); }
};

/// A parameter's whole state, as undo records save and restore it.
struct HostParmState
{
    std::vector<HostParmComponent> myComponents;
    bool myHidden = false;
    int myInstanceCount = 0; ///< multiparms: number of instances
};

/// An interest in a parameter's input notifications: a callee and a function taking the
/// callee and the notification data. Registered by handle links on group parameters.
struct HostParmInterest
{
    void *myCallee = nullptr;
    void (*myCallback)(void *callee, void *data) = nullptr;
    bool operator==(const HostParmInterest &o) const
    {
        return myCallee == o.myCallee && myCallback == o.myCallback;
    }
};

/// One parameter of a node, built from a template. Owned by its `HostParmList`; the template
/// is owned by the operator type or by the node's spare templates and outlives the parameter
/// (the list is rebuilt when templates change). Values are per component.
///
/// Setting values here changes storage only: the node's `setParmValue`/`setParmString` are
/// the entry points that also record undo and notify listeners.
class HostParm
{
public:
    /// Destroys a parameter made by `create` and frees its block unless its list lent it.
    struct Release
    {
        void operator()(HostParm *parm) const;
    };
    using Owner = std::unique_ptr<HostParm, Release>;

    /// Bytes a parameter of this template and its components take in one block.
    static std::size_t blockSize(const HostParmTemplate &tmpl);
    /// A parameter whose components live in the same block as the parameter itself: a scene
    /// holds many parameters, and fewer, larger blocks spare the allocator work and keep a
    /// node's state together. `storage`, when not null, is blockSize(tmpl) bytes, aligned for
    /// a pointer, that outlive the parameter; otherwise the parameter allocates its block.
    static Owner create(const HostParmTemplate &tmpl, HostParmList *list, int index,
                        void *storage = nullptr);
    ~HostParm();
    HostParm(const HostParm &) = delete;
    HostParm &operator=(const HostParm &) = delete;

    const HostParmTemplate &getTemplate() const { return *myTemplate; }
    const HostParmType &getType() const { return myTemplate->getType(); }
    /// The parameter's name: the template's token, with instance numbers for multiparm
    /// instances ("pt#" becomes "pt1").
    const std::string &getName() const { return myName; }
    const std::string &getToken() const { return myName; }
    const std::string &getLabel() const { return myTemplate->getLabel(); }
    /// Index of this parameter in its list.
    int getIndex() const { return myIndex; }
    /// The owning node; null for a list that belongs to no node.
    HostNode *getNode() const;
    HostParmList *getList() const { return myList; }

    int getVectorSize() const { return myNumComponents; }
    /// Channel name of component k ("tx"); empty when k is out of range.
    const std::string &getChannelName(int k) const;
    /// Component of a channel name of this parameter, or -1.
    int findChannel(const std::string &channel) const;

    bool isSpare() const { return mySpare; }
    void setSpare(bool spare) { mySpare = spare; }
    /// Visible when the template is not invisible and the node has not hidden it.
    bool isVisible() const { return !myTemplate->getType().isInvisible() && !myHidden; }
    void setHidden(bool hidden) { myHidden = hidden; }

    // Constant values. Out-of-range components read 0 / empty and ignore writes.
    double getValue(int k) const;
    int getInt(int k) const;
    const std::string &getString(int k) const;
    HostStringMeaning getStringMeaning(int k) const;
    /// Menus clamp to their first and last item: a menu never holds an index it lacks.
    void setValue(int k, double value);
    /// `value` moved into the item range when this is a menu; unchanged otherwise.
    double clampToMenu(double value) const;
    void setString(int k, const std::string &text, HostStringMeaning meaning);

    /// The value at a time. Without an expression or a channel it is the constant; the
    /// animation layer evaluates expressions and channels here.
    double evalFloat(int k, double time) const;
    int evalInt(int k, double time) const;
    std::string evalString(int k, double time) const;

    // Component states.
    const HostParmComponent &component(int k) const { return myComponents[k]; }
    HostParmComponent &component(int k) { return myComponents[k]; }
    bool isLocked(int k) const;
    void setLocked(int k, bool locked);
    bool isEnabled(int k) const;
    void setEnabled(int k, bool enabled);
    /// True when every component is enabled.
    bool isEnabled() const;
    bool isActive(int k) const;
    void setActive(int k, bool active);
    bool hasChannel(int k) const;
    /// Whether component k holds an expression or a channel rather than a constant.
    bool isTimeDependent(int k) const;

    // Defaults.
    const HostParmDefault &getDefault(int k) const;
    void setDefault(int k, const HostParmDefault &value);
    const HostParmDefault &getFactoryDefault(int k) const;
    /// Makes the current constant of component k its default.
    void overwriteDefault(int k);
    /// Sets component k back to its default (clearing expression and channel).
    void revertToDefault(int k);
    /// Restores the template's default as the default of component k.
    void restoreFactoryDefault(int k);
    /// Whether component k holds its default value and no expression or channel.
    bool isAtDefault(int k) const;

    // Whole state, for undo.
    HostParmState saveState() const;
    void restoreState(const HostParmState &state);
    /// Exchanges component k's whole state with `other` (one component's undo).
    void swapComponent(int k, HostParmComponent &other);

    // Input notifications (group parameters watched by handles).
    void addInputInterest(const HostParmInterest &interest);
    void removeInputInterest(const HostParmInterest &interest);
    bool hasInputInterest(const HostParmInterest &interest) const;
    int getNumInputInterests() const { return static_cast<int>(getInputInterests().size()); }
    const std::vector<HostParmInterest> &getInputInterests() const;
    /// Calls every interest with `data`, in registration order.
    void notifyInputInterests(void *data) const;

    // Expressions, channels and references (HostParmChannels.cpp). A component holds a
    // constant, an expression or a channel; a channel's keys win over the other two. Edit
    // channels through these methods only: saved states share channel objects, which are
    // copied before they change.

    /// Whether component k's value is an expression (in any language).
    bool hasExpression(int k) const;
    /// The expression of component k, or empty.
    const std::string &getExpression(int k) const;
    /// Makes component k an expression in `language` (HOST_STRING_EXPRESSION or
    /// HOST_STRING_SCRIPT), replacing its channel; the constant stays underneath.
    void setExpression(int k, const std::string &text,
                       HostStringMeaning language = HOST_STRING_EXPRESSION);
    /// Message of the last failed evaluation of component k; empty after a good one.
    const std::string &getEvalError(int k) const;
    /// Evaluations that also give the error message (empty when none).
    double evalFloat(int k, double time, std::string &error) const;
    std::string evalString(int k, double time, std::string &error) const;

    /// The channel of component k, or null.
    const HostChannel *getChannel(int k) const;
    /// Gives component k a channel when it has none (no keys yet) and returns it, ready to
    /// be edited. Null when k is out of range.
    HostChannel *editChannel(int k);
    /// Removes the channel of component k; its value at `time` stays as the constant.
    void destroyChannel(int k, double time);
    /// Component k keeps the value it has at `time` as its constant (a string parameter the
    /// text as a plain value); its channel or expression goes. No undo record, no events.
    void bakeValue(int k, double time);
    int getNumSegments(int k) const;
    bool isKeyAt(int k, double time) const;
    /// Keys the value component k has at `time` (creating the channel; an expression is
    /// replaced by the keyed value).
    void setKey(int k, double time);
    void setKey(int k, double time, double value);
    /// Removes the key at `time`; returns whether there was one.
    bool removeKey(int k, double time);
    bool getPrevKeyTime(int k, double time, double &keyTime) const;
    bool getNextKeyTime(int k, double time, double &keyTime) const;
    HostChannelState getChannelState(int k, double time) const;
    /// Copies the channel of `source` component `sourceK` into component k (creating it).
    void copyChannel(int k, const HostParm &source, int sourceK);

    /// The value write at a time: with a channel, changes the key at `time` or holds the
    /// value pending there; otherwise sets the constant (replacing an expression). With
    /// `setKey`, then keys it when the type is animatable. With `propagate`, the node's
    /// post-change notification runs.
    void setValue(int k, double time, double value, bool setKey, bool propagate = true);
    /// The string write: a string component takes the text and meaning; a number component
    /// takes an expression (meaning not literal) or the number the text reads as.
    void setString(int k, double time, const std::string &text, HostStringMeaning meaning,
                   bool propagate = true);
    /// Makes the value component k has at `time` its default.
    void overwriteDefault(int k, double time);

    /// Motion-channel override path of component k (empty when none).
    const std::string &getChannelOverride(int k) const;
    void setChannelOverride(int k, const std::string &path);

    /// One step of a channel reference: when component k's expression is exactly ch("path")
    /// (or chs) and the path names a channel, that node, parameter and component.
    bool getChannelReference(int k, HostNode *&node, HostParm *&parm, int &vectorIndex) const;
    /// Walks channel references from (node, parm, vectorIndex) to the final component. Stops
    /// before a component would be visited twice (a cycle). False when parm is null.
    static bool followChannelReferences(double time, HostNode *&node, HostParm *&parm,
                                        int &vectorIndex);
    /// Fills the "#" markers of a multiparm instance name: the i-th "#" from the left, for
    /// i < nesting, becomes instances[i]; later markers stay.
    static std::string expandInstanceTokens(const std::string &text, const int *instances,
                                            int nesting);

    /// One stage (0 to 3) of asking for what a visit to component k of `parm` reads, for
    /// walks over many scattered referrers (HostPrefetchAhead): the parameter and the
    /// component, then its node, rare block and expression text, then its filed references.
    static void prefetch(const HostParm *parm, int k, int stage);

    // Multiparms.
    bool isMultiParm() const { return getType().isMultiparm(); }
    /// Whether the value is an instance count: multiparms and ramps (whose instances are
    /// their points).
    bool hasInstances() const;
    /// The terminated templates one instance is made of (a ramp's point templates).
    const HostParmTemplate *getInstanceTemplates() const;
    /// Number of instances (the multiparm's value).
    int getInstanceCount() const { return myInstanceCount; }
    /// The parameters of instance i (in child template order), or empty.
    const std::vector<HostParm *> &getInstanceParms(int i) const;
    /// The multiparm that owns this instance parameter, or null.
    HostParm *getMultiParmOwner() const { return myOwner; }
    /// Instance number of this parameter inside its owner (from the start offset), or -1.
    int getInstanceNumber() const { return myInstanceNumber; }

private:
    friend class HostParmList;
    friend class HostReferenceIndex;

    HostParm(const HostParmTemplate &tmpl, HostParmList *list, int index,
             HostParmComponent *components);
    /// Where the components start in a block that begins with the parameter.
    static std::size_t componentsOffset();

    /// Tells the scene's reference index that component k's expression text may have
    /// changed (every write that can change it ends here).
    void referencesChanged(int k);

    /// Gives component k a channel name of its own (multiparm instances).
    void setChannelName(int k, const std::string &name);

    /// Remembers (or clears) the error of component k's last evaluation; reports it to the
    /// channel manager's log when `report`.
    void noteEvalError(int k, const std::string &error, bool report) const;
    /// A value clamped to the strict range and rounded for integer kinds.
    double limitValue(double value) const;

    const HostParmTemplate *myTemplate;
    HostParmList *myList;
    HostNode *myNode; ///< the list's node, kept here: referrer checks ask for it a lot
    int myIndex;
    std::string myName;
    HostParmComponent *myComponents; ///< in the parameter's own block, after it
    int myNumComponents;
    /// State that few parameters have, kept apart so that the many plain parameters of a
    /// scene stay small. Made on first use.
    struct Rare
    {
        std::vector<std::string> myChannelNames; ///< instance-renamed channel names, else empty
        std::vector<HostParmInterest> myInterests;
        std::vector<std::string> myEvalErrors;            ///< per component, sized on first error
        std::vector<std::vector<HostParm *>> myInstances; ///< multiparms: instance parameters
        /// Per component: the channel paths its expression refers through, kept by the
        /// scene's reference index here, where a visit to the referrer finds them.
        std::vector<std::vector<HostFiledReference>> myFiled;
    };
    Rare &rare() const;
    /// The instances' parameters (multiparms), or an empty list.
    const std::vector<std::vector<HostParm *>> &instances() const;

    bool mySpare = false;
    bool myHidden = false;
    bool myReferenced = false; ///< the reference index holds entries for this parameter
    bool myOwnsBlock = true;   ///< false when the list lent the block
    // Multiparm bookkeeping, maintained by the list.
    int myInstanceCount = 0;
    mutable std::unique_ptr<Rare> myRare;
    HostParm *myOwner = nullptr;
    int myInstanceNumber = -1;
};
