// gz_ParmList: the owned entries of a parameter set, with their index.
#pragma once

#include "scriptedit/gz_ParmIndex.h"

#include <memory>
#include <vector>

class GZ_EditScriptedParm;

/// The list of a parameter set. Reading through a const list leaves the index alone;
/// appending and inserting keep it up to date; every other way of changing the list (or of
/// reaching its entries to change them) marks it stale, so that it cannot go out of step
/// with an edit this class does not know about.
class gz_ParmList
{
public:
    using Ptr = std::unique_ptr<GZ_EditScriptedParm>;
    using Vec = std::vector<Ptr>;

    gz_ParmList() : myIndex(std::make_shared<gz_ParmIndex>()) {}
    gz_ParmList(const gz_ParmList &) = delete;
    gz_ParmList &operator=(const gz_ParmList &) = delete;
    gz_ParmList &operator=(Vec &&parms)
    {
        myParms = std::move(parms);
        myIndex->markStale();
        return *this;
    }

    std::size_t size() const { return myParms.size(); }
    bool empty() const { return myParms.empty(); }
    const Ptr &operator[](std::size_t i) const { return myParms[i]; }
    Vec::const_iterator begin() const { return myParms.begin(); }
    Vec::const_iterator end() const { return myParms.end(); }

    Ptr &operator[](std::size_t i) { return edit()[i]; }
    Vec::iterator begin() { return edit().begin(); }
    Vec::iterator end() { return edit().end(); }

    void push_back(Ptr parm)
    {
        myParms.push_back(std::move(parm));
        myIndex->inserted(myParms, static_cast<int>(myParms.size()) - 1, 1, myIndex);
    }
    void emplace_back(GZ_EditScriptedParm *parm) { push_back(Ptr(parm)); }
    /// Inserts `parms` before entry `at` (a valid position), index kept.
    void insert(int at, Vec parms)
    {
        myParms.insert(myParms.begin() + at, std::make_move_iterator(parms.begin()),
                       std::make_move_iterator(parms.end()));
        myIndex->inserted(myParms, at, static_cast<int>(parms.size()), myIndex);
    }
    /// Removes the entries from `from` (a valid position) to the end, index kept.
    void truncate(int from)
    {
        myIndex->erasingTail(myParms, from);
        myParms.erase(myParms.begin() + from, myParms.end());
    }
    void reserve(std::size_t n) { myParms.reserve(n); }
    void resize(std::size_t n) { edit().resize(n); }
    void clear()
    {
        myParms.clear();
        // Entries freed: a fresh index of nothing.
        myIndex->rebuild(myParms, myIndex);
    }
    /// Hands the entries over; the list is left empty.
    Vec release()
    {
        Vec out = std::move(myParms);
        clear();
        return out;
    }

    /// The index, rebuilt first when stale.
    const gz_ParmIndex &index() const
    {
        if (myIndex->isStale())
            myIndex->rebuild(myParms, myIndex);
        return *myIndex;
    }
    bool indexIsFresh() const { return !myIndex->isStale(); }

private:
    Vec &edit()
    {
        myIndex->markStale();
        return myParms;
    }

    Vec myParms;
    std::shared_ptr<gz_ParmIndex> myIndex;
};
