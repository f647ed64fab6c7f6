// gz_CurrentLinks: the channel references that lead to one channel of a node.
#include "scriptedit/gz_CurrentLinks.h"

#include "host/HostDirector.h"
#include "host/HostNetwork.h"
#include "host/HostNode.h"
#include "host/HostParm.h"

namespace
{
void collect(const HostNode &target, const HostParm *tparm, int tk, const HostNode &node,
             std::string &out)
{
    const HostParmList &list = node.getParmList();
    for (int i = 0; i < list.getEntries(); ++i)
    {
        const HostParm *parm = list.getParm(i);
        for (int k = 0; k < parm->getVectorSize(); ++k)
        {
            HostNode *rnode = nullptr;
            HostParm *rparm = nullptr;
            int rk = -1;
            if (!parm->getChannelReference(k, rnode, rparm, rk))
                continue;
            if (rnode != &target || rparm != tparm || rk != tk)
                continue;
            std::string path = target.getRelativePathTo(node);
            std::string link =
                path == "." ? parm->getChannelName(k) : path + "/" + parm->getChannelName(k);
            out += out.empty() ? link : " " + link;
        }
    }
    if (HostNetwork *net = node.getChildNetwork())
        for (int i = 0; i < net->getNumNodes(); ++i)
            collect(target, tparm, tk, *net->getNode(i), out);
}
} // namespace

std::string gz_CurrentLinks::read(const HostNode &node, const std::string &channel)
{
    int k = -1;
    const HostParm *parm = node.findChannel(channel, k);
    std::string out;
    if (!parm || !node.getDirector())
        return out;
    collect(node, parm, k, *node.getDirector()->getRoot(), out);
    return out;
}
