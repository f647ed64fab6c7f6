// HostLanguageNames: the host's names of string meanings and script languages.
#include "host/HostLanguageNames.h"

#include "host/HostParmType.h"

#include <cstring>

namespace
{
const char COMMAND[] = "command";
const char PYTHON[] = "python";
} // namespace

const char *HostLanguageNames::stringMeaningName(int meaning)
{
    if (meaning == HOST_STRING_EXPRESSION)
        return COMMAND;
    if (meaning == HOST_STRING_SCRIPT)
        return PYTHON;
    return nullptr;
}

bool HostLanguageNames::stringMeaningFromName(const char *name, int &meaning)
{
    if (!name)
        return false;
    if (std::strcmp(name, COMMAND) == 0)
        meaning = HOST_STRING_EXPRESSION;
    else if (std::strcmp(name, PYTHON) == 0)
        meaning = HOST_STRING_SCRIPT;
    else
        return false;
    return true;
}

const char *HostLanguageNames::scriptLanguageName(int language)
{
    if (language == 0)
        return COMMAND;
    if (language == 1)
        return PYTHON;
    return nullptr;
}

bool HostLanguageNames::scriptLanguageFromName(const char *name, int &language)
{
    if (!name)
        return false;
    if (std::strcmp(name, COMMAND) == 0)
        language = 0;
    else if (std::strcmp(name, PYTHON) == 0)
        language = 1;
    else
        return false;
    return true;
}
