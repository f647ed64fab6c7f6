// Shell: start-up, argument handling and the ways gzsh reads commands.
#include "shell/Shell.h"

#include "shell/ShellCommand.h"
#include "shell/ShellOperatorCatalog.h"
#include "shell/ShellResourceManager.h"
#include "shell/ShellScripting.h"
#include "shell/ShellViewerClasses.h"

#include "host/HostCommandManager.h"
#include "host/HostCommandParser.h"
#include "host/HostCommandTable.h"
#include "host/HostDiagnostics.h"
#include "host/HostDirector.h"
#include "host/HostReader.h"
#include "persistent/GZ_Manager.h"
#include "resource/GZ_ClassManager.h"
#include "resource/GZ_ResourceManager.h"

#include <cstdio>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <sstream>
#include <system_error>
#include <unistd.h>

#include <editline/readline.h>

namespace fs = std::filesystem;

namespace
{

/// A problem of gzsh's own (its arguments, a file it cannot read).
void reportError(const std::string &text)
{
    HostDiagnostics::report(HostDiagSeverity::Error, "", 0, text);
}

std::string baseName(const std::string &path)
{
    size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

bool isBlankLine(const char *line)
{
    for (; *line; ++line)
        if (*line != ' ' && *line != '\t')
            return false;
    return true;
}
} // namespace

Shell::Shell() : myCommands(HostCommandManager::getInstance()) {}

HostDirector &Shell::director() const
{
    return *HostDirector::instance();
}

const char *Shell::usageLine()
{
    return "usage: gzsh [-n] [-p DIR]... [-c TEXT] [FILE...]";
}

std::string Shell::dataDirectory()
{
    std::error_code ec;
    fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    if (!ec)
    {
        fs::path installed = exe.parent_path().parent_path() / GZ_INSTALL_DATA_DIR;
        if (fs::is_directory(installed, ec))
            return installed.string();
    }
    return GZ_BUILD_DATA_DIR;
}

void Shell::startup(const std::vector<std::string> &dirs)
{
    std::vector<std::string> path = dirs;
    path.push_back(dataDirectory());
    HostReader::setSearchPath(path);

    ShellOperatorCatalog::install();
    startLibrary();
    installCommands();
}

void Shell::startLibrary()
{
    // The viewer side of the host registers its handle and selector classes first, so that
    // the resource manager can join them to its templates when it is created.
    ShellViewerClasses::registerAll();
    // The persistent handle manager installs the pom* commands.
    GZgetManager();
    if (GZresourceManagerExists())
        return;
    // Warnings of the built-in tables are for library developers; later ones are printed.
    GZ_ResourceManager *manager = ShellResourceManager::create(/*print_warnings=*/false);
    if (manager)
        manager->registerOpHandleBindings();
}

void Shell::installCommands()
{
    // The interpreter is process-wide: the first shell's rows stay, a later shell's are left
    // out as installed already.
    for (ShellCommandGroup group : shellCommandGroups())
        HostCommandTable::install<Shell>(*myCommands, group(), [this] { return this; });
}

bool Shell::findScript(const std::string &name, std::string &path)
{
    // Any readable thing that is not a directory: pipes and devices too ("gzsh /dev/stdin",
    // "gzsh <(generate)").
    std::error_code ec;
    if (fs::exists(name, ec) && !fs::is_directory(name, ec))
    {
        path = name;
        return true;
    }
    if (!name.empty() && name[0] == '/')
        return false;
    return HostReader::findFile(name, path);
}

bool Shell::runFile(const std::string &path, const std::string &label)
{
    std::string found, text;
    if (ShellScripting::isPythonFile(path))
        return runPythonFile(path);
    if (!findScript(path, found) || !HostReader::readFile(found, text))
        return false;
    HostExecOptions options;
    options.source = label.empty() ? baseName(path) : label;
    myCommands->execute(text, options);
    return true;
}

bool Shell::runPythonFile(const std::string &path)
{
    std::string found, error;
    if (!findScript(path, found))
        return false;
    if (!ShellScripting::runFile(found, {}, error) && !error.empty())
    {
        myCommands->err() << "gzsh: " << path << ": " << error << "\n";
        myFileFailed = true;
    }
    return true;
}

void Shell::runText(const std::string &text, const std::string &label)
{
    HostExecOptions options;
    options.source = label;
    myCommands->execute(text, options);
}

void Shell::runPrompt()
{
    rl_readline_name = "gzsh";
    while (!myCommands->exitRequested())
    {
        char *line = readline("gzsh> ");
        if (!line)
        {
            std::cout << "\n";
            break;
        }
        if (!isBlankLine(line))
            add_history(line);
        std::string text(line);
        std::free(line);
        // An open quote or a trailing backslash goes on on the next line, as in a file.
        while (HostCommandParser::needsMoreLines(text))
        {
            char *more = readline("> ");
            if (!more)
                break;
            text += "\n";
            text += more;
            std::free(more);
        }
        myCommands->execute(text, /*add_to_history=*/true);
        std::cout.flush();
    }
}

int Shell::status() const
{
    return (myFileFailed || myCommands->failedLines() > 0) ? STATUS_FAILED : STATUS_OK;
}

int Shell::main(int argc, const char *const *argv)
{
    std::vector<std::string> dirs, files;
    std::string text;
    bool has_text = false;
    bool options_done = false;
    for (int i = 1; i < argc; ++i)
    {
        std::string arg = argv[i];
        if (options_done || arg.size() < 2 || arg[0] != '-')
        {
            files.push_back(arg);
            continue;
        }
        if (arg == "--")
        {
            options_done = true;
            continue;
        }
        if (arg == "-n")
        {
            myScripting = false;
            continue;
        }
        if (arg == "-h" || arg == "--help")
        {
            std::cout << usageLine() << "\n";
            return STATUS_OK;
        }
        if ((arg == "-p" || arg == "-c") && i + 1 < argc && !(arg == "-c" && has_text))
        {
            if (arg == "-p")
            {
                dirs.push_back(argv[++i]);
            }
            else
            {
                text = argv[++i];
                has_text = true;
            }
            continue;
        }
        if (arg == "-c" && has_text)
            reportError("gzsh: -c given twice");
        else if (arg == "-p" || arg == "-c")
            reportError("gzsh: option " + arg + " needs a value");
        else
            reportError("gzsh: unknown option " + arg);
        reportError(usageLine());
        return STATUS_USAGE;
    }

    startup(dirs);
    // Only gzsh itself starts Python; shells driven in-process (tests, fuzzers) run without.
    ShellScripting::start(myScripting);
    for (const std::string &file : files)
    {
        if (myCommands->exitRequested())
            break;
        if (!runFile(file))
        {
            reportError("gzsh: cannot read " + file);
            myFileFailed = true;
        }
    }
    if (has_text && !myCommands->exitRequested())
        runText(text, "-c");
    if (files.empty() && !has_text)
    {
        if (isatty(STDIN_FILENO))
        {
            runPrompt();
        }
        else
        {
            std::string input((std::istreambuf_iterator<char>(std::cin)),
                              std::istreambuf_iterator<char>());
            runText(input, "stdin");
        }
    }
    std::cout.flush();
    ShellScripting::stop();
    return status();
}
