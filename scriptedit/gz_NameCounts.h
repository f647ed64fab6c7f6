// gz_NameCounts: a multiset of names in one flat table, for indexes built per batch of names.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Names with a count each. The naming rule checks tens of thousands of names per batch and
/// drops the index afterwards, so the table is open-addressed (linear probing) and the texts
/// sit end to end in one buffer: building, probing and freeing touch a few contiguous arrays
/// instead of one heap node per name. Slots are 16 bytes and the table is kept at most
/// three quarters full. A name whose count falls to zero keeps its slot (it
/// reads as absent), so nothing ever moves out of a probe run.
class gz_NameCounts
{
public:
    /// Room for `names` distinct names without growing.
    void reserve(std::size_t names);
    /// Adds `delta` to the count of `name`.
    void add(std::string_view name, int delta);
    bool has(std::string_view name) const;
    /// Distinct names seen (counted down to zero or not).
    std::size_t size() const { return myUsed; }

private:
    struct Slot
    {
        std::uint32_t hash = 0; ///< the low half of the name's hash
        std::uint32_t offset = 0;
        std::uint32_t length = 0;
        std::int32_t count = -1; ///< -1: free slot
    };
    /// The slot holding `name`, or the free slot where it would go.
    std::size_t probe(std::string_view name, std::uint32_t hash) const;
    static std::uint32_t hashOf(std::string_view name);
    bool full() const { return (myUsed + 1) * 4 > mySlots.size() * 3; }
    void grow(std::size_t slots);

    std::vector<Slot> mySlots;
    std::size_t myUsed = 0;
    std::string myText;
};
