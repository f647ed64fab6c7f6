// gz_SharedBindings: one stored copy of each distinct binding list.
#pragma once

#include <memory>
#include <string>
#include <vector>

/// A pool of binding lists (one string per handle parameter) that nobody changes any more.
/// A scene of many handles of one type, bound the same way, would otherwise keep two lists
/// of mostly empty strings per handle (the operator-type entry and the attached node's
/// copy), several kilobytes each; pooled, every handle points at the one list.
///
/// A pooled list is never changed: a link that wants to change one copies it first (it can
/// tell, because a list it holds alone has a use count of 1 and a pooled one is held by the
/// pool too). Lists that only the pool still holds are dropped when the pool has doubled
/// since the last sweep, so the pool stays proportional to the lists in use.
class gz_SharedBindings
{
public:
    using StringArray = std::vector<std::string>;
    using Shared = std::shared_ptr<const StringArray>;

    /// The pooled list equal to `names`; `names` itself joins the pool when none is.
    static Shared intern(Shared names);
    /// Lists in the pool, for tests.
    static std::size_t size();
};
