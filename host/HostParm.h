// HostParm: one parameter of a node, with its components' values and states.
#pragma once

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
struct HostParmComponent
{
    double myValue = 0.0;                              ///< the constant number
    std::string myString;                              ///< the constant text (string parameters)
    HostStringMeaning myMeaning = HOST_STRING_LITERAL; ///< how myString reads
    std::string myExpression; ///< an expression replacing the constant, when not empty
    std::shared_ptr<HostChannel> myChannel; ///< keys, when the component is animated
    HostParmDefault myDefault;              ///< what "revert to default" restores
    HostParmDefault myFactoryDefault;       ///< the template's default, restorable
    bool myLocked = false;                  ///< a locked component refuses changes
    bool myEnabled = true;                  ///< a disabled component is shown greyed out
    bool myActive = false;                  ///< highlighted as driven by an active handle

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
    HostParm(const HostParmTemplate &tmpl, HostParmList *list, int index);
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

    int getVectorSize() const { return static_cast<int>(myComponents.size()); }
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
    void setValue(int k, double value);
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

    // Input notifications (group parameters watched by handles).
    void addInputInterest(const HostParmInterest &interest);
    void removeInputInterest(const HostParmInterest &interest);
    bool hasInputInterest(const HostParmInterest &interest) const;
    int getNumInputInterests() const { return static_cast<int>(myInterests.size()); }
    const std::vector<HostParmInterest> &getInputInterests() const { return myInterests; }
    /// Calls every interest with `data`, in registration order.
    void notifyInputInterests(void *data) const;

    // Multiparms.
    bool isMultiParm() const { return getType().isMultiparm(); }
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

    const HostParmTemplate *myTemplate;
    HostParmList *myList;
    int myIndex;
    std::string myName;
    std::vector<HostParmComponent> myComponents;
    std::vector<std::string> myChannelNames; ///< instance-renamed channel names
    std::vector<HostParmInterest> myInterests;
    bool mySpare = false;
    bool myHidden = false;
    // Multiparm bookkeeping, maintained by the list.
    int myInstanceCount = 0;
    std::vector<std::vector<HostParm *>> myInstances;
    HostParm *myOwner = nullptr;
    int myInstanceNumber = -1;
};
