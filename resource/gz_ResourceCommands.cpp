// GZ_ResourceManager: installing the binding commands and the scene-save callback.
#include "resource/GZ_ResourceManager.h"

#include "host/HostCommandManager.h"
#include "host/HostDirector.h"
#include "resource/gz_BindingCommands.h"

void GZ_ResourceManager::installCommands()
{
    gz_installBindingCommands(*HostCommandManager::getInstance());
    HostDirector::instance()->setSaveCallback(saveGZResourceManagerCallback);
}

HostErrorSeverity saveGZResourceManagerCallback(std::ostream &os)
{
    GZ_ResourceManager *manager = GZgetResourceManager();
    if (!manager)
        return HOST_ERR_NONE;
    HostErrorSeverity severity = manager->saveSettings(os);
    if (severity != HOST_ERR_NONE)
        return severity;
    severity = manager->save(os);
    if (severity != HOST_ERR_NONE)
        return severity;
    if (GZ_ResourceManager::ourPersistentHandleSaver)
        return GZ_ResourceManager::ourPersistentHandleSaver(os);
    return HOST_ERR_NONE;
}
