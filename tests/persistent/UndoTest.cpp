// Tests of the persistent handle undo records: every record's undo and redo restore the
// saved text exactly, and records whose object is gone do nothing.
#include "gz_PersistentTestEnv.h"

#include "persistent/GZ_Undo.h"

using gztest::PersistentFixture;

namespace
{
// Two handles and two groups; the changes below act on the last of each, since records
// that re-create their object append it to its list.
const char *const theScene = "pomadd first ptest\n"
                             "pomattach first /obj/a tx:tx\n"
                             "pomadd -r 0.25 0.5 1 -m 2 'odd \"name\"; x' ptest\n"
                             "pomparm 'odd \"name\"; x' \"color(0 1 0) ownerop('geo')\"\n"
                             "pomattach -i 3 'odd \"name\"; x' /obj/a ty:ty tz:tz\n"
                             "pomattach -i 3 'odd \"name\"; x' /obj/b tx:tx\n"
                             "pomadd -g g0\n"
                             "pomadd -g 'the grp'\n"
                             "pomattach -g 'the grp' first\n";

// Rows: the undo label, the command that makes the record.
const std::pair<const char *, const char *> theCases[] = {
    {"Create New Handle", "pomadd new ptest"},
    {"Delete Handle", "pomremove 'odd \"name\"; x'"},
    {"Attach Op To Handle", "pomattach -i 9 'odd \"name\"; x' /obj/c tz:tz"},
    {"Detach Op From Handle", "pomdetach 'odd \"name\"; x' /obj/a"},
    {"Clear Ops From Handle", "pomclear 'odd \"name\"; x'"},
    {"Create New Handle Group", "pomadd -g g2"},
    {"Delete Handle Group", "pomremove -g 'the grp'"},
    {"Add To Handle Group", "pomattach -g 'the grp' 'odd \"name\"; x'"},
    {"Remove From Handle Group", "pomdetach -g 'the grp' first"},
    {"Clear Handle Group", "pomclear -g 'the grp'"},
    {"Change Handle Name", "pomrename first renamed"},
    {"Change Handle Group Name", "pomrename -g g0 'g 1'"},
    {"Change Handle Color", "pomset -r 0.1 0.2 0.3 first"},
    {"Hide Handle", "pomset -e off first"},
    {"Hide Handle In Parents", "pomset -p off first"},
    {"Hide Handle In Children", "pomset -c 0 first"},
    {"Hide Handle In Siblings", "pomset -s no first"},
    {"Change Handle Pane Mask", "pomset -m '1 2' first"},
};
} // namespace

class PersistentUndo : public PersistentFixture
{
protected:
    void SetUp() override
    {
        PersistentFixture::SetUp();
        for (const char *path : {"/obj/a", "/obj/b", "/obj/c"})
            make(path);
        run(theScene);
        ASSERT_EQ(myErr, "");
        undo().clear();
    }
};

TEST_F(PersistentUndo, UndoAndRedoOfEveryRecordRestoreTheSavedText)
{
    for (const auto &[label, command] : theCases)
    {
        SCOPED_TRACE(label);
        empty();
        run(theScene);
        undo().clear();
        const std::string before = saved();
        run(command);
        ASSERT_EQ(myErr, "");
        ASSERT_EQ(undo().getUndoCount(), 1);
        EXPECT_EQ(undo().getUndoName(), label);
        const std::string after = saved();
        ASSERT_NE(after, before);
        ASSERT_TRUE(undo().undo());
        EXPECT_EQ(saved(), before);
        ASSERT_TRUE(undo().redo());
        EXPECT_EQ(saved(), after);
        ASSERT_TRUE(undo().undo());
        EXPECT_EQ(saved(), before);
        // Playback recorded nothing of its own.
        EXPECT_EQ(std::tuple(undo().getUndoCount(), undo().getRedoCount()), std::tuple(0, 1));
    }
}

TEST_F(PersistentUndo, SwapRecordsAndReorders)
{
    myManager->swapGZs(0, 1);
    const std::string swapped = saved();
    ASSERT_TRUE(undo().undo());
    EXPECT_EQ(myManager->getGZ(0)->getName(), "first");
    ASSERT_TRUE(undo().redo());
    EXPECT_EQ(saved(), swapped);
    myManager->swapGroups(0, 1);
    ASSERT_TRUE(undo().undo());
    EXPECT_EQ(myManager->getGroup(0)->getName(), "g0");

    // Re-created handles go to the end of the list.
    undo().clear();
    run("pomattach first /obj/b ty:ty");
    ASSERT_TRUE(undo().undo());
    EXPECT_EQ(run("pomls"), "odd \"name\"; x\nfirst\n");
    EXPECT_EQ(run("pomls first"), "/obj/a\n");
}

TEST_F(PersistentUndo, NodeRenamesPlayBackAndVanishedObjectsAreLeftAlone)
{
    // A node rename renames the handle with a record of its own; undo renames it back
    // (the reverse node rename does not rename it again), so the attach record finds it.
    empty();
    undo().clear();
    HostNode *node = make("/obj/geo1");
    run("pomadd geo1 ptest; pomattach geo1 /obj/geo1 tx:tx");
    myDirector.renameNode(node, "geo2");
    const std::string before = saved();
    ASSERT_EQ(before, "pomadd -e on -p on -c on -s on -r 1 0 0 geo2 ptest\n"
                      "pomattach -i -1 geo2 /obj/geo2 tx:tx\n");
    ASSERT_TRUE(undo().undo());
    EXPECT_EQ(run("pomls"), "geo1\n");
    while (undo().getUndoCount() > 0)
        ASSERT_TRUE(undo().undo());
    EXPECT_EQ(saved(), "");
    while (undo().getRedoCount() > 0)
        ASSERT_TRUE(undo().redo());
    EXPECT_EQ(saved(), before);

    // Value records of a deleted handle, and group records of a deleted group.
    empty();
    run("pomadd geo2 ptest");
    undo().clear();
    run("pomset -r 0 1 0 geo2; pomset -m 3 geo2; pomset -e off geo2; pomset -c off geo2\n"
        "pomadd -g gone; pomattach -g gone geo2; pomrename -g gone went");
    undo().disable();
    myManager->removeAllGZs();
    myManager->removeGroup(myManager->getGroup(0));
    undo().enable();
    while (undo().getUndoCount() > 0)
        ASSERT_TRUE(undo().undo());
    EXPECT_EQ(saved(), "");
}

TEST_F(PersistentUndo, ScriptsAreOneLineOfCommands)
{
    GZ_OHLPersistent *odd = handle("odd \"name\"; x");
    ASSERT_NE(odd, nullptr);
    GZ_UndoGZ record(myManager, odd);
    EXPECT_EQ(record.getScript(),
              "pomadd -e on -p on -c on -s on -r 0.25 0.5 1 -m 2 'odd \"name\"; x' ptest;"
              "pomparm 'odd \"name\"; x' \"color(0 1 0) ownerop('geo')\";"
              "pomattach -i 3 'odd \"name\"; x' /obj/a ty:ty tz:tz;"
              "pomattach -i 3 'odd \"name\"; x' /obj/b tx:tx;");
    EXPECT_EQ(record.getMemoryUsage(), record.getScript().size() + 64);
    GZ_UndoGroup group(myManager, myManager->getGroup(1));
    EXPECT_EQ(group.getScript(), "pomadd -g 'the grp';pomattach -g 'the grp' first;");
}
