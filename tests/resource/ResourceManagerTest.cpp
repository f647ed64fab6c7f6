// The resource manager: library entry, types, registration, states and operator lookups.
#include "gz_ResourceTestEnv.h"

#include "host/HostDirector.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_HandleTemplate.h"
#include "resource/GZ_SelectorTemplate.h"
#include "resource/GZ_StateTemplate.h"
#include "tests/DiagnosticsRecorder.h"

#include <sstream>
#include <tuple>

using gztest::instance;
using gztest::ScratchManager;

namespace
{
DiagnosticsRecorder theDiagnostics;

GZ_StateTemplate *makeState(const char *name, unsigned mask, GZ_ViewerType viewer,
                            HostOperator *op = nullptr)
{
    return new GZ_StateTemplate(name, name, "icon", nullptr, nullptr, viewer, mask, 0, "", op);
}

} // namespace

TEST(ResourceManagerEntry, CreatesOneInstanceAndLaterManagersStayEmpty)
{
    GZ_ResourceManager *first = GZcreateResourceManager(/*print_warnings=*/false);
    ASSERT_NE(first, nullptr);
    EXPECT_TRUE(GZresourceManagerExists());
    EXPECT_EQ(GZgetResourceManager(), first);
    // Only the built-in registration runs without warnings; afterwards they are on again.
    EXPECT_TRUE(GZ_ResourceManager::printsWarnings());

    theDiagnostics.start();
    EXPECT_EQ(GZcreateResourceManager(/*print_warnings=*/true), first);
    EXPECT_EQ(theDiagnostics.take(), "");

    {
        // A manager made while the instance exists is not the instance and builds nothing.
        ScratchManager other;
        EXPECT_EQ(GZgetResourceManager(), first);
        EXPECT_TRUE(other.getOpHandleLinks().empty());
        EXPECT_FALSE(other.containsSelector("prims"));
    }
    // Destroying it leaves the instance alone.
    EXPECT_EQ(GZgetResourceManager(), first);
}

TEST(ResourceManagerTypes, TokensAndTableNames)
{
    instance();
    EXPECT_STREQ(GZ_ResourceManager::getNetworkTypeName(GZ_NETWORK_COP2), "Cop2");
    EXPECT_STREQ(GZ_ResourceManager::getNetworkTypeName(static_cast<GZ_NetworkType>(7)), "");

    // Table type names, not network tokens, name the networks.
    GZ_NetworkType type = GZ_NETWORK_DOP;
    EXPECT_FALSE(GZ_ResourceManager::getNetworkType("Sop", type));
    EXPECT_FALSE(GZ_ResourceManager::getNetworkType("Object", type));
    EXPECT_EQ(type, GZ_NETWORK_DOP);
    ASSERT_TRUE(GZ_ResourceManager::getNetworkType("TOP", type));
    EXPECT_EQ(type, GZ_NETWORK_TOP);

    EXPECT_EQ(GZ_ResourceManager::getFirstNetworkType(0x28), GZ_NETWORK_COP2);
    EXPECT_EQ(GZ_ResourceManager::getFirstNetworkType(0x80), GZ_NETWORK_OBJ);
    EXPECT_EQ(GZ_ResourceManager::getFirstNetworkType(0), GZ_NETWORK_OBJ);

    GZ_ViewerType viewer = GZ_VIEWER_SCENE;
    EXPECT_FALSE(GZ_ResourceManager::getViewerType("sceneviewer", viewer));
    ASSERT_TRUE(GZ_ResourceManager::getViewerType("SceneGraphViewer", viewer));
    EXPECT_EQ(viewer, GZ_VIEWER_SCENEGRAPH);
    std::string token;
    GZ_ResourceManager::getViewerTypeToken(GZ_VIEWER_COMPOSITE, token);
    EXPECT_EQ(token, "CompositeViewer");
    GZ_ResourceManager::getViewerTypeToken(GZ_NUM_VIEWER_TYPES, token);
    EXPECT_EQ(token, "");

    std::string prefix;
    GZ_ResourceManager::getChannelScopeCommandPrefix(prefix);
    EXPECT_EQ(prefix, "chscope");
    GZ_ResourceManager::setOpenChannelEditorOnScope(true);
    GZ_ResourceManager::getChannelScopeCommandPrefix(prefix);
    GZ_ResourceManager::setOpenChannelEditorOnScope(false);
    EXPECT_EQ(prefix, "chscope -w");
}

TEST(ResourceManagerRegistry, RefusesDuplicateNamesWithWarnings)
{
    ScratchManager manager;
    GZ_ResourceManager::WarningScope warnings(true);

    auto *handle = new GZ_HandleTemplate("box", "Box", nullptr, nullptr);
    GZ_HandleTemplate other_handle("box", "Other Box", nullptr, nullptr);
    EXPECT_EQ(manager.registerHandle(handle), 1);
    theDiagnostics.start();
    EXPECT_EQ(manager.registerHandle(&other_handle), 0);
    EXPECT_EQ(theDiagnostics.take(), "WARNING: The box handle has already been registered.\n");
    EXPECT_EQ(manager.getHandleTemplate("box"), handle);
    EXPECT_TRUE(manager.containsHandle("box"));

    const char *const parms[] = {"tx", nullptr};
    auto *gz = new GZ_GZTemplate("mover", "Mover", "Sop", "icon", parms, 0, ~0u, false);
    GZ_GZTemplate other_gz("mover", "Mover 2", "Sop", "icon", parms, 0, ~0u, false);
    EXPECT_EQ(manager.registerOpHandleLink(gz), 1);
    theDiagnostics.start();
    EXPECT_EQ(manager.registerOpHandleLink(&other_gz), 0);
    EXPECT_EQ(theDiagnostics.take(), "WARNING: The mover op handle has already been registered.\n");
    EXPECT_EQ(manager.getOpHandleLinkTemplate("mover"), gz);

    auto *selector = new GZ_SelectorTemplate("picks", "Picks", "Sop", false);
    GZ_SelectorTemplate other_selector("picks", "Picks 2", "Sop", true);
    EXPECT_EQ(manager.registerSelector(selector), 1);
    theDiagnostics.start();
    EXPECT_EQ(manager.registerSelector(&other_selector), 0);
    EXPECT_EQ(theDiagnostics.take(),
              "WARNING: The picks input selector has already been registered.\n");
    EXPECT_EQ(manager.getSelectorTemplate("picks"), selector);

    // Warnings switched off: still refused, silently.
    GZ_ResourceManager::WarningScope quiet(false);
    theDiagnostics.start();
    EXPECT_EQ(manager.registerSelector(&other_selector), 0);
    EXPECT_EQ(theDiagnostics.take(), "");
    EXPECT_EQ(manager.getSelectorTemplate("nothing"), nullptr);
    EXPECT_EQ(manager.getSelectorTemplate(nullptr), nullptr);
}

TEST(ResourceManagerRegistry, OpHandleLinkQueries)
{
    ScratchManager manager;
    const char *const parms[] = {"input", "tx", "ty", nullptr};
    manager.registerOpHandleLink(new GZ_GZTemplate("plain", "P", "Sop", "", parms, 0, ~0u, false));
    manager.registerOpHandleLink(new GZ_GZTemplate("ghost", "G", "Sop", "", parms, 1, ~0u, false));
    manager.registerOpHandleLink(new GZ_GZTemplate("spook", "S", "Sop", "", parms, 2, ~0u, false));

    bool always = true;
    EXPECT_FALSE(manager.isGZEthereal("unknown", &always));
    EXPECT_FALSE(manager.isGZEthereal("plain", &always));
    EXPECT_TRUE(always);
    EXPECT_TRUE(manager.isGZEthereal("ghost", &always));
    EXPECT_FALSE(always);
    EXPECT_TRUE(manager.isGZEthereal("spook", &always));
    EXPECT_TRUE(always);
    EXPECT_TRUE(manager.isGZEthereal("spook", nullptr));

    EXPECT_EQ(manager.checkForGZName("plain", "ty"), 1);
    EXPECT_EQ(manager.checkForGZName("plain", "tz"), 0);
    EXPECT_EQ(manager.checkForGZName("unknown", "tx"), 0);
    EXPECT_TRUE(manager.isValidGzParmName("ghost", "input"));
    EXPECT_FALSE(manager.isValidGzParmName("ghost", "Input"));

    // Computed once and kept, even when more templates register later.
    const std::vector<std::string> expected = {"ghost", "plain", "spook"};
    EXPECT_EQ(manager.getBuiltinOpHandleNames(), expected);
    manager.registerOpHandleLink(new GZ_GZTemplate("late", "L", "Sop", "", parms, 0, ~0u, false));
    EXPECT_EQ(manager.getBuiltinOpHandleNames(), expected);
}

TEST(ResourceManagerStates, RegisterStateListsAndWarnings)
{
    ScratchManager manager;
    GZ_ResourceManager::WarningScope warnings(true);
    HostOperator *op = gztest::addOperator(HOST_NETWORK_SOP, "stateop");

    std::unique_ptr<GZ_StateTemplate> first(makeState("brush", 0x06, GZ_VIEWER_SCENE, op));
    EXPECT_TRUE(manager.validStateTemplateName("brush"));
    EXPECT_EQ(manager.registerState(first.get()), 1);
    EXPECT_FALSE(manager.validStateTemplateName("brush"));
    EXPECT_EQ(manager.stateList(GZ_VIEWER_SCENE, GZ_NETWORK_SOP).size(), 1u);
    EXPECT_EQ(manager.stateList(GZ_VIEWER_SCENE, GZ_NETWORK_DOP).size(), 1u);
    EXPECT_TRUE(manager.stateList(GZ_VIEWER_SCENE, GZ_NETWORK_OBJ).empty());

    // The same object again: refused per network, highest network first, with its mask bit.
    theDiagnostics.start();
    EXPECT_EQ(manager.registerState(first.get()), 0);
    EXPECT_EQ(theDiagnostics.take(), "WARNING: The brush state has already been registered in "
                                     "network 4\nWARNING: The brush state has already been "
                                     "registered in network 2\n");
    EXPECT_EQ(manager.stateList(GZ_VIEWER_SCENE, GZ_NETWORK_SOP).size(), 1u);

    // Another object of the same name is appended silently and found first by name.
    std::unique_ptr<GZ_StateTemplate> second(makeState("brush", 0x02, GZ_VIEWER_SCENE));
    theDiagnostics.start();
    EXPECT_EQ(manager.registerState(second.get()), 1);
    EXPECT_EQ(theDiagnostics.take(), "");
    EXPECT_EQ(manager.getStateTemplate("brush", GZ_VIEWER_SCENE, "SOP"), second.get());
    EXPECT_EQ(manager.getStateTemplate("brush", GZ_VIEWER_SCENE, "DOP"), first.get());
    EXPECT_EQ(manager.getStateTemplate(op, GZ_VIEWER_SCENE, "SOP"), first.get());
    EXPECT_EQ(manager.getStateTemplate("brush", GZ_VIEWER_COMPOSITE, "SOP"), nullptr);
    EXPECT_EQ(manager.getViewerStateRegisterStatus("brush", GZ_VIEWER_SCENE, "SOP"),
              GZ_PythonResource::REGISTERED);
    EXPECT_EQ(manager.getViewerStateRegisterStatus("brush", GZ_VIEWER_SCENEGRAPH, "SOP"),
              GZ_PythonResource::NOT_REGISTERED);

    EXPECT_TRUE(manager.containsState("brush", GZ_VIEWER_SCENE, 0x04));
    EXPECT_FALSE(manager.containsState("brush", GZ_VIEWER_SCENE, 0x01));
    EXPECT_FALSE(manager.containsState("brush", GZ_VIEWER_COMPOSITE, 0x7f));
    EXPECT_FALSE(manager.containsState("brush", GZ_NUM_VIEWER_TYPES, 0x7f));
    EXPECT_FALSE(manager.containsState("other", GZ_VIEWER_SCENE, 0x7f));

    // Out-of-range types and unknown table names fall back to the first list.
    std::unique_ptr<GZ_StateTemplate> obj(makeState("picker", 0x01, GZ_VIEWER_SCENE));
    EXPECT_EQ(manager.registerState(obj.get()), 1);
    EXPECT_EQ(manager.stateList(GZ_NUM_VIEWER_TYPES, GZ_NETWORK_MAX_TYPES).size(), 1u);
    EXPECT_EQ(manager.getStateTemplate("picker", GZ_VIEWER_SCENE, "Object"), obj.get());

    // Refused outright: null, a viewer type out of range, an empty mask.
    std::unique_ptr<GZ_StateTemplate> bad(makeState("bad", 0x01, GZ_NUM_VIEWER_TYPES));
    EXPECT_EQ(manager.registerState(nullptr), 0);
    EXPECT_EQ(manager.registerState(bad.get()), 0);
    EXPECT_TRUE(manager.validStateTemplateName("bad"));
    std::unique_ptr<GZ_StateTemplate> none(makeState("none", 0, GZ_VIEWER_SCENE));
    EXPECT_EQ(manager.registerState(none.get()), 0);

    manager.saveStateToCreate("brush");
    EXPECT_EQ(manager.stateToCreate(), "brush");
    manager.saveStateToCreate(nullptr);
    EXPECT_EQ(manager.stateToCreate(), "");
}

TEST(ResourceManagerStates, OperatorStateMandatory)
{
    ScratchManager manager;
    HostOperator *needs = gztest::addOperator(HOST_NETWORK_SOP, "needsstate");
    HostOperator *optional =
        gztest::addOperator(HOST_NETWORK_SOP, "optionalstate", HostParmTemplateList(),
                            HostOperator::FLAG_STATE_OPTIONAL);
    EXPECT_TRUE(manager.operatorStateMandatory(needs->getName().c_str(), "Sop"));
    EXPECT_FALSE(manager.operatorStateMandatory(optional->getName().c_str(), "Sop"));
    EXPECT_FALSE(manager.operatorStateMandatory(needs->getName().c_str(), "Nowhere"));
    EXPECT_FALSE(manager.operatorStateMandatory("missing_op", "Sop"));
}

TEST(ResourceManagerOperators, FindsOperatorsAndTables)
{
    ScratchManager manager;
    GZ_ResourceManager::WarningScope warnings(true);
    HostOperator *op = gztest::addOperator(HOST_NETWORK_DOP, "finder");
    const std::string qualified = "Dop/" + op->getName();

    std::string table;
    EXPECT_EQ(manager.findOperator(qualified.c_str(), &table), op);
    EXPECT_EQ(table, "Dop");
    EXPECT_EQ(manager.findOperator(op->getName().c_str(), &table), nullptr);
    EXPECT_EQ(table, "Unknown");
    EXPECT_EQ(manager.findOperator(("Sop/" + op->getName()).c_str(), nullptr), nullptr);

    EXPECT_EQ(manager.findOperator(GZ_NETWORK_DOP, op->getName().c_str(), true), op);
    theDiagnostics.start();
    EXPECT_EQ(manager.findOperator(GZ_NETWORK_SOP, "nosuchop", true), nullptr);
    EXPECT_EQ(manager.findOperator(GZ_NETWORK_SOP, "nosuchop", false), nullptr);
    EXPECT_EQ(theDiagnostics.take(), "WARNING: Invalid op name network: Sop op: nosuchop\n");

    EXPECT_EQ(GZ_ResourceManager::getOpTableFromOperator(op), HostOperatorTable::getTable("Dop"));
    EXPECT_EQ(GZ_ResourceManager::getOperatorKey(op), qualified);
    EXPECT_EQ(GZ_ResourceManager::getOpTableFromOperator(nullptr), nullptr);
}

TEST(ResourceManagerOperators, ParameterTemplatesAndChannels)
{
    ScratchManager manager;
    GZ_ResourceManager::WarningScope warnings(true);
    const HostParmType begin_end = HOST_PARM_FLOAT.withFlags(HostParmType::NAME_BEGIN_END);
    HostOperator *op = gztest::addOperator(
        HOST_NETWORK_SOP, "channels",
        HostParmTemplateList{HostParmTemplate(HOST_PARM_XYZ, "t", "Translate", 3),
                             HostParmTemplate(HOST_PARM_FLOAT, "scale", "Scale", 1),
                             HostParmTemplate(begin_end, "rot", "Rotation", 2),
                             HostParmTemplate(HOST_PARM_FLOAT, "endrot", "Shadowed", 1)});

    // Only begin/end-named vectors are searched by channel; other templates by their name. A
    // begin/end vector owns the channels that end in its name, and comes first here; its bare
    // name is no channel, nor is a matching ending without a component, nor the whole name of
    // a vector.
    const std::tuple<const char *, HostOperator *, const char *, int> cases[] = {
        {"ty", op, nullptr, -1},    {"scale", op, "scale", 0}, {"endrot", op, "rot", 1},
        {"rot", op, nullptr, -1},   {"xrot", op, nullptr, -1}, {"t", op, nullptr, -1},
        {"t", nullptr, nullptr, -1}};
    for (const auto &[channel, on, token, index] : cases)
    {
        int vec = 7;
        const HostParmTemplate *found = manager.getTemplateAndVecId(channel, on, vec);
        EXPECT_EQ(found ? found->getToken() : "none", token ? token : "none") << channel;
        EXPECT_EQ(vec, index) << channel;
    }

    int index = -1;
    const HostParmTemplate *tmpl = GZ_ResourceManager::findParmTemplate(*op, "t", 2, &index);
    ASSERT_NE(tmpl, nullptr);
    EXPECT_EQ(index, 0);
    theDiagnostics.start();
    EXPECT_EQ(GZ_ResourceManager::findParmTemplate(*op, "t", 3, &index), nullptr);
    EXPECT_EQ(theDiagnostics.take(), "WARNING: Invalid op parm name  op: " + op->getName() +
                                         " parm_name: t parm idx: 3\n");

    // The legacy lookup warns even with warnings off.
    GZ_ResourceManager::WarningScope quiet(false);
    std::string channel;
    theDiagnostics.start();
    manager.getChannelNameFromParmAndVec(channel, op, "t", 2);
    EXPECT_EQ(theDiagnostics.take(), "WARNING: Legacy bindhandle format for Sop/" + op->getName() +
                                         " 't 2'. Use 'channel handleparm' format instead.\n");
    EXPECT_EQ(channel, "tz");
    theDiagnostics.start();
    manager.getChannelNameFromParmAndVec(channel, op, "nothing", 0);
    theDiagnostics.take();
    EXPECT_EQ(channel, "nothing");
}

TEST(ResourceManagerSave, CallbacksRunInOrderBeforePersistentHandles)
{
    GZ_ResourceManager &manager = instance();
    static std::string theLog;
    theLog.clear();
    auto record = [](void *data) { theLog += static_cast<const char *>(data); };
    char a[] = "a", b[] = "b", c[] = "c";
    manager.addSaveCallback(record, a);
    manager.addSaveCallback(record, b);
    manager.addSaveCallback(record, c);
    manager.addSaveCallback(record, b);
    manager.removeSaveCallback(record, b);       // the first equal pair only
    manager.removeSaveCallback(record, nullptr); // missing: ignored

    GZ_ResourceManager::setPersistentHandleSaver(
        [](std::ostream &os)
        {
            theLog += "|persistent";
            os << "pomadd\n";
            return HOST_ERR_NONE;
        });
    std::ostringstream scene;
    EXPECT_EQ(HostDirector::instance()->getSaveCallback(), &saveGZResourceManagerCallback);
    EXPECT_EQ(HostDirector::instance()->runSaveCallback(scene), HOST_ERR_NONE);
    GZ_ResourceManager::setPersistentHandleSaver(nullptr);
    manager.removeSaveCallback(record, a);
    manager.removeSaveCallback(record, c);
    manager.removeSaveCallback(record, b);

    EXPECT_EQ(std::tuple(theLog, scene.str()), std::tuple("acb|persistent", "pomadd\n"));
}
