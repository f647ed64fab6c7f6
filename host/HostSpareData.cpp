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
