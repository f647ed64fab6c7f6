// GZ_ResourceManager: listening to operator tables and operator types.
#include "resource/GZ_ResourceManager.h"

#include "host/HostOperator.h"
#include "host/HostOperatorTable.h"

void GZ_ResourceManager::ensureTableInterestExists(GZ_NetworkType type, HostOperatorTable *table)
{
    if (!table)
        return;
    myTableInterests[table->getName()] = type;
    addTableInterest(table);
}

void GZ_ResourceManager::tableUpdated(HostOperatorTable *table)
{
    auto it = table ? myTableInterests.find(table->getName()) : myTableInterests.end();
    if (it != myTableInterests.end())
        ensureStatesExistForAllOperators(it->second);
}

void GZ_ResourceManager::tableDeleted(HostOperatorTable *table)
{
    HostOperatorTableSink::tableDeleted(table);
    if (table)
        myTableInterests.erase(table->getName());
}

void GZ_ResourceManager::ensureStatesExistForAllOperators(const char *table_name)
{
    GZ_NetworkType type;
    if (getNetworkType(table_name, type))
        ensureStatesExistForAllOperators(type);
}

void GZ_ResourceManager::ensureStatesExistForAllOperators(GZ_NetworkType type)
{
    addAutomaticStates(type);
}

// templatesUpdated and operatorDeleted: gz_TableMonitoring.cpp.
