// Spare parameter commands end to end: a section added, listed, fed to another node, compiled.
#include "SharedShell.h"

#include "host/HostCommandManager.h"
#include "host/HostDirector.h"

#include "tests/TestFiles.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace
{
std::string run(const std::string &text, std::string *errors = nullptr)
{
    return runInSharedShell(text, errors);
}
} // namespace

TEST(SpareCommands, SectionSurvivesTwoNodesAndCompilesTabsToAMenu)
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

    // The three tabs of "main" become one ordered menu of size 3, first in the list.
    const std::string compiled = run("sparecompile /obj/b");
    EXPECT_EQ(compiled.rfind("    parm {\n        name    \"main\"\n        label   \"\"\n"
                             "        type    ordinal\n        invisible\n"
                             "        size    3\n",
                             0),
              0u)
        << compiled;
    EXPECT_EQ(compiled.find("group {"), std::string::npos);
    EXPECT_EQ(run("sparels /obj/b"), section); // compiling leaves the node alone

    run("undo");
    EXPECT_EQ(run("sparels /obj/b"), "");
}
