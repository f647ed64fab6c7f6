// HostOperatorTableSink: bookkeeping of the operator tables a listener watches.
#include "host/HostOperatorTableSink.h"

#include "host/HostOperatorTable.h"

#include <algorithm>

HostOperatorTableSink::~HostOperatorTableSink()
{
    while (!myTables.empty())
        myTables.back()->removeSink(this);
}

void HostOperatorTableSink::tableDeleted(HostOperatorTable *table)
{
    removeTableInterest(table);
}

void HostOperatorTableSink::addTableInterest(HostOperatorTable *table)
{
    if (table)
        table->addSink(this);
}

void HostOperatorTableSink::removeTableInterest(HostOperatorTable *table)
{
    if (table)
        table->removeSink(this);
}

bool HostOperatorTableSink::hasTableInterest(const HostOperatorTable *table) const
{
    return std::find(myTables.begin(), myTables.end(), table) != myTables.end();
}
