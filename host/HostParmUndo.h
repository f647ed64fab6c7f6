// HostParmUndo: the undo record that saves and restores a parameter's whole state.
#pragma once

#include "host/HostParm.h"
#include "host/HostUndo.h"

#include <string>

class HostNode;

/// Saves a parameter's whole state (every component: values, expressions, channels, locks,
/// defaults), or one component's when a change touches only that one. Undo and redo swap
/// the saved state with the current one, so one record serves both. The parameter is found
/// again by the node's unique id and the parameter's name.
class HostParmUndo : public HostUndo
{
public:
    /// The whole parameter when `component` is -1, else that component only (a rename's
    /// repair of thousands of referrers copies one component each, not the parameter).
    HostParmUndo(const HostNode &node, const HostParm &parm, int component = -1);
    ~HostParmUndo() override;

    void undo() override { swap(); }
    void redo() override { swap(); }
    bool isValid() const override;

    int getNodeId() const { return myNodeId; }
    const std::string &getParmName() const { return myParmName; }

private:
    void swap();
    HostParm *findParm() const;

    int myNodeId;
    std::string myParmName;
    int myComponent; ///< -1: the whole parameter
    HostParmState myState;
};
