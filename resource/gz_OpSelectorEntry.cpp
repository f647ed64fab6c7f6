// gz_OpSelectorEntry: the selectors bound to one operator type.
#include "resource/gz_OpSelectorEntry.h"

#include <algorithm>

void gz_OpSelectorEntry::bind(GZ_BindingSelectorInfo selector)
{
    auto it = myIndex.find(selector.getDescription());
    if (it != myIndex.end())
    {
        mySelectors[it->second] = std::move(selector);
        return;
    }
    myIndex.emplace(selector.getDescription(), static_cast<int>(mySelectors.size()));
    mySelectors.push_back(std::move(selector));
}

void gz_OpSelectorEntry::unbind(const char *description)
{
    if (!description)
    {
        mySelectors.clear();
        myIndex.clear();
        return;
    }
    auto it = myIndex.find(description);
    if (it == myIndex.end())
        return;
    // Descriptions are unique here, since bind replaces an equal one.
    const int removed = it->second;
    myIndex.erase(it);
    mySelectors.erase(mySelectors.begin() + removed);
    for (auto &entry : myIndex)
    {
        if (entry.second > removed)
            --entry.second;
    }
}
