// GZ_ResourceManager: the process-wide parameter cache used while the host batches keys.
#include "resource/GZ_ResourceManager.h"

bool GZ_ResourceManager::ourSetKeyOnParms = false;
bool GZ_ResourceManager::ourScopeParmChannels = false;
bool GZ_ResourceManager::ourAppendToScope = false;
int GZ_ResourceManager::ourCacheParms = 0;
std::vector<HostNode *> GZ_ResourceManager::ourParmNodes;
std::vector<HostParm *> GZ_ResourceManager::ourParms;
std::vector<int> GZ_ResourceManager::ourParmVecIndices;

void GZ_ResourceManager::appendToParmsCache(HostNode *node, HostParm *parm, int vec_index)
{
    ourParmNodes.push_back(node);
    ourParms.push_back(parm);
    ourParmVecIndices.push_back(vec_index);
}

void GZ_ResourceManager::setParmsCacheBehaviour(bool set_key, bool scope_channels,
                                                bool append_to_scope)
{
    ourSetKeyOnParms = set_key;
    ourScopeParmChannels = scope_channels;
    ourAppendToScope = append_to_scope;
}

void GZ_ResourceManager::startParmsCache()
{
    ++ourCacheParms;
}

void GZ_ResourceManager::stopParmsCache()
{
    if (ourCacheParms <= 0)
        return;
    if (--ourCacheParms > 0)
        return;
    // Release the storage too: a big gesture should not pin memory until the next one.
    std::vector<HostNode *>().swap(ourParmNodes);
    std::vector<HostParm *>().swap(ourParms);
    std::vector<int>().swap(ourParmVecIndices);
    setParmsCacheBehaviour(/*set_key=*/false, /*scope_channels=*/false, /*append_to_scope=*/false);
}

void GZ_ResourceManager::getParmsCache(std::vector<HostNode *> *&nodes,
                                       std::vector<HostParm *> *&parms,
                                       std::vector<int> *&vec_indices)
{
    nodes = &ourParmNodes;
    parms = &ourParms;
    vec_indices = &ourParmVecIndices;
}

void GZ_ResourceManager::getParmsCacheBehaviour(bool &set_key, bool &scope_channels,
                                                bool &append_to_scope)
{
    set_key = ourSetKeyOnParms;
    scope_channels = ourScopeParmChannels;
    append_to_scope = ourAppendToScope;
}
