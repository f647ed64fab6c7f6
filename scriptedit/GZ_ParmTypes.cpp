// The data-type table of parameter definitions and the host-type to label mapping.
#include "scriptedit/GZ_EditScriptedParm.h"

#include "host/HostParmTemplate.h"
#include "host/HostSpareData.h"

#include <cstring>
#include <string>
#include <unordered_map>

namespace
{
using T = HostParmType;

constexpr HostParmType DIRECTORY_TYPE{HostParmBasic::String, T::DIRECTORY};
constexpr HostParmType IMAGE_TYPE{HostParmBasic::String, T::FILE | T::IMAGE_FILE};
constexpr HostParmType GEO_FILE_TYPE{HostParmBasic::String, T::FILE | T::GEOMETRY_FILE};
constexpr HostParmType RGBA_MASK_TYPE{HostParmBasic::Ordinal, T::RGBA_MASK};
constexpr HostParmType LOG_FLOAT_TYPE{HostParmBasic::Float, T::ANIMATABLE | T::LOGARITHMIC};
constexpr HostParmType LOG_INT_TYPE{HostParmBasic::Float,
                                    T::ANIMATABLE | T::INTEGER | T::LOGARITHMIC};
constexpr HostParmType MINMAX_TYPE{HostParmBasic::Float, T::ANIMATABLE | T::NAME_MINMAX};
constexpr HostParmType INT_MINMAX_TYPE{HostParmBasic::Float,
                                       T::ANIMATABLE | T::INTEGER | T::NAME_MINMAX};
constexpr HostParmType BUTTON_STRIP_TYPE{HostParmBasic::Ordinal, T::BUTTON_STRIP};
constexpr HostParmType ICON_STRIP_TYPE{HostParmBasic::Ordinal, T::ICON_STRIP};
} // namespace

// clang-format off
// Component-name columns.
#define GZ_N5_16 "5", "6", "7", "8", "9", "10", "11", "12", "13", "14", "15", "16"
#define GZ_NUMS {"1", "2", "3", "4", GZ_N5_16}
#define GZ_XYZW {"x", "y", "z", "w", GZ_N5_16}
#define GZ_UVW {"u", "v", "w", "4", GZ_N5_16}
#define GZ_XYZ {"x", "y", "z", "4", GZ_N5_16}
#define GZ_RGBA {"r", "g", "b", "a", GZ_N5_16}
#define GZ_BEGIN_END {"begin", "end", "3", "4", GZ_N5_16}
#define GZ_MINMAX {"min", "max", "3", "4", GZ_N5_16}
#define GZ_NUMS4 {"1", "2", "3", "4"}

const GZ_EditScriptedParm::GZ_ParmType GZ_EditScriptedParm::theParmTypes[] = {
    {"Integer", "integer", HOST_PARM_INT, "DATATYPES_int", -1, 1, 0, 1, 0, 10, "0", GZ_NUMS, 1},
    {"Float", "float", HOST_PARM_FLOAT, "DATATYPES_float", -1, 0, 0, 1, 0, 10, "0", GZ_NUMS, 1},
    {"Float Vector 2", "vector2", HOST_PARM_XYZ, "DATATYPES_vector2", 2, 0, 0, 1, -1, 1, "0",
     GZ_XYZW, 1},
    {"Float Vector 3", "vector", HOST_PARM_XYZ, "DATATYPES_vector", 3, 0, 0, 1, -1, 1, "0",
     GZ_XYZW, 1},
    {"Float Vector 4", "vector4", HOST_PARM_XYZ, "DATATYPES_vector4", 4, 0, 0, 1, -1, 1, "0",
     GZ_XYZW, 1},
    {"Integer Vector 2", "intvector2", HOST_PARM_INT_XYZ, "DATATYPES_int_vector2", 2, 0, 0, 1,
     -1, 1, "0", GZ_XYZW, 1},
    {"Integer Vector 3", "intvector", HOST_PARM_INT_XYZ, "DATATYPES_int_vector", 3, 0, 0, 1, -1,
     1, "0", GZ_XYZW, 1},
    {"Integer Vector 4", "intvector4", HOST_PARM_INT_XYZ, "DATATYPES_int_vector4", 4, 0, 0, 1,
     -1, 1, "0", GZ_XYZW, 1},
    {"UV", "uv", HOST_PARM_UVW, "DATATYPES_uv", 2, 0, 0, 1, 0, 1, "0", GZ_UVW, 1},
    {"UVW", "uvw", HOST_PARM_UVW, "DATATYPES_uvw", 3, 0, 0, 1, 0, 1, "0", GZ_UVW, 1},
    {"Toggle", "toggle", HOST_PARM_TOGGLE, "DATATYPES_boolean", 1, 0, 0, 0, 0, 1, "0", GZ_NUMS,
     0},
    {"Ordered Menu", "ordinal", HOST_PARM_MENU, "DATATYPES_ordinal_menu", 1, 1, 0, 0, 0, 1, "0",
     GZ_NUMS, 0},
    {"Button", "button", HOST_PARM_BUTTON, "DATATYPES_button", 1, 1, 0, 0, 0, 1, "0", GZ_NUMS,
     0},
    {"Angle", "angle", HOST_PARM_ANGLE, "DATATYPES_angle", -1, 0, 0, 1, 0, 360, "0",
     GZ_BEGIN_END, 1},
    {"Direction Vector", "direction", HOST_PARM_DIRECTION, "DATATYPES_direction_vector", 3, 0, 0,
     1, 0, 1, "0", GZ_XYZ, 1},
    {"Color", "color", HOST_PARM_RGB, "DATATYPES_rgb", 3, 0, 0, 1, 0, 1, "1", GZ_RGBA, 1},
    {"Color and Alpha", "color4", HOST_PARM_RGBA, "DATATYPES_rgba", 4, 0, 0, 1, 0, 1, "1",
     GZ_RGBA, 1},
    {"Ramp (Float)", "ramp_flt", HOST_PARM_INT, "DATATYPES_ramp", 1, 0, 0, 0, 0, 1, "2", GZ_NUMS,
     0},
    {"Ramp (Color)", "ramp_rgb", HOST_PARM_INT, "DATATYPES_ramp", 1, 0, 0, 0, 0, 1, "2", GZ_NUMS,
     0},
    {"String", "string", HOST_PARM_STRING, "DATATYPES_string", -1, 1, 1, 0, 0, 1, "", GZ_NUMS, 0},
    {"File", "file", HOST_PARM_FILE, "DATATYPES_file", 1, 1, 1, 0, 0, 1, "", GZ_NUMS, 0},
    {"File - Directory", "directory", DIRECTORY_TYPE, "DATATYPES_directory", 1, 1, 1, 0, 0, 1, "",
     GZ_NUMS, 0},
    {"File - Image", "image", IMAGE_TYPE, "DATATYPES_image_file", 1, 1, 1, 0, 0, 1, "", GZ_NUMS,
     0},
    {"File - Geometry", "geometry", GEO_FILE_TYPE, "DATATYPES_geo_file", 1, 1, 1, 0, 0, 1, "",
     GZ_NUMS, 0},
    {"Operator Path", "oppath", HOST_PARM_STRING, "DATATYPES_node_path", 1, 1, 1, 0, 0, 1, "",
     GZ_NUMS, 0},
    {"Operator List", "oplist", HOST_PARM_STRING, "DATATYPES_node_list", 1, 1, 1, 0, 0, 1, "",
     GZ_NUMS, 0},
    {"Label", "label", HOST_PARM_LABEL, "DATATYPES_label", -1, 0, 1, 0, 0, 1, "", GZ_NUMS4, 0},
    {"Label - Heading", "heading", HOST_PARM_LABEL, "DATATYPES_label", -1, 0, 1, 0, 0, 1, "",
     GZ_NUMS4, 0},
    {"Label - Message", "message", HOST_PARM_LABEL, "DATATYPES_label", -1, 0, 1, 0, 0, 1, "",
     GZ_NUMS4, 0},
    {"Separator", "separator", HOST_PARM_SEPARATOR, "DATATYPES_separator", 0, 0, 1, 0, 0, 1, "",
     GZ_NUMS4, 0},
    {"Spacer", "spacer", HOST_PARM_SEPARATOR, "DATATYPES_separator", 0, 0, 1, 0, 0, 1, "",
     GZ_NUMS4, 0},
    {"RGBA Mask", "rgbamask", RGBA_MASK_TYPE, "DATATYPES_rgba_mask", 1, 0, 0, 1, 0, 15, "15",
     GZ_NUMS, 0},
    {"Folder", "group", HOST_PARM_INT, "DATATYPES_folder", 1, 0, 0, 0, 0, 1, "0", GZ_NUMS, 1},
    {"Logarithmic Float", "log", LOG_FLOAT_TYPE, "DATATYPES_float_log", -1, 0, 0, 1, 0.01f, 10,
     "1", GZ_NUMS, 1},
    {"Logarithmic Integer", "intlog", LOG_INT_TYPE, "DATATYPES_int_log", -1, 0, 0, 1, 1, 1000, "1",
     GZ_NUMS, 1},
    {"Data", "data", HOST_PARM_DATA, "DATATYPES_data", -1, 0, 0, 0, 0, 1, "", GZ_NUMS, 0},
    {"Geometry Data", "geometrydata", HOST_PARM_DATA, "DATATYPES_geometrydata", -1, 0, 0, 0, 0, 1,
     "", GZ_NUMS, 0},
    {"Key-Value Dictionary", "keyvaluedict", HOST_PARM_DATA, "DATATYPES_keyvaluedict", 1, 0, 0, 0,
     0, 1, "", GZ_NUMS, 0},
    {"Min/Max Float", "float_minmax", MINMAX_TYPE, "DATATYPES_float_minmax", 2, 0, 0, 1, 0, 10,
     "0", GZ_MINMAX, 1},
    {"Min/Max Integer", "int_minmax", INT_MINMAX_TYPE, "DATATYPES_int_minmax", 2, 0, 0, 1, 0, 10,
     "0", GZ_MINMAX, 1},
    {"Button Strip", "buttonstrip", BUTTON_STRIP_TYPE, "DATATYPES_buttonstrip", 1, 1, 0, 1, 0, 1,
     "0", GZ_NUMS, 0},
    {"Icon Strip", "iconstrip", ICON_STRIP_TYPE, "DATATYPES_iconstrip", 1, 1, 0, 1, 0, 1, "0",
     GZ_NUMS, 0},
    {nullptr, nullptr, HOST_PARM_STRING, nullptr, 0, 0, 0, 0, 0, 0, nullptr, {}, 0},
};

#undef GZ_N5_16
#undef GZ_NUMS
#undef GZ_XYZW
#undef GZ_UVW
#undef GZ_XYZ
#undef GZ_RGBA
#undef GZ_BEGIN_END
#undef GZ_MINMAX
#undef GZ_NUMS4
// clang-format on

int GZ_EditScriptedParm::getNumParmTypes()
{
    return static_cast<int>(sizeof(theParmTypes) / sizeof(theParmTypes[0])) - 1;
}

int GZ_EditScriptedParm::findParmTypeIdx(const std::string &label)
{
    // The table is fixed, so a map built once gives the first match of the linear search.
    static const std::unordered_map<std::string, int> index = []
    {
        std::unordered_map<std::string, int> map;
        for (int i = 0; theParmTypes[i].label; ++i)
            map.emplace(theParmTypes[i].label, i);
        return map;
    }();
    auto it = index.find(label);
    return it == index.end() ? -1 : it->second;
}

namespace
{
const char *xyzwLabel(int size, const char *two, const char *three, const char *four)
{
    if (size == 4)
        return four;
    if (size == 2)
        return two;
    if (size == 3)
        return three;
    return nullptr;
}

const char *rampLabel(int multi_type, int size)
{
    if (size != 1)
        return nullptr;
    if (multi_type & HostParmTemplate::MULTI_RAMP_FLOAT)
        return "Ramp (Float)";
    if (multi_type & HostParmTemplate::MULTI_RAMP_COLOR)
        return "Ramp (Color)";
    return nullptr;
}

const char *dataLabel(HostParmType type)
{
    if (type.isGeometryData())
        return "Geometry Data";
    if (type.isKeyValueDict())
        return "Key-Value Dictionary";
    return "Data";
}

const char *stringLabel(HostParmType type, int type_ext)
{
    if (type.isImageFile())
        return "File - Image";
    if (type.isGeometryFile())
        return "File - Geometry";
    if (type.isDirectory())
        return "File - Directory";
    if (type.isFile())
        return "File";
    if (type_ext == HostParmTemplate::EXT_NODE_PATH || type.isNodePath())
        return "Operator Path";
    if (type.isNodeList())
        return "Operator List";
    if (type.isLabel())
        return "Label";
    if (type.isSeparator())
        return "Separator";
    return "String";
}

const char *floatLabel(HostParmType type, int size)
{
    if (type.isRGBA() || type.isRGB() || type.namesRGBA())
        return size == 4 ? "Color and Alpha" : "Color";
    if (type.isPolar())
        return "Direction Vector";
    if (type.isLogarithmic())
        return "Logarithmic Float";
    if (type.namesXYZW())
        if (const char *l = xyzwLabel(size, "Float Vector 2", "Float Vector 3", "Float Vector 4"))
            return l;
    if (type.namesUVW() && (size == 2 || size == 3))
        return size == 3 ? "UVW" : "UV";
    if (type.namesMinMax() && size == 2)
        return "Min/Max Float";
    if (type.isAngle())
        return "Angle";
    return "Float";
}

const char *intVectorLabel(HostParmType type, int size)
{
    if (!type.namesXYZW())
        return nullptr;
    return xyzwLabel(size, "Integer Vector 2", "Integer Vector 3", "Integer Vector 4");
}

const char *integerLabel(HostParmType type, int multi_type, int size)
{
    if (const char *l = intVectorLabel(type, size))
        return l;
    if (const char *l = rampLabel(multi_type, size))
        return l;
    if (type.isLogarithmic())
        return "Logarithmic Integer";
    if (type.namesMinMax() && size == 2)
        return "Min/Max Integer";
    return "Integer";
}

const char *ordinalLabel(HostParmType type, int multi_type, int size)
{
    if (type.isToggle())
        return "Toggle";
    if (type.isButtonStrip())
        return "Button Strip";
    if (type.isIconStrip())
        return "Icon Strip";
    if (type.isRGBAMask())
        return "RGBA Mask";
    if (type.isButton())
        return "Button";
    if (type.isOrdinalMenu())
        return "Ordered Menu";
    if (const char *l = intVectorLabel(type, size))
        return l;
    if (const char *l = rampLabel(multi_type, size))
        return l;
    return "Integer";
}
} // namespace

const char *GZ_EditScriptedParm::getScriptType(HostParmType type, int type_ext, int multi_type,
                                               int size)
{
    if (type.isData())
        return dataLabel(type);
    if (type.isString())
        return stringLabel(type, type_ext);
    if (type.isFloat())
        return type.isInteger() ? integerLabel(type, multi_type, size) : floatLabel(type, size);
    if (type.isOrdinal())
        return ordinalLabel(type, multi_type, size);
    return nullptr;
}

bool GZ_EditScriptedParm::parmTypeUsesFileChooser(const std::string &label)
{
    return label == "File" || label == "File - Image" || label == "File - Geometry" ||
           label == "File - Directory";
}

bool GZ_EditScriptedParm::parmTypeUsesOpFilter(const std::string &label)
{
    return label == "Operator Path" || label == "Operator List";
}

GZ_EditScriptedParmFolderType GZ_EditScriptedParm::getSwitcherFolderType(HostParmType type,
                                                                         const HostSpareData *tags)
{
    if (type.isExclusive())
        return GZ_FOLDER_RADIO;
    const char *group = tags ? tags->getValue(HostSpareData::GROUP_TYPE_TAG) : nullptr;
    if (!group)
        return GZ_FOLDER_TABS;
    if (std::strcmp(group, HostSpareData::COLLAPSIBLE_GROUP) == 0)
        return GZ_FOLDER_COLLAPSIBLE;
    if (std::strcmp(group, HostSpareData::SIMPLE_GROUP) == 0)
        return GZ_FOLDER_SIMPLE;
    return GZ_FOLDER_TABS;
}
