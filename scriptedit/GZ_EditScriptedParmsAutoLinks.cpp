// GZ_EditScriptedParms: auto-links, the channel references by which a definition drives
// parameters of other nodes (or of its own).
#include "scriptedit/GZ_EditScriptedParms.h"
#include "scriptedit/gz_CurrentLinks.h"
#include "scriptedit/gz_LinkPaths.h"

#include "host/HostDirector.h"
#include "host/HostMultiParmLinks.h"
#include "host/HostNode.h"
#include "host/HostParm.h"
#include "host/HostParmTemplate.h"
#include "host/HostRampNaming.h"

#include <algorithm>
#include <set>
#include <utility>

namespace
{
using Links = std::vector<std::pair<int, std::string>>;

// The links a path given by the user stands for, as (component, absolute link): a parameter
// gives one per channel, a channel one; switchers, and invisible parameters unless asked
// for, give none, and so does a path whose node or parameter is not there.
Links expandPath(const std::string &path, bool include_invisible)
{
    Links out;
    const size_t slash = path.rfind('/');
    HostNode *root = HostDirector::instance()->getRoot();
    if (slash == std::string::npos || !root)
        return out;
    const std::string node_path = gz_LinkPaths::absolutePath(path.substr(0, slash), "/");
    const std::string name = path.substr(slash + 1);
    const HostNode *node = root->findNode(node_path);
    if (!node || name.empty())
        return out;
    const std::string prefix = node_path == "/" ? "/" : node_path + "/";
    if (const int pk = HostMultiParmLinks::findInstancePattern(*node, name); pk >= 0)
        return {{pk, prefix + name}};
    int k = -1;
    const HostParm *parm = node->getParm(name);
    if (!parm)
        parm = node->findChannel(name, k);
    if (!parm || parm->getTemplate().getType().isSwitcher() ||
        (!parm->isVisible() && !include_invisible))
        return out;
    for (int c = k < 0 ? 0 : k; c < (k < 0 ? parm->getVectorSize() : k + 1); ++c)
        out.emplace_back(c, prefix + parm->getChannelName(c));
    return out;
}

std::string join(const std::vector<std::string> &links)
{
    std::string out;
    for (const std::string &link : links)
        out += out.empty() ? link : " " + link;
    return out;
}

// A link path resolved against the edited node.
struct Target
{
    HostNode *myNode = nullptr;
    HostParm *myParm = nullptr;
    int myComponent = -1;
    /// An instance pattern ("pt#"): the target is the node's multiparm link for it.
    std::string myPattern;
};

bool resolveLink(HostNode &edited, const std::string &path, const GZ_EditScriptedParm &def,
                 Target &t, std::string &warning)
{
    const size_t slash = path.rfind('/');
    const std::string node_path = slash == std::string::npos ? "" : path.substr(0, slash);
    const std::string channel = slash == std::string::npos ? path : path.substr(slash + 1);
    t.myNode = node_path.empty() ? &edited : edited.findNode(node_path);
    if (!t.myNode)
        warning = "Unable to find autolink node: " + node_path;
    else if (!t.myNode->canModify())
        warning = "Couldn't modify autolink node: " + t.myNode->getFullPath();
    else if (channel.find('#') != std::string::npos)
    {
        if (HostMultiParmLinks::findInstancePattern(*t.myNode, channel) >= 0)
            t.myPattern = channel;
        else
            warning = "Unable to find destination multiparm channel: " + channel;
    }
    else if (!(t.myParm = t.myNode->findChannel(channel, t.myComponent)))
        warning = "Unable to find destination channel: " + channel;
    if (warning.empty())
        return true;
    warning += "\nLinking parameter: " + def.getLabel();
    return false;
}

bool refersTo(const HostParm &parm, int k, const HostNode &node, const HostParm *to, int tk)
{
    HostNode *rnode = nullptr;
    HostParm *rparm = nullptr;
    int rk = -1;
    return parm.getChannelReference(k, rnode, rparm, rk) && rnode == &node && rparm == to &&
           rk == tk;
}

} // namespace

void GZ_EditScriptedParm::addParametersToAutolink(const std::vector<std::string> &paths,
                                                  const std::string &base,
                                                  bool include_invisible,
                                                  const GZ_EditScriptedParms &parms,
                                                  std::vector<std::string> &warnings)
{
    for (const std::string &path : paths)
        for (const auto &[c, link] : expandPath(path, include_invisible))
        {
            const int k = c < mySize ? c : 0;
            int held = -1;
            const GZ_EditScriptedParm *owner = parms.getParmWithAutolink(link, base, held);
            if (owner == this)
                continue;
            if (owner)
            {
                warnings.push_back(link + " already linked to " + owner->getName());
                continue;
            }
            const std::string &list = myAutolinks.get(k);
            myAutolinks.set(k, list.empty() ? link : list + " " + link);
            myAutolinkChanged[k] = 1;
        }
}

bool GZ_EditScriptedParm::removeAutolinks(const std::vector<std::string> &paths,
                                          const std::string &base)
{
    bool changed = false;
    for (const std::string &path : paths)
        for (const auto &expanded : expandPath(path, /*include_invisible=*/true))
        {
            const std::string wanted = gz_LinkPaths::absolutePath(expanded.second, base);
            for (int k = 0; k < mySize && k < MAX_SIZE; ++k)
            {
                std::vector<std::string> links = gz_LinkPaths::split(myAutolinks.get(k));
                const auto gone = std::remove_if(links.begin(), links.end(),
                                                 [&](const std::string &link)
                                                 { return gz_LinkPaths::absolutePath(link, base) ==
                                                          wanted; });
                if (gone == links.end())
                    continue;
                links.erase(gone, links.end());
                myAutolinks.set(k, join(links));
                myAutolinkChanged[k] = 1;
                changed = true;
            }
        }
    return changed;
}

void GZ_EditScriptedParms::addParametersToAutolinks(GZ_EditScriptedParm *parm,
                                                    const std::vector<std::string> &paths,
                                                    const std::string &base,
                                                    bool include_invisible,
                                                    std::vector<GZ_EditScriptedParm *> &changed,
                                                    std::vector<std::string> &warnings)
{
    if (!parm)
        return;
    uint32_t before[GZ_EditScriptedParm::MAX_SIZE];
    std::string lists[GZ_EditScriptedParm::MAX_SIZE];
    for (int k = 0; k < GZ_EditScriptedParm::MAX_SIZE; ++k)
        lists[k] = parm->getAutolink(k), before[k] = parm->getAutolinkChanged(k);
    parm->addParametersToAutolink(paths, base, include_invisible, *this, warnings);
    for (int k = 0; k < GZ_EditScriptedParm::MAX_SIZE; ++k)
        if (parm->getAutolink(k) != lists[k] || parm->getAutolinkChanged(k) != before[k])
        {
            changed.push_back(parm);
            return;
        }
}

void GZ_EditScriptedParms::applyAutoLinks(std::vector<std::string> &warnings,
                                          std::vector<int> &node_ids,
                                          std::vector<int> &parm_indices)
{
    HostNode *node = getNode();
    if (!node)
        return;
    for (auto &def : myParms)
        if (!def->getName().empty() && !def->getIsGroupEnd())
        {
            const std::vector<std::string> &channels = def->getChannelNames();
            for (int k = 0; k < static_cast<int>(channels.size()) &&
                            k < GZ_EditScriptedParm::MAX_SIZE;
                 ++k)
                def->setCurrentLink(k, gz_CurrentLinks::read(*node, channels[k]));
        }
    const double time = node->getDirector()->getTime();
    for (auto &def : myParms)
    {
        const std::vector<std::string> &channels = def->getChannelNames();
        for (int k = 0; k < static_cast<int>(channels.size()) && k < GZ_EditScriptedParm::MAX_SIZE;
             ++k)
            if (def->getAutolinkChanged(k))
                applyComponent(*node, *def, k, time, warnings, node_ids, parm_indices);
    }
}

void GZ_EditScriptedParms::applyComponent(HostNode &node, GZ_EditScriptedParm &def, int k,
                                          double time, std::vector<std::string> &warnings,
                                          std::vector<int> &node_ids,
                                          std::vector<int> &parm_indices)
{
    const std::string base = node.getFullPath();
    // Paths are compared as absolute ones but resolved (and reported) as written.
    const std::vector<std::string> desired_list = gz_LinkPaths::split(def.getAutolink(k));
    const std::vector<std::string> current_list = gz_LinkPaths::split(def.getCurrentLink(k));
    std::set<std::string> desired, current;
    for (const std::string &link : desired_list)
        desired.insert(gz_LinkPaths::absolutePath(link, base));
    for (const std::string &link : current_list)
        current.insert(gz_LinkPaths::absolutePath(link, base));
    int ek = -1;
    HostParm *eparm = node.findChannel(def.getChannelNames()[k], ek);
    if (!eparm)
        return;
    HostMultiParmLinks &links = node.getDirector()->getMultiParmLinks();
    auto record = [&](Target &t)
    {
        node_ids.push_back(t.myNode->getUniqueId());
        parm_indices.push_back(t.myParm->getIndex());
    };
    // A path that cannot be resolved is reported and ends the component.
    auto resolve = [&](const std::string &link, Target &t)
    {
        std::string warning;
        if (resolveLink(node, link, def, t, warning))
            return true;
        warnings.push_back(warning);
        return false;
    };
    for (const std::string &link : current_list)
    {
        Target t;
        if (desired.count(gz_LinkPaths::absolutePath(link, base)))
            continue;
        if (!resolve(link, t))
            return;
        if (!t.myPattern.empty())
        {
            // Only a current link comes here, and the link stands for its instances.
            links.set(*t.myNode, t.myPattern, std::string(), time);
            continue;
        }
        if (!refersTo(*t.myParm, t.myComponent, node, eparm, ek))
            continue;
        t.myNode->saveParmForUndo(*t.myParm);
        t.myNode->parmChanging(*t.myParm);
        t.myParm->bakeValue(t.myComponent, time);
        if (HostRampNaming::isRamp(t.myParm->getTemplate()))
            deleteRampAutoLinks(*t.myNode, t.myParm->getName(),
                                HostRampNaming::isColor(t.myParm->getTemplate()), time);
        record(t);
    }
    for (const std::string &link : desired_list)
    {
        Target t;
        if (current.count(gz_LinkPaths::absolutePath(link, base)))
            continue;
        if (!resolve(link, t))
            return;
        const std::string path = t.myNode->getRelativePathTo(node);
        const std::string ref = (path == "." ? "" : path + "/") + eparm->getChannelName(ek);
        if (!t.myPattern.empty())
        {
            links.set(*t.myNode, t.myPattern, ref, time);
            continue;
        }
        if (refersTo(*t.myParm, t.myComponent, node, eparm, ek))
            continue;
        if (t.myParm->hasChannel(t.myComponent) && t.myParm != eparm)
        {
            // The animation the target had moves to the parameter that now drives it.
            node.saveParmForUndo(*eparm);
            node.parmChanging(*eparm);
            eparm->copyChannel(ek, *t.myParm, t.myComponent);
            node.parmChanged(*eparm);
        }
        const bool text = t.myParm->getType().isString() || t.myParm->getType().isData();
        t.myNode->saveParmForUndo(*t.myParm);
        t.myNode->parmChanging(*t.myParm);
        t.myParm->setString(t.myComponent, time, (text ? "chs(\"" : "ch(\"") + ref + "\")",
                            HOST_STRING_EXPRESSION);
        // A multiparm (or ramp) target gets the instances its new count calls for.
        if (t.myParm->hasInstances())
            t.myNode->getParmList().setInstanceCount(
                *t.myParm, static_cast<int>(t.myParm->evalFloat(0, time)));
        // Points follow only a ramp of the same kind: other sources have no point channels.
        const bool color = HostRampNaming::isColor(t.myParm->getTemplate());
        if (HostRampNaming::isRamp(t.myParm->getTemplate()) &&
            HostRampNaming::isRamp(eparm->getTemplate()) &&
            HostRampNaming::isColor(eparm->getTemplate()) == color)
            addRampAutoLinks(*t.myNode, t.myParm->getName(), color, path == "." ? "" : path + "/",
                             eparm->getName(), time);
        record(t);
    }
}

void GZ_EditScriptedParms::addRampAutoLinks(HostNode &node, const std::string &target, bool color,
                                            const std::string &prefix, const std::string &source,
                                            double time)
{
    const std::vector<std::string> to = HostRampNaming::pointPatterns(target, color);
    const std::vector<std::string> from = HostRampNaming::pointPatterns(source, color);
    for (size_t i = 0; i < to.size(); ++i)
        node.getDirector()->getMultiParmLinks().set(node, to[i], prefix + from[i], time);
}

void GZ_EditScriptedParms::deleteRampAutoLinks(HostNode &node, const std::string &target,
                                               bool color, double time)
{
    for (const std::string &pattern : HostRampNaming::pointPatterns(target, color))
        node.getDirector()->getMultiParmLinks().set(node, pattern, std::string(), time);
}

bool GZ_EditScriptedParms::updateAutoLinksForNameChange(const std::string &base,
                                                        const std::string &old_path,
                                                        const std::string &new_path)
{
    if (base.empty() || old_path.empty() || new_path.empty())
        return false;
    const std::string from = old_path + "/";
    const std::string to = new_path + "/";
    bool any = false;
    for (auto &def : myParms)
        for (int k = 0; k < GZ_EditScriptedParm::MAX_SIZE; ++k)
        {
            std::vector<std::string> links = gz_LinkPaths::split(def->getAutolink(k));
            bool replaced = false;
            for (std::string &link : links)
            {
                link = gz_LinkPaths::absolutePath(link, base);
                if (link.compare(0, from.size(), from) == 0)
                {
                    link = to + link.substr(from.size());
                    replaced = true;
                }
            }
            if (!replaced)
                continue;
            def->setAutolink(k, join(links));
            any = true;
        }
    return any;
}

void GZ_EditScriptedParms::updateNodesFromApplyAutoLinks(const std::vector<int> &node_ids,
                                                         const std::vector<int> &parm_indices)
{
    std::set<std::pair<int, int>> done;
    for (size_t i = 0; i < node_ids.size() && i < parm_indices.size(); ++i)
    {
        if (!done.insert({node_ids[i], parm_indices[i]}).second)
            continue;
        HostNode *node = HostDirector::instance()->findNodeById(node_ids[i]);
        HostParm *parm = node ? node->getParmList().getParm(parm_indices[i]) : nullptr;
        if (parm)
            node->parmChanged(*parm);
    }
}
