// Fuzzes a whole gzsh script against a fresh scene: every command the shell and the library
// install meets hostile arguments, and none may crash. The commands that name files (the ones
// refused while a scene loads, which write files or leave the session, and source, which
// reads one) are wrapped so that every file they name lies in a scratch directory.
#include "shell/Shell.h"
#include "shell/ShellScripting.h"

#include "host/HostAssetLibraryManager.h"
#include "host/HostCommandManager.h"
#include "host/HostDiagnostics.h"
#include "host/HostDirector.h"
#include "host/HostReader.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace
{
// Output is thrown away after each input, so memory stays flat.
std::ostringstream theSink;
Shell *theShell = nullptr;
std::string theDir;

/// A file name made from any argument: one plain name inside the scratch directory.
std::string scratchFile(const std::string &arg)
{
    std::string name = arg.substr(0, 64);
    for (char &c : name)
        if (c == '/' || c == '\0')
            c = '_';
    return theDir + "/f" + name;
}

/// Reinstalls a command so that its positional arguments name files in the scratch
/// directory, and its default file (when it is given none) is there too.
void redirectFiles(HostCommandManager &commands, const std::string &name)
{
    HostCommandCallback original = commands.handler(name);
    const std::string options = commands.optionString(name);
    const std::string usage = commands.usage(name);
    const bool loading = commands.allowedWhileLoading(name);
    // optypesave's first argument names an operator type, not a file.
    const size_t first_file = name == "optypesave" ? 2 : 1;
    commands.uninstallCommand(name);
    commands.installCommand(
        name.c_str(), options.c_str(),
        [original, first_file](HostCommandArgs &args)
        {
            std::vector<std::string> words = args.args();
            for (size_t i = first_file; i < words.size(); ++i)
                words[i] = scratchFile(words[i]);
            HostCommandArgs redirected(words, args.out(), args.err());
            for (char letter : args.optionLetters())
            {
                std::vector<std::string> values;
                for (int i = 0; i < args.nargp(letter); ++i)
                    values.push_back(args.argp(letter, i));
                redirected.setOption(letter, values);
            }
            redirected.setUsage(args.usage());
            original(redirected);
        },
        loading, usage.c_str());
}
} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    theDir =
        (fs::temp_directory_path() / ("gz_fuzz_script_" + std::to_string(::getpid()))).string();
    fs::create_directories(theDir);
    std::atexit(
        []
        {
            std::error_code ec;
            fs::remove_all(theDir, ec);
        });
    // Relative names and the user directory (omwrite's default) land in the scratch
    // directory too.
    fs::current_path(theDir);
    ::setenv("HOME", theDir.c_str(), 1);
    theShell = new Shell;
    theShell->startup({theDir});
    // Scripting off, as for an untrusted scene (gzsh -n): python lines and Python expressions
    // take their refusal paths, and nothing the input says can reach the machine.
    ShellScripting::start(false);
    HostReader::setUserDirectory(theDir);
    HostCommandManager &commands = theShell->commands();
    commands.setStreams(&theSink, &theSink);
    // The library's own messages about bad settings are expected on almost every input.
    HostDiagnostics::setSink([](const HostDiagnostic &) {});
    for (const std::string &name : commands.commandNames())
        if (!commands.allowedWhileLoading(name) || name == "source")
            redirectFiles(commands, name);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    theSink.str("");
    // Files of earlier inputs would make this one's result depend on them.
    for (const fs::directory_entry &entry : fs::directory_iterator(theDir))
        fs::remove_all(entry.path());
    HostCommandManager &commands = theShell->commands();
    commands.execute("scenenew", /*add_to_history=*/false, /*show_output=*/false);
    HostAssetLibraryManager::get().clear(); // libraries outlive scenes, not inputs
    while (!commands.variables().empty())
        commands.unsetVariable(commands.variables().begin()->first);
    commands.clearHistory();
    commands.resetFailedLines();
    commands.execute(
        "nodeadd geo /obj/geo1; nodeadd xform /obj/geo1/xform1; nodeadd cam /obj/cam1");
    commands.execute(std::string(reinterpret_cast<const char *>(data), size));
    commands.clearExitRequest();
    return 0;
}
