// gz_ParmRenames: persistent handles follow the renames and deletions of node parameters.
#pragma once

#include <string>
#include <utility>
#include <vector>

class GZ_Manager;
class HostNode;

namespace gz_ParmRenames
{
/// Every binding of a handle attached to `node` that names a channel of `renamed` (old, new)
/// is rebound to the new channel (its projection kept); one that names a channel of
/// `deleted` is dropped, with the warning line "The handle 'NAME' loses its binding of
/// 'HANDLEPARM' to 'NODEPATH/CHANNEL': the parameter has been deleted." Each changed handle
/// is attached to the node again with the new bindings through the handle command, so the
/// caller's undo block takes it back.
void follow(GZ_Manager &manager, HostNode &node,
            const std::vector<std::pair<std::string, std::string>> &renamed,
            const std::vector<std::string> &deleted, std::vector<std::string> &warnings);
} // namespace gz_ParmRenames
