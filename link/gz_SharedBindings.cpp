// gz_SharedBindings: the pool, hashed by content.
#include "link/gz_SharedBindings.h"

#include <algorithm>
#include <functional>
#include <mutex>
#include <unordered_set>

namespace
{
struct ContentHash
{
    std::size_t operator()(const gz_SharedBindings::Shared &names) const
    {
        std::size_t hash = names->size();
        for (const std::string &name : *names)
            hash = hash * 1000003u ^ std::hash<std::string>()(name);
        return hash;
    }
};

struct ContentEqual
{
    bool operator()(const gz_SharedBindings::Shared &a, const gz_SharedBindings::Shared &b) const
    {
        return *a == *b;
    }
};

struct Pool
{
    std::mutex lock;
    std::unordered_set<gz_SharedBindings::Shared, ContentHash, ContentEqual> lists;
    std::size_t sweepAt = 64;

    // Lists nobody but the pool holds go; the next sweep waits until the pool has doubled,
    // which keeps the sweeps' cost constant per list pooled.
    void sweepIfDue()
    {
        if (lists.size() < sweepAt)
            return;
        for (auto it = lists.begin(); it != lists.end();)
            it = it->use_count() == 1 ? lists.erase(it) : std::next(it);
        sweepAt = std::max<std::size_t>(64, 2 * lists.size());
    }
};

Pool &pool()
{
    static Pool thePool;
    return thePool;
}
} // namespace

gz_SharedBindings::Shared gz_SharedBindings::intern(Shared names)
{
    Pool &p = pool();
    std::lock_guard<std::mutex> guard(p.lock);
    auto found = p.lists.find(names);
    if (found != p.lists.end())
        return *found;
    p.sweepIfDue();
    p.lists.insert(names);
    return names;
}

std::size_t gz_SharedBindings::size()
{
    Pool &p = pool();
    std::lock_guard<std::mutex> guard(p.lock);
    return p.lists.size();
}
