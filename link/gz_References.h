// gz_References: following channel references from a bound component, cheaply.
#pragma once

#include "host/HostNode.h"
#include "host/HostParm.h"

namespace gz
{

/// Walks channel references from (node, parm, vi) to the final component, as the host does.
/// A reference is an expression, and the host's walk allocates its visited set up front, so
/// components without an expression (the usual case during a drag) are answered here.
inline void followReferences(double time, HostNode *&node, HostParm *&parm, int &vi)
{
    if (!parm)
        return;
    if (!node)
        node = parm->getNode();
    if (vi >= 0 && vi < parm->getVectorSize() && parm->getExpression(vi).empty())
        return;
    HostParm::followChannelReferences(time, node, parm, vi);
}

} // namespace gz
