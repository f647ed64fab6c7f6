// HostDirector: scene root, node registry, current director, time, proxies.
#include "host/HostDirector.h"

#include "host/HostChannelManager.h"
#include "host/HostNetwork.h"
#include "host/HostNode.h"
#include "host/HostOperatorTable.h"

#include <algorithm>

namespace
{
HostDirector *theCurrent = nullptr;

void setError(std::string *error, const std::string &text)
{
    if (error)
        *error = text;
}
} // namespace

HostDirector::HostDirector()
{
    myRoot = std::unique_ptr<HostNode>(new HostNode(this, nullptr, nullptr, "/", allocateId()));
    myRoot->myChildren = std::make_unique<HostNetwork>(this, myRoot.get(), nullptr);
    makeManagers();
    if (!theCurrent)
        theCurrent = this;
}

HostDirector::~HostDirector()
{
    // Nodes unregister themselves from this director while they go.
    myRoot.reset();
    if (theCurrent == this)
        theCurrent = nullptr;
}

HostDirector *HostDirector::instance()
{
    if (!theCurrent)
    {
        // The default director lives as long as the process. It is kept reachable and never
        // destroyed, so nothing runs against it during static destruction.
        static HostDirector *theDefault = new HostDirector();
        theCurrent = theDefault;
    }
    return theCurrent;
}

void HostDirector::makeCurrent()
{
    theCurrent = this;
}

void HostDirector::makeManagers()
{
    myRoot->getChildNetwork()->createManager("obj",
                                             HostOperatorTable::getTable(HOST_NETWORK_OBJECT));
}

void HostDirector::clearScene()
{
    HostNetwork *managers = myRoot->getChildNetwork();
    for (int i = managers->getNumNodes() - 1; i >= 0; --i)
        if (HostNetwork *net = managers->getNode(i)->getChildNetwork())
            net->clear();
    myUndo.clear();
    myMultiParmLinks.clear();
    HostChannelManager::get().clearScope();
    myTime = 0.0;
    myCurrentNodeId = -1;
    myLoading = false;
    // Proxy indices stay used, so stale ones keep finding nothing.
    std::fill(myProxies.begin(), myProxies.end(), nullptr);
}

HostNode *HostDirector::findNode(const std::string &path, const HostNode *relative_to) const
{
    if (path.empty())
        return nullptr;
    if (path[0] == '/' || !relative_to)
        return myRoot->findNode(path[0] == '/' ? path : "/" + path);
    return relative_to->findNode(path);
}

HostNode *HostDirector::findNodeById(int unique_id) const
{
    return unique_id >= 0 && unique_id < static_cast<int>(myById.size()) ? myById[unique_id]
                                                                         : nullptr;
}

HostNode *HostDirector::createNode(const std::string &type, const std::string &full_path,
                                   std::string *error, int unique_id, int position)
{
    const size_t slash = full_path.rfind('/');
    if (full_path.empty() || full_path[0] != '/' || slash == std::string::npos)
    {
        setError(error, "Not a full path: " + full_path);
        return nullptr;
    }
    const std::string parent_path = slash == 0 ? "/" : full_path.substr(0, slash);
    HostNode *parent = findNode(parent_path);
    if (!parent)
    {
        setError(error, "Parent not found: " + parent_path);
        return nullptr;
    }
    HostNetwork *net = parent->getChildNetwork();
    if (!net || !net->getOperatorTable())
    {
        setError(error, "Cannot create nodes inside " + parent->getFullPath());
        return nullptr;
    }
    return net->createNode(type, full_path.substr(slash + 1), error, unique_id, position);
}

bool HostDirector::deleteNode(HostNode *node)
{
    // The root and the managers are part of the director.
    if (!node || !node->getOperator() || !node->getParentNetwork())
        return false;
    return node->getParentNetwork()->deleteNode(node);
}

bool HostDirector::renameNode(HostNode *node, const std::string &new_name, std::string *error)
{
    if (!node || !node->getOperator() || !node->getParentNetwork())
    {
        setError(error, "Cannot rename this node");
        return false;
    }
    return node->getParentNetwork()->renameNode(node, new_name, error);
}

HostNode *HostDirector::getCurrentNode() const
{
    return findNodeById(myCurrentNodeId);
}

void HostDirector::setCurrentNode(HostNode *node)
{
    myCurrentNodeId = node ? node->getUniqueId() : -1;
}

void HostDirector::setFps(double fps)
{
    if (fps > 0.0)
        myFps = fps;
}

HostErrorSeverity HostDirector::runSaveCallback(std::ostream &os) const
{
    return mySaveCallback ? mySaveCallback(os) : HOST_ERR_NONE;
}

bool HostDirector::getDebugFlag(int flag) const
{
    return std::find(myDebugFlags.begin(), myDebugFlags.end(), flag) != myDebugFlags.end();
}

void HostDirector::setDebugFlag(int flag, bool on)
{
    auto it = std::find(myDebugFlags.begin(), myDebugFlags.end(), flag);
    if (on && it == myDebugFlags.end())
        myDebugFlags.push_back(flag);
    else if (!on && it != myDebugFlags.end())
        myDebugFlags.erase(it);
}

int HostDirector::allocProxy(void *object)
{
    // Indices are never reused, so a stale index can only find nothing.
    myProxies.push_back(object);
    return static_cast<int>(myProxies.size()) - 1;
}

void HostDirector::freeProxy(int index)
{
    if (index >= 0 && index < static_cast<int>(myProxies.size()))
        myProxies[index] = nullptr;
}

void *HostDirector::getProxy(int index) const
{
    return (index >= 0 && index < static_cast<int>(myProxies.size())) ? myProxies[index] : nullptr;
}

void HostDirector::registerNode(HostNode *node)
{
    const int id = node->getUniqueId();
    if (id < 0)
        return; // ids are handed out from 0: never the case
    if (id >= static_cast<int>(myById.size()))
        myById.resize(static_cast<size_t>(id) + 1, nullptr);
    myNumNodes += myById[id] ? 0 : 1;
    myById[id] = node;
}

void HostDirector::unregisterNode(HostNode *node)
{
    const int id = node->getUniqueId();
    if (id >= 0 && id < static_cast<int>(myById.size()) && myById[id])
    {
        myById[id] = nullptr;
        --myNumNodes;
    }
    if (myCurrentNodeId == node->getUniqueId())
        myCurrentNodeId = -1;
}
