// HostOperatorTable: the table registry, operator types and table listeners.
#include "host/HostOperatorTable.h"

#include "host/HostNode.h"
#include "host/HostOperator.h"
#include "host/HostOperatorTableSink.h"

#include <algorithm>
#include <cctype>

namespace
{
const char *const theTokens[HOST_NUM_NETWORK_TYPES] = {"Object", "Sop", "Dop", "Cop2",
                                                       "Chop",   "Lop", "Top"};
const char *const theTypeNames[HOST_NUM_NETWORK_TYPES] = {"OBJ",  "SOP", "DOP", "COP2",
                                                          "CHOP", "LOP", "TOP"};

// Operator type names: no blanks, no "/" (it separates the table in qualified names).
bool isValidOperatorName(const std::string &name)
{
    if (name.empty())
        return false;
    return std::none_of(name.begin(), name.end(),
                        [](char c) {
                            return c == '/' || std::isspace(static_cast<unsigned char>(c)) ||
                                   c == '\0';
                        });
}
} // namespace

std::vector<std::unique_ptr<HostOperatorTable>> &HostOperatorTable::registry()
{
    // Kept for the whole process and never destroyed: nodes of a director that outlives
    // static destruction still point at their operator types.
    static auto *theRegistry = []
    {
        auto *tables = new std::vector<std::unique_ptr<HostOperatorTable>>();
        for (int i = 0; i < HOST_NUM_NETWORK_TYPES; ++i)
            tables->emplace_back(new HostOperatorTable(theTokens[i], theTypeNames[i], i));
        return tables;
    }();
    return *theRegistry;
}

HostOperatorTable::HostOperatorTable(const std::string &name, const std::string &type_name,
                                     int network_type)
    : myName(name), myTypeName(type_name), myNetworkType(network_type)
{
}

HostOperatorTable::~HostOperatorTable()
{
    for (HostOperatorTableSink *sink : mySinks)
    {
        auto &tables = sink->myTables;
        tables.erase(std::remove(tables.begin(), tables.end(), this), tables.end());
    }
}

HostOperatorTable *HostOperatorTable::getTable(const std::string &name)
{
    for (const auto &table : registry())
        if (table->myName == name || table->myTypeName == name)
            return table.get();
    return nullptr;
}

HostOperatorTable *HostOperatorTable::getTable(HostNetworkType type)
{
    if (type < 0 || type >= HOST_NUM_NETWORK_TYPES)
        return nullptr;
    return registry()[type].get();
}

HostOperatorTable *HostOperatorTable::createTable(const std::string &name,
                                                  const std::string &type_name, int network_type)
{
    if (name.empty() || type_name.empty() || getTable(name) || getTable(type_name))
        return nullptr;
    registry().emplace_back(new HostOperatorTable(name, type_name, network_type));
    return registry().back().get();
}

bool HostOperatorTable::destroyTable(const std::string &name)
{
    auto &tables = registry();
    auto it = std::find_if(tables.begin() + HOST_NUM_NETWORK_TYPES, tables.end(),
                           [&](const std::unique_ptr<HostOperatorTable> &t)
                           { return t->myName == name || t->myTypeName == name; });
    if (it == tables.end())
        return false;
    HostOperatorTable *table = it->get();
    for (const auto &op : table->myOperators)
        if (op->getNumActiveNodes() > 0)
            return false;
    const std::vector<HostOperatorTableSink *> sinks = table->mySinks;
    for (HostOperatorTableSink *sink : sinks)
        if (table->hasSink(sink))
            sink->tableDeleted(table);
    for (const auto &op : table->myOperators)
        op->notifyDeleted();
    tables.erase(std::find_if(tables.begin(), tables.end(),
                              [table](const std::unique_ptr<HostOperatorTable> &t)
                              { return t.get() == table; }));
    return true;
}

std::vector<HostOperatorTable *> HostOperatorTable::getTables()
{
    std::vector<HostOperatorTable *> result;
    for (const auto &table : registry())
        result.push_back(table.get());
    return result;
}

const char *HostOperatorTable::getNetworkToken(int network_type)
{
    return (network_type >= 0 && network_type < HOST_NUM_NETWORK_TYPES) ? theTokens[network_type]
                                                                        : "";
}

const char *HostOperatorTable::getNetworkTypeName(int network_type)
{
    return (network_type >= 0 && network_type < HOST_NUM_NETWORK_TYPES) ? theTypeNames[network_type]
                                                                        : "";
}

void HostOperatorTable::splitQualifiedName(const std::string &full, std::string &table,
                                           std::string &name)
{
    const size_t slash = full.find('/');
    if (slash == std::string::npos)
    {
        table.clear();
        name = full;
        return;
    }
    table = full.substr(0, slash);
    name = full.substr(slash + 1);
}

std::string HostOperatorTable::makeQualifiedName(const std::string &table, const std::string &name)
{
    return table + "/" + name;
}

HostOperator *HostOperatorTable::getOperator(int i) const
{
    return (i >= 0 && i < getNumOperators()) ? myOperators[i].get() : nullptr;
}

HostOperator *HostOperatorTable::getOperator(const std::string &name) const
{
    auto it = myByName.find(name);
    return it == myByName.end() ? nullptr : it->second;
}

HostOperator *HostOperatorTable::addOperator(std::unique_ptr<HostOperator> op)
{
    if (!op || op->myTable || !isValidOperatorName(op->getName()) || getOperator(op->getName()))
        return nullptr;
    HostOperator *result = op.get();
    result->myTable = this;
    myByName.emplace(result->getName(), result);
    myOperators.push_back(std::move(op));
    notifyUpdated();
    return result;
}

HostOperator *HostOperatorTable::addOperator(const std::string &name, const std::string &label,
                                             const HostParmTemplateList &templates,
                                             const std::string &child_table, unsigned flags)
{
    return addOperator(
        std::make_unique<HostOperator>(name, label, templates, child_table, 0, 1, flags));
}

bool HostOperatorTable::renameOperator(HostOperator *op, const std::string &new_name)
{
    if (!op || op->myTable != this)
        return false;
    if (new_name == op->getName())
        return true;
    if (!isValidOperatorName(new_name) || getOperator(new_name))
        return false;
    myByName.erase(op->getName());
    op->myName = new_name;
    myByName.emplace(new_name, op);
    op->notifyTemplatesUpdated();
    notifyUpdated();
    return true;
}

bool HostOperatorTable::setTemplates(HostOperator *op, const HostParmTemplateList &templates)
{
    if (!op || op->myTable != this)
        return false;
    // The nodes' parameters point into the old templates until they are rebuilt.
    HostParmTemplateList old = op->myTemplates;
    op->replaceTemplates(templates);
    const std::vector<HostNode *> nodes = op->getActiveNodes();
    for (HostNode *node : nodes)
        node->rebuildParms();
    op->notifyTemplatesUpdated();
    return true;
}

bool HostOperatorTable::setLabelAndIcon(HostOperator *op, const std::string &label,
                                        const std::string &icon)
{
    if (!op || op->myTable != this)
        return false;
    op->setLabel(label);
    op->setIconName(icon);
    op->notifyTemplatesUpdated();
    return true;
}

bool HostOperatorTable::deleteOperator(const std::string &name)
{
    HostOperator *op = getOperator(name);
    if (!op || op->getNumActiveNodes() > 0)
        return false;
    op->notifyDeleted();
    myByName.erase(name);
    auto it = std::find_if(myOperators.begin(), myOperators.end(),
                           [op](const std::unique_ptr<HostOperator> &o) { return o.get() == op; });
    myOperators.erase(it);
    notifyUpdated();
    return true;
}

void HostOperatorTable::addSink(HostOperatorTableSink *sink)
{
    if (!sink || hasSink(sink))
        return;
    mySinks.push_back(sink);
    sink->myTables.push_back(this);
}

void HostOperatorTable::removeSink(HostOperatorTableSink *sink)
{
    auto it = std::find(mySinks.begin(), mySinks.end(), sink);
    if (it == mySinks.end())
        return;
    mySinks.erase(it);
    auto &tables = sink->myTables;
    tables.erase(std::remove(tables.begin(), tables.end(), this), tables.end());
}

bool HostOperatorTable::hasSink(const HostOperatorTableSink *sink) const
{
    return std::find(mySinks.begin(), mySinks.end(), sink) != mySinks.end();
}

void HostOperatorTable::notifyUpdated()
{
    const std::vector<HostOperatorTableSink *> sinks = mySinks;
    for (HostOperatorTableSink *sink : sinks)
        if (hasSink(sink))
            sink->tableUpdated(this);
}
