// gz_OpSelectorEntry: the selectors bound to one operator type.
#pragma once

#include "resource/GZ_BindingSelectorInfo.h"

#include <string>
#include <unordered_map>
#include <vector>

/// The selector bindings of one operator key, in order of binding, indexed by description
/// (a description identifies a selector binding within its operator type).
class gz_OpSelectorEntry
{
public:
    const std::vector<GZ_BindingSelectorInfo> &selectors() const { return mySelectors; }
    bool empty() const { return mySelectors.empty(); }

    /// Overwrites the binding of the same description, or appends a new one.
    void bind(GZ_BindingSelectorInfo selector);
    /// Removes the bindings of that description, or all of them for null.
    void unbind(const char *description);

private:
    std::vector<GZ_BindingSelectorInfo> mySelectors;
    std::unordered_map<std::string, int> myIndex;
};
