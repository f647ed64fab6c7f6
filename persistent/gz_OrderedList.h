// gz_OrderedList: an ordered list of distinct pointers with logarithmic index operations.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

/// The member lists of handle groups (the master list of all persistent handles is one).
/// Keeps the user-visible order, and answers "where is this pointer", "what is at index i",
/// "remove this pointer" and "put this pointer back at index i" without scanning, so that
/// removing handles one by one (a scene of many nodes being cleared), and undoing that,
/// is not quadratic.
///
/// The order is a treap keyed by position (each node knows its subtree's size and its
/// parent), with a hash from pointer to node: a pointer's index is the sizes to its left
/// summed on the way up. A pointer appears at most once.
/// Cost: append, insert, erase, indexOf, at, swap: O(log n) expected; iteration: linear.
template <typename T> class gz_OrderedList
{
public:
    gz_OrderedList() = default;
    gz_OrderedList(const gz_OrderedList &) = delete;
    gz_OrderedList &operator=(const gz_OrderedList &) = delete;
    ~gz_OrderedList() { clear(); }

    int size() const { return sizeOf(myRoot); }
    bool empty() const { return myRoot == nullptr; }
    bool contains(const T *item) const { return myNodes.count(item) != 0; }

    /// Appends an item that is not in the list yet; returns false (and changes nothing) when
    /// it is already there.
    bool append(T *item) { return insert(size(), item); }

    /// Puts an item that is not in the list yet at `index` (clamped to 0..size); false (and
    /// nothing changes) when it is already there.
    bool insert(int index, T *item)
    {
        if (!item || contains(item))
            return false;
        Node *node = new Node{item, nextPriority()};
        myNodes.emplace(item, node);
        index = index < 0 ? 0 : (index > size() ? size() : index);
        Node *left = nullptr;
        Node *right = nullptr;
        split(myRoot, index, left, right);
        myRoot = merge(merge(left, node), right);
        myRoot->parent = nullptr;
        return true;
    }

    /// Removes an item; false when it was not in the list.
    bool erase(const T *item)
    {
        auto it = myNodes.find(item);
        if (it == myNodes.end())
            return false;
        Node *node = it->second;
        myNodes.erase(it);
        Node *joined = merge(node->left, node->right);
        Node *parent = node->parent;
        if (joined)
            joined->parent = parent;
        if (!parent)
            myRoot = joined;
        else if (parent->left == node)
            parent->left = joined;
        else
            parent->right = joined;
        for (Node *up = parent; up; up = up->parent)
            update(up);
        delete node;
        return true;
    }

    /// The index of an item, or -1.
    int indexOf(const T *item) const
    {
        auto it = myNodes.find(item);
        if (it == myNodes.end())
            return -1;
        const Node *node = it->second;
        int index = sizeOf(node->left);
        for (; node->parent; node = node->parent)
            if (node->parent->right == node)
                index += sizeOf(node->parent->left) + 1;
        return index;
    }

    /// The item at an index, or null when out of range.
    T *at(int index) const
    {
        const Node *node = nodeAt(index);
        return node ? node->item : nullptr;
    }

    /// Exchanges the items at two valid indices.
    void swap(int i, int j)
    {
        Node *a = nodeAt(i);
        Node *b = nodeAt(j);
        if (!a || !b || a == b)
            return;
        std::swap(a->item, b->item);
        myNodes[a->item] = a;
        myNodes[b->item] = b;
    }

    void clear()
    {
        for (auto &entry : myNodes)
            delete entry.second;
        myNodes.clear();
        myRoot = nullptr;
    }

    /// The items in order.
    std::vector<T *> items() const
    {
        std::vector<T *> out;
        out.reserve(myNodes.size());
        forEach([&out](T *item) { out.push_back(item); });
        return out;
    }

    /// Calls fn(item) for every item in order. The list must not change meanwhile.
    template <typename Fn> void forEach(Fn &&fn) const
    {
        // In order without a stack: down to the leftmost, then to each successor.
        const Node *node = myRoot;
        while (node && node->left)
            node = node->left;
        while (node)
        {
            fn(node->item);
            if (node->right)
            {
                node = node->right;
                while (node->left)
                    node = node->left;
                continue;
            }
            while (node->parent && node->parent->right == node)
                node = node->parent;
            node = node->parent;
        }
    }

private:
    struct Node
    {
        T *item;
        std::uint32_t priority;
        int size = 1;
        Node *left = nullptr;
        Node *right = nullptr;
        Node *parent = nullptr;
    };

    static int sizeOf(const Node *node) { return node ? node->size : 0; }

    static void update(Node *node)
    {
        node->size = 1 + sizeOf(node->left) + sizeOf(node->right);
        if (node->left)
            node->left->parent = node;
        if (node->right)
            node->right->parent = node;
    }

    // A fixed sequence, so that runs are repeatable.
    std::uint32_t nextPriority()
    {
        mySeed ^= mySeed << 13;
        mySeed ^= mySeed >> 17;
        mySeed ^= mySeed << 5;
        return mySeed;
    }

    // The first `count` nodes of `node` go to `left`, the rest to `right`.
    static void split(Node *node, int count, Node *&left, Node *&right)
    {
        if (!node)
        {
            left = right = nullptr;
            return;
        }
        node->parent = nullptr;
        if (sizeOf(node->left) < count)
        {
            split(node->right, count - sizeOf(node->left) - 1, node->right, right);
            left = node;
        }
        else
        {
            split(node->left, count, left, node->left);
            right = node;
        }
        update(node);
    }

    static Node *merge(Node *left, Node *right)
    {
        if (!left || !right)
            return left ? left : right;
        if (left->priority > right->priority)
        {
            left->right = merge(left->right, right);
            update(left);
            return left;
        }
        right->left = merge(left, right->left);
        update(right);
        return right;
    }

    Node *nodeAt(int index) const
    {
        if (index < 0 || index >= size())
            return nullptr;
        Node *node = myRoot;
        for (;;)
        {
            const int left = sizeOf(node->left);
            if (index == left)
                return node;
            if (index < left)
                node = node->left;
            else
            {
                index -= left + 1;
                node = node->right;
            }
        }
    }

    Node *myRoot = nullptr;
    std::unordered_map<const T *, Node *> myNodes;
    std::uint32_t mySeed = 2463534242u;
};
