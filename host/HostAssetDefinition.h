// HostAssetDefinition: one operator type's definition as an operator-type library file holds it.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

/// A definition in a library file: the qualified operator name ("Sop/nudge"), its label and
/// input counts, and named sections of any bytes ("DialogScript" holds the type's script).
/// Sections keep the order in which they were first added.
class HostAssetDefinition
{
public:
    using Section = std::pair<std::string, std::string>;

    HostAssetDefinition() = default;
    HostAssetDefinition(const std::string &name, const std::string &label, int min_inputs,
                        int max_inputs)
        : myName(name), myLabel(label), myMinInputs(min_inputs), myMaxInputs(max_inputs)
    {
    }

    const std::string &getName() const { return myName; }
    const std::string &getLabel() const { return myLabel; }
    int getMinInputs() const { return myMinInputs; }
    int getMaxInputs() const { return myMaxInputs; }
    const std::vector<Section> &getSections() const { return mySections; }

    /// The bytes of the section `name`, or null.
    const std::string *findSection(const std::string &name) const
    {
        for (const Section &section : mySections)
            if (section.first == name)
                return &section.second;
        return nullptr;
    }
    /// Adds the section, or replaces the bytes of the one of that name.
    void setSection(const std::string &name, const std::string &bytes)
    {
        for (Section &section : mySections)
            if (section.first == name)
            {
                section.second = bytes;
                return;
            }
        mySections.emplace_back(name, bytes);
    }

    /// Where a definition read from a file stood in it: the line of its "definition" line
    /// and the first line of each section's bytes (0 when made in memory or unknown). They
    /// let a checker name lines of the file; they are no part of the definition itself.
    int getLine() const { return myLine; }
    void setLine(int line) { myLine = line; }
    int getSectionLine(const std::string &name) const
    {
        const auto found = mySectionLines.find(name);
        return found == mySectionLines.end() ? 0 : found->second;
    }
    void setSectionLine(const std::string &name, int line) { mySectionLines[name] = line; }

    bool operator==(const HostAssetDefinition &other) const
    {
        return myName == other.myName && myLabel == other.myLabel &&
               myMinInputs == other.myMinInputs && myMaxInputs == other.myMaxInputs &&
               mySections == other.mySections;
    }

private:
    std::string myName;
    std::string myLabel;
    int myMinInputs = 0;
    int myMaxInputs = 0;
    std::vector<Section> mySections;
    int myLine = 0;
    std::map<std::string, int> mySectionLines;
};
