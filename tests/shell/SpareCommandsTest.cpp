// Spare parameter commands end to end: a section added, listed, fed to another node.
#include "SharedShell.h"

#include "host/HostCommandManager.h"

#include "tests/TestFiles.h"

#include <gtest/gtest.h>

namespace
{
std::string run(const std::string &text, std::string *errors = nullptr)
{
    return runInSharedShell(text, errors);
}
} // namespace

TEST(SpareCommands, SectionSurvivesTwoNodesAndCompiling)
{
    const std::string file = std::string(GZ_SOURCE_DIR) + "/tests/scenarios/data/spare_section.ds";
    const std::string section = readTestFile(file);
    std::string errors;
    run("scenenew; nodeadd geo /obj/a; nodeadd geo /obj/b");
    run("spareadd /obj/a " + HostCommandManager::protectString(file), &errors);
    EXPECT_EQ(errors, "");
    const std::string listed = run("sparels /obj/a");
    EXPECT_EQ(listed, section);
    run("spareadd -s /obj/b " + HostCommandManager::protectString(listed), &errors);
    EXPECT_EQ(errors, "");
    EXPECT_EQ(run("sparels /obj/b"), section);

    // The compiled listing is in the spare_commands scenario; here: the node keeps its section.
    run("sparecompile /obj/b");
    EXPECT_EQ(run("sparels /obj/b"), section);

    run("undo");
    EXPECT_EQ(run("sparels /obj/b"), "");
}
