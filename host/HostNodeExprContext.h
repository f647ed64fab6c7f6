// HostNodeExprContext: evaluates expressions as if they belonged to a node.
#pragma once

#include "host/HostExpression.h"

class HostNode;

/// The context of an expression owned by a node: ch() and chs() paths are read from that
/// node ("tx", "../geo1/tx", "/obj/geo1/tx") and the channels they name are evaluated at the
/// context's time. Does not own the node; cheap to make on the stack for one evaluation.
///
///     HostNodeExprContext context(node, time);
///     double v = HostExpression("ch(\"tx\") * 2").evaluateNumber(context, error);
class HostNodeExprContext : public HostExprContext
{
public:
    /// A null node makes every ch() fail with "Bad channel: PATH".
    HostNodeExprContext(const HostNode *node, double time) : myNode(node), myTime(time) {}

    double getTime() const override { return myTime; }
    bool evaluateChannel(const std::string &path, bool asString, HostExprValue &value,
                         std::string &error) const override;

private:
    const HostNode *myNode;
    double myTime;
};
