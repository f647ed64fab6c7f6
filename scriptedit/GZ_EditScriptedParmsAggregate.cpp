// GZ_EditScriptedParmsAggregate: the spare parameters of several nodes edited as one list.
#include "scriptedit/GZ_EditScriptedParmsAggregate.h"

#include "host/HostNode.h"

GZ_EditScriptedParmsAggregate::GZ_EditScriptedParmsAggregate(const std::vector<HostNode *> &nodes)
{
    GZ_EditScriptedParms::BuildOptions options;
    options.myFallbackToOperator = false;
    for (HostNode *node : nodes)
        appendToAggregate(node, std::make_unique<GZ_EditScriptedParms>(node, options));
}

GZ_EditScriptedParmsAggregate::~GZ_EditScriptedParmsAggregate() = default;

void GZ_EditScriptedParmsAggregate::appendToAggregate(HostNode *node,
                                                      std::unique_ptr<GZ_EditScriptedParms> parms)
{
    myNodes.push_back(node);
    myParms.push_back(std::move(parms));
}

int GZ_EditScriptedParmsAggregate::getNParms() const
{
    int n = 0;
    for (const auto &p : myParms)
        n += p->entries();
    return n;
}

void GZ_EditScriptedParmsAggregate::getNodeAndParmIndices(int &member, int &local, int global) const
{
    member = -1;
    local = -1;
    if (global < 0)
        return;
    for (int m = 0; m < getNMembers(); ++m)
    {
        if (global < myParms[m]->entries())
        {
            member = m;
            local = global;
            return;
        }
        global -= myParms[m]->entries();
    }
}

int GZ_EditScriptedParmsAggregate::getParmIndex(int member, int local) const
{
    if (member < 0 || member >= getNMembers() || local < 0 || local >= myParms[member]->entries())
        return -1;
    int global = local;
    for (int m = 0; m < member; ++m)
        global += myParms[m]->entries();
    return global;
}

GZ_EditScriptedParm *GZ_EditScriptedParmsAggregate::getParm(int i) const
{
    int m, l;
    getNodeAndParmIndices(m, l, i);
    return m < 0 ? nullptr : myParms[m]->getParm(l);
}

HostNode *GZ_EditScriptedParmsAggregate::getNode(int i) const
{
    int m, l;
    getNodeAndParmIndices(m, l, i);
    return m < 0 ? nullptr : myNodes[m];
}

HostParmList *GZ_EditScriptedParmsAggregate::getParmList(int i) const
{
    HostNode *node = getNode(i);
    return node ? &node->getParmList() : nullptr;
}

GZ_EditScriptedParms *GZ_EditScriptedParmsAggregate::getMemberParms(int member) const
{
    return member >= 0 && member < getNMembers() ? myParms[member].get() : nullptr;
}

int GZ_EditScriptedParmsAggregate::getMatchingGroupParm(int i) const
{
    int m, l;
    getNodeAndParmIndices(m, l, i);
    if (m < 0)
        return -1;
    return getParmIndex(m, myParms[m]->getMatchingGroupParm(l));
}

int GZ_EditScriptedParmsAggregate::removeParms(int first, int last)
{
    // Each member loses the part of the range it holds, from the last member back, so
    // that global indices of the parts still to remove do not move.
    if (first < 0 || last >= getNParms() || first > last)
        return 0;
    int removed = 0;
    int fm, fl, lm, ll;
    getNodeAndParmIndices(fm, fl, first);
    getNodeAndParmIndices(lm, ll, last);
    for (int m = lm; m >= fm; --m)
    {
        const int lo = m == fm ? fl : 0;
        const int hi = m == lm ? ll : myParms[m]->entries() - 1;
        removed += myParms[m]->removeParms(lo, hi, /*fix_joins=*/true);
    }
    return removed;
}

void GZ_EditScriptedParmsAggregate::copyToParms(GZ_EditScriptedParms &target,
                                                bool always_safe) const
{
    for (const auto &member : myParms)
        target.mergeParms(*member, always_safe);
}
