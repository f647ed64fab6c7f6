// ShellHandle: gzsh's live handle, built from an operator type's binding as a tool builds it.
#pragma once

#include "link/GZ_OpHandleLink.h"

#include <memory>
#include <ostream>
#include <string>

class HostNode;

/// The live handle a viewer tool would create for a node: made from the op-handle-link
/// template of one of the node's operator-type bindings, its handle parameters linked by
/// that binding, attached to the node and loaded with its remembered settings. The shell
/// drives it from the command line instead of a viewport. Detaching (and saving the settings
/// back) is left to the owner, since a read must not count as a use of the handle.
class ShellHandle : public GZ_OpHandleLink
{
public:
    using GZ_OpHandleLink::beginDistributedUndoBlock;
    using GZ_OpHandleLink::endDistributedUndoBlock;
    using GZ_OpHandleLink::getParmValue;
    using GZ_OpHandleLink::GZ_OpHandleLink;
    using GZ_OpHandleLink::setParmValue;

    /// The handle that `node`'s operator type binds under `description`, ready to drive; null
    /// after writing "COMMAND: ..." to `err` when there is no such binding or template.
    static std::unique_ptr<ShellHandle> create(HostNode &node, const std::string &description,
                                               const std::string &command, std::ostream &err);
};
