// gz_ScriptHost: the host's dialog-script services that the parameter editor calls.
#include "scriptedit/gz_ScriptHost.h"

#include "host/HostDialogQuote.h"
#include "host/HostLanguageNames.h"
#include "host/HostVariableName.h"

std::string gz_ScriptHost::quote(const std::string &text, bool alternative)
{
    return HostDialogQuote::quote(text, alternative);
}

std::string gz_ScriptHost::escape(const std::string &text, bool alternative)
{
    return HostDialogQuote::escape(text, alternative);
}

std::string gz_ScriptHost::encodeVariableName(const std::string &name)
{
    return HostVariableName::encode(name);
}

std::string gz_ScriptHost::decodeVariableName(const std::string &name)
{
    return HostVariableName::decode(name);
}

bool gz_ScriptHost::forceValidVariableName(std::string &name, const char *extra)
{
    return HostVariableName::forceValidName(name, extra);
}

std::string gz_ScriptHost::stringMeaningName(unsigned meaning)
{
    const char *name = HostLanguageNames::stringMeaningName(static_cast<int>(meaning));
    return name ? name : "";
}

std::string gz_ScriptHost::scriptLanguageName(int language)
{
    const char *name = HostLanguageNames::scriptLanguageName(language);
    return name ? name : "";
}
