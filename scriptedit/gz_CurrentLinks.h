// gz_CurrentLinks: the channel references that lead to one channel of a node.
#pragma once

#include <string>

class HostNode;

namespace gz_CurrentLinks
{
/// The components of the scene whose expression is a plain channel reference to `channel`
/// of `node`, as paths relative to `node` ("../geo2/tx"; "tx" on the node itself), joined by
/// single blanks, ordered by referring node id, parameter and component; then the multiparm
/// links that lead to it (their instance pattern stands for the instances they drive). Found
/// through the reverse reference index and the link records, so the cost follows the
/// referrers and the links, not the scene.
std::string read(const HostNode &node, const std::string &channel);
} // namespace gz_CurrentLinks
