// GZ_EditScriptedParm: fields, construction from templates, menus, channel names, dump.
#include "scriptedit/GZ_EditScriptedParm.h"

#include "scriptedit/gz_CurrentLinks.h"
#include "scriptedit/gz_ParmIndex.h"
#include "scriptedit/gz_ScriptHost.h"

#include "host/HostChoiceList.h"
#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostParm.h"
#include "host/HostParmTemplate.h"
#include "host/HostSpareData.h"

#include <algorithm>
#include <cstdio>
#include <ostream>

namespace
{
std::string formatG(double value)
{
    char buf[64];
    std::snprintf(buf, sizeof(buf), "%g", value);
    return buf;
}
} // namespace

GZ_EditScriptedParm::GZ_EditScriptedParm()
{
    defaultInit();
}

GZ_EditScriptedParm::GZ_EditScriptedParm(GZ_EditScriptedParmFolderType folder_type)
{
    defaultInit();
    myFolderType = folder_type;
}

GZ_EditScriptedParm::GZ_EditScriptedParm(const GZ_EditScriptedParm &o)
    : myName(o.myName), myLabel(o.myLabel), myShowLabel(o.myShowLabel),
      mySpareClass(o.mySpareClass), mySpareCategory(o.mySpareCategory),
      myPropertyGroupId(o.myPropertyGroupId), myInvisible(o.myInvisible),
      myExportLevel(o.myExportLevel), mySize(o.mySize), myDefaults(o.myDefaults),
      myHasRange(o.myHasRange), myRangeMin(o.myRangeMin), myRangeMax(o.myRangeMax),
      myRangeMinStrict(o.myRangeMinStrict), myRangeMaxStrict(o.myRangeMaxStrict),
      myMenuSource(o.myMenuSource), myMenuStyle(o.myMenuStyle), myUseTokenValue(o.myUseTokenValue),
      myFolderType(o.myFolderType), myMenuScript(o.myMenuScript),
      myMenuScriptLanguage(o.myMenuScriptLanguage), myAutolinks(o.myAutolinks), myHelp(o.myHelp),
      myMenuItems(o.myMenuItems), myTags(o.myTags ? new HostSpareData(*o.myTags) : nullptr),
      myJoinNext(o.myJoinNext), myTabBreak(o.myTabBreak), myBaseParm(o.myBaseParm),
      myType(o.myType), myTypeIdx(o.myTypeIdx), myCachedTypeIdx(-1), myCachedSize(0)
{
    // As assignment: everything but the current links and the channel-name cache.
    std::copy(o.myDefaultMeanings, o.myDefaultMeanings + MAX_SIZE, myDefaultMeanings);
    std::copy(o.myAutolinkChanged, o.myAutolinkChanged + MAX_SIZE, myAutolinkChanged);
    std::copy(o.myConditions, o.myConditions + NUM_CONDITIONS, myConditions);
    std::copy(o.myTabConditions, o.myTabConditions + NUM_CONDITIONS, myTabConditions);
}

GZ_EditScriptedParm::~GZ_EditScriptedParm() = default;

void GZ_EditScriptedParm::markIndexStale()
{
    if (std::shared_ptr<gz_ParmIndex> index = myIndex.lock())
        index->markStale();
}

void GZ_EditScriptedParm::defaultInit()
{
    indexedFieldChanged();
    myName.clear();
    myLabel.clear();
    myShowLabel = 1;
    mySpareClass.clear();
    mySpareCategory.clear();
    myPropertyGroupId = -1;
    myInvisible = 0;
    myExportLevel = 0;
    mySize = 1;
    myDefaults.clear();
    myAutolinks.clear();
    myCurrentLinks.clear();
    for (int k = 0; k < MAX_SIZE; ++k)
    {
        myDefaultMeanings[k] = 0;
        myAutolinkChanged[k] = 0;
    }
    myHasRange = 0;
    myRangeMin = 0.0f;
    myRangeMax = 1.0f;
    myRangeMinStrict = false;
    myRangeMaxStrict = false;
    myMenuSource = 0;
    myMenuStyle = 0;
    myUseTokenValue = 0;
    myFolderType = GZ_FOLDER_NONE;
    myMenuScript.clear();
    myMenuScriptLanguage = 1;
    for (int i = 0; i < NUM_CONDITIONS; ++i)
    {
        myConditions[i].clear();
        myTabConditions[i].clear();
    }
    myHelp.clear();
    myMenuItems.clear();
    myTags.reset();
    myJoinNext = false;
    myTabBreak = false;
    myBaseParm = false;
    myType.clear();
    myTypeIdx = -2;
    clearCachedChannels();
}

GZ_EditScriptedParm &GZ_EditScriptedParm::operator=(const GZ_EditScriptedParm &o)
{
    if (this == &o)
        return *this;
    indexedFieldChanged();
    myName = o.myName;
    myLabel = o.myLabel;
    myShowLabel = o.myShowLabel;
    mySpareClass = o.mySpareClass;
    mySpareCategory = o.mySpareCategory;
    myPropertyGroupId = o.myPropertyGroupId;
    myInvisible = o.myInvisible;
    myExportLevel = o.myExportLevel;
    mySize = o.mySize;
    myDefaults = o.myDefaults;
    std::copy(o.myDefaultMeanings, o.myDefaultMeanings + MAX_SIZE, myDefaultMeanings);
    myHasRange = o.myHasRange;
    myRangeMin = o.myRangeMin;
    myRangeMax = o.myRangeMax;
    myRangeMinStrict = o.myRangeMinStrict;
    myRangeMaxStrict = o.myRangeMaxStrict;
    myMenuSource = o.myMenuSource;
    myMenuStyle = o.myMenuStyle;
    myUseTokenValue = o.myUseTokenValue;
    myFolderType = o.myFolderType;
    myMenuScript = o.myMenuScript;
    myMenuScriptLanguage = o.myMenuScriptLanguage;
    std::copy(o.myAutolinkChanged, o.myAutolinkChanged + MAX_SIZE, myAutolinkChanged);
    myAutolinks = o.myAutolinks;
    // The current links describe the node as it was read for this entry; a copy has none.
    std::copy(o.myConditions, o.myConditions + NUM_CONDITIONS, myConditions);
    std::copy(o.myTabConditions, o.myTabConditions + NUM_CONDITIONS, myTabConditions);
    myHelp = o.myHelp;
    myMenuItems = o.myMenuItems;
    myTags.reset(o.myTags ? new HostSpareData(*o.myTags) : nullptr);
    myJoinNext = o.myJoinNext;
    myTabBreak = o.myTabBreak;
    myBaseParm = o.myBaseParm;
    myType = o.myType;
    myTypeIdx = o.myTypeIdx;
    clearCachedChannels();
    return *this;
}

// ---------------------------------------------------------------------------------------------
// Construction from a host template.

GZ_EditScriptedParm::GZ_EditScriptedParm(const HostParmTemplate &tmpl, HostNode *node,
                                         bool read_autolinks)
{
    defaultInit();
    const HostParmType type = tmpl.getType();
    const int ext = tmpl.getTypeExtension();
    const char *label = getScriptType(type, ext, tmpl.getMultiType(), tmpl.getVectorSize());
    myType = label ? label : "";

    myInvisible = type.isInvisible() ? 1 : 0;
    if (type.isNoLabel() || ext == HostParmTemplate::EXT_LABEL_HIDDEN)
        myShowLabel = 0;
    myJoinNext = type.isJoinNext() || ext == HostParmTemplate::EXT_JOIN ||
                 ext == HostParmTemplate::EXT_JOIN_PAIR;

    myName = tmpl.getToken();
    myLabel = tmpl.getLabel();
    myHelp = tmpl.getHelp();
    if (tmpl.getTags())
        myTags.reset(new HostSpareData(*tmpl.getTags()));
    for (int i = 0; i < NUM_CONDITIONS; ++i)
        myConditions[i] = tmpl.getCondition(static_cast<HostParmCondition>(i));

    const int exp = tmpl.getExportLevel();
    myExportLevel = exp == HostParmTemplate::EXPORT_DIALOG ? 1
                    : exp == HostParmTemplate::EXPORT_ALL  ? 2
                                                           : 0;

    const int row = findParmTypeIdx(myType);
    if (row < 0)
    {
        mySize = 0;
        myHasRange = 0;
        myMenuSource = 0;
        myMenuStyle = 0;
        myUseTokenValue = 0;
        myTypeIdx = -1;
        return;
    }
    myTypeIdx = row;
    const GZ_ParmType &r = theParmTypes[row];
    mySize = std::min(tmpl.getVectorSize(), MAX_SIZE);
    const auto &second = tmpl.getSecondDefaults();
    for (int k = mySize - 1; k >= 0; --k)
    {
        const bool explicit_default = k < static_cast<int>(tmpl.getDefaults().size());
        HostParmDefault d;
        if (explicit_default)
            d = tmpl.getDefault(k);
        else if (k < static_cast<int>(second.size()))
            d = second[k];
        else
            d = HostParmDefault(std::string(r.defaultValue));
        myDefaults.set(k, !r.isString && d.myString.empty() ? formatG(d.myNumber) : d.myString);
        myDefaultMeanings[k] = static_cast<uint32_t>(d.myMeaning);
    }

    if (tmpl.hasRange())
        setRange(tmpl.getRange());
    else
    {
        myHasRange = 0;
        myRangeMin = r.rangeMin;
        myRangeMax = r.rangeMax;
    }
    initMenu(tmpl.getChoiceList(), ext);

    if (node && read_autolinks && ownsChannels())
    {
        setAutolinksToCurrentLinks(node, -1);
    }
}

void GZ_EditScriptedParm::initMenu(const HostChoiceList *list, int type_ext)
{
    myMenuItems.clear();
    myMenuScript.clear();
    const bool no_menu =
        myType == "Toggle" || !list || (list->isDynamic() && list->getScript().empty());
    if (no_menu)
    {
        myMenuSource = 0;
        myMenuStyle = 0;
        myUseTokenValue = 0;
        return;
    }
    if (list->getScript().empty())
    {
        myMenuSource = 1;
        for (const auto &item : list->items())
            myMenuItems.emplace_back(item.myToken, item.myLabel);
    }
    else
    {
        myMenuSource = 2;
        myMenuScript = list->getScript();
        myMenuScriptLanguage = list->getScriptLanguage();
    }
    if (type_ext == HostParmTemplate::EXT_MINI_MENU)
        myMenuStyle = 1;
    else if (type_ext == HostParmTemplate::EXT_JOIN_MENU)
        myMenuStyle = 2;
    else if (!list->isExclusive())
        myMenuStyle = list->isReplace() ? 3 : 4;
    else
        myMenuStyle = 0;
    myUseTokenValue = list->usesToken() ? 1 : 0;
}

// ---------------------------------------------------------------------------------------------
// Simple fields.

void GZ_EditScriptedParm::setSize(int32_t size)
{
    mySize = std::max(1, std::min(size, static_cast<int32_t>(MAX_SIZE)));
}

void GZ_EditScriptedParm::setRange(float lo, float hi, bool lo_strict, bool hi_strict)
{
    myHasRange = 1;
    myRangeMin = lo;
    myRangeMax = hi;
    myRangeMinStrict = lo_strict;
    myRangeMaxStrict = hi_strict;
}

void GZ_EditScriptedParm::setRange(const HostParmRange &range)
{
    setRange(static_cast<float>(range.myUIMin), static_cast<float>(range.myUIMax),
             range.myMinStrict, range.myMaxStrict);
}

void GZ_EditScriptedParm::setType(const std::string &label)
{
    myType = label;
    myTypeIdx = -2;
}

bool GZ_EditScriptedParm::ownsChannels() const
{
    return myFolderType == GZ_FOLDER_RADIO || getIsMultiParm() || myFolderType == GZ_FOLDER_NONE;
}

int GZ_EditScriptedParm::getParmTypeIdxForChannels() const
{
    if (!ownsChannels())
        return -1;
    if (myTypeIdx == -2)
        myTypeIdx = findParmTypeIdx(myType);
    return myTypeIdx;
}

const GZ_EditScriptedParm::GZ_ParmType *GZ_EditScriptedParm::getParmTypeRow() const
{
    if (myTypeIdx == -2)
        myTypeIdx = findParmTypeIdx(myType);
    return myTypeIdx >= 0 ? &theParmTypes[myTypeIdx] : nullptr;
}

bool GZ_EditScriptedParm::getIsColorParm() const
{
    return myType == "Color" || myType == "Color and Alpha";
}

bool GZ_EditScriptedParm::getIsFileParm() const
{
    return parmTypeUsesFileChooser(myType);
}

bool GZ_EditScriptedParm::getIsLabelParm() const
{
    return myType == "Label" || myType == "Label - Heading" || myType == "Label - Message";
}

// ---------------------------------------------------------------------------------------------
// Menu items.

const GZ_EditScriptedParmMenu *GZ_EditScriptedParm::getMenu(int i) const
{
    return i >= 0 && i < getNMenu() ? &myMenuItems[i] : nullptr;
}

void GZ_EditScriptedParm::addMenu(const std::string &token, const std::string &label)
{
    myMenuItems.emplace_back(token, label);
}

void GZ_EditScriptedParm::destroyMenu(int i)
{
    if (i >= 0 && i < getNMenu())
        myMenuItems.erase(myMenuItems.begin() + i);
}

void GZ_EditScriptedParm::moveMenu(int i)
{
    if (i > 0 && i < getNMenu())
        std::swap(myMenuItems[i], myMenuItems[i - 1]);
}

int GZ_EditScriptedParm::checkNullMenu()
{
    for (int i = getNMenu() - 1; i >= 0; --i)
        if (!myMenuItems[i].isValidChoice())
            return 0;
    myMenuItems.emplace_back();
    return 1;
}

// ---------------------------------------------------------------------------------------------
// Channel names.

namespace
{
std::vector<std::string> channelNamesFor(const std::string &name, int size, int row)
{
    std::vector<std::string> names;
    if (size <= 1)
    {
        names.push_back(name);
        return names;
    }
    const auto *r = row >= 0 ? &GZ_EditScriptedParm::theParmTypes[row] : nullptr;
    const bool angle = r && std::string(r->label) == "Angle";
    for (int k = 0; k < size; ++k)
    {
        if (angle && size == 2)
            names.push_back(std::string(k == 0 ? "begin" : "end") + name);
        else if (angle)
            names.push_back(name + std::to_string(k + 1));
        else if (r && r->componentNames[k])
            names.push_back(name + r->componentNames[k]);
        else
            names.push_back(name);
    }
    return names;
}
} // namespace

void GZ_EditScriptedParm::rebuildChannelCache() const
{
    const int row = getParmTypeIdxForChannels();
    if (myCachedTypeIdx == row && myCachedSize == mySize && myCachedName == myName &&
        !myChannelNames.empty())
        return;
    myChannelNames = channelNamesFor(myName, mySize, row);
    const std::string decoded = gz_ScriptHost::decodeVariableName(myName);
    if (decoded != myName)
        myDecodedChannelNames = channelNamesFor(decoded, mySize, row);
    else
        myDecodedChannelNames = myChannelNames;
    myCachedName = myName;
    myCachedTypeIdx = row;
    myCachedSize = mySize;
}

const std::vector<std::string> &GZ_EditScriptedParm::getChannelNames() const
{
    rebuildChannelCache();
    return myChannelNames;
}

std::vector<std::string> GZ_EditScriptedParm::getChannelNames(const std::string &name) const
{
    return channelNamesFor(name, mySize, getParmTypeIdxForChannels());
}

const std::vector<std::string> &GZ_EditScriptedParm::getDecodedChannelNames() const
{
    rebuildChannelCache();
    return myDecodedChannelNames;
}

std::string GZ_EditScriptedParm::findDecodedChannelName(const std::string &channel) const
{
    rebuildChannelCache();
    for (size_t i = 0; i < myChannelNames.size(); ++i)
        if (myChannelNames[i] == channel)
            return myDecodedChannelNames[i];
    return std::string();
}

std::string GZ_EditScriptedParm::findEncodedChannelName(const std::string &decoded) const
{
    rebuildChannelCache();
    for (size_t i = 0; i < myDecodedChannelNames.size(); ++i)
        if (myDecodedChannelNames[i] == decoded)
            return myChannelNames[i];
    return std::string();
}

void GZ_EditScriptedParm::clearCachedChannels() const
{
    myChannelNames.clear();
    myDecodedChannelNames.clear();
    myCachedName.clear();
    myCachedTypeIdx = -1;
    myCachedSize = 0;
}

// ---------------------------------------------------------------------------------------------
// Links and values from a node.

void GZ_EditScriptedParm::setAutolinksToCurrentLinks(HostNode *node, int k)
{
    if (!node)
        return;
    const auto &channels = getChannelNames();
    const int first = k < 0 ? 0 : k;
    const int last = k < 0 ? std::min<int>(mySize, MAX_SIZE) - 1 : k;
    for (int c = first; c <= last && c < MAX_SIZE; ++c)
    {
        if (c < static_cast<int>(channels.size()))
            myAutolinks.set(c, gz_CurrentLinks::read(*node, channels[c]));
        myAutolinkChanged[c] = 0;
    }
}

void GZ_EditScriptedParm::copyDefaultValuesFromParm(const HostParm &parm, int offset)
{
    offset = std::max(0, offset);
    const double now = parm.getNode() && parm.getNode()->getDirector()
                           ? parm.getNode()->getDirector()->getTime()
                           : 0.0;
    for (int k = 0; k < mySize && k + offset < parm.getVectorSize(); ++k)
    {
        const int c = k + offset;
        const HostStringMeaning meaning = parm.getStringMeaning(c);
        if (parm.hasExpression(c))
            myDefaults.set(k, parm.getExpression(c));
        else if (parm.getType().isString())
            myDefaults.set(k, meaning == HOST_STRING_LITERAL ? parm.evalString(c, now)
                                                             : parm.getString(c));
        else
            myDefaults.set(k, formatG(parm.evalFloat(c, now)));
        myDefaultMeanings[k] = static_cast<uint32_t>(meaning);
    }
    if (getIsRampParm())
        setRampDefaultFromParm(parm);
}

// ---------------------------------------------------------------------------------------------
// dump.

void GZ_EditScriptedParm::dump(std::ostream &os) const
{
    char buf[512];
    std::snprintf(buf, sizeof(buf), "Parm: %s[%d] (%s)\n", myName.c_str(), mySize, myLabel.c_str());
    os << buf;
    std::string first;
    if (myInvisible)
        first += "invisible ";
    if (!myShowLabel)
        first += "nolabel ";
    if (myJoinNext)
        first += "joinnext ";
    if (myTabBreak)
        first += "tabbreak ";
    if (!myHelp.empty())
        first += "has_help ";
    if (!myConditions[0].empty())
        first += "disable ";
    if (!myConditions[1].empty())
        first += "hide ";
    if (!myConditions[2].empty())
        first += "nocook ";
    if (myMenuSource != 0 || myType == "Ordered Menu")
        first += "menu ";
    if (myHasRange)
        first += "range ";
    if (!first.empty())
        os << "\tAttribs: " << first << "\n";
    std::string second;
    if (getOpFilter())
        second += "opfilter ";
    if (getRManType())
        second += "rman ";
    if (getImportSource())
        second += "importsrc ";
    if (getImportToken())
        second += "importtok ";
    if (getImportMask())
        second += "importmask ";
    if (getImportEnable())
        second += "importenable ";
    if (getExportDisable())
        second += "!export ";
    if (getIsGroupStart())
        second += "groupstart ";
    if (getIsGroupEnd())
        second += "groupend ";
    if (getIsMultiParm())
        second += "multiparm ";
    if (!second.empty())
        os << "\tAttribs: " << second << "\n";
}
