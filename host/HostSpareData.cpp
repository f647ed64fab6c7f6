// HostSpareData: tag lookup and merging.
#include "host/HostSpareData.h"

const char *HostSpareData::getValue(const std::string &name) const
{
    auto it = myTags.find(name);
    return it == myTags.end() ? nullptr : it->second.c_str();
}

void HostSpareData::merge(const HostSpareData &other)
{
    for (const auto &tag : other.myTags)
        myTags[tag.first] = tag.second;
}

bool HostSpareData::isSwitcherLevelTag(const std::string &name)
{
    return name == CALLBACK_TAG || name == CALLBACK_LANGUAGE_TAG || name == DEFAULT_FOLDER_TAG ||
           name == HEADER_TOGGLE_TAG || name == HEADER_PARM_TAG;
}

std::string HostSpareData::folderTagName(const std::string &name, int folder)
{
    return name + ':' + std::to_string(folder);
}

namespace
{
// The folder index of a "NAME:k" tag, or -1 for a tag without such a suffix.
int folderSuffix(const std::string &name, std::string &base)
{
    const std::size_t colon = name.rfind(':');
    if (colon == std::string::npos || colon + 1 == name.size() || colon == 0)
        return -1;
    int folder = 0;
    for (std::size_t i = colon + 1; i < name.size(); ++i)
    {
        if (name[i] < '0' || name[i] > '9' || folder > 100000)
            return -1;
        folder = folder * 10 + (name[i] - '0');
    }
    base = name.substr(0, colon);
    return folder;
}
} // namespace

int HostSpareData::extractFolderTags(const HostSpareData &switcher_tags, int folder,
                                     HostSpareData &out)
{
    int count = 0;
    for (const auto &tag : switcher_tags.myTags)
    {
        std::string base;
        const int k = folderSuffix(tag.first, base);
        if (k < 0)
            base = tag.first;
        if (k != folder && !(k < 0 && folder == 0))
            continue;
        if (base == GROUP_TYPE_TAG || base == FOLDER_HIDDEN_TAG)
            continue;
        // Name order puts "NAME" before "NAME:k", so a folder's own tag wins.
        out.set(base, tag.second);
        ++count;
    }
    return count;
}
