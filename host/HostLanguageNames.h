// HostLanguageNames: the host's names of string meanings and script languages.
#pragma once

/// Names written in dialog scripts for the language of an expression default
/// (`[ "text" NAME ]`) and of a menu script (`language NAME`). Both use the same words:
/// "command" for the host's command language and "python" for the scripting language.
class HostLanguageNames
{
public:
    /// The name of a string meaning; null for the plain value (0) and unknown codes.
    static const char *stringMeaningName(int meaning);
    /// The meaning of a name; false (and `meaning` unchanged) for an unknown name.
    static bool stringMeaningFromName(const char *name, int &meaning);

    /// Script languages: 0 the host command language, 1 the scripting language.
    static const char *scriptLanguageName(int language);
    static bool scriptLanguageFromName(const char *name, int &language);
};
