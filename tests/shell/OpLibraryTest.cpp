// A scripted operator type saved into a library file by one gzsh, loaded by a new one.
#include "tests/model/ScratchDir.h"

#include <gtest/gtest.h>

#include <fstream>

namespace
{
/// Runs a new gzsh on `commands` (in `dir`, with the example types on its search path);
/// returns its standard error, or a message when it failed.
std::string runScript(const ScratchDir &dir, const std::string &commands)
{
    const std::string script = dir.file("script.gzs");
    std::ofstream(script) << commands;
    const std::string command = "cd " + dir.path().string() + " && " + GZ_GZSH + " -p " +
                                GZ_SOURCE_DIR + "/examples/optypes " + script + " 2>" +
                                dir.file("err") + " >" + dir.file("out");
    if (std::system(command.c_str()) != 0)
        return "gzsh failed: " + ScratchDir::readText(dir.file("err"));
    return ScratchDir::readText(dir.file("err"));
}
} // namespace

TEST(OpLibrary, SavedTypeLoadsInANewGzshAndSavesAndScenesTheSameBytes)
{
    ScratchDir dir("gz_oplib_shell_");
    const std::string custom = "home/vantri20.0/otls/OPcustom.oplib";
    const std::string nodes = "nodeadd geo /obj/g\nnodeadd nudge /obj/g/n1\n"
                              "parmset /obj/g/n1 t 1 2 3\n";
    ASSERT_EQ(runScript(dir, "set HOME home\noptypeload nudge.ds\noptypesave Sop/nudge\n"), "");
    const std::string saved = ScratchDir::readText(dir.file(custom.c_str()));
    EXPECT_NE(saved.find("section \"DialogScript\""), std::string::npos);

    ASSERT_EQ(runScript(dir, "libload " + custom + "\noptypesave Sop/nudge again.oplib\n" + nodes +
                                 "scenesave first.gzs\n"),
              "");
    EXPECT_EQ(ScratchDir::readText(dir.file("again.oplib")), saved);
    const std::string scene = ScratchDir::readText(dir.file("first.gzs"));
    EXPECT_EQ(scene.substr(0, scene.find('\n') + 1), "libload " + custom + "\n");

    ASSERT_EQ(runScript(dir, "sceneload first.gzs\nscenesave second.gzs\n"), "");
    EXPECT_EQ(ScratchDir::readText(dir.file("second.gzs")), scene);
}
