// HostParmComponentUndo: the undo record that saves and restores one component of a
// parameter.
#pragma once

#include "host/HostParm.h"
#include "host/HostUndo.h"

#include <string>

class HostNode;

/// Saves one component's whole state, for a change that touches that component only. A
/// rename repairs the expressions of thousands of referrers; a record each of their whole
/// parameter would copy every component and allocate a list for it. Undo and redo swap the
/// saved state with the current one. The parameter is found again by the node's unique id
/// and the parameter's name.
class HostParmComponentUndo : public HostUndo
{
public:
    HostParmComponentUndo(const HostNode &node, const HostParm &parm, int component);
    ~HostParmComponentUndo() override;

    void undo() override { swap(); }
    void redo() override { swap(); }
    bool isValid() const override;

private:
    void swap();

    int myNodeId;
    int myComponent;
    std::string myParmName;
    HostParmComponent myState;
};
