// Randomized save and load: a random scene, saved, loaded and saved again, gives the same
// bytes, in this process and in a new gzsh.
#include "ModelSeeds.h"
#include "ModelShell.h"
#include "SceneGenerator.h"
#include "SceneText.h"

#include "host/HostReader.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace fs = std::filesystem;

namespace
{
constexpr int theSteps = 150;

/// One seed's scene: built by random commands, saved, then loaded and saved again.
class SaveLoadRun
{
public:
    SaveLoadRun(unsigned seed, const fs::path &dir) : mySeed(seed), myDir(dir) {}

    /// Builds the scene from the first `steps` lines; returns the first fault, or "".
    std::string check(int steps)
    {
        ModelShell &shell = ModelShell::get();
        shell.reset();
        myLines.clear();
        // Settings are part of the saved scene, so this test makes them too.
        SceneGenerator generate(mySeed, shell.director(), /*with_settings=*/true);
        for (int i = 0; i < steps; ++i)
        {
            myLines.push_back(generate.next());
            shell.run(myLines.back());
        }
        shell.takeErrors();
        const std::string first = shell.saved();
        const fs::path saved = myDir / "first.gzs";
        std::ofstream(saved, std::ios::binary) << first;

        shell.run("sceneload " + saved.string());
        std::string fault =
            compare("loading in this process", first, shell.saved(), shell.takeErrors());
        return fault.empty() ? loadInNewProcess(saved, first) : fault;
    }

    std::string script() const
    {
        std::string text;
        for (const std::string &line : myLines)
            text += line + "\n";
        return text;
    }

private:
    static std::string compare(const std::string &how, const std::string &first,
                               const std::string &second, const std::string &errors)
    {
        if (!errors.empty())
            return how + " reported: " + errors;
        if (second != first)
            return how + " saved another scene: " + SceneText::firstDifference(first, second);
        return "";
    }

    /// A new gzsh has none of this process's state: no leftover settings, bindings or
    /// names.
    std::string loadInNewProcess(const fs::path &saved, const std::string &first) const
    {
        const fs::path again = myDir / "second.gzs";
        const fs::path errors = myDir / "second.err";
        fs::remove(again);
        const std::string command = std::string(GZ_GZSH) + " -c 'sceneload " + saved.string() +
                                    "; scenesave " + again.string() + "' 2>" + errors.string();
        if (std::system(command.c_str()) != 0)
            return "gzsh failed: " + command;
        std::string second, messages;
        HostReader::readFile(again.string(), second);
        HostReader::readFile(errors.string(), messages);
        return compare("loading in a new gzsh", first, second, messages);
    }

    unsigned mySeed;
    fs::path myDir;
    std::vector<std::string> myLines;
};

/// A scratch directory for one test, removed afterwards.
struct ScratchDir
{
    ScratchDir() : path(fs::temp_directory_path() / ("gz_model_" + std::to_string(::getpid())))
    {
        fs::create_directories(path);
    }
    ~ScratchDir() { fs::remove_all(path); }
    fs::path path;
};
} // namespace

TEST(SaveLoadModel, RandomScenesLoadAndSaveToTheSameBytes)
{
    ScratchDir dir;
    for (unsigned seed : ModelSeeds::get(/*first=*/2000, /*count=*/48))
    {
        SaveLoadRun run(seed, dir.path);
        if (run.check(theSteps).empty())
            continue;
        const auto [length, fault] =
            ModelSeeds::shortestFailure(theSteps, [&run](int steps) { return run.check(steps); });
        ADD_FAILURE() << "seed " << seed << " (GZ_MODEL_SEED=" << seed
                      << "), shortest failing prefix " << length << " lines: " << fault << "\n"
                      << run.script();
    }
}
