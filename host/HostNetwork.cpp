// HostNetwork: creating, deleting and renaming the nodes of one network.
#include "host/HostNetwork.h"

#include "host/HostChannelManager.h"
#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostOperator.h"
#include "host/HostOperatorTable.h"

#include <algorithm>
#include <cctype>
#include <iterator>

namespace
{
void setError(std::string *error, const std::string &text)
{
    if (error)
        *error = text;
}

bool isNameChar(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '-' || c == '.';
}
} // namespace

HostNetwork::HostNetwork(HostDirector *director, HostNode *owner, HostOperatorTable *table)
    : myDirector(director), myOwner(owner), myTable(table)
{
}

HostNetwork::~HostNetwork()
{
    clear();
}

HostNode *HostNetwork::getNode(int i) const
{
    return (i >= 0 && i < getNumNodes()) ? myNodes[myFirst + static_cast<size_t>(i)].get()
                                         : nullptr;
}

HostNode *HostNetwork::findNode(const std::string &name) const
{
    return myByName.find(name);
}

namespace
{
// " (a Sop type; this network takes Object types)" when the type exists in another table.
std::string wrongNetworkHint(const HostOperatorTable *mine, const std::string &type)
{
    for (const HostOperatorTable *table : HostOperatorTable::getTables())
        if (table != mine && table->getOperator(type))
            return " (a " + table->getName() + " type; this network takes " +
                   (mine ? mine->getName() : std::string("no")) + " types)";
    return "";
}
} // namespace

HostNode *HostNetwork::adopt(std::unique_ptr<HostNode> node, int position)
{
    HostNode *n = node.get();
    myByName.insert(n);
    if (position >= 0 && position < getNumNodes())
        insertAt(static_cast<size_t>(position), std::move(node));
    else
        myNodes.push_back(std::move(node));
    return n;
}

void HostNetwork::insertAt(size_t index, std::unique_ptr<HostNode> node)
{
    const size_t count = myNodes.size() - myFirst;
    if (index >= count / 2)
    {
        myNodes.insert(myNodes.begin() + static_cast<std::ptrdiff_t>(myFirst + index),
                       std::move(node));
        return;
    }
    if (myFirst == 0)
    {
        // Open a gap as large as the list, so that the next inserts at the front are free.
        const size_t gap = std::max<size_t>(count, 8);
        std::vector<std::unique_ptr<HostNode>> grown(gap + count);
        std::move(myNodes.begin(), myNodes.end(), grown.begin() + static_cast<std::ptrdiff_t>(gap));
        myNodes.swap(grown);
        myFirst = gap;
    }
    // The nodes before the place move one slot into the gap.
    const auto first = myNodes.begin() + static_cast<std::ptrdiff_t>(myFirst);
    std::move(first, first + static_cast<std::ptrdiff_t>(index), first - 1);
    --myFirst;
    myNodes[myFirst + index] = std::move(node);
}

std::unique_ptr<HostNode> HostNetwork::takeAt(size_t index)
{
    const auto at = myNodes.begin() + static_cast<std::ptrdiff_t>(myFirst + index);
    std::unique_ptr<HostNode> node = std::move(*at);
    const size_t count = myNodes.size() - myFirst;
    if (index < count / 2)
    {
        // The nodes before it move one slot back; the gap grows.
        const auto first = myNodes.begin() + static_cast<std::ptrdiff_t>(myFirst);
        std::move_backward(first, at, at + 1);
        ++myFirst;
    }
    else
    {
        myNodes.erase(at);
    }
    if (myFirst == myNodes.size())
    {
        myNodes.clear();
        myFirst = 0;
    }
    return node;
}

int HostNetwork::indexOf(const HostNode *node) const
{
    for (int front = 0, back = getNumNodes(); front < back; ++front)
    {
        if (getNode(front) == node)
            return front;
        if (getNode(--back) == node)
            return back;
    }
    return -1;
}

HostNode *HostNetwork::createNode(const std::string &type, const std::string &name,
                                  std::string *error, int unique_id, int position)
{
    HostOperator *op = myTable ? myTable->getOperator(type) : nullptr;
    if (!op)
    {
        setError(error, "Invalid node type: " + type + wrongNetworkHint(myTable, type));
        return nullptr;
    }
    const std::string node_name = name.empty() ? getFreeName(type) : name;
    if (!isValidName(node_name))
    {
        setError(error, "Invalid node name: " + node_name);
        return nullptr;
    }
    if (findNode(node_name))
    {
        setError(error, "Node already exists: " + node_name);
        return nullptr;
    }
    const int id = myDirector->isReusableId(unique_id) ? unique_id : myDirector->allocateId();
    return adopt(std::unique_ptr<HostNode>(new HostNode(myDirector, this, op, node_name, id)),
                 position);
}

HostNode *HostNetwork::createManager(const std::string &name, HostOperatorTable *child_table)
{
    if (!isValidName(name) || findNode(name))
        return nullptr;
    auto node = std::unique_ptr<HostNode>(
        new HostNode(myDirector, this, nullptr, name, myDirector->allocateId()));
    node->myChildren = std::make_unique<HostNetwork>(myDirector, node.get(), child_table);
    return adopt(std::move(node));
}

bool HostNetwork::deleteNode(HostNode *node)
{
    // Searched from both ends at once: clear() deletes the last node each time and a
    // script often deletes nodes in the order it made them, and both stay linear.
    if (!node || indexOf(node) < 0)
        return false;
    if (node->myChildren)
        node->myChildren->clear();
    node->sendEvent(HOST_NODE_DELETED);
    // A callback may have deleted other nodes: look the node up again.
    const int index = indexOf(node);
    if (index < 0)
        return true;
    if (!HostChannelManager::get().getScopedChannels().empty())
        HostChannelManager::get().unscopeNode(node->getFullPath());
    releaseName(node->getName());
    myByName.erase(node->getName());
    takeAt(static_cast<size_t>(index)).reset();
    return true;
}

void HostNetwork::clear()
{
    while (getNumNodes() > 0)
        deleteNode(getNode(getNumNodes() - 1));
}

bool HostNetwork::renameNode(HostNode *node, const std::string &new_name, std::string *error)
{
    if (!node || findNode(node->getName()) != node)
    {
        setError(error, "Node not in this network");
        return false;
    }
    if (new_name == node->getName())
        return true;
    if (!isValidName(new_name))
    {
        setError(error, "Invalid node name: " + new_name);
        return false;
    }
    if (findNode(new_name))
    {
        setError(error, "Node already exists: " + new_name);
        return false;
    }
    const std::string old_name = node->getName();
    const std::string old_path = node->getFullPath();
    myByName.erase(old_name);
    releaseName(old_name);
    node->myName = new_name;
    myByName.insert(node);
    if (!HostChannelManager::get().getScopedChannels().empty())
        HostChannelManager::get().renameScopedNode(old_path, node->getFullPath());
    myDirector->getReferenceIndex().nodeRenamed(*node);
    node->sendEvent(HOST_NODE_RENAMED, const_cast<char *>(old_name.c_str()));
    return true;
}

std::string HostNetwork::getFreeName(const std::string &base) const
{
    size_t digits = base.size();
    while (digits > 0 && std::isdigit(static_cast<unsigned char>(base[digits - 1])))
        --digits;
    if (digits < base.size() && !findNode(base))
        return base;
    const std::string stem = base.substr(0, digits);
    // Long digit runs would overflow; they restart from 1.
    long long n = 0;
    if (digits < base.size() && base.size() - digits < 18)
        n = std::stoll(base.substr(digits));
    // Numbers below the stem's mark are all taken: a search that would start below it
    // starts at it and moves the mark, so naming many nodes from one base stays linear.
    long long &mark = myTakenBelow.emplace(stem, 1).first->second;
    const bool from_mark = n + 1 <= mark;
    if (from_mark)
        n = mark - 1;
    for (++n;; ++n)
    {
        std::string candidate = stem + std::to_string(n);
        if (findNode(candidate))
            continue;
        if (from_mark)
            mark = n;
        return candidate;
    }
}

void HostNetwork::releaseName(const std::string &name)
{
    size_t digits = name.size();
    while (digits > 0 && std::isdigit(static_cast<unsigned char>(name[digits - 1])))
        --digits;
    if (digits == name.size() || name.size() - digits >= 18)
        return;
    auto it = myTakenBelow.find(name.substr(0, digits));
    if (it != myTakenBelow.end())
        it->second = std::min(it->second, std::max(1LL, std::stoll(name.substr(digits))));
}

bool HostNetwork::isValidName(const std::string &name)
{
    if (name.empty() || name[0] == '.' || name[0] == '-')
        return false;
    return std::all_of(name.begin(), name.end(), isNameChar);
}
