// HostMultiParmLinks: the channel references a node keeps for every instance of a multiparm.
#pragma once

#include <map>
#include <string>
#include <vector>

class HostNode;
class HostParm;

/// A multiparm link says that every instance's channel of an instance pattern ("pt#" stands
/// for pt1, pt2...) of a node follows one channel: its reference text ("../geo1/amp", a path
/// from the node, "/" and a channel; a "#" in it is filled with the instance number). The
/// instances that exist get the channel reference when the link is set, new instances when
/// they are made. One per director; records of deleted nodes are skipped, as ids are never
/// reused. Lookups by node cost a map search; scans visit only the nodes that have links.
class HostMultiParmLinks
{
public:
    struct Link
    {
        int myNodeId;
        std::string myPattern;
        std::string myText;
    };

    /// The reference text of `node`'s link for `pattern`; empty when there is none.
    std::string get(const HostNode &node, const std::string &pattern) const;
    /// Sets a link (an empty text clears it) as an undoable change. The existing instance
    /// channels get the channel reference, or, when the link is cleared, keep the value they
    /// have now as a constant; each with an undo record.
    void set(HostNode &node, const std::string &pattern, const std::string &text, double time);
    /// Every link, by node id then pattern.
    std::vector<Link> getAll() const;
    /// The links of `node`, by pattern.
    std::vector<Link> findLinksOf(const HostNode &node) const;
    /// The links whose text leads, from their node, to `channel` of `target`, by node id then
    /// pattern. Visits every node that has links, not the scene.
    std::vector<Link> findLinksTo(const HostNode &target, const std::string &channel) const;
    /// Moves `node`'s link from one pattern to another (a renamed instance pattern) as an
    /// undoable change; the instance channels already hold their references.
    void movePattern(const HostNode &node, const std::string &from, const std::string &to);
    /// Gives the channels of a new instance the references their node's links call for (no
    /// undo record: the instance itself is new).
    void fillInstance(HostNode &node, const std::vector<HostParm *> &instance) const;
    void clear() { myLinks.clear(); }

    /// When `channel` is a channel name with "#" that instances of one of `node`'s multiparms
    /// (its operator or spare templates) are made from, the component it names; else -1.
    static int findInstancePattern(const HostNode &node, const std::string &channel);
    /// The instance number when `channel` is `pattern` with its one "#" replaced by a
    /// number, else -1.
    static int matchInstance(const std::string &pattern, const std::string &channel);
    /// The expression a component follows a link with: ch("TEXT"), chs() for text.
    static std::string referenceExpression(const HostParm &parm, const std::string &text,
                                           int number);

private:
    friend class HostMultiParmLinkUndo;
    void setText(int node_id, const std::string &pattern, const std::string &text);
    /// Instances of `pattern` that follow the link text `from` follow `to` instead.
    static void repoint(HostNode &node, const std::string &pattern, const std::string &from,
                        const std::string &to);
    void setTextWithUndo(int node_id, const std::string &pattern, const std::string &text);

    std::map<int, std::map<std::string, std::string>> myLinks;
};
