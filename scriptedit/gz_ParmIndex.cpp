// gz_ParmIndex: names, labels and group structure of a parameter set.
#include "scriptedit/gz_ParmIndex.h"

#include "scriptedit/GZ_EditScriptedParm.h"

#include <algorithm>

void gz_ParmIndex::rebuild(const List &parms, const std::shared_ptr<gz_ParmIndex> &self)
{
    myNames.clear();
    myLabels.clear();
    myMarks.clear();
    myOpen.clear();
    myNames.reserve(parms.size());
    for (int i = 0; i < static_cast<int>(parms.size()); ++i)
    {
        parms[i]->linkIndex(self);
        add(*parms[i], i);
    }
    myStale = false;
}

void gz_ParmIndex::inserted(const List &parms, int at, int count,
                            const std::shared_ptr<gz_ParmIndex> &self)
{
    if (myStale)
        return;
    const bool append = at + count == static_cast<int>(parms.size());
    if (append)
    {
        for (int i = at; i < at + count; ++i)
        {
            parms[i]->linkIndex(self);
            add(*parms[i], i);
        }
        return;
    }
    // In the middle: the group entries after the insertion point move up, the new ones go
    // in between, and blocks are matched again (only group entries are visited).
    auto shift = [at, count](int &pos)
    {
        if (pos >= at)
            pos += count;
    };
    for (Mark &m : myMarks)
        shift(m.myPos);
    for (auto &entry : myLabels)
        for (int &pos : entry.second)
            shift(pos);
    std::vector<Mark> tail(std::lower_bound(myMarks.begin(), myMarks.end(), at,
                                            [](const Mark &m, int pos) { return m.myPos < pos; }),
                           myMarks.end());
    myMarks.resize(myMarks.size() - tail.size());
    for (int i = at; i < at + count; ++i)
    {
        const GZ_EditScriptedParm &parm = *parms[i];
        parms[i]->linkIndex(self);
        if (!parm.getName().empty())
            ++myNames[parm.getName()];
        if (!parm.getIsGroupParm())
            continue;
        myMarks.push_back({i, -1, -1, parm.getFolderType()});
        if (parm.getIsGroupStart())
        {
            std::vector<int> &openers = myLabels[parm.getLabel()];
            openers.insert(std::lower_bound(openers.begin(), openers.end(), i), i);
        }
    }
    myMarks.insert(myMarks.end(), tail.begin(), tail.end());
    rematch();
}

void gz_ParmIndex::erasingTail(const List &parms, int from)
{
    if (myStale)
        return;
    for (int i = from; i < static_cast<int>(parms.size()); ++i)
    {
        auto it = myNames.find(parms[i]->getName());
        if (it != myNames.end() && --it->second == 0)
            myNames.erase(it);
    }
    while (!myMarks.empty() && myMarks.back().myPos >= from)
    {
        if (myMarks.back().isOpener())
        {
            // The opener is the last of its label: positions are kept in list order.
            auto it = myLabels.find(parms[myMarks.back().myPos]->getLabel());
            if (it != myLabels.end() && !it->second.empty())
                it->second.pop_back();
            if (it != myLabels.end() && it->second.empty())
                myLabels.erase(it);
        }
        myMarks.pop_back();
    }
    rematch();
}

void gz_ParmIndex::add(const GZ_EditScriptedParm &parm, int pos)
{
    if (!parm.getName().empty())
        ++myNames[parm.getName()];
    if (!parm.getIsGroupParm())
        return;
    const int m = static_cast<int>(myMarks.size());
    myMarks.push_back({pos, -1, -1, parm.getFolderType()});
    if (parm.getIsGroupStart())
    {
        myLabels[parm.getLabel()].push_back(pos);
        myOpen.push_back(m);
    }
    else if (!myOpen.empty())
    {
        pair(myOpen.back(), m);
        myOpen.pop_back();
    }
}

void gz_ParmIndex::rematch()
{
    myOpen.clear();
    for (int m = 0; m < static_cast<int>(myMarks.size()); ++m)
    {
        myMarks[m].myMatch = myMarks[m].myMatchMark = -1;
        if (myMarks[m].isOpener())
            myOpen.push_back(m);
        else if (!myOpen.empty())
        {
            pair(myOpen.back(), m);
            myOpen.pop_back();
        }
    }
}

void gz_ParmIndex::pair(int opener, int end)
{
    myMarks[opener].myMatch = myMarks[end].myPos;
    myMarks[opener].myMatchMark = end;
    myMarks[end].myMatch = myMarks[opener].myPos;
    myMarks[end].myMatchMark = opener;
}

bool gz_ParmIndex::hasName(const std::string &name) const
{
    return !name.empty() && myNames.count(name) != 0;
}

const std::vector<int> &gz_ParmIndex::openersWithLabel(const std::string &label) const
{
    static const std::vector<int> none;
    auto it = myLabels.find(label);
    return it == myLabels.end() ? none : it->second;
}

int gz_ParmIndex::markAt(int pos) const
{
    auto it = std::lower_bound(myMarks.begin(), myMarks.end(), pos,
                               [](const Mark &m, int p) { return m.myPos < p; });
    return it != myMarks.end() && it->myPos == pos ? static_cast<int>(it - myMarks.begin()) : -1;
}

int gz_ParmIndex::match(int i) const
{
    const int m = markAt(i);
    return m < 0 ? -1 : myMarks[m].myMatch;
}

int gz_ParmIndex::firstMarkAfter(int pos) const
{
    auto it = std::upper_bound(myMarks.begin(), myMarks.end(), pos,
                               [](int p, const Mark &m) { return p < m.myPos; });
    return static_cast<int>(it - myMarks.begin());
}

int gz_ParmIndex::firstFolderBetween(int from, int to) const
{
    for (int m = firstMarkAfter(from); m < static_cast<int>(myMarks.size()); ++m)
    {
        if (myMarks[m].myPos >= to)
            break;
        if (myMarks[m].isFolder())
            return myMarks[m].myPos;
    }
    return -1;
}

int gz_ParmIndex::folderRunEnd(int pos, int size) const
{
    int m = markAt(pos);
    if (m < 0 || !myMarks[m].isFolder())
        return -1;
    int after = -1;
    // Walks the marks alone: the block after a folder starts where that folder's end is.
    while (m < static_cast<int>(myMarks.size()) && myMarks[m].myPos == pos)
    {
        const Mark &mark = myMarks[m];
        if (mark.isOpener())
        {
            if (!mark.isFolder())
                break;
            if (mark.myMatchMark < 0)
                return size;
            if (mark.myMatchMark <= m)
                break; // cannot happen in a consistent index; never loop on one that is not
            after = pos = mark.myMatch + 1;
            m = mark.myMatchMark + 1;
        }
        else
        {
            ++pos;
            ++m;
        }
    }
    return after;
}
