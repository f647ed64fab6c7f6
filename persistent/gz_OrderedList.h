// gz_OrderedList: an ordered list of distinct pointers with logarithmic index lookups.
#pragma once

#include <cstddef>
#include <unordered_map>
#include <utility>
#include <vector>

/// The member lists of handle groups (the master list of all persistent handles is one).
/// Keeps the user-visible order, and answers "where is this pointer", "what is at index i",
/// "remove this pointer" without scanning, so that removing handles one by one (a scene of
/// many nodes being cleared) is not quadratic.
///
/// Removed entries leave a hole in the slot array; a Fenwick tree over the slots counts the
/// live entries before a slot, which turns a slot into an index and back in O(log n). The
/// slots are compacted when holes outnumber the entries. A pointer appears at most once.
/// Cost: append, erase, indexOf, at: O(log n) (amortised); iteration: linear in the slots.
template <typename T> class gz_OrderedList
{
public:
    int size() const { return myCount; }
    bool empty() const { return myCount == 0; }
    bool contains(const T *item) const { return myPos.count(item) != 0; }

    /// Appends an item that is not in the list yet; returns false (and changes nothing) when
    /// it is already there.
    bool append(T *item)
    {
        if (!item || contains(item))
            return false;
        mySlots.push_back(item);
        myPos.emplace(item, mySlots.size() - 1);
        fenwickAppend(1);
        ++myCount;
        return true;
    }

    /// Removes an item; false when it was not in the list.
    bool erase(const T *item)
    {
        auto it = myPos.find(item);
        if (it == myPos.end())
            return false;
        const std::size_t slot = it->second;
        myPos.erase(it);
        mySlots[slot] = nullptr;
        fenwickAdd(slot, -1);
        --myCount;
        if (mySlots.size() > 64 && mySlots.size() > 2 * static_cast<std::size_t>(myCount))
            compact();
        return true;
    }

    /// The index of an item, or -1.
    int indexOf(const T *item) const
    {
        auto it = myPos.find(item);
        if (it == myPos.end())
            return -1;
        return prefixCount(it->second + 1) - 1;
    }

    /// The item at an index, or null when out of range.
    T *at(int index) const
    {
        if (index < 0 || index >= myCount)
            return nullptr;
        return mySlots[slotOf(index)];
    }

    /// Exchanges the items at two valid indices.
    void swap(int i, int j)
    {
        if (i == j)
            return;
        const std::size_t a = slotOf(i);
        const std::size_t b = slotOf(j);
        std::swap(mySlots[a], mySlots[b]);
        myPos[mySlots[a]] = a;
        myPos[mySlots[b]] = b;
    }

    void clear()
    {
        mySlots.clear();
        myTree.clear();
        myPos.clear();
        myCount = 0;
    }

    /// The items in order.
    std::vector<T *> items() const
    {
        std::vector<T *> out;
        out.reserve(myCount);
        for (T *item : mySlots)
            if (item)
                out.push_back(item);
        return out;
    }

    /// Calls fn(item) for every item in order. The list must not change meanwhile.
    template <typename Fn> void forEach(Fn &&fn) const
    {
        for (T *item : mySlots)
            if (item)
                fn(item);
    }

private:
    // Fenwick tree over the slots: myTree[k - 1] holds the live count of slots
    // (k - lowbit(k), k], for 1-based k.
    static std::size_t lowbit(std::size_t k) { return k & (~k + 1); }

    int prefixCount(std::size_t slots) const // live entries among the first `slots` slots
    {
        int sum = 0;
        for (std::size_t k = slots; k > 0; k -= lowbit(k))
            sum += myTree[k - 1];
        return sum;
    }

    void fenwickAdd(std::size_t slot, int delta)
    {
        for (std::size_t k = slot + 1; k <= myTree.size(); k += lowbit(k))
            myTree[k - 1] += delta;
    }

    void fenwickAppend(int value)
    {
        const std::size_t k = myTree.size() + 1;
        // The new node covers (k - lowbit(k), k]: its own value plus the slots before it.
        const int covered = prefixCount(k - 1) - prefixCount(k - lowbit(k));
        myTree.push_back(value + covered);
    }

    // The slot of the index-th live entry (0-based), by descending the tree.
    std::size_t slotOf(int index) const
    {
        std::size_t pos = 0;
        int remaining = index + 1;
        std::size_t step = 1;
        while (step * 2 <= myTree.size())
            step *= 2;
        for (; step > 0; step /= 2)
        {
            if (pos + step <= myTree.size() && myTree[pos + step - 1] < remaining)
            {
                pos += step;
                remaining -= myTree[pos - 1];
            }
        }
        return pos; // 1-based position pos + 1 holds it, i.e. slot pos
    }

    void compact()
    {
        std::vector<T *> live = items();
        clear();
        mySlots.reserve(live.size());
        myTree.reserve(live.size());
        for (T *item : live)
            append(item);
    }

    std::vector<T *> mySlots;
    std::vector<int> myTree;
    std::unordered_map<const T *, std::size_t> myPos;
    int myCount = 0;
};
