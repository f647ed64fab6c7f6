// GZ_GZTemplate::getHelp: the help text of a handle type.
#include "resource/GZ_GZTemplate.h"

// Placeholder until the host's search path is available: always reports that no help
// file exists. Replaced by the search-path lookup.
const std::string &GZ_GZTemplate::getHelp() const
{
    if (!myHelpLoaded)
    {
        myHelpLoaded = true;
        myHelp = "No help defined for handles of type " + name();
    }
    return myHelp;
}
