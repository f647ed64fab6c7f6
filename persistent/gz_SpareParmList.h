// gz_SpareParmList: named definitions of the spare-property catalogue, in file order.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

class HostScriptParm;

/// Definitions by name plus the names in the order they were added. The definitions belong
/// to the page of their class.
struct gz_SpareParmList
{
    std::unordered_map<std::string, const HostScriptParm *> myByName;
    std::vector<std::string> myNames;

    bool has(const std::string &name) const { return myByName.count(name) != 0; }
    const HostScriptParm *find(const std::string &name) const
    {
        auto it = myByName.find(name);
        return it == myByName.end() ? nullptr : it->second;
    }
    void add(const std::string &name, const HostScriptParm *parm)
    {
        if (myByName.emplace(name, parm).second)
            myNames.push_back(name);
    }
};
