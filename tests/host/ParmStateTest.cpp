// Tests of parameter expressions, channels, references, layers and saved state on live nodes.
#include "HostFixture.h"

#include "host/HostChannelManager.h"
#include "host/HostNodeExprContext.h"
#include "host/HostParm.h"

#include <thread>
#include <tuple>
#include <utility>

namespace
{
class ParmState : public HostFixture
{
protected:
    void SetUp() override
    {
        HostFixture::SetUp();
        HostChannelManager::get().reset();
        myGeo1 = make("tgeo", "/obj/geo1");
        myGeo2 = make("tgeo", "/obj/geo2");
        myT1 = myGeo1->getParm("t");
        myT2 = myGeo2->getParm("t");
    }
    void TearDown() override
    {
        HostChannelManager::get().reset();
        HostFixture::TearDown();
    }

    HostNode *myGeo1 = nullptr;
    HostNode *myGeo2 = nullptr;
    HostParm *myT1 = nullptr;
    HostParm *myT2 = nullptr;
};
} // namespace

TEST_F(ParmState, ExpressionsReadChannelsByRelativeAndAbsolutePaths)
{
    myT1->setValue(0, 1.5);
    myT1->setValue(1, -2.0);
    myT2->setExpression(0, "ch(\"../geo1/tx\") * 2");
    myT2->setExpression(1, "ch(\"/obj/geo1/ty\") + ch(\"tx\")");
    myT2->setExpression(2, "$T * 10");
    EXPECT_EQ(std::tuple(myT2->evalFloat(0, 0.0), myT2->evalFloat(1, 0.0)), std::tuple(3.0, 1.0));
    EXPECT_EQ(std::tuple(myT2->evalFloat(2, 0.25), myT2->evalInt(2, 0.25)), std::tuple(2.5, 2));
    EXPECT_EQ(myT2->evalString(0, 0.0), "3");
    EXPECT_EQ(myT2->getStringMeaning(0), HOST_STRING_EXPRESSION);
    EXPECT_EQ(myT2->getChannelState(0, 0.0), HOST_CHANNEL_STATE_EXPRESSION);
    EXPECT_EQ(myT2->getExpression(1), "ch(\"/obj/geo1/ty\") + ch(\"tx\")");

    // String expressions and literals are in the channel_expr scenario.
    // Writing a constant replaces the expression.
    myT2->setValue(0, 7.0);
    EXPECT_FALSE(myT2->hasExpression(0));
    EXPECT_EQ(myT2->getStringMeaning(0), HOST_STRING_LITERAL);
    EXPECT_EQ(myT2->evalFloat(0, 0.0), 7.0);
}

TEST_F(ParmState, FreeExpressionsReadChannelsOfTheirNode)
{
    myT1->setKey(0, 0.0, 2.0);
    myT1->setKey(0, 1.0, 4.0);
    std::string error;
    const HostExpression expr("ch(\"tx\") * 10 + ch(\"../geo2/scale\")");
    EXPECT_EQ(expr.evaluateNumber(HostNodeExprContext(myGeo1, 0.5), error), 31.0);
    EXPECT_EQ(error, "");
    EXPECT_EQ(expr.evaluateNumber(HostNodeExprContext(myGeo2, 0.5), error), 1.0);
    EXPECT_EQ(
        HostExpression("ch(\"../none/tx\")").evaluateNumber(HostNodeExprContext(myGeo2, 0), error),
        0.0);
    EXPECT_EQ(error, "Bad channel: ../none/tx");
    EXPECT_EQ(expr.evaluateNumber(HostNodeExprContext(nullptr, 0.5), error), 0.0);
    EXPECT_EQ(error, "Bad channel: tx");
}

TEST_F(ParmState, EvaluationErrorsGiveZeroAndAreReportedOnce)
{
    HostChannelManager &manager = HostChannelManager::get();
    myT1->setExpression(0, "1 / (ch(\"ty\") - ch(\"ty\"))");
    myT2->setExpression(0, "ch(\"../geo1/tx\") + 1");
    std::string error;
    EXPECT_EQ(myT2->evalFloat(0, 0.0, error), 0.0);
    EXPECT_EQ(error, "Division by zero");
    EXPECT_EQ(myT2->getEvalError(0), "Division by zero");
    EXPECT_EQ(manager.takeEvalErrors(), std::vector<std::string>{"/obj/geo2/tx: Division by zero"});

    {
        HostErrorSuppressScope quiet;
        EXPECT_EQ(myT1->evalFloat(0, 0.0), 0.0);
        EXPECT_EQ(myT1->getEvalError(0), "Division by zero");
    }
    EXPECT_TRUE(manager.getEvalErrors().empty());

    myT1->setExpression(0, "nosuch(1)");
    EXPECT_EQ(myT1->evalString(0, 0.0, error), "0");
    EXPECT_EQ(error, "Unknown function: nosuch()");
    myT1->setExpression(0, "2");
    EXPECT_EQ(myT1->evalFloat(0, 0.0, error), 2.0);
    EXPECT_EQ(myT1->getEvalError(0), "");

    myT1->setExpression(0, "1+1", HOST_STRING_SCRIPT);
    EXPECT_EQ(myT1->evalFloat(0, 0.0, error), 0.0);
    EXPECT_EQ(error, "Scripting-language expressions are not evaluated here");
    EXPECT_EQ(myT1->getStringMeaning(0), HOST_STRING_SCRIPT);
}

TEST_F(ParmState, KeysPendingValuesAndChannelRemoval)
{
    // Interpolation, pending values, keying, removal and copies as the commands see them are in
    // the channel_keys and channel_expr scenarios; here: states, segments and key search.
    myT1->setKey(0, 0.0, 0.0);
    myT1->setKey(0, 1.0, 10.0);
    EXPECT_EQ(myT1->getNumSegments(0), 1);
    EXPECT_EQ(myT1->getChannelState(0, 1.0), HOST_CHANNEL_STATE_KEY);
    EXPECT_EQ(myT1->getChannelState(0, 0.5), HOST_CHANNEL_STATE_ANIMATED);
    myT1->setValue(0, 0.5, 100.0, /*setKey=*/false);
    EXPECT_EQ(myT1->getChannelState(0, 0.5), HOST_CHANNEL_STATE_PENDING);
    myT1->setKey(0, 0.5);
    EXPECT_EQ(myT1->getChannel(0)->getNumKeys(), 3);

    // Writing with setKey keys an animatable parameter, not a toggle.
    myT1->setValue(1, 0.0, 4.0, /*setKey=*/true);
    EXPECT_TRUE(myT1->isKeyAt(1, 0.0));
    HostParmTemplate toggle(HOST_PARM_TOGGLE, "flag", "Flag");
    addType("Object", "ttoggle", {toggle});
    HostParm *flag = make("ttoggle", "/obj/tog1")->getParm("flag");
    flag->setValue(0, 0.0, 1.0, /*setKey=*/true);
    EXPECT_EQ(std::tuple(flag->hasChannel(0), flag->evalInt(0, 0.0)), std::tuple(false, 1));

    double t = 0.0;
    EXPECT_TRUE(myT1->getNextKeyTime(0, 0.5, t));
    EXPECT_EQ(t, 1.0);
    EXPECT_TRUE(myT1->getPrevKeyTime(0, 0.5, t));
    EXPECT_EQ(t, 0.0);
    EXPECT_FALSE(myT1->removeKey(0, 0.75));
    EXPECT_TRUE(myT1->removeKey(0, 0.5));
    EXPECT_EQ(myT1->getNumSegments(0), 1);
}

TEST_F(ParmState, ReferencesAreFollowedToTheEndAndCyclesStop)
{
    HostNode *geo3 = make("tgeo", "/obj/geo3");
    HostParm *t3 = geo3->getParm("t");
    myT2->setExpression(0, "ch(\"../geo1/tx\")");
    t3->setExpression(0, "ch(\"/obj/geo2/tx\")");
    t3->setExpression(1, "ch(\"tx\") + 1"); // not a reference: more than a single ch()

    using Found = std::tuple<bool, HostNode *, HostParm *, int>;
    const auto follow = [](HostNode *node, HostParm *parm, int k) -> Found
    {
        const bool found = HostParm::followChannelReferences(0.0, node, parm, k);
        return {found, node, parm, k};
    };
    EXPECT_EQ(follow(geo3, t3, 0), Found(true, myGeo1, myT1, 0));
    EXPECT_EQ(follow(geo3, t3, 1), Found(true, geo3, t3, 1));

    // A cycle through three components stops at the last one not seen before:
    // geo1 -> geo3 -> geo2, whose reference leads back to geo1.
    myT1->setExpression(0, "ch(\"../geo3/tx\")");
    EXPECT_EQ(follow(myGeo1, myT1, 0), Found(true, myGeo2, myT2, 0));
    std::string error;
    EXPECT_EQ(myT1->evalFloat(0, 0.0, error), 0.0);
    EXPECT_EQ(error, "Expression recursion too deep");

    // A self reference and a reference to nothing are not followed.
    myT1->setExpression(1, "ch(\"ty\")");
    EXPECT_EQ(follow(myGeo1, myT1, 1), Found(true, myGeo1, myT1, 1));
    myT1->setExpression(2, "ch(\"../nothing/tx\")");
    HostNode *target = nullptr;
    HostParm *parm = nullptr;
    int k = 0;
    EXPECT_FALSE(myT1->getChannelReference(2, target, parm, k));
    EXPECT_FALSE(std::get<0>(follow(myGeo1, nullptr, 1)));
}

TEST_F(ParmState, ChannelNamesResolveOnNodesAndPaths)
{
    HostParm *r2 = myGeo2->getParm("r"), *scale1 = myGeo1->getParm("scale");
    using Found = std::tuple<bool, HostNode *, HostParm *, int>;
    const std::pair<const char *, Found> cases[] = {
        {"tz", {true, myGeo2, myT2, 2}},
        {"r", {true, myGeo2, r2, 0}},
        {"../geo1/ry", {true, myGeo1, myGeo1->getParm("r"), 1}},
        {"/obj/geo1/scale", {true, myGeo1, scale1, 0}},
        {"../geo1/", {false, nullptr, nullptr, -1}},
        {"/obj/none/tx", {false, nullptr, nullptr, -1}},
        {"tw", {false, nullptr, nullptr, -1}},
    };
    for (const auto &[name, expected] : cases)
    {
        HostNode *node = myGeo1;
        HostParm *parm = myT1;
        int k = 7;
        const bool found = myGeo2->resolveChannel(name, node, parm, k);
        EXPECT_EQ(Found(found, node, parm, k), expected) << name;
    }

    const int instances[] = {3, 12};
    EXPECT_EQ(HostParm::expandInstanceTokens("pt#_#_#", instances, 2), "pt3_12_#");
    EXPECT_EQ(HostParm::expandInstanceTokens("pt#", instances, 0), "pt#");
    EXPECT_EQ(HostParm::expandInstanceTokens("{1,0,0,1,pos#x}", instances, 1), "{1,0,0,1,pos3x}");
}

TEST_F(ParmState, SaveForUndoRestoresValuesExpressionsChannelsAndFlags)
{
    myT1->setValue(0, 1.0);
    myT1->setExpression(1, "$F");
    myT1->setKey(2, 0.0, 5.0);
    myT1->setKey(2, 1.0, 6.0);
    myT1->setChannelOverride(2, "/ch/motion/tz");
    const HostParmState before = myT1->saveState();
    const HostChannel keysBefore = *myT1->getChannel(2);

    HostUndoManager &undo = myDirector.getUndoManager();
    const int block = undo.beginUndoBlock("edit");
    myGeo1->saveParmForUndo(*myT1);
    myT1->setValue(0, 0.0, 9.0, /*setKey=*/true);
    myT1->setValue(1, 0.0, 3.0, /*setKey=*/false);
    myT1->setKey(2, 2.0, 7.0);
    myT1->setValue(2, 0.5, 100.0, /*setKey=*/true);
    myT1->setLocked(1, true);
    myT1->setEnabled(0, false);
    myT1->setChannelOverride(2, "");
    undo.endUndoBlock(block);
    const HostChannel keysAfter = *myT1->getChannel(2);
    EXPECT_EQ(keysAfter.getNumKeys(), 4);

    ASSERT_TRUE(undo.undo());
    EXPECT_EQ(std::tuple(myT1->getValue(0), myT1->hasChannel(0), myT1->getExpression(1)),
              std::tuple(1.0, false, "$F"));
    EXPECT_EQ(std::tuple(*myT1->getChannel(2), myT1->getChannelOverride(2), myT1->isLocked(1)),
              std::tuple(keysBefore, "/ch/motion/tz", false));
    EXPECT_TRUE(myT1->isEnabled(0));
    const HostParmState restored = myT1->saveState();
    for (int k = 0; k < 3; ++k)
        EXPECT_EQ(restored.myComponents[k], before.myComponents[k]) << k;

    ASSERT_TRUE(undo.redo());
    EXPECT_EQ(std::tuple(*myT1->getChannel(2), myT1->isKeyAt(0, 0.0), myT1->isLocked(1)),
              std::tuple(keysAfter, true, true));
}

TEST_F(ParmState, LayersAdjustWritesAndReads)
{
    HostChannelManager &manager = HostChannelManager::get();
    EXPECT_EQ(manager.applyLayerContribution(*myT1, 0, 0.0, 4.0), 4.0);
    HostAnimLayer &layer = manager.addLayer("offset");
    layer.myOffsets["/obj/geo1/tx"] = 2.0;
    layer.myWeight = 0.5;
    EXPECT_EQ(manager.applyLayerContribution(*myT1, 0, 0.0, 4.0), 3.0);
    EXPECT_EQ(manager.applyLayerContribution(*myT1, 1, 0.0, 4.0), 4.0);
    myT1->setValue(0, 0.0, manager.applyLayerContribution(*myT1, 0, 0.0, 4.0), false);
    EXPECT_EQ(std::tuple(myT1->evalFloat(0, 0.0), myT1->getValue(0)), std::tuple(4.0, 3.0));
    EXPECT_TRUE(manager.removeLayer("offset"));
    EXPECT_EQ(myT1->evalFloat(0, 0.0), 3.0);
}

TEST_F(ParmState, EvaluationTimeAndSuppressionArePerThread)
{
    HostChannelManager &manager = HostChannelManager::get();
    myDirector.setTime(1.0);
    double otherTime = -1.0;
    bool otherSuppressed = true;
    {
        HostEvalTimeScope at(5.0);
        HostErrorSuppressScope quiet;
        {
            HostEvalTimeScope inner(6.0);
            EXPECT_EQ(manager.getEvaluateTime(), 6.0);
        }
        EXPECT_EQ(manager.getEvaluateTime(), 5.0);
        std::thread other(
            [&]()
            {
                otherTime = manager.getEvaluateTime();
                otherSuppressed = HostChannelManager::isErrorReportingSuppressed();
            });
        other.join();
        EXPECT_TRUE(HostChannelManager::isErrorReportingSuppressed());
    }
    EXPECT_EQ(otherTime, 1.0);
    EXPECT_FALSE(otherSuppressed);
    EXPECT_EQ(manager.getEvaluateTime(), 1.0);
    EXPECT_FALSE(HostChannelManager::isErrorReportingSuppressed());
}
