// gzsh's resource manager keeps a scene-viewer state for every operator type, and statels
// lists them.
#include "shell/Shell.h"
#include "shell/ShellResourceManager.h"

#include "host/HostCommandManager.h"
#include "host/HostOperator.h"
#include "host/HostOperatorTable.h"
#include "resource/GZ_StateTemplate.h"

#include <gtest/gtest.h>

#include <iostream>
#include <memory>
#include <sstream>
#include <string>

namespace
{

/// Runs `text` in the shell and returns what it wrote on standard output.
std::string run(Shell &shell, const std::string &text)
{
    std::ostringstream out;
    shell.commands().setStreams(&out, &std::cerr);
    shell.commands().execute(text);
    shell.commands().setStreams(&std::cout, &std::cerr);
    return out.str();
}

} // namespace

TEST(ShellStates, StatesFollowTheOperatorTypes)
{
    Shell shell;
    shell.startup({});
    ASSERT_NE(dynamic_cast<ShellResourceManager *>(GZgetResourceManager()), nullptr);
    GZ_ResourceManager &manager = *GZgetResourceManager();
    HostOperatorTable *sop = HostOperatorTable::getTable(HOST_NETWORK_SOP);
    const std::string before = run(shell, "statels");
    EXPECT_EQ(before.substr(0, 11), "xform\nbox\ns");

    // A new type gets its state at the end of the list.
    HostOperator *op = sop->addOperator(std::make_unique<HostOperator>(
        "ststwist", "Twist", HostParmTemplateList(), "", 0, 1, 0u, "SOP_twist"));
    ASSERT_NE(op, nullptr);
    EXPECT_EQ(run(shell, "statels -t SOP"), before + "ststwist\n");
    const GZ_StateTemplate *state = manager.getStateTemplate(op, GZ_VIEWER_SCENE, "SOP");
    ASSERT_NE(state, nullptr);
    EXPECT_EQ(state->getIconName(), "SOP_twist");

    // Renamed: the same state, under the new name.
    ASSERT_TRUE(sop->renameOperator(op, "ststwirl"));
    EXPECT_EQ(run(shell, "statels"), before + "ststwirl\n");
    EXPECT_EQ(manager.getStateTemplate(op, GZ_VIEWER_SCENE, "SOP"), state);

    // Deleted: the state goes with it.
    ASSERT_TRUE(sop->deleteOperator("ststwirl"));
    EXPECT_EQ(run(shell, "statels"), before);
}
