// HostProbeErase: erasing from an open-addressed table with linear probing.
#pragma once

#include <cstddef>
#include <utility>

/// Empties slot `i` of `slots` (a power-of-two array probed linearly) without leaving a
/// tombstone: each later entry of the run moves into the hole when its home slot does not
/// lie between the hole and it, so no probe ever stops early. `used(slot)` tells a taken
/// slot, `home(slot)` its home index; an empty slot is a value-initialised one.
template <typename Slots, typename Used, typename Home>
void HostProbeErase(Slots &slots, std::size_t i, Used used, Home home)
{
    const std::size_t mask = slots.size() - 1;
    for (std::size_t j = (i + 1) & mask; used(slots[j]); j = (j + 1) & mask)
    {
        if (((j - home(slots[j])) & mask) >= ((j - i) & mask))
        {
            slots[i] = std::move(slots[j]);
            i = j;
        }
    }
    slots[i] = {};
}
