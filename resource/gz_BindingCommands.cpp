// gz_BindingCommands: the om* commands that inspect and change handle and selector bindings.
#include "resource/gz_BindingCommands.h"

#include "host/HostCommandArgs.h"
#include "host/HostCommandManager.h"
#include "host/HostCommandTable.h"
#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostOperator.h"
#include "host/HostOperatorTable.h"
#include "host/HostReader.h"
#include "host/HostScriptOperator.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_ResourceManager.h"
#include "resource/GZ_SelectorTemplate.h"
#include "resource/gz_Strings.h"
#include "scriptedit/GZ_EditScriptedOp.h"

#include <algorithm>
#include <cstdlib>
#include <ostream>
#include <string>
#include <vector>

namespace
{

// ---------------------------------------------------------------------------------------
// Arguments

/// The network of the -t option: a table name in any case, Sop without the option. False
/// when the value names no table; "top" is deliberately not among them.
bool commandNetwork(const HostCommandArgs &args, GZ_NetworkType &type)
{
    type = GZ_NETWORK_SOP;
    if (!args.found('t'))
        return true;
    // The host's type names (OBJ, SOP, ...) in any case, every network before Top.
    const std::string name = gz::toLower(gz::str(args.argp('t')));
    for (int i = 0; i < GZ_NETWORK_TOP; ++i)
    {
        if (name == gz::toLower(HostOperatorTable::getNetworkTypeName(i)))
        {
            type = static_cast<GZ_NetworkType>(i);
            return true;
        }
    }
    return false;
}

/// The operator type `name` of the -t table, or null.
HostOperator *commandOperator(const GZ_ResourceManager &manager, const HostCommandArgs &args,
                              const std::string &name, GZ_NetworkType &type)
{
    if (!commandNetwork(args, type))
        return nullptr;
    return manager.findOperator(type, name.c_str(), /*warn=*/false);
}

/// The network token the listing commands hand to supportsType: the -t value as given.
std::string commandNetworkToken(const HostCommandArgs &args)
{
    return args.found('t') ? gz::str(args.argp('t')) : std::string("Sop");
}

/// Splits "name:parameter" at its last ':'; without one, all of it is the name.
void splitAtLastColon(const std::string &text, std::string &name, std::string &parm)
{
    const size_t colon = text.rfind(':');
    if (colon == std::string::npos)
    {
        name = text;
        parm.clear();
        return;
    }
    name = text.substr(0, colon);
    parm = text.substr(colon + 1);
}

/// Optional argument i, or null when it was not given.
const char *optionalArg(const HostCommandArgs &args, int i)
{
    return i < args.argc() ? args.argv(i) : nullptr;
}

/// Sorts names held elsewhere by their text.
void sortByText(std::vector<const std::string *> &names)
{
    std::sort(names.begin(), names.end(),
              [](const std::string *a, const std::string *b) { return *a < *b; });
}

/// Writes "{ a b c }": the distinct names in ascending order, each followed by a blank.
void writeBracedList(std::ostream &os, std::vector<const std::string *> &names)
{
    sortByText(names);
    os << "{ ";
    const std::string *last = nullptr;
    for (const std::string *name : names)
    {
        if (!last || *name != *last)
            os << *name << " ";
        last = name;
    }
    os << "}";
}

/// One operator type of "omwhere"/"omswhere": with `wanted`, its name when it binds that
/// handle (selector); without, its name and the braced list of what it binds.
void writeWhereLine(std::ostream &os, const std::string &op_name, const char *wanted,
                    std::vector<const std::string *> &names)
{
    if (!wanted)
    {
        os << op_name << " ";
        writeBracedList(os, names);
        os << "\n";
        return;
    }
    for (const std::string *name : names)
    {
        if (*name == wanted)
        {
            os << op_name << "\n";
            return;
        }
    }
}

/// The operator types of the -t table sorted by name; empty for an unknown table. The names
/// are copied next to their operators first, so that sorting compares nearby text rather
/// than reaching into every operator type again and again.
std::vector<HostOperator *> sortedOperators(const HostCommandArgs &args)
{
    std::vector<HostOperator *> ops;
    GZ_NetworkType type;
    if (!commandNetwork(args, type))
        return ops;
    const HostOperatorTable *table =
        HostOperatorTable::getTable(static_cast<HostNetworkType>(type));
    if (!table)
        return ops;
    std::vector<std::pair<std::string, HostOperator *>> named;
    named.reserve(table->getNumOperators());
    for (int i = 0; i < table->getNumOperators(); ++i)
    {
        HostOperator *op = table->getOperator(i);
        named.emplace_back(op->getName(), op);
    }
    std::sort(named.begin(), named.end(),
              [](const auto &a, const auto &b) { return a.first < b.first; });
    ops.reserve(named.size());
    for (const auto &item : named)
        ops.push_back(item.second);
    return ops;
}

// ---------------------------------------------------------------------------------------
// Handle bindings

void cmdBindInfo(GZ_ResourceManager &manager, HostCommandArgs &args)
{
    if (args.argc() != 2)
    {
        args.err() << "Invalid number of arguments\n";
        args.showUsage();
        return;
    }
    const std::string &name = args.arg(1);
    GZ_NetworkType type;
    HostOperator *op = commandOperator(manager, args, name, type);
    if (!op)
    {
        args.err() << "Unable to find " << name << ".\n";
        return;
    }
    const std::vector<GZ_BindingHandleInfo> *handles = manager.getBindingHandles(op);
    if (!handles || handles->empty())
    {
        args.out() << "No bindings for " << name << "\n";
        return;
    }
    std::ostream &os = args.out();
    os << name << " bindings:\n";
    for (const GZ_BindingHandleInfo &handle : *handles)
    {
        os << handle.getGZDescription() << " " << handle.getGZName() << " { ";
        for (const GZ_BindingParmInfo &link : handle.getBindings())
            os << link.getGZParm() << "->" << link.getOpParm() << " ";
        os << "}\n";
    }
}

void cmdUnbind(GZ_ResourceManager &manager, HostCommandArgs &args)
{
    if (args.argc() != 2 && args.argc() != 3)
    {
        args.err() << "omunbind: invalid number of arguments.\n";
        args.showUsage();
        return;
    }
    std::string name, parm;
    splitAtLastColon(args.arg(1), name, parm);
    GZ_NetworkType type;
    HostOperator *op = commandOperator(manager, args, name, type);
    if (!op)
    {
        args.err() << "omunbind: cannot find bound operator " << name << "\n";
        return;
    }
    if (manager.unbind(op, optionalArg(args, 2), parm) == GZ_ResourceManager::BIND_BAD_OP_PARM)
    {
        args.err() << "omunbind: invalid op parameter name.\n";
        return;
    }
    manager.updateViewports(type, name.c_str(), false);
}

void cmdBind(GZ_ResourceManager &manager, HostCommandArgs &args)
{
    if (args.argc() != 4)
    {
        args.err() << "ombind: invalid number of arguments\n";
        args.showUsage();
        return;
    }
    std::string name, op_parm, gz_name, gz_parm;
    splitAtLastColon(args.arg(2), name, op_parm);
    splitAtLastColon(args.arg(3), gz_name, gz_parm);
    GZ_NetworkType type;
    HostOperator *op = commandOperator(manager, args, name, type);
    if (!op)
    {
        args.err() << "ombind: operator '" << name << "' not found.\n";
        return;
    }
    switch (manager.bind(op, gz_name.c_str(), args.argv(1), op_parm, gz_parm, args.argp('d')))
    {
    case GZ_ResourceManager::BIND_BAD_NETWORK:
        args.err() << "ombind: handle cannot be bound to given op type.\n";
        return;
    case GZ_ResourceManager::BIND_EXISTS:
        args.err() << "ombind: binding already exists.\n";
        return;
    case GZ_ResourceManager::BIND_BAD_GZ_PARM:
        args.err() << "ombind: invalid handle name.\n";
        return;
    case GZ_ResourceManager::BIND_BAD_OP_PARM:
        args.err() << "ombind: invalid op parameter name.\n";
        return;
    case GZ_ResourceManager::BIND_NO_TEMPLATE:
        args.err() << "ombind: handle has no bindable parameters.\n";
        return;
    default:
        break;
    }
    manager.updateViewports(type, name.c_str(), false);
}

void cmdList(GZ_ResourceManager &manager, HostCommandArgs &args)
{
    if (args.argc() == 1)
    {
        // The registry is hashed; name order is its stable order.
        const std::string network = commandNetworkToken(args);
        std::vector<const std::string *> names;
        names.reserve(manager.getOpHandleLinks().size());
        for (const auto &item : manager.getOpHandleLinks())
        {
            const GZ_GZTemplate &gz = *item.second;
            if (!gz.parmNameList().empty() && gz.supportsType(network.c_str()))
                names.push_back(&item.first);
        }
        sortByText(names);
        for (const std::string *name : names)
            args.out() << *name << "\n";
        return;
    }
    for (int i = 1; i < args.argc(); ++i)
    {
        const std::string &name = args.arg(i);
        const GZ_GZTemplate *gz = manager.getOpHandleLinkTemplate(name.c_str());
        if (!gz)
        {
            args.err() << name << " not found.\n";
            continue;
        }
        if (gz->parmNameList().empty())
        {
            args.err() << name << " cannot be bound.\n";
            continue;
        }
        std::vector<const std::string *> parms;
        for (const std::string &parm : gz->parmNameList())
            parms.push_back(&parm);
        writeBracedList(args.out(), parms);
    }
}

void cmdWhere(GZ_ResourceManager &manager, HostCommandArgs &args)
{
    if (args.argc() > 2)
    {
        args.err() << "Invalid number of arguments\n";
        args.showUsage();
        return;
    }
    const char *wanted = optionalArg(args, 1);
    std::vector<const std::string *> types;
    for (HostOperator *op : sortedOperators(args))
    {
        const std::vector<GZ_BindingHandleInfo> *handles = manager.getBindingHandles(op);
        if (!handles || handles->empty())
            continue;
        types.clear();
        for (const GZ_BindingHandleInfo &handle : *handles)
            types.push_back(&handle.getGZName());
        writeWhereLine(args.out(), op->getName(), wanted, types);
    }
}

// ---------------------------------------------------------------------------------------
// Selector bindings

void cmdSelectorBindInfo(GZ_ResourceManager &manager, HostCommandArgs &args)
{
    if (args.argc() != 2)
    {
        args.err() << "Invalid number of arguments\n";
        args.showUsage();
        return;
    }
    const std::string &name = args.arg(1);
    GZ_NetworkType type;
    HostOperator *op = commandOperator(manager, args, name, type);
    if (!op)
    {
        args.err() << "Unable to find " << name << ".\n";
        return;
    }
    const std::vector<GZ_BindingSelectorInfo> *selectors = manager.getBindingSelectors(op);
    if (!selectors || selectors->empty())
    {
        args.out() << "No selectors for " << name << "\n";
        return;
    }
    std::ostream &os = args.out();
    os << name << " selectors:\n";
    for (const GZ_BindingSelectorInfo &selector : *selectors)
    {
        os << selector.getName() << " " << selector.getDescription() << ": " << selector.getPrompt()
           << "\n"
           << "\t" << selector.getOpParm() << " " << selector.getOpInput() << " "
           << (selector.getOpInputReq() ? 1 : 0) << " " << selector.getPrimMask() << " "
           << (selector.getAllowDrag() ? 1 : 0) << " " << selector.getMenu() << " "
           << (selector.getAstSelAll() ? 1 : 0) << "\n";
    }
}

void cmdSelectorUnbind(GZ_ResourceManager &manager, HostCommandArgs &args)
{
    if (args.argc() != 2 && args.argc() != 3)
    {
        args.err() << "Invalid number of arguments.\n";
        args.showUsage();
        return;
    }
    const std::string &name = args.arg(1);
    GZ_NetworkType type;
    HostOperator *op = commandOperator(manager, args, name, type);
    if (!op)
    {
        args.err() << "Cannot find operator " << name << "\n";
        return;
    }
    manager.unbindSelector(op, optionalArg(args, 2));
    manager.updateViewports(type, name.c_str(), false);
}

void cmdSelectorBind(GZ_ResourceManager &manager, HostCommandArgs &args)
{
    if (args.argc() != 11)
    {
        args.err() << "omsbind: invalid number of arguments\n";
        args.showUsage();
        return;
    }
    std::string name, parm;
    splitAtLastColon(args.arg(1), name, parm);
    GZ_NetworkType type;
    HostOperator *op = commandOperator(manager, args, name, type);
    if (!op)
    {
        args.err() << "omsbind: operator '" << name << "' not found.\n";
        return;
    }
    const int result = manager.bindSelector(
        op, args.argv(2), args.argv(3), args.argv(4), parm.c_str(), std::atoi(args.argv(5)),
        std::atoi(args.argv(6)), args.argv(7), std::atoi(args.argv(8)), args.argv(9),
        std::atoi(args.argv(10)), "", /*skip_parm_check=*/false);
    switch (result)
    {
    case GZ_ResourceManager::BIND_BAD_NETWORK:
        args.err() << "omsbind: selector cannot be bound to given op type.\n";
        return;
    case GZ_ResourceManager::BIND_BAD_OP_PARM:
        args.err() << "omsbind: invalid op parameter name.\n";
        return;
    case GZ_ResourceManager::BIND_NO_TEMPLATE:
        args.err() << "omsbind: invalid selector name specified.\n";
        return;
    default:
        break;
    }
    manager.updateViewports(type, name.c_str(), false);
}

void cmdSelectorList(GZ_ResourceManager &manager, HostCommandArgs &args)
{
    if (args.argc() != 1)
    {
        args.showUsage();
        return;
    }
    const std::string network = commandNetworkToken(args);
    std::vector<const std::string *> names;
    names.reserve(manager.getSelectors().size());
    for (const auto &item : manager.getSelectors())
    {
        if (item.second->supportsType(network.c_str()))
            names.push_back(&item.first);
    }
    sortByText(names);
    for (const std::string *name : names)
        args.out() << *name << "\n";
}

void cmdSelectorWhere(GZ_ResourceManager &manager, HostCommandArgs &args)
{
    if (args.argc() > 2)
    {
        args.err() << "Invalid number of arguments\n";
        args.showUsage();
        return;
    }
    const char *wanted = optionalArg(args, 1);
    std::vector<const std::string *> names;
    for (HostOperator *op : sortedOperators(args))
    {
        const std::vector<GZ_BindingSelectorInfo> *selectors = manager.getBindingSelectors(op);
        if (!selectors || selectors->empty())
            continue;
        names.clear();
        for (const GZ_BindingSelectorInfo &selector : *selectors)
            names.push_back(&selector.getName());
        writeWhereLine(args.out(), op->getName(), wanted, names);
    }
}

// ---------------------------------------------------------------------------------------
// Files and settings

/// The operator types that keep their bindings in their own definitions (the ones the
/// bindings file leaves out) are stored back into their library files instead.
void saveOwnBindingTypes(std::ostream &err)
{
    for (const char *table_name : {"Object", "Sop", "Dop", "Cop2", "Chop"})
    {
        const HostOperatorTable *table = HostOperatorTable::getTable(table_name);
        for (int i = 0; table && i < table->getNumOperators(); ++i)
        {
            auto *op = dynamic_cast<HostScriptOperator *>(table->getOperator(i));
            if (!op || !op->keepsOwnBindings() || !op->canWriteDefinition())
                continue;
            GZ_EditScriptedOp edit(op, nullptr);
            if (edit.save())
                continue;
            err << "Failed to save operator " << op->getQualifiedName() << "\n";
            if (!edit.getWarning().empty())
                err << "\t" << edit.getWarning() << "\n";
        }
    }
}

void cmdWrite(GZ_ResourceManager &manager, HostCommandArgs &args)
{
    if (args.argc() > 2)
    {
        args.showUsage();
        return;
    }
    const std::string path =
        args.argc() == 2 ? args.arg(1) : HostReader::getUserDirectory() + "/OPbindings";
    if (!manager.writeBindingsFile(path.c_str()))
        args.err() << "Error writing file: " << path << "\n";

    saveOwnBindingTypes(args.err());
}

void cmdParm(GZ_ResourceManager &manager, HostCommandArgs &args)
{
    if (args.argc() != 5)
    {
        args.err() << "Error: omparm requires a handle name, "
                   << "a handle type,\n"
                   << "an op name, and op settings.\n";
        return;
    }
    const HostNode *node = HostDirector::instance()->findNode(args.arg(3));
    if (!node)
    {
        args.err() << "Could not find node " << args.arg(3) << "\n";
        return;
    }
    manager.recordGZSettings(args.argv(1), args.argv(2), *node, args.argv(4));
}

} // namespace

// Option lines that several rows show in help.
#define GZ_TABLE_OPTION                                                                            \
    "-t TABLE  the operator table: obj, sop, dop, cop2, chop or lop, in any case (default sop)"
#define GZ_NETWORK_OPTION                                                                          \
    "-t NETWORK  the network the listed types support, in any case (default Sop)"

void gz_installBindingCommands(HostCommandManager &commands)
{
    using Row = HostCommandRow<GZ_ResourceManager>;
    static const Row theCommands[] = {
        {"ombindinfo", "t:", "ombindinfo [-t table] operator", cmdBindInfo, true,
         "Lists the handle bindings of an operator type.", GZ_TABLE_OPTION},
        {"omunbind", "t:", "omunbind [-t table] operator[:parameter] [description]", cmdUnbind,
         true, "Removes handle bindings of the operator type.", GZ_TABLE_OPTION},
        {"ombind",
         "t:d:", "ombind [-t table] [-d settings] description operator:parameter handle:parameter",
         cmdBind, true,
         "Binds handle parameter parameter of handle type handle to the operator parameter (a "
         "channel such as tx, or a whole parameter name) of operator type operator.",
         GZ_TABLE_OPTION "\n"
                         "-d SETTINGS  default settings of a new handle instance"},
        {"omls", "t:", "omls [-t network] [handle ...]", cmdList, true,
         "Without arguments, lists the handle types that have parameters and support the network, "
         "one per line, sorted by name.",
         GZ_NETWORK_OPTION},
        {"omwhere", "t:", "omwhere [-t table] [handle]", cmdWhere, true,
         "Lists the operator types of the table that bind handles, sorted by name.",
         GZ_TABLE_OPTION},
        {"omsbindinfo", "t:", "omsbindinfo [-t table] operator", cmdSelectorBindInfo, true,
         "Lists the selector bindings.", GZ_TABLE_OPTION},
        {"omsunbind", "t:", "omsunbind [-t table] operator [description]", cmdSelectorUnbind, true,
         "Removes the selector bindings of an operator type, or only those of the description.",
         GZ_TABLE_OPTION},
        {"omsbind", "t:",
         "omsbind [-t table] operator:parameter selector description prompt input required "
         "mask drag menu selectall",
         cmdSelectorBind, true, "Binds a selector to an operator type.", GZ_TABLE_OPTION},
        {"omsls", "t:", "omsls [-t network]", cmdSelectorList, true,
         "Lists the selectors that support the network, sorted, one per line.", GZ_NETWORK_OPTION},
        {"omswhere", "t:", "omswhere [-t table] [selector]", cmdSelectorWhere, true,
         "As omwhere, for selectors.", GZ_TABLE_OPTION},
        // Writing files is no business of a scene being loaded.
        {"omwrite", "", "omwrite [file]", cmdWrite, /*allowedWhileLoading=*/false,
         "Writes every binding as a bindings file to FILE, by default OPbindings in the user's "
         "directory (the current directory in gzsh)."},
        {"omparm", "", "omparm handle-name handle-type node-path settings", cmdParm, true,
         "Records handle settings (settings text) for the handle of that name and type on a node, "
         "as saved scenes do."},
    };
#undef GZ_TABLE_OPTION
#undef GZ_NETWORK_OPTION
    HostCommandTable::install<GZ_ResourceManager>(commands, theCommands, &GZgetResourceManager);
}
