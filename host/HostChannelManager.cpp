// HostChannelManager: scene time, per-thread evaluation time, error suppression and scoping.
#include "host/HostChannelManager.h"

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

void HostChannelManager::setTime(double seconds)
{
    myTime = seconds;
    ++myEpoch;
}

double HostChannelManager::getEvaluateTime() const
{
    return theHasEvalTime ? theEvalTime : myTime;
}

void HostChannelManager::setFramesPerSecond(double fps)
{
    if (fps > 0.0)
        myFps = fps;
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

void HostChannelManager::reset()
{
    setTime(0.0);
    myFps = 24.0;
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
