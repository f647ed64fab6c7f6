// The parameter section writer against golden text, and what writing normalises.
#include "ScriptEditFixture.h"
#include "tests/TestFiles.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace gztest;

namespace
{
std::string write(GZ_EditScriptedParms &s, bool check_joins = true)
{
    std::ostringstream os;
    std::string errors;
    EXPECT_EQ(s.save(os, errors, check_joins), 1);
    EXPECT_EQ(errors, "");
    return os.str();
}

/// Every kind of block and line the writer produces.
GZ_EditScriptedParms richSet()
{
    auto tab1 = open(GZ_FOLDER_TABS, "main", "Main");
    tab1->setSpareValue("script_callback", "print(1)");
    tab1->setSpareValue("group_note", "first");
    auto tab2 = open(GZ_FOLDER_TABS, "main_1", "Shape");
    tab2->setSpareValue("script_callback", "print(2)");
    tab2->setTabCondition(0, "{ on == 0 }");
    auto tab3 = open(GZ_FOLDER_TABS, "main_2", "Extra");
    tab3->setInvisible(1);

    auto scale = parm("scale", "Float");
    scale->setDefault(0, "1.50");
    scale->setRange(0.0f, 10.0f, true, false);
    scale->setHelp("Uniform \"scale\"");
    scale->setJoinNext(true);
    auto t = parm("t", "Float Vector 3", 3);
    t->setDefault(0, "0");
    t->setDefault(1, "$F");
    t->setDefaultMeaning(1, 1);
    t->setDefault(2, "2.000");
    t->setCondition(0, "{on==0}");
    t->setExportLevel(2);
    auto mode = parm("mode", "String");
    mode->setMenuSource(1);
    mode->setMenuStyle(3);
    mode->addMenu("a", "Alpha");
    mode->addMenu("bbb", "Beta");
    mode->addMenu("", "");
    mode->setUnquotedFlag(true);
    mode->setSpareValue("editor", "1");
    auto pick = parm("pick", "Ordered Menu");
    pick->setMenuSource(1);
    pick->setMenuStyle(4);
    pick->setUseTokenValue(1);
    pick->addMenu("first", "First");
    pick->addMenu("second_choice", "Second");
    auto script = parm("objects", "Operator List");
    script->setMenuSource(2);
    script->setMenuScript("result = []\nreturn [\"a\", \"A\"]");
    script->setMenuStyle(2);
    auto on = parm("on", "Toggle");
    on->setInvisible(1);
    on->setShowLabel(0);
    auto sep = parm("sep", "Separator", 1);
    sep->setSize(1);

    auto multi = open(GZ_FOLDER_MULTI_LIST, "points", "Points");
    multi->setDefault(0, "3");
    multi->setCondition(1, "{ on == 0 }");
    multi->setSpareValue("multistartoffset", "0");
    auto pt = parm("pt#", "Float Vector 2", 2);
    pt->setHasRange(0);

    auto imp = open(GZ_FOLDER_IMPORT, "folder1", "Imported Things");
    imp->setImportSource("../geo1");
    imp->setImportToken("*");
    imp->setImportEnable(true);
    auto inner = parm("inner", "Integer");
    inner->setSpareValue("import_source", "x");

    auto box = open(GZ_FOLDER_COLLAPSIBLE, "box", "Box");
    box->setSpareValue("script_callback", "print(3)");
    auto base = parm("tx", "Float");
    base->setIsBaseParm(true);
    base->setExportLevel(1);
    auto ramp = parm("ramp", "Ramp (Color)");
    ramp->setSpareValue("ramp_color_default", "1pos ( 0 )\n1c ( 1 1 1 )");

    return set(std::move(tab1), std::move(scale), std::move(t), end(), std::move(tab2),
               std::move(mode), std::move(pick), std::move(script), end(), std::move(tab3),
               std::move(on), std::move(sep), end(), std::move(multi), std::move(pt), end(),
               std::move(imp), std::move(inner), end(), std::move(box), std::move(base),
               std::move(ramp));
}
} // namespace

TEST(ParmSectionWriter, Golden)
{
    GZ_EditScriptedParms s = richSet();
    expectGolden(write(s), GZ_TEST_DATA_DIR "/writer_golden.ds");
    // Writing stored its normalisations: the second write is the same text.
    expectGolden(write(s), GZ_TEST_DATA_DIR "/writer_golden.ds");
    EXPECT_EQ(s.getParm(1)->getDefault(0), "1.5");
    EXPECT_EQ(s.getParm(2)->getCondition(0), "{ on==0 }");
}

TEST(ParmSectionWriter, NormalisationsAndJoins)
{
    auto s = set(open(GZ_FOLDER_SIMPLE, ""), parm("folder0", "String"), end(), parm("a"),
                 open(GZ_FOLDER_SIMPLE, "g"), end(), parm("b", "Label", 1));
    s.getParm(1)->setDefault(0, "2.50"); // a string default that looks like a number
    s.getParm(1)->setJoinNext(true);     // followed by a group end
    s.getParm(1)->setCondition(2, "   ");
    s.getParm(3)->setJoinNext(true); // followed by a folder
    s.getParm(6)->setSize(0);
    const std::string text = write(s);
    EXPECT_EQ(s.getParm(0)->getName(), "folder1");
    EXPECT_NE(text.find("default { \"2.50\" }"), std::string::npos);
    EXPECT_EQ(text.find("joinnext"), std::string::npos);
    EXPECT_EQ(text.find("nocookwhen"), std::string::npos);
    EXPECT_NE(text.find("        default { \"\" }\n"), std::string::npos);
    // Without check-joins both flags are written.
    const std::string unchecked = write(s, /*check_joins=*/false);
    EXPECT_EQ(std::count(unchecked.begin(), unchecked.end(), 'j'), 2);
}

TEST(ParmSectionWriter, SwitcherLevelTagsAndImportScope)
{
    auto a = open(GZ_FOLDER_TABS, "a");
    auto b = open(GZ_FOLDER_TABS, "b");
    b->setSpareValue("script_callback", "go");
    auto src = open(GZ_FOLDER_SIMPLE, "src");
    src->setImportEnable(true);
    src->setImportSource("op:../x");
    auto inside = parm("inside");
    inside->setImportToken("t*");
    auto outside = parm("outside");
    outside->setImportToken("t*");
    auto s = set(std::move(a), end(), std::move(b), end(), std::move(src), std::move(inside), end(),
                 std::move(outside));
    std::string text = write(s);
    // b continues a's switcher: its callback is the tab's own.
    EXPECT_NE(text.find("grouptag { \"script_callback\" \"go\" }"), std::string::npos) << text;
    // The folder that names an import source writes its import tags, and so do the
    // parameters inside it; after it the scope is closed again.
    EXPECT_NE(text.find("grouptag { \"import_source\" \"op:../x\" }"), std::string::npos) << text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '*'), 1) << text;
    s.getParm(0)->setTabBreak(true);
    text = write(s);
    EXPECT_NE(text.find("parmtag { \"script_callback\" \"go\" }"), std::string::npos) << text;
}
