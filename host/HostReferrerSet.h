// HostReferrerSet: the components filed under one channel token of one node, in one array.
#pragma once

#include "host/HostPrefetch.h"

#include <cstddef>
#include <utility>
#include <vector>

class HostParm;

/// The referring components (parameter, component) filed under one channel token of one
/// node. Renaming a parameter with thousands of referrers takes each of them out of one set
/// and puts it into another; a tree visited O(log n) scattered nodes for each, which
/// dominated once the referrers outgrew the caches. Here the entries sit in one
/// open-addressed array (linear probing, at most half full, erased without tombstones), so
/// an insertion or a removal reads one slot and usually its neighbour, and a walk reads the
/// array in order. The order of a walk is unspecified.
class HostReferrerSet
{
public:
    using Slot = std::pair<HostParm *, int>;

    /// Whether `slot` was not there before.
    bool insert(const Slot &slot);
    /// Whether `slot` was there.
    bool erase(const Slot &slot);
    bool empty() const { return myCount == 0; }
    std::size_t size() const { return myCount; }

    template <typename Visit> void forEach(Visit visit) const
    {
        forEach([](const Slot &, int) {}, visit);
    }

    /// forEach, calling ahead(slot, stage) for the slots a few steps before they are
    /// visited (HostPrefetchAhead), for visits that read scattered memory through each slot.
    template <typename Ahead, typename Visit> void forEach(Ahead ahead, Visit visit) const
    {
        const std::size_t count = mySlots.size();
        for (std::size_t i = 0; i < count; ++i)
        {
            HostPrefetchAhead(i, count,
                              [&](std::size_t j, int stage)
                              {
                                  if (mySlots[j].first)
                                      ahead(mySlots[j], stage);
                              });
            if (mySlots[i].first)
                visit(mySlots[i]);
        }
    }

private:
    std::size_t homeOf(const Slot &slot) const;
    /// The slot holding `slot`, or the empty one where it would go (the array is not empty).
    std::size_t find(const Slot &slot) const;
    void grow();

    std::vector<Slot> mySlots; ///< a null parameter marks an empty slot
    std::size_t myCount = 0;
};
