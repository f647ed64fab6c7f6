// HostNameIndex: objects found by the name they hold, through one array.
#pragma once

#include "host/HostProbeErase.h"
#include "host/HostStringHash.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// Pointers to objects that each hold a distinct name (`(item->*Name)()`), found by that
/// name. A node-based hash map costs a bucket and a node per lookup, scattered, and a
/// rehash that visits every node; in a network of tens of thousands of nodes those misses
/// dominated the naming of a new node. Here a slot holds the name's hash and the pointer
/// (16 bytes, linear probing, at most half full); the object is read only when a hash
/// matches, so asking for a free name reads one slot and usually its neighbour.
/// An object's name must not change while it is in the index.
template <typename T, const std::string &(T::*Name)() const> class HostNameIndex
{
public:
    T *find(const std::string &name) const
    {
        if (mySlots.empty())
            return nullptr;
        return mySlots[slotOf(name, hashOf(name))].item;
    }

    /// Adds `item` under its name; false (nothing changed) when the name is taken.
    bool insert(T *item)
    {
        if ((myCount + 1) * 2 > mySlots.size())
            grow();
        const std::string &name = (item->*Name)();
        const std::uint64_t hash = hashOf(name);
        Slot &slot = mySlots[slotOf(name, hash)];
        if (slot.item)
            return false;
        slot = {hash, item};
        ++myCount;
        return true;
    }

    void erase(const std::string &name)
    {
        if (mySlots.empty())
            return;
        const std::size_t i = slotOf(name, hashOf(name));
        if (!mySlots[i].item)
            return;
        HostProbeErase(
            mySlots, i, [](const Slot &s) { return s.item != nullptr; },
            [this](const Slot &s) { return homeOf(s.hash); });
        --myCount;
    }

    std::size_t size() const { return myCount; }

private:
    struct Slot
    {
        std::uint64_t hash = 0;
        T *item = nullptr; ///< null: the slot is empty
    };

    static std::uint64_t hashOf(const std::string &name) { return HostStringHash(name); }
    std::size_t homeOf(std::uint64_t hash) const { return HostHashSlot(hash, mySlots.size() - 1); }
    /// The slot holding `name`, or the empty one where it would go (the array is not empty).
    std::size_t slotOf(const std::string &name, std::uint64_t hash) const
    {
        const std::size_t mask = mySlots.size() - 1;
        std::size_t i = homeOf(hash);
        while (mySlots[i].item && (mySlots[i].hash != hash || (mySlots[i].item->*Name)() != name))
            i = (i + 1) & mask;
        return i;
    }
    void grow()
    {
        std::vector<Slot> old(mySlots.empty() ? 16 : mySlots.size() * 2);
        old.swap(mySlots);
        const std::size_t mask = mySlots.size() - 1;
        for (const Slot &s : old)
        {
            if (!s.item)
                continue;
            std::size_t i = homeOf(s.hash);
            while (mySlots[i].item)
                i = (i + 1) & mask;
            mySlots[i] = s;
        }
    }

    std::vector<Slot> mySlots;
    std::size_t myCount = 0;
};
