// GZ_ResourceManager: the bindings of handles and selectors to operator types.
#include "resource/GZ_ResourceManager.h"

#include "host/HostOperator.h"
#include "host/HostOperatorTable.h"
#include "host/HostParmTemplate.h"
#include "link/GZ_SettingList.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_SelectorTemplate.h"
#include "resource/gz_OpHandleEntry.h"
#include "resource/gz_OpSelectorEntry.h"
#include "resource/gz_Strings.h"

// ---------------------------------------------------------------------------------------
// Entries of the binding maps

gz_OpHandleEntry *GZ_ResourceManager::findHandleEntry(const std::string &key) const
{
    auto it = myHandleBindings.find(key);
    return it == myHandleBindings.end() ? nullptr : it->second.get();
}

gz_OpSelectorEntry *GZ_ResourceManager::findSelectorEntry(const std::string &key) const
{
    auto it = mySelectorBindings.find(key);
    return it == mySelectorBindings.end() ? nullptr : it->second.get();
}

gz_OpHandleEntry &GZ_ResourceManager::handleEntry(const std::string &key)
{
    std::unique_ptr<gz_OpHandleEntry> &entry = myHandleBindings[key];
    if (!entry)
        entry = std::make_unique<gz_OpHandleEntry>();
    return *entry;
}

gz_OpSelectorEntry &GZ_ResourceManager::selectorEntry(const std::string &key)
{
    std::unique_ptr<gz_OpSelectorEntry> &entry = mySelectorBindings[key];
    if (!entry)
        entry = std::make_unique<gz_OpSelectorEntry>();
    return *entry;
}

void GZ_ResourceManager::eraseHandleEntry(const std::string &key)
{
    myHandleBindings.erase(key);
}

void GZ_ResourceManager::eraseSelectorEntry(const std::string &key)
{
    mySelectorBindings.erase(key);
}

std::string GZ_ResourceManager::lookupKey(HostOperator *op)
{
    if (!op)
        return std::string();
    op->getParmTemplates();
    return getOperatorKey(op);
}

// ---------------------------------------------------------------------------------------
// Handles

// Selects the instance of that type and description, creating it (with default settings
// parsed from `settings`) when the operator type has none yet.
int GZ_ResourceManager::bindInstance(HostOperator *op, const char *gz_name,
                                     const char *gz_description, const char *settings,
                                     GZ_BindingHandleInfo *&instance)
{
    instance = nullptr;
    const GZ_GZTemplate *gz = getOpHandleLinkTemplate(gz_name);
    const HostOperatorTable *table = getOpTableFromOperator(op);
    if (!table || !gz->supportsType(table->getName().c_str()))
        return BIND_BAD_NETWORK;

    gz_OpHandleEntry &entry =
        handleEntry(HostOperatorTable::makeQualifiedName(table->getName(), op->getName()));
    const std::string name = gz::str(gz_name);
    const std::string description = gz::str(gz_description);
    const int found = entry.find(name, description);
    if (found >= 0)
    {
        entry.setCurrentIndex(found);
        instance = entry.current();
        return BIND_OK;
    }
    GZ_SettingList defaults;
    defaults.loadFromSettingString(settings);
    instance = &entry.append(name, description, std::move(defaults));
    return BIND_OK;
}

int GZ_ResourceManager::bind(HostOperator *op, const char *gz_name, const char *gz_description,
                             const char *settings)
{
    if (!getOpHandleLinkTemplate(gz_name))
        return BIND_NO_TEMPLATE;
    GZ_BindingHandleInfo *instance = nullptr;
    return bindInstance(op, gz_name, gz_description, settings, instance);
}

int GZ_ResourceManager::bind(HostOperator *op, const char *gz_name, const char *gz_description,
                             const std::string &op_parm, const std::string &gz_parm,
                             const char *settings)
{
    if (!getOpHandleLinkTemplate(gz_name))
        return BIND_NO_TEMPLATE;
    if (!checkForGZName(gz_name, gz_parm.c_str()))
        return BIND_BAD_GZ_PARM;
    GZ_BindingHandleInfo *instance = nullptr;
    const int result = bindInstance(op, gz_name, gz_description, settings, instance);
    if (result != BIND_OK)
        return result;
    if (instance->hasBinding(op_parm, gz_parm))
        return BIND_EXISTS;
    instance->addBinding(op_parm, gz_parm);
    return BIND_OK;
}

int GZ_ResourceManager::bindScriptOp(HostOperator *op, const char *gz_name,
                                     const char *gz_description, const std::string &op_parm,
                                     const std::string &gz_parm, const char *settings)
{
    const bool no_settings = !settings || !*settings;
    return bind(op, gz_name, gz_description, op_parm, gz_parm, no_settings ? nullptr : settings);
}

int GZ_ResourceManager::unbind(HostOperator *op, const char *gz_description,
                               const std::string &op_parm)
{
    const std::string key = lookupKey(op);
    if (key.empty())
        return BIND_BAD_NETWORK;
    gz_OpHandleEntry *entry = findHandleEntry(key);
    if (!entry)
        return BIND_OK;
    entry->unbind(gz_description, op_parm);
    if (entry->empty())
        eraseHandleEntry(key);
    return BIND_OK;
}

void GZ_ResourceManager::removeAllBindings(HostOperator *op)
{
    unbindSelector(op, nullptr);
    unbind(op, nullptr, std::string());
}

const std::vector<GZ_BindingHandleInfo> *
GZ_ResourceManager::getBindingHandles(HostOperator *op) const
{
    const std::string key = lookupKey(op);
    const gz_OpHandleEntry *entry = key.empty() ? nullptr : findHandleEntry(key);
    return entry ? &entry->handles() : nullptr;
}

// ---------------------------------------------------------------------------------------
// Selectors

int GZ_ResourceManager::bindSelector(HostOperator *op, const char *name, const char *description,
                                     const char *prompt, const char *op_parm, int op_input,
                                     int op_input_req, const char *prim_mask, int allow_drag,
                                     const char *menu, int ast_sel_all, const char *extra_info,
                                     bool skip_parm_check)
{
    const GZ_SelectorTemplate *selector = getSelectorTemplate(name);
    if (!selector)
        return BIND_NO_TEMPLATE;

    const std::string parm = gz::str(op_parm);
    if (!skip_parm_check && !parm.empty())
    {
        // The selection text goes into a whole parameter, never into one component.
        int vec_index = -1;
        const HostParmTemplate *tmpl = getTemplateAndVecId(parm, op, vec_index);
        if (!tmpl || tmpl->getToken() != parm || vec_index != 0)
            return BIND_BAD_OP_PARM;
    }

    const HostOperatorTable *table = getOpTableFromOperator(op);
    if (!table || !selector->supportsType(table->getName().c_str()))
        return BIND_BAD_NETWORK;

    selectorEntry(HostOperatorTable::makeQualifiedName(table->getName(), op->getName()))
        .bind(GZ_BindingSelectorInfo(gz::str(name), gz::str(description), gz::str(prompt), parm,
                                     gz::str(menu), gz::str(prim_mask), op_input, op_input_req != 0,
                                     allow_drag != 0, ast_sel_all != 0, gz::str(extra_info)));
    return BIND_OK;
}

int GZ_ResourceManager::unbindSelector(HostOperator *op, const char *description)
{
    const std::string key = lookupKey(op);
    if (key.empty())
        return BIND_BAD_NETWORK;
    gz_OpSelectorEntry *entry = findSelectorEntry(key);
    if (!entry)
        return BIND_OK;
    entry->unbind(description);
    if (entry->empty())
        eraseSelectorEntry(key);
    return BIND_OK;
}

const std::vector<GZ_BindingSelectorInfo> *
GZ_ResourceManager::getBindingSelectors(HostOperator *op) const
{
    const std::string key = lookupKey(op);
    const gz_OpSelectorEntry *entry = key.empty() ? nullptr : findSelectorEntry(key);
    return entry ? &entry->selectors() : nullptr;
}
