// HostStringHash: the host's hash of a string, the same on every platform and in every run.
#pragma once

#include <cstddef>
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

/// The home slot of a hash in a power-of-two table (`mask` is its size less one). The high
/// half is folded in first and the result mixed: the low bits of a string hash see little of
/// the trailing digits that tell numbered names apart, and those of a pointer are all zero.
inline std::size_t HostHashSlot(std::uint64_t hash, std::size_t mask)
{
    hash ^= hash >> 32;
    hash *= 0x9E3779B97F4A7C15ull;
    return static_cast<std::size_t>(hash ^ (hash >> 29)) & mask;
}
