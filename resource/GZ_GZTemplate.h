// GZ_GZTemplate: the template of an op-handle-link, a handle as bound to operator parameters.
#pragma once

#include "resource/GZ_ResourceTemplate.h"

#include <string>
#include <unordered_map>
#include <vector>

/// Describes an op-handle-link type: the networks it supports, its icon, and the names of
/// the handle parameters that bindings connect to operator parameters. Instances are
/// GZ_OpHandleLink objects made through the constructor joined from the class manager.
/// Not copyable: the registry holds each one by pointer and links keep pointers to it.
class GZ_GZTemplate : public GZ_ResourceTemplate
{
public:
    /// `network_types` is a blank-separated list of network tokens (stored in lower case);
    /// `parm_names` is a null-terminated list, entry i getting index i.
    GZ_GZTemplate(const char *name, const char *english_name, const char *network_types,
                  const char *icon_name, const char *const *parm_names, short ethereal,
                  unsigned viewer_mask, bool display_always);
    GZ_GZTemplate(const GZ_GZTemplate &) = delete;
    GZ_GZTemplate &operator=(const GZ_GZTemplate &) = delete;
    ~GZ_GZTemplate() override;

    /// Whether `network_token` (any case) is one of the whole words of the network types.
    bool supportsType(const char *network_token) const;
    const std::string &getNetworkTypes() const { return myNetworkTypes; }
    const std::string &iconName() const { return myIconName; }

    /// The help text of the handle type, read on first use from "config/Help/handle/<name>"
    /// on the host's search path and kept.
    const std::string &getHelp() const;

    const std::unordered_map<std::string, int> &parmNameTable() const { return myParmNameTable; }
    const std::vector<std::string> &parmNameList() const { return myParmNameList; }
    /// Index of a handle parameter, or -1.
    int parmIndex(const std::string &parm_name) const;

    /// 0 drawn normally, non-zero ethereal, 2 always ethereal.
    short getEthereal() const { return myEthereal; }
    unsigned getViewerMask() const { return myViewerMask; }
    bool isDisplayAlways() const { return myDisplayAlways; }

protected:
    /// Adds a handle parameter to both the name table and the end of the name list.
    /// Derived templates that learn their parameters later (scripted handles) use it.
    void addParmName(const char *name, int index);

private:
    std::string myNetworkTypes;
    std::string myIconName;
    mutable bool myHelpLoaded = false;
    mutable std::string myHelp;
    std::unordered_map<std::string, int> myParmNameTable;
    std::vector<std::string> myParmNameList;
    short myEthereal = 0;
    unsigned myViewerMask = 0;
    bool myDisplayAlways = false;
};
