// Tests of rebuilding a node's spare parameters from a parameter section, with undo.
#include "HostFixture.h"

#include "host/HostDiagnostics.h"
#include "host/HostDialogStream.h"
#include "host/HostSpareUpdate.h"
#include "host/HostUndoManager.h"

namespace
{
using SpareUpdate = HostFixture;

bool apply(HostNode &node, const std::string &text, std::string &errors)
{
    HostDialogStream in;
    in.openString(text, "s.ds");
    return HostSpareUpdate::updateNode(node, in, errors);
}
} // namespace

TEST_F(SpareUpdate, OneUndoStepKeepsSurvivingValues)
{
    HostNode *geo = make("tgeo", "/obj/geo1");
    HostUndoManager &undo = HostUndoManager::current();
    std::string errors;
    ASSERT_TRUE(apply(*geo,
                      "parm { name \"a\" type float default { 2 } }\n"
                      "import { label I\n source \"x.ds\" }\n"
                      "parm { name \"b\" type vector size 3 }\n",
                      errors))
        << errors;
    ASSERT_NE(geo->getParm("a"), nullptr);
    EXPECT_EQ(geo->getParm("a")->getValue(0), 2.0);
    EXPECT_EQ(geo->getSpareImports().size(), 1u);
    geo->getParm("a")->setValue(0, 7.0);
    geo->getParm("b")->setValue(1, 3.0);
    const int steps = undo.getUndoCount();

    ASSERT_TRUE(
        apply(*geo, "parm { name \"a\" type float }\nparm { name \"c\" type toggle }", errors));
    EXPECT_EQ(std::tuple(undo.getUndoCount(), undo.getUndoName(), geo->getParm("a")->getValue(0)),
              std::tuple(steps + 1, HostSpareUpdate::UNDO_NAME, 7.0));
    EXPECT_EQ(geo->getParm("b"), nullptr);
    EXPECT_TRUE(geo->getSpareImports().empty());

    ASSERT_TRUE(undo.undo());
    ASSERT_NE(geo->getParm("b"), nullptr);
    EXPECT_EQ(geo->getParm("b")->getValue(1), 3.0);
    EXPECT_EQ(geo->getParm("c"), nullptr);
    EXPECT_EQ(geo->getSpareImports().size(), 1u);
    ASSERT_TRUE(undo.redo());
    EXPECT_NE(geo->getParm("c"), nullptr);
    EXPECT_EQ(geo->getParm("b"), nullptr);
}

TEST_F(SpareUpdate, RefusesBadInterfacesWithoutChangingTheNode)
{
    HostNode *geo = make("tgeo", "/obj/geo1");
    std::string errors;
    ASSERT_TRUE(apply(*geo, "parm { name \"keep\" }", errors));
    const HostSpareLayout before = geo->getSpareLayout();
    HostDiagnosticCapture diag;
    EXPECT_FALSE(
        apply(*geo, "parm { name \"scale\" }\nparm { name \"x\" }\nparm { name \"x\" }", errors));
    EXPECT_EQ(errors, "Spare parameter 'scale' has the name of a parameter of the node\n"
                      "Spare parameter name 'x' is used twice\n");
    errors.clear();
    EXPECT_FALSE(apply(*geo, "parm { name \"y\" size 40 }", errors));
    EXPECT_EQ(diag.text(), "s.ds[1]: Size 40 is outside 1 to 16\n");
    EXPECT_TRUE(geo->getSpareLayout() == before);
}
