// HostBundleFilter: named filters that accept or refuse nodes (by operator table and type).
#pragma once

#include <string>
#include <vector>

class HostNode;

/// A named node filter with a label, such as "objects" ("Any Object"). A filter accepts a node
/// when the node's operator table is the filter's table (any table when empty) and the
/// operator's name matches one of the filter's type patterns (HostPatternMatch multi-pattern;
/// "*" for all). Filters live in a process-wide registry; the built-in ones exist from the
/// start and more may be added.
class HostBundleFilter
{
public:
    HostBundleFilter(const std::string &name, const std::string &label, const std::string &table,
                     const std::string &types);

    const std::string &getName() const { return myName; }
    const std::string &getLabel() const { return myLabel; }
    /// Whether the node passes (false for null).
    bool accepts(const HostNode *node) const;

    /// The filter of that name, or null.
    static const HostBundleFilter *find(const std::string &name);
    /// Adds (or replaces) a filter.
    static void add(const HostBundleFilter &filter);
    /// All filters, in name order.
    static std::vector<const HostBundleFilter *> all();

private:
    std::string myName;
    std::string myLabel;
    std::string myTable;
    std::string myTypes;
};
