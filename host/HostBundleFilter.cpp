// HostBundleFilter: node filters and their registry.
#include "host/HostBundleFilter.h"

#include "host/HostNode.h"
#include "host/HostOperator.h"
#include "host/HostPatternMatch.h"

#include <map>

namespace
{
std::map<std::string, HostBundleFilter> &registry()
{
    static std::map<std::string, HostBundleFilter> filters = []
    {
        std::map<std::string, HostBundleFilter> m;
        const HostBundleFilter builtin[] = {
            {"all", "Any Node", "", "*"},
            {"objects", "Any Object", "Object", "*"},
            {"geometry_objects", "Geometry Objects", "Object", "geo*"},
            {"lights", "Light Objects", "Object", "*light*"},
            {"cameras", "Camera Objects", "Object", "cam*"},
            {"sops", "Any Geometry Operator", "Sop", "*"},
        };
        for (const HostBundleFilter &f : builtin)
            m.emplace(f.getName(), f);
        return m;
    }();
    return filters;
}
} // namespace

HostBundleFilter::HostBundleFilter(const std::string &name, const std::string &label,
                                   const std::string &table, const std::string &types)
    : myName(name), myLabel(label), myTable(table), myTypes(types)
{
}

bool HostBundleFilter::accepts(const HostNode *node) const
{
    const HostOperator *op = node ? node->getOperator() : nullptr;
    if (!op)
        return false;
    if (!myTable.empty() && op->getTableName() != myTable)
        return false;
    return HostPatternMatch::matchMulti(op->getName(), myTypes);
}

const HostBundleFilter *HostBundleFilter::find(const std::string &name)
{
    auto it = registry().find(name);
    return it == registry().end() ? nullptr : &it->second;
}

void HostBundleFilter::add(const HostBundleFilter &filter)
{
    registry().erase(filter.getName());
    registry().emplace(filter.getName(), filter);
}

std::vector<const HostBundleFilter *> HostBundleFilter::all()
{
    std::vector<const HostBundleFilter *> out;
    for (const auto &entry : registry())
        out.push_back(&entry.second);
    return out;
}
