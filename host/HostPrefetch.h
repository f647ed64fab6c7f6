// HostPrefetch: a hint that memory will be read soon.
#pragma once

#include <cstddef>

/// Asks the processor to start loading the cache line at `address`. A loop over thousands
/// of scattered objects (the referrers of a renamed parameter) otherwise waits on main
/// memory at every step; asking a few steps ahead lets those waits overlap. Only a hint:
/// results never depend on it, and a null address is ignored.
inline void HostPrefetch(const void *address)
{
#if defined(__GNUC__) || defined(__clang__)
    if (address)
        __builtin_prefetch(address);
#else
    (void)address;
#endif
}

/// For a walk over 0..count-1 that is about to visit i: calls ahead(j, stage) for
/// j = i + 12, 8, 4 and 2 (stages 0 to 3, when j < count), so that an object reached
/// through a chain of pointers is asked for one link per stage, each link read from a line
/// that an earlier stage asked for.
template <typename Ahead> void HostPrefetchAhead(std::size_t i, std::size_t count, Ahead ahead)
{
    constexpr std::size_t theDistance[] = {12, 8, 4, 2};
    for (int stage = 0; stage < 4; ++stage)
        if (i + theDistance[stage] < count)
            ahead(i + theDistance[stage], stage);
}
