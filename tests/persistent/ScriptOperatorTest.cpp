// Scripted operator types defined from dialog scripts: what the page reader applies, template
// flags, redefinition and scripts that define nothing.
#include "gz_PersistentTestEnv.h"

#include "host/HostDiagnostics.h"
#include "host/HostDialogStream.h"
#include "persistent/GZ_ScriptOperator.h"
#include "persistent/gz_ScriptOpPage.h"

#include <tuple>

namespace
{
using gztest::PersistentFixture;

const char *const SCRIPT = R"({
    name	scop
    label	Script Op
    maxinput	1
    help {
	"First\tline"
	"Second"
    }
    inputname	2	Source
    inputlabel	1	Main input
    parmtag { inputisref2 1 }
    inputlegacymap { a "b c" }
    unitlength	0.01
    bindhandle tx ptest "Mover" tx ""
    parm {
        name	"t"
        type	vector
        size	3
        default { "0" "0" "0" }
    }
    multiparm {
        name	"pts"
        default	0
        parm { name "w#" type float default { "0" } }
    }
    obsoleteparms {
        parm { name "old" type float default { "0" } }
    }
})";

class ScriptOperator : public PersistentFixture
{
protected:
    void TearDown() override
    {
        myDirector.clearScene();
        if (HostOperator *op = table()->getOperator("scop"))
            op->removeAllBindings();
        table()->deleteOperator("scop");
        PersistentFixture::TearDown();
    }
    static HostOperatorTable *table() { return HostOperatorTable::getTable("Object"); }
    GZ_ScriptOperator *define(const std::string &text)
    {
        std::string error;
        GZ_ScriptOperator *op =
            GZ_ScriptOperator::defineFromText("Object", text, "src", "f.ds", error);
        myError = error;
        return op;
    }
    std::string myError;
};
} // namespace

TEST_F(ScriptOperator, AppliesEveryOperatorLevelLineAndFlagsItsTemplates)
{
    HostDiagnosticCapture capture;
    GZ_ScriptOperator *op = define(SCRIPT);
    ASSERT_NE(op, nullptr) << myError;
    EXPECT_EQ(capture.text(), "");
    using Names = std::vector<std::string>;
    EXPECT_EQ(
        std::tuple(op->getLabel(), op->getHelp(), op->getInputNames(), op->getInputLabels()),
        std::tuple("Script Op", "First\tline\nSecond", Names{"", "Source"}, Names{"Main input"}));
    EXPECT_EQ(std::tuple(op->getMaxInputs(), op->getInputIsReference(), op->getLegacyInputMap(),
                         op->getUnitLength(), op->getDefinitionPath()),
              std::tuple(2, std::vector<bool>{false, true}, "a 'b c'", 0.01, "src"));
    EXPECT_EQ(op->getObsoleteTemplates().size(), 1);
    const std::vector<GZ_BindingHandleInfo> *handles =
        GZgetResourceManager()->getBindingHandles(op);
    ASSERT_TRUE(handles && handles->size() == 1);

    // The flags apply when templates are loaded, so they take effect on a redefinition;
    // multiparm children get the callback and the flags too.
    op->setAllCookParms(true);
    op->setAllNoResimParms(true);
    EXPECT_EQ(define(SCRIPT), op);
    const HostParmTemplate &multi = op->getParmTemplateList()[1];
    for (const HostParmTemplate *t : {&op->getParmTemplateList()[0], &multi, &multi.getChild(0)})
    {
        EXPECT_EQ(t->getCallback(), GZ_ScriptOperator::getDefaultCallback());
        EXPECT_TRUE(t->getCooks());
        EXPECT_TRUE(t->getNoResim());
    }
    EXPECT_EQ(GZgetResourceManager()->getBindingHandles(op)->size(), 1u);
}

TEST_F(ScriptOperator, RedefinitionReplacesBindingsAndRebuildsNodes)
{
    GZ_ScriptOperator *op = define(SCRIPT);
    ASSERT_NE(op, nullptr);
    {
        HostDiagnosticCapture capture; // a broken script changes nothing
        EXPECT_EQ(define("{\n name scop\n bindhandle ty ptest M ty \"\"\n parm {\n"), nullptr);
        EXPECT_EQ(GZgetResourceManager()->getBindingHandles(op)->size(), 1u);
    }
    std::string error;
    HostNode *node = myDirector.createNode("scop", "/obj/s1", &error);
    ASSERT_NE(node, nullptr) << error;
    EXPECT_EQ(define("{\n name scop\n parm { name \"k\" type float default { \"3\" } }\n}\n"), op);
    const std::vector<GZ_BindingHandleInfo> *handles =
        GZgetResourceManager()->getBindingHandles(op);
    EXPECT_TRUE(!handles || handles->empty());
    ASSERT_NE(node->getParm("k"), nullptr);
    EXPECT_EQ(node->getParm("k")->getValue(0), 3.0);
    EXPECT_EQ(std::tuple(node->getParm("t"), op->getHelp()), std::tuple(nullptr, ""));
}

TEST_F(ScriptOperator, ScriptsThatNameNoTypeDefineNothing)
{
    const std::tuple<const char *, const char *> cases[] = {
        {"{\n label x\n}\n", "f.ds[3]: the script names no operator type\n"},
        {"{\n name scop\n parm {\n", "f.ds[3]: Missing '}' at the end of the parm block ''\n"},
        {"name scop\n", "f.ds[1]: Expected '{' at the start of a page\n"},
    };
    for (const auto &[text, messages] : cases)
    {
        HostDiagnosticCapture capture;
        EXPECT_EQ(define(text), nullptr) << text;
        EXPECT_EQ(myError, "f.ds defines no operator type");
        EXPECT_EQ(capture.text(), messages) << text;
        EXPECT_EQ(table()->getOperator("scop"), nullptr);
    }
    std::string error;
    EXPECT_EQ(GZ_ScriptOperator::defineFromText("Object", "{ name pxform }", "", "f.ds", error),
              nullptr);
    EXPECT_EQ(error, "Object/pxform is not a scripted operator type");
}

TEST_F(ScriptOperator, OperatorKeywordsReportWhatTheyCannotApply)
{
    GZ_ScriptOperator *op = define("{\n name scop\n}\n");
    ASSERT_NE(op, nullptr);
    const std::tuple<bool, const char *, const char *> cases[] = {
        {false, "inputlegacymap { a }", "Unable to set legacy inputs without an operator"},
        {false, "bindhandle tx ptest D tx \"\"", "unable to bind a handle without an operator"},
        {false, "bindselector a b c d e f g", "unable to bind a selector without an operator"},
        {true, "inputlegacymap { a", "Expecting close brace for legacy input block"},
        {true, "bindhandle tx ptest D tx", "missing parameters in call to bindhandle"},
        {true, "bindselectorreserved g s d", "missing parameters in call to bindselectorreserved"},
        {true, "bindselector nosuch d p * 1 m 0", "error binding selector"},
        {true, "unitmass x", "Expected a number after 'unitmass'"},
    };
    for (const auto &[with_operator, line, message] : cases)
    {
        HostDiagnosticCapture capture;
        HostDialogStream in;
        in.openString(std::string("{\n") + line + "\n", "p.ds");
        gz_ScriptOpPage page(with_operator ? op : nullptr, 0, 0);
        page.parsePage(in);
        ASSERT_FALSE(capture.diagnostics().empty()) << line;
        EXPECT_EQ(capture.diagnostics()[0].myText, std::string("p.ds[2]: ") + message);
    }
}
