// Tests of reading and writing bound parameters: projections, tolerance, keys, undo.
#include "gz_LinkTestEnv.h"

#include "host/HostCommandArgs.h"
#include "host/HostUndoManager.h"
#include "tests/DiagnosticsRecorder.h"

#include <cstdio>
#include <sstream>

using gztest::LinkFixture;
using gztest::TestLink;

namespace
{
DiagnosticsRecorder theDiagnostics;

/// A late binding that answers every read with fixed values and counts the writes.
class FixedLateBinding : public GZ_OpHandleLink::LateBinding
{
public:
    void beginHandleChange(GZ_OpHandleLink *, void *) override {}
    void endHandleChange(GZ_OpHandleLink *, void *) override {}
    void updateStateValues(GZ_OpHandleLink *, void *) override {}
    void updateHandleValues(GZ_OpHandleLink *) override { ++myUpdates; }
    int getParmValue(GZ_OpHandleLink *, int, std::string &value, const std::string &) override
    {
        value = "late";
        return 1;
    }
    int getParmValue(GZ_OpHandleLink *, int index, double &value) override
    {
        value = 100.0 + index;
        return 1;
    }
    int getParmValue(GZ_OpHandleLink *, int, int &value, int) override { return value = 42; }
    int setParmValue(GZ_OpHandleLink *, int, const std::string &) override { return ++mySets; }
    int setParmValue(GZ_OpHandleLink *, int, int, bool) override { return ++mySets; }
    int setParmValue(GZ_OpHandleLink *, int, double, bool) override { return ++mySets; }
    bool isParmEnabled(GZ_OpHandleLink *, int) override { return false; }

    int myUpdates = 0;
    int mySets = 0;
};

HostUndoManager &undo()
{
    return HostUndoManager::current();
}

/// Re-attaches a node so that it takes the current bindings of its operator type.
void refresh(TestLink &link, HostNode *node)
{
    link.detach(*node);
    link.attach(*node);
}

} // namespace

using DI = std::pair<int, double>;
using II = std::pair<int, int>;
using SI = std::pair<int, std::string>;

TEST_F(LinkFixture, ProjectionWritesAndReadsBack)
{
    HostNode *a = make("lxform", "/obj/a");
    // {1,0,1,1,ty} maps h = p / (p + 1).
    auto link = makeLink(a, {"{2,0,0,1,tx}", "{1,0,1,1,ty}", "tz", "{2,0,0,1,count}"});

    EXPECT_EQ(link->setParmValue(0, 4.0, false), 1);
    EXPECT_EQ(std::tuple(value(a, "tx"), link->get(0, -1.0)), std::tuple(2.0, DI(1, 4.0)));
    EXPECT_EQ(link->get(0, -1), II(1, 4));
    EXPECT_EQ(link->setParmValue(1, 0.5, false), 1);
    EXPECT_DOUBLE_EQ(value(a, "ty"), 1.0);
    EXPECT_DOUBLE_EQ(link->get(1, -1.0).second, 0.5);
    // At the pole of the mapping there is no value: writes are refused, reads give the default.
    EXPECT_EQ(link->setParmValue(1, 1.0, false), 0);
    link->setParmValue(2, -1.0, false);
    link->linkOpParm("lxform", 1, "{1,0,1,1,tz}");
    refresh(*link, a);
    EXPECT_EQ(link->get(1, -7.0), DI(0, -7.0));

    // Integer writes and reads truncate the mapped value toward zero.
    EXPECT_EQ(link->setParmValue(3, -7, false), 1);
    EXPECT_EQ(std::tuple(value(a, "count"), link->get(3, 0)), std::tuple(-3.0, II(1, -6)));

    GZ_Vector3 v;
    link->getParmVector3(2, v, 9.0); // tz, the count, then the unbound uniform
    EXPECT_EQ(v, (GZ_Vector3{-1.0, -6.0, 9.0}));
    link->setParmVector3(0, GZ_Vector3{8.0, 0.0, 3.0});
    EXPECT_EQ(std::tuple(value(a, "tx"), value(a, "tz")), std::tuple(4.0, 3.0));
}

TEST_F(LinkFixture, WritesWithinToleranceChangeNothing)
{
    HostNode *a = make("lxform", "/obj/a");
    auto link = makeLink(a, {"tx"});
    link->setParmValue(0, 3.0, false);
    undo().clear();
    const int changes = a->getNumParmChanges();

    EXPECT_EQ(link->setParmValue(0, 3.000001, false), 1);
    // The tolerance is the single-precision constant, slightly below 1e-5.
    EXPECT_EQ(link->setParmValue(0, 3.0 + 9.99999e-6, false), 1);
    EXPECT_EQ(std::tuple(value(a, "tx"), undo().getUndoCount()), std::tuple(3.0, 0));
    EXPECT_EQ(a->getNumParmChanges(), changes);
    EXPECT_EQ(link->setParmValue(0, 3.0 + 1e-5, false), 1);
    EXPECT_EQ(std::tuple(value(a, "tx"), undo().getUndoCount()), std::tuple(3.0 + 1e-5, 1));

    // Near zero a write snaps to zero; just outside the tolerance it does not.
    const double rows[][3] = {// start, write, stored
                              {1.0, 0.000005, 0.0},
                              {1.0, -0.0000099, 0.0},
                              {0.0, -0.00001, -0.00001}};
    for (const auto &row : rows)
    {
        link->setParmValue(0, row[0], false);
        EXPECT_EQ(link->setParmValue(0, row[1], false), 1);
        EXPECT_EQ(value(a, "tx"), row[2]) << row[1];
    }
}

TEST_F(LinkFixture, ExpressionBindingsReadButRefuseWrites)
{
    HostNode *a = make("lxform", "/obj/a");
    auto link = makeLink(a, {"!1+1", "!-7/2", "!ch(\"tx\") * 10", "!1+", "!\"a\" + \"b\""});

    EXPECT_EQ(std::tuple(link->get(0, -1.0), link->get(0, -1)), std::tuple(DI(1, 2.0), II(1, 2)));
    EXPECT_EQ(link->get(1, 0), II(1, -3));
    a->setParmValue(*parm(a, "tx"), 0, 0.5);
    EXPECT_EQ(link->get(2, -1.0), DI(1, 5.0));
    EXPECT_EQ(link->get(3, -1.0), DI(1, 0.0)); // a broken expression reads as 0
    EXPECT_EQ(link->get(4, std::string("dflt")), SI(1, "ab"));

    EXPECT_EQ(link->setParmValue(0, 5.0, true), 0);
    EXPECT_EQ(link->setParmValue(4, std::string("x")), 0);
    int calls = 0;
    EXPECT_TRUE(link->readParm(0, [&](const HostParm &, int) { ++calls; }));
    EXPECT_FALSE(link->modifyParm(
        0, [&](HostParm &, int) { ++calls; }, false));
    EXPECT_EQ(calls, 0);
}

TEST_F(LinkFixture, UnresolvableBindingsFailQuietly)
{
    HostNode *a = make("lxform", "/obj/a");
    auto link = makeLink();
    EXPECT_EQ(link->get(0, 9.0), DI(0, 9.0)); // nothing attached
    link->bind("lxform", {"nosuch", "{1,2}"});
    link->attach(*a);
    EXPECT_EQ(link->get(0, 8.0), DI(0, 8.0));
    EXPECT_EQ(link->setParmValue(1, 1.0, false), 0);
    EXPECT_EQ(link->get(2, 7.0).first, 0); // bound to nothing
    EXPECT_EQ(link->setParmValue(-1, 1.0, false), 0);
    EXPECT_EQ(link->getParmState(0, 0), HOST_CHANNEL_STATE_NONE);
    EXPECT_FALSE(link->isParmEnabled(0, 0));
    EXPECT_EQ(link->performParmCallback(0, 1), 0);
    EXPECT_EQ(link->iterateParms(3, [](const HostParm &, int) {}), 0);
}

TEST_F(LinkFixture, KeysOnlyOnAnimatableParameters)
{
    HostNode *a = make("lxform", "/obj/a");
    auto link = makeLink(a, {"tx", "still", "count"});
    myDirector.setTime(1.0);
    EXPECT_EQ(link->setParmValue(0, 2.0, true), 1);
    EXPECT_TRUE(parm(a, "tx")->isKeyAt(0, 1.0));
    EXPECT_EQ(link->getParmState(0, 0), HOST_CHANNEL_STATE_KEY);
    EXPECT_EQ(link->setParmValue(1, 2.0, true), 1);
    EXPECT_FALSE(parm(a, "still")->hasChannel(0));
    EXPECT_EQ(value(a, "still"), 2.0);
    EXPECT_EQ(link->setParmValue(2, 3, true), 1);
    EXPECT_TRUE(parm(a, "count")->isKeyAt(0, 1.0));

    // A time override writes and reads at its own time.
    link->setIsTimeOverride(true);
    link->setTimeOverrideTime(2.0);
    EXPECT_EQ(link->setParmValue(0, 6.0, true), 1);
    EXPECT_TRUE(parm(a, "tx")->isKeyAt(0, 2.0));
    link->setIsTimeOverride(false);
    EXPECT_EQ(link->get(0, 0.0).second, 2.0);
}

TEST_F(LinkFixture, RefusedWritesRecordNothing)
{
    HostNode *a = make("lxform", "/obj/a");
    auto link = makeLink(a, {"tx", "ty", nullptr, nullptr, "group"});
    HostParm *t = parm(a, "tx");
    t->setLocked(0, true);
    t->setEnabled(1, false);
    undo().clear();
    EXPECT_EQ(link->setParmValue(0, 1.0, false), 0);
    EXPECT_EQ(link->setParmValue(1, 1.0, false), 0);
    EXPECT_EQ(std::tuple(undo().getUndoCount(), link->isParmEnabled(1, 0)), std::tuple(0, false));

    EXPECT_EQ(link->setParmValue(4, std::string("pts")), 1);
    EXPECT_EQ(link->get(4, std::string()), SI(1, "pts"));
    a->setPermissions(0444);
    EXPECT_EQ(link->setParmValue(4, std::string("prims")), 0);
    EXPECT_EQ(undo().getUndoCount(), 1);
}

TEST_F(LinkFixture, ChannelReferencesLeadToAnotherNode)
{
    HostNode *a = make("lxform", "/obj/a");
    HostNode *b = make("lbox", "/obj/b");
    parm(a, "tx")->setExpression(0, "ch(\"/obj/b/tx\")");
    auto link = makeLink(a, {"{2,0,0,1,tx}", "../b/scale"}); // the second by path to another node

    undo().clear();
    EXPECT_EQ(link->setParmValue(0, 3.0, false), 1);
    EXPECT_EQ(std::tuple(value(b, "tx"), link->get(0, 0.0)), std::tuple(1.5, DI(1, 3.0)));
    EXPECT_EQ(link->setParmValue(1, 2.5, false), 1);
    EXPECT_EQ(std::tuple(value(b, "scale"), undo().getUndoCount()), std::tuple(2.5, 2));

    int seen = 0;
    EXPECT_TRUE(link->readParm(0,
                               [&](const HostParm &p, int vi)
                               {
                                   EXPECT_EQ(std::tuple(p.getNode(), vi), std::tuple(b, 0));
                                   EXPECT_TRUE(b->getFlag(HostNode::FLAG_HANDLE_READ));
                                   ++seen;
                               }));
    EXPECT_EQ(seen, 1);
    EXPECT_FALSE(b->getFlag(HostNode::FLAG_HANDLE_READ));
    EXPECT_EQ(link->getOpParmLabel(0), "Translate");

    // modifyParm saves for undo and works on the final component.
    EXPECT_TRUE(link->modifyParm(
        0, [](HostParm &p, int vi) { p.setValue(vi, 7.0); }, true));
    EXPECT_EQ(std::tuple(value(b, "tx"), undo().getUndoCount()), std::tuple(7.0, 3));
    EXPECT_EQ(link->iterateParms(
                  0, [](HostParm &p, int vi) { p.setLocked(vi, true); }, false),
              5);
    EXPECT_EQ(link->setParmValue(0, 1.0, false), 0);
}

TEST_F(LinkFixture, InstanceBindingsExpandTheirMarkers)
{
    HostParmTemplate multi(HOST_PARM_MULTIPARM, "points", "Points");
    multi.setDefault(0, HostParmDefault(2.0));
    multi.addChild(HostParmTemplate(HOST_PARM_XYZ, "pos#", "Position", 3));
    addType("Object", "lcurve", {multi});
    HostNode *curve = make("lcurve", "/obj/curve");
    auto link = makeLink(curve, {"{2,0,0,1,pos#x}", "pos#y", "pos#z"});

    const int first[] = {1}, second[] = {2}, missing[] = {9};
    EXPECT_EQ(link->setParmInstValue(0, second, 6.0, false, 1), 1);
    EXPECT_EQ(std::tuple(value(curve, "pos2x"), value(curve, "pos1x")), std::tuple(3.0, 0.0));
    double h = 0.0;
    EXPECT_EQ(link->getParmInstValue(0, second, h, -1.0, 1), 1);
    EXPECT_EQ(h, 6.0);

    link->setParmInstVector3(0, first, GZ_Vector3{2.0, 5.0, 7.0});
    GZ_Vector3 v;
    link->getParmInstVector3(0, first, v, 0.0);
    EXPECT_EQ(std::tuple(v, value(curve, "pos1x")), std::tuple((GZ_Vector3{2.0, 5.0, 7.0}), 1.0));

    // Unfilled markers or missing instances name nothing.
    EXPECT_EQ(link->getParmInstValue(0, second, h, -1.0, 0), 0);
    EXPECT_EQ(link->setParmInstValue(0, missing, 1.0, false, 1), 0);
    EXPECT_EQ(link->getParmValue(0, h, -2.0), 0);
}

TEST_F(LinkFixture, LateBindingTakesOverValueAccess)
{
    HostNode *a = make("lxform", "/obj/a");
    auto link = makeLink(a, {"tx"});
    FixedLateBinding late;
    link->setLateBinding(&late);
    EXPECT_TRUE(link->hasLateBinding(&late));

    EXPECT_EQ(std::tuple(link->get(1, 0.0), link->get(0, 0)), std::tuple(DI(1, 101.0), II(42, 42)));
    EXPECT_EQ(link->get(0, std::string()), SI(1, "late"));
    EXPECT_EQ(link->setParmValue(0, 5.0, false), 1);
    EXPECT_EQ(link->setParmValue(0, 5, false), 2);
    EXPECT_EQ(link->setParmValue(0, std::string("x")), 3);
    EXPECT_EQ(std::tuple(value(a, "tx"), link->isParmEnabled(0, 0)), std::tuple(0.0, false));
    const int inst[] = {1}; // the instance forms never delegate
    EXPECT_EQ(link->setParmInstValue(0, inst, 2.0, false, 0), 1);
    EXPECT_EQ(value(a, "tx"), 2.0);
    link->handleTimeChange();
    EXPECT_EQ(std::tuple(late.myUpdates, link->myUpdates), std::tuple(1, 1));
}

TEST_F(LinkFixture, DragOnTwoNodesIsOneUndoStep)
{
    HostNode *a = make("lxform", "/obj/a");
    HostNode *b = make("lxform", "/obj/b");
    auto link = makeLink();
    std::ostringstream out, err;
    HostCommandArgs bind_a({"x", "h", "/obj/a", "tx:tx", "ty:ty"}, out, err);
    link->runBindCommand(bind_a);
    HostCommandArgs bind_b({"x", "h", "/obj/b", "tz:tz"}, out, err);
    link->runBindCommand(bind_b);
    undo().clear();

    link->beginDistributedUndoBlock("Drag Handle");
    EXPECT_TRUE(link->inDistributedUndoBlock());
    for (int step = 1; step <= 3; ++step)
        link->setParmVector3(0, GZ_Vector3{1.0 * step, 2.0 * step, 3.0 * step});
    link->endDistributedUndoBlock();
    EXPECT_FALSE(link->inDistributedUndoBlock());
    EXPECT_EQ(std::tuple(value(a, "ty"), value(b, "tz")), std::tuple(6.0, 9.0));

    ASSERT_EQ(undo().getUndoCount(), 1);
    EXPECT_EQ(undo().getUndoName(), "Drag Handle");
    ASSERT_TRUE(undo().undo());
    EXPECT_EQ(std::tuple(value(a, "tx"), value(b, "tz")), std::tuple(0.0, 0.0));
}

TEST_F(LinkFixture, NestedDistributedUndoBlocks)
{
    auto link = makeLink();
    myDirector.setDebugFlag(20, true);
    TestLink::theUndoDebugFlag = -1;
    char expected[128];

    const int opened = undo().getNumBlocksOpened();
    theDiagnostics.start();
    link->beginDistributedUndoBlock("Outer");
    EXPECT_EQ(undo().getCurrentBlockId(), link->getDistributedUndoBlockId());
    link->beginDistributedUndoBlock("Inner");
    EXPECT_EQ(link->getDistributedUndoBlockId(), -2);
    EXPECT_EQ(undo().getBlockDepth(), 2);
    link->endDistributedUndoBlock();
    link->endDistributedUndoBlock();
    EXPECT_EQ(undo().getBlockDepth(), 0);
    EXPECT_EQ(link->getDistributedUndoBlockId(), -2);
    EXPECT_FALSE(link->inDistributedUndoBlock());
    std::snprintf(expected, sizeof(expected), "nested beginDistributedUndoBlock in %p\n",
                  static_cast<void *>(static_cast<GZ_OpHandleLink *>(link.get())));
    EXPECT_EQ(theDiagnostics.take(), expected);
    EXPECT_EQ(undo().getNumBlocksOpened(), opened + 2);

    auto fresh = makeLink();
    theDiagnostics.start();
    fresh->endDistributedUndoBlock();
    std::snprintf(expected, sizeof(expected), "endDistributedUndoBlock without begin in %p\n",
                  static_cast<void *>(static_cast<GZ_OpHandleLink *>(fresh.get())));
    EXPECT_EQ(theDiagnostics.take(), expected);
    EXPECT_EQ(fresh->getDistributedUndoBlockId(), -1);

    // Without the flag nothing is printed.
    myDirector.setDebugFlag(20, false);
    TestLink::theUndoDebugFlag = -1;
    theDiagnostics.start();
    fresh->endDistributedUndoBlock();
    fresh->beginDistributedUndoBlock("One");
    fresh->beginDistributedUndoBlock("Two");
    fresh->endDistributedUndoBlock();
    fresh->endDistributedUndoBlock();
    EXPECT_EQ(theDiagnostics.take(), "");
    EXPECT_EQ(undo().getBlockDepth(), 0);
}
