// HostChannelManager: scene time, per-thread evaluation time, error suppression and scoping.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

class HostParm;

/// An additive animation layer: an offset per channel path ("/obj/geo1/tx"), scaled by the
/// layer's weight. The base values (the parameters' own) plus every layer give what a
/// parameter evaluates to.
struct HostAnimLayer
{
    std::string myName;
    double myWeight = 1.0;
    std::unordered_map<std::string, double> myOffsets;
};

/// The process-wide keeper of time for channels and expressions.
///
/// The scene time and frame rate belong to the current HostDirector; this class reads them
/// for channels and expressions, and adds the per-thread pieces (an evaluation-time override
/// and error suppression, both scopes on the calling thread), the list of scoped channels,
/// the motion-channel override list that the last "chopscope" named, the animation layers,
/// and the evaluation-error log.
///
/// Single instance, created on first use, never destroyed before exit. Every query is O(1)
/// except the scope list operations, which are linear in the number of scoped channels.
class HostChannelManager
{
public:
    static HostChannelManager &get();

    /// The current director's time in seconds (what the main thread evaluates at).
    double getTime() const;
    /// Change the current director's time; values pending at the old time are dropped.
    void setTime(double seconds);
    /// Time the calling thread evaluates at: its innermost evaluation-time scope, else
    /// the current time.
    double getEvaluateTime() const;

    double getFramesPerSecond() const;
    double timeToFrame(double seconds) const;
    double frameToTime(double frame) const;

    /// Changes whenever the time changes; a pending value remembers the epoch it was set in.
    std::uint64_t getTimeEpoch() const;

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
    /// Follows a node rename: scoped channels under `old_path` move under `new_path`.
    void renameScopedNode(const std::string &old_path, const std::string &new_path);
    /// Drops the scoped channels of a deleted node.
    void unscopeNode(const std::string &path);

    /// The motion-channel override paths last given to "chopscope".
    const std::vector<std::string> &getMotionScope() const { return myMotionScope; }
    void setMotionScope(std::vector<std::string> paths) { myMotionScope = std::move(paths); }

    // Animation layers, in the order added.
    int getNumLayers() const { return static_cast<int>(myLayers.size()); }
    HostAnimLayer &addLayer(const std::string &name);
    HostAnimLayer *findLayer(const std::string &name);
    bool removeLayer(const std::string &name);
    /// What the layers add to component k of `parm`; 0 without layers.
    double getLayerSum(const HostParm &parm, int k) const;
    /// The value to write into the parameter itself so that it evaluates to `value` with
    /// the layers' contribution added; `value` unchanged while there are no layers.
    double applyLayerContribution(const HostParm &parm, int k, double time, double value) const;

    /// Empty scope, motion scope, layers and error log (tests, scene clear).
    void reset();

private:
    HostChannelManager() = default;

    mutable std::mutex myErrorLock; // errors may come from evaluations on other threads
    std::vector<std::string> myEvalErrors;
    std::vector<std::string> myScoped;
    std::vector<std::string> myMotionScope;
    std::vector<HostAnimLayer> myLayers;
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
