// GZ_GZTemplate::getHelp: the help text of a handle type, from the host's search path.
#include "resource/GZ_GZTemplate.h"

#include "host/HostReader.h"

const std::string &GZ_GZTemplate::getHelp() const
{
    if (myHelpLoaded)
        return myHelp;
    myHelpLoaded = true;
    myHelp.clear();
    std::string path;
    if (!HostReader::findFile("config/Help/handle/" + name(), path) ||
        !HostReader::readFile(path, myHelp))
        myHelp = "No help defined for handles of type " + name();
    return myHelp;
}
