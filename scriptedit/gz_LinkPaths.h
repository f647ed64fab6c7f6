// gz_LinkPaths: the path arithmetic of auto-link lists.
#pragma once

#include <string>
#include <vector>

namespace gz_LinkPaths
{
/// `path` made absolute against `base` and collapsed ("." and ".." resolved, no empty parts).
std::string absolutePath(const std::string &path, const std::string &base);
/// The paths of a link list (separated by blanks, tabs or newlines), in order.
std::vector<std::string> split(const std::string &links);
} // namespace gz_LinkPaths
