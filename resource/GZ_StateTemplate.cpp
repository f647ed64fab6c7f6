// GZ_StateTemplate: the template of an interactive viewer state.
#include "resource/GZ_StateTemplate.h"

#include "resource/GZ_ResourceManager.h"
#include "resource/gz_Strings.h"

#include <algorithm>

GZ_StateTemplate::GZ_StateTemplate(const char *name, const char *english_name,
                                   const char *icon_name, void *constructor,
                                   HostParmTemplate *templates, GZ_ViewerType viewer_type,
                                   unsigned network_mask, int op_independent,
                                   const char *volatile_hotkey, HostOperator *op)
    : GZ_ResourceTemplate(name, english_name, constructor), myIconName(gz::str(icon_name)),
      myVolatileHotkey(gz::str(volatile_hotkey)), myTemplates(templates), myOperator(op),
      myViewerType(viewer_type), myNetworkMask(network_mask),
      myOpIndependent(op_independent ? 1 : 0)
{
    rebuildVolatileKeys();
}

GZ_StateTemplate::~GZ_StateTemplate() = default;

void GZ_StateTemplate::initialize(const char *name, const char *english_name, const char *icon_name,
                                  void *constructor, HostParmTemplate *templates,
                                  GZ_ViewerType viewer_type, unsigned network_mask,
                                  int op_independent, const char *volatile_hotkey, bool hidden)
{
    GZ_ResourceTemplate::initialize(name, english_name, constructor);
    myIconName = gz::str(icon_name);
    myTemplates = templates;
    myViewerType = viewer_type;
    myNetworkMask = network_mask;
    myOpIndependent = op_independent ? 1 : 0;
    myVolatileHotkey = gz::str(volatile_hotkey);
    myHidden = hidden;
    rebuildVolatileKeys();
}

void GZ_StateTemplate::setVolatileKeys(const std::vector<int> &keys,
                                       const std::vector<int> &modifiers)
{
    myVolatileKeys = keys;
    myVolatileKeysModifiers = modifiers;
}

void GZ_StateTemplate::rebuildVolatileKeys(const std::vector<int> *extra_keys,
                                           const std::vector<int> *extra_modifiers)
{
    std::vector<int> keys, modifiers;
    if (const GZ_ResourceManager *manager = GZgetResourceManager())
        manager->findVolatileKeys(myVolatileHotkey.c_str(), keys, modifiers);
    if (extra_keys && extra_modifiers)
    {
        const size_t n = std::min(extra_keys->size(), extra_modifiers->size());
        for (size_t i = 0; i < n; ++i)
        {
            keys.push_back((*extra_keys)[i]);
            modifiers.push_back((*extra_modifiers)[i]);
        }
    }
    setVolatileKeys(keys, modifiers);
}
