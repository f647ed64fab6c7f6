// Randomized save and load: a random scene, saved, loaded and saved again, gives the same
// bytes, in this process and in a new gzsh.
#include "ModelRun.h"
#include "ModelSeeds.h"
#include "ModelShell.h"
#include "SceneGenerator.h"
#include "SceneText.h"
#include "ScratchDir.h"

#include <gtest/gtest.h>

#include <fstream>

namespace
{
constexpr int theSteps = 150;

/// One seed's scene: built by random commands, saved, then loaded and saved again.
class SaveLoadRun : public ModelRun
{
public:
    SaveLoadRun(unsigned seed, const ScratchDir &dir) : ModelRun(seed), myDir(dir) {}

    std::string check(int steps) override
    {
        ModelShell &shell = ModelShell::get();
        shell.reset();
        myLines.clear();
        // Settings are part of the saved scene, so this test makes them too; so are the
        // scripted types and libraries, defined, saved and loaded among the other changes.
        SceneGenerator generate(seed(), shell.director(), /*with_settings=*/true,
                                myDir.freshFolder("types"));
        generate.setTypesInSequence(true);
        for (int i = 0; i < steps; ++i)
        {
            myLines.push_back(generate.next());
            shell.run(myLines.back());
        }
        shell.takeErrors();
        const std::string first = shell.saved();
        const std::string saved = myDir.file("first.gzs");
        std::ofstream(saved, std::ios::binary) << first;

        shell.run("sceneload " + saved);
        std::string fault =
            compare("loading in this process", first, shell.saved(), shell.takeErrors());
        if (!fault.empty())
            return fault;
        const std::string again = myDir.file("second.gzs");
        const std::string errors =
            myDir.runGzsh("", "set V injected; sceneload " + saved + "; scenesave " + again);
        return compare("loading in a new gzsh", first, ScratchDir::readText(again), errors);
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

    const ScratchDir &myDir;
};
} // namespace

TEST(SaveLoadModel, RandomScenesLoadAndSaveToTheSameBytes)
{
    ScratchDir dir("gz_model_");
    for (unsigned seed : ModelSeeds::get(/*first=*/2000, /*count=*/48))
        SaveLoadRun(seed, dir).expectNoFault(theSteps);
}
