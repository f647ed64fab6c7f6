// The operator-level editor: built from a scripted type, written as a whole dialog script.
#include "host/HostDiagnostics.h"
#include "host/HostScriptOperator.h"
#include "resource/GZ_ResourceManager.h"
#include "scriptedit/GZ_EditScriptedOp.h"
#include "tests/TestFiles.h"
#include "tests/host/HostFixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <tuple>

namespace
{
class EditOpFixture : public ::HostFixture
{
protected:
    void SetUp() override
    {
        HostFixture::SetUp();
        GZcreateResourceManager(true);
        auto op = std::make_unique<HostScriptOperator>(
            "edop", "Edited Op",
            HostParmTemplateList({HostParmTemplate(HOST_PARM_XYZ, "t", "Translate", 3),
                                  HostParmTemplate(HOST_PARM_STRING, "group", "Group")}),
            "", 0, 2);
        op->setScriptName("edop_script");
        op->setHelp("Moves things.\nSay \"hi\"\tnow");
        op->setInputNames({"Source"});
        op->setInputLabels({"", "Second input"});
        op->setInputIsReference({false, true});
        op->setOutputLabels({"Result"});
        op->setUnitLength(0.01);
        myOp = static_cast<HostScriptOperator *>(
            HostOperatorTable::getTable("Object")->addOperator(std::move(op)));
        myTypes.emplace_back("Object", "edop");
    }
    void TearDown() override
    {
        GZgetResourceManager()->removeAllBindings(myOp);
        HostFixture::TearDown();
    }
    std::string write(GZ_EditScriptedOp &edit)
    {
        std::ostringstream os;
        EXPECT_EQ(edit.save(os), 1);
        EXPECT_EQ(edit.getWarning(), "");
        return os.str();
    }
    HostScriptOperator *myOp = nullptr;
};

} // namespace

TEST_F(EditOpFixture, WholeScriptMatchesGolden)
{
    GZ_ResourceManager &rm = *GZgetResourceManager();
    // Bound out of name order: the lines come in the handle's sorted parameter order.
    ASSERT_EQ(rm.bind(myOp, "translate", "Move", "ty", "ty", "color(0.5 0.5 1) ownerop('geo1')"),
              GZ_ResourceManager::BIND_OK);
    ASSERT_EQ(rm.bind(myOp, "translate", "Move", "tx", "tx", ""), GZ_ResourceManager::BIND_OK);
    ASSERT_EQ(rm.bindSelector(myOp, "objselect", "Pick", "Select them", "", 0, 0, "*", 1, "", 0, "",
                              true),
              1);
    ASSERT_EQ(rm.bindSelector(myOp, "objpoint", "Grp", "Choose group", "group", 1, 1, "prim", 0,
                              "menu", 1, "", true),
              1);
    HostNode *node = make("edop", "/obj/ed1");
    ASSERT_NE(node, nullptr);

    GZ_EditScriptedOp edit(myOp, node);
    EXPECT_EQ(std::tuple(edit.getObjFlag(), edit.getVopFlag()), std::tuple(1, 0));
    ASSERT_EQ(edit.getNHandles(), 1);
    EXPECT_TRUE(edit.getHandle(0)->hasBinding());
    edit.getParms().initializeReserveNames(node);
    const std::string text = write(edit);
    expectGolden(text, GZ_TEST_DATA_DIR "/edited_op.ds");

    // A copy writes the same; a unit of 1.0 writes nothing, not-a-number is written.
    GZ_EditScriptedOp copy(edit);
    EXPECT_EQ(write(copy), text);
    copy.setUnitLength(1.0);
    copy.setUnitMass(std::nan(""));
    const std::string units = write(copy);
    EXPECT_EQ(units.find("unitlength"), std::string::npos);
    EXPECT_NE(units.find("    unitmass\tnan\n"), std::string::npos);
}

TEST_F(EditOpFixture, InputsGrowAndHandlesReportUnknownTypes)
{
    GZ_EditScriptedOp edit(myOp, nullptr);
    edit.setInputName(9999, "x");
    edit.setInputName(3, "Fourth");
    EXPECT_EQ(std::tuple(edit.getInputName(0), edit.getInputName(2), edit.getInputName(3),
                         edit.getInputName(4), edit.getInputIsReference(0),
                         edit.getInputIsReference(1)),
              std::tuple("Source", "", "Fourth", "", false, true));

    HostDiagnosticCapture capture;
    GZ_EditScriptedOpHandle unknown("nosuchhandle");
    EXPECT_EQ(capture.text(), "Creation of unknown handle type nosuchhandle\n");
    EXPECT_EQ(unknown.getNParms(), 0);
    EXPECT_EQ(unknown.bindChannel("tx", "tx"), -1);

    auto *moved = new GZ_EditScriptedOpHandle("translate");
    EXPECT_EQ(moved->getDescription(), "Translate");
    EXPECT_EQ(moved->getGZName(0), "input"); // sorted: input onoff tx ty tz
    EXPECT_EQ(moved->bindChannel("tz", "tz"), 4);
    edit.addHandle(moved);
    edit.addHandle(new GZ_EditScriptedOpHandle("translate"));
    edit.moveHandles(0, 0, 1);
    EXPECT_EQ(edit.getHandle(1), moved);
    edit.removeHandles(0, 0);
    EXPECT_EQ(edit.getHandle(0), moved);

    const std::vector<std::string> types = GZ_EditScriptedOpHandle::getValidTypes();
    EXPECT_TRUE(std::is_sorted(types.begin(), types.end()));
    EXPECT_TRUE(std::binary_search(types.begin(), types.end(), "translate"));
}

TEST(EditScriptedOp, VopTypeWritesNoInputLines)
{
    HostOperatorTable *vop = HostOperatorTable::createTable("Vop", "VOP");
    ASSERT_NE(vop, nullptr);
    auto op = std::make_unique<HostScriptOperator>("vedop", "V", HostParmTemplateList());
    op->setInputNames({"in"});
    op->setOutputLabels({"out"});
    auto *added = static_cast<HostScriptOperator *>(vop->addOperator(std::move(op)));
    GZ_EditScriptedOp edit(added, nullptr);
    std::ostringstream os;
    edit.save(os);
    HostOperatorTable::destroyTable("Vop");
    EXPECT_EQ(edit.getVopFlag(), 1);
    EXPECT_EQ(os.str(), "# Dialog script for vedop automatically generated\n\n{\n"
                        "    name\tvedop\n    script\t\n    label\tV\n\n"
                        "    help {\n    }\n\n}\n");
}
