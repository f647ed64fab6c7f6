// GZ_EditScriptedParms: the list, its structure rules, lookups and editing.
#include "scriptedit/GZ_EditScriptedParms.h"
#include "scriptedit/gz_LinkPaths.h"

#include "scriptedit/gz_SafeNameContext.h"

#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostParm.h"

#include <algorithm>
#include <cstdio>
#include <ostream>

GZ_EditScriptedParms::GZ_EditScriptedParms() = default;
GZ_EditScriptedParms::~GZ_EditScriptedParms() = default;

GZ_EditScriptedParms::GZ_EditScriptedParms(const GZ_EditScriptedParms &other)
{
    *this = other;
}

GZ_EditScriptedParms &GZ_EditScriptedParms::operator=(const GZ_EditScriptedParms &other)
{
    if (this == &other)
        return *this;
    myParms.clear();
    myParms.reserve(other.myParms.size());
    for (const auto &p : other.myParms)
        myParms.push_back(std::make_unique<GZ_EditScriptedParm>(*p));
    myReservedNames = other.myReservedNames;
    myOperator = other.myOperator;
    myNodeId = other.myNodeId;
    myCheckReservedOnly = other.myCheckReservedOnly;
    myFlag = other.myFlag;
    return *this;
}

// ---------------------------------------------------------------------------------------------
// Lookup.

GZ_EditScriptedParm *GZ_EditScriptedParms::getParm(int i) const
{
    return i >= 0 && i < entries() ? myParms[i].get() : nullptr;
}

int GZ_EditScriptedParms::getParmIndex(const GZ_EditScriptedParm *parm) const
{
    return findEntry([parm](const GZ_EditScriptedParm &p) { return &p == parm; },
                     /*openers_only=*/false);
}

GZ_EditScriptedParm *GZ_EditScriptedParms::getParmWithName(const std::string &name) const
{
    return getParm(getParmIndexWithName(name));
}

int GZ_EditScriptedParms::getParmIndexWithName(const std::string &name) const
{
    return findNamedEntry(name, /*openers_only=*/false);
}

GZ_EditScriptedParm *GZ_EditScriptedParms::getFolderWithName(const std::string &name) const
{
    return getParm(getFolderIndexWithName(name));
}

int GZ_EditScriptedParms::getFolderIndexWithName(const std::string &name) const
{
    return findNamedEntry(name, /*openers_only=*/true);
}

int GZ_EditScriptedParms::findNamedEntry(const std::string &name, bool openers_only) const
{
    // An empty name would match every unnamed folder; it names nothing.
    if (name.empty() || (myParms.indexIsFresh() && !myParms.index().hasName(name)))
        return -1;
    return findEntry([&name](const GZ_EditScriptedParm &p) { return p.getName() == name; },
                     openers_only);
}

GZ_EditScriptedParm *GZ_EditScriptedParms::getFolderWithLabel(const std::string &label) const
{
    return getParm(getFolderIndexWithLabel(label));
}

int GZ_EditScriptedParms::getFolderIndexWithLabel(const std::string &label) const
{
    if (myParms.indexIsFresh())
    {
        const std::vector<int> &openers = myParms.index().openersWithLabel(label);
        return openers.empty() ? -1 : openers.front();
    }
    return findEntry([&label](const GZ_EditScriptedParm &p) { return p.getLabel() == label; },
                     /*openers_only=*/true);
}

bool GZ_EditScriptedParms::hasParmWithName(const std::string &name) const
{
    return myParms.index().hasName(name);
}

const std::vector<int> &
GZ_EditScriptedParms::getOpenerIndicesWithLabel(const std::string &label) const
{
    return myParms.index().openersWithLabel(label);
}

int GZ_EditScriptedParms::getFirstNestedFolderIndex(int i) const
{
    const GZ_EditScriptedParm *p = getParm(i);
    if (!p || !p->getIsGroupStart())
        return -1;
    const gz_ParmIndex &index = myParms.index();
    const int end = index.match(i);
    return index.firstFolderBetween(i, end < 0 ? entries() : end);
}

int GZ_EditScriptedParms::getFolderRunEnd(int i) const
{
    return myParms.index().folderRunEnd(i, entries());
}

int GZ_EditScriptedParms::findEntry(const std::function<bool(const GZ_EditScriptedParm &)> &match,
                                    bool openers_only) const
{
    for (int i = 0; i < entries(); ++i)
        if ((!openers_only || myParms[i]->getIsGroupStart()) && match(*myParms[i]))
            return i;
    return -1;
}

int GZ_EditScriptedParms::getNestedFolderIndex(const std::vector<std::string> &labels) const
{
    if (labels.empty())
        return -1;
    // Walk the list once, following the path: at each level only openers directly inside
    // the folder found for the previous label count.
    int level = 0;
    int depth = 0;
    for (int i = 0; i < entries(); ++i)
    {
        const GZ_EditScriptedParm &p = *myParms[i];
        if (p.getIsGroupEnd())
        {
            if (--depth < level)
                return -1;
            continue;
        }
        if (!p.getIsGroupStart())
            continue;
        if (depth == level && p.getLabel() == labels[level])
        {
            if (++level == static_cast<int>(labels.size()))
                return i;
        }
        ++depth;
    }
    return -1;
}

namespace
{
using gz_LinkPaths::absolutePath;

bool linksHold(const std::string &links, const std::string &wanted, const std::string &base)
{
    for (const std::string &link : gz_LinkPaths::split(links))
        if (absolutePath(link, base) == wanted)
            return true;
    return false;
}
} // namespace

GZ_EditScriptedParm *GZ_EditScriptedParms::getParmWithAutolink(const std::string &link,
                                                               const std::string &base,
                                                               int &component) const
{
    component = -1;
    const std::string wanted = absolutePath(link, base);
    for (int i = entries() - 1; i >= 0; --i)
        for (int k = GZ_EditScriptedParm::MAX_SIZE - 1; k >= 0; --k)
            if (linksHold(myParms[i]->getAutolink(k), wanted, base))
            {
                component = k;
                return myParms[i].get();
            }
    return nullptr;
}

const GZ_EditScriptedParmMenu *GZ_EditScriptedParms::getMenu(int i, int item) const
{
    const GZ_EditScriptedParm *p = getParm(i);
    return p ? p->getMenu(item) : nullptr;
}

int GZ_EditScriptedParms::getNMenu(int i) const
{
    const GZ_EditScriptedParm *p = getParm(i);
    return p ? p->getNMenu() : 0;
}

const char *GZ_EditScriptedParms::getMenuScript(int i) const
{
    const GZ_EditScriptedParm *p = getParm(i);
    return p ? p->getMenuScript().c_str() : nullptr;
}

HostNode *GZ_EditScriptedParms::getNode() const
{
    if (myNodeId < 0)
        return nullptr;
    return HostDirector::instance()->findNodeById(myNodeId);
}

// ---------------------------------------------------------------------------------------------
// Structure.

std::vector<int> GZ_EditScriptedParms::computeMatches() const
{
    std::vector<int> match(myParms.size(), -1);
    std::vector<int> open;
    for (int i = 0; i < entries(); ++i)
    {
        const GZ_EditScriptedParm &p = *myParms[i];
        if (p.getIsGroupStart())
            open.push_back(i);
        else if (p.getIsGroupEnd() && !open.empty())
        {
            match[i] = open.back();
            match[open.back()] = i;
            open.pop_back();
        }
    }
    return match;
}

int GZ_EditScriptedParms::getMatchingGroupParm(int i) const
{
    const GZ_EditScriptedParm *p = getParm(i);
    if (!p || !p->getIsGroupParm())
        return -1;
    // The index is used only as it stands: rebuilding it here would make loops that edit
    // and then look up quadratic.
    if (myParms.indexIsFresh())
        return myParms.index().match(i);
    int nest = 0;
    if (p->getIsGroupStart())
    {
        for (int j = i + 1; j < entries(); ++j)
        {
            if (myParms[j]->getIsGroupStart())
                ++nest;
            else if (myParms[j]->getIsGroupEnd() && nest-- == 0)
                return j;
        }
        return -1;
    }
    for (int j = i - 1; j >= 0; --j)
    {
        if (myParms[j]->getIsGroupEnd())
            ++nest;
        else if (myParms[j]->getIsGroupStart() && nest-- == 0)
            return j;
    }
    return -1;
}

int GZ_EditScriptedParms::getParentGroupParm(int i) const
{
    const GZ_EditScriptedParm *p = getParm(i);
    if (!p)
        return -1;
    if (p->getIsGroupEnd())
    {
        i = getMatchingGroupParm(i);
        if (i < 0)
            return -1;
    }
    int nest = 0;
    for (int j = i - 1; j >= 0; --j)
    {
        if (myParms[j]->getIsGroupEnd())
            ++nest;
        else if (myParms[j]->getIsGroupStart() && nest-- == 0)
            return j;
    }
    return -1;
}

void GZ_EditScriptedParms::getContainingFolders(int i, std::vector<int> &openers) const
{
    openers.clear();
    for (int j = getParentGroupParm(i); j >= 0; j = getParentGroupParm(j))
        openers.push_back(j);
}

int GZ_EditScriptedParms::getMultiParmInstanceLevel(int i) const
{
    std::vector<int> openers;
    getContainingFolders(i, openers);
    int level = 0;
    for (int j : openers)
        if (myParms[j]->getIsMultiParm())
            ++level;
    return level;
}

bool GZ_EditScriptedParms::getIsFirstPage(int i) const
{
    const GZ_EditScriptedParm *p = getParm(i);
    if (!p || (p->getFolderType() != GZ_FOLDER_TABS && p->getFolderType() != GZ_FOLDER_RADIO))
        return false;
    if (i == 0 || !myParms[i - 1]->getIsGroupEnd())
        return true;
    const GZ_EditScriptedParm *sibling = getParm(getMatchingGroupParm(i - 1));
    return !sibling || sibling->getFolderType() != p->getFolderType() || sibling->getTabBreak();
}

// ---------------------------------------------------------------------------------------------
// Editing.

void GZ_EditScriptedParms::addParm(GZ_EditScriptedParm *parm)
{
    myParms.emplace_back(parm);
}

void GZ_EditScriptedParms::addParm(std::unique_ptr<GZ_EditScriptedParm> parm)
{
    myParms.push_back(std::move(parm));
}

void GZ_EditScriptedParms::mergeParms(const GZ_EditScriptedParms &other, bool always_safe)
{
    const bool make_unique = always_safe || !myParms.empty();
    gz_SafeNameContext ctx(*this, make_unique, other.entries());
    myParms.reserve(myParms.size() + other.myParms.size());
    for (const auto &src : other.myParms)
    {
        auto copy = std::make_unique<GZ_EditScriptedParm>(*src);
        if (make_unique)
            ctx.makeSafeAndAppend(*copy);
        else
            ctx.noteAppended(*copy);
        myParms.push_back(std::move(copy));
    }
}

void GZ_EditScriptedParms::removeMarked(const std::vector<bool> &marked)
{
    size_t out = 0;
    for (size_t i = 0; i < myParms.size(); ++i)
        if (!marked[i])
            myParms[out++] = std::move(myParms[i]);
    myParms.resize(out);
}

bool GZ_EditScriptedParms::isClosedTail(int first) const
{
    int depth = 0;
    for (int i = first; i < entries(); ++i)
    {
        const GZ_EditScriptedParm &p = *myParms[i];
        if (p.getIsGroupStart())
            ++depth;
        else if (p.getIsGroupEnd() && --depth < 0)
            return false;
    }
    return depth == 0;
}

int GZ_EditScriptedParms::removeParms(int first, int last, bool fix_joins)
{
    if (first < 0 || last >= entries() || first > last)
        return 0;
    if (last + 1 == entries() && isClosedTail(first))
    {
        // Nothing outside the tail is tied to it: it goes without a pass over the whole set.
        myParms.truncate(first);
        if (fix_joins)
            removeInvalidJoins();
        return last - first + 1;
    }
    const std::vector<int> match = computeMatches();
    std::vector<bool> marked(myParms.size(), false);
    int count = 0;
    auto mark = [&](int i)
    {
        if (i >= 0 && !marked[i])
        {
            marked[i] = true;
            ++count;
        }
    };
    for (int i = first; i <= last; ++i)
    {
        mark(i);
        mark(match[i]);
    }
    removeMarked(marked);
    if (fix_joins)
        removeInvalidJoins();
    return count;
}

void GZ_EditScriptedParms::removeInvalidJoins()
{
    for (int i = 0; i < entries(); ++i)
    {
        const bool next_ordinary =
            i + 1 < entries() && myParms[i + 1]->getFolderType() == GZ_FOLDER_NONE;
        if (!next_ordinary)
            myParms[i]->setJoinNext(false);
    }
}

void GZ_EditScriptedParms::removeEmptyFolders()
{
    // One pass decides, for each block, whether it holds anything but separators (directly
    // or through non-empty nested blocks); the outermost empty blocks are then removed.
    const std::vector<int> match = computeMatches();
    std::vector<bool> full(myParms.size(), false);
    std::vector<int> open;
    for (int i = 0; i < entries(); ++i)
    {
        const GZ_EditScriptedParm &p = *myParms[i];
        if (p.getIsGroupStart())
        {
            open.push_back(i);
            continue;
        }
        if (p.getIsGroupEnd())
        {
            if (open.empty() || match[i] != open.back())
                continue;
            const int opener = open.back();
            open.pop_back();
            if (full[opener] && !open.empty())
                full[open.back()] = true;
            continue;
        }
        if (p.getType() != "Separator" && !open.empty())
            full[open.back()] = true;
    }
    std::vector<std::pair<int, int>> ranges;
    for (int i = 0; i < entries(); ++i)
    {
        if (myParms[i]->getIsGroupStart() && match[i] > i && !full[i])
        {
            ranges.emplace_back(i, match[i]);
            i = match[i];
        }
    }
    for (auto it = ranges.rbegin(); it != ranges.rend(); ++it)
        removeParms(it->first, it->second, /*fix_joins=*/true);
}

namespace
{
/// Where entry i ends up when [first, last] moves by offset.
int movedIndex(int i, int first, int last, int offset)
{
    const int len = last - first + 1;
    if (i >= first && i <= last)
        return i + offset;
    if (offset > 0 && i > last && i <= last + offset)
        return i - len;
    if (offset < 0 && i < first && i >= first + offset)
        return i + len;
    return i;
}
} // namespace

bool GZ_EditScriptedParms::isParmMoveAllowed(int first, int last, int offset) const
{
    if (first < 0 || last >= entries() || first > last)
        return false;
    if (first + offset < 0 || last + offset >= entries())
        return false;
    if (offset == 0)
        return true;
    const std::vector<int> match = computeMatches();
    auto moved = [&](int i) { return movedIndex(i, first, last, offset); };
    for (int i = first; i <= last; ++i)
    {
        const GZ_EditScriptedParm &p = *myParms[i];
        if (p.getIsGroupEnd() && match[i] >= 0 && match[i] < first && moved(i) <= moved(match[i]))
            return false;
        if (p.getIsGroupStart() && match[i] > last && moved(i) >= moved(match[i]))
            return false;
    }
    // The range may not leave the block that holds it.
    int parent = -1;
    for (int j = first - 1, nest = 0; j >= 0; --j)
    {
        if (myParms[j]->getIsGroupEnd())
            ++nest;
        else if (myParms[j]->getIsGroupStart() && nest-- == 0)
        {
            parent = j;
            break;
        }
    }
    if (parent >= 0 && match[parent] > last)
    {
        if (moved(first) <= moved(parent) || moved(last) >= moved(match[parent]))
            return false;
    }
    return true;
}

bool GZ_EditScriptedParms::moveParms(int first, int last, int offset, bool fix_groups)
{
    if (!isParmMoveAllowed(first, last, offset))
        return false;
    if (offset > 0)
        std::rotate(myParms.begin() + first, myParms.begin() + last + 1,
                    myParms.begin() + last + 1 + offset);
    else if (offset < 0)
        std::rotate(myParms.begin() + first + offset, myParms.begin() + first,
                    myParms.begin() + last + 1);
    if (fix_groups)
        removeInvalidGroups(std::min(first, first + offset));
    return true;
}

bool GZ_EditScriptedParms::moveParms(const std::vector<int> &indices, int target, bool fix_groups)
{
    std::vector<bool> taken(myParms.size(), false);
    std::vector<std::unique_ptr<GZ_EditScriptedParm>> moving;
    int before_target = 0;
    for (int i : indices)
    {
        if (i < 0 || i >= entries() || taken[i])
            continue;
        taken[i] = true;
        if (i < target)
            ++before_target;
    }
    if (std::none_of(taken.begin(), taken.end(), [](bool b) { return b; }))
        return false;
    for (int i : indices)
        if (i >= 0 && i < entries() && myParms[i])
            moving.push_back(std::move(myParms[i]));
    removeMarked(taken);
    int at = std::max(0, std::min(target - before_target, entries()));
    myParms.insert(at, std::move(moving));
    if (fix_groups)
        removeInvalidGroups(at);
    return true;
}

bool GZ_EditScriptedParms::permuteParms(const std::vector<int> &order)
{
    if (order.size() != myParms.size())
        return false;
    std::vector<bool> seen(order.size(), false);
    for (int i : order)
    {
        if (i < 0 || i >= entries() || seen[i])
            return false;
        seen[i] = true;
    }
    std::vector<std::unique_ptr<GZ_EditScriptedParm>> out;
    out.reserve(order.size());
    for (int i : order)
        out.push_back(std::move(myParms[i]));
    myParms = std::move(out);
    return true;
}

void GZ_EditScriptedParms::removeInvalidGroups(int start)
{
    const std::vector<int> match = computeMatches();
    std::vector<bool> marked(myParms.size(), false);
    int open = 0;
    for (int i = 0; i < entries(); ++i)
    {
        const GZ_EditScriptedParm &p = *myParms[i];
        if (p.getIsGroupEnd() && match[i] < 0 && i >= std::max(0, start))
            marked[i] = true;
        else if (p.getIsGroupStart() && match[i] < 0)
            ++open;
    }
    removeMarked(marked);
    for (; open > 0; --open)
        myParms.push_back(std::make_unique<GZ_EditScriptedParm>(GZ_FOLDER_END));
}

void GZ_EditScriptedParms::copyDefaultsFromNode(HostNode *node)
{
    if (!node)
        return;
    for (int i = entries() - 1; i >= 0; --i)
    {
        GZ_EditScriptedParm &p = *myParms[i];
        if (!p.ownsChannels())
            continue;
        if (const HostParm *parm = node->getParm(p.getName()))
            p.copyDefaultValuesFromParm(*parm, 0);
    }
}

void GZ_EditScriptedParms::setAutolinksToCurrentLinks()
{
    HostNode *node = getNode();
    for (auto &p : myParms)
        p->setAutolinksToCurrentLinks(node, -1);
}

void GZ_EditScriptedParms::fixParmNamesForInstanceLevel()
{
    // Inside n multiparms a name needs n "#" marks to name one parameter per instance.
    std::vector<int> multi_open;
    int level = 0;
    for (auto &p : myParms)
    {
        if (p->getIsGroupEnd())
        {
            if (!multi_open.empty())
            {
                level -= multi_open.back();
                multi_open.pop_back();
            }
            continue;
        }
        if (level > 0 && !p->getName().empty())
        {
            const std::string &name = p->getName();
            const int marks = static_cast<int>(std::count(name.begin(), name.end(), '#'));
            if (marks < level)
                p->setName(name + std::string(static_cast<size_t>(level - marks), '#'));
        }
        if (p->getIsGroupStart())
        {
            multi_open.push_back(p->getIsMultiParm() ? 1 : 0);
            level += multi_open.back();
        }
    }
}

std::vector<std::unique_ptr<GZ_EditScriptedParm>> GZ_EditScriptedParms::releaseParms()
{
    return myParms.release();
}

void GZ_EditScriptedParms::insertParms(int index,
                                       std::vector<std::unique_ptr<GZ_EditScriptedParm>> parms)
{
    index = std::max(0, std::min(index, entries()));
    myParms.insert(index, std::move(parms));
}

// ---------------------------------------------------------------------------------------------
// Reserved names.

bool GZ_EditScriptedParms::checkReservedName(const std::string &name) const
{
    return !name.empty() && myReservedNames.count(name) != 0;
}

bool GZ_EditScriptedParms::containsReservedParm() const
{
    return std::any_of(myParms.begin(), myParms.end(),
                       [this](const auto &p) { return checkReservedName(p->getName()); });
}

void GZ_EditScriptedParms::findMisplacedReservedParms(std::vector<int> &out) const
{
    // A reserved parameter belongs at the top level or in folders only: inside a multiparm
    // it would stand for instances, which the operator's own parameter is not.
    out.clear();
    std::vector<bool> in_multi;
    int multis = 0;
    for (int i = 0; i < entries(); ++i)
    {
        const GZ_EditScriptedParm &p = *myParms[i];
        if (p.getIsGroupEnd())
        {
            if (!in_multi.empty())
            {
                multis -= in_multi.back() ? 1 : 0;
                in_multi.pop_back();
            }
            continue;
        }
        if (multis > 0 && checkReservedName(p.getName()))
            out.push_back(i);
        if (p.getIsGroupStart())
        {
            in_multi.push_back(p.getIsMultiParm());
            multis += p.getIsMultiParm() ? 1 : 0;
        }
    }
}

void GZ_EditScriptedParms::clearReserveNamesAndFlags()
{
    myReservedNames.clear();
    for (auto &p : myParms)
        p->setIsBaseParm(false);
}

void GZ_EditScriptedParms::initializeReserveNames(HostNode *node)
{
    myReservedNames.clear();
    if (!node)
        return;
    const HostParmList &list = node->getParmList();
    for (int i = 0; i < list.getEntries(); ++i)
    {
        const HostParm *parm = list.getParm(i);
        if (!parm->isSpare())
            myReservedNames.insert(parm->getName());
    }
}

void GZ_EditScriptedParms::initializeReserveFlags()
{
    for (auto &p : myParms)
        p->setIsBaseParm(checkReservedName(p->getName()));
}

void GZ_EditScriptedParms::dump(std::ostream &os) const
{
    char buf[64];
    std::snprintf(buf, sizeof(buf), "GZ_EditScriptedParms: %d parms\n", entries());
    os << buf;
    for (const auto &p : myParms)
        p->dump(os);
}
