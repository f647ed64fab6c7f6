// HostRenameRepair: rewrites the channel paths that a node rename would break.
#include "host/HostRenameRepair.h"

#include "host/HostDirector.h"
#include "host/HostMultiParmLinks.h"
#include "host/HostNetwork.h"
#include "host/HostNode.h"
#include "host/HostParm.h"
#include "host/HostReferenceIndex.h"

#include <set>
#include <utility>

namespace
{
// The path with each component that steps into `node` by name replaced by `newName`.
std::string rewritePath(const std::string &path, const HostNode &from, const HostNode &node,
                        const std::string &newName)
{
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return path; // a channel of the referring node itself
    const HostNode *cur = path[0] == '/' ? from.getDirector()->getRoot() : &from;
    std::string out;
    size_t pos = 0;
    while (pos < slash)
    {
        size_t next = path.find('/', pos);
        if (next > slash)
            next = slash;
        std::string part = path.substr(pos, next - pos);
        if (part == "..")
            cur = cur->getParent();
        else if (!part.empty() && part != ".")
        {
            const HostNetwork *children = cur->getChildNetwork();
            const HostNode *child = children ? children->findNode(part) : nullptr;
            if (child == &node)
                part = newName;
            cur = child;
        }
        if (!cur)
            return path; // does not resolve: not ours to change
        out += part;
        out += '/';
        pos = next + 1;
    }
    return out + path.substr(slash + 1);
}

// The text of a literal of the expression language quoted with `quote`.
std::string escapeLiteral(const std::string &text, char quote)
{
    std::string out;
    for (char c : text)
    {
        if (c == '\\' || c == quote)
            out += '\\';
        if (c == '\n')
            out += "\\n";
        else if (c == '\t')
            out += "\\t";
        else
            out += c;
    }
    return out;
}

void forSubtree(HostNode &node, std::vector<HostNode *> &out)
{
    out.push_back(&node);
    if (HostNetwork *children = node.getChildNetwork())
        for (int i = 0; i < children->getNumNodes(); ++i)
            forSubtree(*children->getNode(i), out);
}
} // namespace

std::string HostRenameRepair::rewriteText(const std::string &text, const HostNode &from,
                                          const HostNode &node, const std::string &newName)
{
    std::string out = text;
    const std::vector<HostChannelPathLiteral> literals = HostReferenceIndex::findChannelPaths(text);
    // From the last to the first, so that earlier offsets stay valid.
    for (auto it = literals.rbegin(); it != literals.rend(); ++it)
    {
        const std::string path = rewritePath(it->myPath, from, node, newName);
        if (path != it->myPath)
            out.replace(it->myBegin, it->myEnd - it->myBegin, escapeLiteral(path, it->myQuote));
    }
    return out;
}

HostRenameRepair::HostRenameRepair(HostNode &node, const std::string &newName)
    : myNode(&node), myOldPath(node.getFullPath())
{
    const HostReferenceIndex &index = node.getDirector()->getReferenceIndex();
    std::vector<HostNode *> subtree;
    forSubtree(node, subtree);
    std::set<std::pair<const HostParm *, int>> seen;
    for (HostNode *target : subtree)
        for (const HostReferrer &ref : index.findNodeReferrers(*target))
        {
            if (!seen.insert({ref.myParm, ref.myComponent}).second)
                continue;
            const HostParm &parm = *ref.myParm;
            const int k = ref.myComponent;
            const std::string &text = parm.getExpression(k);
            std::string rewritten = rewriteText(text, *parm.getNode(), node, newName);
            if (rewritten != text)
                myRewrites.push_back({parm.getNode()->getUniqueId(), parm.getName(), k,
                                      std::move(rewritten), parm.getStringMeaning(k)});
        }
    HostDirector &director = *node.getDirector();
    for (HostMultiParmLinks::Link &link : director.getMultiParmLinks().getAll())
        if (const HostNode *from = director.findNodeById(link.myNodeId))
            if (std::string text = rewritePath(link.myText, *from, node, newName);
                text != link.myText)
                myLinkRewrites.push_back({link.myNodeId, link.myPattern, std::move(text)});
}

void HostRenameRepair::apply(double time, std::vector<std::string> &warnings) const
{
    HostDirector &director = *myNode->getDirector();
    for (const Rewrite &r : myRewrites)
    {
        HostNode *node = director.findNodeById(r.myNodeId);
        HostParm *parm = node ? node->getParm(r.myParm) : nullptr;
        if (!parm)
            continue;
        if (!node->canModify() || parm->isLocked(r.myComponent))
        {
            warnings.push_back(node->getFullPath() + "/" + parm->getChannelName(r.myComponent) +
                               ": cannot update the reference to " + myOldPath);
            continue;
        }
        node->saveComponentForUndo(*parm, r.myComponent);
        node->parmChanging(*parm);
        parm->setString(r.myComponent, time, r.myText, r.myMeaning);
    }
    for (const LinkRewrite &r : myLinkRewrites)
        if (HostNode *node = director.findNodeById(r.myNodeId))
            director.getMultiParmLinks().set(*node, r.myPattern, r.myText, time);
}
