// HostChannel: an animation channel of one parameter component (keys, interpolation, pending).
#include "host/HostChannel.h"

#include "host/HostChannelManager.h"

#include <algorithm>
#include <cmath>

namespace
{
bool sameTime(double a, double b)
{
    return std::fabs(a - b) < HostChannel::theTimeTolerance;
}
} // namespace

int HostChannel::getNumSegments() const
{
    if (myKeys.empty())
        return 0;
    return std::max(getNumKeys() - 1, 1);
}

std::vector<HostChannelKey>::const_iterator HostChannel::lowerKey(double time) const
{
    const double from = time - theTimeTolerance;
    return std::lower_bound(myKeys.begin(), myKeys.end(), from,
                            [](const HostChannelKey &k, double t) { return k.myTime <= t; });
}

double HostChannel::evaluate(double time) const
{
    if (isPendingAt(time))
        return myPendingValue;
    return evaluateKeys(time);
}

double HostChannel::evaluateKeys(double time) const
{
    if (myKeys.empty())
        return 0.0;
    if (time <= myKeys.front().myTime)
        return myKeys.front().myValue;
    if (time >= myKeys.back().myTime)
        return myKeys.back().myValue;
    auto next = std::upper_bound(myKeys.begin(), myKeys.end(), time,
                                 [](double t, const HostChannelKey &k) { return t < k.myTime; });
    auto prev = next - 1;
    const double span = next->myTime - prev->myTime;
    if (span <= 0.0)
        return next->myValue;
    const double u = (time - prev->myTime) / span;
    return prev->myValue + (next->myValue - prev->myValue) * u;
}

std::vector<HostChannelKey>::const_iterator HostChannel::nearestKey(double time) const
{
    auto best = myKeys.end();
    for (auto it = lowerKey(time); it != myKeys.end() && sameTime(it->myTime, time); ++it)
        if (best == myKeys.end() || std::fabs(it->myTime - time) < std::fabs(best->myTime - time))
            best = it;
    return best;
}

int HostChannel::findKey(double time) const
{
    auto it = nearestKey(time);
    return it == myKeys.end() ? -1 : static_cast<int>(it - myKeys.begin());
}

void HostChannel::setKey(double time, double value)
{
    if (myHasPending && sameTime(myPendingTime, time))
        myHasPending = false;
    auto near = nearestKey(time);
    if (near != myKeys.end())
    {
        myKeys[static_cast<size_t>(near - myKeys.begin())].myValue = value;
        return;
    }
    auto it = lowerKey(time);
    myKeys.insert(myKeys.begin() + (it - myKeys.begin()), HostChannelKey{time, value});
}

void HostChannel::setValue(double time, double value)
{
    const int key = findKey(time);
    if (key >= 0)
    {
        myKeys[static_cast<size_t>(key)].myValue = value;
        myHasPending = false;
        return;
    }
    myHasPending = true;
    myPendingTime = time;
    myPendingValue = value;
    myPendingEpoch = HostChannelManager::get().getTimeEpoch();
}

bool HostChannel::removeKey(double time)
{
    const int key = findKey(time);
    if (key < 0)
        return false;
    myKeys.erase(myKeys.begin() + key);
    return true;
}

void HostChannel::clearKeys()
{
    myKeys.clear();
    myHasPending = false;
}

bool HostChannel::getPrevKeyTime(double time, double &keyTime) const
{
    auto it = lowerKey(time); // first key not before time - tolerance
    if (it == myKeys.begin())
        return false;
    keyTime = (it - 1)->myTime;
    return true;
}

bool HostChannel::getNextKeyTime(double time, double &keyTime) const
{
    auto it = std::upper_bound(myKeys.begin(), myKeys.end(), time + theTimeTolerance,
                               [](double t, const HostChannelKey &k) { return t < k.myTime; });
    if (it == myKeys.end())
        return false;
    keyTime = it->myTime;
    return true;
}

bool HostChannel::hasPending() const
{
    return myHasPending && myPendingEpoch == HostChannelManager::get().getTimeEpoch();
}

bool HostChannel::isPendingAt(double time) const
{
    return hasPending() && sameTime(myPendingTime, time);
}

void HostChannel::copyContents(const HostChannel &source)
{
    if (&source == this)
        return;
    myKeys = source.myKeys;
    myHasPending = false;
}
