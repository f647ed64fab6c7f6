// GZ_EditScriptedParm: one entry of an editable parameter interface, and the data-type table.
#pragma once

#include "scriptedit/GZ_EditScriptedParmFolderType.h"
#include "scriptedit/GZ_EditScriptedParmMenu.h"
#include "scriptedit/gz_TextSlots.h"

#include "host/HostParmType.h"

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

class HostChoiceList;
class HostNode;
class HostOperator;
class HostParm;
class HostSpareData;
class HostParmTemplate;
struct HostParmRange;

/// One entry of a parameter set (GZ_EditScriptedParms): an ordinary parameter, the opener of
/// a folder, multiparm or import block, or the end of such a block. The editor changes the
/// fields directly through the setters; options without a field of their own live in an
/// owned tag set, created on first write. Copying is deep (tags, menu) but leaves the
/// channel-name cache and the current links behind.
class GZ_EditScriptedParms;
class gz_ParmIndex;

class GZ_EditScriptedParm
{
public:
    static constexpr int MAX_SIZE = 16;
    static constexpr int NUM_CONDITIONS = 3;

    /// One row of the data-type table.
    struct GZ_ParmType
    {
        const char *label;       ///< the key; a definition's type text; null ends the table
        const char *scriptToken; ///< the word after "type" in a dialog script
        HostParmType hostType;   ///< what a definition of this type compiles to
        const char *icon;
        int32_t size; ///< fixed component count; -1 free (1..16); 0 no value
        int32_t allowMenu;
        int32_t isString;
        int32_t flag1;
        float rangeMin;
        float rangeMax;
        const char *defaultValue;
        const char *componentNames[MAX_SIZE]; ///< channel suffix per component, or null
        int32_t flag2;
    };

    /// The data types the editor offers, ended by a row whose label is null. Never changed.
    static const GZ_ParmType theParmTypes[];
    /// Number of rows before the terminator.
    static int getNumParmTypes();
    /// Row index of a type label (first match), or -1.
    static int findParmTypeIdx(const std::string &label);
    /// The label of the row a host type stands for, or null when its basic kind is none of
    /// float, ordinal, string or data.
    static const char *getScriptType(HostParmType type, int type_ext, int multi_type, int size);
    static bool parmTypeUsesFileChooser(const std::string &label);
    static bool parmTypeUsesOpFilter(const std::string &label);

    /// Kind of folder a switcher's folders get, from the switcher's type and tags (0 to 3).
    static GZ_EditScriptedParmFolderType getSwitcherFolderType(HostParmType type,
                                                               const HostSpareData *tags);

    GZ_EditScriptedParm();
    explicit GZ_EditScriptedParm(GZ_EditScriptedParmFolderType folder_type);
    /// From a host template; with a node and `read_autolinks`, the auto-links of an entry that
    /// owns channels are read from the node's current links.
    GZ_EditScriptedParm(const HostParmTemplate &tmpl, HostNode *node = nullptr,
                        bool read_autolinks = false);
    GZ_EditScriptedParm(const GZ_EditScriptedParm &other);
    GZ_EditScriptedParm &operator=(const GZ_EditScriptedParm &other);
    ~GZ_EditScriptedParm();

    /// Ties the entry to the index of the set that holds it: changing its name, label or kind
    /// then marks that index stale. Copies are not tied.
    void linkIndex(const std::shared_ptr<gz_ParmIndex> &index) { myIndex = index; }

    void defaultInit();

    // Identity.
    const std::string &getName() const { return myName; }
    void setName(const std::string &name)
    {
        myName = name;
        indexedFieldChanged();
    }
    const std::string &getLabel() const { return myLabel; }
    void setLabel(const std::string &label)
    {
        myLabel = label;
        indexedFieldChanged();
    }
    int32_t getShowLabel() const { return myShowLabel; }
    void setShowLabel(int32_t show) { myShowLabel = show; }
    const std::string &getSpareClass() const { return mySpareClass; }
    void setSpareClass(const std::string &c) { mySpareClass = c; }
    const std::string &getSpareCategory() const { return mySpareCategory; }
    void setSpareCategory(const std::string &c) { mySpareCategory = c; }
    int32_t getPropertyGroupId() const { return myPropertyGroupId; }
    void setPropertyGroupId(int32_t id) { myPropertyGroupId = id; }
    int32_t getInvisible() const { return myInvisible; }
    void setInvisible(int32_t invisible) { myInvisible = invisible; }
    /// 0 none, 1 dialog, 2 all.
    int32_t getExportLevel() const { return myExportLevel; }
    void setExportLevel(int32_t level) { myExportLevel = level; }

    // Size and defaults.
    int32_t getSize() const { return mySize; }
    /// Clamped to 1..16.
    void setSize(int32_t size);
    const std::string &getDefault(int k) const { return myDefaults.get(k); }
    void setDefault(int k, const std::string &text) { myDefaults.set(k, text); }
    uint32_t getDefaultMeaning(int k) const { return myDefaultMeanings[k]; }
    void setDefaultMeaning(int k, uint32_t meaning) { myDefaultMeanings[k] = meaning; }

    // Range.
    int32_t getHasRange() const { return myHasRange; }
    void setHasRange(int32_t has) { myHasRange = has; }
    float getRangeMin() const { return myRangeMin; }
    float getRangeMax() const { return myRangeMax; }
    bool getRangeMinStrict() const { return myRangeMinStrict; }
    bool getRangeMaxStrict() const { return myRangeMaxStrict; }
    void setRange(float lo, float hi, bool lo_strict, bool hi_strict);
    /// Takes the slider bounds and strictness of a host range and sets has-range.
    void setRange(const HostParmRange &range);

    // Menu (items, script, style).
    int32_t getMenuSource() const { return myMenuSource; }
    void setMenuSource(int32_t source) { myMenuSource = source; }
    int32_t getMenuStyle() const { return myMenuStyle; }
    void setMenuStyle(int32_t style) { myMenuStyle = style; }
    int32_t getUseTokenValue() const { return myUseTokenValue; }
    void setUseTokenValue(int32_t use) { myUseTokenValue = use; }
    const std::string &getMenuScript() const { return myMenuScript; }
    void setMenuScript(const std::string &script) { myMenuScript = script; }
    int32_t getMenuScriptLanguage() const { return myMenuScriptLanguage; }
    void setMenuScriptLanguage(int32_t language) { myMenuScriptLanguage = language; }
    const std::vector<GZ_EditScriptedParmMenu> &getMenuItems() const { return myMenuItems; }
    int getNMenu() const { return static_cast<int>(myMenuItems.size()); }
    const GZ_EditScriptedParmMenu *getMenu(int i) const;
    void addMenu(const std::string &token, const std::string &label);
    void destroyMenu(int i);
    /// Swaps item i with the one before it (0 < i < count).
    void moveMenu(int i);
    void clearMenuItems() { myMenuItems.clear(); }
    /// 0 when an empty item exists (searched from the last); else appends one and returns 1.
    int checkNullMenu();
    void setMenu(const HostChoiceList *list, int type_ext) { initMenu(list, type_ext); }
    void initMenu(const HostChoiceList *list, int type_ext);

    // Structure.
    GZ_EditScriptedParmFolderType getFolderType() const { return myFolderType; }
    void setFolderType(GZ_EditScriptedParmFolderType type)
    {
        myFolderType = type;
        indexedFieldChanged();
    }
    bool getIsGroupStart() const { return myFolderType <= GZ_FOLDER_MULTI_SWITCH; }
    bool getIsGroupEnd() const { return myFolderType == GZ_FOLDER_END; }
    bool getIsGroupParm() const { return myFolderType != GZ_FOLDER_NONE; }
    bool getIsMultiParm() const
    {
        return myFolderType >= GZ_FOLDER_MULTI_LIST && myFolderType <= GZ_FOLDER_MULTI_SWITCH;
    }
    /// Whether the entry has a value of its own: radio folders, multiparms, parameters.
    bool ownsChannels() const;
    bool getJoinNext() const { return myJoinNext; }
    void setJoinNext(bool join) { myJoinNext = join; }
    bool getTabBreak() const { return myTabBreak; }
    void setTabBreak(bool brk) { myTabBreak = brk; }
    bool getIsBaseParm() const { return myBaseParm; }
    void setIsBaseParm(bool base) { myBaseParm = base; }

    // Auto-links, per component.
    uint32_t getAutolinkChanged(int k) const { return myAutolinkChanged[k]; }
    void setAutolinkChanged(int k, uint32_t changed) { myAutolinkChanged[k] = changed; }
    const std::string &getAutolink(int k) const { return myAutolinks.get(k); }
    void setAutolink(int k, const std::string &links) { myAutolinks.set(k, links); }
    const std::string &getCurrentLink(int k) const { return myCurrentLinks.get(k); }
    void setCurrentLink(int k, const std::string &links) { myCurrentLinks.set(k, links); }
    /// The desired links of component `k` (-1: all) become the node's current links.
    void setAutolinksToCurrentLinks(HostNode *node, int k);
    /// Adds links to the components: each path is a node path (from the root), "/" and a
    /// parameter (one link per channel, component for component) or a channel (one link).
    /// Switchers give nothing, nor do invisible parameters without `include_invisible`, nor
    /// paths that lead nowhere; a component beyond the size takes component 0's place. A
    /// link that another definition of `parms` holds is not added and gives the warning
    /// "LINK already linked to NAME". Added links set the component's changed flag.
    void addParametersToAutolink(const std::vector<std::string> &paths, const std::string &base,
                                 bool include_invisible, const GZ_EditScriptedParms &parms,
                                 std::vector<std::string> &warnings);
    /// Removes the links the paths stand for (as `addParametersToAutolink` expands them)
    /// from every component, setting the changed flags; whether any was there.
    bool removeAutolinks(const std::vector<std::string> &paths, const std::string &base);

    // Conditions and help. Index: 0 disable-when, 1 hide-when, 2 no-cook-when.
    const std::string &getCondition(int i) const { return myConditions[i]; }
    std::string &condition(int i) { return myConditions[i]; }
    void setCondition(int i, const std::string &text) { myConditions[i] = text; }
    const std::string &getTabCondition(int i) const { return myTabConditions[i]; }
    std::string &tabCondition(int i) { return myTabConditions[i]; }
    void setTabCondition(int i, const std::string &text) { myTabConditions[i] = text; }
    const std::string &getHelp() const { return myHelp; }
    void setHelp(const std::string &help) { myHelp = help; }

    // Type.
    const std::string &getType() const { return myType; }
    /// Sets the label and forgets the cached row.
    void setType(const std::string &label);
    /// The cached row index of the type: -1 for entries without channels or unknown labels.
    int getParmTypeIdxForChannels() const;
    /// The row of the type, or null.
    const GZ_ParmType *getParmTypeRow() const;
    bool getIsBasicStringParm() const { return myType == "String"; }
    bool getIsButtonParm() const { return myType == "Button"; }
    bool getIsColorParm() const;
    bool getIsFileParm() const;
    bool getIsLabelParm() const;
    bool getIsRampParm() const { return getIsRampParmColor() || getIsRampParmFloat(); }
    bool getIsRampParmColor() const { return myType == "Ramp (Color)"; }
    bool getIsRampParmFloat() const { return myType == "Ramp (Float)"; }
    bool getIsKeyValueDictParm() const { return myType == "Key-Value Dictionary"; }
    void changeTypeToRampColor() { setType("Ramp (Color)"); }
    void changeTypeToRampFloat() { setType("Ramp (Float)"); }

    // Channel names (cached; rebuilt when the name, row or size changes).
    const std::vector<std::string> &getChannelNames() const;
    /// The channel names this entry would have under another name.
    std::vector<std::string> getChannelNames(const std::string &name) const;
    const std::vector<std::string> &getDecodedChannelNames() const;
    /// The decoded form of one of the channel names, or empty when it is none of them.
    std::string findDecodedChannelName(const std::string &channel) const;
    /// The channel name whose decoded form is `decoded`, or empty.
    std::string findEncodedChannelName(const std::string &decoded) const;
    void clearCachedChannels() const;

    // Tags.
    const HostSpareData *getSpareData() const { return myTags.get(); }
    /// The tags, created empty on first use.
    HostSpareData &spareData();
    const char *getSpareValue(const std::string &tag) const;
    /// Sets a tag; null removes it.
    void setSpareValue(const std::string &tag, const char *value);
    void addSpareData(const HostSpareData *tags);
    void mergeSpareData(const HostSpareData *tags) { addSpareData(tags); }
    void copySpareValue(const std::string &tag, const HostSpareData *from);
    /// Takes the tags of folder `folder` of a switcher's tag set.
    void extractGroupSpareData(const HostSpareData *switcher_tags, int folder);
    void clearRampDefaults();
    bool hasRampDefaultValue() const;

    bool getImportEnable() const { return getTagBool("import_enable"); }
    void setImportEnable(bool on) { setTagBool("import_enable", on); }
    const char *getImportSource() const { return getSpareValue("import_source"); }
    void setImportSource(const char *v) { setSpareValue("import_source", v); }
    const char *getImportToken() const { return getSpareValue("import_token"); }
    void setImportToken(const char *v) { setSpareValue("import_token", v); }
    const char *getImportMask() const { return getSpareValue("import_mask"); }
    void setImportMask(const char *v) { setSpareValue("import_mask", v); }
    static const char *getExportDisableToken() { return "export_disable"; }
    bool getExportDisable() const { return getTagBool(getExportDisableToken()); }
    void setExportDisable(bool on) { setTagBool(getExportDisableToken(), on); }
    int getCallbackLanguage() const;
    void setCallbackLanguage(int language);
    int getMultiStartOffset() const;
    void setMultiStartOffset(int offset);
    bool getUnquotedFlag() const;
    void setUnquotedFlag(bool on);

    const char *getButtonIcon() const;
    void setButtonIcon(const char *v);
    const char *getCallbackData() const;
    void setCallbackData(const char *v);
    const char *getColorDynamic() const;
    void setColorDynamic(const char *v);
    const char *getColorType() const;
    void setColorType(const char *v);
    const char *getColorWheel() const;
    void setColorWheel(const char *v);
    const char *getFileChooserMode() const;
    void setFileChooserMode(const char *v);
    void setFileChooserMode(const HostSpareData *from);
    const char *getFileChooserPattern() const;
    void setFileChooserPattern(const char *v);
    void setFileChooserPattern(const HostSpareData *from);
    const char *getKeyValueDictChooserCallback() const;
    void setKeyValueDictChooserCallback(const char *v);
    const char *getKeyValueDictChooserLabel() const;
    void setKeyValueDictChooserLabel(const char *v);
    const char *getKeyValueDictKeyLabel() const;
    void setKeyValueDictKeyLabel(const char *v);
    const char *getKeyValueDictUseChooser() const;
    void setKeyValueDictUseChooser(const char *v);
    const char *getKeyValueDictValueLabel() const;
    void setKeyValueDictValueLabel(const char *v);
    const char *getOpFilter() const;
    void setOpFilter(const char *v);
    void setOpFilter(const HostSpareData *from);
    const char *getRManType() const;
    void setRManType(const char *v);
    const char *getRampBasisDefault() const;
    void setRampBasisDefault(const char *v);
    const char *getRampBasisVar() const;
    void setRampBasisVar(const char *v);
    const char *getRampColorType() const;
    void setRampColorType(const char *v);
    const char *getRampKeysVar() const;
    void setRampKeysVar(const char *v);
    const char *getRampShowControlsDefault() const;
    void setRampShowControlsDefault(const char *v);
    const char *getRampValuesVar() const;
    void setRampValuesVar(const char *v);
    const char *getScriptAction() const;
    void setScriptAction(const char *v);
    const char *getScriptActionHelp() const;
    void setScriptActionHelp(const char *v);
    const char *getScriptActionIcon() const;
    void setScriptActionIcon(const char *v);

    /// Whether a tag of a folder belongs to the whole switcher rather than to one tab.
    static bool isSwitcherLevelSpareToken(const std::string &tag);

    // Values from live parameters.
    /// Defaults of component k become the parameter's values of component k + offset.
    void copyDefaultValuesFromParm(const HostParm &parm, int offset);
    void setRampDefaultFromParm(const HostParm &parm);

    // Writing (the ordinary parameter block of a dialog script).
    /// Writes one parameter block at depth `depth`. Returns 1 on success.
    int save(std::ostream &os, int depth, HostOperator *op, bool check_joins,
             const GZ_EditScriptedParm *next, bool in_import_scope);
    /// Normalises `cond` in place and writes it at the inner indent of `depth - 1`.
    static void saveConditional(std::ostream &os, int depth, const char *keyword,
                                std::string &cond);
    void saveSpareData(std::ostream &os, const std::string &indent, bool skip_import_tags,
                       bool switcher_start) const;
    void saveSelectors(std::ostream &os, const std::string &indent, HostOperator *op) const;

    void dump(std::ostream &os) const;

private:
    void indexedFieldChanged()
    {
        if (!myIndex.expired())
            markIndexStale();
    }
    void markIndexStale();

    bool getTagBool(const std::string &tag) const;
    void setTagBool(const std::string &tag, bool on);
    void rebuildChannelCache() const;
    void saveBaseParm(std::ostream &os, const std::string &outer, const std::string &inner,
                      HostOperator *op, bool check_joins, const GZ_EditScriptedParm *next) const;
    void saveDefaults(std::ostream &os, const std::string &inner, const GZ_ParmType *row);
    void saveMenu(std::ostream &os, int depth, const std::string &inner,
                  const GZ_ParmType *row) const;
    void saveRange(std::ostream &os, const std::string &inner, const GZ_ParmType *row) const;

    std::string myName;
    std::string myLabel;
    int32_t myShowLabel;
    std::string mySpareClass;
    std::string mySpareCategory;
    int32_t myPropertyGroupId;
    int32_t myInvisible;
    int32_t myExportLevel;
    int32_t mySize;
    gz_TextSlots myDefaults; ///< MAX_SIZE slots
    uint32_t myDefaultMeanings[MAX_SIZE];
    int32_t myHasRange;
    float myRangeMin;
    float myRangeMax;
    bool myRangeMinStrict;
    bool myRangeMaxStrict;
    int32_t myMenuSource;
    int32_t myMenuStyle;
    int32_t myUseTokenValue;
    GZ_EditScriptedParmFolderType myFolderType;
    std::string myMenuScript;
    int32_t myMenuScriptLanguage;
    uint32_t myAutolinkChanged[MAX_SIZE];
    gz_TextSlots myAutolinks;    ///< MAX_SIZE slots
    gz_TextSlots myCurrentLinks; ///< MAX_SIZE slots
    std::string myConditions[NUM_CONDITIONS];
    std::string myTabConditions[NUM_CONDITIONS];
    std::string myHelp;
    std::vector<GZ_EditScriptedParmMenu> myMenuItems;
    std::unique_ptr<HostSpareData> myTags;
    bool myJoinNext;
    bool myTabBreak;
    bool myBaseParm;
    std::string myType;
    mutable int32_t myTypeIdx;

    // Channel-name cache: what it holds and what it was built for.
    mutable std::vector<std::string> myChannelNames;
    mutable std::vector<std::string> myDecodedChannelNames;
    mutable std::string myCachedName;
    mutable int32_t myCachedTypeIdx;
    mutable int32_t myCachedSize;

    std::weak_ptr<gz_ParmIndex> myIndex;
};
