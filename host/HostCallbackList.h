// HostCallbackList: listeners as (callback, data) pairs, called in the order they were added.
#pragma once

#include <algorithm>
#include <utility>
#include <vector>

/// Whether a pair already in a HostCallbackList is added again.
enum class HostDuplicates
{
    /// Adding a pair that is there changes nothing: a listener hears each event once.
    Refused,
    /// Each addition is an entry of its own, and each removal takes one away: a callback added
    /// twice runs twice (the scene-save callbacks keep that).
    Kept
};

/// A list of listeners that may add and remove listeners while they are called: a call goes
/// to the entries present when it began.
template <typename Callback> class HostCallbackList
{
public:
    explicit HostCallbackList(HostDuplicates duplicates) : myDuplicates(duplicates) {}

    void add(Callback callback, void *data)
    {
        const Entry entry(callback, data);
        if (myDuplicates == HostDuplicates::Kept ||
            std::find(myEntries.begin(), myEntries.end(), entry) == myEntries.end())
            myEntries.push_back(entry);
    }
    /// Removes the first entry of the pair, if any.
    void remove(Callback callback, void *data)
    {
        auto it = std::find(myEntries.begin(), myEntries.end(), Entry(callback, data));
        if (it != myEntries.end())
            myEntries.erase(it);
    }
    void clear() { myEntries.clear(); }
    bool empty() const { return myEntries.empty(); }

    /// Calls `call(callback, data)` for each entry, in order of addition.
    template <typename Call> void forEach(Call &&call) const
    {
        if (myEntries.empty())
            return;
        const std::vector<Entry> entries = myEntries;
        for (const Entry &entry : entries)
            call(entry.first, entry.second);
    }

private:
    using Entry = std::pair<Callback, void *>;
    std::vector<Entry> myEntries;
    HostDuplicates myDuplicates;
};
