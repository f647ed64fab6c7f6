// gz_OrderedMap: a hash map from string keys that iterates in order of insertion.
#pragma once

#include <list>
#include <string>
#include <unordered_map>
#include <utility>

/// A map from string keys to values that finds, inserts and erases in constant time and
/// iterates in the order in which the keys were inserted. The bindings of operator types are
/// kept in it, so that the bindings file and the listing commands come out in a stable order
/// (a file that is read and written again keeps its order), whatever the hash function.
/// A key erased and inserted again moves to the end.
template <typename Value> class gz_OrderedMap
{
public:
    using value_type = std::pair<const std::string, Value>;
    using iterator = typename std::list<value_type>::iterator;
    using const_iterator = typename std::list<value_type>::const_iterator;

    iterator begin() { return myItems.begin(); }
    iterator end() { return myItems.end(); }
    const_iterator begin() const { return myItems.begin(); }
    const_iterator end() const { return myItems.end(); }
    size_t size() const { return myItems.size(); }
    bool empty() const { return myItems.empty(); }

    iterator find(const std::string &key)
    {
        auto it = myIndex.find(key);
        return it == myIndex.end() ? myItems.end() : it->second;
    }
    const_iterator find(const std::string &key) const
    {
        auto it = myIndex.find(key);
        return it == myIndex.end() ? myItems.end() : const_iterator(it->second);
    }
    size_t count(const std::string &key) const { return myIndex.count(key); }

    /// The value of `key`, appended (value-initialised) when missing.
    Value &operator[](const std::string &key)
    {
        auto it = myIndex.find(key);
        if (it != myIndex.end())
            return it->second->second;
        myItems.emplace_back(key, Value());
        myIndex.emplace(key, std::prev(myItems.end()));
        return myItems.back().second;
    }

    size_t erase(const std::string &key)
    {
        auto it = myIndex.find(key);
        if (it == myIndex.end())
            return 0;
        myItems.erase(it->second);
        myIndex.erase(it);
        return 1;
    }

    void clear()
    {
        myIndex.clear();
        myItems.clear();
    }

private:
    std::list<value_type> myItems;
    std::unordered_map<std::string, iterator> myIndex;
};
