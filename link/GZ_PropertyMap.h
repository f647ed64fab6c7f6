// GZ_PropertyMap: finds the catalogue property that provides a parameter a tool asks for.
#pragma once

#include "link/GZ_PropertyMapDef.h"

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

class GZ_EditScriptedParms;
class HostNode;
class HostParmNameMap;

/// A table of definitions (kept by the caller) and an index from parameter and channel names
/// to them. A parameter name always selects its own definition (the last one of that name);
/// a channel name belongs to the first definition that claims it.
class GZ_PropertyMap
{
public:
    GZ_PropertyMap() = default;
    virtual ~GZ_PropertyMap() = default;

    void setMap(int count, const GZ_PropertyMapDef *defs);
    /// Renames the parameter `parm` (a channel name alone selects nothing); a null first
    /// channel rename takes `rename`.
    bool renameParameter(const char *parm, const char *rename, const char *chRename0,
                         const char *chRename1, const char *chRename2, const char *chRename3);
    /// Makes the parameter behind `channel` available on the set's node: true when the node
    /// already has it or its property was added to `parms`.
    bool createFromChannel(GZ_EditScriptedParms &parms, HostParmNameMap *renames,
                           const char *channel);
    /// The definition indexed under `name`, or null.
    const GZ_PropertyMapDef *find(const std::string &name) const;
    /// Registers the channel aliases that createFromChannel could not register while the
    /// channels were not yet on the node (call after the set was handed to the node).
    /// Returns how many were registered; the rest are kept for a later call.
    int applyPendingAliases(HostNode &node);

private:
    void createTokenMap();
    void addAlias(HostNode &node, const std::string &alias, const std::string &channel);

    std::unordered_map<std::string, GZ_PropertyMapDef *> myIndex;
    std::vector<GZ_PropertyMapDef> myDefs;
    std::vector<std::pair<std::string, std::string>> myPendingAliases;
};
