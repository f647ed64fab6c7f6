// Tests of the templates made from scripted viewer handle descriptions.
#include "link/GZ_PythonHandle.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

namespace
{

std::shared_ptr<GZ_PythonHandle::Info>
makeInfo(const std::vector<std::pair<std::string, int>> &parms)
{
    auto info = std::make_shared<GZ_PythonHandle::Info>();
    info->name = "pyhandle";
    info->label = "Python Handle";
    info->networkTypes = "Sop Object";
    for (const auto &parm : parms)
    {
        info->parmNames.push_back(parm.first);
        if (parm.second > 0)
            info->parmDefinitions[parm.first].components = parm.second;
    }
    return info;
}

} // namespace

TEST(PythonHandleGZTemplate, NumbersComponentsWithSuffixes)
{
    // "pivot" has no definition and counts as one component.
    auto info = makeInfo({{"t", 3}, {"scale", 1}, {"c", 4}, {"pivot", 0}});
    GZ_PythonHandle::GZTemplate gz(info);

    const std::vector<std::string> expected = {"tx", "ty", "tz", "scale", "cx",
                                               "cy", "cz", "c",  "pivot"};
    EXPECT_EQ(gz.parmNameList(), expected);
    for (size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(gz.parmIndex(expected[i]), static_cast<int>(i)) << expected[i];
    // The component names are recorded in the shared description.
    EXPECT_EQ(info->parmDefinitions["t"].componentNames,
              (std::vector<std::string>{"tx", "ty", "tz"}));
    EXPECT_TRUE(info->parmDefinitions["scale"].componentNames.empty());
    EXPECT_EQ(info->parmDefinitions["c"].componentNames.back(), "c");

    EXPECT_EQ(gz.englishName(), "Python Handle");
    EXPECT_TRUE(gz.supportsType("SOP") && !gz.supportsType("dop"));
    EXPECT_EQ(gz.iconName(), "MISC_python");
    info->icon = "SOP_xform";
    EXPECT_EQ(GZ_PythonHandle::GZTemplate(info).iconName(), "SOP_xform");
}

TEST(PythonHandleTemplate, DeclaredParametersGoInsideCollapsibleFolder)
{
    auto info = makeInfo({});
    GZ_PythonHandle::Template none(*info, nullptr);
    EXPECT_EQ(none.templates(), nullptr);

    auto declared = std::make_shared<HostParmTemplateList>();
    declared->append(HostParmTemplate(HOST_PARM_FLOAT, "radius", "Radius"));
    declared->append(HostParmTemplate(HOST_PARM_TOGGLE, "snap", "Snap"));
    info->parmTemplates = declared;
    GZ_PythonHandle::Template handle(*info, nullptr);

    const HostParmTemplate *list = handle.templates();
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(list[0].getType().isSwitcher());
    EXPECT_EQ(std::tuple(list[0].getToken(), list[0].getLabel(), list[0].getFolderCount(),
                         list[0].getFolderParmCount(0)),
              std::tuple("handle_parameter_group", "Handle parameters", 1, 2));
    EXPECT_STREQ(list[0].getTag(HostSpareData::GROUP_TYPE_TAG), HostSpareData::COLLAPSIBLE_GROUP);
    EXPECT_EQ(std::tuple(list[1].getToken(), list[2].getToken()), std::tuple("radius", "snap"));
    EXPECT_TRUE(list[3].isTerminator());

    // Its own copy of the description, shared with its copies.
    info->name = "changed";
    EXPECT_EQ(handle.info().name, "pyhandle");
    GZ_PythonHandle::Template copy(handle);
    EXPECT_EQ(copy.infoPtr(), handle.infoPtr());
    EXPECT_NE(copy.templates(), handle.templates());
}
