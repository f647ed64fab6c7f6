// HostParmTemplate: the definition of one parameter of an operator type (or of a handle).
#pragma once

#include "host/HostChoiceList.h"
#include "host/HostParmType.h"
#include "host/HostSpareData.h"

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

class HostNode;
class HostParmTemplate;

/// One default of one component: a number, a text and the text's meaning. The text wins over
/// the number when it is not empty (string parameters, expressions as defaults).
struct HostParmDefault
{
    double myNumber = 0.0;
    std::string myString;
    HostStringMeaning myMeaning = HOST_STRING_LITERAL;

    HostParmDefault() = default;
    HostParmDefault(double number) : myNumber(number) {}
    HostParmDefault(const std::string &text, HostStringMeaning meaning = HOST_STRING_LITERAL)
        : myString(text), myMeaning(meaning)
    {
    }
    bool operator==(const HostParmDefault &o) const
    {
        return myNumber == o.myNumber && myString == o.myString && myMeaning == o.myMeaning;
    }
    bool operator!=(const HostParmDefault &o) const { return !(*this == o); }
};

/// The range of a numeric parameter: hard bounds (when strict) and slider bounds.
struct HostParmRange
{
    double myMin = 0.0;
    double myMax = 1.0;
    bool myMinStrict = false; ///< values below myMin are clamped
    bool myMaxStrict = false; ///< values above myMax are clamped
    double myUIMin = 0.0;     ///< slider start
    double myUIMax = 1.0;     ///< slider end

    HostParmRange() = default;
    HostParmRange(double lo, double hi, bool lo_strict = false, bool hi_strict = false)
        : myMin(lo), myMax(hi), myMinStrict(lo_strict), myMaxStrict(hi_strict), myUIMin(lo),
          myUIMax(hi)
    {
    }
    bool operator==(const HostParmRange &o) const;
    bool operator!=(const HostParmRange &o) const { return !(*this == o); }
};

/// The three conditions of a parameter (or of a switcher folder's tab).
enum HostParmCondition
{
    HOST_COND_DISABLE = 0,
    HOST_COND_HIDE = 1,
    HOST_COND_NOCOOK = 2,
    HOST_NUM_CONDITIONS = 3
};

/// A parameter callback: run with the node, the parameter's index in the node's list, a
/// caller-defined integer (a button's menu index, for instance), the time and the template.
/// Returns 1 when it ran, 0 otherwise.
using HostParmCallback = int (*)(HostNode *node, int parm_index, int data, double time,
                                 const HostParmTemplate *tmpl);

/// Defines one parameter: its name token, label, type, size, per-component channel names,
/// defaults, range, menu, tags, conditions, help, export level and, for a multiparm, its child
/// templates. A switcher's components are its folders: the default of folder k holds the
/// number of templates that follow in that folder (myNumber) and its label (myString).
///
/// Templates are values (deep copies of their menu, tags and children). Lists of templates
/// (`HostParmTemplateList`) end with a terminator: a default-constructed template whose type
/// is HOST_PARM_NONE; code that walks a `const HostParmTemplate *` stops there.
class HostParmTemplate
{
public:
    /// Type extensions: presentation variants that do not change the value.
    enum TypeExtension
    {
        EXT_NONE = 0,
        EXT_JOIN = 1,         ///< joined with the next parameter
        EXT_JOIN_PAIR = 2,    ///< joined with the next parameter as a pair
        EXT_LABEL_HIDDEN = 4, ///< shown without its label
        EXT_MINI_MENU = 5,    ///< a menu shown as a small button
        EXT_NODE_PATH = 17,   ///< a string that holds a node path
        EXT_JOIN_MENU = 24    ///< a string with a menu beside it
    };

    /// Multi-parameter type bits of a multiparm template. The low four bits give the layout
    /// (0 list, 1 scrolling, 2 tabs); the ramp bits mark a ramp.
    enum MultiType
    {
        MULTI_LIST = 0,
        MULTI_SCROLL = 1,
        MULTI_SWITCHER = 2,
        MULTI_RAMP_FLOAT = 8,
        MULTI_RAMP_COLOR = 16
    };

    /// Export levels (how a parameter is exposed in dialogs of the parent).
    enum ExportLevel
    {
        EXPORT_NONE = 0,
        EXPORT_MINIMUM = 1,
        EXPORT_DIALOG = 2,
        EXPORT_ALL = 3
    };

    /// The terminator.
    HostParmTemplate() = default;
    HostParmTemplate(HostParmType type, const std::string &name, const std::string &label,
                     int vector_size = 1);
    HostParmTemplate(const HostParmTemplate &other);
    HostParmTemplate &operator=(const HostParmTemplate &other);
    HostParmTemplate(HostParmTemplate &&other) noexcept = default;
    HostParmTemplate &operator=(HostParmTemplate &&other) noexcept = default;
    ~HostParmTemplate();

    /// Whether this is the end-of-list marker.
    bool isTerminator() const { return myType.isNone(); }

    // Identity and type.
    const std::string &getToken() const { return myName; }
    const std::string &getName() const { return myName; }
    void setName(const std::string &name);
    const std::string &getLabel() const { return myLabel; }
    void setLabel(const std::string &label) { myLabel = label; }
    const HostParmType &getType() const { return myType; }
    void setType(HostParmType type);
    int getTypeExtension() const { return myTypeExtension; }
    void setTypeExtension(int ext) { myTypeExtension = ext; }
    int getMultiType() const { return myMultiType; }
    void setMultiType(int bits) { myMultiType = bits; }

    /// Number of components (folders for a switcher); at least 1 except for the terminator.
    int getVectorSize() const { return myVectorSize; }
    void setVectorSize(int size);

    /// Channel name of component k: the name itself for a one-component template, else the
    /// name with the naming scheme's suffix ("t" gives "tx", "ty", "tz") or, for NAME_BEGIN_END,
    /// the prefix ("beginrot"). Empty for k out of range.
    const std::string &getChannelName(int k) const;
    /// Component index of a channel name of this template, or -1.
    int findChannel(const std::string &channel) const;
    /// The channel name that the naming scheme of `type` gives component k of a parameter
    /// called `name` with `size` components.
    static std::string makeChannelName(HostParmType type, const std::string &name, int size, int k);
    /// Whether the channels of this template carry their component name in front
    /// (begin/end naming with more than one component).
    bool hasPrefixChannelNames() const { return myType.namesBeginEnd() && getNumChannels() > 1; }
    /// Number of channels: the vector size, but 1 for switchers and multiparms (their value
    /// is the open folder or the instance count) and 0 for the terminator.
    int getNumChannels() const { return static_cast<int>(myChannelNames.size()); }

    // Defaults. Components without an explicit default read 0 / empty.
    const HostParmDefault &getDefault(int k) const;
    void setDefault(int k, const HostParmDefault &value);
    void setDefaults(const std::vector<HostParmDefault> &values);
    const std::vector<HostParmDefault> &getDefaults() const { return myDefaults; }
    /// A second default list, read where the first holds no entry (ramps, multiparms).
    const std::vector<HostParmDefault> &getSecondDefaults() const { return mySecondDefaults; }
    void setSecondDefaults(const std::vector<HostParmDefault> &values)
    {
        mySecondDefaults = values;
    }

    // Range.
    bool hasRange() const { return myHasRange; }
    const HostParmRange &getRange() const { return myRange; }
    void setRange(const HostParmRange &range);
    void clearRange() { myHasRange = false; }

    // Menu and tags.
    const HostChoiceList *getChoiceList() const { return myChoiceList.get(); }
    void setChoiceList(const HostChoiceList *list);
    const HostSpareData *getTags() const { return myTags.get(); }
    /// The tags, created empty on first use.
    HostSpareData &tags();
    void setTags(const HostSpareData *tags);
    /// The value of one tag, or null.
    const char *getTag(const std::string &name) const;

    // Conditions, help, export, callback.
    const std::string &getCondition(HostParmCondition which) const;
    void setCondition(HostParmCondition which, const std::string &text);
    /// Conditions of folder k's tab (switchers only).
    const std::string &getTabCondition(int folder, HostParmCondition which) const;
    void setTabCondition(int folder, HostParmCondition which, const std::string &text);
    const std::string &getHelp() const { return myHelp; }
    void setHelp(const std::string &help) { myHelp = help; }
    int getExportLevel() const { return myExportLevel; }
    void setExportLevel(int level) { myExportLevel = level; }
    HostParmCallback getCallback() const { return myCallback; }
    void setCallback(HostParmCallback cb) { myCallback = cb; }
    /// Marks a template that stands for a parameter of the operator's own base set.
    bool isBaseParm() const { return myBaseParm; }
    void setBaseParm(bool base) { myBaseParm = base; }
    /// Whether changing the value makes the node recook (false marks "no cook").
    bool getCooks() const { return myCooks; }
    void setCooks(bool cooks) { myCooks = cooks; }
    bool getNoResim() const { return myNoResim; }
    void setNoResim(bool no_resim) { myNoResim = no_resim; }

    // Switchers.
    int getFolderCount() const { return myType.isSwitcher() ? myVectorSize : 0; }
    /// Number of templates after the switcher that belong to folder k.
    int getFolderParmCount(int folder) const;
    const std::string &getFolderLabel(int folder) const;
    /// Appends a folder of `count` templates.
    void addFolder(const std::string &label, int count);

    // Multiparms.
    int getNumChildren() const;
    const HostParmTemplate &getChild(int i) const { return myChildren[i]; }
    HostParmTemplate &getChild(int i) { return myChildren[i]; }
    void addChild(const HostParmTemplate &child);
    void clearChildren() { myChildren.clear(); }
    /// The child templates as a terminated list, or null for a template without children.
    const HostParmTemplate *getChildList() const;
    /// First instance number of a multiparm (its start-offset tag; 1 when none).
    int getMultiStartOffset() const;

    /// Field-by-field equality (menus, tags and children compared by value).
    bool operator==(const HostParmTemplate &o) const;
    bool operator!=(const HostParmTemplate &o) const { return !(*this == o); }

private:
    void rebuildChannelNames();

    HostParmType myType;
    std::string myName;
    std::string myLabel;
    int myVectorSize = 0;
    int myTypeExtension = EXT_NONE;
    int myMultiType = MULTI_LIST;
    std::vector<std::string> myChannelNames;
    std::vector<HostParmDefault> myDefaults;
    std::vector<HostParmDefault> mySecondDefaults;
    HostParmRange myRange;
    bool myHasRange = false;
    std::unique_ptr<HostChoiceList> myChoiceList;
    std::unique_ptr<HostSpareData> myTags;
    std::string myConditions[HOST_NUM_CONDITIONS];
    std::vector<std::vector<std::string>> myTabConditions;
    std::string myHelp;
    int myExportLevel = EXPORT_NONE;
    HostParmCallback myCallback = nullptr;
    bool myBaseParm = false;
    bool myCooks = true;
    bool myNoResim = false;
    std::vector<HostParmTemplate> myChildren; ///< terminated when not empty
};

/// A list of templates that always ends with a terminator, so that `data()` can be walked
/// like a terminated array. `size()` does not count the terminator.
class HostParmTemplateList
{
public:
    HostParmTemplateList() : myTemplates(1) {}
    HostParmTemplateList(std::initializer_list<HostParmTemplate> list);
    explicit HostParmTemplateList(const std::vector<HostParmTemplate> &list);
    /// Copies a terminated array (null gives an empty list).
    explicit HostParmTemplateList(const HostParmTemplate *terminated);

    int size() const { return static_cast<int>(myTemplates.size()) - 1; }
    bool empty() const { return size() == 0; }
    const HostParmTemplate *data() const { return myTemplates.data(); }
    HostParmTemplate *data() { return myTemplates.data(); }
    const HostParmTemplate &operator[](int i) const { return myTemplates[i]; }
    HostParmTemplate &operator[](int i) { return myTemplates[i]; }
    void append(const HostParmTemplate &t);
    void insert(int index, const HostParmTemplate &t);
    void remove(int index);
    void clear() { myTemplates.assign(1, HostParmTemplate()); }
    /// Index of the first template with that name token, or -1.
    int find(const std::string &name) const;

    bool operator==(const HostParmTemplateList &o) const { return myTemplates == o.myTemplates; }
    bool operator!=(const HostParmTemplateList &o) const { return !(*this == o); }

private:
    std::vector<HostParmTemplate> myTemplates;
};
