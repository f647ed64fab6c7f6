// gz_NameTable: a map from names to small values, kept in one array.
#pragma once

#include "host/HostProbeErase.h"
#include "host/HostStringHash.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// The names of handles and groups, looked up once or more by every command that names one.
/// A node-based hash map costs three scattered reads per lookup (bucket, the node before,
/// the node), which dominate once a scene's handles outgrow the caches; here an entry keeps
/// its key, value and hash in one slot of an open-addressed array (linear probing, at most
/// half full), so a lookup reads one slot and usually its neighbour.
///
/// Pointers to values stay valid until the next insertion.
template <typename V> class gz_NameTable
{
public:
    V *find(const std::string &name)
    {
        const std::size_t i = slotOf(name);
        return mySlots.empty() || !mySlots[i].hash ? nullptr : &mySlots[i].value;
    }
    const V *find(const std::string &name) const
    {
        return const_cast<gz_NameTable *>(this)->find(name);
    }

    /// The value of `name`, made (default) when absent; second: whether it was made.
    std::pair<V *, bool> tryEmplace(const std::string &name)
    {
        if ((myCount + 1) * 2 > mySlots.size())
            grow();
        const std::size_t i = slotOf(name);
        Slot &slot = mySlots[i];
        if (slot.hash)
            return {&slot.value, false};
        slot.hash = hashOf(name);
        slot.key = name;
        ++myCount;
        return {&slot.value, true};
    }

    void erase(const std::string &name)
    {
        if (mySlots.empty())
            return;
        std::size_t i = slotOf(name);
        if (!mySlots[i].hash)
            return;
        HostProbeErase(
            mySlots, i, [](const Slot &slot) { return slot.hash != 0; },
            [this](const Slot &slot) { return homeOf(slot.hash); });
        --myCount;
    }

    void clear()
    {
        mySlots.clear();
        myCount = 0;
    }

    std::size_t size() const { return myCount; }

private:
    struct Slot
    {
        std::uint64_t hash = 0; ///< never 0 when the slot is used
        std::string key;
        V value{};
    };

    // The top bit is always set, so that 0 can mean "empty".
    static std::uint64_t hashOf(const std::string &name)
    {
        return HostStringHash(name) | (std::uint64_t{1} << 63);
    }
    std::size_t mask() const { return mySlots.size() - 1; }
    std::size_t homeOf(std::uint64_t hash) const { return HostHashSlot(hash, mask()); }
    std::size_t next(std::size_t i) const { return (i + 1) & mask(); }

    /// The slot holding `name`, or the empty slot where it would go (the table is not empty).
    std::size_t slotOf(const std::string &name) const
    {
        if (mySlots.empty())
            return 0;
        const std::uint64_t hash = hashOf(name);
        std::size_t i = homeOf(hash);
        while (mySlots[i].hash && (mySlots[i].hash != hash || mySlots[i].key != name))
            i = next(i);
        return i;
    }

    void grow()
    {
        std::vector<Slot> old(mySlots.empty() ? 16 : mySlots.size() * 2);
        old.swap(mySlots);
        for (Slot &s : old)
        {
            if (!s.hash)
                continue;
            std::size_t i = homeOf(s.hash);
            while (mySlots[i].hash)
                i = next(i);
            mySlots[i] = std::move(s);
        }
    }

    std::vector<Slot> mySlots;
    std::size_t myCount = 0;
};
