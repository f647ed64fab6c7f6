// GZ_ResourceManager: the handle setting tables.
#include "resource/GZ_ResourceManager.h"

#include "link/GZ_SettingList.h"
#include "resource/gz_Strings.h"

#include <functional>

GZ_ResourceManager::GZ_OpGZKey::GZ_OpGZKey(const char *name, const char *type, int op_id)
    : myGZNameInSettingTable(gz::str(name)), myGZType(gz::str(type)), myOpId(op_id)
{
}

std::uint64_t GZ_ResourceManager::GZ_OpGZKey::hash() const
{
    // Mixes the node id in the manner of a 64-bit MurmurHash step over the name's hash.
    const std::uint64_t m = 0xc6a4a7935bd1e995ull;
    const std::uint64_t h = std::hash<std::string>()(myGZNameInSettingTable);
    std::uint64_t k = static_cast<std::uint64_t>(static_cast<std::int64_t>(myOpId)) * m;
    k = (k ^ (k >> 47)) * m;
    return (k ^ h) * m + 0xe6546b64ull;
}

// Not done yet: removing the settings of every handle bound to an operator type.
void GZ_ResourceManager::removeGZSettingsFromTables(HostOperator &) {}

const GZ_SettingList *GZ_ResourceManager::onUpdateGZSettings(const GZ_SettingList &settings,
                                                             HostOperator &, const char *,
                                                             const char *) const
{
    return &settings;
}

HostErrorSeverity GZ_ResourceManager::saveSettings(std::ostream &)
{
    // Copy first: a callback may add or remove callbacks while the scene is saved.
    const auto callbacks = mySaveCallbacks;
    for (const auto &callback : callbacks)
        callback.first(callback.second);
    // Not done yet: writing the "omparm" lines of the per-operator setting table.
    return HOST_ERR_NONE;
}
