// HostParmUndo: swapping a parameter's saved state with its current one.
#include "host/HostParmUndo.h"

#include "host/HostDirector.h"
#include "host/HostNode.h"

HostParmUndo::HostParmUndo(const HostNode &node, const HostParm &parm, int component)
    : myNodeId(node.getUniqueId()), myParmName(parm.getName()), myComponent(component)
{
    if (myComponent < 0 || myComponent >= parm.getVectorSize())
    {
        myComponent = -1;
        myState = parm.saveState();
    }
    else
        myState.myComponents.push_back(parm.component(myComponent));
    std::size_t bytes = sizeof(*this) + myParmName.size();
    for (const HostParmComponent &c : myState.myComponents)
    {
        bytes += sizeof(c) + c.myString.size() + c.myExpression.size();
        if (c.myChannel)
            bytes += sizeof(HostChannel) + c.myChannel->getKeys().size() * sizeof(HostChannelKey);
    }
    setMemoryUsage(bytes);
}

HostParmUndo::~HostParmUndo() = default;

HostParm *HostParmUndo::findParm() const
{
    HostNode *node = HostDirector::instance()->findNodeById(myNodeId);
    return node ? node->getParm(myParmName) : nullptr;
}

bool HostParmUndo::isValid() const
{
    return findParm() != nullptr;
}

void HostParmUndo::swap()
{
    HostParm *parm = findParm();
    if (!parm)
        return;
    if (myComponent >= 0)
        parm->swapComponent(myComponent, myState.myComponents.front());
    else
    {
        HostParmState current = parm->saveState();
        parm->restoreState(myState);
        myState = std::move(current);
    }
    if (HostNode *node = parm->getNode())
        node->parmChanged(*parm);
}
