// GZ_PropertyMap: the name index and adding properties for missing channels.
#include "link/GZ_PropertyMap.h"

#include "persistent/GZ_SpareProperty.h"
#include "scriptedit/GZ_EditScriptedParms.h"

#include "host/HostNode.h"
#include "host/HostParmList.h"
#include "host/HostParmNameMap.h"

#include <cstring>

void GZ_PropertyMap::setMap(int count, const GZ_PropertyMapDef *defs)
{
    // The rows are copied: renames change them, and the caller's table stays as it was.
    myDefs.assign(defs, defs + (defs && count > 0 ? count : 0));
    createTokenMap();
}

void GZ_PropertyMap::createTokenMap()
{
    myIndex.clear();
    for (GZ_PropertyMapDef &def : myDefs)
        if (def.getParm())
            myIndex[def.getParm()] = &def;
    for (GZ_PropertyMapDef &def : myDefs)
        for (int i = 0; i < GZ_PropertyMapDef::NUM_CHANNELS; ++i)
        {
            const char *ch = def.getCh(i);
            if (ch && ch != def.getParm())
                myIndex.emplace(ch, &def);
        }
}

const GZ_PropertyMapDef *GZ_PropertyMap::find(const std::string &name) const
{
    auto it = myIndex.find(name);
    return it == myIndex.end() ? nullptr : it->second;
}

bool GZ_PropertyMap::renameParameter(const char *parm, const char *rename,
                                     const char *chRename0, const char *chRename1,
                                     const char *chRename2, const char *chRename3)
{
    auto it = parm ? myIndex.find(parm) : myIndex.end();
    if (it == myIndex.end() || std::strcmp(it->second->getParm(), parm) != 0)
        return false;
    it->second->setRename(rename, chRename0 ? chRename0 : rename, chRename1, chRename2,
                          chRename3);
    return true;
}

bool GZ_PropertyMap::createFromChannel(GZ_EditScriptedParms &parms, HostParmNameMap *renames,
                                       const char *channel)
{
    const GZ_PropertyMapDef *def = channel ? find(channel) : nullptr;
    HostNode *node = parms.getNode();
    if (!def || !node || !def->getRename())
        return false;
    const std::string parm = def->getParm();
    const std::string rename = def->getRename();
    const bool renamed = rename != parm;
    if (node->getParmList().getParm(rename))
    {
        if (renames && renamed)
            renames->add(parm, rename);
        return true;
    }
    for (int i = 0; i < GZ_PropertyMapDef::NUM_CHANNELS && def->getChRename(i); ++i)
        if (def->getCh(i) && std::strcmp(def->getCh(i), def->getChRename(i)) != 0)
            addAlias(*node, def->getCh(i), def->getChRename(i));
    if (renames && renamed)
        renames->add(parm, rename);
    std::string errors;
    return GZ_SpareProperty::addProperty(parms, nullptr, def->getPropFile(), def->getProperty(),
                                         errors, node, GZ_SPARE_PROPERTY_NO_FILTER,
                                         GZ_SPARE_PROPERTY_PACKAGE_MAIN, nullptr);
}

void GZ_PropertyMap::addAlias(HostNode &node, const std::string &alias, const std::string &channel)
{
    if (!node.getParmList().addChannelAlias(alias, channel))
        myPendingAliases.emplace_back(alias, channel);
}

int GZ_PropertyMap::applyPendingAliases(HostNode &node)
{
    std::vector<std::pair<std::string, std::string>> pending;
    pending.swap(myPendingAliases);
    int added = 0;
    for (const auto &alias : pending)
    {
        const std::size_t before = myPendingAliases.size();
        addAlias(node, alias.first, alias.second);
        added += myPendingAliases.size() == before;
    }
    return added;
}
