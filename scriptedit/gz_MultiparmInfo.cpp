// gz_MultiparmInfo: the process-wide multiparm instance information and its lock.
#include "scriptedit/gz_MultiparmInfo.h"

#include "scriptedit/GZ_EditScriptedParms.h"

#include "host/HostNode.h"
#include "host/HostParm.h"

#include <mutex>

namespace
{
std::mutex theMutex;
std::map<std::string, int> theInfo;
int theLocks = 0;
} // namespace

void gz_MultiparmInfo::build(HostNode *node)
{
    std::lock_guard<std::mutex> guard(theMutex);
    theInfo.clear();
    if (!node)
        return;
    const HostParmList &list = node->getParmList();
    for (int i = 0; i < list.getEntries(); ++i)
    {
        const HostParm *parm = list.getParm(i);
        if (parm->getType().isMultiparm())
            theInfo[parm->getName()] = parm->getInstanceCount();
    }
}

const std::map<std::string, int> &gz_MultiparmInfo::get()
{
    return theInfo;
}

bool gz_MultiparmInfo::clear()
{
    std::lock_guard<std::mutex> guard(theMutex);
    if (theLocks > 0)
        return false;
    theInfo.clear();
    return true;
}

void gz_MultiparmInfo::lock()
{
    std::lock_guard<std::mutex> guard(theMutex);
    ++theLocks;
}

void gz_MultiparmInfo::release()
{
    std::lock_guard<std::mutex> guard(theMutex);
    if (theLocks > 0)
        --theLocks;
}

int gz_MultiparmInfo::lockCount()
{
    std::lock_guard<std::mutex> guard(theMutex);
    return theLocks;
}

void GZ_EditScriptedParms::buildMultiparmInfo(HostNode *node)
{
    gz_MultiparmInfo::build(node);
}

const std::map<std::string, int> &GZ_EditScriptedParms::getBuiltMultiparmInfo()
{
    return gz_MultiparmInfo::get();
}

void GZ_EditScriptedParms::clearMultiparmInfo()
{
    gz_MultiparmInfo::clear();
}

void GZ_EditScriptedParms::lockMultiparmInfo()
{
    gz_MultiparmInfo::lock();
}

void GZ_EditScriptedParms::releaseMultiparmInfo()
{
    gz_MultiparmInfo::release();
}
