// HostReferenceIndex: which parameter components refer to a node's channels.
#pragma once

#include "host/HostFiledReference.h"
#include "host/HostReferrerSet.h"

#include <cstddef>
#include <functional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

class HostNode;
class HostParm;

/// One ch("path") or chs("path") call with a literal path inside an expression text.
struct HostChannelPathLiteral
{
    std::string myPath; ///< the path as the expression reads it (escapes decoded)
    size_t myBegin = 0; ///< offset of the first character inside the quotes
    size_t myEnd = 0;   ///< offset of the closing quote
    char myQuote = '"';
};

/// A referring parameter component.
struct HostReferrer
{
    HostParm *myParm = nullptr;
    int myComponent = 0;
};

/// The reverse index of channel references, one per director. Every component whose
/// expression (number parameters) or expression-meaning text (string parameters) calls ch()
/// or chs() with a literal path is filed under the absolute node path that the path names,
/// worked out from the referring node's path by its text alone, and the channel token as
/// written ("tx", "t", an alias). Filing by text means that a reference to a node that does
/// not exist yet is found as soon as a node appears at that path (created or renamed there),
/// and that renaming or replacing the target's parameters needs no update. Lookups resolve
/// each candidate token once on the target and check each candidate referrer against the
/// live scene, so they are exact; they cost the number of tokens filed for the node plus
/// its referrers.
///
/// Parameters keep it current: they report every change of a component's expression text,
/// their construction and their destruction; a node rename re-files the relative paths of
/// the renamed node and its descendants. Paths computed at run time (ch("../" + name)) are
/// not literals and are not indexed.
class HostReferenceIndex
{
public:
    HostReferenceIndex() = default;
    HostReferenceIndex(const HostReferenceIndex &) = delete;
    HostReferenceIndex &operator=(const HostReferenceIndex &) = delete;

    /// Re-reads component k of `parm` (its node must be set) and re-files its references.
    void update(HostParm &parm, int k);
    /// Forgets every component of `parm` (it is going away).
    void remove(HostParm &parm);
    /// Re-files the references held by `node` and its descendants after a rename.
    void nodeRenamed(HostNode &node);

    /// The components whose references lead one step to component k of `parm` on `node`,
    /// ordered by referring node id, parameter index and component.
    std::vector<HostReferrer> findReferrers(const HostNode &node, const HostParm &parm,
                                            int k) const;
    /// The components whose paths lead to `node` and name `channel` there as written,
    /// whether or not the node still has such a channel: the referrers of a parameter that
    /// was renamed or deleted are found by its old name. Same order.
    std::vector<HostReferrer> findReferrersByName(const HostNode &node,
                                                  const std::string &channel) const;
    /// The components that refer to any channel of `node`, in the same order.
    std::vector<HostReferrer> findNodeReferrers(const HostNode &node) const;

    /// Number of indexed (component, path) pairs; for tests and benchmarks.
    size_t getNumEntries() const { return myNumEntries; }

    /// Whether an expression text can hold a ch()/chs() call at all (a cheap test that
    /// spares plain values the search).
    static bool mayRefer(const std::string &text) { return text.find("ch") != std::string::npos; }
    /// The ch()/chs() calls with a literal path in an expression text, in text order.
    static std::vector<HostChannelPathLiteral> findChannelPaths(const std::string &text);
    /// The absolute node path and channel token that `path` names from a node at
    /// `nodePath`, by text alone; false when the path climbs above the root or names no
    /// channel.
    static bool splitChannelPath(const std::string &nodePath, const std::string &path,
                                 std::string &targetNode, std::string &token);

private:
    using Slot = std::pair<HostParm *, int>;
    using Filed = HostFiledReference;
    /// What component k of a parameter has filed, or null.
    static const std::vector<Filed> *filedOf(const HostParm &parm, int k);

    void unfile(HostParm &parm, int k);
    void file(HostParm &parm, int k, const std::string &text);
    /// Whether component (parm, k) holds a path that resolves to the given target.
    /// What a referrer must match: the target node, and either a component (null parm:
    /// any) or, with a token, the channel name as written.
    struct Match
    {
        const HostNode *myNode;
        const HostParm *myParm;
        int myComponent;
        const std::string *myToken;
    };
    static bool refersTo(const HostParm &parm, const std::vector<Filed> &filed, const Match &m);
    /// A referrer found, with the keys it is sorted by (node id, parameter index,
    /// component), read while the parameter is at hand.
    struct Found
    {
        int myNodeId;
        int myParmIndex;
        int myComponent;
        HostParm *myParm;
        bool operator<(const Found &o) const
        {
            return myNodeId != o.myNodeId         ? myNodeId < o.myNodeId
                   : myParmIndex != o.myParmIndex ? myParmIndex < o.myParmIndex
                                                  : myComponent < o.myComponent;
        }
    };
    void collect(const HostReferrerSet &slots, const Match &m, std::vector<Found> &out) const;
    /// The referrers filed under `node` for the tokens taken that match `m`, sorted.
    std::vector<HostReferrer> find(const HostNode &node, const Match &m,
                                   const std::function<bool(const std::string &)> &takeToken) const;

    /// Absolute node path -> channel token -> referring components.
    std::unordered_map<std::string, std::unordered_map<std::string, HostReferrerSet>> myByTarget;
    size_t myNumEntries = 0;
};
