// Checker: gzcheck itself — arguments, reading files and printing what their readers report.
#include "check/Checker.h"

#include "check/CheckKinds.h"
#include "host/HostDiagnostics.h"
#include "host/HostReader.h"
#include "shell/Shell.h"

#include <filesystem>
#include <iostream>
#include <system_error>
#include <vector>

namespace
{
int usage(const std::string &problem)
{
    std::cerr << "gzcheck: " << problem << "\n"
              << "Usage: gzcheck [-q] [-t KIND] [-p DIR]... FILE...\n"
              << "Kinds: " << CheckKinds::names() << "\n";
    return Checker::STATUS_USAGE;
}
} // namespace

int Checker::main(int argc, const char *const *argv)
{
    std::vector<std::string> dirs, files;
    const CheckKind *forced = nullptr;
    for (int i = 1; i < argc; ++i)
    {
        const std::string arg = argv[i];
        if (!files.empty() || arg.size() < 2 || arg[0] != '-')
            files.push_back(arg);
        else if (arg == "-q")
            myQuiet = true;
        else if ((arg == "-t" || arg == "-p") && i + 1 == argc)
            return usage("option " + arg + " needs a value");
        else if (arg == "-p")
            dirs.push_back(argv[++i]);
        else if (arg != "-t")
            return usage("unknown option " + arg);
        else if (!(forced = CheckKinds::find(argv[++i])))
            return usage(std::string("unknown kind ") + argv[i]);
    }
    if (files.empty())
        return usage("no file to check");

    // A scratch session gives the readers what they look things up in: operator types,
    // handles and selectors for bindings, the command table for scripts.
    Shell shell;
    shell.startup(dirs);
    bool all_read = true;
    std::string current;
    HostScopedDiagnosticSink sink([&](const HostDiagnostic &d) { print(d, current); });
    for (const std::string &file : files)
    {
        current = file;
        mySeen.clear();
        all_read = checkFile(file, forced) && all_read;
    }
    if (myQuiet)
        std::cout << myFindings << "\n";
    if (!all_read)
        return STATUS_USAGE;
    return myErrors > 0 ? STATUS_ERRORS : STATUS_CLEAN;
}

bool Checker::checkFile(const std::string &path, const CheckKind *forced)
{
    std::string text;
    std::error_code ec;
    // A directory reads as empty text on some systems: it must not pass as a clean file.
    if (std::filesystem::is_directory(path, ec) || !HostReader::readFile(path, text))
    {
        std::cerr << "gzcheck: cannot read " << path << "\n";
        return false;
    }
    const CheckKind &kind = forced ? *forced : CheckKinds::guess(path, text);
    kind.check(path, text);
    return true;
}

void Checker::print(const HostDiagnostic &d, const std::string &path)
{
    const bool error = d.mySeverity == HostDiagSeverity::Error;
    std::string line = d.myFile.empty() ? path : d.myFile;
    if (d.myLine > 0)
        line += ":" + std::to_string(d.myLine);
    line += (error ? ": error: " : ": warning: ") + d.myMessage;
    // A reader that has to read a file twice (the catalogue rebuilds itself to take a file
    // in) reports its problems twice; one finding is one line.
    if (!mySeen.insert(line).second)
        return;
    myErrors += error ? 1 : 0;
    ++myFindings;
    if (!myQuiet)
        std::cout << line << "\n";
}
