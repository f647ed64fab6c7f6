// GZ_ResourceManager::registerSelectors: the built-in selector table.
#include "resource/GZ_ResourceManager.h"

// The built-in selector table is not filled in yet.
void GZ_ResourceManager::registerSelectors() {}
