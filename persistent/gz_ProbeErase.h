// gz_ProbeErase: erasing from an open-addressed table with linear probing.
#pragma once

#include "host/HostProbeErase.h"

#include <cstddef>

/// The host's erasure, under the name the library's tables use.
template <typename Slots, typename Used, typename Home>
void gz_ProbeErase(Slots &slots, std::size_t i, Used used, Home home)
{
    HostProbeErase(slots, i, used, home);
}
