// HostSpareData: the name-value tags of a parameter template.
#pragma once

#include <map>
#include <string>

/// A set of string tags (name to value) carried by a parameter template. Tags hold options
/// that have no field of their own (callbacks, file-chooser modes, folder styles, ...).
/// Iteration is in name order, so anything written from tags is deterministic.
class HostSpareData
{
public:
    // Tag names with a fixed role in the host.
    static constexpr const char *CALLBACK_TAG = "script_callback";
    static constexpr const char *CALLBACK_LANGUAGE_TAG = "script_callback_language";
    static constexpr const char *MULTI_START_OFFSET_TAG = "multistartoffset";
    static constexpr const char *GROUP_TYPE_TAG = "group_type";
    static constexpr const char *COLLAPSIBLE_GROUP = "collapsible";
    static constexpr const char *SIMPLE_GROUP = "simple";

    HostSpareData() = default;

    /// The value of a tag, or null when the tag is missing.
    const char *getValue(const std::string &name) const;
    bool has(const std::string &name) const { return myTags.count(name) != 0; }
    void set(const std::string &name, const std::string &value) { myTags[name] = value; }
    /// Removes a tag; returns whether it was there.
    bool remove(const std::string &name) { return myTags.erase(name) != 0; }
    void clear() { myTags.clear(); }
    bool empty() const { return myTags.empty(); }
    int size() const { return static_cast<int>(myTags.size()); }

    /// Copies every tag of `other` into this set, replacing tags of the same name.
    void merge(const HostSpareData &other);

    const std::map<std::string, std::string> &tags() const { return myTags; }

    bool operator==(const HostSpareData &o) const { return myTags == o.myTags; }
    bool operator!=(const HostSpareData &o) const { return !(*this == o); }

private:
    std::map<std::string, std::string> myTags;
};
