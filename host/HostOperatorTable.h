// HostOperatorTable: the operator types of one network type, and the registry of all tables.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/HostParmTemplate.h"

class HostOperator;
class HostOperatorTableSink;

/// The network types of the standard tables, in table order.
enum HostNetworkType
{
    HOST_NETWORK_OBJECT = 0,
    HOST_NETWORK_SOP = 1,
    HOST_NETWORK_DOP = 2,
    HOST_NETWORK_COP2 = 3,
    HOST_NETWORK_CHOP = 4,
    HOST_NETWORK_LOP = 5,
    HOST_NETWORK_TOP = 6,
    HOST_NUM_NETWORK_TYPES = 7
};

/// The operator types of one network type. A table has two names: its name, the network
/// token ("Object", "Sop", ...), used in qualified operator names ("Sop/xform"); and its
/// type name ("OBJ", "SOP", ...), the name under which the library groups its per-network
/// data. `getTable` accepts either.
///
/// Tables are process-wide: the seven standard tables exist from first use; tests and tools
/// may add others and delete them. A table owns its operator types. Adding, renaming and
/// deleting types tells the table sinks (`tableUpdated`); template changes, renames and
/// deletions tell the operator's template sinks.
class HostOperatorTable
{
public:
    ~HostOperatorTable();
    HostOperatorTable(const HostOperatorTable &) = delete;
    HostOperatorTable &operator=(const HostOperatorTable &) = delete;

    // Registry.
    /// The table of that name or type name, or null.
    static HostOperatorTable *getTable(const std::string &name);
    /// The standard table of a network type (0..6), or null.
    static HostOperatorTable *getTable(HostNetworkType type);
    /// Creates a table; null when a table of either name exists.
    static HostOperatorTable *createTable(const std::string &name, const std::string &type_name,
                                          int network_type = -1);
    /// Deletes a table created with `createTable` (standard tables stay): tells its sinks
    /// `tableDeleted`, then deletes its operator types. False when there is no such table.
    static bool destroyTable(const std::string &name);
    /// All tables, standard ones first.
    static std::vector<HostOperatorTable *> getTables();
    /// The network token of a network type ("Sop"); empty outside 0..6.
    static const char *getNetworkToken(int network_type);
    /// The type name of a network type ("SOP"); empty outside 0..6.
    static const char *getNetworkTypeName(int network_type);

    /// Splits a qualified operator name at its first "/" into table name and operator name.
    /// Without a "/" the table name is empty and the whole text is the operator name.
    static void splitQualifiedName(const std::string &full, std::string &table, std::string &name);
    /// Joins a table name and an operator name: "Sop/xform".
    static std::string makeQualifiedName(const std::string &table, const std::string &name);

    const std::string &getName() const { return myName; }
    const std::string &getTypeName() const { return myTypeName; }
    /// The network type (0..6) of a standard table, -1 for others.
    int getNetworkType() const { return myNetworkType; }

    // Operator types.
    int getNumOperators() const { return static_cast<int>(myOperators.size()); }
    /// Operator types in order of addition.
    HostOperator *getOperator(int i) const;
    /// The operator type of that name, or null.
    HostOperator *getOperator(const std::string &name) const;
    /// Adds an operator type (the table takes it). Refused (null, the type destroyed) when
    /// the name is taken or invalid. Tells the table sinks.
    HostOperator *addOperator(std::unique_ptr<HostOperator> op);
    /// Convenience: adds a plain operator type.
    HostOperator *addOperator(const std::string &name, const std::string &label,
                              const HostParmTemplateList &templates,
                              const std::string &child_table = "", unsigned flags = 0);
    /// Renames a type; refused when the new name is taken or invalid. Tells the template
    /// sinks, then the table sinks.
    bool renameOperator(HostOperator *op, const std::string &new_name);
    /// Replaces a type's templates, rebuilds the parameters of its nodes and tells the
    /// template sinks.
    bool setTemplates(HostOperator *op, const HostParmTemplateList &templates);
    /// Changes label and icon; tells the template sinks.
    bool setLabelAndIcon(HostOperator *op, const std::string &label, const std::string &icon);
    /// Deletes a type: refused while nodes of it exist. Tells the template sinks
    /// (`operatorDeleted`), removes and destroys it, then tells the table sinks.
    bool deleteOperator(const std::string &name);

    // Table sinks.
    void addSink(HostOperatorTableSink *sink);
    void removeSink(HostOperatorTableSink *sink);
    bool hasSink(const HostOperatorTableSink *sink) const;
    /// Tells every sink that the table changed.
    void notifyUpdated();

private:
    HostOperatorTable(const std::string &name, const std::string &type_name, int network_type);
    static std::vector<std::unique_ptr<HostOperatorTable>> &registry();

    std::string myName;
    std::string myTypeName;
    int myNetworkType;
    std::vector<std::unique_ptr<HostOperator>> myOperators;
    std::unordered_map<std::string, HostOperator *> myByName;
    std::vector<HostOperatorTableSink *> mySinks;
};
