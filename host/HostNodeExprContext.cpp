// HostNodeExprContext: evaluates expressions as if they belonged to a node.
#include "host/HostNodeExprContext.h"

#include "host/HostNode.h"
#include "host/HostParm.h"

bool HostNodeExprContext::evaluateChannel(const std::string &path, bool asString,
                                          HostExprValue &value, std::string &error) const
{
    HostNode *node = nullptr;
    HostParm *parm = nullptr;
    int k = -1;
    if (!myNode || !myNode->resolveChannel(path, node, parm, k))
    {
        error = "Bad channel: " + path;
        return false;
    }
    std::string inner;
    if (asString)
        value = HostExprValue::string(parm->evalString(k, myTime, inner));
    else
        value = HostExprValue::number(parm->evalFloat(k, myTime, inner));
    if (inner.empty())
        return true;
    error = inner;
    return false;
}
