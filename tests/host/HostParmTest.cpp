// Tests of parameter templates, parameter lists and their lookups.
#include "HostFixture.h"

#include "host/HostColor.h"
#include "host/HostParmList.h"
#include "host/HostRampNaming.h"

#include <string>
#include <utility>
#include <vector>

namespace
{
std::vector<std::string> channels(const HostParmTemplate &t)
{
    std::vector<std::string> names;
    for (int k = 0; k < t.getNumChannels(); ++k)
        names.push_back(t.getChannelName(k));
    return names;
}

int theCallbackData = -1;
int recordCallback(HostNode *, int, int data, double, const HostParmTemplate *)
{
    theCallbackData = data;
    return 1;
}
} // namespace

TEST(HostParmTemplateNaming, ChannelNamesFollowTheNamingScheme)
{
    using V = std::vector<std::string>;
    EXPECT_EQ(channels(HostParmTemplate(HOST_PARM_XYZ, "t", "T", 3)), (V{"tx", "ty", "tz"}));
    EXPECT_EQ(channels(HostParmTemplate(HOST_PARM_XYZ, "p", "P", 6)),
              (V{"px", "py", "pz", "pw", "p5", "p6"}));
    EXPECT_EQ(channels(HostParmTemplate(HOST_PARM_UVW, "uv", "UV", 2)), (V{"uvu", "uvv"}));
    EXPECT_EQ(channels(HostParmTemplate(HOST_PARM_RGBA, "c", "C", 4)), (V{"cr", "cg", "cb", "ca"}));
    EXPECT_EQ(channels(HostParmTemplate(HOST_PARM_FLOAT, "v", "V", 3)), (V{"v1", "v2", "v3"}));
    EXPECT_EQ(channels(HostParmTemplate(HOST_PARM_FLOAT, "scale", "S")), (V{"scale"}));
    HostParmType minmax = HOST_PARM_FLOAT.withFlags(HostParmType::NAME_MINMAX);
    EXPECT_EQ(channels(HostParmTemplate(minmax, "r", "R", 3)), (V{"rmin", "rmax", "r3"}));
    HostParmType beginend = HOST_PARM_ANGLE.withFlags(HostParmType::NAME_BEGIN_END);
    HostParmTemplate angle(beginend, "rot", "Rot", 2);
    EXPECT_EQ(channels(angle), (V{"beginrot", "endrot"}));
    EXPECT_TRUE(angle.hasPrefixChannelNames());
    EXPECT_FALSE(HostParmTemplate(beginend, "rot", "Rot", 1).hasPrefixChannelNames());

    // Renaming or resizing rebuilds the names; switchers and multiparms have one channel.
    HostParmTemplate t(HOST_PARM_XYZ, "t", "T", 3);
    t.setName("pos");
    t.setVectorSize(2);
    EXPECT_EQ(std::tuple(channels(t), t.findChannel("posy")), std::tuple((V{"posx", "posy"}), 1));
    EXPECT_EQ(t.findChannel("posz"), -1);
    HostParmTemplate sw(HOST_PARM_SWITCHER, "folder0", "F");
    sw.addFolder("Transform", 2);
    sw.addFolder("Render", 1);
    EXPECT_EQ(std::tuple(channels(sw), sw.getFolderCount()), std::tuple((V{"folder0"}), 2));
    EXPECT_EQ(std::tuple(sw.getFolderLabel(1), sw.getFolderParmCount(0)), std::tuple("Render", 2));
    EXPECT_TRUE(HostParmTemplate().isTerminator());
    EXPECT_EQ(HostParmTemplate().getNumChannels(), 0);
}

TEST(HostParmTemplateCopy, CopiesAreDeepAndListsStayTerminated)
{
    HostParmTemplate menu(HOST_PARM_MENU, "mode", "Mode");
    HostChoiceList list;
    list.addItem("a", "A");
    menu.setChoiceList(&list);
    menu.tags().set("script_callback", "echo hi");
    HostParmTemplate copy = menu;
    EXPECT_EQ(copy, menu);
    copy.tags().set("script_callback", "echo bye");
    EXPECT_STREQ(menu.getTag("script_callback"), "echo hi");
    EXPECT_NE(copy, menu);
    EXPECT_NE(copy.getChoiceList(), menu.getChoiceList());
    EXPECT_EQ(copy.getChoiceList()->getToken(0), "a");

    HostParmTemplateList templates{menu, HostParmTemplate(HOST_PARM_FLOAT, "f", "F")};
    EXPECT_EQ(templates.size(), 2);
    EXPECT_TRUE(templates.data()[2].isTerminator());
    templates.insert(0, HostParmTemplate(HOST_PARM_STRING, "s", "S"));
    templates.remove(2);
    EXPECT_EQ(std::tuple(templates.find("s"), templates.find("f")), std::tuple(0, -1));
    EXPECT_TRUE(templates.data()[templates.size()].isTerminator());
    HostParmTemplateList again(templates.data());
    EXPECT_EQ(again, templates);
}

using HostParmLookup = HostFixture;

TEST_F(HostParmLookup, FindsParametersByNameChannelAndAlias)
{
    HostNode *geo = make("tgeo", "/obj/geo1");
    HostParmList &parms = geo->getParmList();
    EXPECT_EQ(parms.getEntries(), 3);

    // (parameter found, component) by channel; a whole parameter name gives component 0.
    const auto find = [&parms](const char *channel)
    {
        int vec = -5;
        const HostParm *parm = parms.findChannel(channel, vec);
        return std::pair(parm ? parm->getName() : "none", vec);
    };
    using Found = std::pair<std::string, int>;
    EXPECT_EQ(std::tuple(find("ty"), find("t")), std::tuple(Found("t", 1), Found("t", 0)));
    EXPECT_EQ(find("scale"), Found("scale", 0));
    EXPECT_EQ(std::tuple(find("tw"), parms.getParmIndex("r")), std::tuple(Found("none", -1), 1));
    EXPECT_EQ(parms.getParm(1)->getChannelName(2), "rz");

    EXPECT_FALSE(parms.addChannelAlias("height", "nothing"));
    EXPECT_TRUE(parms.addChannelAlias("height", "ty"));
    EXPECT_EQ(find("height"), Found("t", 1));
}

TEST_F(HostParmLookup, DefaultsRevertAndFactoryDefaults)
{
    HostNode *geo = make("tgeo", "/obj/geo1");
    HostParm *scale = geo->getParm("scale");
    ASSERT_NE(scale, nullptr);
    EXPECT_EQ(std::tuple(scale->getValue(0), scale->isAtDefault(0)), std::tuple(1.0, true));

    scale->setValue(0, 4.0);
    EXPECT_FALSE(scale->isAtDefault(0));
    scale->overwriteDefault(0);
    EXPECT_TRUE(scale->isAtDefault(0));
    scale->setValue(0, 7.0);
    scale->revertToDefault(0);
    EXPECT_EQ(scale->getValue(0), 4.0);
    scale->restoreFactoryDefault(0);
    scale->revertToDefault(0);
    EXPECT_EQ(scale->getValue(0), 1.0);

    HostParm *label = make("tbox", "/obj/geo1/box1")->getParm("label");
    label->setString(0, "hello", HOST_STRING_LITERAL);
    EXPECT_EQ(label->evalString(0, 0.0), "hello");
    label->revertToDefault(0);
    EXPECT_EQ(label->getString(0), "");
}

TEST_F(HostParmLookup, MultiparmInstancesAreNamedIndexedAndRemoved)
{
    HostParmTemplate multi(HOST_PARM_MULTIPARM, "points", "Points");
    multi.setDefault(0, HostParmDefault(2.0));
    multi.addChild(HostParmTemplate(HOST_PARM_XYZ, "pos#", "Position", 3));
    HostParmTemplate inner(HOST_PARM_MULTIPARM, "w#", "Weights");
    inner.addChild(HostParmTemplate(HOST_PARM_FLOAT, "wt#_#", "Weight"));
    multi.addChild(inner);
    addType("Sop", "tcurve", {multi, HostParmTemplate(HOST_PARM_FLOAT, "after", "After")});
    make("tgeo", "/obj/geo1");
    HostNode *curve = make("tcurve", "/obj/geo1/curve1");
    HostParmList &parms = curve->getParmList();
    HostParm *points = parms.getParm("points");
    ASSERT_NE(points, nullptr);
    EXPECT_EQ(std::tuple(points->getInstanceCount(), points->getInt(0)), std::tuple(2, 2));

    int vec = -1;
    HostParm *pos2 = parms.findChannel("pos2y", vec);
    ASSERT_NE(pos2, nullptr);
    EXPECT_EQ(std::tuple(pos2->getName(), vec), std::tuple("pos2", 1));
    EXPECT_EQ(pos2->getMultiParmOwner(), points);
    EXPECT_EQ(pos2->getInstanceNumber(), 2);
    EXPECT_EQ(points->getInstanceParms(1).at(0), pos2);

    HostParm *w2 = parms.getParm("w2");
    ASSERT_NE(w2, nullptr);
    EXPECT_TRUE(parms.setInstanceCount(*w2, 3));
    EXPECT_NE(parms.getParm("wt2_3"), nullptr);
    EXPECT_EQ(parms.getParm("wt1_1"), nullptr);

    // Shrinking removes the last instance with everything nested in it; indexes stay exact.
    EXPECT_TRUE(curve->setParmValue(*points, 0, 1));
    EXPECT_EQ(std::tuple(points->getInstanceCount(), parms.getParm("pos2"), parms.getParm("wt2_3")),
              std::tuple(1, nullptr, nullptr));
    EXPECT_EQ(parms.findChannel("pos2x", vec), nullptr);
    EXPECT_NE(parms.getParm("pos1"), nullptr);
    for (int i = 0; i < parms.getEntries(); ++i)
        EXPECT_EQ(parms.getParm(i)->getIndex(), i);
    EXPECT_EQ(parms.getParm(parms.getParmIndex("after")), parms.getParm("after"));
    EXPECT_FALSE(parms.setInstanceCount(*parms.getParm("after"), 2));
}

TEST_F(HostParmLookup, SpareParmsAreRebuiltKeepingValuesAndInterests)
{
    HostNode *geo = make("tgeo", "/obj/geo1");
    int events = 0;
    geo->addEventCallback(&events,
                          [](HostNode *, void *callee, HostNodeEvent e, void *)
                          {
                              if (e == HOST_NODE_INTERFACE_CHANGED)
                                  ++*static_cast<int *>(callee);
                          });
    geo->setSpareTemplates({HostParmTemplate(HOST_PARM_FLOAT, "extra", "Extra"),
                            HostParmTemplate(HOST_PARM_XYZ, "offset", "Offset", 3)});
    EXPECT_EQ(events, 1);
    HostParm *extra = geo->getParm("extra");
    ASSERT_NE(extra, nullptr);
    EXPECT_EQ(std::tuple(extra->isSpare(), geo->getParm("t")->isSpare()), std::tuple(true, false));
    extra->setValue(0, 5.0);
    int calls = 0;
    HostParmInterest interest{&calls, [](void *callee, void *) { ++*static_cast<int *>(callee); }};
    extra->addInputInterest(interest);

    // "offset" changes size and loses its value; "extra" keeps value and interest.
    geo->setSpareTemplates({HostParmTemplate(HOST_PARM_XYZ, "offset", "Offset", 2),
                            HostParmTemplate(HOST_PARM_FLOAT, "extra", "Extra")});
    extra = geo->getParm("extra");
    EXPECT_EQ(extra->getValue(0), 5.0);
    EXPECT_TRUE(extra->hasInputInterest(interest));
    EXPECT_EQ(geo->getParm("offset")->getVectorSize(), 2);
    EXPECT_TRUE(geo->setParmValue(*extra, 0, 6.0));
    EXPECT_EQ(calls, 1);

    geo->setSpareTemplates(HostParmTemplateList());
    EXPECT_EQ(geo->getParm("extra"), nullptr);
    EXPECT_EQ(geo->getParmList().getEntries(), 3);
    myDirector.clearScene(); // the local listeners die before TearDown
}

TEST_F(HostParmLookup, CallbacksRunWithTheNode)
{
    HostParmTemplate button(HOST_PARM_BUTTON, "go", "Go");
    button.setCallback(recordCallback);
    addType("Object", "tbutton", {button, HostParmTemplate(HOST_PARM_FLOAT, "x", "X")});
    HostNode *node = make("tbutton", "/obj/b1");
    EXPECT_EQ(node->runParmCallback(*node->getParm("go"), 7, 0.0), 1);
    EXPECT_EQ(theCallbackData, 7);
    EXPECT_EQ(node->runParmCallback(*node->getParm("x"), 8, 0.0), 0);
    EXPECT_EQ(theCallbackData, 7);
}

TEST(HostColorModel, CodeTwoIsRGB)
{
    EXPECT_EQ(HostColor::fromCode(2, 1, 0, 0), HostColor(HostColor::RGB, 1, 0, 0));
    EXPECT_EQ(HostColor::fromCode(99, 1, 0, 0).model(), HostColor::RGB);
    EXPECT_NE(HostColor::fromCode(3, 1, 0, 0), HostColor(HostColor::RGB, 1, 0, 0));
    EXPECT_EQ(HostColor().modelCode(), 2);
}

TEST_F(HostParmLookup, ValuesClampRoundAndKeepExpressionsApart)
{
    HostParmTemplate clamped(HOST_PARM_FLOAT, "amount", "Amount");
    clamped.setRange(HostParmRange(0.0, 1.0, /*lo_strict=*/true, /*hi_strict=*/false));
    HostParmTemplate count(HOST_PARM_INT, "count", "Count");
    addType("Object", "tvalues",
            {clamped, count, HostParmTemplate(HOST_PARM_FILE, "file", "File")});
    HostNode *node = make("tvalues", "/obj/v1");
    HostParm *amount = node->getParm("amount");
    amount->setValue(0, -2.0);
    EXPECT_EQ(amount->getValue(0), 0.0);
    amount->setValue(0, 3.0); // the upper bound is only a slider bound
    EXPECT_EQ(amount->getValue(0), 3.0);
    node->getParm("count")->setValue(0, 2.6);
    EXPECT_EQ(node->getParm("count")->getInt(0), 3);

    // Text given to a number parameter: a literal is read as the number, an expression goes
    // to the expression slot and leaves the constant alone.
    amount->setString(0, "0.25", HOST_STRING_LITERAL);
    EXPECT_EQ(amount->getValue(0), 0.25);
    amount->setString(0, "$F * 2", HOST_STRING_EXPRESSION);
    EXPECT_EQ(amount->component(0).myExpression, "$F * 2");
    EXPECT_EQ(std::tuple(amount->isTimeDependent(0), amount->getValue(0)), std::tuple(true, 0.25));
    amount->setValue(0, 0.5);
    EXPECT_FALSE(amount->isTimeDependent(0));

    HostParm *file = node->getParm("file");
    file->setString(0, "$HIP/a.bgeo", HOST_STRING_EXPRESSION);
    EXPECT_EQ(file->getString(0), "$HIP/a.bgeo");
    EXPECT_EQ(file->getStringMeaning(0), HOST_STRING_EXPRESSION);

    // The whole state round-trips, locks and defaults included.
    amount->setLocked(0, true);
    amount->setDefault(0, HostParmDefault(0.75));
    HostParmState state = amount->saveState();
    amount->setLocked(0, false);
    amount->setValue(0, 9.0);
    amount->restoreFactoryDefault(0);
    amount->restoreState(state);
    EXPECT_EQ(std::tuple(amount->isLocked(0), amount->getValue(0), amount->getDefault(0).myNumber),
              std::tuple(true, 0.5, 0.75));
}

TEST_F(HostParmLookup, RampPointsAreInstancesNamedByTheRampNaming)
{
    HostParmTemplate ramp(HOST_PARM_INT, "fr", "Ramp");
    ramp.setMultiType(HostParmTemplate::MULTI_RAMP_COLOR);
    ramp.setDefault(0, HostParmDefault(2.0));
    HostParmTemplate multi(HOST_PARM_MULTIPARM, "layers", "Layers");
    multi.setDefault(0, HostParmDefault(1.0));
    HostParmTemplate nested(ramp);
    nested.setName("lr#");
    nested.setMultiType(HostParmTemplate::MULTI_RAMP_FLOAT);
    multi.addChild(nested);
    HostNode *geo = make("tgeo", "/obj/geo1");
    geo->setSpareTemplates({ramp, multi});
    // A nested ramp numbers its points after its instance number; a pattern stem ending in
    // "#" is kept apart from the point number by "_".
    const std::pair<std::string, std::vector<std::string>> rows[] = {
        {"fr", HostRampNaming::pointChannels("fr", true, 2)},
        {"lr1", HostRampNaming::pointChannels("lr1", false, 2)},
    };
    EXPECT_EQ(rows[0].second,
              (std::vector<std::string>{"fr2pos", "fr2cr", "fr2cg", "fr2cb", "fr2interp"}));
    EXPECT_EQ(rows[1].second, (std::vector<std::string>{"lr12pos", "lr12value", "lr12interp"}));
    EXPECT_EQ(HostRampNaming::pointPatterns("lr#", false).front(), "lr#_#pos");
    int vec = -1;
    for (const auto &[name, point2] : rows)
        for (const std::string &channel : point2)
            EXPECT_NE(geo->getParmList().findChannel(channel, vec), nullptr) << channel;
    EXPECT_EQ(geo->getParmList().findChannel("fr3pos", vec), nullptr);
}
