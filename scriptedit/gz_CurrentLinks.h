// gz_CurrentLinks: the channel references that lead to one channel of a node.
#pragma once

#include <string>

class HostNode;

namespace gz_CurrentLinks
{
/// The components of the scene whose expression is a plain channel reference to `channel`
/// of `node`, as paths relative to `node` ("../geo2/tx"; "tx" on the node itself), joined by
/// single blanks, ordered by referring node id, parameter and component. Found through the
/// reverse reference index, so the cost follows the referrers, not the scene.
std::string read(const HostNode &node, const std::string &channel);
} // namespace gz_CurrentLinks
