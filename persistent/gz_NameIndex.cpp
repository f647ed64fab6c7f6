// gz_NameIndex: the names of persistent handles or groups, and the free-name rule over them.
#include "persistent/gz_NameIndex.h"

#include <algorithm>

namespace
{
// Longest digit run indexed as a number: 19 digits always fit in 64 bits.
constexpr std::size_t theMaxDigits = 19;
// A requested name's digit run is read with saturation here, so that n + 1 still has at
// most 19 digits and numbering never wraps.
constexpr std::uint64_t theMaxRequested = 999999999999999999ull; // 18 nines
// What the free-name rule keeps of a requested name: a 512-byte buffer with its terminator.
constexpr std::size_t theBufferChars = 511;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

std::size_t digitRunStart(const std::string &text)
{
    std::size_t p = text.size();
    while (p > 0 && isDigit(text[p - 1]))
        --p;
    return p;
}
} // namespace

bool gz_NameIndex::splitNumbered(const std::string &name, std::string &prefix,
                                 std::uint64_t &number)
{
    const std::size_t p = digitRunStart(name);
    const std::size_t digits = name.size() - p;
    if (digits == 0 || digits > theMaxDigits || (digits > 1 && name[p] == '0'))
        return false;
    number = 0;
    for (std::size_t i = p; i < name.size(); ++i)
        number = number * 10 + static_cast<std::uint64_t>(name[i] - '0');
    prefix.assign(name, 0, p);
    return true;
}

void gz_NameIndex::add(const std::string &name, const void *object)
{
    const auto inserted = myNames.tryEmplace(name);
    Holders &holders = *inserted.first;
    if (!inserted.second)
    {
        holders.more.push_back(object);
        return;
    }
    holders.first = object;
    markTaken(name);
}

void gz_NameIndex::remove(const std::string &name, const void *object)
{
    Holders *entry = myNames.find(name);
    if (!entry)
        return;
    Holders &holders = *entry;
    if (holders.first != object)
    {
        auto found = std::find(holders.more.begin(), holders.more.end(), object);
        if (found != holders.more.end())
            holders.more.erase(found);
        return;
    }
    if (!holders.more.empty())
    {
        holders.first = holders.more.front();
        holders.more.erase(holders.more.begin());
        return;
    }
    myNames.erase(name);
    markFree(name);
}

void gz_NameIndex::clear()
{
    myNames.clear();
    myNumbers.clear();
}

void gz_NameIndex::markTaken(const std::string &name)
{
    std::string prefix;
    std::uint64_t v = 0;
    if (!splitNumbered(name, prefix, v))
        return;
    Intervals &taken = myNumbers[prefix];
    std::uint64_t start = v;
    std::uint64_t end = v;
    // Join the interval that ends just before v, and the one that starts just after it.
    auto next = taken.upper_bound(v);
    if (next != taken.begin())
    {
        auto prev = std::prev(next);
        if (prev->second + 1 == v)
        {
            start = prev->first;
            taken.erase(prev);
        }
    }
    if (next != taken.end() && next->first == v + 1)
    {
        end = next->second;
        taken.erase(next);
    }
    taken[start] = end;
}

void gz_NameIndex::markFree(const std::string &name)
{
    std::string prefix;
    std::uint64_t v = 0;
    if (!splitNumbered(name, prefix, v))
        return;
    auto numbers = myNumbers.find(prefix);
    if (numbers == myNumbers.end())
        return;
    Intervals &taken = numbers->second;
    auto next = taken.upper_bound(v);
    if (next == taken.begin())
        return;
    auto holder = std::prev(next);
    const std::uint64_t start = holder->first;
    const std::uint64_t end = holder->second;
    if (v > end)
        return;
    taken.erase(holder);
    if (start < v)
        taken[start] = v - 1;
    if (v < end)
        taken[v + 1] = end;
    if (taken.empty())
        myNumbers.erase(numbers);
}

std::uint64_t gz_NameIndex::firstFree(const std::string &prefix, std::uint64_t from) const
{
    auto numbers = myNumbers.find(prefix);
    if (numbers == myNumbers.end())
        return from;
    const Intervals &taken = numbers->second;
    auto next = taken.upper_bound(from);
    if (next == taken.begin())
        return from;
    auto holder = std::prev(next);
    // Intervals never touch, so the number after a taken run is free.
    return from <= holder->second ? holder->second + 1 : from;
}

std::string gz_NameIndex::freeName(const char *requested, const char *fallback) const
{
    std::string name = (requested && *requested) ? requested : fallback;
    if (!isTaken(name))
        return name;
    if (name.size() > theBufferChars)
        name.resize(theBufferChars);
    const std::size_t p = digitRunStart(name);
    std::uint64_t n = 0;
    for (std::size_t i = p; i < name.size(); ++i)
    {
        n = n * 10 + static_cast<std::uint64_t>(name[i] - '0');
        if (n > theMaxRequested)
        {
            n = theMaxRequested;
            break;
        }
    }
    name.resize(p);
    return name + std::to_string(firstFree(name, n + 1));
}
