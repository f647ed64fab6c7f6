// HostFiledReference: one channel path an expression refers through, as the scene's
// reference index files it.
#pragma once

#include <string>

/// A channel path inside a component's expression: as written, and resolved by text to the
/// absolute node path and channel token it is filed under.
struct HostFiledReference
{
    std::string myPath;   ///< as written
    std::string myTarget; ///< absolute node path
    std::string myToken;  ///< channel token
};
