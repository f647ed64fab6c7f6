// One definition: tags, copies, menus, construction from templates, dump.
#include "scriptedit/GZ_EditScriptedParms.h"

#include "host/HostChoiceList.h"
#include "host/HostParmTemplate.h"
#include "host/HostSpareData.h"

#include <gtest/gtest.h>

#include <sstream>
#include <tuple>

TEST(EditScriptedParm, TagBackedOptions)
{
    GZ_EditScriptedParm p;
    p.setExportDisable(false);
    EXPECT_EQ(p.getSpareData(), nullptr); // clearing creates nothing
    EXPECT_EQ(std::tuple(p.getCallbackLanguage(), p.getMultiStartOffset()), std::tuple(1, 1));
    p.setImportEnable(true);
    ASSERT_NE(p.getSpareData(), nullptr);
    EXPECT_STREQ(p.getSpareValue("import_enable"), "1");
    p.setSpareValue("export_disable", "yes");
    EXPECT_FALSE(p.getExportDisable()); // only "1" is true
    p.setImportEnable(false);
    EXPECT_EQ(p.getSpareValue("import_enable"), nullptr);
    p.setOpFilter("!!SOP!!");
    p.setImportSource(nullptr);
    EXPECT_STREQ(p.getOpFilter(), "!!SOP!!");
    p.setOpFilter(static_cast<const HostSpareData *>(nullptr));
    EXPECT_EQ(p.getOpFilter(), nullptr);
}

TEST(EditScriptedParm, AssignmentIsDeepAndLeavesCurrentLinks)
{
    GZ_EditScriptedParm a;
    a.setName("a");
    a.setType("Float Vector 3");
    a.setSize(3);
    a.setSpareValue("x", "1");
    a.setCurrentLink(0, "../geo2/tx");
    a.addMenu("t", "T");
    GZ_EditScriptedParm b;
    (void)b.getChannelNames();
    b = a;
    EXPECT_STREQ(b.getSpareValue("x"), "1");
    EXPECT_EQ(std::tuple(b.getCurrentLink(0), b.getChannelNames()[1]), std::tuple("", "ay"));
    b.setSpareValue("x", "2");
    EXPECT_STREQ(a.getSpareValue("x"), "1");
    EXPECT_EQ(b.getNMenu(), 1);
}

TEST(EditScriptedParm, MenuOperations)
{
    GZ_EditScriptedParm p;
    p.addMenu("a", "A");
    p.addMenu("b", "B");
    p.addMenu("c", "C");
    p.moveMenu(0);
    p.moveMenu(3);
    EXPECT_EQ(p.getMenu(0)->getToken(), "a");
    p.moveMenu(1);
    EXPECT_EQ(std::tuple(p.getMenu(0)->getToken(), p.getMenu(1)->getToken()), std::tuple("b", "a"));
    p.destroyMenu(2);
    p.destroyMenu(7);
    EXPECT_EQ(p.getNMenu(), 2);
    EXPECT_EQ(p.checkNullMenu(), 1);
    EXPECT_EQ(p.getNMenu(), 3);
    EXPECT_EQ(p.checkNullMenu(), 0);
    EXPECT_FALSE(p.getMenu(2)->isValidChoice());
}

TEST(EditScriptedParm, FromTemplate)
{
    HostParmTemplate t(HOST_PARM_XYZ, "t", "Translate", 3);
    t.setDefaults({HostParmDefault(1.5), HostParmDefault("$F", HOST_STRING_EXPRESSION)});
    t.setRange(HostParmRange(-5, 5, true, false));
    t.setExportLevel(HostParmTemplate::EXPORT_ALL);
    t.setTypeExtension(HostParmTemplate::EXT_JOIN);
    t.setCondition(HOST_COND_HIDE, "{ a == 1 }");
    GZ_EditScriptedParm p(t);
    EXPECT_EQ(std::tuple(p.getType(), p.getSize(), p.getDefault(0), p.getDefault(1),
                         p.getDefaultMeaning(1), p.getDefault(2)),
              std::tuple("Float Vector 3", 3, "1.5", "$F", 1u, "0"));
    EXPECT_EQ(std::tuple(p.getRangeMin(), p.getRangeMinStrict(), p.getExportLevel(),
                         p.getJoinNext(), p.getCondition(1)),
              std::tuple(-5.0f, true, 2, true, "{ a == 1 }"));

    HostParmTemplate m(HOST_PARM_STRING, "mode", "Mode");
    HostChoiceList list(HostChoiceList::REPLACE | HostChoiceList::USE_TOKEN);
    list.addItem("a", "A");
    m.setChoiceList(&list);
    GZ_EditScriptedParm pm(m);
    EXPECT_EQ(pm.getMenuSource(), 1);
    EXPECT_EQ(pm.getMenuStyle(), 3); // not exclusive, replace bit
    EXPECT_EQ(std::tuple(pm.getUseTokenValue(), pm.getHasRange()), std::tuple(1, 0));

    // A host type with no row: no size, range or menu.
    GZ_EditScriptedParm none(HostParmTemplate(HOST_PARM_SWITCHER, "sw", "Switcher", 2));
    EXPECT_EQ(std::tuple(none.getSize(), none.getParmTypeIdxForChannels()), std::tuple(0, -1));
}

TEST(EditScriptedParm, Dump)
{
    GZ_EditScriptedParm p;
    p.setName("mode");
    p.setLabel("Mode");
    p.setType("Ordered Menu");
    p.setInvisible(1);
    p.setHelp("h");
    p.setCondition(0, "x");
    p.setExportDisable(true);
    std::ostringstream os;
    p.dump(os);
    EXPECT_EQ(os.str(), "Parm: mode[1] (Mode)\n"
                        "\tAttribs: invisible has_help disable menu \n"
                        "\tAttribs: !export \n");
    GZ_EditScriptedParm m(GZ_FOLDER_MULTI_SCROLL);
    std::ostringstream os2;
    m.dump(os2);
    EXPECT_EQ(os2.str(), "Parm: [1] ()\n\tAttribs: groupstart multiparm \n");

    GZ_EditScriptedParms set;
    set.addParm(new GZ_EditScriptedParm(GZ_FOLDER_END));
    std::ostringstream os3;
    set.dump(os3);
    EXPECT_EQ(os3.str(), "GZ_EditScriptedParms: 1 parms\nParm: [1] ()\n\tAttribs: groupend \n");
}
