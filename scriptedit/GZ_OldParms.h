// GZ_OldParms: the parameters of an edited interface as they were, and the repair of what
// refers to them once the edit is applied.
#pragma once

#include "scriptedit/GZ_EditScriptedParms.h"
#include "scriptedit/gz_OldParm.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

class HostNode;

/// Records the parameters of a set when editing begins, follows every rename and deletion
/// made during the edit, and repairs the references to the old names when the edit is
/// applied: inside the interface (callbacks, conditions, defaults), in other nodes
/// (expressions rewritten or baked, channel references baked and copied), and on the edited
/// node (channels renamed). What it cannot or should not repair becomes warning lines.
class GZ_OldParms
{
public:
    GZ_OldParms() = default;

    int addOldParm(const char *name, const char *channel, int component);
    void renameOldParm(const char *old_name, const char *new_name);
    void renameOldParmChannel(const char *name, const char *old_suffix, const char *new_suffix);
    void deleteOldParm(const char *name);
    void deleteOldParmChannel(const char *name, const char *suffix);
    void undeleteOldParm(const char *name);

    /// The current name of the first record originally called `name`, else `name`.
    std::string getNewName(const std::string &name) const;
    /// The original name of the first record now called `name`, else `name`.
    std::string getOriginalName(const std::string &name) const;
    /// Whether a record was originally called `name` (deleted or not).
    bool hasOldParm(const std::string &name) const;
    /// Whether a deleted record was originally called `name`.
    bool hasDeletedOldParm(const std::string &name) const;
    void getDeletedParms(std::vector<std::string> &names) const;
    void getRenamedParms(std::vector<std::string> &old_names,
                         std::vector<std::string> &new_names) const;
    int entries() const { return static_cast<int>(myRecords.size()); }
    const gz_OldParm &getOldParm(int i) const { return myRecords[i]; }

    /// One record per named definition of `parms` that is not a group end, in index order;
    /// keeps a copy of the definitions so that renamed ones can hand their channels over.
    void preserveOldParms(const GZ_EditScriptedParms &parms);
    void clear();

    /// Repairs the references to every changed record (see the class comment). Warning lines
    /// are appended to `warnings`; the channel pairs renamed on the edited node to
    /// `renamed_channels` when given. Changes are undoable records of the caller's block.
    void resolveOldParmLinks(
        int node_id, GZ_EditScriptedParms &parms, std::vector<std::string> &warnings,
        std::vector<std::pair<std::string, std::string>> *renamed_channels = nullptr);

    /// The channel names the edit renames (old, new; the parameter name first) and deletes,
    /// as they stand before `parms` is applied.
    void getChannelChanges(const GZ_EditScriptedParms &parms,
                           std::vector<std::pair<std::string, std::string>> &renamed,
                           std::vector<std::string> &deleted) const;

    /// Applies an edited set to its node with the repairs, inside the caller's undo block:
    /// the node first gets the new interface with the renamed and deleted parameters still
    /// beside it (so that their values and animation can be handed over and baked), then the
    /// references are repaired, then the final interface replaces it. Returns 0 with the
    /// host's error text in `error` when the host refuses the set (nothing is repaired).
    int updateNode(GZ_EditScriptedParms &parms, std::vector<std::string> &warnings,
                   std::string *error = nullptr);

    /// Whole-token replacement of `old_name` by `new_name` in `text` (see the .cpp for the
    /// token and path rules); the result goes to `out`. Returns whether anything changed.
    static bool getModifiedString(const std::string &text, std::string &out, const HostNode *edited,
                                  const HostNode *referring, const std::string &old_name,
                                  const std::string &new_name);

    /// Process-wide: 0 bakes references to deleted parameters, 1 bakes channel references
    /// and reports expressions, 2 or more reports both.
    static int getParameterDeletionBehavior();
    static void setParameterDeletionBehavior(int behavior);

private:
    struct Context;
    void resolveInInterface(const gz_OldParm &rec, GZ_EditScriptedParms &parms,
                            const HostNode &node, std::vector<std::string> &warnings) const;
    void resolveOldParmChannels(const gz_OldParm &rec,
                                std::vector<std::pair<std::string, std::string>> pairs,
                                Context &ctx) const;
    void resolveSingleParm(const gz_OldParm &rec, const std::string &old_channel,
                           const std::string &new_channel, Context &ctx) const;
    void resolveOldMultiParmInfo(const gz_OldParm &rec,
                                 const std::vector<std::pair<std::string, std::string>> &pairs,
                                 Context &ctx) const;
    /// The edited node's own multiparm link of pattern `from` moves to `to` (or goes).
    static void resolveOwnPattern(const gz_OldParm &rec, const std::string &from,
                                  const std::string &to, Context &ctx);
    /// Other nodes' multiparm links to channel `from` of the edited node follow it to `to`.
    void resolveLinksTo(const gz_OldParm &rec, const std::string &from, const std::string &to,
                        Context &ctx) const;
    void resolveOnNode(const gz_OldParm &rec, Context &ctx) const;
    void addReferenceNames(const gz_OldParm &rec, const GZ_EditScriptedParms &parms,
                           std::vector<std::pair<std::string, std::string>> &pairs) const;
    /// The pairs of old and new channel names of a record (the parameter name first).
    void addChannelNames(const gz_OldParm &rec, const GZ_EditScriptedParms &parms,
                         std::vector<std::pair<std::string, std::string>> &pairs) const;
    const GZ_EditScriptedParm *findOriginal(const std::string &name) const;
    bool reusesFreedName() const;
    bool applyInterim(const GZ_EditScriptedParms &parms, bool &with_interim,
                      std::string *error) const;
    int applyFinal(GZ_EditScriptedParms &parms, bool with_interim, std::string *error) const;
    static void insertAfter(GZ_EditScriptedParms &parms, int at,
                            std::unique_ptr<GZ_EditScriptedParm> parm);
    int updateThroughTemporaryNames(GZ_EditScriptedParms &parms, std::vector<std::string> &warnings,
                                    std::string *error);
    static std::string temporaryName(const HostNode &node, const GZ_EditScriptedParms &parms,
                                     const std::string &name);
    static void addInstanceNames(const HostNode &node,
                                 std::vector<std::pair<std::string, std::string>> &pairs);
    static void addRampPointNames(const gz_OldParm &rec, const HostNode &node,
                                  std::vector<std::pair<std::string, std::string>> &pairs);

    std::vector<gz_OldParm> myRecords;
    GZ_EditScriptedParms myOriginal;
};
