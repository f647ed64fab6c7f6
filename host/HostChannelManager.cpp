// HostChannelManager: scene time, per-thread evaluation time, error suppression and scoping.
#include "host/HostChannelManager.h"

#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostParm.h"

#include <algorithm>

namespace
{
thread_local bool theHasEvalTime = false;
thread_local double theEvalTime = 0.0;
thread_local int theSuppressDepth = 0;
} // namespace

HostChannelManager &HostChannelManager::get()
{
    static HostChannelManager *theManager = new HostChannelManager();
    return *theManager;
}

double HostChannelManager::getTime() const
{
    return HostDirector::instance()->getTime();
}

void HostChannelManager::setTime(double seconds)
{
    HostDirector::instance()->setTime(seconds);
}

double HostChannelManager::getEvaluateTime() const
{
    return theHasEvalTime ? theEvalTime : getTime();
}

double HostChannelManager::getFramesPerSecond() const
{
    return HostDirector::instance()->getFps();
}

double HostChannelManager::timeToFrame(double seconds) const
{
    return HostDirector::instance()->timeToFrame(seconds);
}

double HostChannelManager::frameToTime(double frame) const
{
    return HostDirector::instance()->frameToTime(frame);
}

std::uint64_t HostChannelManager::getTimeEpoch() const
{
    return HostDirector::instance()->getTimeEpoch();
}

bool HostChannelManager::isErrorReportingSuppressed()
{
    return theSuppressDepth > 0;
}

void HostChannelManager::reportEvalError(const std::string &message)
{
    if (isErrorReportingSuppressed())
        return;
    std::lock_guard<std::mutex> lock(myErrorLock);
    myEvalErrors.push_back(message);
}

std::vector<std::string> HostChannelManager::getEvalErrors() const
{
    std::lock_guard<std::mutex> lock(myErrorLock);
    return myEvalErrors;
}

std::vector<std::string> HostChannelManager::takeEvalErrors()
{
    std::lock_guard<std::mutex> lock(myErrorLock);
    std::vector<std::string> errors;
    errors.swap(myEvalErrors);
    return errors;
}

bool HostChannelManager::addToScope(const std::string &channelPath)
{
    if (isScoped(channelPath))
        return false;
    myScoped.push_back(channelPath);
    return true;
}

bool HostChannelManager::removeFromScope(const std::string &channelPath)
{
    auto it = std::find(myScoped.begin(), myScoped.end(), channelPath);
    if (it == myScoped.end())
        return false;
    myScoped.erase(it);
    return true;
}

bool HostChannelManager::isScoped(const std::string &channelPath) const
{
    return std::find(myScoped.begin(), myScoped.end(), channelPath) != myScoped.end();
}

namespace
{
// Whether `channel_path` names a channel of the node at `node_path` ("/obj/a/tx" for
// "/obj/a"); channels of its children count too, since they go with it.
bool isUnder(const std::string &channel_path, const std::string &node_path)
{
    return channel_path.size() > node_path.size() && channel_path[node_path.size()] == '/' &&
           channel_path.compare(0, node_path.size(), node_path) == 0;
}
} // namespace

void HostChannelManager::renameScopedNode(const std::string &old_path, const std::string &new_path)
{
    for (std::string &path : myScoped)
        if (isUnder(path, old_path))
            path = new_path + path.substr(old_path.size());
}

void HostChannelManager::unscopeNode(const std::string &path)
{
    myScoped.erase(std::remove_if(myScoped.begin(), myScoped.end(),
                                  [&path](const std::string &p) { return isUnder(p, path); }),
                   myScoped.end());
}

HostAnimLayer &HostChannelManager::addLayer(const std::string &name)
{
    if (HostAnimLayer *layer = findLayer(name))
        return *layer;
    myLayers.push_back(HostAnimLayer{name, 1.0, {}});
    return myLayers.back();
}

HostAnimLayer *HostChannelManager::findLayer(const std::string &name)
{
    for (HostAnimLayer &layer : myLayers)
    {
        if (layer.myName == name)
            return &layer;
    }
    return nullptr;
}

bool HostChannelManager::removeLayer(const std::string &name)
{
    for (auto it = myLayers.begin(); it != myLayers.end(); ++it)
    {
        if (it->myName == name)
        {
            myLayers.erase(it);
            return true;
        }
    }
    return false;
}

double HostChannelManager::getLayerSum(const HostParm &parm, int k) const
{
    if (myLayers.empty())
        return 0.0;
    const HostNode *node = parm.getNode();
    const std::string path =
        (node ? node->getFullPath() : std::string()) + "/" + parm.getChannelName(k);
    double sum = 0.0;
    for (const HostAnimLayer &layer : myLayers)
    {
        auto it = layer.myOffsets.find(path);
        if (it != layer.myOffsets.end())
            sum += layer.myWeight * it->second;
    }
    return sum;
}

double HostChannelManager::applyLayerContribution(const HostParm &parm, int k, double,
                                                  double value) const
{
    return value - getLayerSum(parm, k);
}

void HostChannelManager::reset()
{
    myLayers.clear();
    takeEvalErrors();
    myScoped.clear();
    myMotionScope.clear();
}

HostEvalTimeScope::HostEvalTimeScope(double seconds)
    : myHadPrevious(theHasEvalTime), myPrevious(theEvalTime)
{
    theHasEvalTime = true;
    theEvalTime = seconds;
}

HostEvalTimeScope::~HostEvalTimeScope()
{
    theHasEvalTime = myHadPrevious;
    theEvalTime = myPrevious;
}

HostErrorSuppressScope::HostErrorSuppressScope()
{
    ++theSuppressDepth;
}

HostErrorSuppressScope::~HostErrorSuppressScope()
{
    --theSuppressDepth;
}
