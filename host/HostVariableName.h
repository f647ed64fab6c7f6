// HostVariableName: the host's rule for variable (parameter and channel) names.
#pragma once

#include <string>

/// A valid variable name is a letter or "_" followed by letters, digits and "_" (plus any
/// extra characters a caller allows, such as "#" for multiparm instance patterns).
///
/// Names that are not valid can still be carried through an encoding: "xn__" followed by the
/// text with letters and digits kept, "_" written as "__" and every other byte as "_" and two
/// lower-case hex digits. "#" is kept as it is, so instance patterns survive encoding.
/// Decoding a name that is not an encoded name gives it back unchanged.
class HostVariableName
{
public:
    static bool isValid(const std::string &name, const char *extra = nullptr);
    /// Forces `name` into a valid name: every other character becomes "_" and a name starting
    /// with a digit gets a "_" in front. An empty name stays empty. Returns whether it changed.
    static bool forceValidName(std::string &name, const char *extra = nullptr);
    /// The encoded form of any text; a text that is already valid (with "#" allowed) and does
    /// not look encoded is returned unchanged.
    static std::string encode(const std::string &text);
    /// The text behind an encoded name; anything else unchanged.
    static std::string decode(const std::string &name);
    /// Whether `name` carries the encoding prefix.
    static bool isEncoded(const std::string &name);
};
