// Host commands seen from the library's side: node events and the undo steps they make.
#include "SharedShell.h"
#include "shell/ShellScene.h"

#include "host/HostCommandManager.h"
#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "link/GZ_SettingList.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_ResourceManager.h"
#include "resource/GZ_SelectorTemplate.h"
#include "shell/ShellHandle.h"
#include "shell/ShellViewerClasses.h"

#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace
{
/// The process-wide shell, started once, writing to string streams.
struct ShellFixture : testing::Test
{
    static Shell &shell() { return sharedShell(); }
    std::ostringstream out, err;

    void SetUp() override
    {
        shell().commands().setStreams(&out, &err);
        shell().director().clearScene();
    }
    void TearDown() override { shell().commands().setStreams(nullptr, nullptr); }
    void run(const std::string &text) { shell().commands().execute(text); }
};

std::vector<std::string> theEvents;

void recordEvent(HostNode *, void *, HostNodeEvent event, void *data)
{
    std::string text = std::to_string(event);
    if (event == HOST_NODE_RENAMED)
        text += std::string(":") + static_cast<const char *>(data);
    theEvents.push_back(text);
}
} // namespace

TEST_F(ShellFixture, RenameAndDeleteReachNodeListenersAlsoThroughUndo)
{
    run("nodeadd geo /obj/geo1");
    HostNode *node = shell().director().findNode("/obj/geo1");
    ASSERT_NE(node, nullptr);
    const int id = node->getUniqueId();
    theEvents.clear();
    node->addEventCallback(nullptr, &recordEvent);

    run("nodemv /obj/geo1 model; undo; redo");
    EXPECT_EQ(theEvents, std::vector<std::string>({"3:geo1", "3:model", "3:geo1"}));
    theEvents.clear();
    run("noderm /obj/model");
    EXPECT_EQ(theEvents, std::vector<std::string>({"2"}));
    run("undo");
    node = shell().director().findNode("/obj/model");
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(std::tuple(node->getUniqueId(), err.str()), std::tuple(id, ""));
}

TEST_F(ShellFixture, EachSceneChangeIsOneStepNamedAfterItsCommand)
{
    HostUndoManager &undo = shell().director().getUndoManager();
    run("nodeadd geo /obj/geo1; parmset /obj/geo1 t 1 2 3; nodemv /obj/geo1 a; noderm /obj/a");
    ASSERT_EQ(undo.getUndoCount(), 4);
    EXPECT_EQ(std::tuple(undo.getUndoName(0), undo.getUndoName(1)), std::tuple("noderm", "nodemv"));
    EXPECT_EQ(std::tuple(undo.getUndoName(2), undo.getUndoName(3), undo.isInBlock()),
              std::tuple("parmset", "nodeadd", false));
}

TEST_F(ShellFixture, QuietScriptsKeepErrorsAndSkipHistory)
{
    HostCommandManager &commands = shell().commands();
    const size_t history = commands.history().size();
    EXPECT_TRUE(commands.execute("nodeadd geo /obj/geo1;nodels /obj;nodels /nothing",
                                 /*add_to_history=*/false, /*show_output=*/false));
    EXPECT_EQ(std::tuple(out.str(), err.str()), std::tuple("", "nodels: unknown node /nothing\n"));
    EXPECT_EQ(commands.history().size(), history);
    EXPECT_NE(shell().director().findNode("/obj/geo1"), nullptr);
}

TEST_F(ShellFixture, DraggedHandleKeepsRecordedSettingsAndLeavesNoLink)
{
    run("nodeadd geo /obj/geo1");
    HostNode *node = shell().director().findNode("/obj/geo1");
    ASSERT_NE(node, nullptr);
    const GZ_ResourceManager::GZ_OpGZKey key("xform", "xform", node->getUniqueId());
    const auto &table = GZgetResourceManager()->getOpGZSettingTable();

    // A drag remembers the handle's settings for the node, keeping those it took up.
    run("handledrag /obj/geo1 xform tx 1");
    ASSERT_EQ(table.count(key), 1u);
    run("omparm xform xform /obj/geo1 \"color(0 1 0)\"");
    run("handledrag /obj/geo1 xform tx 1.5");
    EXPECT_EQ(err.str(), "");
    ASSERT_EQ(table.count(key), 1u);
    GZ_Vector3 color;
    table.at(key).mySettings->getSetting("color", color, GZ_Vector3{});
    EXPECT_EQ(std::tuple(color.y, color.x), std::tuple(1.0, 0.0));

    // The drag's handle is gone with the command: deleting the node reaches no stale link.
    run("noderm /obj/geo1");
    EXPECT_EQ(err.str(), "");
    run("undo; handleget /obj/geo1 xform tx");
    EXPECT_EQ(out.str(), "1.5\n");
}

TEST_F(ShellFixture, ViewerClassesAreJoinedToTheirTemplatesByName)
{
    GZ_ResourceManager *manager = GZgetResourceManager();
    const GZ_GZTemplate *xform = manager->getOpHandleLinkTemplate("xform");
    const GZ_GZTemplate *ladder = manager->getOpHandleLinkTemplate("ladder");
    ASSERT_TRUE(xform && ladder);
    ASSERT_NE(ShellViewerClasses::handleClass(*xform), nullptr);
    EXPECT_EQ(ShellViewerClasses::handleClass(*ladder), nullptr);
    std::unique_ptr<ShellHandle> made(ShellViewerClasses::handleClass(*xform)->make(*xform));
    EXPECT_EQ(&made->getTemplate(), xform);

    const GZ_SelectorTemplate *everything = manager->getSelectorTemplate("everything");
    const GZ_SelectorTemplate *uvselect = manager->getSelectorTemplate("uvselect");
    ASSERT_TRUE(everything && uvselect);
    EXPECT_TRUE(everything->isGeneric());
    EXPECT_EQ(everything->constructor(), everything->data());
    EXPECT_FALSE(uvselect->isGeneric());
    EXPECT_EQ(uvselect->constructor(), nullptr);

    // A bound handle whose type has no class cannot be shown, so it cannot be dragged.
    run("nodeadd geo /obj/geo1; ombind -t obj ladder geo:tx ladder:parm0");
    err.str("");
    run("handledrag /obj/geo1 ladder tx 1");
    EXPECT_EQ(err.str(), "handledrag: gzsh cannot show handles of type ladder\n");
    run("omunbind -t obj geo ladder");
}

TEST_F(ShellFixture, NewAndLoadedScenesStartWithoutTheLastScenesHandleSettings)
{
    // /obj outlives every scene; settings recorded on it must not.
    run("omparm hud xform /obj 'scale(2)'; pomadd h xform");
    std::ostringstream before;
    ShellScene::write(before, shell().director());
    EXPECT_NE(before.str().find("omparm hud xform /obj"), std::string::npos);
    run("scenenew");
    std::ostringstream after;
    ShellScene::write(after, shell().director());
    EXPECT_EQ(std::tuple(after.str(), err.str()), std::tuple("", ""));
}

namespace
{
/// Lower case, backticks dropped, every run of blanks and line breaks made one blank: how a
/// sentence of docs/commands.md reads whatever its markup and wrapping.
std::string plainText(const std::string &text)
{
    std::string out;
    for (char c : text)
    {
        if (c == '`')
            continue;
        const bool blank = c == ' ' || c == '\n' || c == '\t';
        if (blank && (out.empty() || out.back() == ' '))
            continue;
        out += blank ? ' ' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return out;
}
} // namespace

TEST_F(ShellFixture, HelpOfEveryCommandComesFromItsRowAndMatchesTheDocs)
{
    std::ifstream file(std::string(GZ_SOURCE_DIR) + "/docs/commands.md");
    ASSERT_TRUE(file);
    const std::string docs = plainText(
        std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()));
    HostCommandManager &commands = shell().commands();
    for (const std::string &name : commands.commandNames())
    {
        SCOPED_TRACE(name);
        const std::string summary = commands.summary(name);
        ASSERT_FALSE(summary.empty());
        EXPECT_NE(docs.find(plainText(summary.substr(0, summary.size() - 1))), std::string::npos);
        // Every option has a line and every line an option.
        const std::string options = commands.optionString(name);
        std::istringstream lines(commands.optionHelp(name));
        std::string seen;
        for (std::string line; std::getline(lines, line);)
        {
            ASSERT_GE(line.size(), 2u);
            EXPECT_EQ(line[0], '-');
            EXPECT_NE(options.find(line[1]), std::string::npos) << line;
            seen += line[1];
        }
        for (char c : options)
        {
            if (c != ':')
            {
                EXPECT_NE(seen.find(c), std::string::npos) << "-" << c;
            }
        }
    }

    run("help parmset");
    EXPECT_EQ(out.str(), "parmset [-e|-p] PATH PARM VALUE...\nSets a parameter.\n"
                         "  -e  the values are expressions of the host's expression language\n"
                         "  -p  the values are expressions of the scripting language\n");
}
