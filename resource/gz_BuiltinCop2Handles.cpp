// gz_BuiltinCop2Handles: the built-in 2D compositing op-handle-link table and its registration.
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_ResourceManager.h"
#include "resource/gz_BuiltinTables.h"

#include <iterator>

namespace
{

// clang-format off

// name, English name, icon, viewer mask, parameter names
const gz_Handle2DRow kHandle2DRows[] = {
    {"composite2d", "Composite", "IM_Composite", 1, "units, tx, ty, sx, sy, px, py, rot, wrap, op"},
    {"crop2d", "Crop", "IM_Crop", 1, "units, method, u1, v1, u2, v2, tx, ty, onoff"},
    {"curvepoint2d", "Curve Point", "IM_Translate", 4, "u, v, weight"},
    {"framerange2d", "Frame Range", "IM_FrameRange", 2, "start, length, premode, postmode, prelength, postlength"},
    {"hueshift2d", "Hueshift", "IM_Hueshift", 4, "hue, onoff"},
    {"intensity2d", "Intensity", "IM_Intensity", 4, "value, onoff"},
    {"point2d", "Point", "IM_Translate", 1, "units, u, v, weight, colorr, colorg, colorb, colora"},
    {"ramp2d", "Ramp 2D", "IM_Ramp", 1, "ramptype, cycles, phase, rotation, centerx, centery, enable, pos, colorr, colorg, colorb, colora, interp"},
    {"res2d", "Resolution 2D", "IM_Resolution", 1, "xres, yres"},
    {"rotate2d", "Rotate 2D", "IM_Rotate", 1, "units, pu, pv, rot, multiplier"},
    {"saturation2d", "Saturation", "IM_Saturation", 4, "sat, onoff"},
    {"shift2d", "Shift", "IM_Shift", 2, "shift, units, shiftmode, inputmode"},
    {"shuffle2d", "Shuffle", "IM_Shuffle", 2, "shuffle"},
    {"splinepoint2d", "Spline Point", "IM_Rotospline", 1, "type, fill, numpoints, tie, posx, posy, s1x, s1y, s2x, s2y, thickness, feather, tx, ty, rz, sx, sy, px, py"},
    {"subrange2d", "Sub Range", "IM_SubRange", 2, "start, end, prelength, postlength, rangetype"},
    {"transform2d", "Transform", "IM_Translate", 1, "units, tx, ty, sx, sy, px, py, r"},
    {"translate2d", "Translate", "IM_Translate", 1, "units, u, v, onoff, inputres"},
    {"trim2d", "Trim", "IM_Translate", 2, "start, end, units, trimmode"},
    {"upos2d", "U Pos", "IM_UPos", 1, "units, u, onoff"},
    {"vpos2d", "V Pos", "IM_VPos", 1, "units, v, onoff"},
};

// clang-format on

} // namespace

namespace gz
{

std::vector<std::unique_ptr<GZ_GZTemplate>> makeBuiltin2DHandles()
{
    std::vector<std::unique_ptr<GZ_GZTemplate>> templates;
    templates.reserve(std::size(kHandle2DRows));
    for (const gz_Handle2DRow &row : kHandle2DRows)
    {
        std::vector<std::string> names;
        appendWords(names, row.parms);
        templates.push_back(makeHandleTemplate(row.name, row.englishName, "Cop2", row.iconName,
                                               names, /*ethereal=*/0, row.viewerMask,
                                               /*display_always=*/false));
    }
    return templates;
}

} // namespace gz

void GZ_ResourceManager::registerCop2HandleLinks()
{
    for (std::unique_ptr<GZ_GZTemplate> &tmpl : gz::makeBuiltin2DHandles())
    {
        // The registry owns only what it accepts; a refused row is dropped here.
        if (registerOpHandleLink(tmpl.get()))
            tmpl.release();
    }
}
