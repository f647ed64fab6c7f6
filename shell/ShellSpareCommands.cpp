// ShellSpareCommands: gzsh's commands that edit, list, copy and compile a node's spare
// parameters, and list an operator type's parameter section.
#include "shell/Shell.h"
#include "shell/ShellCommand.h"
#include "shell/ShellCommandSupport.h"

#include "scriptedit/GZ_EditScriptedParms.h"
#include "scriptedit/GZ_EditScriptedParmsAggregate.h"
#include "scriptedit/GZ_OldParms.h"
#include "persistent/GZ_Manager.h"
#include "persistent/gz_ParmRenames.h"

#include "host/HostNode.h"
#include "host/HostOperator.h"
#include "host/HostParm.h"
#include "host/HostOperatorTable.h"
#include "host/HostReader.h"
#include "host/HostUndoManager.h"
#include "host/HostVariableName.h"

#include <cstdlib>
#include <memory>
#include <ostream>
#include <set>
#include <string>

namespace
{
GZ_EditScriptedParms::BuildOptions spareOptions()
{
    GZ_EditScriptedParms::BuildOptions options;
    options.myFallbackToOperator = false;
    return options;
}

/// Hands the edited set back to the node as one undo step named after the command.
bool applyToNode(Shell &shell, HostCommandArgs &args, GZ_EditScriptedParms &parms)
{
    ShellUndoBlock block(shell, args);
    std::string error;
    if (parms.updateNode(&error))
        return true;
    args.err() << args.commandName() << ": " << error << "\n";
    return false;
}

/// The spare parameters of the node named by argument `i`, or null (reported).
HostNode *spareNode(Shell &shell, HostCommandArgs &args, int i)
{
    return shellFindNode(shell, args, args.arg(i));
}

// spareadd [-s] NODEPATH SOURCE
void cmdSpareAdd(Shell &shell, HostCommandArgs &args)
{
    HostNode *node = spareNode(shell, args, 1);
    if (!node)
        return;
    std::string text;
    std::string file = "<string>";
    if (args.found('s'))
        text = args.arg(2);
    else
    {
        file = args.arg(2);
        std::string found = file;
        if (!HostReader::readFile(found, text) &&
            !(HostReader::findFile(file, found) && HostReader::readFile(found, text)))
        {
            args.err() << "spareadd: cannot read " << file << "\n";
            return;
        }
    }
    GZ_EditScriptedParms incoming;
    std::string messages;
    const bool read = incoming.parseParmSection(text, file, messages);
    args.err() << messages;
    if (!read)
    {
        args.err() << "spareadd: " << file << " not read; " << args.arg(1) << " is unchanged\n";
        return;
    }
    GZ_EditScriptedParms parms(node, spareOptions());
    parms.mergeParms(incoming, /*always_safe=*/true);
    applyToNode(shell, args, parms);
}

/// Writes the node's spare parameters as a section, compiled first with `compiled`.
void listSpares(Shell &shell, HostCommandArgs &args, bool compiled)
{
    HostNode *node = spareNode(shell, args, 1);
    if (!node)
        return;
    GZ_EditScriptedParms parms(node, spareOptions());
    if (compiled)
        parms.compile();
    std::string errors;
    parms.save(args.out(), errors, /*check_joins=*/true);
    if (!errors.empty())
        args.err() << args.commandName() << ": " << errors << "\n";
}

// sparels NODEPATH
void cmdSpareLs(Shell &shell, HostCommandArgs &args)
{
    listSpares(shell, args, /*compiled=*/false);
}

/// Index of the entry named `name` (an ordinary parameter or a block), or -1 (reported).
int findEntry(HostCommandArgs &args, const GZ_EditScriptedParms &parms, const std::string &name)
{
    const int i = parms.getParmIndexWithName(name);
    if (i < 0 || parms.getParm(i)->getIsGroupEnd())
    {
        args.err() << args.commandName() << ": no spare parameter " << name << " on " << args.arg(1)
                   << "\n";
        return -1;
    }
    return i;
}

/// Applies an edit whose renames and deletions `old` followed, repairing what referred to
/// the old names, as one undo step; the repair warnings go to the error stream.
void applyWithRepairs(Shell &shell, HostCommandArgs &args, GZ_EditScriptedParms &parms,
                      GZ_OldParms &old)
{
    ShellUndoBlock block(shell, args);
    std::vector<std::pair<std::string, std::string>> renamed;
    std::vector<std::string> deleted, warnings;
    old.getChannelChanges(parms, renamed, deleted);
    HostNode *node = parms.getNode();
    std::string error;
    const bool ok = old.updateNode(parms, warnings, &error) != 0;
    // The handles a user placed on the node keep working under the new names.
    if (ok && node)
        gz_ParmRenames::follow(*GZgetManager(), *node, renamed, deleted, warnings);
    for (const std::string &line : warnings)
        args.err() << line << "\n";
    if (!ok)
        args.err() << args.commandName() << ": " << error << "\n";
}

// sparerm NODEPATH NAME...
void cmdSpareRm(Shell &shell, HostCommandArgs &args)
{
    HostNode *node = spareNode(shell, args, 1);
    if (!node)
        return;
    GZ_EditScriptedParms parms(node, spareOptions());
    // Check every name first: a command with a bad name changes nothing.
    for (int a = 2; a < args.argc(); ++a)
        if (findEntry(args, parms, args.arg(a)) < 0)
            return;
    GZ_OldParms old;
    old.preserveOldParms(parms);
    for (int a = 2; a < args.argc(); ++a)
    {
        const int i = parms.getParmIndexWithName(args.arg(a));
        if (i < 0)
            continue;
        parms.removeParms(i, i, /*fix_joins=*/true);
        old.deleteOldParm(args.argv(a));
    }
    applyWithRepairs(shell, args, parms, old);
}

/// Why `name` cannot become the name of spare parameter `parm`; empty when it can. Names in
/// `freed` are given up by the same edit.
std::string renameProblem(HostNode &node, const GZ_EditScriptedParms &parms,
                          const GZ_EditScriptedParm &parm, const std::string &name,
                          const std::set<std::string> &freed)
{
    if (!HostVariableName::isValid(name, parm.getName().find('#') != std::string::npos ? "#"
                                                                                        : nullptr))
        return "invalid name " + name;
    // The new name and every channel it brings must be free on the node (its own
    // parameters and its other spares alike).
    std::vector<std::string> names = parm.getChannelNames(name);
    names.push_back(name);
    for (const std::string &n : names)
    {
        int k = -1;
        const HostParm *taken = node.findChannel(n, k);
        if (!taken)
            taken = node.getParm(n);
        const GZ_EditScriptedParm *entry = parms.getParmWithName(n);
        if ((taken && taken->getName() != parm.getName() && !freed.count(taken->getName())) ||
            (entry && entry != &parm && !freed.count(n)))
            return n + " is already used on " + node.getFullPath();
    }
    return std::string();
}

// sparerename NODEPATH OLD NEW [OLD NEW]...: the renames are one edit, so names may be
// exchanged ("a b b a" swaps a and b).
void cmdSpareRename(Shell &shell, HostCommandArgs &args)
{
    HostNode *node = spareNode(shell, args, 1);
    if (!node)
        return;
    if (args.argc() % 2 != 0)
    {
        args.err() << "sparerename: every old name needs a new name\n";
        return;
    }
    GZ_EditScriptedParms parms(node, spareOptions());
    std::vector<GZ_EditScriptedParm *> renamed;
    std::set<std::string> freed, taken;
    for (int a = 2; a + 1 < args.argc(); a += 2)
    {
        const int i = findEntry(args, parms, args.arg(a));
        if (i < 0)
            return;
        renamed.push_back(parms.getParm(i));
        if (!freed.insert(args.arg(a)).second)
        {
            args.err() << "sparerename: " << args.arg(a) << " is given twice\n";
            return;
        }
    }
    for (int a = 2, r = 0; a + 1 < args.argc(); a += 2, ++r)
    {
        std::string problem = renameProblem(*node, parms, *renamed[r], args.arg(a + 1), freed);
        if (problem.empty() && !taken.insert(args.arg(a + 1)).second)
            problem = args.arg(a + 1) + " is given twice";
        if (!problem.empty())
        {
            args.err() << "sparerename: " << problem << "; " << args.arg(a) << " is unchanged\n";
            return;
        }
    }
    bool changes = false;
    for (int a = 2; a + 1 < args.argc(); a += 2)
        changes = changes || args.arg(a) != args.arg(a + 1);
    if (!changes)
        return;
    GZ_OldParms old;
    old.preserveOldParms(parms);
    // Through placeholders, so that a rename onto a name another pair gives up does not
    // merge the two records.
    const int pairs = static_cast<int>(renamed.size());
    for (int r = 0; r < pairs; ++r)
        old.renameOldParm(args.argv(2 + 2 * r), ("\x01" + std::to_string(r)).c_str());
    for (int r = 0; r < pairs; ++r)
    {
        renamed[r]->setName(args.arg(3 + 2 * r));
        old.renameOldParm(("\x01" + std::to_string(r)).c_str(), args.argv(3 + 2 * r));
    }
    applyWithRepairs(shell, args, parms, old);
}

/// Changes the links of spare parameter argument 2 by the paths from argument 3 on (`link`:
/// adds, else removes) and applies them as one undo step; warnings go to the error stream.
void editLinks(Shell &shell, HostCommandArgs &args, bool link)
{
    HostNode *node = spareNode(shell, args, 1);
    if (!node)
        return;
    GZ_EditScriptedParms::BuildOptions options = spareOptions();
    options.myReadAutolinks = true;
    GZ_EditScriptedParms parms(node, options);
    const int i = findEntry(args, parms, args.arg(2));
    if (i < 0)
        return;
    GZ_EditScriptedParm *def = parms.getParm(i);
    std::vector<std::string> paths;
    for (int a = 3; a < args.argc(); ++a)
        paths.push_back(args.arg(a));
    std::vector<std::string> warnings;
    std::vector<GZ_EditScriptedParm *> changed;
    if (link)
        parms.addParametersToAutolinks(def, paths, node->getFullPath(), /*include_invisible=*/true,
                                       changed, warnings);
    else if (def->removeAutolinks(paths, node->getFullPath()))
        changed.push_back(def);
    if (changed.empty() && warnings.empty())
        args.err() << args.commandName() << ": no link of " << args.arg(2)
                   << (link ? " can be made to " : " leads to ") << "the paths given\n";
    ShellUndoBlock block(shell, args);
    std::vector<int> node_ids, parm_indices;
    parms.applyAutoLinks(warnings, node_ids, parm_indices);
    GZ_EditScriptedParms::updateNodesFromApplyAutoLinks(node_ids, parm_indices);
    for (const std::string &warning : warnings)
        args.err() << warning << "\n";
}

// sparelink NODEPATH PARM PATH...
void cmdSpareLink(Shell &shell, HostCommandArgs &args)
{
    editLinks(shell, args, /*link=*/true);
}

// spareunlink NODEPATH PARM PATH...
void cmdSpareUnlink(Shell &shell, HostCommandArgs &args)
{
    editLinks(shell, args, /*link=*/false);
}

// parmdeletebehavior [N]
void cmdParmDeleteBehavior(Shell &, HostCommandArgs &args)
{
    if (args.argc() == 1)
    {
        args.out() << GZ_OldParms::getParameterDeletionBehavior() << "\n";
        return;
    }
    char *end = nullptr;
    const long value = std::strtol(args.argv(1), &end, 10);
    if (end == args.argv(1) || *end != '\0' || value < 0 || value > 1000)
    {
        args.err() << "parmdeletebehavior: bad behaviour " << args.arg(1)
                   << " (0 bake, 1 bake channel references, 2 report)\n";
        return;
    }
    GZ_OldParms::setParameterDeletionBehavior(static_cast<int>(value));
}

// sparemv NODEPATH NAME OFFSET
void cmdSpareMv(Shell &shell, HostCommandArgs &args)
{
    HostNode *node = spareNode(shell, args, 1);
    if (!node)
        return;
    char *end = nullptr;
    const long offset = std::strtol(args.argv(3), &end, 10);
    if (end == args.argv(3) || *end != '\0' || offset < -1000000 || offset > 1000000)
    {
        args.err() << "sparemv: bad offset " << args.arg(3) << "\n";
        return;
    }
    GZ_EditScriptedParms parms(node, spareOptions());
    const int first = findEntry(args, parms, args.arg(2));
    if (first < 0)
        return;
    const int match = parms.getMatchingGroupParm(first);
    const int last = match > first ? match : first;
    if (!parms.moveParms(first, last, static_cast<int>(offset), /*fix_groups=*/true))
    {
        args.err() << "sparemv: cannot move " << args.arg(2) << " by " << offset
                   << ": it would leave its folder or the list\n";
        return;
    }
    applyToNode(shell, args, parms);
}

// sparecompile NODEPATH
void cmdSpareCompile(Shell &shell, HostCommandArgs &args)
{
    listSpares(shell, args, /*compiled=*/true);
}

// sparecopy DEST SRC...
void cmdSpareCopy(Shell &shell, HostCommandArgs &args)
{
    HostNode *dest = spareNode(shell, args, 1);
    if (!dest)
        return;
    std::vector<HostNode *> sources;
    for (int a = 2; a < args.argc(); ++a)
    {
        HostNode *src = spareNode(shell, args, a);
        if (!src)
            return;
        sources.push_back(src);
    }
    GZ_EditScriptedParmsAggregate aggregate(sources);
    GZ_EditScriptedParms parms(dest, spareOptions());
    aggregate.copyToParms(parms, /*always_safe=*/true);
    applyToNode(shell, args, parms);
}

// optypeparms TABLE/TYPE
void cmdOpTypeParms(Shell &, HostCommandArgs &args)
{
    const std::string &key = args.arg(1);
    const size_t slash = key.find('/');
    HostOperatorTable *table =
        slash == std::string::npos ? nullptr : HostOperatorTable::getTable(key.substr(0, slash));
    HostOperator *op = table ? table->getOperator(key.substr(slash + 1)) : nullptr;
    if (!op)
    {
        args.err() << "optypeparms: no operator type " << key << "\n";
        return;
    }
    GZ_EditScriptedParms parms(op, nullptr, GZ_EditScriptedParms::BuildOptions());
    std::string errors;
    parms.save(args.out(), errors, /*check_joins=*/true);
}
} // namespace

std::vector<ShellCommand> shellSpareCommands()
{
    return {
        {"spareadd", "s", "spareadd [-s] NODEPATH SOURCE", &cmdSpareAdd, true,
         "Reads a parameter section (the text sparels writes) from the file SOURCE (as given, else "
         "on the search path) or, with -s, from SOURCE itself, and appends its definitions to the "
         "node's spare parameters, names made safe and unique.",
         "-s  SOURCE is the section itself, not a file", 3, 3},
        {"sparels", "", "sparels NODEPATH", &cmdSpareLs, true,
         "Writes the node's spare parameters as a parameter section.", "", 2, 2},
        {"sparerm", "", "sparerm NODEPATH NAME...", &cmdSpareRm, true,
         "Removes the named entries; what referred to them is baked or reported as "
         "parmdeletebehavior says.",
         "", 3, -1},
        {"sparerename", "", "sparerename NODEPATH OLD NEW [OLD NEW]...", &cmdSpareRename, true,
         "Renames spare parameters and their channels in one edit (names may be exchanged), "
         "and repairs the expressions, channel references and fields that named them.",
         "", 4, -1},
        {"parmdeletebehavior", "", "parmdeletebehavior [N]", &cmdParmDeleteBehavior, true,
         "Sets what removing a spare parameter does to references to it, or writes it.", "", 1, 2},
        {"sparelink", "", "sparelink NODEPATH PARM PATH...", &cmdSpareLink, true,
         "Makes parameters of other nodes (or of the same node) follow the spare parameter "
         "PARM.",
         "", 4, -1},
        {"spareunlink", "", "spareunlink NODEPATH PARM PATH...", &cmdSpareUnlink, true,
         "Removes links that sparelink made.", "", 4, -1},
        {"sparemv", "", "sparemv NODEPATH NAME OFFSET", &cmdSpareMv, true,
         "Moves one entry by OFFSET places (negative: up).", "", 4, 4},
        {"sparecompile", "", "sparecompile NODEPATH", &cmdSpareCompile, true,
         "Writes the compiled form of the node's spare parameters.", "", 2, 2},
        {"sparecopy", "", "sparecopy DEST SRC...", &cmdSpareCopy, true,
         "Appends copies of the spare parameters of every SRC node, in order, to DEST's, names "
         "made safe and unique.",
         "", 3, -1},
        {"optypeparms", "", "optypeparms TABLE/TYPE", &cmdOpTypeParms, true,
         "Writes the parameter section of an operator type's own templates.", "", 2, 2},
    };
}
