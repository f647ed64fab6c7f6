// GZ_ResourceManager: construction, the library entry points, types, registration and lookups.
#include "resource/GZ_ResourceManager.h"

#include "host/HostDiagnostics.h"
#include "host/HostOperator.h"
#include "host/HostOperatorTable.h"
#include "host/HostParmTemplate.h"
#include "link/GZ_SettingList.h"
#include "resource/GZ_ClassManager.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_HandleTemplate.h"
#include "resource/GZ_SelectorTemplate.h"
#include "resource/GZ_StateTemplate.h"
#include "resource/gz_OpHandleEntry.h"
#include "resource/gz_OpSelectorEntry.h"
#include "resource/gz_Strings.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <iostream>

namespace
{

GZ_ResourceManager *theInstance = nullptr;
// Only the first manager of the process becomes the instance and registers the built-in
// tables; a manager made after the instance was destroyed is an empty registry.
bool theFirstConstruction = true;
// Host table type names ("SOP") to network types; filled by the first construction.
std::unordered_map<std::string, GZ_NetworkType> theTableTypes;

// The library's network types are the host's, in the same order: the names are the host's.
static_assert(static_cast<int>(GZ_NETWORK_MAX_TYPES) == static_cast<int>(HOST_NUM_NETWORK_TYPES),
              "network types and host tables differ");
static_assert(static_cast<int>(GZ_NETWORK_TOP) == static_cast<int>(HOST_NETWORK_TOP),
              "network types and host tables differ");
const char *const theViewerTokens[GZ_NUM_VIEWER_TYPES] = {"SceneViewer", "CompositeViewer",
                                                          "SceneGraphViewer"};

} // namespace

bool GZ_ResourceManager::ourPrintWarnings = true;
bool GZ_ResourceManager::theHideLockedHandleParts = true;
bool GZ_ResourceManager::theScopeChannelsOnKey = true;
bool GZ_ResourceManager::theAddScopedChannels = false;
bool GZ_ResourceManager::theOpenChannelEditorOnScope = false;
GZ_ResourceManager::PersistentHandleSaver GZ_ResourceManager::ourPersistentHandleSaver = nullptr;

// ---------------------------------------------------------------------------------------
// Library entry

GZ_ResourceManager *GZcreateResourceManager(bool print_warnings)
{
    if (theInstance)
        return theInstance;
    GZ_ResourceManager *manager = nullptr;
    {
        GZ_ResourceManager::WarningScope warnings(print_warnings);
        // The instance pointer owns the manager; it lives until the host deletes it.
        manager = new GZ_ResourceManager();
    }
    // Once the first instance has been destroyed, a new manager is an empty registry that
    // nothing can reach; keeping it would only leak it.
    if (manager != theInstance)
        delete manager;
    return theInstance;
}

GZ_ResourceManager *GZgetResourceManager()
{
    return theInstance;
}

bool GZresourceManagerExists()
{
    return theInstance != nullptr;
}

// ---------------------------------------------------------------------------------------
// Construction and destruction

GZ_ResourceManager::GZ_ResourceManager()
{
    if (!theFirstConstruction)
        return;
    theFirstConstruction = false;
    theInstance = this;
    for (int i = 0; i < GZ_NETWORK_MAX_TYPES; ++i)
        theTableTypes[HostOperatorTable::getNetworkTypeName(i)] = static_cast<GZ_NetworkType>(i);

    installCommands();
    registerOpHandleLinks();
    registerCop2HandleLinks();
    registerOpHandleConstructors();
    registerSelectors();
    registerSelectorConstructors();
}

GZ_ResourceManager::~GZ_ResourceManager()
{
    myHandles.clear();
    myOpHandleLinks.clear();
    mySelectors.clear();
    myHandleBindings.clear();
    mySelectorBindings.clear();
    clearOpGZSettings();
    myLastGZSettingTable.clear();
    // A second manager (made after the first was destroyed) never became the instance and
    // must not clear it.
    if (theInstance == this)
        theInstance = nullptr;
    mySaveCallbacks.clear();
}

void GZ_ResourceManager::registerOpHandleConstructors()
{
    const GZ_ClassManager *classes = GZgetClassManager();
    for (int i = 0; i < classes->getNumGZs(); ++i)
    {
        if (GZ_GZTemplate *gz = getOpHandleLinkTemplate(classes->getGZName(i).c_str()))
            gz->constructor(classes->getGZConstructor(i));
    }
}

void GZ_ResourceManager::registerSelectorConstructors()
{
    const GZ_ClassManager *classes = GZgetClassManager();
    for (int i = 0; i < classes->getNumSelectors(); ++i)
    {
        GZ_SelectorTemplate *selector = getSelectorTemplate(classes->getSelectorName(i).c_str());
        if (!selector)
            continue;
        selector->constructor(classes->getSelectorConstructor(i));
        selector->data(classes->getSelectorData(i));
    }
}

// ---------------------------------------------------------------------------------------
// Warnings

void GZ_ResourceManager::printWarning(const char *format, ...)
{
    if (!ourPrintWarnings)
        return;
    va_list args;
    va_start(args, format);
    va_list again;
    va_copy(again, args);
    const int size = std::vsnprintf(nullptr, 0, format, args);
    va_end(args);
    std::string text(size > 0 ? static_cast<size_t>(size) : 0, '\0');
    if (size > 0)
        std::vsnprintf(&text[0], text.size() + 1, format, again);
    va_end(again);
    HostDiagnostics::report(HostDiagSeverity::Warning, "", 0, text);
}

void GZ_ResourceManager::printWarningAt(const std::string &file, int line,
                                        const std::string &message)
{
    if (!ourPrintWarnings)
        return;
    const std::string shown = HostDiagnostics::upToNul(message);
    HostDiagnostics::report(HostDiagSeverity::Warning, file, line, shown,
                            file + "[" + std::to_string(line) + "] " + shown);
}

// ---------------------------------------------------------------------------------------
// Network and viewer types

const char *GZ_ResourceManager::getNetworkTypeName(GZ_NetworkType type)
{
    return HostOperatorTable::getNetworkToken(type);
}

bool GZ_ResourceManager::getNetworkType(const char *table_name, GZ_NetworkType &type)
{
    if (!table_name)
        return false;
    auto it = theTableTypes.find(table_name);
    if (it == theTableTypes.end())
        return false;
    type = it->second;
    return true;
}

GZ_NetworkType GZ_ResourceManager::getFirstNetworkType(unsigned mask)
{
    for (int i = 0; i < GZ_NETWORK_MAX_TYPES; ++i)
    {
        if (mask & (1u << i))
            return static_cast<GZ_NetworkType>(i);
    }
    return GZ_NETWORK_OBJ;
}

bool GZ_ResourceManager::getViewerType(const char *token, GZ_ViewerType &type)
{
    if (!token)
        return false;
    for (int i = 0; i < GZ_NUM_VIEWER_TYPES; ++i)
    {
        if (std::string(token) == theViewerTokens[i])
        {
            type = static_cast<GZ_ViewerType>(i);
            return true;
        }
    }
    return false;
}

void GZ_ResourceManager::getViewerTypeToken(GZ_ViewerType type, std::string &token)
{
    token = (type >= 0 && type < GZ_NUM_VIEWER_TYPES) ? theViewerTokens[type] : "";
}

void GZ_ResourceManager::getChannelScopeCommandPrefix(std::string &prefix)
{
    prefix = "chscope";
    if (theOpenChannelEditorOnScope)
        prefix += " -w";
}

// ---------------------------------------------------------------------------------------
// Operators and parameter templates

HostOperatorTable *GZ_ResourceManager::getOpTableFromOperator(const HostOperator *op)
{
    if (!op)
        return nullptr;
    for (int i = 0; i < GZ_NETWORK_MAX_TYPES; ++i)
    {
        // The standard table of network type i is the one named by its network token.
        HostOperatorTable *table = HostOperatorTable::getTable(static_cast<HostNetworkType>(i));
        if (table && table->getOperator(op->getName()) == op)
            return table;
    }
    return nullptr;
}

std::string GZ_ResourceManager::getOperatorKey(const HostOperator *op)
{
    const HostOperatorTable *table = getOpTableFromOperator(op);
    if (!table)
        return std::string();
    return HostOperatorTable::makeQualifiedName(table->getName(), op->getName());
}

const HostParmTemplate *GZ_ResourceManager::findParmTemplate(HostOperator &op,
                                                             const char *parm_name, int vec_index,
                                                             int *template_index)
{
    const std::string name = gz::str(parm_name);
    const HostParmTemplate *templates = op.getParmTemplates();
    for (int i = 0; templates && !templates[i].isTerminator(); ++i)
    {
        if (templates[i].getVectorSize() <= vec_index)
            continue;
        if (templates[i].getToken() != name)
            continue;
        if (template_index)
            *template_index = i;
        return &templates[i];
    }
    printWarning("WARNING: Invalid op parm name  op: %s parm_name: %s parm idx: %d",
                 op.getName().c_str(), name.c_str(), vec_index);
    return nullptr;
}

HostOperator *GZ_ResourceManager::findOperator(const char *full_name, std::string *table_name) const
{
    std::string table, name;
    HostOperatorTable::splitQualifiedName(gz::str(full_name), table, name);
    if (table.empty())
        table = "Unknown";
    if (table_name)
        *table_name = table;
    HostOperatorTable *op_table = HostOperatorTable::getTable(table);
    return op_table ? op_table->getOperator(name) : nullptr;
}

HostOperator *GZ_ResourceManager::findOperator(GZ_NetworkType type, const char *name,
                                               bool warn) const
{
    HostOperatorTable *table = HostOperatorTable::getTable(static_cast<HostNetworkType>(type));
    HostOperator *op = table ? table->getOperator(gz::str(name)) : nullptr;
    if (!op && warn)
        printWarning("WARNING: Invalid op name network: %s op: %s", getNetworkTypeName(type),
                     gz::str(name).c_str());
    return op;
}

// Whether a template owns `channel_name` by its name: a begin/end-named vector owns every
// channel that ends in its name ("beginrot" for "rot"); others only their exact name.
static bool isChannelCandidate(const HostParmTemplate &tmpl, const std::string &channel_name)
{
    const std::string &token = tmpl.getToken();
    if (tmpl.getType().namesBeginEnd() && tmpl.getVectorSize() > 1)
    {
        return channel_name.size() > token.size() &&
               channel_name.compare(channel_name.size() - token.size(), token.size(), token) == 0;
    }
    return channel_name == token;
}

const HostParmTemplate *GZ_ResourceManager::getTemplateAndVecId(const std::string &channel_name,
                                                                HostOperator *op,
                                                                int &vec_index) const
{
    vec_index = -1;
    const HostParmTemplate *templates = op ? op->getParmTemplates() : nullptr;
    for (int i = 0; templates && !templates[i].isTerminator(); ++i)
    {
        const HostParmTemplate &tmpl = templates[i];
        if (!isChannelCandidate(tmpl, channel_name))
            continue;
        if (tmpl.getVectorSize() < 2)
        {
            vec_index = 0;
            return &tmpl;
        }
        for (int k = 0; k < tmpl.getVectorSize(); ++k)
        {
            if (tmpl.getChannelName(k) == channel_name)
            {
                vec_index = k;
                return &tmpl;
            }
        }
    }
    return nullptr;
}

void GZ_ResourceManager::getChannelNameFromParmAndVec(std::string &channel, HostOperator *op,
                                                      const char *parm_name, int vec_index) const
{
    const std::string name = gz::str(parm_name);
    // Always reported: it asks the author of an old bindings file to update it.
    HostDiagnostics::report(HostDiagSeverity::Warning, "", 0,
                            "WARNING: Legacy bindhandle format for " +
                                (op ? op->getQualifiedName() : std::string()) + " '" + name + " " +
                                std::to_string(vec_index) +
                                "'. Use 'channel handleparm' format instead.");
    channel = name;
    const HostParmTemplate *templates = op ? op->getParmTemplates() : nullptr;
    for (int i = 0; templates && !templates[i].isTerminator(); ++i)
    {
        if (templates[i].getToken() == name)
        {
            channel = templates[i].getChannelName(vec_index);
            return;
        }
    }
}

// ---------------------------------------------------------------------------------------
// Op-handle-link parameters

bool GZ_ResourceManager::isValidGzParmName(const std::string &gz_type,
                                           const std::string &parm_name) const
{
    const GZ_GZTemplate *gz = getOpHandleLinkTemplate(gz_type.c_str());
    return gz && gz->parmIndex(parm_name) >= 0;
}

int GZ_ResourceManager::checkForGZName(const char *gz_type, const char *parm_name) const
{
    const GZ_GZTemplate *gz = getOpHandleLinkTemplate(gz_type);
    return (gz && gz->parmIndex(gz::str(parm_name)) >= 0) ? 1 : 0;
}

bool GZ_ResourceManager::isGZEthereal(const char *gz_type, bool *always) const
{
    const GZ_GZTemplate *gz = getOpHandleLinkTemplate(gz_type);
    if (!gz || gz->getEthereal() == 0)
        return false;
    if (always)
        *always = gz->getEthereal() == 2;
    return true;
}

const std::vector<std::string> &GZ_ResourceManager::getBuiltinOpHandleNames()
{
    if (!myBuiltinOpHandleNames.empty())
        return myBuiltinOpHandleNames;
    const std::vector<std::string> &scripted = getViewerHandleTypeNames();
    const std::unordered_set<std::string> excluded(scripted.begin(), scripted.end());
    for (const auto &entry : myOpHandleLinks)
    {
        if (!excluded.count(entry.first))
            myBuiltinOpHandleNames.push_back(entry.first);
    }
    // The registry is hashed; sorting makes listings independent of the hash order.
    std::sort(myBuiltinOpHandleNames.begin(), myBuiltinOpHandleNames.end());
    return myBuiltinOpHandleNames;
}

// ---------------------------------------------------------------------------------------
// Save callbacks

void GZ_ResourceManager::addSaveCallback(void (*callback)(void *), void *data)
{
    mySaveCallbacks.add(callback, data);
}

void GZ_ResourceManager::removeSaveCallback(void (*callback)(void *), void *data)
{
    mySaveCallbacks.remove(callback, data);
}

void GZ_ResourceManager::setPersistentHandleSaver(PersistentHandleSaver saver)
{
    ourPersistentHandleSaver = saver;
}

// ---------------------------------------------------------------------------------------
// Registration

int GZ_ResourceManager::registerHandle(GZ_HandleTemplate *handle)
{
    if (!handle)
        return 0;
    if (myHandles.count(handle->name()))
    {
        printWarning("WARNING: The %s handle has already been registered.", handle->name().c_str());
        return 0;
    }
    myHandles[handle->name()].reset(handle);
    return 1;
}

int GZ_ResourceManager::registerOpHandleLink(GZ_GZTemplate *gz)
{
    if (!gz)
        return 0;
    if (myOpHandleLinks.count(gz->name()))
    {
        printWarning("WARNING: The %s op handle has already been registered.", gz->name().c_str());
        return 0;
    }
    myOpHandleLinks[gz->name()].reset(gz);
    return 1;
}

int GZ_ResourceManager::registerSelector(GZ_SelectorTemplate *selector)
{
    if (!selector)
        return 0;
    if (mySelectors.count(selector->name()))
    {
        printWarning("WARNING: The %s input selector has already been registered.",
                     selector->name().c_str());
        return 0;
    }
    mySelectors[selector->name()].reset(selector);
    return 1;
}

int GZ_ResourceManager::registerState(GZ_StateTemplate *state)
{
    if (!state || state->viewerType() < 0 || state->viewerType() >= GZ_NUM_VIEWER_TYPES)
        return 0;
    const bool known = !myStateNames.insert(state->name()).second;
    bool appended = false;
    for (int network = GZ_NETWORK_TOP; network >= GZ_NETWORK_OBJ; --network)
    {
        const unsigned bit = 1u << network;
        if (!(state->networkTypes() & bit))
            continue;
        StateList &list =
            myStateLists[stateListIndex(state->viewerType(), static_cast<GZ_NetworkType>(network))];
        if (known && std::find(list.begin(), list.end(), state) != list.end())
        {
            printWarning("WARNING: The %s state has already been registered in network %d",
                         state->name().c_str(), static_cast<int>(bit));
            continue;
        }
        list.push_back(state);
        appended = true;
    }
    return appended ? 1 : 0;
}

int GZ_ResourceManager::adoptState(std::unique_ptr<GZ_StateTemplate> state)
{
    if (!registerState(state.get()))
        return 0;
    const GZ_StateTemplate *key = state.get();
    myOwnedStates[key] = std::move(state);
    return 1;
}

// ---------------------------------------------------------------------------------------
// Registry lookups

bool GZ_ResourceManager::containsHandle(const char *name) const
{
    return getHandleTemplate(name) != nullptr;
}

bool GZ_ResourceManager::containsOpHandleLink(const char *name) const
{
    return getOpHandleLinkTemplate(name) != nullptr;
}

bool GZ_ResourceManager::containsSelector(const char *name) const
{
    return getSelectorTemplate(name) != nullptr;
}

template <class Map> static auto findTemplate(const Map &map, const char *name)
{
    auto it = name ? map.find(name) : map.end();
    return it == map.end() ? nullptr : it->second.get();
}

GZ_HandleTemplate *GZ_ResourceManager::getHandleTemplate(const char *name) const
{
    return findTemplate(myHandles, name);
}

GZ_GZTemplate *GZ_ResourceManager::getOpHandleLinkTemplate(const char *name) const
{
    return findTemplate(myOpHandleLinks, name);
}

GZ_SelectorTemplate *GZ_ResourceManager::getSelectorTemplate(const char *name) const
{
    return findTemplate(mySelectors, name);
}

// ---------------------------------------------------------------------------------------
// States

int GZ_ResourceManager::stateListIndex(GZ_ViewerType viewer, GZ_NetworkType network)
{
    // Out-of-range types fall back to the first list, as callers rely on.
    const int v = (viewer < 0 || viewer >= GZ_NUM_VIEWER_TYPES) ? 0 : viewer;
    const int n = (network < 0 || network >= GZ_NETWORK_MAX_TYPES) ? 0 : network;
    return v * GZ_NETWORK_MAX_TYPES + n;
}

const std::vector<GZ_StateTemplate *> &GZ_ResourceManager::stateList(GZ_ViewerType viewer,
                                                                     GZ_NetworkType network) const
{
    return myStateLists[stateListIndex(viewer, network)];
}

const std::vector<GZ_StateTemplate *> &GZ_ResourceManager::stateList(GZ_ViewerType viewer,
                                                                     const char *table_name) const
{
    GZ_NetworkType network = GZ_NETWORK_OBJ;
    getNetworkType(table_name, network);
    return stateList(viewer, network);
}

GZ_StateTemplate *GZ_ResourceManager::getStateTemplate(HostOperator *op, GZ_ViewerType viewer,
                                                       const char *table_name) const
{
    const StateList &list = stateList(viewer, table_name);
    for (auto it = list.rbegin(); it != list.rend(); ++it)
    {
        if ((*it)->getOperator() == op)
            return *it;
    }
    return nullptr;
}

GZ_StateTemplate *GZ_ResourceManager::getStateTemplate(const char *name, GZ_ViewerType viewer,
                                                       const char *table_name) const
{
    const std::string wanted = gz::str(name);
    const StateList &list = stateList(viewer, table_name);
    for (auto it = list.rbegin(); it != list.rend(); ++it)
    {
        if ((*it)->name() == wanted)
            return *it;
    }
    return nullptr;
}

bool GZ_ResourceManager::validStateTemplateName(const char *name) const
{
    return myStateNames.count(gz::str(name)) == 0;
}

bool GZ_ResourceManager::containsState(const char *name, GZ_ViewerType viewer,
                                       unsigned network_mask) const
{
    const std::string wanted = gz::str(name);
    if (viewer < 0 || viewer >= GZ_NUM_VIEWER_TYPES || !myStateNames.count(wanted))
        return false;
    for (int network = 0; network < GZ_NETWORK_MAX_TYPES; ++network)
    {
        if (!(network_mask & (1u << network)))
            continue;
        const StateList &list = stateList(viewer, static_cast<GZ_NetworkType>(network));
        for (const GZ_StateTemplate *state : list)
        {
            if (state->name() == wanted)
                return true;
        }
    }
    return false;
}

bool GZ_ResourceManager::operatorStateMandatory(const char *op_name, const char *table_name) const
{
    HostOperatorTable *table = HostOperatorTable::getTable(gz::str(table_name));
    const HostOperator *op = table ? table->getOperator(gz::str(op_name)) : nullptr;
    return op && !op->isStateOptional();
}

void GZ_ResourceManager::saveStateToCreate(const char *name)
{
    myStateToCreate = gz::str(name);
}

void GZ_ResourceManager::rebuildVolatileKeys()
{
    for (StateList &list : myStateLists)
    {
        for (GZ_StateTemplate *state : list)
            state->rebuildVolatileKeys();
    }
}

// ---------------------------------------------------------------------------------------
// Scripted resources: neutral defaults, overridden by the host's scripting layer

GZ_PythonResource::RegisterStatus
GZ_ResourceManager::getViewerStateRegisterStatus(const char *name, GZ_ViewerType viewer,
                                                 const char *table_name)
{
    return getStateTemplate(name, viewer, table_name) ? GZ_PythonResource::REGISTERED
                                                      : GZ_PythonResource::NOT_REGISTERED;
}

void GZ_ResourceManager::fireResourceEvent(GZ_PythonResource::ResourceType,
                                           GZ_PythonResource::EventMessage::Type,
                                           const GZ_PythonResource::EventMessage::Data &)
{
}

GZ_PythonResource::Status GZ_ResourceManager::unregisterViewerState(const char *)
{
    return GZ_PythonResource::STATUS_UNSUPPORTED;
}

bool GZ_ResourceManager::isRegisteredViewerState(const char *) const
{
    return false;
}

GZ_PythonState::Template *GZ_ResourceManager::viewerStateTemplate(const char *)
{
    return nullptr;
}

const GZ_PythonState::Template *GZ_ResourceManager::viewerStateTemplate(const char *) const
{
    return nullptr;
}

GZ_PythonResource::Status GZ_ResourceManager::unbindVolatileViewerHandles(const char *)
{
    return GZ_PythonResource::STATUS_ERROR;
}

GZ_PythonResource::Status GZ_ResourceManager::unregisterViewerHandle(const char *)
{
    return GZ_PythonResource::STATUS_UNSUPPORTED;
}

bool GZ_ResourceManager::isRegisteredViewerHandle(const char *) const
{
    return false;
}

const GZ_PythonHandle::Template *GZ_ResourceManager::viewerHandleTemplate(const char *) const
{
    return nullptr;
}

const std::vector<std::string> &GZ_ResourceManager::getViewerHandleTypeNames() const
{
    static const std::vector<std::string> theNone;
    return theNone;
}

bool GZ_ResourceManager::bindOperatorToViewerState(const char *, HostOperator *)
{
    return false;
}

void GZ_ResourceManager::findVolatileKeys(const char *, std::vector<int> &keys,
                                          std::vector<int> &modifiers) const
{
    keys.clear();
    modifiers.clear();
}

void GZ_ResourceManager::updateViewports(int, const char *, bool) const {}

void GZ_ResourceManager::addAutomaticStates(GZ_NetworkType) {}
