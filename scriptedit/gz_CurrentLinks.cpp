// gz_CurrentLinks: the channel references that lead to one channel of a node.
#include "scriptedit/gz_CurrentLinks.h"

#include "host/HostDirector.h"
#include "host/HostMultiParmLinks.h"
#include "host/HostNode.h"
#include "host/HostParm.h"
#include "host/HostReferenceIndex.h"

namespace
{
// Whether an instance channel holds its reference because a multiparm link of its node put
// it there: the link is what is current, not each instance.
bool drivenByLink(const HostMultiParmLinks &links, const HostParm &parm, int k)
{
    const HostNode &from = *parm.getNode();
    for (const HostMultiParmLinks::Link &link : links.findLinksOf(from))
    {
        const int number = HostMultiParmLinks::matchInstance(link.myPattern,
                                                             parm.getChannelName(k));
        if (number >= 0 && parm.getExpression(k) ==
                               HostMultiParmLinks::referenceExpression(parm, link.myText, number))
            return true;
    }
    return false;
}

void append(std::string &out, const std::string &link)
{
    out += out.empty() ? link : " " + link;
}
} // namespace

std::string gz_CurrentLinks::read(const HostNode &node, const std::string &channel)
{
    int k = -1;
    const HostParm *parm = node.findChannel(channel, k);
    std::string out;
    if (!parm || !node.getDirector())
        return out;
    const HostReferenceIndex &index = node.getDirector()->getReferenceIndex();
    const HostMultiParmLinks &links = node.getDirector()->getMultiParmLinks();
    for (const HostReferrer &ref : index.findReferrers(node, *parm, k))
    {
        // Only a plain reference is a link; an expression that uses the channel is not.
        HostNode *rnode = nullptr;
        HostParm *rparm = nullptr;
        int rk = -1;
        if (!ref.myParm->getChannelReference(ref.myComponent, rnode, rparm, rk) ||
            rnode != &node || rparm != parm || rk != k ||
            drivenByLink(links, *ref.myParm, ref.myComponent))
            continue;
        const std::string path = node.getRelativePathTo(*ref.myParm->getNode());
        const std::string &name = ref.myParm->getChannelName(ref.myComponent);
        append(out, path == "." ? name : path + "/" + name);
    }
    for (const HostMultiParmLinks::Link &link : links.findLinksTo(node, channel))
        if (const HostNode *from = node.getDirector()->findNodeById(link.myNodeId))
        {
            const std::string path = node.getRelativePathTo(*from);
            append(out, path == "." ? link.myPattern : path + "/" + link.myPattern);
        }
    return out;
}
