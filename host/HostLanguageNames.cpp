// HostLanguageNames: the host's names of string meanings and script languages.
#include "host/HostLanguageNames.h"

#include "host/HostParmType.h"

#include <cstring>

namespace
{
// Meanings and script languages share their words: index 0 the command language, 1 the
// scripting language.
const char *const NAMES[] = {"command", "python"};

bool find(const char *name, int &index)
{
    for (int i = 0; name && i < 2; ++i)
        if (std::strcmp(name, NAMES[i]) == 0)
        {
            index = i;
            return true;
        }
    return false;
}
} // namespace

const char *HostLanguageNames::stringMeaningName(int meaning)
{
    if (meaning == HOST_STRING_EXPRESSION)
        return NAMES[0];
    if (meaning == HOST_STRING_SCRIPT)
        return NAMES[1];
    return nullptr;
}

bool HostLanguageNames::stringMeaningFromName(const char *name, int &meaning)
{
    int index = 0;
    if (!find(name, index))
        return false;
    meaning = index == 0 ? HOST_STRING_EXPRESSION : HOST_STRING_SCRIPT;
    return true;
}

const char *HostLanguageNames::scriptLanguageName(int language)
{
    return language == 0 || language == 1 ? NAMES[language] : nullptr;
}

bool HostLanguageNames::scriptLanguageFromName(const char *name, int &language)
{
    return find(name, language);
}
