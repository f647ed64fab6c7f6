// gz_ParmIndex: the names, folder labels and group structure of a parameter set, kept up to
// date while entries are appended or inserted.
#pragma once

#include "scriptedit/GZ_EditScriptedParmFolderType.h"

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

class GZ_EditScriptedParm;

/// What a parameter set is asked about while properties are added to it: whether a name is
/// taken, where the openers of a label are, where a block ends, which folder comes first
/// inside a block and where a run of folders ends. Appending, inserting and removing the tail
/// update it in time proportional to the entries added or removed and the set's group
/// entries (never its ordinary parameters); any other change marks it stale, and it is
/// rebuilt from the list on the next query. Entries are linked to it, so that a change of
/// name, label or kind made through an entry marks it stale too.
class gz_ParmIndex
{
public:
    using List = std::vector<std::unique_ptr<GZ_EditScriptedParm>>;

    bool isStale() const { return myStale; }
    void markStale() { myStale = true; }
    /// Indexes the whole list afresh, linking every entry to `self` (this index).
    void rebuild(const List &parms, const std::shared_ptr<gz_ParmIndex> &self);
    /// Takes note of `count` entries just inserted before entry `at` (one append when `at` is
    /// where the list ended).
    void inserted(const List &parms, int at, int count, const std::shared_ptr<gz_ParmIndex> &self);

    /// Takes note of the entries from `from` to the end being removed (called before they go).
    void erasingTail(const List &parms, int from);

    bool hasName(const std::string &name) const;
    /// Indices of the openers labelled `label`, in list order.
    const std::vector<int> &openersWithLabel(const std::string &label) const;
    /// The partner of a group entry (opener to end, end to opener); -1 when it has none or
    /// entry i is not a group entry.
    int match(int i) const;
    /// The first folder opener (types up to radio) strictly between entries `from` and `to`;
    /// -1 when none.
    int firstFolderBetween(int from, int to) const;
    /// The position just after the run of folder blocks that starts at entry `pos`, each
    /// block starting right where the previous one ended (unmatched group ends in between
    /// are passed over); `size` when the last folder of the run is never closed, -1 when
    /// entry `pos` is not a folder opener. Only group entries are visited.
    int folderRunEnd(int pos, int size) const;

private:
    struct Mark
    {
        int myPos;
        int myMatch;     ///< position of the partner, -1 when none
        int myMatchMark; ///< the partner's place in myMarks, -1 when none
        GZ_EditScriptedParmFolderType myType;
        bool isOpener() const { return myType <= GZ_FOLDER_MULTI_SWITCH; }
        bool isFolder() const { return myType <= GZ_FOLDER_RADIO; }
    };

    void add(const GZ_EditScriptedParm &parm, int pos);
    void rematch();
    void pair(int opener, int end);
    int markAt(int pos) const;
    int firstMarkAfter(int pos) const;

    std::unordered_map<std::string, int> myNames; ///< name -> number of entries with it
    std::unordered_map<std::string, std::vector<int>> myLabels; ///< label -> openers
    std::vector<Mark> myMarks;                                  ///< group entries, in list order
    std::vector<int> myOpen; ///< marks of the openers not closed yet
    bool myStale = false;
};
