// ShellChannels: expressions and channel keys from command words, and their saved lines.
#pragma once

#include "host/HostParmType.h"

#include <iosfwd>
#include <string>
#include <vector>

class HostNode;
class HostParm;

/// The shell's side of expressions and channels: setting expressions for "parmset -e",
/// and writing a parameter's expressions and keys as command lines for scene files.
class ShellChannels
{
public:
    /// Sets components `first`, `first + 1`, ... of the parameter (or channel) `name` to the
    /// expressions in `texts`, in `language`. Each component is saved for undo first. Nothing
    /// is changed when a component may not be modified. False with a message in `error`.
    static bool setExpressions(HostNode &node, const std::string &name,
                               const std::vector<std::string> &texts, HostStringMeaning language,
                               std::string &error);

    /// Writes the lines that give `parm`'s components their expressions and keys back, after
    /// the parmset line of its constants:
    ///
    ///   parmset -e PATH CHANNEL EXPRESSION        (an expression in the expression language)
    ///   parmset -p PATH CHANNEL EXPRESSION        (an expression in the scripting language)
    ///   chkey PATH CHANNEL TIME VALUE             (one line per key, in time order)
    static void writeAnimation(std::ostream &os, const std::string &path, const HostParm &parm);
};
