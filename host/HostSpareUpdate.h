// HostSpareUpdate: rebuilding a node's spare parameters as one undoable change.
#pragma once

#include "host/HostSpareLayout.h"

#include <string>

class HostDialogStream;
class HostNode;

/// The host side of "update the node from a parameter set": checks a new spare interface,
/// then replaces the node's spare templates and import records inside one undo block. Values
/// of parameters whose name and size survive are kept; undo brings back the old interface and
/// every old value, redo the new one.
class HostSpareUpdate
{
public:
    static constexpr const char *UNDO_NAME = "Edit Spare Parameters";

    /// Replaces the node's spare interface. False, with one line per problem in `errors` and
    /// nothing changed, when a name is empty, used twice or taken by the operator's own
    /// parameters.
    static bool updateNode(HostNode &node, const HostSpareLayout &layout, std::string &errors);
    /// Reads a parameter section and applies it. Read problems are reported through the
    /// stream (FILE[LINE]: message) and also make the call fail without changing the node.
    static bool updateNode(HostNode &node, HostDialogStream &in, std::string &errors);
    /// The problems `updateNode` would refuse `layout` for, one line each; empty when none.
    static std::string check(const HostNode &node, const HostSpareLayout &layout);
};
