// HostChannel: an animation channel of one parameter component (keys, interpolation, pending).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// One key of a channel: the value the channel has at a time (seconds).
struct HostChannelKey
{
    double myTime = 0.0;
    double myValue = 0.0;

    bool operator==(const HostChannelKey &o) const
    {
        return myTime == o.myTime && myValue == o.myValue;
    }
};

/// What a parameter component's value is made of at a time; see HostParm::getChannelState.
enum HostChannelState
{
    HOST_CHANNEL_STATE_NONE = 0,       ///< a constant value (or nothing resolved)
    HOST_CHANNEL_STATE_EXPRESSION = 1, ///< an expression, no channel
    HOST_CHANNEL_STATE_ANIMATED = 2,   ///< a channel, between or outside its keys
    HOST_CHANNEL_STATE_KEY = 3,        ///< a channel with a key exactly at the time
    HOST_CHANNEL_STATE_PENDING = 4     ///< a channel with an unkeyed value set at the time
};

/// A channel: keys sorted by time, interpolated linearly between neighbouring keys and
/// held constant before the first and after the last key.
///
/// A channel with n keys has max(n - 1, 1) segments (none without keys): one between each
/// pair of neighbouring keys, and a single constant segment for a lone key.
///
/// A value set at a time without keying it is pending: evaluating at that time returns it
/// until a key is set there, the scene time changes (HostChannelManager's epoch) or the
/// pending value is cleared. Key times closer than theTimeTolerance are the same time.
///
/// Owned by its parameter component. Lookups are binary searches, O(log n); inserting or
/// removing a key is O(n).
class HostChannel
{
public:
    /// Two times this close are one key time (a microsecond).
    static constexpr double theTimeTolerance = 1e-6;

    HostChannel() = default;

    int getNumKeys() const { return static_cast<int>(myKeys.size()); }
    const HostChannelKey &getKey(int i) const { return myKeys[static_cast<size_t>(i)]; }
    const std::vector<HostChannelKey> &getKeys() const { return myKeys; }
    int getNumSegments() const;

    /// The value at a time: the pending value there when there is one, else the keys
    /// interpolated (0 for a channel without keys).
    double evaluate(double time) const;
    /// The keys alone, ignoring a pending value.
    double evaluateKeys(double time) const;

    /// Index of the key at that time, or -1.
    int findKey(double time) const;
    bool isKeyAt(double time) const { return findKey(time) >= 0; }

    /// Set (insert or replace) the key at a time; drops a pending value at that time.
    void setKey(double time, double value);
    /// Key the value the channel has at that time (its pending value when there is one).
    void setKeyAtTime(double time) { setKey(time, evaluate(time)); }
    /// Change the key at the time when there is one, otherwise hold the value as pending.
    void setValue(double time, double value);
    /// Remove the key at a time; returns whether there was one.
    bool removeKey(double time);
    void clearKeys();

    /// The latest key time strictly before `time` (beyond the tolerance); false when none.
    bool getPrevKeyTime(double time, double &keyTime) const;
    /// The earliest key time strictly after `time` (beyond the tolerance); false when none.
    bool getNextKeyTime(double time, double &keyTime) const;

    /// Whether a value is pending at that time in the current time epoch.
    bool isPendingAt(double time) const;
    bool hasPending() const;
    void clearPending() { myHasPending = false; }

    /// Copy another channel's keys; any pending value of this one is dropped.
    void copyContents(const HostChannel &source);

    bool operator==(const HostChannel &o) const { return myKeys == o.myKeys; }
    bool operator!=(const HostChannel &o) const { return !(*this == o); }

private:
    /// First key whose time is not before `time - tolerance`.
    std::vector<HostChannelKey>::const_iterator lowerKey(double time) const;
    /// The key nearest `time` within the tolerance (keys may lie closer together than twice
    /// the tolerance, so two can qualify); end when none does.
    std::vector<HostChannelKey>::const_iterator nearestKey(double time) const;

    std::vector<HostChannelKey> myKeys;
    bool myHasPending = false;
    double myPendingTime = 0.0;
    double myPendingValue = 0.0;
    std::uint64_t myPendingEpoch = 0;
};
