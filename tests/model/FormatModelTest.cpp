// Randomized text formats: bindings written as a bindings file and read by a new gzsh, and
// persistent handles written as their saved lines and run again, come back the same.
#include "ModelSeeds.h"
#include "ModelShell.h"
#include "SceneGenerator.h"
#include "SceneText.h"

#include "host/HostCommandParser.h"
#include "host/HostReader.h"
#include "shell/ShellPersistent.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <random>
#include <unistd.h>

namespace fs = std::filesystem;

namespace
{
/// Random binding commands: handles and selectors bound to and unbound from the gzsh
/// operator types, with default settings.
class BindingGenerator
{
public:
    explicit BindingGenerator(unsigned seed) : myRng(seed) {}

    std::string next()
    {
        const bool object = below(3) == 0;
        const std::string table = object ? "-t obj " : "-t sop ";
        const std::string op =
            object ? pick({"geo", "null", "cam"}) : pick({"xform", "box", "sphere", "null"});
        switch (below(8))
        {
        case 0:
            return "omunbind " + table + op + (below(2) ? ":" + pick({"tx", "t", "ry"}) : "") +
                   (below(2) ? " " + pick({"d1", "d2", "d3"}) : "");
        case 1:
            return "omsunbind " + table + op + (below(2) ? " " + pick({"s1", "s2"}) : "");
        case 2:
            return "omsbind " + table + op + ":" + pick({"group", ""}) + " " +
                   pick({"everything", "prims", "objselect", "edges"}) + " " +
                   pick({"s1", "s2", "s3"}) + " " + pick({"Select", "Pick_it"}) + " " +
                   std::to_string(below(3)) + " " + std::to_string(below(2)) + " " +
                   pick({"all", "poly", "\"\""}) + " " + std::to_string(below(2)) + " " +
                   pick({"\"\"", "menu"}) + " " + std::to_string(below(2));
        default:
            return "ombind " + table + (below(2) ? "-d " + settings() + " " : "") +
                   pick({"d1", "d2", "d3", "d4"}) + " " + op + ":" +
                   pick({"tx", "ty", "tz", "rx", "t", "r", "scale"}) + " " +
                   pick({"xform", "translate", "rotate"}) + ":" +
                   pick({"tx", "ty", "tz", "rx", "ry", "sx", "uniform_scale"});
        }
    }

private:
    /// Settings text as one protected word, each setting name at most once.
    std::string settings()
    {
        std::string text;
        const int first = below(4);
        for (int n = 1 + below(3), kind = first; n > 0; --n, kind = (kind + 1) % 4)
        {
            if (!text.empty())
                text += " ";
            switch (kind)
            {
            case 0:
                text += "color(" + number() + " " + number() + " " + number() + ")";
                break;
            case 1:
                text += "showoppath(" + std::to_string(below(2)) + ")";
                break;
            case 2:
                text += "ownerop('" + pick({"xform1", "a b", "it\\'s", "back\\\\slash"}) + "')";
                break;
            default:
                text += "scale(" + number() + ")";
                break;
            }
        }
        return HostCommandParser::protect(text);
    }

    std::string number()
    {
        std::uniform_real_distribution<double> any(-100.0, 100.0);
        char text[40];
        std::snprintf(text, sizeof(text), "%.17g", any(myRng));
        return text;
    }

    int below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(myRng); }
    std::string pick(std::initializer_list<const char *> words)
    {
        return words.begin()[below(static_cast<int>(words.size()))];
    }

    std::mt19937 myRng;
};

std::string readText(const fs::path &path)
{
    std::string text;
    HostReader::readFile(path.string(), text);
    return text;
}

/// A scratch directory for one test, removed afterwards.
struct ScratchDir
{
    ScratchDir() : path(fs::temp_directory_path() / ("gz_format_" + std::to_string(::getpid())))
    {
        fs::create_directories(path);
    }
    ~ScratchDir() { fs::remove_all(path); }
    fs::path path;
};

/// Changes the process's bindings by random commands, writes them as a bindings file, and
/// has a new gzsh read that file (first on its search path) and write it again.
std::string checkBindings(unsigned seed, int steps, const fs::path &dir)
{
    ModelShell &shell = ModelShell::get();
    BindingGenerator generate(seed);
    for (int i = 0; i < steps; ++i)
        shell.run(generate.next());
    shell.takeErrors();
    const fs::path first = dir / "OPbindings";
    shell.run("omwrite " + first.string());
    const std::string errors = shell.takeErrors();
    if (!errors.empty())
        return "omwrite reported: " + errors;
    const fs::path second = dir / "second";
    const fs::path messages = dir / "second.err";
    const std::string command = std::string(GZ_GZSH) + " -p " + dir.string() + " -c 'omwrite " +
                                second.string() + "' 2>" + messages.string();
    if (std::system(command.c_str()) != 0)
        return "gzsh failed: " + command;
    if (!readText(messages).empty())
        return "reading the file reported: " + readText(messages);
    const std::string written = readText(first);
    const std::string again = readText(second);
    return again == written
               ? ""
               : "the file read back wrote " + SceneText::firstDifference(written, again);
}
} // namespace

TEST(FormatModel, RandomBindingsReadBackFromTheirFileEqual)
{
    // Bindings are the process's, so each seed goes on from the bindings of the last; the
    // file of every seed must still read back equal.
    ScratchDir dir;
    for (unsigned seed : ModelSeeds::get(/*first=*/3000, /*count=*/24))
    {
        const std::string fault = checkBindings(seed, 60, dir.path);
        EXPECT_EQ(fault, "") << "seed " << seed << " (GZ_MODEL_SEED=" << seed << ")";
    }
}

TEST(FormatModel, SavedHandlesAndGroupsRunAgainGiveTheSameLines)
{
    ModelShell &shell = ModelShell::get();
    for (unsigned seed : ModelSeeds::get(/*first=*/4000, /*count=*/48))
    {
        shell.reset();
        SceneGenerator generate(seed, shell.director(), /*with_settings=*/true);
        for (int i = 0; i < 120; ++i)
            shell.run(generate.next());
        const std::string lines = shell.run("pomscript; pomscript -g");
        shell.takeErrors();
        // The nodes stay; only the handles and groups go and come back from their lines.
        ShellPersistent::clear(shell.director());
        shell.run(lines);
        const std::string errors = shell.takeErrors();
        const std::string again = shell.run("pomscript; pomscript -g");
        EXPECT_EQ(errors, "") << "seed " << seed;
        EXPECT_EQ(again, lines) << "seed " << seed << ": "
                                << SceneText::firstDifference(lines, again);
    }
}
