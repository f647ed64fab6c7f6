// GZ_ResourceManager::registerOpHandleLinks: the built-in 3D op-handle-link table.
#include "resource/GZ_ResourceManager.h"

// The built-in 3D table is not filled in yet.
void GZ_ResourceManager::registerOpHandleLinks() {}
