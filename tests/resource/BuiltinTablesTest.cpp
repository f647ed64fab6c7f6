// The built-in op-handle-link and selector tables as the resource manager registers them.
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_ResourceManager.h"
#include "resource/GZ_SelectorTemplate.h"
#include "resource/gz_BuiltinTables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <string>
#include <vector>

namespace
{

// A sample of rows written out independently of the library's own table sources (first, last,
// shared lists, odd columns), so a typing slip on either side shows up as a mismatch; the
// counts guard the rest.

struct ExpectedHandle
{
    const char *name;
    const char *english;
    const char *networks; // as written in the handle catalogue; stored in lower case
    const char *icon;
    size_t parmCount;
    const char *firstParm; // "" for an empty list
    const char *lastParm;
    short ethereal;
    bool displayAlways;
    unsigned viewerMask;
};

// clang-format off
const ExpectedHandle kExpectedHandles[] = { // the 3D table, then the 2D one
    {"agentedit", "Agent Edit", "Sop", "MGZ_agentedit", 16, "t#x", "mult_order#", 0, false, ~0u},
    {"angle", "Angle", "Sop Object Dop Lop", "MGZ_angle", 14, "input", "scale", 0, false, ~0u},
    {"bone", "Bone", "Sop Object Dop", "MGZ_bone", 37, "length", "capt_sz", 0, false, ~0u},
    {"camera", "Camera", "Object Lop", "OBJ_camera", 72, "px", "cropt", 0, false, ~0u},
    {"captureblend", "Capture Blend", "Object", "MGZ_captureblend", 0, "", "", 0, false, ~0u},
    {"chopxform", "ChopTransformer", "Chop", "MGZ_xform", 113, "input", "invert", 0, false, ~0u},
    {"ladder", "Ladder", "Sop Object Dop Cop2 Lop", "MGZ_ladder", 10, "parm0", "parm9", 2, false, ~0u},
    {"mousewheelbump", "Mouse Wheel Bump", "Sop Object Dop Lop", "MGZ_ladder", 1, "value", "value", 2, false, ~0u},
    {"popvector", "POP Vector", "Pop", "MGZ_popvector", 12, "input", "refpath", 0, false, ~0u},
    {"renderregion", "Render Region", "Object", "MGZ_RenderRegion", 0, "", "", 0, true, ~0u},
    {"stepladder", "Step Ladder", "Sop Object Dop Cop2 Lop", "MGZ_stepladder", 10, "parm0", "parm9", 1, false, ~0u},
    {"uvflattenpin", "UV Flatten Pin", "Sop", "MGZ_uvedit", 6, "npins", "pin#v", 0, false, ~0u},
    {"xform", "Transformer", "Sop Object Dop Lop", "MGZ_xform", 110, "input", "parent_xfo15", 0, false, ~0u},
    {"motionpath", "Motion Path", "Object", "MGZ_motionpath", 57, "input", "soffsetz", 0, false, ~0u},
    {"dynmotionpath", "Dynamic Motion Path", "Sop", "MGZ_dynmotionpath", 80, "input", "visibility", 0, false, ~0u},
    {"benddeform", "Bend Deform", "Sop Object Dop Lop", "MGZ_benddeform", 29, "input", "enabledeform", 0, false, ~0u},
    {"composite2d", "Composite", "Cop2", "IM_Composite", 10, "units", "op", 0, false, 1},
    {"curvepoint2d", "Curve Point", "Cop2", "IM_Translate", 3, "u", "weight", 0, false, 4},
    {"framerange2d", "Frame Range", "Cop2", "IM_FrameRange", 6, "start", "postlength", 0, false, 2},
    {"shuffle2d", "Shuffle", "Cop2", "IM_Shuffle", 1, "shuffle", "shuffle", 0, false, 2},
    {"vpos2d", "V Pos", "Cop2", "IM_VPos", 3, "units", "onoff", 0, false, 1},
};
// clang-format on

struct ExpectedSelector
{
    const char *name;
    const char *english;
    const char *networks;
    bool ordered;
};

// clang-format off
const ExpectedSelector kExpectedSelectors[] = {
    {"prims", "Primitives", "Sop", false},
    {"edges_points", "Points or Edges", "Sop", true},
    {"ordered_prims_points_edges_verts", "Ordered Primitives, Points, Edges, or Vertices", "Sop", true},
    {"uvpeltselect2", "UV Pelt Input Selector", "Sop", false},
    {"objselect", "Object Selector", "Object", false},
    {"dopobjects", "Dop Object Selector", "Dop", false},
    {"alltypeselect", "All Geometry Types", "Sop Dop", false},
    {"scenegraphselect", "Scene Graph Geometry", "Lop", false},
};
// clang-format on

std::string lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string firstOf(const std::vector<std::string> &names)
{
    return names.empty() ? std::string() : names.front();
}

std::string lastOf(const std::vector<std::string> &names)
{
    return names.empty() ? std::string() : names.back();
}

/// The process's resource manager, created (quietly) on first use.
GZ_ResourceManager &manager()
{
    GZcreateResourceManager(/*print_warnings=*/false);
    GZ_ResourceManager *mgr = GZgetResourceManager();
    EXPECT_NE(mgr, nullptr);
    return *mgr;
}

/// Checks that every parameter name sits at its own index in the name table.
void expectIndexedInOrder(const GZ_GZTemplate &tmpl)
{
    const std::vector<std::string> &names = tmpl.parmNameList();
    for (size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(tmpl.parmIndex(names[i]), static_cast<int>(i)) << tmpl.name() << " " << names[i];
}

} // namespace

TEST(BuiltinHandleTable, SampledRowsHaveTheirColumns)
{
    GZ_ResourceManager &mgr = manager();
    ASSERT_EQ(gz::makeBuiltin3DHandles().size(), 77u);
    ASSERT_EQ(gz::makeBuiltin2DHandles().size(), 20u);
    for (const ExpectedHandle &row : kExpectedHandles)
    {
        SCOPED_TRACE(row.name);
        const GZ_GZTemplate *tmpl = mgr.getOpHandleLinkTemplate(row.name);
        ASSERT_NE(tmpl, nullptr);
        EXPECT_EQ(std::tuple(tmpl->name(), tmpl->englishName()), std::tuple(row.name, row.english));
        EXPECT_EQ(tmpl->getNetworkTypes(), lower(row.networks));
        EXPECT_EQ(tmpl->iconName(), row.icon);
        EXPECT_EQ(tmpl->parmNameList().size(), row.parmCount);
        EXPECT_EQ(firstOf(tmpl->parmNameList()), row.firstParm);
        EXPECT_EQ(lastOf(tmpl->parmNameList()), row.lastParm);
        EXPECT_EQ(std::tuple(tmpl->getEthereal(), tmpl->getViewerMask(), tmpl->isDisplayAlways()),
                  std::tuple(row.ethereal, row.viewerMask, row.displayAlways));
        EXPECT_EQ(tmpl->constructor(), nullptr);
    }
    // Nothing but the two tables is registered at start-up.
    EXPECT_EQ(mgr.getOpHandleLinks().size(), 97u);
}

TEST(BuiltinHandleTable, SharedListsAreSpelledOutInOrder)
{
    GZ_ResourceManager &mgr = manager();
    const GZ_GZTemplate *xform = mgr.getOpHandleLinkTemplate("xform");
    ASSERT_NE(xform, nullptr);
    const std::vector<std::string> &x = xform->parmNameList();
    ASSERT_EQ(x.size(), 57u + 36u + 17u);
    EXPECT_EQ(std::tuple(x[0], x[37]), std::tuple("input", "pivot_comp_in_obj_prexform"));
    EXPECT_EQ(x[56], "soffsetz");
    const std::vector<std::string> limits_of_tx_ty = {"tx_min_on", "tx_min", "tx_max_on", "tx_max",
                                                      "ty_min_on"};
    EXPECT_EQ(std::vector<std::string>(x.begin() + 57, x.begin() + 62), limits_of_tx_ty);
    EXPECT_EQ(std::tuple(x[92], x[93], x[94]), std::tuple("sz_max", "parent_xfo", "parent_xfo00"));
    EXPECT_EQ(std::tuple(x[103], x[104]), std::tuple("parent_xfo09", "parent_xfo10"));
    EXPECT_EQ(xform->parmIndex("tz"), 3);
    expectIndexedInOrder(*xform);

    // Rows that append names start their own names right after the shared list.
    const GZ_GZTemplate *chop = mgr.getOpHandleLinkTemplate("chopxform");
    ASSERT_NE(chop, nullptr);
    EXPECT_EQ(chop->parmIndex("parent_xfo15"), 109);
    EXPECT_EQ(chop->parmIndex("mode"), 110);
    const GZ_GZTemplate *camera = mgr.getOpHandleLinkTemplate("camera");
    ASSERT_NE(camera, nullptr);
    EXPECT_EQ(camera->parmNameList()[48], "lookat_twist");
    EXPECT_EQ(camera->parmNameList()[66], "soffsetz");
    EXPECT_EQ(camera->parmNameList()[67], "fstop");
    const GZ_GZTemplate *light = mgr.getOpHandleLinkTemplate("light");
    ASSERT_NE(light, nullptr);
    EXPECT_EQ(light->parmNameList()[67], "coneangle");
    const GZ_GZTemplate *motion = mgr.getOpHandleLinkTemplate("motionpath");
    ASSERT_NE(motion, nullptr);
    EXPECT_EQ(motion->parmIndex("tx_min"), -1);
    EXPECT_EQ(motion->parmIndex("parent_xfo"), -1);

    // dynmotionpath extends motionpathguide, and names "input" a second time.
    const GZ_GZTemplate *guide = mgr.getOpHandleLinkTemplate("motionpathguide");
    const GZ_GZTemplate *dyn = mgr.getOpHandleLinkTemplate("dynmotionpath");
    ASSERT_NE(guide, nullptr);
    ASSERT_NE(dyn, nullptr);
    EXPECT_TRUE(std::equal(guide->parmNameList().begin(), guide->parmNameList().end(),
                           dyn->parmNameList().begin()));
    EXPECT_EQ(dyn->parmNameList()[70], "input");
    EXPECT_EQ(dyn->parmNameList()[71], "xform_parms");
}

TEST(BuiltinHandleTable, LookupsSeeTheRegisteredColumns)
{
    GZ_ResourceManager &mgr = manager();
    bool always = false;
    EXPECT_TRUE(mgr.isGZEthereal("ladder", &always));
    EXPECT_TRUE(always);
    EXPECT_TRUE(mgr.isGZEthereal("stepladder", &always));
    EXPECT_FALSE(always);
    EXPECT_FALSE(mgr.isGZEthereal("xform", &always));

    // "#" is part of the registered name.
    EXPECT_EQ(mgr.checkForGZName("agentedit", "t#x"), 1);
    EXPECT_EQ(mgr.checkForGZName("uvflattenpin", "pin#prim"), 1);
    EXPECT_EQ(mgr.checkForGZName("agentedit", "t1x"), 0);

    const GZ_GZTemplate *ladder = mgr.getOpHandleLinkTemplate("ladder");
    const GZ_GZTemplate *xform = mgr.getOpHandleLinkTemplate("xform");
    const GZ_GZTemplate *pop = mgr.getOpHandleLinkTemplate("popvector");
    ASSERT_TRUE(ladder && xform && pop);
    EXPECT_TRUE(ladder->supportsType("Cop2"));
    EXPECT_FALSE(xform->supportsType("Cop2"));
    EXPECT_TRUE(xform->supportsType("LOP"));
    EXPECT_TRUE(pop->supportsType("POP"));
    EXPECT_FALSE(pop->supportsType("Sop"));
}

TEST(BuiltinSelectorTable, SampledRowsHaveTheirColumns)
{
    GZ_ResourceManager &mgr = manager();
    ASSERT_EQ(gz::makeBuiltinSelectors().size(), 47u);
    for (const ExpectedSelector &row : kExpectedSelectors)
    {
        SCOPED_TRACE(row.name);
        const GZ_SelectorTemplate *tmpl = mgr.getSelectorTemplate(row.name);
        ASSERT_NE(tmpl, nullptr);
        EXPECT_EQ(std::tuple(tmpl->name(), tmpl->englishName()), std::tuple(row.name, row.english));
        EXPECT_EQ(tmpl->getNetworkTypes(), lower(row.networks));
        EXPECT_EQ(tmpl->ordered(), row.ordered);
    }
    const GZ_SelectorTemplate *all = mgr.getSelectorTemplate("alltypeselect");
    const GZ_SelectorTemplate *everything = mgr.getSelectorTemplate("everything");
    ASSERT_TRUE(all && everything);
    EXPECT_TRUE(all->supportsType("Dop"));
    EXPECT_FALSE(everything->supportsType("Dop"));
}

TEST(BuiltinTables, RowsAreRegisteredInCatalogueOrder)
{
    // The registration functions hand these to the registry front to back, 3D before 2D: the
    // sampled rows come in the same order.
    std::vector<std::string> expected, built;
    for (const ExpectedHandle &row : kExpectedHandles)
        expected.emplace_back(row.name);
    for (const auto &tmpl : gz::makeBuiltin3DHandles())
        built.push_back(tmpl->name());
    for (const auto &tmpl : gz::makeBuiltin2DHandles())
        built.push_back(tmpl->name());
    auto sampledInOrder =
        [](const std::vector<std::string> &all, const std::vector<std::string> &sample)
    {
        auto at = all.begin();
        for (const std::string &name : sample)
            if ((at = std::find(at, all.end(), name)) == all.end())
                return false;
        return true;
    };
    EXPECT_TRUE(sampledInOrder(built, expected));

    expected.clear();
    built.clear();
    for (const ExpectedSelector &row : kExpectedSelectors)
        expected.emplace_back(row.name);
    for (const auto &tmpl : gz::makeBuiltinSelectors())
        built.push_back(tmpl->name());
    EXPECT_TRUE(sampledInOrder(built, expected));
}

TEST(BuiltinTablesDeathTest, FirstConstructionRegistersEveryRowWithoutWarnings)
{
    // A fresh process, so that this construction is the first one even when other tests have
    // already created the manager. With warnings on, any repeated row name would print its
    // "already been registered" warning; the catalogues have none, so stderr stays empty.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            GZcreateResourceManager(/*print_warnings=*/true);
            GZ_ResourceManager *mgr = GZgetResourceManager();
            const bool ok = mgr && mgr->getOpHandleLinks().size() == 97u &&
                            mgr->containsSelector("scenegraphselect");
            std::exit(ok ? 0 : 1);
        },
        testing::ExitedWithCode(0), "^$");
}
