// ShellNodeUndo: undo records for creating, deleting and renaming nodes.
#pragma once

#include "host/HostParm.h"
#include "host/HostParmTemplate.h"
#include "host/HostUndo.h"

#include <string>
#include <utility>
#include <vector>

class HostDirector;
class HostNode;

/// Everything needed to re-create a node and the nodes below it exactly: types, paths,
/// unique ids, the place in the parent network, flags, spare templates and the whole state
/// of every parameter. Re-creating
/// with the same ids keeps the parameter undo records of older steps (which find their
/// node by id) working.
class ShellNodeSnapshot
{
public:
    /// Takes the snapshot; `keep_place` also records the node's place among its siblings,
    /// which costs a walk over them (a node just created is last, so it needs none).
    static ShellNodeSnapshot take(const HostNode &node, bool keep_place);

    /// Re-creates the nodes, parents first. False when one could not be made (the rest are
    /// still tried).
    bool restore(HostDirector &director) const;
    /// Deletes the top node (and so everything below it), when it exists.
    bool remove(HostDirector &director) const;

    int topId() const { return myEntries.empty() ? -1 : myEntries.front().myId; }
    std::size_t memoryUsage() const;

private:
    struct Entry
    {
        std::string myType;
        std::string myPath;
        int myId = -1;
        int myPosition = -1; ///< place in the parent network (the top node only)
        unsigned myFlags = 0;
        HostParmTemplateList mySpares;
        std::vector<std::pair<std::string, HostParmState>> myParms;
    };
    void add(const HostNode &node);

    std::vector<Entry> myEntries; ///< pre-order: every parent before its children
};

/// Undoes the creation of a node: undo deletes it, redo re-creates it as it was created.
class ShellUndoNodeCreate : public HostUndo
{
public:
    ShellUndoNodeCreate(HostDirector &director, const HostNode &created);
    void undo() override;
    void redo() override;

private:
    HostDirector *myDirector;
    int myId;
    ShellNodeSnapshot mySnapshot; ///< taken by undo, for redo
};

/// Undoes the deletion of a node: undo re-creates it with everything below it, redo deletes
/// it again. Build it before the deletion.
class ShellUndoNodeDelete : public HostUndo
{
public:
    ShellUndoNodeDelete(HostDirector &director, const HostNode &doomed);
    void undo() override;
    void redo() override;

private:
    HostDirector *myDirector;
    ShellNodeSnapshot mySnapshot;
};

/// Undoes a rename; the node is found by its unique id.
class ShellUndoNodeRename : public HostUndo
{
public:
    ShellUndoNodeRename(HostDirector &director, const HostNode &node, std::string new_name);
    void undo() override;
    void redo() override;

private:
    void rename(const std::string &name);

    HostDirector *myDirector;
    int myId;
    std::string myOldName;
    std::string myNewName;
};
