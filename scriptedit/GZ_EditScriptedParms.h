// GZ_EditScriptedParms: an editable parameter interface (a flat list of definitions).
#pragma once

#include "scriptedit/GZ_EditScriptedParm.h"
#include "scriptedit/gz_ParmList.h"

#include <functional>
#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

class HostNode;
class HostOperator;
class HostDialogStream;
class HostParmTemplate;
class gz_SafeNameContext;
struct HostSpareLayout;
struct HostImportRecord;

/// The parameter interface of one scripted operator type or of one node's spare parameters:
/// an ordered list of owned definitions in which folders, multiparms and import groups are
/// flat, each opened by a start entry and closed by a group-end entry. Built from templates,
/// an operator type, a node or dialog-script text; edited in place; written as dialog-script
/// text (`save`) or reduced to the bare interface (`compile`).
///
/// The set keeps an index of its names, folder labels and blocks (see gz_ParmIndex): the
/// queries below marked "indexed" take time independent of the number of ordinary
/// parameters. Lookups by name are linear, first match, as documented (a name the index
/// does not hold is answered at once); batch operations that must check
/// many names (`mergeParms`, building from templates, `save`) index names and channel names
/// once, so that they stay linear in the size of the list.
class GZ_EditScriptedParms
{
public:
    /// Options of construction from a node or an operator type.
    struct BuildOptions
    {
        bool myFallbackToOperator = true; ///< a node without spare layout uses its operator's
        bool myReadAutolinks = false;     ///< auto-links read from the node's current links
        bool mySkipVopVariables = false;  ///< templates tagged as VOP variables are left out
        bool mySafeSwitcherNames = false; ///< switcher names made safe and unique
    };

    GZ_EditScriptedParms();
    GZ_EditScriptedParms(const GZ_EditScriptedParms &other);
    GZ_EditScriptedParms &operator=(const GZ_EditScriptedParms &other);
    /// From an operator type's templates (and a node for auto-links, may be null).
    GZ_EditScriptedParms(HostOperator *op, HostNode *node, const BuildOptions &options);
    /// From a node's spare layout (or its operator's, with the fallback option).
    GZ_EditScriptedParms(HostNode *node, const BuildOptions &options);
    /// From a node and a terminated template list.
    GZ_EditScriptedParms(HostNode *node, const HostParmTemplate *templates,
                         const BuildOptions &options);
    /// From a node and a dialog-script parameter section: the host's reader turns the text
    /// into templates, which are then converted. Messages of the reader are appended to
    /// `messages` ("FILE[LINE]: message" lines); with read errors the set stays empty.
    GZ_EditScriptedParms(HostNode *node, HostDialogStream &in, const BuildOptions &options,
                         std::string &messages);
    ~GZ_EditScriptedParms();

    // Lookup.
    int entries() const { return static_cast<int>(myParms.size()); }
    GZ_EditScriptedParm *getParm(int i) const;
    int getParmIndex(const GZ_EditScriptedParm *parm) const;
    GZ_EditScriptedParm *getParmWithName(const std::string &name) const;
    int getParmIndexWithName(const std::string &name) const;
    GZ_EditScriptedParm *getFolderWithName(const std::string &name) const;
    int getFolderIndexWithName(const std::string &name) const;
    GZ_EditScriptedParm *getFolderWithLabel(const std::string &label) const;
    int getFolderIndexWithLabel(const std::string &label) const;
    /// Whether an entry (of any kind) is called `name`; false for an empty name. Indexed.
    bool hasParmWithName(const std::string &name) const;
    /// Indices of the openers (of any kind) labelled `label`, in order. Indexed.
    const std::vector<int> &getOpenerIndicesWithLabel(const std::string &label) const;
    /// The first folder opener (not a multiparm or import group) inside the block that
    /// opener i starts; -1 when none. Indexed.
    int getFirstNestedFolderIndex(int i) const;
    /// The index just after the run of folder blocks that starts at entry i, each block
    /// right after the previous one; the number of entries when the run's last folder is
    /// never closed; -1 when entry i is not a folder opener. Indexed.
    int getFolderRunEnd(int i) const;
    /// The opener reached by a path of folder labels, outermost first; -1 when none.
    int getNestedFolderIndex(const std::vector<std::string> &labels) const;
    /// The definition (searched from the last, components from the last) whose auto-links
    /// hold `link`, both compared as absolute paths (relative ones joined to `base`); its
    /// component goes to `component`. Null (component -1) when none.
    GZ_EditScriptedParm *getParmWithAutolink(const std::string &link, const std::string &base,
                                             int &component) const;
    const GZ_EditScriptedParmMenu *getMenu(int i, int item) const;
    int getNMenu(int i) const;
    /// The menu script of entry i; null for an index out of range.
    const char *getMenuScript(int i) const;
    HostOperator *getOperator() const { return myOperator; }
    void setOperator(HostOperator *op) { myOperator = op; }
    /// The node (looked up by id), or null.
    HostNode *getNode() const;
    int getNodeId() const { return myNodeId; }
    void setNodeId(int id) { myNodeId = id; }

    // Structure.
    int getMatchingGroupParm(int i) const;
    int getParentGroupParm(int i) const;
    void getContainingFolders(int i, std::vector<int> &openers) const;
    bool getIsFirstPage(int i) const;
    /// Number of multiparm openers that contain entry i.
    int getMultiParmInstanceLevel(int i) const;
    /// The partner of every entry (opener to end, end to opener, -1 otherwise), in one pass.
    std::vector<int> computeMatches() const;

    // Editing.
    void addParm(GZ_EditScriptedParm *parm);
    void addParm(std::unique_ptr<GZ_EditScriptedParm> parm);
    /// Appends copies of every definition of `other`, names made safe and unique when this
    /// set is not empty.
    void mergeParms(const GZ_EditScriptedParms &other) { mergeParms(other, false); }
    /// The same; with `always_safe` names are made safe and unique even in an empty set, so
    /// that they also keep clear of the node's own parameters.
    void mergeParms(const GZ_EditScriptedParms &other, bool always_safe);
    int removeParms(int first, int last, bool fix_joins = true);
    bool isParmMoveAllowed(int first, int last, int offset) const;
    bool moveParms(int first, int last, int offset, bool fix_groups = true);
    bool moveParms(const std::vector<int> &indices, int target, bool fix_groups = true);
    /// Reorders the list: entry i of the result is old entry `order[i]`. False (nothing
    /// changed) unless `order` is a permutation.
    bool permuteParms(const std::vector<int> &order);
    void clearParms() { myParms.clear(); }
    void removeEmptyFolders();
    void removeInvalidJoins();
    /// Removes group ends without an opener and closes openers left open, from `start` on.
    void removeInvalidGroups(int start);
    void copyDefaultsFromNode(HostNode *node);
    void setAutolinksToCurrentLinks();

    // Auto-links.
    /// Adds link paths to `parm` (see GZ_EditScriptedParm::addParametersToAutolink); `parm`
    /// goes to `changed` when its links changed.
    void addParametersToAutolinks(GZ_EditScriptedParm *parm, const std::vector<std::string> &paths,
                                  const std::string &base, bool include_invisible,
                                  std::vector<GZ_EditScriptedParm *> &changed,
                                  std::vector<std::string> &warnings);
    /// Brings the node's channel references in line with the desired links of every changed
    /// component: references no longer wanted go (their value stays), wanted ones are made,
    /// each target saved for undo. A link that cannot be resolved gives one warning and ends
    /// its component. The node and parameter index of every changed target are appended.
    void applyAutoLinks(std::vector<std::string> &warnings, std::vector<int> &node_ids,
                        std::vector<int> &parm_indices);
    /// Links into a node renamed or moved from `old_path` to `new_path` follow it; every
    /// rewritten component's list becomes absolute. False when nothing changed or an
    /// argument is empty.
    bool updateAutoLinksForNameChange(const std::string &base, const std::string &old_path,
                                      const std::string &new_path);
    /// Links every channel of every point of ramp `target` on `node` to the same point
    /// channel of ramp `source`, reached by `prefix` (a path from `node` and "/", or empty
    /// for `node` itself), through the node's multiparm link records, so points made later
    /// follow too.
    static void addRampAutoLinks(HostNode &node, const std::string &target, bool color,
                                 const std::string &prefix, const std::string &source, double time);
    /// Clears the point links `addRampAutoLinks` set on ramp `target` of `node`.
    static void deleteRampAutoLinks(HostNode &node, const std::string &target, bool color,
                                    double time);
    /// Tells the changed nodes that the parameters `applyAutoLinks` changed have changed.
    static void updateNodesFromApplyAutoLinks(const std::vector<int> &node_ids,
                                              const std::vector<int> &parm_indices);
    /// Numbers the "#" of names inside multiparms so that instances stay apart.
    void fixParmNamesForInstanceLevel();
    /// Hands the set to the host, which rebuilds the node's spare parameters from it as one
    /// undoable change; the list is then emptied. Returns 0 (with the host's error text in
    /// `error`, when given) when the host reports an error, else 1.
    int updateNode(std::string *error = nullptr);
    /// Appends the definitions of a dialog-script parameter section read from `text`
    /// (`file` names it in messages). The reader's messages are appended to `messages` as
    /// "FILE[LINE]: message" lines; with read errors nothing is appended and it returns false.
    bool parseParmSection(const std::string &text, const std::string &file, std::string &messages);
    /// Takes the entries out of this set (ownership passes to the caller).
    std::vector<std::unique_ptr<GZ_EditScriptedParm>> releaseParms();
    /// Inserts entries, as they are, before entry `index` (clamped to the list): one move of
    /// the entries after it, whatever the number inserted.
    void insertParms(int index, std::vector<std::unique_ptr<GZ_EditScriptedParm>> parms);

    // Reserved names (the node's own, non-spare parameters).
    bool checkReservedName(const std::string &name) const;
    bool containsReservedParm() const;
    void findMisplacedReservedParms(std::vector<int> &out) const;
    void clearReserveNamesAndFlags();
    void initializeReserveNames(HostNode *node);
    void initializeReserveFlags();
    bool getCheckReservedOnly() const { return myCheckReservedOnly; }
    void setCheckReservedOnly(bool only) { myCheckReservedOnly = only; }

    /// Makes `name` a valid, free name for `parm` (may be null). Returns whether it changed.
    bool makeSafeParmName(const GZ_EditScriptedParm *parm, std::string &name,
                          const std::unordered_set<std::string> *avoid, bool make_unique) const;

    // Templates to definitions.
    /// Appends definitions for a terminated template list (folders, multiparms, imports).
    void createParms(const HostParmTemplate *templates, HostNode *node,
                     const BuildOptions &options);
    /// The same for a layout: its import records become import blocks where they stand.
    void createParms(const HostSpareLayout &layout, HostNode *node, const BuildOptions &options);

    // Multiparm instance information, process-wide (see gz_MultiparmInfo).
    static void buildMultiparmInfo(HostNode *node);
    static const std::map<std::string, int> &getBuiltMultiparmInfo();
    static void clearMultiparmInfo();
    static void lockMultiparmInfo();
    static void releaseMultiparmInfo();

    // Writing and compilation.
    /// Writes the parameter section; failures of single entries go to `errors`. Returns 1.
    int save(std::ostream &os, std::string &errors, bool check_joins);
    /// Reduces the list in place to the bare interface that values and channels need.
    void compile();

    void dump(std::ostream &os) const;

private:
    friend class gz_SafeNameContext;

    void saveGroupHeader(std::ostream &os, int &depth, GZ_EditScriptedParm &parm,
                         bool switcher_start, bool &import_scope, int &import_count);
    void saveGroupFooter(std::ostream &os, int &depth, bool &import_scope, int &import_count);
    void saveMultiParmHeader(std::ostream &os, int &depth, GZ_EditScriptedParm &parm,
                             bool &import_scope, int &import_count);
    void saveImportHeader(std::ostream &os, int &depth, GZ_EditScriptedParm &parm,
                          bool &import_scope, int &import_count);

    struct BuildState;
    void createList(const HostParmTemplate *templates, BuildState &state);
    void createSwitcher(const HostParmTemplate *&t, BuildState &state);
    void createMultiparm(const HostParmTemplate &t, BuildState &state);
    void createOne(const HostParmTemplate *&t, BuildState &state);
    void createImportGroups(BuildState &state, int switcher, int folder, int after);
    void removeMarked(const std::vector<bool> &marked);
    /// Whether the entries from `first` on open and close their own blocks (every end in
    /// them closes an opener in them), so that removing them touches nothing before.
    bool isClosedTail(int first) const;
    void applyComponent(HostNode &node, GZ_EditScriptedParm &def, int k, double time,
                        std::vector<std::string> &warnings, std::vector<int> &node_ids,
                        std::vector<int> &parm_indices);
    /// Index of the first entry (with `openers_only`, opener) that `match` accepts, or -1.
    /// The first entry (or opener) called `name`; -1 for an empty name.
    int findNamedEntry(const std::string &name, bool openers_only) const;
    int findEntry(const std::function<bool(const GZ_EditScriptedParm &)> &match,
                  bool openers_only) const;

    gz_ParmList myParms;
    std::unordered_set<std::string> myReservedNames;
    HostOperator *myOperator = nullptr;
    int myNodeId = -1;
    bool myCheckReservedOnly = false;
    bool myFlag = false;
};
