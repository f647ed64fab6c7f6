// ShellOpTypeCommands: gzsh's commands that define scripted operator types from dialog
// scripts, write them back, and press their buttons.
#include "shell/Shell.h"
#include "shell/ShellCommand.h"
#include "shell/ShellCommandSupport.h"
#include "shell/ShellParmAccess.h"

#include "persistent/GZ_ScriptOperator.h"
#include "scriptedit/GZ_EditScriptedOp.h"

#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostOperatorTable.h"
#include "host/HostParm.h"
#include "host/HostReader.h"

#include <cctype>
#include <cstdlib>
#include <ostream>

namespace
{
/// The table a -t value names: a table name as it is ("Sop") or its network token in any
/// case ("sop", "OBJ").
HostOperatorTable *tableOf(const std::string &token)
{
    if (HostOperatorTable *table = HostOperatorTable::getTable(token))
        return table;
    std::string lower;
    for (char c : token)
        lower += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    for (HostOperatorTable *table : HostOperatorTable::getTables())
    {
        const char *network = HostOperatorTable::getNetworkToken(table->getNetworkType());
        if (network && lower == network)
            return table;
    }
    return nullptr;
}

// optypeload [-t TABLE] FILE
void cmdOpTypeLoad(Shell &, HostCommandArgs &args)
{
    if (!shellCheckCount(args, 2, 2))
        return;
    const std::string token = args.found('t') ? args.argp('t') : "Sop";
    HostOperatorTable *table = tableOf(token);
    if (!table)
    {
        args.err() << "optypeload: no operator table " << token << "\n";
        return;
    }
    const std::string &file = args.arg(1);
    std::string path = file, text;
    if (!HostReader::readFile(path, text) &&
        !(HostReader::findFile(file, path) && HostReader::readFile(path, text)))
    {
        args.err() << "optypeload: cannot read " << file << "\n";
        return;
    }
    std::string error;
    if (!GZ_ScriptOperator::defineFromText(table->getName(), text, path, file, error))
        args.err() << "optypeload: " << error << "\n";
}

/// The scripted operator type TABLE/TYPE, or null (reported).
GZ_ScriptOperator *scriptedType(HostCommandArgs &args, const std::string &key)
{
    std::string table_name, name;
    HostOperatorTable::splitQualifiedName(key, table_name, name);
    HostOperatorTable *table = table_name.empty() ? nullptr : tableOf(table_name);
    auto *op = dynamic_cast<GZ_ScriptOperator *>(table ? table->getOperator(name) : nullptr);
    if (!op)
        args.err() << args.commandName() << ": no scripted operator type " << key << "\n";
    return op;
}

// optypewrite TABLE/TYPE
void cmdOpTypeWrite(Shell &, HostCommandArgs &args)
{
    if (!shellCheckCount(args, 2, 2))
        return;
    GZ_ScriptOperator *op = scriptedType(args, args.arg(1));
    if (!op)
        return;
    GZ_EditScriptedOp edit(op, nullptr);
    edit.save(args.out());
    if (!edit.getWarning().empty())
        args.err() << "optypewrite: " << edit.getWarning() << "\n";
}

// optypesave TABLE/TYPE [LIBRARY]
void cmdOpTypeSave(Shell &, HostCommandArgs &args)
{
    if (!shellCheckCount(args, 2, 3))
        return;
    GZ_ScriptOperator *op = scriptedType(args, args.arg(1));
    if (!op)
        return;
    GZ_EditScriptedOp edit(op, nullptr);
    const bool saved = args.argc() > 2 ? edit.saveToLibrary(args.arg(2)) : edit.save();
    if (!edit.getWarning().empty())
        args.err() << "optypesave: " << edit.getWarning() << "\n";
    if (!saved)
        args.err() << "optypesave: " << args.arg(1) << " not saved\n";
}

// parmpress NODEPATH PARM [INDEX]
void cmdParmPress(Shell &shell, HostCommandArgs &args)
{
    if (!shellCheckCount(args, 3, 4))
        return;
    HostNode *node = shellFindNode(shell, args, args.arg(1));
    if (!node)
        return;
    HostParm *parm = node->getParm(args.arg(2));
    if (!parm || !(parm->getType().isButton() || parm->getType().isButtonStrip()))
    {
        args.err() << "parmpress: " << args.arg(2) << " is no button of " << args.arg(1) << "\n";
        return;
    }
    char *end = nullptr;
    const long index = args.argc() > 3 ? std::strtol(args.argv(3), &end, 10) : -1;
    if (args.argc() > 3 && (*end != '\0' || index < -1 || index > 1000000))
    {
        args.err() << "parmpress: bad menu index " << args.arg(3) << "\n";
        return;
    }
    if (!node->runParmCallback(*parm, static_cast<int>(index), shell.director().getTime()))
        args.err() << "parmpress: " << args.arg(2) << " has no callback\n";
}
} // namespace

void shellRunSetCallback(Shell &shell, HostNode &node, const std::string &name)
{
    // A loading scene restores values whose callbacks ran when they were first set; running
    // them again would change what was saved (a callback that sets another parameter).
    if (shell.director().isLoading())
        return;
    int first = 0, count = 0;
    HostParm *parm = ShellParmAccess::resolve(node, name, first, count);
    if (parm && parm->getTemplate().getCallback())
        node.runParmCallback(*parm, -1, shell.director().getTime());
}

std::vector<ShellCommand> shellOpTypeCommands()
{
    return {
        {"optypeload", "t:", "optypeload [-t TABLE] FILE", &cmdOpTypeLoad, true,
         "Reads a whole operator dialog script (what optypewrite writes) from FILE (as given, "
         "else on the search path) and defines the scripted operator type it names in TABLE, "
         "or reads an existing one again: its bindings are replaced and its nodes get the new "
         "interface.",
         "-t TABLE  the operator table: a table name or network token (default Sop)"},
        {"optypewrite", "", "optypewrite TABLE/TYPE", &cmdOpTypeWrite, true,
         "Writes the whole dialog script of a scripted operator type."},
        {"optypesave", "", "optypesave TABLE/TYPE [LIBRARY]", &cmdOpTypeSave,
         /*allowedWhileLoading=*/false,
         "Stores the dialog script of a scripted operator type as the DialogScript section of "
         "its definition in the operator type library LIBRARY (default: the type's own library, "
         "else $HOME/vantri20.0/otls/OPcustom.oplib). A library not loaded yet is loaded with "
         "the source \"Current SCN File\"."},
        {"parmpress", "", "parmpress NODEPATH PARM [INDEX]", &cmdParmPress, true,
         "Presses a button parameter: runs its callback, with INDEX as the chosen item of a "
         "button strip or menu (default -1: none)."},
    };
}
