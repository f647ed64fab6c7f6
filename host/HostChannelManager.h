// HostChannelManager: scene time, per-thread evaluation time, error suppression and scoping.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

/// The process-wide keeper of time for channels and expressions.
///
/// Holds the current scene time (in seconds) and the frame rate, a counter that changes
/// whenever the time changes (channels use it to drop values pending at a time that is no
/// longer current), the list of scoped channels, the motion-channel override list that the
/// last "chopscope" named, and the evaluation-error log. Per-thread pieces (an evaluation
/// time override and error suppression) are scopes on the calling thread.
///
/// Frames count from 1 at time 0: frame = time * fps + 1.
///
/// Single instance, created on first use, never destroyed before exit. Every query is O(1)
/// except the scope list operations, which are linear in the number of scoped channels.
class HostChannelManager
{
public:
    static HostChannelManager &get();

    /// The scene's current time in seconds (what the main thread evaluates at).
    double getTime() const { return myTime; }
    /// Change the current time; values pending at the old time are dropped.
    void setTime(double seconds);
    /// Time the calling thread evaluates at: its innermost evaluation-time scope, else
    /// the scene's current time.
    double getEvaluateTime() const;

    double getFramesPerSecond() const { return myFps; }
    /// Ignored unless positive.
    void setFramesPerSecond(double fps);
    double timeToFrame(double seconds) const { return seconds * myFps + 1.0; }
    double frameToTime(double frame) const { return (frame - 1.0) / myFps; }

    /// Changes whenever the time changes; a pending value remembers the epoch it was set in.
    std::uint64_t getTimeEpoch() const { return myEpoch; }

    /// Whether parameter evaluation errors on the calling thread are currently suppressed.
    static bool isErrorReportingSuppressed();
    /// Record an evaluation error (unless suppressed on this thread). The shell prints and
    /// clears the log after each command.
    void reportEvalError(const std::string &message);
    std::vector<std::string> getEvalErrors() const;
    std::vector<std::string> takeEvalErrors();

    /// The scoped channels as "nodepath/channel" strings, in the order they were added.
    const std::vector<std::string> &getScopedChannels() const { return myScoped; }
    void clearScope() { myScoped.clear(); }
    /// Adds when absent; returns whether it was added.
    bool addToScope(const std::string &channelPath);
    /// Returns whether it was there.
    bool removeFromScope(const std::string &channelPath);
    bool isScoped(const std::string &channelPath) const;

    /// The motion-channel override paths last given to "chopscope".
    const std::vector<std::string> &getMotionScope() const { return myMotionScope; }
    void setMotionScope(std::vector<std::string> paths) { myMotionScope = std::move(paths); }

    /// Back to time 0, 24 fps, empty scope and error log (tests, scene clear).
    void reset();

private:
    HostChannelManager() = default;

    double myTime = 0.0;
    double myFps = 24.0;
    std::uint64_t myEpoch = 0;
    mutable std::mutex myErrorLock; // errors may come from evaluations on other threads
    std::vector<std::string> myEvalErrors;
    std::vector<std::string> myScoped;
    std::vector<std::string> myMotionScope;
};

/// Evaluate at a given time on the calling thread for the scope's lifetime. Nests.
class HostEvalTimeScope
{
public:
    explicit HostEvalTimeScope(double seconds);
    ~HostEvalTimeScope();
    HostEvalTimeScope(const HostEvalTimeScope &) = delete;
    HostEvalTimeScope &operator=(const HostEvalTimeScope &) = delete;

private:
    bool myHadPrevious;
    double myPrevious;
};

/// Suppress the reporting of parameter evaluation errors on the calling thread for the
/// scope's lifetime. Nests.
class HostErrorSuppressScope
{
public:
    HostErrorSuppressScope();
    ~HostErrorSuppressScope();
    HostErrorSuppressScope(const HostErrorSuppressScope &) = delete;
    HostErrorSuppressScope &operator=(const HostErrorSuppressScope &) = delete;
};
