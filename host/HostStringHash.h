// HostStringHash: the host's hash of a string, the same on every platform and in every run.
#pragma once

#include <cstdint>
#include <string_view>

/// 64-bit FNV-1a over the bytes of the text. Tables keyed by names hash with it, so their
/// iteration order (and anything written in that order) does not depend on the standard
/// library in use.
inline std::uint64_t HostStringHash(std::string_view text)
{
    std::uint64_t hash = 0xcbf29ce484222325ull;
    for (unsigned char c : text)
    {
        hash ^= c;
        hash *= 0x100000001b3ull;
    }
    return hash;
}
