// GZ_ResourceManager::registerCop2HandleLinks: the built-in 2D op-handle-link table.
#include "resource/GZ_ResourceManager.h"

// The built-in 2D table is not filled in yet.
void GZ_ResourceManager::registerCop2HandleLinks() {}
