// ShellPropCommands: gzsh's commands over the spare-property catalogue, the shell's property
// map and the import groups of spare parameters.
#include "shell/Shell.h"
#include "shell/ShellCommand.h"
#include "shell/ShellCommandSupport.h"

#include "link/GZ_PropertyMap.h"
#include "persistent/GZ_ImportUtils.h"
#include "persistent/GZ_SpareProperty.h"
#include "scriptedit/GZ_EditScriptedParms.h"

#include "host/HostDiagnostics.h"
#include "host/HostNode.h"
#include "host/HostParm.h"
#include "host/HostParmList.h"
#include "host/HostParmNameMap.h"
#include "host/HostReader.h"
#include "host/HostScriptPage.h"

#include <map>
#include <memory>
#include <ostream>
#include <string>

namespace
{
GZ_EditScriptedParms::BuildOptions spareOptions()
{
    GZ_EditScriptedParms::BuildOptions options;
    options.myFallbackToOperator = false;
    return options;
}

/// Hands the catalogue's messages to the diagnostics channel, one line each; a message read
/// from a file keeps its "FILE[LINE]: " start as it was written.
void reportMessages(const std::string &messages, HostDiagSeverity severity)
{
    std::size_t start = 0;
    while (start < messages.size())
    {
        std::size_t end = messages.find('\n', start);
        if (end == std::string::npos)
            end = messages.size();
        const std::string line = messages.substr(start, end - start);
        HostDiagnostics::report(severity, "", 0, line, line);
        start = end + 1;
    }
}

// proplist [-t] [CLASS [PATTERN]]
void cmdPropList(Shell &, HostCommandArgs &args)
{
    std::string errors, out;
    GZ_SpareProperty::list(errors, out, args.argc() > 1 ? args.argv(1) : nullptr,
                           args.argc() > 2 ? args.argv(2) : nullptr, args.found('t'));
    args.out() << out;
    reportMessages(errors, HostDiagSeverity::Error);
}

// propclasses [TAGEXPR]
void cmdPropClasses(Shell &, HostCommandArgs &args)
{
    std::vector<std::string> names;
    GZ_SpareProperty::getClasses(names, args.argc() > 1 ? args.argv(1) : nullptr);
    for (const std::string &name : names)
        args.out() << name << "\n";
}

// propadd [-f] [-m] [-a FOLDER] [-d FOLDER] NODEPATH CLASS PATTERN
void cmdPropAdd(Shell &shell, HostCommandArgs &args)
{
    HostNode *node = shellFindNode(shell, args, args.arg(1));
    if (!node)
        return;
    std::string errors;
    {
        ShellUndoBlock block(shell, args);
        GZ_SpareProperty::addProperty(
            node, args.argp('a'), args.argv(2), args.argv(3), errors,
            args.found('f') ? GZ_SPARE_PROPERTY_USE_FILTER : GZ_SPARE_PROPERTY_NO_FILTER,
            args.found('m') ? GZ_SPARE_PROPERTY_PACKAGE_MAIN : GZ_SPARE_PROPERTY_NO_PACKAGE,
            args.argp('d'));
    }
    reportMessages(errors, HostDiagSeverity::Warning);
}

// propfile FILE
void cmdPropFile(Shell &, HostCommandArgs &args)
{
    std::string errors;
    GZ_SpareProperty::addClassFile(errors, args.argv(1), 0);
    reportMessages(errors, HostDiagSeverity::Warning);
}

/// The shell's property map: usual names of parameters and channels, and the catalogue
/// properties that provide them. Renamed rows give the node the catalogue's name and keep the
/// usual channel names as aliases.
GZ_PropertyMap &shellPropertyMap()
{
    static GZ_PropertyMap map = []
    {
        static const GZ_PropertyMapDef rows[] = {
            {"renderable", "render", "gz_render_visible"},
            {"matte", "render", "gz_render_matte"},
            {"shadows", "render", "gz_render_shadow"},
            {"fstop", "lens", "gz_lens_fstop"},
            {"focus", "lens", "gz_lens_focus"},
            {"dcolor", "display", "gz_display_color", "dcolorr", "dcolorg", "dcolorb"},
            {"lod", "display", "gz_display_lod"},
            {"priority", "tasks", "gz_task_priority"},
        };
        GZ_PropertyMap m;
        m.setMap(static_cast<int>(sizeof rows / sizeof rows[0]), rows);
        m.renameParameter("renderable", "gz_render_visible", nullptr, nullptr, nullptr, nullptr);
        m.renameParameter("matte", "gz_render_matte", nullptr, nullptr, nullptr, nullptr);
        m.renameParameter("shadows", "gz_render_shadow", nullptr, nullptr, nullptr, nullptr);
        m.renameParameter("fstop", "gz_lens_fstop", nullptr, nullptr, nullptr, nullptr);
        m.renameParameter("focus", "gz_lens_focus", nullptr, nullptr, nullptr, nullptr);
        m.renameParameter("dcolor", "gz_display_color", "gz_display_colorr", "gz_display_colorg",
                          "gz_display_colorb", nullptr);
        m.renameParameter("lod", "gz_display_lod", nullptr, nullptr, nullptr, nullptr);
        m.renameParameter("priority", "gz_task_priority", nullptr, nullptr, nullptr, nullptr);
        return m;
    }();
    return map;
}

// propchannel NODEPATH CHANNEL
void cmdPropChannel(Shell &shell, HostCommandArgs &args)
{
    HostNode *node = shellFindNode(shell, args, args.arg(1));
    if (!node)
        return;
    GZ_EditScriptedParms parms(node, spareOptions());
    const int before = parms.entries();
    HostParmNameMap renames;
    bool available = shellPropertyMap().createFromChannel(parms, &renames, args.argv(2));
    if (parms.entries() != before)
    {
        ShellUndoBlock block(shell, args);
        std::string error;
        available = parms.updateNode(&error) && available;
        if (!error.empty())
            args.err() << "propchannel: " << error << "\n";
        shellPropertyMap().applyPendingAliases(*node);
    }
    args.out() << (available ? 1 : 0) << "\n";
}

/// Whether an import group's source still offers what its token names.
bool importIsCurrent(HostNode &node, const GZ_EditScriptedParm &group)
{
    const char *source = group.getImportSource();
    const char *token = group.getImportToken();
    const std::string text = token ? token : "";
    const bool is_folder = text.find(':') != std::string::npos;
    const std::string name = text.substr(0, text.find(':'));
    std::string path;
    if (GZ_ImportUtils::queryImportType(source) == GZ_IMPORT_OP)
    {
        HostNode *from = GZ_ImportUtils::parseOpSource(source, &node, path);
        if (!from)
            return false;
        std::map<std::string, HostParm *> parms;
        const HostParmList &list = from->getParmList();
        for (int i = 0; i < list.getEntries(); ++i)
            parms.emplace(list.getParm(i)->getName(), list.getParm(i));
        auto it = parms.find(name);
        const bool multi = it != parms.end() && it->second->isMultiParm();
        return GZ_ImportUtils::validateOpSource(source, token, is_folder, multi, path.c_str(),
                                                parms);
    }
    if (!GZ_ImportUtils::parseFileSource(source, path))
        return false;
    // A file that is not where the source says is looked for on the search path, as the
    // shell finds every other dialog script.
    std::string found;
    if (!HostReader(path).isOpen() && HostReader::findFile(path, found))
        path = found;
    std::unique_ptr<HostScriptPage> page = GZ_ImportUtils::parseImportFile(path.c_str());
    if (!page)
        return false;
    std::vector<std::unique_ptr<HostScriptParm>> storage;
    std::map<std::string, HostScriptParm *> parms;
    GZ_ImportUtils::indexFileParms(*page, storage, parms);
    auto it = parms.find(name);
    const bool multi = it != parms.end() && it->second && it->second->isMultiparm();
    return GZ_ImportUtils::validateFileSource(source, token, is_folder, multi, source, parms);
}

// importcheck NODEPATH
void cmdImportCheck(Shell &shell, HostCommandArgs &args)
{
    HostNode *node = shellFindNode(shell, args, args.arg(1));
    if (!node)
        return;
    GZ_EditScriptedParms parms(node, spareOptions());
    for (int i = 0; i < parms.entries(); ++i)
    {
        const GZ_EditScriptedParm &parm = *parms.getParm(i);
        if (parm.getFolderType() == GZ_FOLDER_IMPORT)
            args.out() << parm.getLabel() << ": "
                       << (importIsCurrent(*node, parm) ? "ok" : "stale") << "\n";
    }
}
} // namespace

std::vector<ShellCommand> shellPropCommands()
{
    return {
        {"proplist", "t", "proplist [-t] [CLASS [PATTERN]]", &cmdPropList, true,
         "Lists the spare-property classes, the categories of the classes matching CLASS, or "
         "the properties of their categories matching PATTERN.",
         "-t  terse: names only, without headings", 1, 3},
        {"propclasses", "", "propclasses [TAGEXPR]", &cmdPropClasses, true,
         "Lists the names of the spare-property classes whose tags satisfy TAGEXPR (all "
         "without one), sorted.",
         "", 1, 2},
        {"propadd", "fma:d:", "propadd [-f] [-m] [-a FOLDER] [-d FOLDER] NODEPATH CLASS PATTERN",
         &cmdPropAdd, true,
         "Adds the properties matching PATTERN of the classes matching CLASS to the node's "
         "spare parameters, each inside the folder of its category.",
         "-f  honour the classes' operator filters\n"
         "-m  package existing parameters into a \"Main\" folder when there is no folder\n"
         "-a FOLDER  put new folders after the folder labelled FOLDER\n"
         "-d FOLDER  put the properties into the folder labelled FOLDER",
         4, 4},
        {"propfile", "", "propfile FILE", &cmdPropFile, true,
         "Appends a property file to the catalogue and reloads it.", "", 2, 2},
        {"propchannel", "", "propchannel NODEPATH CHANNEL", &cmdPropChannel, true,
         "Makes the parameter behind CHANNEL available on the node from the shell's property "
         "map; prints 1 when it is, 0 when not.",
         "", 3, 3},
        {"importcheck", "", "importcheck NODEPATH", &cmdImportCheck, true,
         "For each import group of the node's spare parameters, prints \"LABEL: ok\" or "
         "\"LABEL: stale\".",
         "", 2, 2},
    };
}
