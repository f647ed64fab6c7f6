// ScratchDir: a temporary directory of a model test, and new gzsh processes run in it.
#pragma once

#include "host/HostReader.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>

/// A directory of its own for one test, removed afterwards. A new gzsh has none of the
/// test process's state (settings, bindings, names), which is what the round trips need.
class ScratchDir
{
public:
    explicit ScratchDir(const std::string &prefix)
        : myPath(std::filesystem::temp_directory_path() / (prefix + std::to_string(::getpid())))
    {
        std::filesystem::create_directories(myPath);
    }
    ~ScratchDir() { std::filesystem::remove_all(myPath); }
    ScratchDir(const ScratchDir &) = delete;
    ScratchDir &operator=(const ScratchDir &) = delete;

    const std::filesystem::path &path() const { return myPath; }
    std::string file(const char *name) const { return (myPath / name).string(); }
    /// The subfolder `name`, emptied: a run starts without what an earlier one left there.
    std::string freshFolder(const char *name) const
    {
        std::filesystem::remove_all(myPath / name);
        std::filesystem::create_directories(myPath / name);
        return file(name);
    }

    /// Runs a new gzsh with `options` and the command text (no single quotes in either);
    /// returns what it wrote to standard error, or a message when it did not run.
    std::string runGzsh(const std::string &options, const std::string &text) const
    {
        const std::string errors = file("gzsh.err");
        const std::string command =
            std::string(GZ_GZSH) + " " + options + " -c '" + text + "' 2>" + errors;
        if (std::system(command.c_str()) != 0)
            return "gzsh failed: " + command;
        return readText(errors);
    }

    static std::string readText(const std::string &path)
    {
        std::string text;
        HostReader::readFile(path, text);
        return text;
    }

private:
    std::filesystem::path myPath;
};
