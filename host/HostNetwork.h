// HostNetwork: the children of a node, all of one network type.
#pragma once

#include "host/HostNameIndex.h"
#include "host/HostNode.h"

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

class HostDirector;
class HostNode;
class HostOperator;
class HostOperatorTable;

/// The nodes inside one parent node, all of the operator table the network was made for.
/// Owns its nodes; keeps them in creation order with a name index.
class HostNetwork
{
public:
    /// A network for the children of `owner`; `table` may be null (the root's network of
    /// managers, which holds only nodes made by the director).
    HostNetwork(HostDirector *director, HostNode *owner, HostOperatorTable *table);
    ~HostNetwork();
    HostNetwork(const HostNetwork &) = delete;
    HostNetwork &operator=(const HostNetwork &) = delete;

    HostNode *getOwner() const { return myOwner; }
    HostOperatorTable *getOperatorTable() const { return myTable; }
    HostDirector *getDirector() const { return myDirector; }

    int getNumNodes() const { return static_cast<int>(myNodes.size() - myFirst); }
    HostNode *getNode(int i) const;
    HostNode *findNode(const std::string &name) const;

    /// Creates a node of operator `type` from this network's table. Fails (null, with a
    /// message in *error) when the type is not in the table, the name is taken or is not a
    /// valid node name. An empty name asks for a free one made from the type
    /// (`getFreeName`).
    /// Undo uses the last two arguments to bring a deleted node back as it was: `unique_id`,
    /// when it was handed out before and no live node has it, is reused instead of a new
    /// id; `position`, when in range, places the node there instead of last.
    HostNode *createNode(const std::string &type, const std::string &name,
                         std::string *error = nullptr, int unique_id = -1, int position = -1);
    /// Creates a manager node (no operator type) whose children use `child_table`.
    HostNode *createManager(const std::string &name, HostOperatorTable *child_table);

    /// Deletes a child node: its own children first, then HOST_NODE_DELETED is sent to its
    /// callbacks, then it is destroyed. Returns false when the node is not a child here.
    bool deleteNode(HostNode *node);
    /// Deletes every child, last created first.
    void clear();

    /// Renames a child; refuses invalid names and names taken by a sibling. Sends
    /// HOST_NODE_RENAMED with the old name as data.
    bool renameNode(HostNode *node, const std::string &new_name, std::string *error = nullptr);

    /// A name not used by any child. A `base` without trailing digits gets the smallest
    /// number from 1 that makes it free ("box" gives "box1", then "box2"); a `base` ending in
    /// digits is returned when free, else its number counts up ("geo1" gives "geo2").
    std::string getFreeName(const std::string &base) const;

    /// Node names: a letter, digit or "_" start, then letters, digits, "_", "-" and ".".
    static bool isValidName(const std::string &name);

private:
    /// Keeps the free-name marks true when a child's name is given up.
    void releaseName(const std::string &name);
    HostNode *adopt(std::unique_ptr<HostNode> node, int position = -1);
    /// Index (from 0) of a child, or -1; searched from both ends at once.
    int indexOf(const HostNode *node) const;
    void insertAt(size_t index, std::unique_ptr<HostNode> node);
    std::unique_ptr<HostNode> takeAt(size_t index);

    HostDirector *myDirector;
    HostNode *myOwner;
    HostOperatorTable *myTable;
    /// The children are myNodes[myFirst...]: the slots before myFirst are a gap, so that
    /// putting nodes back at the front (undo of deletions made first node first) and
    /// deleting from the front cost O(1) amortised instead of moving every sibling.
    std::vector<std::unique_ptr<HostNode>> myNodes;
    size_t myFirst = 0;
    HostNameIndex<HostNode, &HostNode::getName> myByName;
    /// Per name stem, a number below which every stem + number (from 1) is a child's name:
    /// where the free-name search starts. Lowered when such a name is released.
    mutable std::unordered_map<std::string, long long> myTakenBelow;
};
