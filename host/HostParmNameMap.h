// HostParmNameMap: old parameter names mapped to the names they now bear.
#pragma once

#include <map>
#include <string>

/// Filled by tools that add or rename parameters, read by whatever must follow the renames
/// (references, saved values).
class HostParmNameMap
{
public:
    void add(const std::string &from, const std::string &to) { myNames[from] = to; }
    /// The new name of `from`, or null.
    const std::string *find(const std::string &from) const
    {
        auto it = myNames.find(from);
        return it == myNames.end() ? nullptr : &it->second;
    }
    int entries() const { return static_cast<int>(myNames.size()); }

private:
    std::map<std::string, std::string> myNames;
};
