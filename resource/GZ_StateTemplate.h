// GZ_StateTemplate: the template of an interactive viewer state.
#pragma once

#include "resource/GZ_ResourceTemplate.h"
#include "resource/GZ_ViewerType.h"

#include <string>
#include <vector>

class HostOperator;
class HostParmTemplate;

/// A viewer state (an interactive viewer mode), for one viewer type and a mask of networks,
/// optionally standing for one operator type. Unlike the other templates, a registered state
/// stays owned by whoever registered it; the parameter templates and the operator are not
/// owned either. The volatile keys are derived from the hotkey text through the resource
/// manager's findVolatileKeys, whose meaning the host's scripting layer supplies.
class GZ_StateTemplate : public GZ_ResourceTemplate
{
public:
    GZ_StateTemplate(const char *name, const char *english_name, const char *icon_name,
                     void *constructor, HostParmTemplate *templates, GZ_ViewerType viewer_type,
                     unsigned network_mask, int op_independent, const char *volatile_hotkey,
                     HostOperator *op);
    GZ_StateTemplate(const GZ_StateTemplate &) = default;
    GZ_StateTemplate &operator=(const GZ_StateTemplate &) = default;
    ~GZ_StateTemplate() override;

    virtual HostParmTemplate *templates() { return myTemplates; }
    virtual const HostParmTemplate *templates() const { return myTemplates; }
    /// Whether the viewer enters the state even without a node of its operator type.
    virtual bool forceStateToEnter() const { return myOpIndependent > 0; }

    using GZ_ResourceTemplate::initialize;
    /// Replaces everything but the operator, and recomputes the volatile keys.
    void initialize(const char *name, const char *english_name, const char *icon_name,
                    void *constructor, HostParmTemplate *templates, GZ_ViewerType viewer_type,
                    unsigned network_mask, int op_independent, const char *volatile_hotkey,
                    bool hidden);

    const std::string &getIconName() const { return myIconName; }
    const std::string &volatileHotkey() const { return myVolatileHotkey; }
    HostOperator *getOperator() const { return myOperator; }
    GZ_ViewerType viewerType() const { return myViewerType; }
    unsigned networkTypes() const { return myNetworkMask; }
    int opIndependent() const { return myOpIndependent; }

    const std::vector<int> &volatileKeys() const { return myVolatileKeys; }
    const std::vector<int> &volatileKeysModifiers() const { return myVolatileKeysModifiers; }
    /// Recomputes both arrays from the hotkey text (empty when no resource manager exists),
    /// then appends the extra pairs, key i with modifier i.
    void rebuildVolatileKeys(const std::vector<int> *extra_keys = nullptr,
                             const std::vector<int> *extra_modifiers = nullptr);

    bool getSupportsSelectionChange() const { return mySupportsSelectionChange; }
    void setSupportsSelectionChange(bool on) { mySupportsSelectionChange = on; }
    bool getSupportsMoveTool() const { return mySupportsMoveTool; }
    void setSupportsMoveTool(bool on) { mySupportsMoveTool = on; }
    bool getHidden() const { return myHidden; }
    void setHidden(bool on) { myHidden = on; }

protected:
    void setVolatileKeys(const std::vector<int> &keys, const std::vector<int> &modifiers);

private:
    std::string myIconName;
    std::string myVolatileHotkey;
    HostParmTemplate *myTemplates = nullptr;
    HostOperator *myOperator = nullptr;
    GZ_ViewerType myViewerType = GZ_VIEWER_SCENE;
    unsigned myNetworkMask = 0;
    int myOpIndependent = 0;
    std::vector<int> myVolatileKeys;
    std::vector<int> myVolatileKeysModifiers;
    bool mySupportsSelectionChange = false;
    bool mySupportsMoveTool = false;
    bool myHidden = false;
};
