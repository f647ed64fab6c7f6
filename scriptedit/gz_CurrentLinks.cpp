// gz_CurrentLinks: the channel references that lead to one channel of a node.
#include "scriptedit/gz_CurrentLinks.h"

#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostParm.h"
#include "host/HostReferenceIndex.h"

std::string gz_CurrentLinks::read(const HostNode &node, const std::string &channel)
{
    int k = -1;
    const HostParm *parm = node.findChannel(channel, k);
    std::string out;
    if (!parm || !node.getDirector())
        return out;
    const HostReferenceIndex &index = node.getDirector()->getReferenceIndex();
    for (const HostReferrer &ref : index.findReferrers(node, *parm, k))
    {
        // Only a plain reference is a link; an expression that uses the channel is not.
        HostNode *rnode = nullptr;
        HostParm *rparm = nullptr;
        int rk = -1;
        if (!ref.myParm->getChannelReference(ref.myComponent, rnode, rparm, rk) ||
            rnode != &node || rparm != parm || rk != k)
            continue;
        const std::string path = node.getRelativePathTo(*ref.myParm->getNode());
        const std::string &name = ref.myParm->getChannelName(ref.myComponent);
        const std::string link = path == "." ? name : path + "/" + name;
        out += out.empty() ? link : " " + link;
    }
    return out;
}
