// gz_OrderedList: an ordered list of distinct pointers with logarithmic index operations.
#pragma once

#include "host/HostProbeErase.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
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
///
/// Appending is what loading a scene and filling a group do, one item at a time, and putting
/// items back at the front is what undoing deletions made first to last does; so items added
/// at either end wait in a buffer there (a head before the tree, a tail after it) and join
/// the tree in one linear pass when an edit needs them in it; until then their index and
/// lookup cost nothing. Nodes come from blocks of the
/// list's own and the hash is open-addressed, so that a big list is a few contiguous arrays
/// rather than one allocation per item scattered among the handles.
/// Cost: insert at either end O(1) amortised; insert, erase, indexOf, at, swap: O(log n)
/// expected;
/// iteration: linear.
template <typename T> class gz_OrderedList
{
public:
    gz_OrderedList() = default;
    gz_OrderedList(const gz_OrderedList &) = delete;
    gz_OrderedList &operator=(const gz_OrderedList &) = delete;
    ~gz_OrderedList() = default;

    int size() const { return headSize() + sizeOf(myRoot) + static_cast<int>(myTail.size()); }
    bool empty() const { return size() == 0; }
    bool contains(const T *item) const { return myNodes.find(item) != nullptr; }

    /// Appends an item that is not in the list yet; returns false (and changes nothing) when
    /// it is already there.
    bool append(T *item) { return insert(size(), item); }

    /// Puts an item that is not in the list yet at `index` (clamped to 0..size); false (and
    /// nothing changes) when it is already there.
    bool insert(int index, T *item)
    {
        if (!item || contains(item))
            return false;
        Node *node = newNode(item);
        myNodes.insert(item, node);
        index = index < 0 ? 0 : (index > size() ? size() : index);
        if (index == size() || index == 0)
        {
            std::vector<Node *> &buffer = index == 0 && size() > 0 ? myHead : myTail;
            node->inHead = &buffer == &myHead;
            node->slot = static_cast<int>(buffer.size());
            buffer.push_back(node);
            return true;
        }
        joinBuffers();
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
        Node *node = myNodes.find(item);
        if (!node)
            return false;
        myNodes.erase(item);
        if (node->slot >= 0)
        {
            // The first or last item leaves its buffer at no cost; any other joins the tree.
            std::vector<Node *> &buffer = node->inHead ? myHead : myTail;
            if (node == buffer.back())
            {
                buffer.pop_back();
                freeNode(node);
                return true;
            }
            joinBuffers();
        }
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
        freeNode(node);
        return true;
    }

    /// The index of an item, or -1.
    int indexOf(const T *item) const
    {
        const Node *node = myNodes.find(item);
        if (!node)
            return -1;
        if (node->slot >= 0)
            return node->inHead ? headSize() - 1 - node->slot
                                : headSize() + sizeOf(myRoot) + node->slot;
        int index = headSize() + sizeOf(node->left);
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
        myNodes.insert(a->item, a);
        myNodes.insert(b->item, b);
    }

    void clear()
    {
        myNodes.clear();
        myHead.clear();
        myTail.clear();
        myBlocks.clear();
        myFree = nullptr;
        myRoot = nullptr;
    }

    /// The items in order.
    std::vector<T *> items() const
    {
        std::vector<T *> out;
        out.reserve(static_cast<std::size_t>(size()));
        forEach([&out](T *item) { out.push_back(item); });
        return out;
    }

    /// Calls fn(item) for every item in order. The list must not change meanwhile.
    template <typename Fn> void forEach(Fn &&fn) const
    {
        for (auto it = myHead.rbegin(); it != myHead.rend(); ++it)
            fn((*it)->item);
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
        for (const Node *t : myTail)
            fn(t->item);
    }

private:
    struct Node
    {
        T *item;
        std::uint32_t priority;
        int size = 1;
        int slot = -1;       ///< the place in its buffer, or -1 in the tree
        bool inHead = false; ///< the buffer is the head (else the tail)
        Node *left = nullptr;
        Node *right = nullptr;
        Node *parent = nullptr;
    };

    /// Pointer to node, open-addressed with linear probing (a pointer hash needs no more).
    class PointerIndex
    {
    public:
        Node *find(const T *key) const
        {
            if (mySlots.empty())
                return nullptr;
            for (std::size_t i = slotOf(key);; i = (i + 1) & mask())
            {
                if (mySlots[i].key == key)
                    return mySlots[i].node;
                if (!mySlots[i].key)
                    return nullptr;
            }
        }
        /// Adds the key, or points it at `node` when it is there.
        void insert(const T *key, Node *node)
        {
            if ((myCount + 1) * 2 > mySlots.size())
                grow();
            std::size_t i = slotOf(key);
            while (mySlots[i].key && mySlots[i].key != key)
                i = (i + 1) & mask();
            myCount += mySlots[i].key ? 0 : 1;
            mySlots[i] = Slot{key, node};
        }
        void erase(const T *key)
        {
            std::size_t i = slotOf(key);
            while (mySlots[i].key != key)
                i = (i + 1) & mask();
            HostProbeErase(
                mySlots, i, [](const Slot &slot) { return slot.key != nullptr; },
                [this](const Slot &slot) { return slotOf(slot.key); });
            --myCount;
        }
        void clear()
        {
            mySlots.clear();
            myCount = 0;
        }

    private:
        struct Slot
        {
            const T *key = nullptr;
            Node *node = nullptr;
        };
        std::size_t mask() const { return mySlots.size() - 1; }
        std::size_t slotOf(const T *key) const
        {
            const auto bits = reinterpret_cast<std::uintptr_t>(key);
            return static_cast<std::size_t>((bits >> 4) * 0x9E3779B97F4A7C15ull >> 20) & mask();
        }
        void grow()
        {
            std::vector<Slot> old(mySlots.empty() ? 16 : mySlots.size() * 2);
            old.swap(mySlots);
            myCount = 0;
            for (const Slot &s : old)
                if (s.key)
                    insert(s.key, s.node);
        }
        std::vector<Slot> mySlots;
        std::size_t myCount = 0;
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
        if (index < headSize())
            return myHead[static_cast<std::size_t>(headSize() - 1 - index)];
        index -= headSize();
        if (index >= sizeOf(myRoot))
            return myTail[static_cast<std::size_t>(index - sizeOf(myRoot))];
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

    int headSize() const { return static_cast<int>(myHead.size()); }

    /// Puts both buffers into the tree.
    void joinBuffers()
    {
        if (!myHead.empty())
        {
            std::reverse(myHead.begin(), myHead.end());
            myRoot = merge(buildTree(myHead), myRoot);
            myRoot->parent = nullptr;
        }
        if (!myTail.empty())
        {
            myRoot = merge(myRoot, buildTree(myTail));
            myRoot->parent = nullptr;
        }
    }

    /// A treap of `nodes` in their order, built in one pass (the right spine on a stack: a
    /// node pops the spine nodes of lower priority, which become its left subtree, each
    /// complete when popped); empties `nodes`.
    static Node *buildTree(std::vector<Node *> &nodes)
    {
        std::vector<Node *> spine;
        for (Node *node : nodes)
        {
            node->slot = -1;
            Node *popped = nullptr;
            while (!spine.empty() && spine.back()->priority < node->priority)
            {
                popped = spine.back();
                spine.pop_back();
                update(popped);
            }
            node->left = popped;
            node->right = nullptr;
            if (!spine.empty())
                spine.back()->right = node;
            spine.push_back(node);
        }
        for (auto it = spine.rbegin(); it != spine.rend(); ++it)
            update(*it);
        spine.front()->parent = nullptr;
        nodes.clear();
        return spine.front();
    }

    Node *newNode(T *item)
    {
        if (!myFree)
        {
            // Blocks grow with the list, so a big list has few of them.
            const std::size_t count = std::min<std::size_t>(
                std::max<std::size_t>(16, static_cast<std::size_t>(size()) / 2), 4096);
            myBlocks.emplace_back(new Node[count]);
            for (std::size_t i = count; i-- > 0;)
            {
                myBlocks.back()[i].left = myFree;
                myFree = &myBlocks.back()[i];
            }
        }
        Node *node = myFree;
        myFree = node->left;
        *node = Node{item, nextPriority()};
        return node;
    }

    void freeNode(Node *node)
    {
        node->left = myFree;
        myFree = node;
    }

    Node *myRoot = nullptr;
    std::vector<Node *> myHead; ///< items before the tree, the first item last
    std::vector<Node *> myTail; ///< items after the tree, in order
    PointerIndex myNodes;
    std::vector<std::unique_ptr<Node[]>> myBlocks;
    Node *myFree = nullptr;
    std::uint32_t mySeed = 2463534242u;
};
