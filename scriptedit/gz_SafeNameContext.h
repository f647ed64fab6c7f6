// gz_SafeNameContext: the indexes behind makeSafeParmName, built once per batch of names.
#pragma once

#include "scriptedit/gz_NameCounts.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class GZ_EditScriptedParm;
class GZ_EditScriptedParms;
class HostParmTemplate;

/// Names and channel names that a new name must avoid, indexed so that checking one
/// candidate costs a few hash lookups: the operator's templates (with their multiparm
/// instance patterns), the node's spare templates' patterns and, for unique names, the
/// entries of the set. Built from a set at one moment; `noteAppended` keeps it current while
/// entries are appended, which is how a batch stays linear.
class gz_SafeNameContext
{
public:
    /// `more`: the number of entries about to be appended, so that the indexes are sized
    /// once for all of them.
    gz_SafeNameContext(const GZ_EditScriptedParms &parms, bool make_unique, int more = 0);
    /// makeSafeParmName for a definition that is about to be appended to the set.
    bool makeSafeAndAppend(GZ_EditScriptedParm &parm);
    /// Records the names of an entry of the set that has just been named.
    void noteNamed(const GZ_EditScriptedParm &parm)
    {
        if (myMakeUnique)
            addEntry(parm, 1);
    }
    /// Records an entry appended to the set (names and multiparm nesting).
    void noteAppended(const GZ_EditScriptedParm &parm);
    /// The naming rule. `level` is the number of multiparms that contain the definition;
    /// `self` is the definition's own entry in the set, whose names do not count.
    bool makeSafe(const GZ_EditScriptedParm *parm, std::string &name,
                  const std::unordered_set<std::string> *avoid, int level,
                  const GZ_EditScriptedParm *self);

    /// The next candidate after a failing one ("scale" to "scale1", "a1" to "a2").
    static std::string bump(const std::string &name);
    /// Whether `name` is an instance of `pattern` (each "#" standing for a number).
    static bool matchesInstancePattern(const std::string &name, const std::string &pattern);

private:
    /// Names with counts, and instance patterns ("pt#") grouped by their shape (every run of
    /// digits and "#" read as one "#"). A name can only be an instance of a pattern of its own
    /// shape, so checking it costs one lookup and a match against the few patterns found.
    struct NameSet
    {
        gz_NameCounts myCounts;
        std::unordered_map<std::string, std::unordered_map<std::string, int>> myShapes;
        void add(const std::string &name, int delta);
        bool has(const std::string &name) const;
        bool matchesPattern(const std::string &name) const;
    };
    /// `name` with every run of digits and "#" replaced by one "#".
    static std::string shapeOf(const std::string &name);

    void addTemplates(const HostParmTemplate *templates, bool conflicts, bool patterns);
    void addEntry(const GZ_EditScriptedParm &parm, int delta);
    enum Verdict
    {
        PASSES,
        TAKEN,   ///< a name is in use: bump the number
        INSTANCE ///< a name is an instance of a multiparm pattern
    };
    Verdict check(const std::vector<std::string> &names,
                  const std::unordered_set<std::string> *avoid) const;

    const GZ_EditScriptedParms &myParms;
    bool myMakeUnique;
    NameSet myTemplateNames; ///< conflicts with the operator's templates
    NameSet myEntryNames;    ///< the set's entries (unique names only)
    NameSet myInstanceNames; ///< multiparm patterns gathered for the "_" prefix rule
    std::vector<bool> myOpenIsMulti;
    int myMultiLevel = 0;
};
