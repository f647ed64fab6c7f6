// Templates: network support, parameter names, copies, help files and state volatile keys.
#include "gz_ResourceTestEnv.h"

#include "host/HostReader.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_HandleTemplate.h"
#include "resource/GZ_SelectorTemplate.h"
#include "resource/GZ_StateTemplate.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <tuple>
#include <unistd.h>

namespace fs = std::filesystem;

TEST(GZTemplate, NetworksAreWholeWordsInAnyCase)
{
    const char *const parms[] = {"input", "tx", "ty", "t#x", nullptr};
    GZ_GZTemplate gz("mover", "Mover", "Sop Object", "IC_Move", parms, 0, 4, true);
    std::string supported;
    for (const char *type : {"SOP", "object", "Obj", "So", ""})
        supported += gz.supportsType(type) ? '1' : '0';
    EXPECT_EQ(std::tuple(supported, gz.getNetworkTypes()), std::tuple("11000", "sop object"));
    EXPECT_EQ(gz.constructor(), nullptr);

    const std::vector<std::string> names = {"input", "tx", "ty", "t#x"};
    EXPECT_EQ(std::tuple(gz.parmNameList(), gz.parmIndex("t#x")), std::tuple(names, 3));
    EXPECT_EQ(gz.parmIndex("tz"), -1);
    EXPECT_EQ(gz.parmNameTable().size(), 4u);

    // A name listed twice stays twice in the list; the table keeps its first index.
    const char *const twice[] = {"input", "tx", "input", nullptr};
    GZ_GZTemplate repeated("rep", "Rep", "Sop", "", twice, 0, 4, false);
    EXPECT_EQ(repeated.parmNameList().size(), 3u);
    EXPECT_EQ(repeated.parmIndex("input"), 0);

    GZ_SelectorTemplate selector("mixed", "Mixed", "Sop Dop", true);
    EXPECT_TRUE(selector.supportsType("Dop"));
    EXPECT_FALSE(selector.supportsType("Lop"));
    EXPECT_TRUE(selector.ordered());
    EXPECT_FALSE(selector.isGeneric());
    int data = 0;
    selector.data(&data);
    EXPECT_TRUE(selector.isGeneric());
    GZ_SelectorTemplate copy(selector);
    EXPECT_EQ(copy.data(), &data);
    EXPECT_EQ(copy.getNetworkTypes(), "sop dop");
}

TEST(GZTemplate, HelpComesFromTheSearchPathOnce)
{
    const fs::path dir = fs::temp_directory_path() / ("gz_help_" + std::to_string(::getpid()));
    fs::create_directories(dir / "config/Help/handle");
    {
        std::ofstream(dir / "config/Help/handle/helped") << "Drag the arrow.\nShift snaps.\n";
    }
    const std::vector<std::string> saved = HostReader::getSearchPath();
    HostReader::setSearchPath({(dir / "missing").string(), dir.string()});

    const char *const parms[] = {nullptr};
    GZ_GZTemplate helped("helped", "Helped", "Sop", "", parms, 0, 1, false);
    GZ_GZTemplate bare("bare", "Bare", "Sop", "", parms, 0, 1, false);
    EXPECT_EQ(helped.getHelp(), "Drag the arrow.\nShift snaps.\n");
    EXPECT_EQ(bare.getHelp(), "No help defined for handles of type bare");

    // The text is kept: later files or edits do not change it.
    {
        std::ofstream(dir / "config/Help/handle/bare") << "now there is help\n";
        std::ofstream(dir / "config/Help/handle/helped") << "changed\n";
    }
    EXPECT_EQ(bare.getHelp(), "No help defined for handles of type bare");
    EXPECT_EQ(helped.getHelp(), "Drag the arrow.\nShift snaps.\n");

    HostReader::setSearchPath(saved);
    fs::remove_all(dir);
}

TEST(StateTemplate, FieldsInitializeAndVolatileKeys)
{
    gztest::instance();
    HostOperator *op = gztest::addOperator(HOST_NETWORK_SOP, "stated");
    GZ_StateTemplate state("paint", "Paint", "IC_Paint", nullptr, nullptr, GZ_VIEWER_SCENE, 0x02, 5,
                           "ctrl+p", op);
    EXPECT_EQ(state.opIndependent(), 1);
    EXPECT_TRUE(state.forceStateToEnter());
    EXPECT_EQ(state.getOperator(), op);
    EXPECT_EQ(state.volatileHotkey(), "ctrl+p");
    // The library itself understands no hotkey text.
    EXPECT_TRUE(state.volatileKeys().empty());

    const std::vector<int> keys = {65, 66}, modifiers = {1, 2};
    state.rebuildVolatileKeys(&keys, &modifiers);
    EXPECT_EQ(state.volatileKeys(), keys);
    EXPECT_EQ(state.volatileKeysModifiers(), modifiers);
    state.rebuildVolatileKeys();
    EXPECT_TRUE(state.volatileKeys().empty());

    state.setSupportsMoveTool(true);
    GZ_StateTemplate copy(state);
    EXPECT_TRUE(copy.getSupportsMoveTool());
    copy.initialize("brush", "Brush", "IC_Brush", nullptr, nullptr, GZ_VIEWER_COMPOSITE, 0x08, 0,
                    "", /*hidden=*/true);
    EXPECT_EQ(std::tuple(copy.name(), copy.getIconName(), copy.viewerType(), copy.networkTypes(),
                         copy.forceStateToEnter(), copy.getHidden()),
              std::tuple("brush", "IC_Brush", GZ_VIEWER_COMPOSITE, 0x08u, false, true));
    EXPECT_EQ(copy.getOperator(), op); // initialize keeps the operator
}
