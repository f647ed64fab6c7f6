// HostParmUndo: swapping a parameter's saved state with its current one.
#include "host/HostParmUndo.h"

#include "host/HostDirector.h"
#include "host/HostNode.h"

HostParmUndo::HostParmUndo(const HostNode &node, const HostParm &parm)
    : myNodeId(node.getUniqueId()), myParmName(parm.getName()), myState(parm.saveState())
{
    std::size_t bytes = sizeof(*this) + myParmName.size();
    for (const HostParmComponent &c : myState.myComponents)
        bytes += sizeof(c) + heldBytes(c);
    setMemoryUsage(bytes);
}

std::size_t HostParmUndo::heldBytes(const HostParmComponent &c)
{
    std::size_t bytes = c.myString.size() + c.myExpression.size();
    if (c.myChannel)
        bytes += sizeof(HostChannel) + c.myChannel->getKeys().size() * sizeof(HostChannelKey);
    return bytes;
}

HostParmUndo::~HostParmUndo() = default;

HostParm *HostParmUndo::findParm(int nodeId, const std::string &name)
{
    HostNode *node = HostDirector::instance()->findNodeById(nodeId);
    return node ? node->getParm(name) : nullptr;
}

HostParm *HostParmUndo::findParm() const
{
    return findParm(myNodeId, myParmName);
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
    HostParmState current = parm->saveState();
    parm->restoreState(myState);
    myState = std::move(current);
    if (HostNode *node = parm->getNode())
        node->parmChanged(*parm);
}
