// ShellParmAccess: reading and writing node parameters from command words.
#pragma once

#include <string>
#include <vector>

class HostNode;
class HostParm;

/// Turns command words into parameter writes and parameter values into text, for parmset
/// and parmget. Writes go through the node's user-level setters, so they record undo and
/// notify the node's listeners.
class ShellParmAccess
{
public:
    /// Finds what `name` names on `node`: a parameter (first component 0, `count` its size)
    /// or one channel (`first` its component, `count` 1). Null when neither.
    static HostParm *resolve(const HostNode &node, const std::string &name, int &first, int &count);

    /// Sets components `first`, `first + 1`, ... of the parameter (or channel) `name` from
    /// `values`. Numbers must be whole decimal numbers; a menu also takes an item token; a
    /// string parameter takes the words as they are. Nothing is changed when a value is bad.
    /// Returns false with a message (without the command prefix) in `error`.
    static bool set(HostNode &node, const std::string &name, const std::vector<std::string> &values,
                    std::string &error);

    /// The value of a channel (or of a parameter's first component) at `time`: numbers as
    /// printf "%g", strings as they are. False with a message in `error`.
    static bool get(const HostNode &node, const std::string &name, double time, std::string &text,
                    std::string &error);

    /// Reads a finite decimal number that fills the whole word.
    static bool parseNumber(const std::string &word, double &value);
};
