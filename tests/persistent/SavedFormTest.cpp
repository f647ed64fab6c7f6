// Tests of the saved form of handles and groups, its reading back, and the refresh commands.
#include "gz_PersistentTestEnv.h"

#include "host/HostCommandManager.h"

#include <tuple>

using gztest::PersistentFixture;

using PersistentSave = PersistentFixture;

TEST_F(PersistentSave, WritesHandlesThenGroupsByteForByte)
{
    make("/obj/geo1");
    make("/obj/geo2");
    run("pomadd plain ptest\n"
        "pomadd -e off -p 0 -c off -s no -r 0.1 0.2 0.30000000000000004 -m 1 'two words' ptest\n"
        "pomparm 'two words' \"color(0 0 1) ownerop('/obj/geo1')\"\n"
        "pomattach -i 12 'two words' /obj/geo1 tx:tx {2,0,0,1,ty}:ty '!ch(\"ty\")*2:tz'\n"
        "pomattach -i 12 'two words' /obj/geo2\n"
        "pomadd '-odd' ptest\n"
        "pomadd -g empty\n"
        "pomadd -g \"it's\"\n"
        "pomattach -g \"it's\" '-odd' plain 'two words'\n");
    ASSERT_EQ(myErr, "");
    const std::string golden =
        "pomadd -e on -p on -c on -s on -r 1 0 0 plain ptest\n"
        "pomadd -e off -p off -c off -s off -r 0.1 0.2 0.30000000000000004 -m 1 'two words' "
        "ptest\n"
        "pomparm 'two words' \"color(0 0 1) ownerop('/obj/geo1')\"\n"
        "pomattach -i 12 'two words' /obj/geo1 tx:tx {2,0,0,1,ty}:ty '!ch(\"ty\")*2:tz'\n"
        "pomattach -i 12 'two words' /obj/geo2\n"
        "pomadd -e on -p on -c on -s on -r 1 0 0 '-odd' ptest\n"
        "pomadd -g empty\n"
        "pomadd -g \"it's\"\n"
        "pomattach -g \"it's\" '-odd' plain 'two words'\n";
    EXPECT_EQ(saved(), golden);
    EXPECT_EQ(run("pomscript"), golden.substr(0, golden.find("pomadd -g")));
    EXPECT_EQ(run("pomscript -g empty"), "pomadd -g empty\n");
    std::ostringstream one;
    myManager->savePersistentGZs(one, 5);
    myManager->savePersistentGroups(one, 2);
    EXPECT_EQ(one.str(), "");

    // Read back into an empty manager, the lines give the same lines.
    empty();
    run(golden);
    EXPECT_EQ(std::tuple(myErr, saved()), std::tuple("", golden));
    EXPECT_EQ(handle("two words")->id(), 12);
    EXPECT_EQ(handle("two words")->getSettingList().getNumSettings(), 2);
}

TEST_F(PersistentSave, SceneSaveCallbackWritesTheHandlesLast)
{
    make("/obj/geo1");
    run("pomadd h ptest; pomattach h /obj/geo1 tx:tx; pomadd -g g; pomattach -g g h");
    std::ostringstream os;
    EXPECT_EQ(saveGZResourceManagerCallback(os), HOST_ERR_NONE);
    const std::string text = os.str();
    const std::string ours = saved();
    ASSERT_GE(text.size(), ours.size());
    EXPECT_EQ(text.substr(text.size() - ours.size()), ours);
}

TEST_F(PersistentSave, RefreshCommandsReattachARebuiltNode)
{
    HostNode *geo1 = make("/obj/geo1");
    make("/obj/geo2");
    run("pomadd a ptest; pomparm a 'showoppath(0)'; pomattach -i 2 a /obj/geo1 tx:tx\n"
        "pomadd b ptest; pomattach b /obj/geo2 ty:ty\n"
        "pomadd c ptest; pomattach c /obj/geo2 tz:tz; pomattach c /obj/geo1 tx:tx");
    std::ostringstream os;
    myManager->getRefreshGZCommands(os, geo1);
    EXPECT_EQ(os.str(), "pomparm a \"showoppath(0)\"\n"
                        "pomattach -i 2 a /obj/geo1 tx:tx\n"
                        "\n"
                        "pomattach -i -1 c /obj/geo2 tz:tz\n"
                        "pomattach -i -1 c /obj/geo1 tx:tx\n"
                        "\n");
    // Running them after the node was rebuilt (deleted handles aside) re-attaches.
    run("pomclear a");
    run(os.str());
    EXPECT_EQ(run("pomls a"), "/obj/geo1\n");
    std::ostringstream none;
    myManager->getRefreshGZCommands(none, make("/obj/lonely"));
    myManager->getRefreshGZCommands(none, nullptr);
    EXPECT_EQ(none.str(), "");
}

TEST_F(PersistentSave, RefreshCommandsMoveHandlesToCopiedNodes)
{
    HostNode *geo1 = make("/obj/geo1");
    HostNode *geo2 = make("/obj/geo2");
    HostNode *copy1 = make("/obj/copy1");
    HostNode *copy2 = make("/obj/copy2");
    run("pomadd /obj/geo1 ptest; pomattach /obj/geo1 /obj/geo1 tx:tx\n"
        "pomadd both ptest; pomattach both /obj/geo1 tx:tx; pomattach both /obj/geo2 ty:ty\n"
        "pomadd other ptest");
    std::ostringstream os;
    myManager->getRefreshGZCommands(os, {geo1, geo2}, {copy1, copy2});
    EXPECT_EQ(os.str(), "pomrename /obj/geo1 /obj/copy1\n"
                        "pomdetach /obj/copy1\n"
                        "pomattach -i -1 /obj/copy1 /obj/copy1 tx:tx\n"
                        "\n"
                        "pomrename both both\n"
                        "pomdetach both\n"
                        "pomattach -i -1 both /obj/copy1 tx:tx\n"
                        "pomattach -i -1 both /obj/copy2 ty:ty\n"
                        "\n");
    run(os.str());
    EXPECT_EQ(myErr, "");
    EXPECT_EQ(run("pomls"), "/obj/copy1\nboth\nother\n");
    EXPECT_EQ(run("pomls both"), "/obj/copy1\n/obj/copy2\n");
}

TEST_F(PersistentSave, CommandsReportBadInputAndChangeNothing)
{
    make("/obj/geo1");
    run("pomadd h ptest; pomadd -g g");
    const std::string before = saved();
    // Each message is in the persistent_commands scenario; here: nothing changes.
    const std::tuple<const char *, const char *> cases[] = {
        {"pomadd x nosuchtype", "Invalid handle type: nosuchtype\n"},
        {"pomadd -g", "Usage: "},
        {"pomset -g nogroup", "Unknown group: nogroup\n"},
        {"pomattach nobody /obj/geo1", "Unknown handle: nobody\n"},
        {"pomattach -g nogroup h", "Unknown handle group: nogroup\n"},
        {"pomattach h /obj/nothing", "Unknown operator: /obj/nothing\n"},
        {"pomdetach h /obj/nothing", "Unknown operator: /obj/nothing\n"},
        {"pomrename -g nogroup x", "Unknown handle group: nogroup\n"},
        {"pomparm -g g", "Error: pomparm requires a handle group and handle settings.\n"},
        {"pomremove nobody", "Unknown handle: nobody\n"},
    };
    for (const auto &[command, error] : cases)
    {
        EXPECT_EQ(run(command), "") << command;
        EXPECT_EQ(myErr.substr(0, std::string(error).size()), error) << command;
        EXPECT_EQ(saved(), before) << command;
    }
}
