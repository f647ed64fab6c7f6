// Tests of the templates made from scripted viewer handle descriptions.
#include "link/GZ_PythonHandle.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

GZ_PythonHandle::Info makeInfo(const std::vector<std::pair<std::string, int>> &parms)
{
    GZ_PythonHandle::Info info;
    info.name = "pyhandle";
    info.label = "Python Handle";
    info.networkTypes = "Sop Object";
    for (const auto &parm : parms)
    {
        info.parmNames.push_back(parm.first);
        info.parmDefinitions[parm.first].components = parm.second;
    }
    return info;
}

std::vector<std::pair<std::string, int>> numbering(const GZ_GZTemplate &gz)
{
    std::vector<std::pair<std::string, int>> result;
    for (const std::string &name : gz.parmNameList())
        result.emplace_back(name, gz.parmIndex(name));
    return result;
}

} // namespace

TEST(PythonHandleGZTemplate, NumbersComponentsWithSuffixes)
{
    auto info =
        std::make_shared<GZ_PythonHandle::Info>(makeInfo({{"t", 3}, {"scale", 1}, {"c", 4}}));
    GZ_PythonHandle::GZTemplate gz(info);

    std::vector<std::pair<std::string, int>> expected = {
        {"tx", 0}, {"ty", 1}, {"tz", 2}, {"scale", 3}, {"cx", 4}, {"cy", 5}, {"cz", 6}, {"c", 7}};
    EXPECT_EQ(numbering(gz), expected);
    EXPECT_EQ(gz.parmNameTable().size(), expected.size());

    // The component names are recorded in the shared description, once per component.
    EXPECT_EQ(info->parmDefinitions["t"].componentNames,
              (std::vector<std::string>{"tx", "ty", "tz"}));
    EXPECT_TRUE(info->parmDefinitions["scale"].componentNames.empty());
    EXPECT_EQ(info->parmDefinitions["c"].componentNames,
              (std::vector<std::string>{"cx", "cy", "cz", "c"}));
    EXPECT_EQ(gz.infoPtr(), info);
}

TEST(PythonHandleGZTemplate, NameWithoutDefinitionIsOneParameter)
{
    auto info = std::make_shared<GZ_PythonHandle::Info>(makeInfo({{"uv", 2}}));
    info->parmNames.push_back("pivot");
    GZ_PythonHandle::GZTemplate gz(info);
    EXPECT_EQ(numbering(gz),
              (std::vector<std::pair<std::string, int>>{{"uvx", 0}, {"uvy", 1}, {"pivot", 2}}));
}

TEST(PythonHandleGZTemplate, BaseFieldsFromDescription)
{
    auto info = std::make_shared<GZ_PythonHandle::Info>(makeInfo({}));
    GZ_PythonHandle::GZTemplate gz(info);
    EXPECT_EQ(gz.name(), "pyhandle");
    EXPECT_EQ(gz.englishName(), "Python Handle");
    EXPECT_EQ(gz.iconName(), "MISC_python");
    EXPECT_TRUE(gz.supportsType("SOP"));
    EXPECT_TRUE(gz.supportsType("object"));
    EXPECT_FALSE(gz.supportsType("dop"));
    EXPECT_EQ(gz.getEthereal(), 0);
    EXPECT_EQ(gz.getViewerMask(), ~0u);
    EXPECT_FALSE(gz.isDisplayAlways());
    EXPECT_EQ(gz.constructor(), nullptr);
    EXPECT_TRUE(gz.parmNameList().empty());
    EXPECT_EQ(GZ_PythonHandle::GZTemplate::emptyParmNames()[0], nullptr);

    info->icon = "SOP_xform";
    GZ_PythonHandle::GZTemplate with_icon(info);
    EXPECT_EQ(with_icon.iconName(), "SOP_xform");
}

TEST(PythonHandleTemplate, DeclaredParametersGoInsideCollapsibleFolder)
{
    GZ_PythonHandle::Info info = makeInfo({});
    auto declared = std::make_shared<HostParmTemplateList>();
    declared->append(HostParmTemplate(HOST_PARM_FLOAT, "radius", "Radius"));
    declared->append(HostParmTemplate(HOST_PARM_TOGGLE, "snap", "Snap"));
    info.parmTemplates = declared;

    int constructor_tag = 0;
    GZ_PythonHandle::Template handle(info, &constructor_tag);
    EXPECT_EQ(handle.name(), "pyhandle");
    EXPECT_EQ(handle.englishName(), "Python Handle");
    EXPECT_EQ(handle.constructor(), &constructor_tag);

    const HostParmTemplate *list = handle.templates();
    ASSERT_NE(list, nullptr);
    const HostParmTemplate &folder = list[0];
    EXPECT_TRUE(folder.getType().isSwitcher());
    EXPECT_EQ(folder.getToken(), "handle_parameter_group");
    EXPECT_EQ(folder.getLabel(), "Handle parameters");
    EXPECT_EQ(folder.getFolderCount(), 1);
    EXPECT_EQ(folder.getFolderParmCount(0), 2);
    EXPECT_EQ(folder.getFolderLabel(0), "Handle parameters");
    ASSERT_NE(folder.getTag(HostSpareData::GROUP_TYPE_TAG), nullptr);
    EXPECT_STREQ(folder.getTag(HostSpareData::GROUP_TYPE_TAG), HostSpareData::COLLAPSIBLE_GROUP);
    EXPECT_EQ(list[1].getToken(), "radius");
    EXPECT_EQ(list[2].getToken(), "snap");
    EXPECT_TRUE(list[3].isTerminator());

    // The template keeps its own copy of the description.
    info.name = "changed";
    EXPECT_EQ(handle.info().name, "pyhandle");

    // A copy shares the description and has its own list; it has no users yet.
    handle.addRefCount();
    GZ_PythonHandle::Template copy(handle);
    EXPECT_EQ(copy.infoPtr(), handle.infoPtr());
    ASSERT_NE(copy.templates(), nullptr);
    EXPECT_NE(copy.templates(), handle.templates());
    EXPECT_EQ(copy.templates()[1].getToken(), "radius");
    EXPECT_EQ(copy.useCount(), 0u);

    GZ_PythonHandle::Template assigned(makeInfo({}), nullptr);
    EXPECT_EQ(assigned.templates(), nullptr);
    assigned = handle;
    EXPECT_EQ(assigned.infoPtr(), handle.infoPtr());
    EXPECT_EQ(assigned.templates()[2].getToken(), "snap");
}

TEST(PythonHandleTemplate, UseCountStopsAtZero)
{
    GZ_PythonHandle::Template handle(makeInfo({}), nullptr);
    EXPECT_EQ(handle.templates(), nullptr);
    EXPECT_EQ(handle.useCount(), 0u);
    EXPECT_EQ(handle.releaseRefCount(), 0u);
    EXPECT_EQ(handle.addRefCount(), 1u);
    EXPECT_EQ(handle.addRefCount(), 2u);
    EXPECT_EQ(handle.releaseRefCount(), 1u);
    EXPECT_EQ(handle.releaseRefCount(), 0u);
    EXPECT_EQ(handle.releaseRefCount(), 0u);
}
