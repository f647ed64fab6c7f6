// HostNodeCallbackList: registered (callee, function) pairs, called in registration order.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

/// The callbacks of one event source (a node's event callbacks), each (callee, function)
/// pair at most once, called in the order they were registered.
///
/// A node watched by thousands of handles holds thousands of pairs, and every handle that
/// attaches asks whether its pair is there: past a few entries the list keeps an index from
/// pair to position, so registering, asking and removing cost constant time instead of a
/// scan. A removal leaves a hole that calls skip; holes go when they outnumber the live
/// entries and no call is running, so removal during a call is safe and the list stays
/// proportional to what it holds.
template <typename Fn> class HostNodeCallbackList
{
public:
    /// Registers the pair; false when it is already registered.
    bool add(void *callee, Fn fn)
    {
        if (!fn || contains(callee, fn))
            return false;
        myEntries.push_back({callee, fn});
        if (myIndex)
            myIndex->emplace(Key{callee, fn}, myEntries.size() - 1);
        else if (myEntries.size() > theIndexFrom)
            rebuildIndex();
        ++myLive;
        return true;
    }

    /// Unregisters the pair; false when it was not registered.
    bool remove(void *callee, Fn fn)
    {
        const std::size_t at = find(callee, fn);
        if (at == npos)
            return false;
        myEntries[at].fn = nullptr;
        if (myIndex)
            myIndex->erase(Key{callee, fn});
        --myLive;
        compactIfDue();
        return true;
    }

    bool contains(void *callee, Fn fn) const { return find(callee, fn) != npos; }
    int size() const { return static_cast<int>(myLive); }

    /// Calls call(callee, fn) for every pair registered before this call began and not
    /// removed since, in registration order. `call` may add and remove pairs.
    template <typename Call> void forEach(Call &&call)
    {
        ++myCalling;
        const std::size_t n = myEntries.size();
        for (std::size_t i = 0; i < n; ++i)
        {
            const Entry entry = myEntries[i];
            if (entry.fn)
                call(entry.callee, entry.fn);
        }
        --myCalling;
        compactIfDue();
    }

private:
    struct Entry
    {
        void *callee;
        Fn fn;
    };
    using Key = std::pair<void *, Fn>;
    struct KeyHash
    {
        std::size_t operator()(const Key &key) const
        {
            return std::hash<void *>()(key.first) * 31u ^ std::hash<Fn>()(key.second);
        }
    };
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);
    // Below this many entries a scan is as fast as the index and costs no memory.
    static constexpr std::size_t theIndexFrom = 16;

    std::size_t find(void *callee, Fn fn) const
    {
        if (myIndex)
        {
            auto it = myIndex->find(Key{callee, fn});
            return it == myIndex->end() ? npos : it->second;
        }
        for (std::size_t i = 0; i < myEntries.size(); ++i)
            if (myEntries[i].fn == fn && fn && myEntries[i].callee == callee)
                return i;
        return npos;
    }

    void compactIfDue()
    {
        if (myCalling > 0 || 2 * myLive > myEntries.size())
            return;
        std::size_t kept = 0;
        for (const Entry &entry : myEntries)
            if (entry.fn)
                myEntries[kept++] = entry;
        myEntries.resize(kept);
        if (myIndex)
            rebuildIndex();
    }

    void rebuildIndex()
    {
        if (myEntries.size() <= theIndexFrom)
        {
            myIndex.reset();
            return;
        }
        myIndex = std::make_unique<std::unordered_map<Key, std::size_t, KeyHash>>();
        myIndex->reserve(myEntries.size());
        for (std::size_t i = 0; i < myEntries.size(); ++i)
            if (myEntries[i].fn)
                myIndex->emplace(Key{myEntries[i].callee, myEntries[i].fn}, i);
    }

    std::vector<Entry> myEntries;
    std::unique_ptr<std::unordered_map<Key, std::size_t, KeyHash>> myIndex;
    std::size_t myLive = 0;
    int myCalling = 0;
};
