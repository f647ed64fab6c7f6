// HostParmComponentUndo: swapping one component's saved state with its current one.
#include "host/HostParmComponentUndo.h"

#include "host/HostNode.h"
#include "host/HostParmUndo.h"

HostParmComponentUndo::HostParmComponentUndo(const HostNode &node, const HostParm &parm,
                                             int component)
    : myNodeId(node.getUniqueId()), myComponent(component), myParmName(parm.getName()),
      myState(parm.component(component))
{
    setMemoryUsage(sizeof(*this) + myParmName.size() + HostParmUndo::heldBytes(myState));
}

HostParmComponentUndo::~HostParmComponentUndo() = default;

bool HostParmComponentUndo::isValid() const
{
    return HostParmUndo::findParm(myNodeId, myParmName) != nullptr;
}

void HostParmComponentUndo::swap()
{
    HostParm *parm = HostParmUndo::findParm(myNodeId, myParmName);
    if (!parm)
        return;
    parm->swapComponent(myComponent, myState);
    if (HostNode *node = parm->getNode())
        node->parmChanged(*parm);
}
