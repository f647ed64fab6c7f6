// Tests of scripted viewer state templates, their registration status and their volatile keys.
#include "link/GZ_PythonState.h"
#include "resource/GZ_ResourceManager.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace
{

/// A manager whose volatile-key lookup reads a tiny hotkey text: blank-separated words, each an
/// optional "ctrl+" (modifier 1) or "shift+" (modifier 2) before one character (its code).
class HotkeyManager : public GZ_ResourceManager
{
public:
    void findVolatileKeys(const char *hotkey_text, std::vector<int> &keys,
                          std::vector<int> &modifiers) const override
    {
        keys.clear();
        modifiers.clear();
        std::istringstream words(hotkey_text ? hotkey_text : "");
        std::string word;
        while (words >> word)
        {
            int modifier = 0;
            for (const auto &[prefix, bit] :
                 {std::pair<std::string, int>{"ctrl+", 1}, {"shift+", 2}})
            {
                if (word.compare(0, prefix.size(), prefix) == 0)
                {
                    modifier |= bit;
                    word.erase(0, prefix.size());
                }
            }
            keys.push_back(word.empty() ? 0 : word[0]);
            modifiers.push_back(modifier);
        }
    }
};

/// Makes the hotkey manager the process's instance when nothing else has created one first,
/// so that state templates look their volatile keys up through it.
class HotkeyManagerEnvironment : public ::testing::Environment
{
public:
    void SetUp() override
    {
        if (!GZresourceManagerExists())
        {
            GZ_ResourceManager::ourPrintWarnings = false;
            myManager = std::make_unique<HotkeyManager>();
            GZ_ResourceManager::ourPrintWarnings = true;
        }
    }
    void TearDown() override { myManager.reset(); }

private:
    std::unique_ptr<HotkeyManager> myManager;
};

::testing::Environment *const theHotkeyEnvironment =
    ::testing::AddGlobalTestEnvironment(new HotkeyManagerEnvironment);

GZ_PythonState::Info makeInfo(const char *name)
{
    GZ_PythonState::Info info;
    info.name = name;
    info.label = std::string(name) + " label";
    return info;
}

bool hotkeysParsed()
{
    return dynamic_cast<HotkeyManager *>(GZgetResourceManager()) != nullptr;
}

} // namespace

TEST(PythonStateTemplate, FieldsFromDescription)
{
    GZ_PythonState::Info info = makeInfo("pystate");
    info.opIndependent = true;
    info.supportsSelectionChange = true;
    auto declared = std::make_shared<HostParmTemplateList>();
    declared->append(HostParmTemplate(HOST_PARM_FLOAT, "size", "Size"));
    info.parmTemplates = declared;
    auto script = std::make_shared<int>(7);
    info.callbacks = GZ_PythonResource::CallbackHandler(script, {"onEnter", "onMouseEvent"});

    int constructor_tag = 0;
    GZ_PythonState::Template state(info, &constructor_tag, GZ_VIEWER_COMPOSITE, 0x06);
    EXPECT_EQ(state.name(), "pystate");
    EXPECT_EQ(state.englishName(), "pystate label");
    EXPECT_EQ(state.getIconName(), "MISC_python");
    EXPECT_EQ(state.constructor(), &constructor_tag);
    EXPECT_EQ(state.viewerType(), GZ_VIEWER_COMPOSITE);
    EXPECT_EQ(state.networkTypes(), 0x06u);
    EXPECT_EQ(state.opIndependent(), 1);
    EXPECT_EQ(state.getOperator(), nullptr);
    EXPECT_TRUE(state.getSupportsSelectionChange());
    EXPECT_FALSE(state.getSupportsMoveTool());
    // Op-independent or not, a scripted state is never forced on.
    EXPECT_FALSE(state.forceStateToEnter());
    EXPECT_TRUE(state.callbacks().hasCallback("onEnter"));
    EXPECT_FALSE(state.callbacks().hasCallback("onExit"));
    EXPECT_EQ(state.callbacks().scriptObject(), script);

    const HostParmTemplate *list = state.templates();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list[0].getToken(), "size");
    EXPECT_TRUE(list[1].isTerminator());

    GZ_PythonState::Template copy(state);
    EXPECT_EQ(&copy.info(), &state.info());
    EXPECT_NE(copy.templates(), state.templates());
    EXPECT_EQ(copy.templates()[0].getToken(), "size");

    info.icon = "SOP_paint";
    GZ_PythonState::Template painted(info, nullptr, GZ_VIEWER_SCENE, 0x02);
    EXPECT_EQ(painted.getIconName(), "SOP_paint");
    EXPECT_TRUE(painted.templates()[1].isTerminator());
    painted = state;
    EXPECT_EQ(painted.name(), "pystate");
    EXPECT_EQ(&painted.info(), &state.info());

    GZ_PythonState::Template bare(makeInfo("bare"), nullptr, GZ_VIEWER_SCENE, 0x02);
    ASSERT_NE(bare.templates(), nullptr);
    EXPECT_TRUE(bare.templates()[0].isTerminator());
    EXPECT_EQ(bare.releaseRefCount(), 0u);
    EXPECT_EQ(bare.addRefCount(), 1u);
    EXPECT_EQ(bare.releaseRefCount(), 0u);
}

TEST(PythonStateRegistration, StatusPerViewerType)
{
    GZcreateResourceManager(false);
    GZ_ResourceManager manager; // a registry of its own, empty
    GZ_PythonState::Template state(makeInfo("pyreg"), nullptr, GZ_VIEWER_COMPOSITE, 0x02);
    EXPECT_EQ(manager.getViewerStateRegisterStatus("pyreg", GZ_VIEWER_COMPOSITE, "SOP"),
              GZ_PythonResource::NOT_REGISTERED);
    ASSERT_EQ(manager.registerState(&state), 1);

    EXPECT_EQ(manager.getViewerStateRegisterStatus("pyreg", GZ_VIEWER_COMPOSITE, "SOP"),
              GZ_PythonResource::REGISTERED);
    EXPECT_EQ(manager.getViewerStateRegisterStatus("pyreg", GZ_VIEWER_SCENE, "SOP"),
              GZ_PythonResource::NOT_REGISTERED);
    EXPECT_EQ(manager.getViewerStateRegisterStatus("pyreg", GZ_VIEWER_SCENEGRAPH, "SOP"),
              GZ_PythonResource::NOT_REGISTERED);
    EXPECT_EQ(manager.getViewerStateRegisterStatus("pyreg", GZ_VIEWER_COMPOSITE, "OBJ"),
              GZ_PythonResource::NOT_REGISTERED);

    // Without a scripting layer nothing is a registered scripted resource.
    EXPECT_FALSE(manager.isRegisteredViewerState("pyreg"));
    EXPECT_EQ(manager.viewerStateTemplate("pyreg"), nullptr);
    EXPECT_EQ(manager.unregisterViewerState("pyreg"), 12);
    EXPECT_FALSE(manager.bindOperatorToViewerState("pyreg", nullptr));
    EXPECT_EQ(manager.unregisterViewerHandle("any"), 12);
    EXPECT_EQ(manager.unbindVolatileViewerHandles("any"), 2);
    EXPECT_FALSE(manager.isRegisteredViewerHandle("any"));
    EXPECT_EQ(manager.viewerHandleTemplate("any"), nullptr);
    EXPECT_TRUE(manager.getViewerHandleTypeNames().empty());

    // The library's own lookup knows no hotkey text format and yields no keys.
    std::vector<int> keys = {1}, modifiers = {2};
    manager.findVolatileKeys("ctrl+a", keys, modifiers);
    EXPECT_TRUE(keys.empty());
    EXPECT_TRUE(modifiers.empty());
}

TEST(PythonStateVolatileKeys, RebuiltFromHotkeysThenExtraKeysAppended)
{
    GZcreateResourceManager(false);
    GZ_ResourceManager manager;
    GZ_PythonState::Info info = makeInfo("pykeys");
    info.volatileHotkey = "ctrl+a b";
    GZ_PythonState::Template keyed(info, nullptr, GZ_VIEWER_SCENE, 0x03);
    GZ_PythonState::Template plain(makeInfo("pyplain"), nullptr, GZ_VIEWER_COMPOSITE, 0x01);
    ASSERT_EQ(manager.registerState(&keyed), 1);
    ASSERT_EQ(manager.registerState(&plain), 1);

    const std::vector<int> extra_keys = {'x', 'y'};
    const std::vector<int> extra_modifiers = {2, 0};
    keyed.rebuildVolatileKeys(&extra_keys, &extra_modifiers);
    plain.rebuildVolatileKeys(&extra_keys, &extra_modifiers);
    EXPECT_EQ(plain.volatileKeys(), extra_keys);
    EXPECT_EQ(plain.volatileKeysModifiers(), extra_modifiers);
    if (hotkeysParsed())
    {
        EXPECT_EQ(keyed.volatileKeys(), (std::vector<int>{'a', 'b', 'x', 'y'}));
        EXPECT_EQ(keyed.volatileKeysModifiers(), (std::vector<int>{1, 0, 2, 0}));
    }

    // The manager rebuilds every state of every list from its hotkey text alone; a state in
    // two lists is simply rebuilt twice.
    manager.rebuildVolatileKeys();
    EXPECT_TRUE(plain.volatileKeys().empty());
    EXPECT_TRUE(plain.volatileKeysModifiers().empty());
    if (hotkeysParsed())
    {
        EXPECT_EQ(keyed.volatileKeys(), (std::vector<int>{'a', 'b'}));
        EXPECT_EQ(keyed.volatileKeysModifiers(), (std::vector<int>{1, 0}));
    }
    else
    {
        EXPECT_TRUE(keyed.volatileKeys().empty());
    }
}
