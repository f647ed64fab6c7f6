// ShellResourceManager: gzsh's resource manager, which gives every operator type a viewer state
// and opens and closes parameter cache periods.
#include "shell/ShellResourceManager.h"

#include "host/HostChannelManager.h"
#include "host/HostDirector.h"
#include "host/HostNetwork.h"
#include "host/HostNode.h"
#include "host/HostOperator.h"
#include "host/HostOperatorTable.h"
#include "host/HostParm.h"
#include "host/HostParmList.h"
#include "link/GZ_PythonHandle.h"
#include "link/GZ_PythonState.h"
#include "resource/GZ_StateTemplate.h"
#include "shell/ShellViewerClasses.h"

#include <algorithm>

#include <set>
#include <utility>
#include <vector>

namespace
{

using LiveParms = std::set<std::pair<const HostNode *, const HostParm *>>;

/// Every (node, parameter) pair of the scene below `node`. The cache holds bare pointers,
/// so they are compared with this set, never followed, until they are known to be live.
void collectLiveParms(const HostNode &node, LiveParms &live)
{
    const HostParmList &parms = node.getParmList();
    for (int i = 0; i < parms.getEntries(); ++i)
        live.emplace(&node, parms.getParm(i));
    const HostNetwork *children = node.getChildNetwork();
    for (int i = 0; children && i < children->getNumNodes(); ++i)
        collectLiveParms(*children->getNode(i), live);
}

} // namespace

GZ_ResourceManager *ShellResourceManager::create(bool print_warnings)
{
    if (GZresourceManagerExists())
        return GZgetResourceManager();
    ShellResourceManager *manager = nullptr;
    {
        WarningScope warnings(print_warnings);
        manager = new ShellResourceManager();
    }
    // Only the first manager of a process becomes the instance; a later one would be an
    // empty registry that nobody can reach.
    if (GZgetResourceManager() != manager)
    {
        delete manager;
        return GZcreateResourceManager(print_warnings);
    }
    return manager;
}

ShellResourceManager::ShellResourceManager()
{
    for (int i = 0; i < GZ_NETWORK_MAX_TYPES; ++i)
    {
        const auto type = static_cast<GZ_NetworkType>(i);
        HostOperatorTable *table = HostOperatorTable::getTable(static_cast<HostNetworkType>(i));
        if (!table)
            continue;
        ensureTableInterestExists(type, table);
        ensureStatesExistForAllOperators(type);
    }
}

int ShellResourceManager::registerOpHandleLink(GZ_GZTemplate *gz)
{
    if (gz && !gz->constructor() && dynamic_cast<GZ_PythonHandle::GZTemplate *>(gz))
        gz->constructor(ShellViewerClasses::genericHandleClass());
    return GZ_ResourceManager::registerOpHandleLink(gz);
}

const std::vector<std::string> &ShellResourceManager::getViewerHandleTypeNames() const
{
    myViewerHandleNames.clear();
    for (const auto &item : getOpHandleLinks())
        if (dynamic_cast<const GZ_PythonHandle::GZTemplate *>(item.second.get()))
            myViewerHandleNames.push_back(item.first);
    std::sort(myViewerHandleNames.begin(), myViewerHandleNames.end());
    return myViewerHandleNames;
}

bool ShellResourceManager::isRegisteredViewerHandle(const char *name) const
{
    return viewerHandleTemplate(name) != nullptr;
}

const GZ_PythonHandle::Template *ShellResourceManager::viewerHandleTemplate(const char *name) const
{
    return dynamic_cast<const GZ_PythonHandle::Template *>(getHandleTemplate(name));
}

bool ShellResourceManager::isRegisteredViewerState(const char *name) const
{
    return viewerStateTemplate(name) != nullptr;
}

GZ_PythonState::Template *ShellResourceManager::viewerStateTemplate(const char *name)
{
    const ShellResourceManager &self = *this;
    return const_cast<GZ_PythonState::Template *>(self.viewerStateTemplate(name));
}

const GZ_PythonState::Template *ShellResourceManager::viewerStateTemplate(const char *name) const
{
    if (!name)
        return nullptr;
    for (int v = 0; v < GZ_NUM_VIEWER_TYPES; ++v)
        for (int n = 0; n < GZ_NETWORK_MAX_TYPES; ++n)
            for (const GZ_StateTemplate *state :
                 stateList(static_cast<GZ_ViewerType>(v), static_cast<GZ_NetworkType>(n)))
                if (state->name() == name)
                    if (auto *scripted = dynamic_cast<const GZ_PythonState::Template *>(state))
                        return scripted;
    return nullptr;
}

void ShellResourceManager::addAutomaticStates(GZ_NetworkType type)
{
    HostOperatorTable *table = HostOperatorTable::getTable(static_cast<HostNetworkType>(type));
    if (!table)
        return;
    const std::string &table_name = table->getTypeName();
    for (int i = 0; i < table->getNumOperators(); ++i)
    {
        HostOperator *op = table->getOperator(i);
        if (getStateTemplate(op, GZ_VIEWER_SCENE, table_name.c_str()))
            continue;
        if (!adoptState(std::make_unique<GZ_StateTemplate>(
                op->getName().c_str(), op->getLabel().c_str(), op->getIconName().c_str(),
                /*constructor=*/nullptr, /*templates=*/nullptr, GZ_VIEWER_SCENE,
                GZnetworkMaskBit(type), /*op_independent=*/0, /*volatile_hotkey=*/"", op)))
            continue;
        addTemplatesInterest(op);
    }
}

bool ShellResourceManager::endParmsCache(HostDirector &director)
{
    if (cacheParms() <= 0)
        return false;
    if (cacheParms() == 1)
        applyParmsCache(director);
    stopParmsCache();
    return true;
}

void ShellResourceManager::applyParmsCache(HostDirector &director)
{
    std::vector<HostNode *> *nodes = nullptr;
    std::vector<HostParm *> *parms = nullptr;
    std::vector<int> *indices = nullptr;
    getParmsCache(nodes, parms, indices);
    bool set_key = false, scope = false, append = false;
    getParmsCacheBehaviour(set_key, scope, append);
    if (!set_key && !scope)
        return;

    LiveParms live;
    collectLiveParms(*director.getRoot(), live);
    HostChannelManager &channels = HostChannelManager::get();
    if (scope && !append)
        channels.clearScope();
    const double time = director.getTime();
    // The cache keeps duplicates; each component is keyed once.
    std::set<std::pair<const HostParm *, int>> keyed;
    for (size_t i = 0; i < nodes->size(); ++i)
    {
        HostNode *node = (*nodes)[i];
        HostParm *parm = (*parms)[i];
        const int k = (*indices)[i];
        if (!live.count({node, parm}) || k < 0 || k >= parm->getVectorSize())
            continue;
        if (set_key && keyed.emplace(parm, k).second)
        {
            node->saveParmForUndo(*parm);
            node->parmChanging(*parm);
            parm->setKey(k, time);
            node->parmChanged(*parm);
        }
        if (scope)
            channels.addToScope(node->getFullPath() + "/" + parm->getChannelName(k));
    }
}
