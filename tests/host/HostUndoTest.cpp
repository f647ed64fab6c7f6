// Tests of the undo manager and the parameter undo record.
#include "HostFixture.h"

#include "host/HostParmUndo.h"
#include "host/HostUndoManager.h"

#include <memory>
#include <string>
#include <vector>

namespace
{
/// Appends "undo:<name>" / "redo:<name>" to a shared log, and tries to record itself again
/// during playback (which must be refused).
class LogUndo : public HostUndo
{
public:
    LogUndo(HostUndoManager &mgr, std::vector<std::string> &log, std::string name)
        : myMgr(mgr), myLog(log), myName(std::move(name))
    {
    }
    void undo() override { play("undo"); }
    void redo() override { play("redo"); }

private:
    void play(const char *what)
    {
        myLog.push_back(std::string(what) + ":" + myName);
        int id = myMgr.beginUndoBlock("nested during playback");
        myLog.push_back(myMgr.addToUndoBlock(std::make_unique<LogUndo>(myMgr, myLog, "x"))
                            ? "accepted"
                            : "refused");
        myMgr.endUndoBlock(id);
    }
    HostUndoManager &myMgr;
    std::vector<std::string> &myLog;
    std::string myName;
};
} // namespace

TEST(HostUndoBlocks, OutermostBlockIsOneStepAndEmptyBlocksLeaveNone)
{
    HostUndoManager mgr;
    std::vector<std::string> log;

    const int empty = mgr.beginUndoBlock("Empty");
    EXPECT_TRUE(mgr.endUndoBlock(empty));
    EXPECT_EQ(mgr.getUndoCount(), 0);

    const int outer = mgr.beginUndoBlock("Outer");
    mgr.addToUndoBlock(std::make_unique<LogUndo>(mgr, log, "a"));
    const int inner = mgr.beginUndoBlock("Inner");
    EXPECT_GT(inner, outer);
    EXPECT_EQ(std::tuple(mgr.getCurrentBlockId(), mgr.getBlockDepth()), std::tuple(inner, 2));
    mgr.addToUndoBlock(std::make_unique<LogUndo>(mgr, log, "b"));
    EXPECT_TRUE(mgr.endUndoBlock(inner));
    EXPECT_EQ(mgr.getUndoCount(), 0); // still inside Outer
    mgr.addToUndoBlock(std::make_unique<LogUndo>(mgr, log, "c"));
    EXPECT_TRUE(mgr.endUndoBlock(outer));
    EXPECT_FALSE(mgr.endUndoBlock());
    ASSERT_EQ(mgr.getUndoCount(), 1);
    EXPECT_EQ(std::tuple(mgr.getUndoName(), mgr.getUndoRecordCount()), std::tuple("Outer", 3));
    auto blocks = mgr.getUndoBlocks();
    ASSERT_EQ(blocks.size(), 2u);
    EXPECT_EQ(std::tuple(blocks[0].myDepth, blocks[1].myName), std::tuple(0, "Inner"));
    EXPECT_EQ(blocks[1].myDepth, 1);

    // Ending an outer id closes the blocks opened inside it as well.
    const int a = mgr.beginUndoBlock("A");
    mgr.beginUndoBlock("B");
    mgr.addToUndoBlock(std::make_unique<LogUndo>(mgr, log, "d"));
    EXPECT_FALSE(mgr.endUndoBlock(a + 100));
    EXPECT_TRUE(mgr.endUndoBlock(a));
    EXPECT_FALSE(mgr.isInBlock());
    EXPECT_EQ(std::tuple(mgr.getUndoCount(), mgr.getNumBlocksOpened()), std::tuple(2, 5));
}

TEST(HostUndoBlocks, PlaybackRunsWholeStepsInOrderAndRecordsNothing)
{
    HostUndoManager mgr;
    std::vector<std::string> log;
    int id = mgr.beginUndoBlock("Step");
    mgr.addToUndoBlock(std::make_unique<LogUndo>(mgr, log, "1"));
    mgr.addToUndoBlock(std::make_unique<LogUndo>(mgr, log, "2"));
    mgr.endUndoBlock(id);

    EXPECT_TRUE(mgr.willAcceptUndoAddition());
    EXPECT_TRUE(mgr.undo());
    EXPECT_EQ(log, (std::vector<std::string>{"undo:2", "refused", "undo:1", "refused"}));
    EXPECT_EQ(std::tuple(mgr.getUndoCount(), mgr.getRedoName()), std::tuple(0, "Step"));
    EXPECT_FALSE(mgr.undo());

    log.clear();
    EXPECT_TRUE(mgr.redo());
    EXPECT_EQ(log, (std::vector<std::string>{"redo:1", "refused", "redo:2", "refused"}));
    EXPECT_EQ(std::tuple(mgr.getUndoCount(), mgr.getRedoCount()), std::tuple(1, 0));

    // A new step drops what could be redone; undo is refused inside a block.
    mgr.undo();
    EXPECT_EQ(mgr.getRedoCount(), 1);
    mgr.addToUndoBlock(std::make_unique<LogUndo>(mgr, log, "loose"));
    EXPECT_EQ(std::tuple(mgr.getUndoName(), mgr.getRedoCount()), std::tuple("Unnamed", 0));
    id = mgr.beginUndoBlock("Open");
    EXPECT_FALSE(mgr.undo());
    mgr.endUndoBlock(id);

    mgr.disable();
    EXPECT_FALSE(mgr.addToUndoBlock(std::make_unique<LogUndo>(mgr, log, "off")));
    mgr.enable();
    EXPECT_TRUE(mgr.willAcceptUndoAddition());
}

TEST(HostUndoBlocks, MergingBlocksJoinTheLastStepOfTheSameName)
{
    HostUndoManager mgr;
    std::vector<std::string> log;
    const auto step = [&](const char *name)
    {
        const int id = mgr.beginUndoBlock(name, HOST_UNDO_BLOCK_MERGE);
        mgr.addToUndoBlock(std::make_unique<LogUndo>(mgr, log, name));
        mgr.endUndoBlock(id);
    };
    for (int i = 0; i < 3; ++i)
        step("Drag");
    EXPECT_EQ(std::tuple(mgr.getUndoCount(), mgr.getUndoRecordCount()), std::tuple(1, 3));
    step("Other");
    step("Drag");
    EXPECT_EQ(mgr.getUndoCount(), 3);
}

using HostParmUndoRecord = HostFixture;

TEST_F(HostParmUndoRecord, NodeWritesUndoAndRedoThroughTheDirector)
{
    HostNode *geo = make("tgeo", "/obj/geo1");
    HostUndoManager &undo = myDirector.getUndoManager();
    HostParm *t = geo->getParm("t");

    int id = undo.beginUndoBlock("Move");
    geo->setParmValue(*t, 0, 1.0);
    geo->setParmValue(*t, 1, 2.0);
    t->setLocked(2, true); // a storage-only change after t was saved twice
    geo->setParmValue(*geo->getParm("scale"), 0, 3.0);
    undo.endUndoBlock(id);
    ASSERT_EQ(undo.getUndoCount(), 1);
    EXPECT_EQ(undo.getUndoRecordCount(), 3);

    int events = 0;
    geo->addEventCallback(&events,
                          [](HostNode *, void *callee, HostNodeEvent e, void *)
                          {
                              if (e == HOST_NODE_PARM_CHANGED)
                                  ++*static_cast<int *>(callee);
                          });
    ASSERT_TRUE(undo.undo());
    EXPECT_EQ(std::tuple(t->getValue(0), t->getValue(1)), std::tuple(0.0, 0.0));
    EXPECT_FALSE(t->isLocked(2)); // the second save of t saw it unlocked
    EXPECT_EQ(std::tuple(geo->getParm("scale")->getValue(0), events), std::tuple(1.0, 3));
    EXPECT_EQ(undo.getUndoCount(), 0);

    ASSERT_TRUE(undo.redo());
    EXPECT_EQ(std::tuple(t->getValue(0), t->getValue(1)), std::tuple(1.0, 2.0));
    EXPECT_TRUE(t->isLocked(2));
    EXPECT_EQ(geo->getParm("scale")->getValue(0), 3.0);

    // A record whose node is gone does nothing and is not valid.
    HostParmUndo orphan(*geo, *t);
    ASSERT_TRUE(myDirector.deleteNode(geo));
    EXPECT_FALSE(orphan.isValid());
    orphan.undo();
    EXPECT_TRUE(undo.undo()); // skips its invalid records quietly
}
