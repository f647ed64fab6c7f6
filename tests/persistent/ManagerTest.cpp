// Tests of the persistent handle manager: naming, groups, order, listeners and undo blocks.
#include "gz_PersistentTestEnv.h"

#include <tuple>

using gztest::ChangeLog;
using gztest::PersistentFixture;

using PersistentManager = PersistentFixture;

TEST_F(PersistentManager, AddGZNamesHandlesAndRefusesUnknownTypes)
{
    const int blocks = undo().getNumBlocksOpened();
    EXPECT_EQ(myManager->addGZ("h", "no_such_type"), -1);
    EXPECT_EQ(myManager->getNumGZs(), 0);
    EXPECT_EQ(undo().getNumBlocksOpened(), blocks + 1);
    EXPECT_EQ(std::tuple(undo().getBlockDepth(), undo().getUndoCount()), std::tuple(0, 0));

    EXPECT_EQ(myManager->addGZ(nullptr, "ptest"), 0);
    EXPECT_EQ(myManager->addGZ(nullptr, "ptest"), 1);
    EXPECT_EQ(myManager->addGZ("Handle", "ptest"), 2);
    EXPECT_EQ(run("pomls"), "Handle\nHandle1\nHandle2\n");
    EXPECT_TRUE(myManager->getGZ(3) == nullptr && myManager->getGZ(-1) == nullptr);
    EXPECT_EQ(undo().getUndoName(), "Create New Handle");
    EXPECT_EQ(std::tuple(myManager->getGZIndex("Handle1"), myManager->getGZIndex("handle1"),
                         myManager->getGZIndex(static_cast<const char *>(nullptr))),
              std::tuple(1, -1, -1));

    EXPECT_EQ(myManager->addGroup(""), 0);
    EXPECT_EQ(myManager->addGroup(nullptr), 1);
    EXPECT_EQ(run("pomls -g"), "Group\nGroup1\n");
    // Handles and groups have separate names.
    EXPECT_EQ(myManager->getFreeGroupName("Handle"), "Handle");
    EXPECT_EQ(myManager->getFreeGZName("Group"), "Group");
    EXPECT_EQ(undo().getUndoName(), "Create New Handle Group");
}

TEST_F(PersistentManager, RemovingAHandleLeavesItsGroupsSilently)
{
    myManager->addGZ("a", "ptest");
    myManager->addGZ("b", "ptest");
    myManager->addGroup("g1");
    myManager->addGroup("g2");
    myManager->addGZtoGroup(0, 0);
    myManager->addGZtoGroup(1, 0);
    myManager->addGZtoGroup(0, 1);
    ChangeLog log;
    log.attach(myManager);
    myManager->removeGZ(handle("a"));
    log.detach(myManager);
    // Listeners hear of the removal when the name no longer finds the handle.
    EXPECT_EQ(std::tuple(log.myEvents, log.myFound),
              std::tuple(std::vector<std::string>{"a:2"}, "0"));
    EXPECT_EQ(myManager->getGroup(0)->getNumGZs(), 1);
    EXPECT_EQ(myManager->getGroup(0)->getGZ(0)->getName(), "b");
    EXPECT_EQ(myManager->getGroup(1)->getNumGZs(), 0);
    EXPECT_EQ(undo().getUndoName(), "Delete Handle");
    // Null and foreign pointers are ignored.
    const int blocks = undo().getNumBlocksOpened();
    myManager->removeGZ(nullptr);
    myManager->removeGroup(nullptr);
    EXPECT_EQ(undo().getNumBlocksOpened(), blocks);
}

TEST_F(PersistentManager, GroupMembershipAndOrderChecksTheirArguments)
{
    for (const char *name : {"a", "b", "c", "d", "e"})
        myManager->addGZ(name, "ptest");
    myManager->addGroup("g");
    myManager->addGZtoGroup(0, 0);
    ChangeLog log;
    log.attach(myManager);
    const int blocks = undo().getNumBlocksOpened();
    myManager->addGZtoGroup(0, 0); // already a member
    myManager->addGZtoGroup(9, 0);
    myManager->addGZtoGroup(1, 3);
    myManager->swapGZs(0, 5);
    myManager->swapGroups(0, 1);
    myManager->clearGroup(2);
    EXPECT_EQ(undo().getNumBlocksOpened(), blocks);
    EXPECT_TRUE(log.myEvents.empty());

    // Removing a non-member still opens its block and tells the listeners.
    myManager->removeGZfromGroup(3, 0);
    EXPECT_EQ(undo().getUndoName(), "Remove From Handle Group");
    myManager->swapGZs(0, 4);
    EXPECT_EQ(undo().getUndoName(), "Reorder Handles");
    EXPECT_EQ(myManager->getGZ(0)->getName(), "e");
    EXPECT_EQ(myManager->getGZIndex("a"), 4);
    myManager->addGroup("h");
    myManager->swapGroups(0, 1);
    EXPECT_EQ(undo().getUndoName(), "Reorder Handle Groups");
    EXPECT_EQ(myManager->getGroupIndex("g"), 1);
    myManager->clearGroup(1);
    EXPECT_EQ(undo().getUndoName(), "Clear Handle Group");
    log.detach(myManager);
    EXPECT_EQ(log.myEvents, (std::vector<std::string>{"group g:3", "e:9", "group h:1", "group h:9",
                                                      "group g:3"}));
}

TEST_F(PersistentManager, ListenersAreCalledOncePerRegistrationInOrder)
{
    ChangeLog first, second;
    first.attach(myManager);
    first.attach(myManager);
    second.attach(myManager);
    myManager->addGZ("a", "ptest");
    EXPECT_EQ(first.myEvents, std::vector<std::string>{"a:1"});
    EXPECT_EQ(second.myEvents, std::vector<std::string>{"a:1"});
    first.detach(myManager);
    myManager->getGZ(0)->setExpose(false);
    EXPECT_EQ(std::tuple(first.myEvents.size(), second.myEvents.back()), std::tuple(1u, "a:5"));
    second.detach(myManager);
    second.detach(myManager);
}

TEST_F(PersistentManager, HandleSettersUseTheirLabelsAndSkipNoChanges)
{
    myManager->addGZ("h", "ptest");
    myManager->addGZ("B", "ptest");
    GZ_OHLPersistent *h = handle("h");
    ChangeLog log;
    log.attach(myManager);
    const int steps = undo().getUndoCount();
    h->setExpose(true);
    h->setDisplayInChild(true);
    h->setActiveColor(h->getActiveColor());
    h->setName("h");
    EXPECT_EQ(std::tuple(undo().getUndoCount(), log.myEvents.empty()), std::tuple(steps, true));

    struct Step
    {
        std::function<void()> change;
        const char *label;
        const char *event;
    };
    const std::vector<Step> steps_list = {
        {[&] { h->setExpose(false); }, "Hide Handle", "h:5"},
        {[&] { h->setExpose(true); }, "Expose Handle", "h:4"},
        {[&] { h->setDisplayInParent(false); }, "Hide Handle In Parents", "h:7"},
        {[&] { h->setDisplayInParent(true); }, "Show Handle In Parents", "h:7"},
        {[&] { h->setDisplayInChild(false); }, "Hide Handle In Children", "h:7"},
        {[&] { h->setDisplayInSibling(false); }, "Hide Handle In Siblings", "h:7"},
        {[&] { h->setDisplayInSibling(true); }, "Show Handle In Siblings", "h:7"},
        {[&] { h->setPaneMask("*"); }, "Change Handle Pane Mask", "h:6"},
        {[&] { h->setActiveColor(HostColor(HostColor::RGB, 0, 1, 0)); }, "Change Handle Color",
         "h:8"},
    };
    for (const Step &step : steps_list)
    {
        log.myEvents.clear();
        step.change();
        EXPECT_EQ(undo().getUndoName(), step.label);
        EXPECT_EQ(log.myEvents, std::vector<std::string>{step.event}) << step.label;
    }
    // A rename onto a taken name gets a numbered variant.
    h->setName("B");
    EXPECT_EQ(std::tuple(h->getName(), undo().getUndoName(), log.myEvents.back()),
              std::tuple("B1", "Change Handle Name", "B1:0"));
    // Settings have no undo, but listeners hear of them.
    const int before = undo().getUndoCount();
    h->setSettings("color(0 0 1)");
    EXPECT_EQ(log.myEvents.back(), "B1:10");
    h->setDisplayAlways(true);
    h->clearSettingList();
    EXPECT_EQ(undo().getUndoCount(), before);
    log.detach(myManager);
}

TEST_F(PersistentManager, GroupHideNestsOneBlockPerMemberLastFirst)
{
    for (const char *name : {"a", "b", "c"})
        myManager->addGZ(name, "ptest");
    myManager->addGroup("g");
    for (int i = 0; i < 3; ++i)
        myManager->addGZtoGroup(i, 0);
    ChangeLog log;
    log.attach(myManager);
    myManager->getGroup(0)->hideGZs();
    log.detach(myManager);
    EXPECT_EQ(undo().getUndoName(), "Hide Handle Group");
    const auto blocks = undo().getUndoBlocks();
    ASSERT_EQ(blocks.size(), 4u);
    EXPECT_EQ(blocks[0].myName, "Hide Handle Group");
    for (int i = 1; i < 4; ++i)
    {
        EXPECT_EQ(std::tuple(blocks[i].myName, blocks[i].myDepth), std::tuple("Hide Handle", 1));
    }
    EXPECT_EQ(log.myEvents, (std::vector<std::string>{"c:5", "b:5", "a:5"}));
    myManager->getGroup(0)->setName("g");
    myManager->addGroup("k");
    myManager->getGroup(1)->setName("g");
    EXPECT_EQ(myManager->getGroup(1)->getName(), "g1");
    EXPECT_EQ(undo().getUndoName(), "Change Handle Group Name");
}

TEST_F(PersistentManager, NodeDeletionDetachesOrDeletesTheHandle)
{
    HostNode *a = make("/obj/a");
    HostNode *b = make("/obj/b");
    run("pomadd two ptest; pomattach two /obj/a tx:tx; pomattach two /obj/b ty:ty\n"
        "pomadd one ptest; pomattach one /obj/a tz:tz");
    ASSERT_EQ(handle("two")->getNumOps(), 2);
    ChangeLog log;
    log.attach(myManager);
    undo().clear();
    myDirector.deleteNode(a);
    log.detach(myManager);
    EXPECT_EQ(log.myEvents, (std::vector<std::string>{"two:2", "two:1", "one:2"}));
    ASSERT_NE(handle("two"), nullptr);
    EXPECT_EQ(handle("two")->getNumOps(), 1);
    EXPECT_EQ(handle("two")->getOpNode(0), b);
    EXPECT_EQ(handle("one"), nullptr);
    EXPECT_EQ(run("pomls two"), "/obj/b\n");
    myDirector.deleteNode(b);
    EXPECT_EQ(myManager->getNumGZs(), 0);
}

TEST_F(PersistentManager, NodeRenameReplacesTheOldNameAsAWord)
{
    HostNode *geo = make("/obj/geo1");
    run("pomadd geo1 ptest; pomattach geo1 /obj/geo1 tx:tx\n"
        "pomadd '/obj/geo1 mover' ptest; pomattach '/obj/geo1 mover' /obj/geo1\n"
        "pomadd geo10 ptest; pomattach geo10 /obj/geo1\n"
        "pomadd geo1_x ptest; pomattach geo1_x /obj/geo1\n"
        "pomadd other ptest");
    const int steps = undo().getUndoCount();
    ChangeLog log;
    log.attach(myManager);
    myDirector.renameNode(geo, "geo2");
    log.detach(myManager);
    EXPECT_EQ(run("pomls"), "geo2\n/obj/geo2 mover\ngeo10\ngeo1_x\nother\n");
    EXPECT_EQ(log.myEvents, (std::vector<std::string>{"geo2:0", "/obj/geo2 mover:0"}));
    // Each handle rename is a step here; in gzsh it joins the node rename's step.
    EXPECT_EQ(undo().getUndoCount(), steps + 2);
    EXPECT_EQ(myManager->getGZIndex("geo1"), -1);
    EXPECT_EQ(myManager->getGZIndex("geo2"), 0);
    // The new name goes through the free-name rule, so no two handles share a name (undo
    // records and loaded scenes find handles by name).
    run("pomadd geo3 ptest; pomattach geo3 /obj/geo2");
    myDirector.renameNode(geo, "geo3");
    EXPECT_EQ(run("pomls"), "geo4\n/obj/geo3 mover\ngeo10\ngeo1_x\nother\ngeo3\n");
    EXPECT_EQ(myManager->getGZIndex("geo3"), 5);
    EXPECT_EQ(myManager->getGZIndex("geo4"), 0);
}

TEST_F(PersistentManager, RemoveAllIsOneStepThatRestoresHandlesAndTheirGroups)
{
    make("/obj/a");
    run("pomadd a ptest; pomattach -i 4 a /obj/a tx:tx; pomparm a 'color(0 1 0)'\n"
        "pomadd -r 0 0 1 b ptest; pomadd -g g; pomattach -g g a b");
    const std::string before = saved();
    undo().clear();
    ChangeLog log;
    log.attach(myManager);
    myManager->removeAllGZs();
    log.detach(myManager);
    EXPECT_EQ(log.myFound, "00");
    EXPECT_EQ(myManager->getNumGZs(), 0);
    EXPECT_EQ(myManager->getGroup(0)->getNumGZs(), 0);
    EXPECT_EQ(undo().getUndoName(), "Remove All Handles");
    EXPECT_EQ(undo().getUndoCount(), 1);
    ASSERT_TRUE(undo().undo());
    EXPECT_EQ(saved(), before);
    ASSERT_TRUE(undo().redo());
    EXPECT_EQ(myManager->getNumGZs(), 0);
}

TEST_F(PersistentManager, CopiesALiveLinkAndFindsItAgain)
{
    HostNode *a = make("/obj/a");
    HostNode *b = make("/obj/b");
    GZ_GZTemplate *gz_template = GZgetResourceManager()->getOpHandleLinkTemplate("ptest");
    GZ_OpHandleLink link(*gz_template);
    link.linkOpParmToHandleParm("pxform", "tx", "tx");
    link.attach(*a);
    link.attach(*b);
    link.id(7);
    link.setShowOpPath(false);
    myManager->addGZ("x", "ptest");
    const int index = myManager->addGZ("copy", link);
    EXPECT_EQ(std::tuple(index, myManager->getGZIndex(link)), std::tuple(1, 1));
    EXPECT_EQ(saved(), "pomadd -e on -p on -c on -s on -r 1 0 0 x ptest\n"
                       "pomadd -e on -p on -c on -s on -r 1 0 0 copy ptest\n"
                       "pomparm copy \"showoppath(0)\"\n"
                       "pomattach -i 7 copy /obj/a tx:tx\n"
                       "pomattach -i 7 copy /obj/b\n");
    GZ_OpHandleLink loose(*gz_template);
    EXPECT_EQ(myManager->getGZIndex(loose), 0);
    link.detach(*b);
    EXPECT_EQ(myManager->getGZIndex(link), -1);
}
