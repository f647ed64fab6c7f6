// The binding commands as installed, "omwrite" without a file, and the saved scene's lines.
#include "gz_ResourceTestEnv.h"

#include "host/HostCommandManager.h"
#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostReader.h"

#include <filesystem>
#include <sstream>

namespace fs = std::filesystem;

namespace
{

/// Runs command text on the process's interpreter; returns output and error text.
struct CommandRun
{
    std::string out;
    std::string err;
};

CommandRun run(const std::string &text)
{
    gztest::instance();
    HostCommandManager *commands = HostCommandManager::getInstance();
    std::ostringstream out, err;
    commands->setStreams(&out, &err);
    commands->execute(text);
    commands->setStreams(nullptr, nullptr);
    return CommandRun{out.str(), err.str()};
}

/// A scene of its own for the duration of a test.
class SceneScope
{
public:
    SceneScope() : myPrevious(HostDirector::instance()) { myDirector.makeCurrent(); }
    ~SceneScope() { myPrevious->makeCurrent(); }
    HostDirector &director() { return myDirector; }

private:
    HostDirector *myPrevious;
    HostDirector myDirector;
};

} // namespace

TEST(BindingCommands, WriteWithoutAFileUsesTheUserDirectory)
{
    GZ_ResourceManager &manager = gztest::instance();
    HostOperator *op =
        gztest::addOperator(HOST_NETWORK_SOP, "bc_write", gztest::transformTemplates());
    ASSERT_EQ(manager.bind(op, "xform", "w", "tx", "tx", "color(1 0 0)"), 1);

    const fs::path dir = gztest::scratchPath("gz_binding_commands_user");
    fs::create_directories(dir);
    const std::string saved_user = HostReader::getUserDirectory();
    HostReader::setUserDirectory(dir.string());
    const CommandRun result = run("omwrite");
    HostReader::setUserDirectory(saved_user);
    EXPECT_EQ(std::tuple(result.out, result.err), std::tuple("", ""));

    const fs::path expected_path = dir / "expected";
    ASSERT_NE(manager.writeBindingsFile(expected_path.c_str()), 0);
    std::string written, expected;
    ASSERT_TRUE(HostReader::readFile((dir / "OPbindings").string(), written));
    ASSERT_TRUE(HostReader::readFile(expected_path.string(), expected));
    EXPECT_EQ(written, expected);
    EXPECT_NE(written.find(op->getQualifiedName() + "\n{\n    bindhandle xform w \"color(1 0 0)\""),
              std::string::npos);
    manager.unbind(op, nullptr, "");
    fs::remove_all(dir);
}

TEST(BindingCommands, SceneSaveWritesSettingsAndTheirBindings)
{
    SceneScope scene;
    HostOperator *op =
        gztest::addOperator(HOST_NETWORK_OBJECT, "bc_geo", gztest::transformTemplates());
    const std::string path = "/obj/" + op->getName() + "1";
    ASSERT_NE(scene.director().createNode(op->getName(), path), nullptr);

    // Entries: a full one, an empty one, one short of a field, one with a field too many.
    const CommandRun recorded = run(
        "omparm hud xform " + path +
        " \"hudbindingargs('sop,a,xform:tx,xform:tx;;obj,short;dop,,b,geo:ty,xform:ty,more')\"");
    EXPECT_EQ(recorded.err, "");

    std::ostringstream os;
    EXPECT_EQ(saveGZResourceManagerCallback(os), HOST_ERR_NONE);
    EXPECT_EQ(os.str(), "omparm hud xform " + path +
                            " \"hudbindingargs('sop,a,xform:tx,xform:tx;;obj,short;dop,,b,geo:ty,"
                            "xform:ty,more')\"\n"
                            "ombind -t sop a xform:tx xform:tx\n"
                            "ombind -t dop b geo:ty xform:ty\n");

    // Settings of nodes that are gone are kept but not written.
    scene.director().deleteNode(scene.director().findNode(path));
    std::ostringstream after;
    EXPECT_EQ(saveGZResourceManagerCallback(after), HOST_ERR_NONE);
    EXPECT_EQ(after.str(), "");
}

TEST(BindingCommands, SavedSettingsAreInNodeAndHandleOrderAndGoWithTheScene)
{
    // The table's own order depends on its history; a loaded scene must save the same bytes.
    SceneScope scene;
    HostOperator *op =
        gztest::addOperator(HOST_NETWORK_OBJECT, "bc_order", gztest::transformTemplates());
    for (const char *name : {"z", "m", "a"})
        ASSERT_NE(scene.director().createNode(op->getName(), std::string("/obj/") + name), nullptr);
    EXPECT_EQ(run("omparm h2 xform /obj/z 'scale(2)'; omparm h1 xform /obj/a 'scale(1)'\n"
                  "omparm h1 xform /obj/m 'scale(3)'; omparm h0 xform /obj/a 'scale(4)'\n"
                  "omparm h3 xform /obj 'scale(5)'")
                  .err,
              "");
    std::ostringstream os;
    EXPECT_EQ(saveGZResourceManagerCallback(os), HOST_ERR_NONE);
    EXPECT_EQ(os.str(), "omparm h3 xform /obj \"scale(5)\"\n"
                        "omparm h0 xform /obj/a \"scale(4)\"\n"
                        "omparm h1 xform /obj/a \"scale(1)\"\n"
                        "omparm h1 xform /obj/m \"scale(3)\"\n"
                        "omparm h2 xform /obj/z \"scale(2)\"\n");

    // /obj outlives every scene, so its settings would reach the next one.
    gztest::instance().clearOpGZSettings();
    std::ostringstream after;
    EXPECT_EQ(saveGZResourceManagerCallback(after), HOST_ERR_NONE);
    EXPECT_EQ(after.str(), "");
}
