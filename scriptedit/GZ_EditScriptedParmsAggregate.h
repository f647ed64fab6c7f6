// GZ_EditScriptedParmsAggregate: the spare parameters of several nodes edited as one list.
#pragma once

#include "scriptedit/GZ_EditScriptedParms.h"

#include <memory>
#include <vector>

class HostNode;
class HostParmList;

/// Presents the parameter sets of several nodes as one list: a global index runs through
/// the first member's set, then the second's, and so on. Owns the sets, not the nodes.
class GZ_EditScriptedParmsAggregate
{
public:
    GZ_EditScriptedParmsAggregate() = default;
    /// One member per node, each the node's spare parameters.
    explicit GZ_EditScriptedParmsAggregate(const std::vector<HostNode *> &nodes);
    virtual ~GZ_EditScriptedParmsAggregate();

    int getNMembers() const { return static_cast<int>(myNodes.size()); }
    int getNParms() const;
    /// Member and local index of a global index; both -1 past the end.
    void getNodeAndParmIndices(int &member, int &local, int global) const;
    int getParmIndex(int member, int local) const;
    GZ_EditScriptedParm *getParm(int i) const;
    HostNode *getNode(int i) const;
    HostParmList *getParmList(int i) const;
    GZ_EditScriptedParms *getMemberParms(int member) const;
    /// The partner of entry i inside its own member, as a global index; -1 when none.
    int getMatchingGroupParm(int i) const;
    /// Removes the entries of [first, last], member by member (each as its own range).
    int removeParms(int first, int last);
    /// Appends copies of every member's definitions to `target`, in order.
    /// With `always_safe` every copy's name is made safe, also in an empty target.
    void copyToParms(GZ_EditScriptedParms &target, bool always_safe = false) const;

protected:
    void appendToAggregate(HostNode *node, std::unique_ptr<GZ_EditScriptedParms> parms);

private:
    std::vector<HostNode *> myNodes;
    std::vector<std::unique_ptr<GZ_EditScriptedParms>> myParms;
};
