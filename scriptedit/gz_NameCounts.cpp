// gz_NameCounts: probing, insertion and growth of the flat name table.
#include "scriptedit/gz_NameCounts.h"

#include <functional>

void gz_NameCounts::reserve(std::size_t names)
{
    std::size_t slots = 16;
    while (slots * 3 < names * 4 + 4)
        slots *= 2;
    if (slots > mySlots.size())
        grow(slots);
    myText.reserve(names * 8); // a typical name with room to spare
}

std::uint32_t gz_NameCounts::hashOf(std::string_view name)
{
    return static_cast<std::uint32_t>(std::hash<std::string_view>()(name));
}

std::size_t gz_NameCounts::probe(std::string_view name, std::uint32_t hash) const
{
    const std::size_t mask = mySlots.size() - 1;
    for (std::size_t i = hash & mask;; i = (i + 1) & mask)
    {
        const Slot &s = mySlots[i];
        if (s.count < 0 ||
            (s.hash == hash && std::string_view(myText).substr(s.offset, s.length) == name))
            return i;
    }
}

void gz_NameCounts::add(std::string_view name, int delta)
{
    if (full())
        grow(mySlots.empty() ? 16 : mySlots.size() * 2);
    const std::uint32_t hash = hashOf(name);
    Slot &s = mySlots[probe(name, hash)];
    if (s.count < 0)
    {
        s = Slot{hash, static_cast<std::uint32_t>(myText.size()),
                 static_cast<std::uint32_t>(name.size()), 0};
        myText.append(name);
        ++myUsed;
    }
    s.count = s.count + delta > 0 ? s.count + delta : 0;
}

bool gz_NameCounts::has(std::string_view name) const
{
    if (myUsed == 0)
        return false;
    const Slot &s = mySlots[probe(name, hashOf(name))];
    return s.count > 0;
}

void gz_NameCounts::grow(std::size_t slots)
{
    std::vector<Slot> old(slots);
    old.swap(mySlots);
    for (const Slot &s : old)
        if (s.count >= 0)
            mySlots[probe(std::string_view(myText).substr(s.offset, s.length), s.hash)] = s;
}
