// ShellResourceManager: gzsh's resource manager, which gives every operator type a viewer state.
#include "shell/ShellResourceManager.h"

#include "host/HostOperator.h"
#include "host/HostOperatorTable.h"
#include "resource/GZ_StateTemplate.h"

#include <vector>

GZ_ResourceManager *ShellResourceManager::create(bool print_warnings)
{
    if (GZresourceManagerExists())
        return GZgetResourceManager();
    ourPrintWarnings = print_warnings;
    auto *manager = new ShellResourceManager();
    ourPrintWarnings = true;
    // Only the first manager of a process becomes the instance; a later one would be an
    // empty registry that nobody can reach.
    if (GZgetResourceManager() != manager)
    {
        delete manager;
        return GZcreateResourceManager(print_warnings);
    }
    return manager;
}

ShellResourceManager::ShellResourceManager()
{
    for (int i = 0; i < GZ_NETWORK_MAX_TYPES; ++i)
    {
        const auto type = static_cast<GZ_NetworkType>(i);
        HostOperatorTable *table = HostOperatorTable::getTable(static_cast<HostNetworkType>(i));
        if (!table)
            continue;
        ensureTableInterestExists(type, table);
        ensureStatesExistForAllOperators(type);
    }
}

ShellResourceManager::~ShellResourceManager()
{
    // The lists of the base only point at states; the ones made here are deleted here.
    for (GZ_StateTemplate *state : myAutomaticStates)
        delete state;
}

void ShellResourceManager::operatorDeleted(HostOperator *op)
{
    // The base deletes the states bound to the operator type; forget them first.
    for (auto it = myAutomaticStates.begin(); it != myAutomaticStates.end();)
    {
        if ((*it)->getOperator() == op)
            it = myAutomaticStates.erase(it);
        else
            ++it;
    }
    GZ_ResourceManager::operatorDeleted(op);
}

void ShellResourceManager::addAutomaticStates(GZ_NetworkType type)
{
    HostOperatorTable *table = HostOperatorTable::getTable(static_cast<HostNetworkType>(type));
    if (!table)
        return;
    const std::string &table_name = table->getTypeName();
    for (int i = 0; i < table->getNumOperators(); ++i)
    {
        HostOperator *op = table->getOperator(i);
        if (getStateTemplate(op, GZ_VIEWER_SCENE, table_name.c_str()))
            continue;
        auto *state = new GZ_StateTemplate(
            op->getName().c_str(), op->getLabel().c_str(), op->getIconName().c_str(),
            /*constructor=*/nullptr, /*templates=*/nullptr, GZ_VIEWER_SCENE, GZnetworkMaskBit(type),
            /*op_independent=*/0, /*volatile_hotkey=*/"", op);
        if (!registerState(state))
        {
            delete state;
            continue;
        }
        myAutomaticStates.insert(state);
        addTemplatesInterest(op);
    }
}
