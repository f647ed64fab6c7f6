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

// The expected rows are written out here independently of the library's own table sources, so
// a typing slip on either side shows up as a mismatch.

struct Expected3D
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
};

// clang-format off
const Expected3D kExpected3D[] = {
    {"agentcollisionlayer", "Agent Collision Layer", "Sop", "MGZ_agentcollisionlayer", 12, "offset#x", "p#z", 0, false},
    {"agentedit", "Agent Edit", "Sop", "MGZ_agentedit", 16, "t#x", "mult_order#", 0, false},
    {"agentconfigurejoints", "Agent Configure Joints", "Sop", "MGZ_agentconfigurejoints", 16, "num_limits", "endout_range#", 0, false},
    {"angle", "Angle", "Sop Object Dop Lop", "MGZ_angle", 14, "input", "scale", 0, false},
    {"bboxvector", "Bounding Box Vector", "Sop Object Dop Lop", "MGZ_BBoxVector", 10, "input", "tz", 0, false},
    {"bone", "Bone", "Sop Object Dop", "MGZ_bone", 37, "length", "capt_sz", 0, false},
    {"boundboundingbox", "Bounder Bounding Box", "Sop Object Dop Lop", "MGZ_bound", 13, "centerx", "bound_type", 0, false},
    {"boundingbox", "Bounding Box", "Sop Object Dop Lop", "MGZ_bound", 12, "centerx", "onoff", 0, false},
    {"boundingrect", "Bounding Rectangle", "Sop Object Dop Lop", "MGZ_bound", 13, "centerx", "orient", 0, false},
    {"boundingtube", "Bounding Tube", "Sop Object Dop Lop", "MGZ_bound", 20, "centerx", "onoff", 0, false},
    {"bound", "Bounder", "Sop Object Dop Lop", "MGZ_bound", 8, "tx", "boundtype", 0, false},
    {"camera", "Camera", "Object Lop", "OBJ_camera", 72, "px", "cropt", 0, false},
    {"captureblend", "Capture Blend", "Object", "MGZ_captureblend", 0, "", "", 0, false},
    {"captureweight", "Capture Weight", "Sop Object Dop", "MGZ_captureweight", 0, "", "", 0, false},
    {"chopxform", "ChopTransformer", "Chop", "MGZ_xform", 113, "input", "invert", 0, false},
    {"circle", "Circle Transform", "Sop Object Dop Lop", "MGZ_circle", 10, "tx", "onoff", 0, false},
    {"clayxlate", "Clay Translate", "Sop Object Dop", "MGZ_clayxlate", 7, "input", "onoff", 0, false},
    {"curve", "Curve", "Sop", "MGZ_curve", 2, "input", "curvedata", 0, false},
    {"curvepoint", "Curve Point Options", "Sop Object Dop", "MGZ_curvepoint", 2, "pointlist", "keepingeo", 0, false},
    {"distance", "Distance", "Sop Object Dop Lop", "MGZ_distance", 9, "input", "pz", 0, false},
    {"domain", "Domain", "Sop Object Dop", "MGZ_domain", 6, "u0", "input", 0, false},
    {"edit", "Edit", "Sop Object Dop", "MGZ_edit", 64, "input", "upz", 0, false},
    {"extrude", "Extrude", "Sop Object Dop Lop", "MGZ_extrude", 124, "input", "gxyz_order", 0, false},
    {"extrude2", "Extrude2", "Sop Object Dop Lop", "MGZ_extrude2", 111, "input", "xform_front", 0, false},
    {"fallbackvector", "Vector with Fallback", "Sop Object Dop", "MGZ_vector", 11, "input", "useval", 0, false},
    {"followpath", "Follow Path", "Object Dop", "MGZ_followPath", 4, "path", "parm_type", 0, false},
    {"hudslider", "HUD Slider", "Sop Object Dop Lop", "MGZ_hudslider", 2, "value", "onoff", 0, false},
    {"hudintslider", "HUD Int Slider", "Sop Object Dop Lop", "MGZ_hudslider", 2, "value", "onoff", 0, false},
    {"pose", "Pose", "Sop Object Dop", "MGZ_ikend", 0, "", "", 0, false},
    {"isosegment0", "Isoparm Segment", "Sop Object Dop", "MGZ_isosegment0", 7, "input", "onoff_scale", 0, false},
    {"isosegment1", "Isoparm Segment", "Sop Object Dop", "MGZ_isosegment1", 7, "input", "onoff_scale", 0, false},
    {"joint", "Joint", "Sop Object Dop", "MGZ_joint", 0, "", "", 0, false},
    {"ladder", "Ladder", "Sop Object Dop Cop2 Lop", "MGZ_ladder", 10, "parm0", "parm9", 2, false},
    {"light", "Light", "Object Lop", "OBJ_light", 74, "px", "spotlightdist", 0, false},
    {"limitbound", "Limit Bounder", "Sop Object Dop Lop", "MGZ_limitbound", 7, "limitposx", "boundtype", 0, false},
    {"lopxform", "LopTransformer", "Lop", "MGZ_xform", 110, "input", "parent_xfo15", 0, false},
    {"mousedragbump", "Mouse Drag Bump", "Sop Object Dop Lop", "MGZ_ladder", 2, "value", "input", 2, false},
    {"mousewheelbump", "Mouse Wheel Bump", "Sop Object Dop Lop", "MGZ_ladder", 1, "value", "value", 2, false},
    {"mousewheelradius", "Mouse Wheel Radius", "Sop Object Dop Lop", "MGZ_ladder", 1, "radius", "radius", 2, false},
    {"multixform", "Multi Transformer", "Sop Object Dop", "MGZ_multixform", 0, "", "", 0, false},
    {"muscle", "Muscle", "Sop Object Dop", "MGZ_muscle", 21, "full_sx", "pt5_sz", 0, false},
    {"objblend", "Object Blend", "Object", "MGZ_objblend", 7, "type", "sequence_constraint", 0, false},
    {"path", "Path", "Sop Object Dop", "MGZ_path", 0, "", "", 0, false},
    {"peak", "Peak", "Sop Object Dop Lop", "MGZ_peak", 10, "input", "pz", 0, false},
    {"pasterange", "Paste Range", "Sop Object Dop", "MGZ_pasterange", 7, "u0", "input2", 0, false},
    {"pill", "Pill", "Sop Object Dop Lop", "MGZ_pill", 51, "orient", "colorb", 0, false},
    {"pivot", "Pivot", "Sop Object Dop Lop", "MGZ_pivot", 5, "input", "onoff", 0, false},
    {"popvector", "POP Vector", "Pop", "MGZ_popvector", 12, "input", "refpath", 0, false},
    {"project", "Project", "Sop Object Dop Lop", "MGZ_project", 8, "input", "axis", 0, false},
    {"rotate", "Rotate", "Sop Object Dop Lop", "MGZ_rotate", 13, "input", "onoff", 0, false},
    {"renderregion", "Render Region", "Object", "MGZ_RenderRegion", 0, "", "", 0, true},
    {"softxform", "SoftTransformer", "Sop Object Dop Lop", "MGZ_xform", 114, "input", "upz", 0, false},
    {"sphere", "Sphere Transformer", "Sop Object Dop Lop", "MGZ_sphere", 11, "tx", "onoff", 0, false},
    {"stepladder", "Step Ladder", "Sop Object Dop Cop2 Lop", "MGZ_stepladder", 10, "parm0", "parm9", 1, false},
    {"sticky", "Sticky", "Object", "MGZ_sticky", 13, "input", "onoff", 0, false},
    {"torus", "Torus Transformer", "Sop Object Dop Lop", "MGZ_torus", 10, "tx", "onoff", 0, false},
    {"translate", "Translate", "Sop Object Dop Lop", "MGZ_translate", 5, "input", "onoff", 0, false},
    {"tube", "Tube Transformer", "Sop Object Dop Lop", "MGZ_tube", 11, "tx", "onoff", 0, false},
    {"uisoparm", "U Isoparm", "Sop Object Dop", "MGZ_uisoparm", 3, "input", "onoff", 0, false},
    {"visoparm", "V Isoparm", "Sop Object Dop", "MGZ_visoparm", 3, "input", "onoff", 0, false},
    {"uvedit", "UV Edit", "Sop Object Dop", "MGZ_uvedit", 11, "input", "xyz_order", 0, false},
    {"uvedit_reversez", "UV Edit", "Sop Object Dop", "MGZ_uvedit", 11, "input", "xyz_order", 0, false},
    {"uvflattenpin", "UV Flatten Pin", "Sop", "MGZ_uvedit", 6, "npins", "pin#v", 0, false},
    {"uvflattenpinxform", "UV Flatten Pin Transform", "Sop", "MGZ_uvedit", 8, "npins", "pin#refv", 0, false},
    {"uvpoint", "UV Point", "Sop Object Dop", "MGZ_uvpoint", 13, "input", "pz", 0, false},
    {"uvproject", "UV Project", "Sop Object Dop", "MGZ_uvproject", 17, "tx", "torrad", 0, false},
    {"uvrange", "UV Range", "Sop Object Dop", "MGZ_uvrange", 21, "tx", "v1", 0, false},
    {"uvunwrap", "UV Unwrap", "Sop Object Dop", "MGZ_uvunwrap", 15, "input", "projplanes", 0, false},
    {"uvxform", "UV Transform", "Sop Object Dop", "MGZ_uvxform", 13, "input", "onoff", 0, false},
    {"vector", "Vector", "Sop Object Dop Lop", "MGZ_vector", 10, "input", "tz", 0, false},
    {"velocity", "Velocity", "Sop Object Dop Lop", "MGZ_velocity", 10, "input", "tz", 0, false},
    {"xform", "Transformer", "Sop Object Dop Lop", "MGZ_xform", 110, "input", "parent_xfo15", 0, false},
    {"motionpath", "Motion Path", "Object", "MGZ_motionpath", 57, "input", "soffsetz", 0, false},
    {"motionpathguide", "Motion Path Guide", "Sop", "MGZ_motionpathguide", 70, "input", "action_source_frame", 0, false},
    {"dynmotionpath", "Dynamic Motion Path", "Sop", "MGZ_dynmotionpath", 80, "input", "visibility", 0, false},
    {"bendcapture", "Bend Capture", "Sop Object Dop Lop", "MGZ_bendcapture", 29, "input", "enabledeform", 0, false},
    {"benddeform", "Bend Deform", "Sop Object Dop Lop", "MGZ_benddeform", 29, "input", "enabledeform", 0, false},
};
// clang-format on

struct Expected2D
{
    const char *name;
    const char *english;
    const char *icon;
    unsigned viewerMask;
    size_t parmCount;
    const char *firstParm;
    const char *lastParm;
};

// clang-format off
const Expected2D kExpected2D[] = {
    {"composite2d", "Composite", "IM_Composite", 1, 10, "units", "op"},
    {"crop2d", "Crop", "IM_Crop", 1, 9, "units", "onoff"},
    {"curvepoint2d", "Curve Point", "IM_Translate", 4, 3, "u", "weight"},
    {"framerange2d", "Frame Range", "IM_FrameRange", 2, 6, "start", "postlength"},
    {"hueshift2d", "Hueshift", "IM_Hueshift", 4, 2, "hue", "onoff"},
    {"intensity2d", "Intensity", "IM_Intensity", 4, 2, "value", "onoff"},
    {"point2d", "Point", "IM_Translate", 1, 8, "units", "colora"},
    {"ramp2d", "Ramp 2D", "IM_Ramp", 1, 13, "ramptype", "interp"},
    {"res2d", "Resolution 2D", "IM_Resolution", 1, 2, "xres", "yres"},
    {"rotate2d", "Rotate 2D", "IM_Rotate", 1, 5, "units", "multiplier"},
    {"saturation2d", "Saturation", "IM_Saturation", 4, 2, "sat", "onoff"},
    {"shift2d", "Shift", "IM_Shift", 2, 4, "shift", "inputmode"},
    {"shuffle2d", "Shuffle", "IM_Shuffle", 2, 1, "shuffle", "shuffle"},
    {"splinepoint2d", "Spline Point", "IM_Rotospline", 1, 19, "type", "py"},
    {"subrange2d", "Sub Range", "IM_SubRange", 2, 5, "start", "rangetype"},
    {"transform2d", "Transform", "IM_Translate", 1, 8, "units", "r"},
    {"translate2d", "Translate", "IM_Translate", 1, 5, "units", "inputres"},
    {"trim2d", "Trim", "IM_Translate", 2, 4, "start", "trimmode"},
    {"upos2d", "U Pos", "IM_UPos", 1, 3, "units", "onoff"},
    {"vpos2d", "V Pos", "IM_VPos", 1, 3, "units", "onoff"},
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
    {"points", "Points", "Sop", false},
    {"edges", "Edges", "Sop", false},
    {"breakpoints", "Breakpoints", "Sop", false},
    {"prims_edges", "Primitives or Edges", "Sop", false},
    {"edges_points", "Points or Edges", "Sop", true},
    {"points_vertices", "Points or Vertices", "Sop", false},
    {"prims_points", "Primitives or Points", "Sop", false},
    {"prims_points_edges", "Primitives or Points or Edges", "Sop", false},
    {"attribs", "Geometry With Attributes", "Sop", false},
    {"guess_vert_pt_prim", "Guess, Vertices, Points, or Primitives", "Sop", false},
    {"ordered_attribs", "Ordered Geometry With Attributes", "Sop", true},
    {"uvselect", "Geometry With UV Attributes", "Sop", false},
    {"everything", "All Geometry Types", "Sop", false},
    {"ordered_all", "Ordered Inputs Selector", "Sop", true},
    {"ordered_prims", "Ordered Prims Selector", "Sop", true},
    {"ordered_points", "Ordered Points Selector", "Sop", true},
    {"ordered_prims_edges", "Ordered Primitives or Edges", "Sop", true},
    {"ordered_prims_points", "Ordered Primitives or Points", "Sop", true},
    {"ordered_prims_points_edges", "Ordered Primitives or Points or Edges", "Sop", true},
    {"ordered_prims_points_edges_verts", "Ordered Primitives, Points, Edges, or Vertices", "Sop", true},
    {"paintselect", "Paint Selector", "Sop", false},
    {"slidemodifierpaintselect", "Slide Modifier Paint Selector", "Sop", false},
    {"combselect", "Comb Selector", "Sop", false},
    {"capturelayerpaintselect", "CaptureLayerPaint Selector", "Sop", false},
    {"capturepaintselect", "CapturePaint Selector", "Sop", false},
    {"sculptselect", "Sculpt Selector", "Sop", false},
    {"uvbrushselect", "UV Brush Selector", "Sop", false},
    {"curveclay", "CurveClay Input Selector", "Sop", false},
    {"deleter", "Delete Input Selector", "Sop", false},
    {"editselect", "Edit Selector", "Sop", false},
    {"joiner", "Join Input Selector", "Sop", false},
    {"uvflattenpinselect", "UV Flatten Pin Selector", "Sop", false},
    {"uvpeltselect", "UV Pelt Input Selector", "Sop", false},
    {"uvpeltselect2", "UV Pelt Input Selector", "Sop", false},
    {"lattice", "Lattice Input Selector", "Sop", false},
    {"uveditselect", "UV Edit Selector", "Sop", false},
    {"grouppaintselect", "Group Paint Selector", "Sop", false},
    {"objselect", "Object Selector", "Object", false},
    {"objlocate", "Object Locator", "Object", false},
    {"objpoint", "Object Point Selector", "Object", false},
    {"dopobjects", "Dop Object Selector", "Dop", false},
    {"dopselect", "Dop Selector", "Dop", false},
    {"scriptselect", "Scripted Component Selector", "Sop", false},
    {"scriptobjselect", "Scripted Object Selector", "Object", false},
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

TEST(BuiltinHandleTable, RegistersEvery3DRowWithItsColumns)
{
    GZ_ResourceManager &mgr = manager();
    ASSERT_EQ(std::size(kExpected3D), 77u);
    for (const Expected3D &row : kExpected3D)
    {
        SCOPED_TRACE(row.name);
        const GZ_GZTemplate *tmpl = mgr.getOpHandleLinkTemplate(row.name);
        ASSERT_NE(tmpl, nullptr);
        EXPECT_EQ(tmpl->name(), row.name);
        EXPECT_EQ(tmpl->englishName(), row.english);
        EXPECT_EQ(tmpl->getNetworkTypes(), lower(row.networks));
        EXPECT_EQ(tmpl->iconName(), row.icon);
        EXPECT_EQ(tmpl->parmNameList().size(), row.parmCount);
        EXPECT_EQ(firstOf(tmpl->parmNameList()), row.firstParm);
        EXPECT_EQ(lastOf(tmpl->parmNameList()), row.lastParm);
        EXPECT_EQ(tmpl->getEthereal(), row.ethereal);
        EXPECT_EQ(tmpl->getViewerMask(), 0xffffffffu);
        EXPECT_EQ(tmpl->isDisplayAlways(), row.displayAlways);
        EXPECT_EQ(tmpl->constructor(), nullptr);
    }
}

TEST(BuiltinHandleTable, RegistersEvery2DRowWithItsColumns)
{
    GZ_ResourceManager &mgr = manager();
    ASSERT_EQ(std::size(kExpected2D), 20u);
    for (const Expected2D &row : kExpected2D)
    {
        SCOPED_TRACE(row.name);
        const GZ_GZTemplate *tmpl = mgr.getOpHandleLinkTemplate(row.name);
        ASSERT_NE(tmpl, nullptr);
        EXPECT_EQ(tmpl->englishName(), row.english);
        EXPECT_EQ(tmpl->getNetworkTypes(), "cop2");
        EXPECT_EQ(tmpl->iconName(), row.icon);
        EXPECT_EQ(tmpl->parmNameList().size(), row.parmCount);
        EXPECT_EQ(firstOf(tmpl->parmNameList()), row.firstParm);
        EXPECT_EQ(lastOf(tmpl->parmNameList()), row.lastParm);
        EXPECT_EQ(tmpl->getEthereal(), 0);
        EXPECT_EQ(tmpl->getViewerMask(), row.viewerMask);
        EXPECT_FALSE(tmpl->isDisplayAlways());
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
    EXPECT_EQ(x[0], "input");
    EXPECT_EQ(x[37], "pivot_comp_in_obj_prexform");
    EXPECT_EQ(x[56], "soffsetz");
    const std::vector<std::string> limits_of_tx_ty = {"tx_min_on", "tx_min", "tx_max_on", "tx_max",
                                                      "ty_min_on"};
    EXPECT_EQ(std::vector<std::string>(x.begin() + 57, x.begin() + 62), limits_of_tx_ty);
    EXPECT_EQ(x[92], "sz_max");
    EXPECT_EQ(x[93], "parent_xfo");
    EXPECT_EQ(x[94], "parent_xfo00");
    EXPECT_EQ(x[103], "parent_xfo09");
    EXPECT_EQ(x[104], "parent_xfo10");
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

TEST(BuiltinSelectorTable, RegistersEveryRowWithItsColumns)
{
    GZ_ResourceManager &mgr = manager();
    ASSERT_EQ(std::size(kExpectedSelectors), 47u);
    for (const ExpectedSelector &row : kExpectedSelectors)
    {
        SCOPED_TRACE(row.name);
        const GZ_SelectorTemplate *tmpl = mgr.getSelectorTemplate(row.name);
        ASSERT_NE(tmpl, nullptr);
        EXPECT_EQ(tmpl->name(), row.name);
        EXPECT_EQ(tmpl->englishName(), row.english);
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
    // The registration functions hand these to the registry front to back, 3D before 2D.
    std::vector<std::string> expected, built;
    for (const Expected3D &row : kExpected3D)
        expected.emplace_back(row.name);
    for (const Expected2D &row : kExpected2D)
        expected.emplace_back(row.name);
    for (const auto &tmpl : gz::makeBuiltin3DHandles())
        built.push_back(tmpl->name());
    for (const auto &tmpl : gz::makeBuiltin2DHandles())
        built.push_back(tmpl->name());
    EXPECT_EQ(built, expected);

    expected.clear();
    built.clear();
    for (const ExpectedSelector &row : kExpectedSelectors)
        expected.emplace_back(row.name);
    for (const auto &tmpl : gz::makeBuiltinSelectors())
        built.push_back(tmpl->name());
    EXPECT_EQ(built, expected);
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
            bool all_selectors = mgr != nullptr;
            for (const ExpectedSelector &row : kExpectedSelectors)
                all_selectors = all_selectors && mgr->containsSelector(row.name);
            const bool ok = all_selectors && mgr->getOpHandleLinks().size() == 97u;
            std::exit(ok ? 0 : 1);
        },
        testing::ExitedWithCode(0), "^$");
}
