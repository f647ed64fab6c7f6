// gz_TextSlots: a fixed number of text slots that only take room for the ones in use.
#pragma once

#include <string>
#include <vector>

/// Per-component texts of a definition (defaults, links): sixteen slots, most of them empty.
/// Storing only up to the last slot in use keeps a definition small, which matters when
/// interfaces of thousands of parameters are copied and merged.
class gz_TextSlots
{
public:
    const std::string &get(int k) const
    {
        static const std::string theEmpty;
        return k >= 0 && k < static_cast<int>(mySlots.size()) ? mySlots[k] : theEmpty;
    }
    void set(int k, const std::string &text)
    {
        if (k < 0 || (text.empty() && k >= static_cast<int>(mySlots.size())))
            return;
        if (k >= static_cast<int>(mySlots.size()))
            mySlots.resize(static_cast<size_t>(k) + 1);
        mySlots[k] = text;
    }
    void clear() { mySlots.clear(); }

private:
    std::vector<std::string> mySlots;
};
