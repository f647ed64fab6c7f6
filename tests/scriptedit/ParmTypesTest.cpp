// The data-type table, host types to labels, and channel names.
#include "scriptedit/GZ_EditScriptedParm.h"

#include "host/HostParmTemplate.h"

#include <gtest/gtest.h>
#include <tuple>

using P = GZ_EditScriptedParm;

TEST(ParmTypes, TableRowsAndTerminator)
{
    ASSERT_EQ(P::getNumParmTypes(), 42);
    EXPECT_EQ(P::theParmTypes[42].label, nullptr);
    EXPECT_TRUE(P::theParmTypes[42].hostType.isString());
    const std::tuple<int, const char *, const char *, int, float, float, const char *> rows[] = {
        {0, "Integer", "integer", -1, 0, 10, "0"},
        {3, "Float Vector 3", "vector", 3, -1, 1, "0"},
        {13, "Angle", "angle", -1, 0, 360, "0"},
        {16, "Color and Alpha", "color4", 4, 0, 1, "1"},
        {29, "Separator", "separator", 0, 0, 1, ""},
        {31, "RGBA Mask", "rgbamask", 1, 0, 15, "15"},
        {33, "Logarithmic Float", "log", -1, 0.01f, 10, "1"},
        {41, "Icon Strip", "iconstrip", 1, 0, 1, "0"}};
    for (const auto &[index, label, token, size, lo, hi, def] : rows)
    {
        SCOPED_TRACE(label);
        const P::GZ_ParmType &t = P::theParmTypes[index];
        EXPECT_STREQ(t.label, label);
        EXPECT_STREQ(t.scriptToken, token);
        EXPECT_EQ(std::tuple(t.size, t.rangeMin, t.rangeMax), std::tuple(size, lo, hi));
        EXPECT_STREQ(t.defaultValue, def);
        EXPECT_EQ(P::findParmTypeIdx(label), index);
    }
    EXPECT_EQ(P::findParmTypeIdx("No Such Type"), -1);
    // Rows 26 to 30 name only their first four components.
    EXPECT_STREQ(P::theParmTypes[26].componentNames[3], "4");
    EXPECT_EQ(P::theParmTypes[26].componentNames[4], nullptr);
}

TEST(ParmTypes, ScriptTypeOfHostTypes)
{
    using T = HostParmType;
    const HostParmType ordinal{HostParmBasic::Ordinal, 0};
    // clang-format off
    const std::tuple<HostParmType, int, int, int, const char *> cases[] = {
        {HOST_PARM_RGBA, 0, 0, 4, "Color and Alpha"}, {HOST_PARM_RGBA, 0, 0, 3, "Color"},
        {HOST_PARM_XYZ, 0, 0, 2, "Float Vector 2"}, {HOST_PARM_XYZ, 0, 0, 5, "Float"},
        {HOST_PARM_DIRECTION, 0, 0, 3, "Direction Vector"}, {HOST_PARM_UVW, 0, 0, 3, "UVW"},
        {HOST_PARM_ANGLE, 0, 0, 1, "Angle"}, {HOST_PARM_INT_XYZ, 0, 0, 4, "Integer Vector 4"},
        {HOST_PARM_INT, 0, HostParmTemplate::MULTI_RAMP_COLOR, 1, "Ramp (Color)"},
        {HostParmType(HostParmBasic::Float, T::INTEGER | T::NAME_MINMAX), 0, 0, 2,
         "Min/Max Integer"},
        {ordinal, 0, 0, 1, "Integer"},
        {ordinal, 0, HostParmTemplate::MULTI_RAMP_FLOAT, 1, "Ramp (Float)"},
        {HOST_PARM_TOGGLE, 0, 0, 1, "Toggle"}, {HOST_PARM_MENU, 0, 0, 1, "Ordered Menu"},
        {HOST_PARM_BUTTON, 0, 0, 1, "Button"},
        {HOST_PARM_STRING, HostParmTemplate::EXT_NODE_PATH, 0, 1, "Operator Path"},
        {HostParmType(HostParmBasic::String, T::FILE | T::IMAGE_FILE), 0, 0, 1, "File - Image"},
        {HOST_PARM_SEPARATOR, 0, 0, 1, "Separator"},
        {HostParmType(HostParmBasic::Data, T::KEY_VALUE_DICT), 0, 0, 1, "Key-Value Dictionary"}};
    // clang-format on
    for (const auto &[type, ext, multi, size, label] : cases)
        EXPECT_STREQ(P::getScriptType(type, ext, multi, size), label) << label;
    EXPECT_EQ(P::getScriptType(HOST_PARM_SWITCHER, 0, 0, 1), nullptr);
    // Every row's host type reads back as a label of the same token family.
    for (int i = 0; i < P::getNumParmTypes(); ++i)
        EXPECT_NE(P::getScriptType(P::theParmTypes[i].hostType, 0, 0, 1), nullptr) << i;
}

TEST(ParmTypes, ChannelNames)
{
    const std::tuple<const char *, const char *, int, std::vector<std::string>> cases[] = {
        {"Angle", "rot", 2, {"beginrot", "endrot"}},
        {"Angle", "rot", 3, {"rot1", "rot2", "rot3"}},
        {"Float Vector 3", "t", 3, {"tx", "ty", "tz"}},
        {"Float", "s", 1, {"s"}},
        {"Label", "l", 6, {"l1", "l2", "l3", "l4", "l", "l"}},
        {"No Such Type", "u", 2, {"u", "u"}},
    };
    for (const auto &[type, name, size, channels] : cases)
    {
        P p;
        p.setName(name);
        p.setType(type);
        p.setSize(size);
        EXPECT_EQ(p.getChannelNames(), channels) << type;
    }
    P p;
    p.setType("Float Vector 3");
    p.setSize(3);
    p.setName("a");
    EXPECT_EQ(p.getChannelNames()[0], "ax");
    p.setName("b"); // the cache follows the name
    EXPECT_EQ(p.getChannelNames()[0], "bx");
    p.setSize(0);
    EXPECT_EQ(p.getSize(), 1);
    p.setSize(40);
    EXPECT_EQ(p.getSize(), 16);
}
