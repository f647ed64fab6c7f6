// HostOperatorTableSink: listener interface for changes of operator tables.
#pragma once

#include <vector>

class HostOperatorTable;

/// Base of objects that want to hear when an operator table changes (types added, renamed,
/// removed) or is deleted. Keeps the tables it listens to and leaves them when destroyed.
class HostOperatorTableSink
{
public:
    HostOperatorTableSink() = default;
    HostOperatorTableSink(const HostOperatorTableSink &) = delete;
    HostOperatorTableSink &operator=(const HostOperatorTableSink &) = delete;
    virtual ~HostOperatorTableSink();

    /// The table's set of operator types changed.
    virtual void tableUpdated(HostOperatorTable *table) = 0;
    /// The table is being deleted. Overrides must call this base version, which forgets
    /// the table.
    virtual void tableDeleted(HostOperatorTable *table);

    /// Starts listening to `table` (once).
    void addTableInterest(HostOperatorTable *table);
    /// Stops listening to `table`.
    void removeTableInterest(HostOperatorTable *table);
    bool hasTableInterest(const HostOperatorTable *table) const;
    const std::vector<HostOperatorTable *> &getTableInterests() const { return myTables; }

private:
    friend class HostOperatorTable;
    std::vector<HostOperatorTable *> myTables;
};
