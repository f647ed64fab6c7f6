// gz_ScriptHost: the host's dialog-script services that the parameter editor calls.
#pragma once

#include <string>

/// One place where the editor meets the host's dialog-script rules: the string escaping of
/// the format, the variable-name rule with its encoding, and the names of string meanings
/// and script languages. Keeping them behind these functions means the writers cannot use
/// two different quoting rules.
namespace gz_ScriptHost
{
/// A double-quoted string of the format; `alternative` is the mode that ramp tags use.
std::string quote(const std::string &text, bool alternative = false);
/// The escaped text without the quotes (its length decides menu columns).
std::string escape(const std::string &text, bool alternative = false);
/// The variable-name encoding and decoding (names that are not plain variable names).
std::string encodeVariableName(const std::string &name);
std::string decodeVariableName(const std::string &name);
/// Forces `name` into a valid variable name, also allowing the characters of `extra`.
/// Returns whether it changed.
bool forceValidVariableName(std::string &name, const char *extra);
/// The word the format uses for a string meaning (expression language), e.g. after a default.
std::string stringMeaningName(unsigned meaning);
/// The word the format uses for a script language (menu scripts).
std::string scriptLanguageName(int language);
} // namespace gz_ScriptHost
