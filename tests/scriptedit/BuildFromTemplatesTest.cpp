// Parameter sets built from template lists, import records and nodes.
#include "ScriptEditFixture.h"

#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostOperatorTable.h"
#include "host/HostSpareData.h"
#include "host/HostSpareLayout.h"
#include "tests/host/HostFixture.h"

#include <gtest/gtest.h>

using namespace gztest;

namespace
{
/// "kind:name" per entry, blank separated ("}" for group ends), to compare whole layouts.
std::string layout(const GZ_EditScriptedParms &s)
{
    static const char *const kinds[] = {"coll",  "simple", "tab",     "radio", "import",
                                        "multi", "scroll", "mswitch", "}",     ""};
    std::string out;
    for (int i = 0; i < s.entries(); ++i)
    {
        const GZ_EditScriptedParm &p = *s.getParm(i);
        out += out.empty() ? "" : " ";
        out += kinds[p.getFolderType()];
        if (!p.getIsGroupEnd())
            out += (p.getIsGroupParm() ? ":" : "") + p.getName();
    }
    return out;
}
} // namespace

TEST(BuildFromTemplates, SwitchersMultiparmsRampsAndImports)
{
    HostParmTemplate sw(HOST_PARM_SWITCHER, "page", "Pages");
    sw.addFolder("One", 2); // a and the multiparm (its children come with it)
    sw.addFolder("Two", 0);
    sw.tags().set(HostSpareData::folderTagName("note", 1), "second");
    sw.tags().set(HostSpareData::folderTagName(HostSpareData::FOLDER_HIDDEN_TAG, 1), "1");
    HostParmTemplate multi(HOST_PARM_MULTIPARM, "pts", "Points");
    multi.setMultiType(HostParmTemplate::MULTI_SCROLL);
    multi.setDefault(0, HostParmDefault(3.9));
    multi.addChild(HostParmTemplate(HOST_PARM_FLOAT, "w#", "W"));
    HostParmTemplate ramp(HOST_PARM_MULTIPARM, "curve", "Curve");
    ramp.setMultiType(HostParmTemplate::MULTI_RAMP_FLOAT);
    ramp.addChild(HostParmTemplate(HOST_PARM_FLOAT, "curve#pos", "Pos"));
    HostParmTemplate sw2(HOST_PARM_SWITCHER, "more", "More");
    sw2.addFolder("Three", 0);
    sw2.tags().set(HostSpareData::GROUP_TYPE_TAG, HostSpareData::COLLAPSIBLE_GROUP);
    HostParmTemplate vop(HOST_PARM_FLOAT, "hidden", "Hidden");
    vop.tags().set(HostSpareData::VOP_VARIABLE_TAG, "1");

    HostSpareLayout spare;
    spare.myTemplates = HostParmTemplateList(
        {sw, HostParmTemplate(HOST_PARM_FLOAT, "a", "A"), multi, sw2, ramp, vop});
    HostImportRecord first, in_two, after_ramp;
    first.myLabel = "First";
    in_two.mySwitcher = 0;
    in_two.myFolder = 1;
    in_two.mySource = "op:../x";
    after_ramp.myAfter = 4;
    after_ramp.myEnable = false;
    spare.myImports = {first, in_two, after_ramp};

    GZ_EditScriptedParms::BuildOptions options;
    options.mySkipVopVariables = true;
    GZ_EditScriptedParms s;
    s.createParms(spare, nullptr, options);
    EXPECT_EQ(layout(s), "import:folder0 } tab:page a scroll:pts w# } } tab:page_1 "
                         "import:folder1 } } coll:more } curve import:folder2 }");
    const GZ_EditScriptedParm *page2 = s.getParm(s.getFolderIndexWithName("page_1"));
    EXPECT_STREQ(page2->getSpareValue("note"), "second");
    EXPECT_TRUE(page2->getInvisible());
    EXPECT_EQ(page2->getLabel(), "Two");
    EXPECT_TRUE(page2->getTabBreak()); // the next template is another switcher
    EXPECT_EQ(s.getParmWithName("pts")->getDefault(0), "3");
    EXPECT_EQ(s.getParmWithName("curve")->getType(), "Ramp (Float)");
    EXPECT_STREQ(s.getParm(s.getFolderIndexWithName("folder1"))->getImportSource(), "op:../x");
    EXPECT_FALSE(s.getParm(s.getFolderIndexWithName("folder2"))->getImportEnable());

    // Safe switcher names: a clash renames the switcher and keeps the old name in a tag.
    GZ_EditScriptedParms named = set(parm("page"));
    options.mySafeSwitcherNames = true;
    const HostParmTemplateList again({sw, HostParmTemplate(HOST_PARM_FLOAT, "b", "B")});
    named.createParms(again.data(), nullptr, options);
    EXPECT_EQ(named.getParm(1)->getName(), "page1");
    EXPECT_EQ(named.getParm(4)->getName(), "page1_1");
    EXPECT_STREQ(named.getParm(1)->getSpareValue(HostSpareData::SWITCHER_BASE_TAG), "page");
}

namespace
{
/// A director with an Object type "sgeo" (t, scale) for the length of a test.
struct NodeFixture : HostFixture
{
    void SetUp() override
    {
        HostFixture::SetUp();
        addType("Object", "sgeo",
                {HostParmTemplate(HOST_PARM_XYZ, "t", "Translate", 3),
                 HostParmTemplate(HOST_PARM_FLOAT, "scale", "Scale")});
    }
};
} // namespace

TEST_F(NodeFixture, NodeSpareParametersAndReservedNames)
{
    HostNode *node = make("sgeo", "/obj/geo1");
    ASSERT_NE(node, nullptr);
    HostParmTemplate spare(HOST_PARM_FLOAT, "gain", "Gain");
    spare.setDefault(0, HostParmDefault(2.0));
    node->setSpareTemplates(HostParmTemplateList({spare}));

    GZ_EditScriptedParms::BuildOptions options;
    options.myFallbackToOperator = false;
    GZ_EditScriptedParms s(node, options);
    EXPECT_EQ(names(s), "gain");
    EXPECT_TRUE(s.checkReservedName("t"));
    EXPECT_FALSE(s.checkReservedName("gain"));
    EXPECT_FALSE(s.checkReservedName(""));
    EXPECT_EQ(std::tuple(s.containsReservedParm(), s.getNode()), std::tuple(false, node));

    // A spare parameter never gets a reserved name.
    std::string name = "t";
    EXPECT_TRUE(s.makeSafeParmName(nullptr, name, nullptr, false));
    EXPECT_EQ(name, "t1");

    // Values of the node become defaults.
    node->getParm("gain")->setValue(0, 4.5);
    s.copyDefaultsFromNode(node);
    EXPECT_EQ(s.getParm(0)->getDefault(0), "4.5");

    // With the fallback, a node without spares shows its operator's parameters, each a
    // base parameter because its name is the node's own.
    HostNode *plain = make("sgeo", "/obj/geo2");
    options.myFallbackToOperator = true;
    GZ_EditScriptedParms own(plain, options);
    ASSERT_GT(own.entries(), 0);
    EXPECT_TRUE(own.containsReservedParm());
    EXPECT_TRUE(own.getParmWithName("t")->getIsBaseParm());
}

TEST_F(NodeFixture, MultiparmInfoLockedIsNotCleared)
{
    HostNode *node = make("sgeo", "/obj/geo1");
    HostParmTemplate multi(HOST_PARM_MULTIPARM, "pts", "Points");
    multi.addChild(HostParmTemplate(HOST_PARM_FLOAT, "w#", "W"));
    node->setSpareTemplates(HostParmTemplateList({multi}));
    node->getParmList().setInstanceCount(*node->getParm("pts"), 2);

    GZ_EditScriptedParms::buildMultiparmInfo(node);
    EXPECT_EQ(GZ_EditScriptedParms::getBuiltMultiparmInfo().at("pts"), 2);
    GZ_EditScriptedParms::lockMultiparmInfo();
    GZ_EditScriptedParms::clearMultiparmInfo();
    EXPECT_EQ(GZ_EditScriptedParms::getBuiltMultiparmInfo().size(), 1u);
    GZ_EditScriptedParms::releaseMultiparmInfo();
    GZ_EditScriptedParms::clearMultiparmInfo();
    EXPECT_TRUE(GZ_EditScriptedParms::getBuiltMultiparmInfo().empty());
}
