// HostReferrerSet: an open-addressed set of referring components.
#include "host/HostReferrerSet.h"

#include "host/HostProbeErase.h"
#include "host/HostStringHash.h"

#include <cstdint>

std::size_t HostReferrerSet::homeOf(const Slot &slot) const
{
    return HostHashSlot(reinterpret_cast<std::uintptr_t>(slot.first) ^
                            (static_cast<std::uint64_t>(slot.second) << 48),
                        mySlots.size() - 1);
}

std::size_t HostReferrerSet::find(const Slot &slot) const
{
    const std::size_t mask = mySlots.size() - 1;
    std::size_t i = homeOf(slot);
    while (mySlots[i].first && mySlots[i] != slot)
        i = (i + 1) & mask;
    return i;
}

bool HostReferrerSet::insert(const Slot &slot)
{
    if ((myCount + 1) * 2 > mySlots.size())
        grow();
    const std::size_t i = find(slot);
    if (mySlots[i].first)
        return false;
    mySlots[i] = slot;
    ++myCount;
    return true;
}

bool HostReferrerSet::erase(const Slot &slot)
{
    if (mySlots.empty())
        return false;
    std::size_t i = find(slot);
    if (!mySlots[i].first)
        return false;
    HostProbeErase(
        mySlots, i, [](const Slot &s) { return s.first != nullptr; },
        [this](const Slot &s) { return homeOf(s); });
    --myCount;
    return true;
}

void HostReferrerSet::grow()
{
    std::vector<Slot> old(mySlots.empty() ? 8 : mySlots.size() * 2, Slot(nullptr, 0));
    old.swap(mySlots);
    for (const Slot &slot : old)
        if (slot.first)
            mySlots[find(slot)] = slot;
}
