// GZ_ResourceManager: reading and writing the bindings file, and the bindings of a saved scene.
#include "resource/GZ_ResourceManager.h"

// Not done yet: reading "OPbindings" from the search path.
void GZ_ResourceManager::registerOpHandleBindings() {}

// Not done yet: writing the "ombind" lines of live handle bindings.
HostErrorSeverity GZ_ResourceManager::save(std::ostream &)
{
    return HOST_ERR_NONE;
}
