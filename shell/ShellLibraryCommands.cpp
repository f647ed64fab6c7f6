// ShellLibraryCommands: gzsh's commands for operator type library files.
#include "shell/Shell.h"
#include "shell/ShellCommand.h"
#include "shell/ShellCommandSupport.h"

#include "persistent/GZ_ScriptOperator.h"

#include "host/HostAssetLibraryManager.h"
#include "host/HostReader.h"

#include <filesystem>
#include <ostream>

namespace
{
/// The library file an argument names: as given, else found on the search path.
std::string libraryPath(const std::string &arg)
{
    std::string path = arg;
    if (!std::filesystem::exists(path))
        HostReader::findFile(arg, path);
    return path;
}

// libload LIBRARY
void cmdLibLoad(Shell &, HostCommandArgs &args)
{
    if (!shellCheckCount(args, 2, 2))
        return;
    HostAssetLibraryManager &libraries = HostAssetLibraryManager::get();
    const std::string path = libraryPath(args.arg(1));
    if (!libraries.loadLibrary(path, "libload", args.arg(1)))
        return;
    // Copied: defining a type does not touch the library list, but keep the loop safe.
    const std::vector<HostAssetDefinition> definitions = libraries.findLibrary(path)->myDefinitions;
    // Read errors of a script name the library and the definition ("LIB(Sop/nudge)[LINE]").
    for (const HostAssetDefinition &def : definitions)
    {
        std::string error;
        if (!GZ_ScriptOperator::defineFromLibrary(def, path, args.arg(1), error))
            args.err() << "libload: " << error << "\n";
    }
}

// libls [LIBRARY]
void cmdLibLs(Shell &, HostCommandArgs &args)
{
    if (!shellCheckCount(args, 1, 2))
        return;
    HostAssetLibraryManager &libraries = HostAssetLibraryManager::get();
    if (args.argc() == 1)
    {
        for (const HostAssetLibraryManager::Library &library : libraries.getLibraries())
            args.out() << library.myPath << "\t" << library.mySource << "\n";
        return;
    }
    std::vector<HostAssetDefinition> definitions;
    if (const HostAssetLibraryManager::Library *library = libraries.findLibrary(args.arg(1)))
        definitions = library->myDefinitions;
    else if (!HostAssetLibraryManager::readLibrary(libraryPath(args.arg(1)), definitions,
                                                   args.arg(1)))
        return;
    for (const HostAssetDefinition &def : definitions)
    {
        args.out() << def.getName() << "\t" << def.getLabel() << "\t" << def.getMinInputs() << "-"
                   << def.getMaxInputs();
        for (const HostAssetDefinition::Section &section : def.getSections())
            args.out() << "\t" << section.first << "(" << section.second.size() << ")";
        args.out() << "\n";
    }
}
} // namespace

std::vector<ShellCommand> shellLibraryCommands()
{
    return {
        {"libload", "", "libload LIBRARY", &cmdLibLoad, true,
         "Reads the operator type library file LIBRARY and defines every operator type it "
         "holds from its DialogScript section. A damaged file is refused whole."},
        {"libls", "", "libls [LIBRARY]", &cmdLibLs, true,
         "Without LIBRARY: the loaded libraries, each with where it came from. With LIBRARY: "
         "its definitions (name, label, input counts, sections with their sizes)."},
    };
}
