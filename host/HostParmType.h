// HostParmType: the basic kind and role flags of a parameter template.
#pragma once

#include <cstdint>

/// The storage kind of a parameter: what its components hold.
enum class HostParmBasic : std::uint8_t
{
    None = 0, ///< no parameter (the terminator of a template list)
    Float,    ///< numbers (integers carry the INTEGER flag)
    Ordinal,  ///< an index: toggles, menus, buttons
    String,   ///< text: strings, files, paths, labels
    Data,     ///< opaque data (geometry, dictionaries)
    Switcher, ///< a set of folders; one component per folder
    Multiparm ///< a variable number of instances of its child templates
};

/// How a string value is to be read: as the text itself or as an expression.
enum HostStringMeaning
{
    HOST_STRING_LITERAL = 0,    ///< the plain value
    HOST_STRING_EXPRESSION = 1, ///< an expression in the host's command-language expressions
    HOST_STRING_SCRIPT = 2      ///< an expression in the embedded scripting language
};

/// The type of a parameter template: a basic kind plus role flags. A plain value, usable in
/// constant expressions; the common types exist as HOST_PARM_* constants below.
class HostParmType
{
public:
    /// Role flags. They refine the basic kind; several may be combined.
    enum Flag : std::uint64_t
    {
        INTEGER = 1ull << 0,    ///< a Float parameter that holds whole numbers
        ANIMATABLE = 1ull << 1, ///< components may carry channels and keys
        INVISIBLE = 1ull << 2,  ///< never shown in the parameter dialog
        NO_LABEL = 1ull << 3,   ///< shown without its label
        JOIN_NEXT = 1ull << 4,  ///< shares its row with the next parameter
        // Component naming schemes: the suffix (or prefix) of each component's channel name.
        NAME_XYZW = 1ull << 5,      ///< x y z w, then 5, 6, ...
        NAME_UVW = 1ull << 6,       ///< u v w, then 4, 5, ...
        NAME_RGBA = 1ull << 7,      ///< r g b a, then 5, 6, ...
        NAME_MINMAX = 1ull << 8,    ///< min max, then 3, 4, ...
        NAME_BEGIN_END = 1ull << 9, ///< begin end in front of the name, then name3, name4, ...
        // Value roles.
        FILE = 1ull << 10,          ///< a file path (any file)
        IMAGE_FILE = 1ull << 11,    ///< an image file path
        GEOMETRY_FILE = 1ull << 12, ///< a geometry file path
        DIRECTORY = 1ull << 13,     ///< a directory path
        NODE_PATH = 1ull << 14,     ///< a path to one node
        NODE_LIST = 1ull << 15,     ///< a list of node references
        LABEL = 1ull << 16,         ///< a label only, no value
        SEPARATOR = 1ull << 17,     ///< a separator line, no value
        RGB = 1ull << 18,           ///< a colour
        RGBA = 1ull << 19,          ///< a colour with alpha
        POLAR = 1ull << 20,         ///< a direction picked on a sphere
        LOGARITHMIC = 1ull << 21,   ///< a logarithmic slider
        ANGLE = 1ull << 22,         ///< an angle
        TOGGLE = 1ull << 23,        ///< an on/off check box
        BUTTON = 1ull << 24,        ///< a button that runs the parameter's callback
        ORDINAL_MENU = 1ull << 25,  ///< an ordered menu of items
        BUTTON_STRIP = 1ull << 26,  ///< a strip of buttons
        ICON_STRIP = 1ull << 27,    ///< a strip of icons
        RGBA_MASK = 1ull << 28,     ///< four channel toggles packed into one number
        EXCLUSIVE = 1ull << 29,     ///< a switcher whose folders are radio buttons
        GEOMETRY_DATA = 1ull << 30, ///< Data holding geometry
        KEY_VALUE_DICT = 1ull << 31 ///< Data holding a key-value dictionary
    };

    constexpr HostParmType() = default;
    constexpr HostParmType(HostParmBasic basic, std::uint64_t flags)
        : myBasic(basic), myFlags(flags)
    {
    }

    constexpr HostParmBasic basic() const { return myBasic; }
    constexpr std::uint64_t flags() const { return myFlags; }
    constexpr bool hasFlag(std::uint64_t flag) const { return (myFlags & flag) != 0; }
    constexpr HostParmType withFlags(std::uint64_t flags) const
    {
        return HostParmType(myBasic, myFlags | flags);
    }
    constexpr HostParmType withoutFlags(std::uint64_t flags) const
    {
        return HostParmType(myBasic, myFlags & ~flags);
    }

    // Basic kinds.
    constexpr bool isNone() const { return myBasic == HostParmBasic::None; }
    constexpr bool isFloat() const { return myBasic == HostParmBasic::Float; }
    constexpr bool isOrdinal() const { return myBasic == HostParmBasic::Ordinal; }
    constexpr bool isString() const { return myBasic == HostParmBasic::String; }
    constexpr bool isData() const { return myBasic == HostParmBasic::Data; }
    constexpr bool isSwitcher() const { return myBasic == HostParmBasic::Switcher; }
    constexpr bool isMultiparm() const { return myBasic == HostParmBasic::Multiparm; }
    /// Whether the components hold numbers (Float and Ordinal).
    constexpr bool isNumeric() const { return isFloat() || isOrdinal(); }

    // Role tests, one per flag that other layers ask about.
    constexpr bool isInteger() const { return hasFlag(INTEGER); }
    constexpr bool isAnimatable() const { return hasFlag(ANIMATABLE); }
    constexpr bool isInvisible() const { return hasFlag(INVISIBLE); }
    constexpr bool isNoLabel() const { return hasFlag(NO_LABEL); }
    constexpr bool isJoinNext() const { return hasFlag(JOIN_NEXT); }
    constexpr bool isFile() const { return hasFlag(FILE); }
    constexpr bool isImageFile() const { return hasFlag(IMAGE_FILE); }
    constexpr bool isGeometryFile() const { return hasFlag(GEOMETRY_FILE); }
    constexpr bool isDirectory() const { return hasFlag(DIRECTORY); }
    constexpr bool isNodePath() const { return hasFlag(NODE_PATH); }
    constexpr bool isNodeList() const { return hasFlag(NODE_LIST); }
    constexpr bool isLabel() const { return hasFlag(LABEL); }
    constexpr bool isSeparator() const { return hasFlag(SEPARATOR); }
    constexpr bool isRGB() const { return hasFlag(RGB); }
    constexpr bool isRGBA() const { return hasFlag(RGBA); }
    constexpr bool isPolar() const { return hasFlag(POLAR); }
    constexpr bool isLogarithmic() const { return hasFlag(LOGARITHMIC); }
    constexpr bool isAngle() const { return hasFlag(ANGLE); }
    constexpr bool isToggle() const { return hasFlag(TOGGLE); }
    constexpr bool isButton() const { return hasFlag(BUTTON); }
    constexpr bool isOrdinalMenu() const { return hasFlag(ORDINAL_MENU); }
    constexpr bool isButtonStrip() const { return hasFlag(BUTTON_STRIP); }
    constexpr bool isIconStrip() const { return hasFlag(ICON_STRIP); }
    constexpr bool isRGBAMask() const { return hasFlag(RGBA_MASK); }
    constexpr bool isExclusive() const { return hasFlag(EXCLUSIVE); }
    constexpr bool isGeometryData() const { return hasFlag(GEOMETRY_DATA); }
    constexpr bool isKeyValueDict() const { return hasFlag(KEY_VALUE_DICT); }
    constexpr bool namesXYZW() const { return hasFlag(NAME_XYZW); }
    constexpr bool namesUVW() const { return hasFlag(NAME_UVW); }
    constexpr bool namesRGBA() const { return hasFlag(NAME_RGBA); }
    constexpr bool namesMinMax() const { return hasFlag(NAME_MINMAX); }
    /// Whether component names go in front of the parameter name ("beginrot", "endrot").
    constexpr bool namesBeginEnd() const { return hasFlag(NAME_BEGIN_END); }

    /// The naming-scheme part of the flags, for comparisons.
    constexpr std::uint64_t namingScheme() const
    {
        return myFlags & (NAME_XYZW | NAME_UVW | NAME_RGBA | NAME_MINMAX | NAME_BEGIN_END);
    }

    constexpr bool operator==(const HostParmType &o) const
    {
        return myBasic == o.myBasic && myFlags == o.myFlags;
    }
    constexpr bool operator!=(const HostParmType &o) const { return !(*this == o); }

private:
    HostParmBasic myBasic = HostParmBasic::None;
    std::uint64_t myFlags = 0;
};

// The common types. Numeric types are animatable unless they are choices.
inline constexpr HostParmType HOST_PARM_NONE{};
inline constexpr HostParmType HOST_PARM_FLOAT{HostParmBasic::Float, HostParmType::ANIMATABLE};
inline constexpr HostParmType HOST_PARM_INT{HostParmBasic::Float,
                                            HostParmType::ANIMATABLE | HostParmType::INTEGER};
inline constexpr HostParmType HOST_PARM_XYZ{HostParmBasic::Float,
                                            HostParmType::ANIMATABLE | HostParmType::NAME_XYZW};
inline constexpr HostParmType HOST_PARM_INT_XYZ{HostParmBasic::Float, HostParmType::ANIMATABLE |
                                                                          HostParmType::INTEGER |
                                                                          HostParmType::NAME_XYZW};
inline constexpr HostParmType HOST_PARM_UVW{HostParmBasic::Float,
                                            HostParmType::ANIMATABLE | HostParmType::NAME_UVW};
inline constexpr HostParmType HOST_PARM_RGB{
    HostParmBasic::Float, HostParmType::ANIMATABLE | HostParmType::RGB | HostParmType::NAME_RGBA};
inline constexpr HostParmType HOST_PARM_RGBA{
    HostParmBasic::Float, HostParmType::ANIMATABLE | HostParmType::RGBA | HostParmType::NAME_RGBA};
inline constexpr HostParmType HOST_PARM_ANGLE{HostParmBasic::Float,
                                              HostParmType::ANIMATABLE | HostParmType::ANGLE};
inline constexpr HostParmType HOST_PARM_DIRECTION{
    HostParmBasic::Float, HostParmType::ANIMATABLE | HostParmType::POLAR | HostParmType::NAME_XYZW};
inline constexpr HostParmType HOST_PARM_TOGGLE{HostParmBasic::Ordinal, HostParmType::TOGGLE};
inline constexpr HostParmType HOST_PARM_MENU{HostParmBasic::Ordinal, HostParmType::ORDINAL_MENU};
inline constexpr HostParmType HOST_PARM_BUTTON{HostParmBasic::Ordinal, HostParmType::BUTTON};
inline constexpr HostParmType HOST_PARM_STRING{HostParmBasic::String, 0};
inline constexpr HostParmType HOST_PARM_FILE{HostParmBasic::String, HostParmType::FILE};
inline constexpr HostParmType HOST_PARM_NODE_PATH{HostParmBasic::String, HostParmType::NODE_PATH};
inline constexpr HostParmType HOST_PARM_LABEL{HostParmBasic::String, HostParmType::LABEL};
inline constexpr HostParmType HOST_PARM_SEPARATOR{HostParmBasic::String, HostParmType::SEPARATOR};
inline constexpr HostParmType HOST_PARM_DATA{HostParmBasic::Data, 0};
inline constexpr HostParmType HOST_PARM_SWITCHER{HostParmBasic::Switcher, 0};
inline constexpr HostParmType HOST_PARM_MULTIPARM{HostParmBasic::Multiparm, 0};
