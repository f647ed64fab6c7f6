// Tests of scripted viewer state templates, their registration status and their volatile keys.
#include "link/GZ_PythonState.h"
#include "resource/GZ_ResourceManager.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>
#include <vector>

namespace
{

GZ_PythonState::Info makeInfo(const char *name, const char *hotkeys = "")
{
    GZ_PythonState::Info info;
    info.name = name;
    info.label = "Label";
    info.volatileHotkey = hotkeys;
    return info;
}

/// A manager that is not the instance (an empty registry of its own); the instance is made
/// first so that this one cannot take its place.
struct EnsureInstance
{
    EnsureInstance() { GZcreateResourceManager(/*print_warnings=*/false); }
};
struct ScratchManager : private EnsureInstance, public GZ_ResourceManager
{
};

} // namespace

TEST(PythonStateTemplate, FieldsFromDescription)
{
    GZ_PythonState::Info info = makeInfo("pystate");
    info.opIndependent = true;
    info.supportsSelectionChange = true;
    auto declared = std::make_shared<HostParmTemplateList>();
    declared->append(HostParmTemplate(HOST_PARM_FLOAT, "size", "Size"));
    info.parmTemplates = declared;
    info.callbacks = GZ_PythonResource::CallbackHandler(nullptr, {"onEnter"});

    GZ_PythonState::Template state(info, nullptr, GZ_VIEWER_COMPOSITE, 0x06);
    // Not forced to enter even when op-independent.
    EXPECT_EQ(std::tuple(state.getIconName(), state.opIndependent(),
                         state.getSupportsSelectionChange(), state.getSupportsMoveTool(),
                         state.forceStateToEnter()),
              std::tuple("MISC_python", 1, true, false, false));
    EXPECT_TRUE(state.callbacks().hasCallback("onEnter"));
    ASSERT_NE(state.templates(), nullptr);
    EXPECT_EQ(state.templates()[0].getToken(), "size");
    EXPECT_TRUE(state.templates()[1].isTerminator());

    GZ_PythonState::Template bare(makeInfo("bare"), nullptr, GZ_VIEWER_SCENE, 0x02);
    EXPECT_TRUE(bare.templates()[0].isTerminator());
}

TEST(PythonStateRegistration, StatusPerViewerTypeAndNeutralDefaults)
{
    ScratchManager manager;
    GZ_PythonState::Template state(makeInfo("pyreg"), nullptr, GZ_VIEWER_COMPOSITE, 0x02);
    EXPECT_EQ(manager.getViewerStateRegisterStatus("pyreg", GZ_VIEWER_COMPOSITE, "SOP"), 0);
    ASSERT_EQ(manager.registerState(&state), 1);
    std::string status;
    for (GZ_ViewerType viewer : {GZ_VIEWER_COMPOSITE, GZ_VIEWER_SCENE, GZ_VIEWER_SCENEGRAPH})
        status += std::to_string(manager.getViewerStateRegisterStatus("pyreg", viewer, "SOP"));
    EXPECT_EQ(status, "100");

    // Without a scripting layer nothing is a scripted resource.
    EXPECT_FALSE(manager.isRegisteredViewerState("pyreg"));
    EXPECT_EQ(manager.viewerStateTemplate("pyreg"), nullptr);
    EXPECT_EQ(std::tuple(manager.unregisterViewerState("pyreg"),
                         manager.unregisterViewerHandle("any"),
                         manager.unbindVolatileViewerHandles("any")),
              std::tuple(12, 12, 2));
    EXPECT_FALSE(manager.isRegisteredViewerHandle("any"));
}

TEST(PythonStateVolatileKeys, RebuiltEmptyThenExtraKeysAppended)
{
    ScratchManager manager;
    GZ_PythonState::Template keyed(makeInfo("pykeys", "Ab"), nullptr, GZ_VIEWER_SCENE, 0x03);
    ASSERT_EQ(manager.registerState(&keyed), 1);
    const std::vector<int> keys = {'x', 'y'}, modifiers = {2, 0};
    keyed.rebuildVolatileKeys(&keys, &modifiers);
    EXPECT_EQ(keyed.volatileKeys(), keys);
    EXPECT_EQ(keyed.volatileKeysModifiers(), modifiers);

    // The library knows no hotkey text format: every state of every list is rebuilt empty.
    manager.rebuildVolatileKeys();
    EXPECT_TRUE(keyed.volatileKeys().empty());
    EXPECT_TRUE(keyed.volatileKeysModifiers().empty());
    keyed.rebuildVolatileKeys(&keys, &modifiers);
    EXPECT_EQ(keyed.volatileKeys(), keys);
}
