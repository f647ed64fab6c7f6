// ShellNodeUndo: snapshots of node subtrees and the node undo records built on them.
#include "shell/ShellNodeUndo.h"

#include "host/HostDirector.h"
#include "host/HostNetwork.h"
#include "host/HostNode.h"

ShellNodeSnapshot ShellNodeSnapshot::take(const HostNode &node, bool keep_place)
{
    ShellNodeSnapshot snapshot;
    snapshot.add(node);
    const HostNetwork *siblings = node.getParentNetwork();
    if (!keep_place || !siblings)
        return snapshot;
    for (int i = 0; i < siblings->getNumNodes(); ++i)
    {
        if (siblings->getNode(i) == &node)
        {
            snapshot.myEntries.front().myPosition = i;
            break;
        }
    }
    return snapshot;
}

void ShellNodeSnapshot::add(const HostNode &node)
{
    Entry entry;
    entry.myType = node.getOperatorName();
    entry.myPath = node.getFullPath();
    entry.myId = node.getUniqueId();
    entry.myFlags = node.getFlags();
    entry.mySpares = node.getSpareTemplates();
    const HostParmList &parms = node.getParmList();
    for (int i = 0; i < parms.getEntries(); ++i)
    {
        const HostParm *parm = parms.getParm(i);
        entry.myParms.emplace_back(parm->getName(), parm->saveState());
    }
    myEntries.push_back(std::move(entry));
    if (const HostNetwork *children = node.getChildNetwork())
        for (int i = 0; i < children->getNumNodes(); ++i)
            add(*children->getNode(i));
}

bool ShellNodeSnapshot::restore(HostDirector &director) const
{
    bool all = true;
    for (const Entry &entry : myEntries)
    {
        HostNode *node =
            director.createNode(entry.myType, entry.myPath, nullptr, entry.myId, entry.myPosition);
        if (!node)
        {
            all = false;
            continue;
        }
        node->setFlagWord(entry.myFlags);
        if (!entry.mySpares.empty())
            node->setSpareTemplates(entry.mySpares);
        for (const auto &saved : entry.myParms)
            if (HostParm *parm = node->getParm(saved.first))
                parm->restoreState(saved.second);
    }
    return all;
}

bool ShellNodeSnapshot::remove(HostDirector &director) const
{
    HostNode *node = director.findNodeById(topId());
    return node && director.deleteNode(node);
}

std::size_t ShellNodeSnapshot::memoryUsage() const
{
    std::size_t bytes = sizeof(*this);
    for (const Entry &entry : myEntries)
        bytes += sizeof(Entry) + entry.myPath.size() +
                 entry.myParms.size() * (sizeof(HostParmState) + sizeof(HostParmComponent) * 3);
    return bytes;
}

// The snapshot is taken when the creation is undone: every later change has been undone by
// then, so the node is as it was made, and a scene built by many nodeadd commands does not
// hold a copy of every node in its history.
ShellUndoNodeCreate::ShellUndoNodeCreate(HostDirector &director, const HostNode &created)
    : myDirector(&director), myId(created.getUniqueId())
{
    setMemoryUsage(sizeof(*this));
}

void ShellUndoNodeCreate::undo()
{
    HostNode *node = myDirector->findNodeById(myId);
    if (!node)
        return;
    mySnapshot = ShellNodeSnapshot::take(*node, /*keep_place=*/false);
    setMemoryUsage(sizeof(*this) + mySnapshot.memoryUsage());
    mySnapshot.remove(*myDirector);
}

void ShellUndoNodeCreate::redo()
{
    mySnapshot.restore(*myDirector);
}

ShellUndoNodeDelete::ShellUndoNodeDelete(HostDirector &director, const HostNode &doomed)
    : myDirector(&director), mySnapshot(ShellNodeSnapshot::take(doomed, /*keep_place=*/true))
{
    setMemoryUsage(mySnapshot.memoryUsage());
}

void ShellUndoNodeDelete::undo()
{
    mySnapshot.restore(*myDirector);
}

void ShellUndoNodeDelete::redo()
{
    mySnapshot.remove(*myDirector);
}

ShellUndoNodeRename::ShellUndoNodeRename(HostDirector &director, const HostNode &node,
                                         std::string new_name)
    : myDirector(&director), myId(node.getUniqueId()), myOldName(node.getName()),
      myNewName(std::move(new_name))
{
}

void ShellUndoNodeRename::rename(const std::string &name)
{
    if (HostNode *node = myDirector->findNodeById(myId))
        myDirector->renameNode(node, name);
}

void ShellUndoNodeRename::undo()
{
    rename(myOldName);
}

void ShellUndoNodeRename::redo()
{
    rename(myNewName);
}
