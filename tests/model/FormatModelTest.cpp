// Randomized text formats: bindings written as a bindings file and read by a new gzsh, and
// persistent handles written as their saved lines and run again, come back the same.
#include "ModelSeeds.h"
#include "ModelShell.h"
#include "SceneGenerator.h"
#include "SceneText.h"
#include "ScratchDir.h"

#include "shell/ShellPersistent.h"

#include <gtest/gtest.h>

namespace
{
/// Changes the process's bindings by random commands, writes them as a bindings file, and
/// has a new gzsh read that file (first on its search path) and write it again.
std::string checkBindings(unsigned seed, int steps, const ScratchDir &dir)
{
    ModelShell &shell = ModelShell::get();
    SceneGenerator generate(seed, shell.director(), /*with_settings=*/true);
    for (int i = 0; i < steps; ++i)
        shell.run(generate.bindingCommand());
    shell.takeErrors();
    const std::string first = dir.file("OPbindings");
    shell.run("omwrite " + first);
    const std::string errors = shell.takeErrors();
    if (!errors.empty())
        return "omwrite reported: " + errors;
    const std::string second = dir.file("second");
    const std::string messages = dir.runGzsh("-p " + dir.path().string(), "omwrite " + second);
    if (!messages.empty())
        return "reading the file reported: " + messages;
    const std::string written = ScratchDir::readText(first);
    const std::string again = ScratchDir::readText(second);
    return again == written
               ? ""
               : "the file read back wrote " + SceneText::firstDifference(written, again);
}
} // namespace

TEST(FormatModel, RandomBindingsReadBackFromTheirFileEqual)
{
    // Bindings are the process's, so each seed goes on from the bindings of the last; the
    // file of every seed must still read back equal.
    ScratchDir dir("gz_format_");
    for (unsigned seed : ModelSeeds::get(/*first=*/3000, /*count=*/24))
    {
        const std::string fault = checkBindings(seed, 60, dir);
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
