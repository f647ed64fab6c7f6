// gz_BuiltinHandles: the built-in 3D op-handle-link table, its registration and the list builders.
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_ResourceManager.h"
#include "resource/gz_BuiltinTables.h"

#include <cstdio>
#include <iterator>

namespace
{

// clang-format off

// The transform list. Rows that manipulate limits and parent transforms add the limit names
// (four per transform component) and "parent_xfo" with its sixteen matrix entries.
const char kTransformParms[] = "input tx ty tz rx ry rz sx sy sz shear_xy shear_xz shear_yz px py pz pivot_rx pivot_ry pivot_rz group_pivot uniform_scale trs_order xyz_order pivot_comp_tx pivot_comp_ty pivot_comp_tz pivot_comp_rx pivot_comp_ry pivot_comp_rz pivot_comp_sx pivot_comp_sy pivot_comp_sz pivot_comp_shear_xy pivot_comp_shear_xz pivot_comp_shear_yz pivot_comp_trs_order pivot_comp_xyz_order pivot_comp_in_obj_prexform onoff rpivotx rpivoty rpivotz rprex rprey rprez rpostx rposty rpostz roffsetx roffsety roffsetz spivotx spivoty spivotz soffsetx soffsety soffsetz";
const char kLimitComponents[] = "tx ty tz rx ry rz sx sy sz";
const char kLimitSuffixes[] = "_min_on _min _max_on _max";
const char kParentTransform[] = "parent_xfo";
constexpr int kParentTransformEntries = 16;

const char kCameraBaseParms[] = "px py pz tx ty tz rx ry rz sx sy sz uniform_scale rst_order xyz_order focal focus aperture near far xres yres pixelaspect winx winy winsizex winsizey winroll winpx winpy projection orthowidth lookat_enabled lookat_keepposition lookat_positionx lookat_positiony lookat_positionz lookat_prim_positionx lookat_prim_positiony lookat_prim_positionz lookat_prim_rotationx lookat_prim_rotationy lookat_prim_rotationz lookat lookat_upmethod lookat_upx lookat_upy lookat_upz lookat_twist shear_xy shear_xz shear_yz rpivotx rpivoty rpivotz rpostx rposty rpostz roffsetx roffsety roffsetz spivotx spivoty spivotz soffsetx soffsety soffsetz";

// Row-specific names, appended to the row's shared list (or standing alone).
const char kChopxformParms[] = "mode pmode invert";
const char kExtrudeParms[] = "gtx gty gtz grx gry grz gsx gsy gsz gshear_xy gshear_xz gshear_yz grst_order gxyz_order";
const char kExtrude2Parms[] = "xform_front";
const char kSoftxformParms[] = "localspace upx upy upz";
const char kMotionpathguideParms[] = "range_start range_end primary_range positions rotations times source_times key_times function action action_key action_frame action_source_frame";
const char kDynmotionpathParms[] = "input xform_parms multiparm_inst enforce_xform_limits rest_attrib jointconfig_attrib mode time time_override visibility";
const char kCameraParms[] = "fstop cropl cropr cropb cropt";
const char kLightParms[] = "coneangle coneanglefactor conedelta coneonoff light_type light_conefov spotlightdist";
const char kAgenteditParms[] = "t#x t#y t#z r#x r#y r#z s#x s#y s#z p#x p#y p#z trs_order# xyz_order# xform_space# mult_order#";
const char kLadderParms[] = "parm0 parm1 parm2 parm3 parm4 parm5 parm6 parm7 parm8 parm9";
const char kBoneParms[] = "length rx ry rz tx ty tz rst_order xyz_order cr_display cr_colorr cr_colorg cr_colorb cr_tx cr_ty cr_tz cr_topheight cr_toprx cr_topry cr_toprz cr_botheight cr_botrx cr_botry cr_botrz restx resty restz capt_length capt_tx capt_ty capt_tz capt_rx capt_ry capt_rz capt_sx capt_sy capt_sz";
const char kVectorParms[] = "input onoff vx vy vz twist scale tx ty tz";
const char kTranslateParms[] = "input tx ty tz onoff";
const char kHudsliderParms[] = "value onoff";
const char kAgentcollisionlayerParms[] = "offset#x offset#y offset#z r#x r#y r#z s#x s#y s#z p#x p#y p#z";
const char kAgentconfigurejointsParms[] = "num_limits offset#x offset#y offset#z r#x r#y r#z child_r#x child_r#y child_r#z begintwist_range# endtwist_range# beginup_range# endup_range# beginout_range# endout_range#";
const char kAngleParms[] = "input onoff px py pz tx ty tz rx ry rz trs_order xyz_order scale";
const char kBoundboundingboxParms[] = "centerx centery centerz sizex sizey sizez constant_scale uniform_scale rx ry rz onoff bound_type";
const char kBoundingboxParms[] = "centerx centery centerz sizex sizey sizez constant_scale uniform_scale rx ry rz onoff";
const char kBoundingrectParms[] = "centerx centery centerz sizex sizey sizez constant_scale uniform_scale rx ry rz onoff orient";
const char kBoundingtubeParms[] = "centerx centery centerz radius1 radius2 height radius_scale height_scale uniform_scale orient rx ry rz startposx startposy startposz endposx endposy endposz onoff";
const char kBoundParms[] = "tx ty tz sx sy sz onoff boundtype";
const char kCircleParms[] = "tx ty tz sx sy orient rx ry rz onoff";
const char kClayxlateParms[] = "input tx ty tz u v onoff";
const char kCurveParms[] = "input curvedata";
const char kCurvepointParms[] = "pointlist keepingeo";
const char kDistanceParms[] = "input dist onoff vx vy vz px py pz";
const char kDomainParms[] = "u0 v0 u1 v1 onoff input";
const char kFallbackvectorParms[] = "input onoff vx vy vz twist scale tx ty tz useval";
const char kFollowpathParms[] = "path position roll parm_type";
const char kIsosegment0Parms[] = "input knotu knotv width useu scale onoff_scale";
const char kIsosegment1Parms[] = "input knotu knotv width useu scale onoff_scale";
const char kLimitboundParms[] = "limitposx limitposy limitposz limitnegx limitnegy limitnegz boundtype";
const char kMousedragbumpParms[] = "value input";
const char kMousewheelbumpParms[] = "value";
const char kMousewheelradiusParms[] = "radius";
const char kMuscleParms[] = "full_sx full_sy full_sz pt1_sx pt1_sy pt1_sz pt2_sx pt2_sy pt2_sz pt2_pos pt3_sx pt3_sy pt3_sz pt3_pos pt4_sx pt4_sy pt4_sz pt4_pos pt5_sx pt5_sy pt5_sz";
const char kObjblendParms[] = "type weight1 weight2 weight3 weight4 sequence_seq sequence_constraint";
const char kPeakParms[] = "input dist radius onoff vx vy vz px py pz";
const char kPasterangeParms[] = "u0 v0 u1 v1 onoff input1 input2";
const char kPillParms[] = "orient tx ty tz rx ry rz sx sy sz topheight toprx topry toprz botheight botrx botry botrz zfactor rigadjtx rigadjty rigadjtz rigadjrx rigadjry rigadjrz rigadjsx rigadjsy rigadjsz rigadjzfactor corient ctx cty ctz crx cry crz csx csy csz ctopheight ctoprx ctopry ctoprz cbotheight cbotrx cbotry cbotrz czfactor colorr colorg colorb";
const char kPopvectorParms[] = "input onoff vx vy vz twist scale tx ty tz reftype refpath";
const char kProjectParms[] = "input onoff vx vy vz twist scale axis";
const char kRotateParms[] = "input tx ty tz rx ry rz px py pz trs_order xyz_order onoff";
const char kSphereParms[] = "tx ty tz sx sy sz orient rx ry rz onoff";
const char kStickyParms[] = "input tx ty tz rx ry rz px py pz trs_order xyz_order onoff";
const char kTorusParms[] = "tx ty tz sx sy orient rx ry rz onoff";
const char kTubeParms[] = "tx ty tz sx sy sz orient rx ry rz onoff";
const char kUisoparmParms[] = "input k onoff";
const char kVisoparmParms[] = "input k onoff";
const char kUveditParms[] = "input tx ty rz sx sy shear_xy px py trs_order xyz_order";
const char kUveditReversezParms[] = "input tx ty rz sx sy shear_xy px py trs_order xyz_order";
const char kUvflattenpinParms[] = "npins usepin# pin#prim pin#vertex pin#u pin#v";
const char kUvflattenpinxformParms[] = "npins usepin# pin#prim pin#vertex pin#u pin#v pin#refu pin#refv";
const char kUvpointParms[] = "input u v onoff rx ry rz sx sy sz px py pz";
const char kUvprojectParms[] = "tx ty tz rx ry rz sx sy sz px py pz trs_order xyz_order onoff projtype torrad";
const char kUvrangeParms[] = "tx ty tz rx ry rz sx sy sz px py pz trs_order xyz_order onoff projtype torrad u0 u1 v0 v1";
const char kUvunwrapParms[] = "input tx ty tz rx ry rz px py pz trs_order xyz_order onoff ref_input projplanes";
const char kUvxformParms[] = "input tx ty rz sx sy shear_xy px py group_pivot trs_order xyz_order onoff";
const char kBendcaptureParms[] = "input tx ty tz dirx diry dirz length upvectorcontrol upangle upx upy upz enablebend bendmode goaldirx goaldiry goaldirz bend enabletwist twist enablescale scale enabletaper taper squish squishpivot onoff enabledeform";
const char kBenddeformParms[] = "input tx ty tz dirx diry dirz length upvectorcontrol upangle upx upy upz enablebend bendmode goaldirx goaldiry goaldirz bend enabletwist twist enablescale scale enabletaper taper squish squishpivot onoff enabledeform";
const char kEditParms[] = "input inputtype tx ty tz rx ry rz sx sy sz shear_xy shear_xz shear_yz px py pz pivot_rx pivot_ry pivot_rz local_px local_py local_pz local_pivot_rx local_pivot_ry local_pivot_rz trs_order xyz_order pivot_comp_tx pivot_comp_ty pivot_comp_tz pivot_comp_rx pivot_comp_ry pivot_comp_rz pivot_comp_sx pivot_comp_sy pivot_comp_sz pivot_comp_shear_xy pivot_comp_shear_xz pivot_comp_shear_yz pivot_comp_trs_order pivot_comp_xyz_order local_pivot_comp_tx local_pivot_comp_ty local_pivot_comp_tz local_pivot_comp_rx local_pivot_comp_ry local_pivot_comp_rz local_pivot_comp_sx local_pivot_comp_sy local_pivot_comp_sz local_pivot_comp_shear_xy local_pivot_comp_shear_xz local_pivot_comp_shear_yz local_pivot_comp_trs_order local_pivot_comp_xyz_order handle_group_pivot dist switcher brushswitcher localspace upx upy upz";

// name, English name, network types, icon, shared list, own names, more own names, ethereal, display always
const gz_HandleRow kHandleRows[] = {
    {"agentcollisionlayer", "Agent Collision Layer", "Sop", "MGZ_agentcollisionlayer", gz_ParmBase::None, kAgentcollisionlayerParms, nullptr, 0, false},
    {"agentedit", "Agent Edit", "Sop", "MGZ_agentedit", gz_ParmBase::None, kAgenteditParms, nullptr, 0, false},
    {"agentconfigurejoints", "Agent Configure Joints", "Sop", "MGZ_agentconfigurejoints", gz_ParmBase::None, kAgentconfigurejointsParms, nullptr, 0, false},
    {"angle", "Angle", "Sop Object Dop Lop", "MGZ_angle", gz_ParmBase::None, kAngleParms, nullptr, 0, false},
    {"bboxvector", "Bounding Box Vector", "Sop Object Dop Lop", "MGZ_BBoxVector", gz_ParmBase::None, kVectorParms, nullptr, 0, false},
    {"bone", "Bone", "Sop Object Dop", "MGZ_bone", gz_ParmBase::None, kBoneParms, nullptr, 0, false},
    {"boundboundingbox", "Bounder Bounding Box", "Sop Object Dop Lop", "MGZ_bound", gz_ParmBase::None, kBoundboundingboxParms, nullptr, 0, false},
    {"boundingbox", "Bounding Box", "Sop Object Dop Lop", "MGZ_bound", gz_ParmBase::None, kBoundingboxParms, nullptr, 0, false},
    {"boundingrect", "Bounding Rectangle", "Sop Object Dop Lop", "MGZ_bound", gz_ParmBase::None, kBoundingrectParms, nullptr, 0, false},
    {"boundingtube", "Bounding Tube", "Sop Object Dop Lop", "MGZ_bound", gz_ParmBase::None, kBoundingtubeParms, nullptr, 0, false},
    {"bound", "Bounder", "Sop Object Dop Lop", "MGZ_bound", gz_ParmBase::None, kBoundParms, nullptr, 0, false},
    {"camera", "Camera", "Object Lop", "OBJ_camera", gz_ParmBase::Camera, kCameraParms, nullptr, 0, false},
    {"captureblend", "Capture Blend", "Object", "MGZ_captureblend", gz_ParmBase::None, nullptr, nullptr, 0, false},
    {"captureweight", "Capture Weight", "Sop Object Dop", "MGZ_captureweight", gz_ParmBase::None, nullptr, nullptr, 0, false},
    {"chopxform", "ChopTransformer", "Chop", "MGZ_xform", gz_ParmBase::TransformFull, kChopxformParms, nullptr, 0, false},
    {"circle", "Circle Transform", "Sop Object Dop Lop", "MGZ_circle", gz_ParmBase::None, kCircleParms, nullptr, 0, false},
    {"clayxlate", "Clay Translate", "Sop Object Dop", "MGZ_clayxlate", gz_ParmBase::None, kClayxlateParms, nullptr, 0, false},
    {"curve", "Curve", "Sop", "MGZ_curve", gz_ParmBase::None, kCurveParms, nullptr, 0, false},
    {"curvepoint", "Curve Point Options", "Sop Object Dop", "MGZ_curvepoint", gz_ParmBase::None, kCurvepointParms, nullptr, 0, false},
    {"distance", "Distance", "Sop Object Dop Lop", "MGZ_distance", gz_ParmBase::None, kDistanceParms, nullptr, 0, false},
    {"domain", "Domain", "Sop Object Dop", "MGZ_domain", gz_ParmBase::None, kDomainParms, nullptr, 0, false},
    {"edit", "Edit", "Sop Object Dop", "MGZ_edit", gz_ParmBase::None, kEditParms, nullptr, 0, false},
    {"extrude", "Extrude", "Sop Object Dop Lop", "MGZ_extrude", gz_ParmBase::TransformFull, kExtrudeParms, nullptr, 0, false},
    {"extrude2", "Extrude2", "Sop Object Dop Lop", "MGZ_extrude2", gz_ParmBase::TransformFull, kExtrude2Parms, nullptr, 0, false},
    {"fallbackvector", "Vector with Fallback", "Sop Object Dop", "MGZ_vector", gz_ParmBase::None, kFallbackvectorParms, nullptr, 0, false},
    {"followpath", "Follow Path", "Object Dop", "MGZ_followPath", gz_ParmBase::None, kFollowpathParms, nullptr, 0, false},
    {"hudslider", "HUD Slider", "Sop Object Dop Lop", "MGZ_hudslider", gz_ParmBase::None, kHudsliderParms, nullptr, 0, false},
    {"hudintslider", "HUD Int Slider", "Sop Object Dop Lop", "MGZ_hudslider", gz_ParmBase::None, kHudsliderParms, nullptr, 0, false},
    {"pose", "Pose", "Sop Object Dop", "MGZ_ikend", gz_ParmBase::None, nullptr, nullptr, 0, false},
    {"isosegment0", "Isoparm Segment", "Sop Object Dop", "MGZ_isosegment0", gz_ParmBase::None, kIsosegment0Parms, nullptr, 0, false},
    {"isosegment1", "Isoparm Segment", "Sop Object Dop", "MGZ_isosegment1", gz_ParmBase::None, kIsosegment1Parms, nullptr, 0, false},
    {"joint", "Joint", "Sop Object Dop", "MGZ_joint", gz_ParmBase::None, nullptr, nullptr, 0, false},
    {"ladder", "Ladder", "Sop Object Dop Cop2 Lop", "MGZ_ladder", gz_ParmBase::None, kLadderParms, nullptr, 2, false},
    {"light", "Light", "Object Lop", "OBJ_light", gz_ParmBase::Camera, kLightParms, nullptr, 0, false},
    {"limitbound", "Limit Bounder", "Sop Object Dop Lop", "MGZ_limitbound", gz_ParmBase::None, kLimitboundParms, nullptr, 0, false},
    {"lopxform", "LopTransformer", "Lop", "MGZ_xform", gz_ParmBase::TransformFull, nullptr, nullptr, 0, false},
    {"mousedragbump", "Mouse Drag Bump", "Sop Object Dop Lop", "MGZ_ladder", gz_ParmBase::None, kMousedragbumpParms, nullptr, 2, false},
    {"mousewheelbump", "Mouse Wheel Bump", "Sop Object Dop Lop", "MGZ_ladder", gz_ParmBase::None, kMousewheelbumpParms, nullptr, 2, false},
    {"mousewheelradius", "Mouse Wheel Radius", "Sop Object Dop Lop", "MGZ_ladder", gz_ParmBase::None, kMousewheelradiusParms, nullptr, 2, false},
    {"multixform", "Multi Transformer", "Sop Object Dop", "MGZ_multixform", gz_ParmBase::None, nullptr, nullptr, 0, false},
    {"muscle", "Muscle", "Sop Object Dop", "MGZ_muscle", gz_ParmBase::None, kMuscleParms, nullptr, 0, false},
    {"objblend", "Object Blend", "Object", "MGZ_objblend", gz_ParmBase::None, kObjblendParms, nullptr, 0, false},
    {"path", "Path", "Sop Object Dop", "MGZ_path", gz_ParmBase::None, nullptr, nullptr, 0, false},
    {"peak", "Peak", "Sop Object Dop Lop", "MGZ_peak", gz_ParmBase::None, kPeakParms, nullptr, 0, false},
    {"pasterange", "Paste Range", "Sop Object Dop", "MGZ_pasterange", gz_ParmBase::None, kPasterangeParms, nullptr, 0, false},
    {"pill", "Pill", "Sop Object Dop Lop", "MGZ_pill", gz_ParmBase::None, kPillParms, nullptr, 0, false},
    {"pivot", "Pivot", "Sop Object Dop Lop", "MGZ_pivot", gz_ParmBase::None, kTranslateParms, nullptr, 0, false},
    {"popvector", "POP Vector", "Pop", "MGZ_popvector", gz_ParmBase::None, kPopvectorParms, nullptr, 0, false},
    {"project", "Project", "Sop Object Dop Lop", "MGZ_project", gz_ParmBase::None, kProjectParms, nullptr, 0, false},
    {"rotate", "Rotate", "Sop Object Dop Lop", "MGZ_rotate", gz_ParmBase::None, kRotateParms, nullptr, 0, false},
    {"renderregion", "Render Region", "Object", "MGZ_RenderRegion", gz_ParmBase::None, nullptr, nullptr, 0, true},
    {"softxform", "SoftTransformer", "Sop Object Dop Lop", "MGZ_xform", gz_ParmBase::TransformFull, kSoftxformParms, nullptr, 0, false},
    {"sphere", "Sphere Transformer", "Sop Object Dop Lop", "MGZ_sphere", gz_ParmBase::None, kSphereParms, nullptr, 0, false},
    {"stepladder", "Step Ladder", "Sop Object Dop Cop2 Lop", "MGZ_stepladder", gz_ParmBase::None, kLadderParms, nullptr, 1, false},
    {"sticky", "Sticky", "Object", "MGZ_sticky", gz_ParmBase::None, kStickyParms, nullptr, 0, false},
    {"torus", "Torus Transformer", "Sop Object Dop Lop", "MGZ_torus", gz_ParmBase::None, kTorusParms, nullptr, 0, false},
    {"translate", "Translate", "Sop Object Dop Lop", "MGZ_translate", gz_ParmBase::None, kTranslateParms, nullptr, 0, false},
    {"tube", "Tube Transformer", "Sop Object Dop Lop", "MGZ_tube", gz_ParmBase::None, kTubeParms, nullptr, 0, false},
    {"uisoparm", "U Isoparm", "Sop Object Dop", "MGZ_uisoparm", gz_ParmBase::None, kUisoparmParms, nullptr, 0, false},
    {"visoparm", "V Isoparm", "Sop Object Dop", "MGZ_visoparm", gz_ParmBase::None, kVisoparmParms, nullptr, 0, false},
    {"uvedit", "UV Edit", "Sop Object Dop", "MGZ_uvedit", gz_ParmBase::None, kUveditParms, nullptr, 0, false},
    {"uvedit_reversez", "UV Edit", "Sop Object Dop", "MGZ_uvedit", gz_ParmBase::None, kUveditReversezParms, nullptr, 0, false},
    {"uvflattenpin", "UV Flatten Pin", "Sop", "MGZ_uvedit", gz_ParmBase::None, kUvflattenpinParms, nullptr, 0, false},
    {"uvflattenpinxform", "UV Flatten Pin Transform", "Sop", "MGZ_uvedit", gz_ParmBase::None, kUvflattenpinxformParms, nullptr, 0, false},
    {"uvpoint", "UV Point", "Sop Object Dop", "MGZ_uvpoint", gz_ParmBase::None, kUvpointParms, nullptr, 0, false},
    {"uvproject", "UV Project", "Sop Object Dop", "MGZ_uvproject", gz_ParmBase::None, kUvprojectParms, nullptr, 0, false},
    {"uvrange", "UV Range", "Sop Object Dop", "MGZ_uvrange", gz_ParmBase::None, kUvrangeParms, nullptr, 0, false},
    {"uvunwrap", "UV Unwrap", "Sop Object Dop", "MGZ_uvunwrap", gz_ParmBase::None, kUvunwrapParms, nullptr, 0, false},
    {"uvxform", "UV Transform", "Sop Object Dop", "MGZ_uvxform", gz_ParmBase::None, kUvxformParms, nullptr, 0, false},
    {"vector", "Vector", "Sop Object Dop Lop", "MGZ_vector", gz_ParmBase::None, kVectorParms, nullptr, 0, false},
    {"velocity", "Velocity", "Sop Object Dop Lop", "MGZ_velocity", gz_ParmBase::None, kVectorParms, nullptr, 0, false},
    {"xform", "Transformer", "Sop Object Dop Lop", "MGZ_xform", gz_ParmBase::TransformFull, nullptr, nullptr, 0, false},
    {"motionpath", "Motion Path", "Object", "MGZ_motionpath", gz_ParmBase::Transform, nullptr, nullptr, 0, false},
    {"motionpathguide", "Motion Path Guide", "Sop", "MGZ_motionpathguide", gz_ParmBase::Transform, kMotionpathguideParms, nullptr, 0, false},
    {"dynmotionpath", "Dynamic Motion Path", "Sop", "MGZ_dynmotionpath", gz_ParmBase::Transform, kMotionpathguideParms, kDynmotionpathParms, 0, false},
    {"bendcapture", "Bend Capture", "Sop Object Dop Lop", "MGZ_bendcapture", gz_ParmBase::None, kBendcaptureParms, nullptr, 0, false},
    {"benddeform", "Bend Deform", "Sop Object Dop Lop", "MGZ_benddeform", gz_ParmBase::None, kBenddeformParms, nullptr, 0, false},
};

// clang-format on

void appendTransformList(std::vector<std::string> &names, bool limits, bool parent_transform)
{
    gz::appendWords(names, kTransformParms);
    if (limits)
    {
        std::vector<std::string> components, suffixes;
        gz::appendWords(components, kLimitComponents);
        gz::appendWords(suffixes, kLimitSuffixes);
        for (const std::string &component : components)
            for (const std::string &suffix : suffixes)
                names.push_back(component + suffix);
    }
    if (parent_transform)
    {
        names.emplace_back(kParentTransform);
        for (int i = 0; i < kParentTransformEntries; ++i)
        {
            char entry[16];
            std::snprintf(entry, sizeof(entry), "%02d", i);
            names.push_back(kParentTransform + std::string(entry));
        }
    }
}

std::vector<std::string> rowParmNames(const gz_HandleRow &row)
{
    std::vector<std::string> names;
    switch (row.base)
    {
    case gz_ParmBase::None:
        break;
    case gz_ParmBase::Transform:
        appendTransformList(names, /*limits=*/false, /*parent_transform=*/false);
        break;
    case gz_ParmBase::TransformFull:
        appendTransformList(names, /*limits=*/true, /*parent_transform=*/true);
        break;
    case gz_ParmBase::Camera:
        gz::appendWords(names, kCameraBaseParms);
        break;
    }
    gz::appendWords(names, row.parms);
    gz::appendWords(names, row.moreParms);
    return names;
}

} // namespace

namespace gz
{

static bool isSeparator(char c)
{
    return c == ' ' || c == ',';
}

void appendWords(std::vector<std::string> &names, const char *words)
{
    if (!words)
        return;
    const char *p = words;
    while (*p)
    {
        while (isSeparator(*p))
            ++p;
        const char *start = p;
        while (*p && !isSeparator(*p))
            ++p;
        if (p > start)
            names.emplace_back(start, p);
    }
}

std::unique_ptr<GZ_GZTemplate> makeHandleTemplate(const char *name, const char *english_name,
                                                  const char *network_types, const char *icon_name,
                                                  const std::vector<std::string> &parm_names,
                                                  short ethereal, unsigned viewer_mask,
                                                  bool display_always)
{
    std::vector<const char *> list;
    list.reserve(parm_names.size() + 1);
    for (const std::string &parm : parm_names)
        list.push_back(parm.c_str());
    list.push_back(nullptr);
    return std::make_unique<GZ_GZTemplate>(name, english_name, network_types, icon_name,
                                           list.data(), ethereal, viewer_mask, display_always);
}

std::vector<std::unique_ptr<GZ_GZTemplate>> makeBuiltin3DHandles()
{
    // Every 3D handle is offered in every viewer.
    const unsigned all_viewers = ~0u;
    std::vector<std::unique_ptr<GZ_GZTemplate>> templates;
    templates.reserve(std::size(kHandleRows));
    for (const gz_HandleRow &row : kHandleRows)
        templates.push_back(makeHandleTemplate(row.name, row.englishName, row.networkTypes,
                                               row.iconName, rowParmNames(row), row.ethereal,
                                               all_viewers, row.displayAlways));
    return templates;
}

} // namespace gz

void GZ_ResourceManager::registerOpHandleLinks()
{
    for (std::unique_ptr<GZ_GZTemplate> &tmpl : gz::makeBuiltin3DHandles())
    {
        // The registry owns only what it accepts; a refused row is dropped here.
        if (registerOpHandleLink(tmpl.get()))
            tmpl.release();
    }
}
