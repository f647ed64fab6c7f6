// Parameter callbacks written in Python: the kwargs statement and running a callback.
#include "python/HostPython.h"

#include "tests/host/HostFixture.h"

#include "host/HostCommandManager.h"
#include "host/HostUndoManager.h"

#include <cmath>

namespace
{
/// The interpreter starts with the first test and is finalized once, after the last, as
/// gzsh finalizes it at exit.
class PythonEnvironment : public ::testing::Environment
{
public:
    void TearDown() override { HostPython::stop(); }
};
const auto *const thePythonEnvironment = ::testing::AddGlobalTestEnvironment(new PythonEnvironment);

class PythonCallback : public HostFixture
{
protected:
    void SetUp() override
    {
        HostFixture::SetUp();
        ASSERT_TRUE(HostPython::start());
        myNode = make("tgeo", "/obj/geo1");
    }

    double tx() const { return myNode->getParm("t")->getValue(0); }

    HostNode *myNode = nullptr;
};
} // namespace

TEST_F(PythonCallback, KwargsStatementQuotesEveryValueAsAPythonLiteral)
{
    const std::vector<HostPython::Option> options = {
        {"script_parm", HostExprValue::string("t")},
        {"script_value0", HostExprValue::number(1.5)},
        {"script_multiparm_index", HostExprValue::number(-1)},
        {"text", HostExprValue::string("it's a\\b\n\x01")},
        {"big", HostExprValue::number(INFINITY)},
    };
    EXPECT_EQ(HostPython::kwargsStatement(*myNode, "tx", options),
              "kwargs = {'node': zum.node('/obj/geo1'), 'parm': zum.parm('/obj/geo1/tx'), "
              "'script_parm': 't', 'script_value0': 1.5, 'script_multiparm_index': -1, "
              "'text': 'it\\'s a\\\\b\\n\\x01', 'big': float('inf')}");
    EXPECT_EQ(HostPython::kwargsStatement(*myNode, "", {}),
              "kwargs = {'node': zum.node('/obj/geo1')}");
}

TEST_F(PythonCallback, RunsWithItsKwargsAndTheNodeCurrent)
{
    HostNode *other = make("tnull", "/obj/null1");
    myDirector.setCurrentNode(other);
    std::string errors;
    ASSERT_TRUE(HostPython::runCallback(*myNode, "tx", {{"script_value", HostExprValue::number(2)}},
                                        "assert zum.pwd() == kwargs['node'], zum.pwd()\n"
                                        "kwargs['parm'].set(kwargs['script_value'] * 3)\n",
                                        "Object/tgeo/tx", errors))
        << errors;
    EXPECT_EQ(tx(), 6.0);
    EXPECT_EQ(myDirector.getCurrentNode(), other);

    // Each callback runs in a namespace of its own.
    EXPECT_FALSE(HostPython::runCallback(*myNode, "tx", {}, "kwargs['parm'].set(script_value)",
                                         "Object/tgeo/tx", errors));
    EXPECT_EQ(errors.rfind("Error running callback:\nTraceback", 0), 0u) << errors;
    EXPECT_NE(errors.find("File \"Object/tgeo/tx\", line 1"), std::string::npos) << errors;
    EXPECT_NE(errors.find("NameError: name 'script_value' is not defined"), std::string::npos);
}

TEST_F(PythonCallback, FailuresLeaveNoUndoBlockOpenAndTheHostWhole)
{
    HostUndoManager &undo = myDirector.getUndoManager();
    const int depth = undo.getBlockDepth();
    std::string errors;
    EXPECT_FALSE(HostPython::runCallback(
        *myNode, "tx", {},
        "zum.undo_group('left open').__enter__()\nkwargs['parm'].set(4)\nraise KeyError('x')", "cb",
        errors));
    EXPECT_EQ(undo.getBlockDepth(), depth);
    EXPECT_NE(errors.find("KeyError: 'x'"), std::string::npos) << errors;
    EXPECT_EQ(tx(), 4.0);
    undo.undo();
    EXPECT_EQ(tx(), 0.0);

    // A callback that deletes its own node, the current one before it ran: the host's node
    // deletion stands in for gzsh's noderm.
    HostCommandManager &commands = *HostCommandManager::getInstance();
    commands.installCommand("noderm", "", [this](HostCommandArgs &args) {
        myDirector.deleteNode(myDirector.findNode(args.arg(1)));
    });
    myDirector.setCurrentNode(myNode);
    EXPECT_TRUE(HostPython::runCallback(*myNode, "tx", {}, "kwargs['node'].destroy()", "cb",
                                        errors))
        << errors;
    commands.uninstallCommand("noderm");
    EXPECT_EQ(myDirector.findNode("/obj/geo1"), nullptr);
    EXPECT_EQ(myDirector.getCurrentNode(), nullptr);
    myNode = make("tgeo", "/obj/geo1");

    EXPECT_FALSE(HostPython::runCallback(*myNode, "tx", {}, "def f(:", "cb", errors));
    EXPECT_NE(errors.find("SyntaxError"), std::string::npos) << errors;
    EXPECT_FALSE(HostPython::runCallback(*myNode, "tx", {}, "def f(): f()\nf()", "cb", errors));
    EXPECT_NE(errors.find("RecursionError"), std::string::npos) << errors;
}
