// GZ_ResourceManager: the handle setting tables and the "omparm" lines of a saved scene.
#include "resource/GZ_ResourceManager.h"

#include "host/HostCommandManager.h"
#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostOperator.h"
#include "host/HostStringHash.h"
#include "link/GZ_OpHandleLink.h"
#include "link/GZ_SettingList.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/gz_Strings.h"

#include <algorithm>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

GZ_ResourceManager::GZ_OpGZKey::GZ_OpGZKey(const char *name, const char *type, int op_id)
    : myGZNameInSettingTable(gz::str(name)), myGZType(gz::str(type)), myOpId(op_id)
{
}

std::uint64_t GZ_ResourceManager::GZ_OpGZKey::hash() const
{
    // One 64-bit MurmurHash mixing step of the node id over the name's hash; the type takes
    // no part, as in equality.
    const std::uint64_t m = 0xc6a4a7935bd1e995ull;
    const std::uint64_t h = HostStringHash(myGZNameInSettingTable);
    std::uint64_t k = static_cast<std::uint64_t>(static_cast<std::int64_t>(myOpId)) * m;
    k = (k ^ (k >> 47)) * m;
    return (k ^ h) * m + 0xe6546b64ull;
}

namespace
{

/// The per-operator key of a link attached to `node`.
GZ_ResourceManager::GZ_OpGZKey opKey(const GZ_OpHandleLink &link, const HostNode &node)
{
    return GZ_ResourceManager::GZ_OpGZKey(link.getRootDescription().c_str(),
                                          link.getTemplate().name().c_str(), node.getUniqueId());
}

std::string lastKey(const GZ_OpHandleLink &link)
{
    const HostOperator *op = link.lastSettingsOperatorTypeRestriction();
    return GZ_ResourceManager::lastGZSettingsKey(link.getTemplate().name().c_str(),
                                                 link.getRootDescription().c_str(),
                                                 op ? op->getName().c_str() : nullptr);
}

/// Equality of settings without reordering either list: the comparison sorts, and stored
/// lists keep the order in which they are written out.
bool sameSettings(const GZ_SettingList &a, const GZ_SettingList &b)
{
    GZ_SettingList left(a);
    GZ_SettingList right(b);
    return left == right;
}

/// Whether a list holds nothing beyond its defaults (no defaults: nothing at all).
bool atDefaults(const GZ_SettingList &settings, const GZ_SettingList *defaults)
{
    return defaults ? sameSettings(settings, *defaults) : settings.isEmpty();
}

} // namespace

std::string GZ_ResourceManager::lastGZSettingsKey(const char *type, const char *description,
                                                  const char *op_type)
{
    return gz::str(type) + "-" + gz::str(description) + "-" + gz::str(op_type);
}

// ---------------------------------------------------------------------------------------
// Defaults

const GZ_SettingList *GZ_ResourceManager::getDefaultGZSettings(HostOperator &op, const char *type,
                                                               const char *description) const
{
    const std::vector<GZ_BindingHandleInfo> *bindings = getBindingHandles(&op);
    if (!bindings)
        return nullptr;
    const std::string wanted_type = gz::str(type);
    const std::string wanted_description = gz::str(description);
    for (const GZ_BindingHandleInfo &binding : *bindings)
        if (binding.getGZName() == wanted_type && binding.getGZDescription() == wanted_description)
            return &binding.getDefaultSettings();
    return nullptr;
}

GZ_SettingList *GZ_ResourceManager::getDefaultGZSettings(HostOperator &op, const char *type,
                                                         const char *description)
{
    // The manager owns the bindings; only the lookup is shared with the const form.
    const GZ_ResourceManager &self = *this;
    return const_cast<GZ_SettingList *>(self.getDefaultGZSettings(op, type, description));
}

const GZ_SettingList *GZ_ResourceManager::onUpdateGZSettings(const GZ_SettingList &settings,
                                                             HostOperator &, const char *,
                                                             const char *) const
{
    return &settings;
}

// ---------------------------------------------------------------------------------------
// Recording, saving, loading

void GZ_ResourceManager::recordGZSettings(const char *name, const char *type, const HostNode &node,
                                          const char *settings_text)
{
    const bool recorded = node.getDirector() && node.getDirector()->isLoading();
    GZ_OpGZKey key(name, type, node.getUniqueId());
    auto it = myOpGZSettingTable.find(key);
    if (it == myOpGZSettingTable.end())
        it = myOpGZSettingTable
                 .emplace(key, OpGZSettingInfo{std::make_unique<GZ_SettingList>(), recorded})
                 .first;
    else
        it->second.myRecorded = recorded;
    it->second.mySettings->loadFromSettingString(settings_text);
}

void GZ_ResourceManager::saveGZSettingsToTables(GZ_OpHandleLink &link)
{
    HostNode *node = link.getOpNode(0);
    if (link.allowsUsingPerOpSettingsTable() && link.getNumOps() <= 1 && node)
    {
        GZ_SettingList settings;
        link.saveSettings(settings, true);
        auto it = myOpGZSettingTable.find(opKey(link, *node));
        if (it == myOpGZSettingTable.end())
            it = myOpGZSettingTable
                     .emplace(opKey(link, *node),
                              OpGZSettingInfo{std::make_unique<GZ_SettingList>(), false})
                     .first;
        // The link saves only the settings it knows; the others recorded for the node (a
        // colour, binding arguments) stay, or using the handle would drop them.
        settings.copyMissing(*it->second.mySettings);
        it->second.myRecorded = false;
        *it->second.mySettings = settings;
    }

    if (!link.allowsUsingLastSettingsTable())
        return;
    const std::string key = lastKey(link);
    GZ_SettingList settings;
    link.saveSettings(settings, false);
    HostOperator *op = link.lastSettingsOperatorTypeRestriction();
    const GZ_SettingList *defaults =
        op ? getDefaultGZSettings(*op, link.getTemplate().name().c_str(),
                                  link.getRootDescription().c_str())
           : nullptr;
    if (!link.allowsUsingLastVisibilitySetting())
    {
        // The stored visibility is always the binding's default one.
        settings.removeSetting("invisible");
        bool invisible = false;
        if (defaults)
            GZ_SettingList(*defaults).getSetting("invisible", invisible, false);
        if (invisible)
            settings.appendSetting("invisible", true);
    }
    if (atDefaults(settings, defaults))
    {
        myLastGZSettingTable.erase(key);
        return;
    }
    std::unique_ptr<GZ_SettingList> &stored = myLastGZSettingTable[key];
    if (!stored)
        stored = std::make_unique<GZ_SettingList>();
    *stored = settings;
}

void GZ_ResourceManager::loadGZSettingsFromTables(GZ_OpHandleLink &link, bool use_last_table) const
{
    HostOperator *restriction = link.lastSettingsOperatorTypeRestriction();
    const bool use_last = use_last_table && link.allowsUsingLastSettingsTable();
    const std::string &type = link.getTemplate().name();
    const std::string &description = link.getRootDescription();

    GZ_SettingList *candidate = nullptr;
    bool recorded = false;
    bool found = false;
    HostNode *node = link.getOpNode(0);
    if (link.allowsUsingPerOpSettingsTable() && link.getNumOps() <= 1 && node)
    {
        auto it = myOpGZSettingTable.find(opKey(link, *node));
        if (it != myOpGZSettingTable.end())
        {
            candidate = it->second.mySettings.get();
            recorded = it->second.myRecorded;
            found = true;
        }
    }
    if (!found && use_last)
    {
        auto it = myLastGZSettingTable.find(lastKey(link));
        if (it != myLastGZSettingTable.end())
        {
            candidate = it->second.get();
            found = true;
        }
    }
    if (!found && restriction)
        // Read flags are the list's bookkeeping, not its value: the binding's defaults may
        // have them updated like any stored list.
        candidate = const_cast<GZ_SettingList *>(
            getDefaultGZSettings(*restriction, type.c_str(), description.c_str()));

    // Settings recorded from a saved scene predate settings added to the binding since;
    // those take their default values.
    GZ_SettingList completed;
    if (candidate && recorded && restriction)
    {
        const GZ_SettingList *defaults =
            getDefaultGZSettings(*restriction, type.c_str(), description.c_str());
        if (defaults && !defaults->isEmpty())
        {
            completed = *candidate;
            completed.copyMissing(*defaults);
            candidate = &completed;
        }
    }

    if (!candidate)
    {
        link.loadSettings(GZ_SettingList());
        return;
    }
    if (restriction)
        candidate = const_cast<GZ_SettingList *>(
            onUpdateGZSettings(*candidate, *restriction, type.c_str(), description.c_str()));

    link.loadSettings(*candidate);
    std::string unread;
    if (candidate->findUnreadSettings(unread))
        printWarning("Warning: The following settings are unrecognized by the %s handle:\n%s",
                     type.c_str(), unread.c_str());
}

// ---------------------------------------------------------------------------------------
// Removing

void GZ_ResourceManager::removeGZSettingsFromTables(const GZ_OpHandleLink &link)
{
    if (link.getNumOps() == 1)
    {
        auto it = myOpGZSettingTable.find(opKey(link, *link.getOpNode(0)));
        if (it != myOpGZSettingTable.end())
            myOpGZSettingTable.erase(it);
    }
    myLastGZSettingTable.erase(lastKey(link));
}

void GZ_ResourceManager::removeGZSettingsFromTables(HostOperator &op)
{
    // Only operator types that keep their own bindings (scripted definitions) reset the
    // settings of their handles when their definition changes.
    if (!op.keepsOwnBindings())
        return;
    const std::vector<GZ_BindingHandleInfo> *bindings = getBindingHandles(&op);
    if (!bindings)
        return;
    const std::vector<HostNode *> &nodes = op.getActiveNodes();
    for (const GZ_BindingHandleInfo &binding : *bindings)
    {
        myLastGZSettingTable.erase(lastGZSettingsKey(
            binding.getGZName().c_str(), binding.getGZDescription().c_str(), op.getName().c_str()));
        for (auto node = nodes.rbegin(); node != nodes.rend(); ++node)
        {
            auto it = myOpGZSettingTable.find(GZ_OpGZKey(binding.getGZDescription().c_str(),
                                                         binding.getGZName().c_str(),
                                                         (*node)->getUniqueId()));
            if (it != myOpGZSettingTable.end())
                myOpGZSettingTable.erase(it);
        }
    }
}

// ---------------------------------------------------------------------------------------
// Saved scenes

void GZ_ResourceManager::clearOpGZSettings()
{
    myOpGZSettingTable.clear();
}

HostErrorSeverity GZ_ResourceManager::saveSettings(std::ostream &os)
{
    // A callback may add or remove callbacks while the scene is saved.
    mySaveCallbacks.forEach([](void (*callback)(void *), void *data) { callback(data); });

    // In node path and handle name order: the table's own order depends on its history, and
    // a loaded scene must save the same bytes.
    const HostDirector *director = HostDirector::instance();
    using Entry = decltype(myOpGZSettingTable)::value_type;
    std::vector<std::pair<std::string, const Entry *>> entries;
    for (const auto &entry : myOpGZSettingTable)
        if (HostNode *node = director->findNodeById(entry.first.opId()))
            entries.emplace_back(node->getFullPath() + '\0' + entry.first.gzNameInSettingTable(),
                                 &entry);
    std::sort(entries.begin(), entries.end());
    for (const auto &sorted : entries)
    {
        const GZ_OpGZKey &key = sorted.second->first;
        const GZ_SettingList &settings = *sorted.second->second.mySettings;
        HostNode *node = director->findNodeById(key.opId());
        const GZ_SettingList *defaults =
            node->getOperator() ? getDefaultGZSettings(*node->getOperator(), key.gzType().c_str(),
                                                       key.gzNameInSettingTable().c_str())
                                : nullptr;
        if (atDefaults(settings, defaults))
            continue;
        os << "omparm ";
        HostCommandManager::protectString(os, key.gzNameInSettingTable());
        os << " ";
        HostCommandManager::protectString(os, key.gzType());
        os << " ";
        HostCommandManager::protectString(os, node->getFullPath());
        os << " ";
        std::ostringstream text;
        settings.generateSettingString(text);
        HostCommandManager::protectQuotedString(os, text.str());
        os << "\n";
    }
    return HOST_ERR_NONE;
}
