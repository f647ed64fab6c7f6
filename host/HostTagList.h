// HostTagList: a set of words that classifies something (a class of spare properties).
#pragma once

#include <set>
#include <string>

/// Tags written as words separated by blanks or commas ("render shading"). A tag is a letter,
/// digit, "_", "-" or "." run; anything else is an error of the text. Created by the tag
/// manager and shared; never changed after creation.
class HostTagList
{
public:
    /// Parses `text`; the problems found (one line each) go to `errors`, and the valid tags
    /// are kept.
    HostTagList(const std::string &text, std::string &errors);
    HostTagList() = default;

    bool has(const std::string &tag) const { return myTags.count(tag) != 0; }
    bool empty() const { return myTags.empty(); }
    const std::set<std::string> &tags() const { return myTags; }

    static bool isTagChar(char c);

private:
    std::set<std::string> myTags;
};
