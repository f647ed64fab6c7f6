// HostParmUndo: the undo record that saves and restores a parameter's whole state.
#pragma once

#include "host/HostParm.h"
#include "host/HostUndo.h"

#include <string>

class HostNode;

/// Saves a parameter's whole state (every component: values, expressions, channels, locks,
/// defaults). Undo and redo swap the saved state with the current one, so one record serves
/// both. The parameter is found again by the node's unique id and the parameter's name.
class HostParmUndo : public HostUndo
{
public:
    HostParmUndo(const HostNode &node, const HostParm &parm);
    ~HostParmUndo() override;

    void undo() override { swap(); }
    void redo() override { swap(); }
    bool isValid() const override;

    int getNodeId() const { return myNodeId; }
    const std::string &getParmName() const { return myParmName; }

    /// The parameter named `name` on the node whose unique id is `nodeId`, or null.
    static HostParm *findParm(int nodeId, const std::string &name);
    /// Bytes a saved component holds outside itself (its texts and its channel's keys).
    static std::size_t heldBytes(const HostParmComponent &c);

private:
    void swap();
    HostParm *findParm() const;

    int myNodeId;
    std::string myParmName;
    HostParmState myState;
};
