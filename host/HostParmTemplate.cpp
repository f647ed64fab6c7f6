// HostParmTemplate: channel naming, defaults, folders, children and template lists.
#include "host/HostParmTemplate.h"

#include <cstdlib>

namespace
{
const std::string theEmpty;
const HostParmDefault theNoDefault;

template <class T> bool samePointee(const std::unique_ptr<T> &a, const std::unique_ptr<T> &b)
{
    if (!a || !b)
        return !a && !b;
    return *a == *b;
}

template <class T> std::unique_ptr<T> clonePointee(const std::unique_ptr<T> &p)
{
    return p ? std::make_unique<T>(*p) : nullptr;
}
} // namespace

bool HostParmRange::operator==(const HostParmRange &o) const
{
    return myMin == o.myMin && myMax == o.myMax && myMinStrict == o.myMinStrict &&
           myMaxStrict == o.myMaxStrict && myUIMin == o.myUIMin && myUIMax == o.myUIMax;
}

HostParmTemplate::HostParmTemplate(HostParmType type, const std::string &name,
                                   const std::string &label, int vector_size)
    : myType(type), myName(name), myLabel(label)
{
    myVectorSize = type.isNone() ? 0 : (vector_size < 1 ? 1 : vector_size);
    rebuildChannelNames();
}

HostParmTemplate::HostParmTemplate(const HostParmTemplate &other)
    : myType(other.myType), myName(other.myName), myLabel(other.myLabel),
      myVectorSize(other.myVectorSize), myTypeExtension(other.myTypeExtension),
      myMultiType(other.myMultiType), myChannelNames(other.myChannelNames),
      myDefaults(other.myDefaults), mySecondDefaults(other.mySecondDefaults),
      myRange(other.myRange), myHasRange(other.myHasRange),
      myChoiceList(clonePointee(other.myChoiceList)), myTags(clonePointee(other.myTags)),
      myTabConditions(other.myTabConditions), myHelp(other.myHelp),
      myExportLevel(other.myExportLevel), myCallback(other.myCallback),
      myBaseParm(other.myBaseParm), myCooks(other.myCooks), myNoResim(other.myNoResim),
      myChildren(other.myChildren)
{
    for (int i = 0; i < HOST_NUM_CONDITIONS; ++i)
        myConditions[i] = other.myConditions[i];
}

HostParmTemplate &HostParmTemplate::operator=(const HostParmTemplate &other)
{
    if (this != &other)
    {
        HostParmTemplate copy(other);
        *this = std::move(copy);
    }
    return *this;
}

HostParmTemplate::~HostParmTemplate() = default;

void HostParmTemplate::setName(const std::string &name)
{
    myName = name;
    rebuildChannelNames();
}

void HostParmTemplate::setType(HostParmType type)
{
    myType = type;
    if (type.isNone())
        myVectorSize = 0;
    else if (myVectorSize < 1)
        myVectorSize = 1;
    rebuildChannelNames();
}

void HostParmTemplate::setVectorSize(int size)
{
    if (myType.isNone())
        return;
    myVectorSize = size < 1 ? 1 : size;
    rebuildChannelNames();
}

std::string HostParmTemplate::makeChannelName(HostParmType type, const std::string &name, int size,
                                              int k)
{
    if (size <= 1)
        return name;
    static const char *const xyzw[] = {"x", "y", "z", "w"};
    static const char *const uvw[] = {"u", "v", "w"};
    static const char *const rgba[] = {"r", "g", "b", "a"};
    static const char *const minmax[] = {"min", "max"};
    static const char *const beginend[] = {"begin", "end"};
    if (type.namesXYZW() && k < 4)
        return name + xyzw[k];
    if (type.namesUVW() && k < 3)
        return name + uvw[k];
    if (type.namesRGBA() && k < 4)
        return name + rgba[k];
    if (type.namesMinMax() && k < 2)
        return name + minmax[k];
    if (type.namesBeginEnd() && k < 2)
        return beginend[k] + name;
    return name + std::to_string(k + 1);
}

void HostParmTemplate::rebuildChannelNames()
{
    myChannelNames.clear();
    if (myType.isNone())
        return;
    if (myType.isSwitcher() || myType.isMultiparm())
    {
        myChannelNames.push_back(myName);
        return;
    }
    for (int k = 0; k < myVectorSize; ++k)
        myChannelNames.push_back(makeChannelName(myType, myName, myVectorSize, k));
}

const std::string &HostParmTemplate::getChannelName(int k) const
{
    return (k >= 0 && k < getNumChannels()) ? myChannelNames[k] : theEmpty;
}

int HostParmTemplate::findChannel(const std::string &channel) const
{
    for (int k = 0; k < getNumChannels(); ++k)
        if (myChannelNames[k] == channel)
            return k;
    return -1;
}

const HostParmDefault &HostParmTemplate::getDefault(int k) const
{
    return (k >= 0 && k < static_cast<int>(myDefaults.size())) ? myDefaults[k] : theNoDefault;
}

void HostParmTemplate::setDefault(int k, const HostParmDefault &value)
{
    if (k < 0)
        return;
    if (k >= static_cast<int>(myDefaults.size()))
        myDefaults.resize(k + 1);
    myDefaults[k] = value;
}

void HostParmTemplate::setDefaults(const std::vector<HostParmDefault> &values)
{
    myDefaults = values;
}

void HostParmTemplate::setRange(const HostParmRange &range)
{
    myRange = range;
    myHasRange = true;
}

void HostParmTemplate::setChoiceList(const HostChoiceList *list)
{
    myChoiceList = list ? std::make_unique<HostChoiceList>(*list) : nullptr;
}

HostSpareData &HostParmTemplate::tags()
{
    if (!myTags)
        myTags = std::make_unique<HostSpareData>();
    return *myTags;
}

void HostParmTemplate::setTags(const HostSpareData *tags)
{
    myTags = tags ? std::make_unique<HostSpareData>(*tags) : nullptr;
}

const char *HostParmTemplate::getTag(const std::string &name) const
{
    return myTags ? myTags->getValue(name) : nullptr;
}

const std::string &HostParmTemplate::getCondition(HostParmCondition which) const
{
    return (which >= 0 && which < HOST_NUM_CONDITIONS) ? myConditions[which] : theEmpty;
}

void HostParmTemplate::setCondition(HostParmCondition which, const std::string &text)
{
    if (which >= 0 && which < HOST_NUM_CONDITIONS)
        myConditions[which] = text;
}

const std::string &HostParmTemplate::getTabCondition(int folder, HostParmCondition which) const
{
    if (folder < 0 || folder >= static_cast<int>(myTabConditions.size()) || which < 0 ||
        which >= HOST_NUM_CONDITIONS)
        return theEmpty;
    return myTabConditions[folder][which];
}

void HostParmTemplate::setTabCondition(int folder, HostParmCondition which, const std::string &text)
{
    if (folder < 0 || which < 0 || which >= HOST_NUM_CONDITIONS)
        return;
    if (folder >= static_cast<int>(myTabConditions.size()))
        myTabConditions.resize(folder + 1, std::vector<std::string>(HOST_NUM_CONDITIONS));
    myTabConditions[folder][which] = text;
}

int HostParmTemplate::getFolderParmCount(int folder) const
{
    if (folder < 0 || folder >= getFolderCount())
        return 0;
    return static_cast<int>(getDefault(folder).myNumber);
}

const std::string &HostParmTemplate::getFolderLabel(int folder) const
{
    if (folder < 0 || folder >= getFolderCount())
        return theEmpty;
    return getDefault(folder).myString;
}

void HostParmTemplate::addFolder(const std::string &label, int count)
{
    if (!myType.isSwitcher())
        return;
    // A switcher made without folders still reports size 1; its first folder replaces that.
    int index = myDefaults.empty() ? 0 : myVectorSize;
    HostParmDefault folder(label);
    folder.myNumber = count;
    setDefault(index, folder);
    myVectorSize = index + 1;
}

int HostParmTemplate::getNumChildren() const
{
    return myChildren.empty() ? 0 : static_cast<int>(myChildren.size()) - 1;
}

void HostParmTemplate::addChild(const HostParmTemplate &child)
{
    if (myChildren.empty())
        myChildren.emplace_back();
    myChildren.insert(myChildren.end() - 1, child);
}

const HostParmTemplate *HostParmTemplate::getChildList() const
{
    return myChildren.empty() ? nullptr : myChildren.data();
}

int HostParmTemplate::getMultiStartOffset() const
{
    const char *offset = getTag(HostSpareData::MULTI_START_OFFSET_TAG);
    return offset ? std::atoi(offset) : 1;
}

bool HostParmTemplate::operator==(const HostParmTemplate &o) const
{
    for (int i = 0; i < HOST_NUM_CONDITIONS; ++i)
        if (myConditions[i] != o.myConditions[i])
            return false;
    return myType == o.myType && myName == o.myName && myLabel == o.myLabel &&
           myVectorSize == o.myVectorSize && myTypeExtension == o.myTypeExtension &&
           myMultiType == o.myMultiType && myDefaults == o.myDefaults &&
           mySecondDefaults == o.mySecondDefaults && myHasRange == o.myHasRange &&
           (!myHasRange || myRange == o.myRange) && samePointee(myChoiceList, o.myChoiceList) &&
           samePointee(myTags, o.myTags) && myTabConditions == o.myTabConditions &&
           myHelp == o.myHelp && myExportLevel == o.myExportLevel && myCallback == o.myCallback &&
           myBaseParm == o.myBaseParm && myCooks == o.myCooks && myNoResim == o.myNoResim &&
           myChildren == o.myChildren;
}

HostParmTemplateList::HostParmTemplateList(std::initializer_list<HostParmTemplate> list)
    : myTemplates(list)
{
    myTemplates.emplace_back();
}

HostParmTemplateList::HostParmTemplateList(const std::vector<HostParmTemplate> &list)
    : myTemplates(list)
{
    myTemplates.emplace_back();
}

HostParmTemplateList::HostParmTemplateList(const HostParmTemplate *terminated)
{
    for (const HostParmTemplate *t = terminated; t && !t->isTerminator(); ++t)
        myTemplates.push_back(*t);
    myTemplates.emplace_back();
}

void HostParmTemplateList::append(const HostParmTemplate &t)
{
    myTemplates.insert(myTemplates.end() - 1, t);
}

void HostParmTemplateList::insert(int index, const HostParmTemplate &t)
{
    if (index < 0 || index > size())
        index = size();
    myTemplates.insert(myTemplates.begin() + index, t);
}

void HostParmTemplateList::remove(int index)
{
    if (index >= 0 && index < size())
        myTemplates.erase(myTemplates.begin() + index);
}

int HostParmTemplateList::find(const std::string &name) const
{
    for (int i = 0; i < size(); ++i)
        if (myTemplates[i].getToken() == name)
            return i;
    return -1;
}
