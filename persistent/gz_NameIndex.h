// gz_NameIndex: the names of persistent handles or groups, and the free-name rule over them.
#pragma once

#include "persistent/gz_NameTable.h"

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

/// Which names are taken, by whom, and the first free numbered variant of a name.
///
/// The free-name rule: a requested name (null or empty: the default) is returned as it is
/// when free; otherwise, within its first 511 characters, the run of decimal digits at its
/// end is read as n (0 when there is none) and the result is the first of prefix + (n+1),
/// prefix + (n+2), ... that is free. Probing those one by one would make creating many
/// handles of one default name quadratic, so the index also keeps, per prefix, the numbers
/// taken as maximal intervals: the first free number at or after n+1 is one map lookup.
///
/// A candidate prefix + k never ends its prefix with a digit and writes k without leading
/// zeros, so a name is indexed as (prefix, number) exactly when its trailing digit run is
/// canonical; "cam07" is taken as a name but can never be a candidate, and is not numbered.
///
/// Names need not be unique (a node rename may give two handles one name), so each name
/// maps to every object holding it. Cost: every operation O(log n) in the names sharing a
/// prefix, plus hashing the name.
class gz_NameIndex
{
public:
    void add(const std::string &name, const void *object);
    void remove(const std::string &name, const void *object);
    void clear();

    bool isTaken(const std::string &name) const { return myNames.find(name) != nullptr; }
    /// Calls fn(object) for every object holding `name`.
    template <typename Fn> void forEachHolder(const std::string &name, Fn &&fn) const
    {
        const Holders *holders = myNames.find(name);
        if (!holders)
            return;
        fn(holders->first);
        for (const void *object : holders->more)
            fn(object);
    }

    /// The free-name rule with `fallback` ("Handle", "Group") for a null or empty request.
    std::string freeName(const char *requested, const char *fallback) const;

    /// Splits a name at its trailing digit run. Returns true and sets `prefix` and `number`
    /// when the run is canonical (non-empty, no leading zero unless it is "0") and short
    /// enough to count.
    static bool splitNumbered(const std::string &name, std::string &prefix, std::uint64_t &number);

private:
    // Taken numbers of one prefix as disjoint, non-adjacent intervals: start -> end.
    using Intervals = std::map<std::uint64_t, std::uint64_t>;

    void markTaken(const std::string &name);
    void markFree(const std::string &name);
    /// The first number at or after `from` that is not taken under `prefix`.
    std::uint64_t firstFree(const std::string &prefix, std::uint64_t from) const;

    // Almost every name has one holder, kept inline; only shared names allocate.
    struct Holders
    {
        const void *first = nullptr;
        std::vector<const void *> more;
    };

    gz_NameTable<Holders> myNames;
    std::unordered_map<std::string, Intervals> myNumbers;
};
