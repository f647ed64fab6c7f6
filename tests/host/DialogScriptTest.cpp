// Tests of the dialog-script reader: quoting, names, tokens, pages and their templates.
#include "host/HostDiagnostics.h"
#include "host/HostDialogQuote.h"
#include "host/HostDialogStream.h"
#include "host/HostLanguageNames.h"
#include "host/HostScriptPage.h"
#include "host/HostVariableName.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace
{
std::unique_ptr<HostScriptPage> parseText(const std::string &text, HostDiagnosticCapture &diag,
                                          HostSpareLayout *layout = nullptr)
{
    HostDialogStream in;
    in.openString(text, "t.ds");
    auto page = std::make_unique<HostScriptPage>();
    page->parseSection(in);
    std::string errors;
    if (layout)
    {
        EXPECT_TRUE(page->buildTemplates(*layout, errors)) << errors;
    }
    (void)diag;
    return page;
}
} // namespace

TEST(DialogQuote, EscapesBothModesAndUnescapesBoth)
{
    const std::string raw = "a\"b\\c\nd\te\x01";
    EXPECT_EQ(HostDialogQuote::quote(raw), "\"a\\\"b\\\\c\\nd\\te\\x01\"");
    EXPECT_EQ(HostDialogQuote::escape(raw, /*alternative=*/true), "a\\\"b\\\\c\nd\te\x01");
    EXPECT_EQ(HostDialogQuote::unescape(HostDialogQuote::escape(raw)), raw);
    EXPECT_EQ(HostDialogQuote::unescape(HostDialogQuote::escape(raw, true)), raw);
    EXPECT_EQ(HostDialogQuote::unescape("\\q\\"), "q\\");
}

TEST(VariableName, ForcesEncodesAndDecodes)
{
    const std::tuple<const char *, const char *, const char *> cases[] = {
        {"abc", nullptr, "abc"}, {"1ab", nullptr, "_1ab"}, {"a b-c", nullptr, "a_b_c"},
        {"pt#", "#", "pt#"},     {"pt#", nullptr, "pt_"},  {"", nullptr, ""}};
    for (const auto &[in, extra, forced] : cases)
    {
        std::string name = in;
        EXPECT_EQ(HostVariableName::forceValidName(name, extra), std::string(in) != forced);
        EXPECT_EQ(name, forced);
    }
    for (const char *text : {"My Folder", "a_b", "x.y:z", "xn__q", "1st"})
    {
        const std::string enc = HostVariableName::encode(text);
        EXPECT_TRUE(HostVariableName::isValid(enc, "#")) << enc;
        EXPECT_EQ(HostVariableName::decode(enc), text);
    }
    EXPECT_EQ(HostVariableName::encode("pt#_2"), "pt#_2");
    EXPECT_EQ(HostVariableName::encode("My Folder"), "xn__My_20Folder");
    EXPECT_EQ(HostVariableName::decode("xn__bad_zz"), "xn__bad_zz");
}

TEST(LanguageNames, MapBothWays)
{
    for (int m : {1, 2})
    {
        int back = -1;
        EXPECT_TRUE(HostLanguageNames::stringMeaningFromName(
            HostLanguageNames::stringMeaningName(m), back));
        EXPECT_EQ(back, m);
    }
    for (int l : {0, 1})
    {
        int back = -1;
        EXPECT_TRUE(HostLanguageNames::scriptLanguageFromName(
            HostLanguageNames::scriptLanguageName(l), back));
        EXPECT_EQ(back, l);
    }
    int m = 7;
    EXPECT_EQ(HostLanguageNames::stringMeaningName(0), nullptr);
    EXPECT_FALSE(HostLanguageNames::stringMeaningFromName("perl", m));
    EXPECT_EQ(m, 7);
}

TEST(SpareData, FolderTagsOfASwitcher)
{
    HostSpareData sw;
    sw.set("script_callback", "all");
    sw.set("group_type", "simple");
    sw.set("script_callback:1", "one");
    sw.set("folder_hidden:1", "1");
    sw.set("export_disable:0", "1");
    HostSpareData f0, f1;
    HostSpareData::extractFolderTags(sw, 0, f0);
    HostSpareData::extractFolderTags(sw, 1, f1);
    EXPECT_EQ(f0.tags(), (std::map<std::string, std::string>{{"export_disable", "1"},
                                                             {"script_callback", "all"}}));
    EXPECT_EQ(f1.tags(), (std::map<std::string, std::string>{{"script_callback", "one"}}));
    EXPECT_TRUE(HostSpareData::isSwitcherLevelTag(HostSpareData::DEFAULT_FOLDER_TAG));
    EXPECT_FALSE(HostSpareData::isSwitcherLevelTag(HostSpareData::OP_FILTER_TAG));
}

TEST(DialogStream, TokensLinesCommentsAndRestOfLine)
{
    HostDialogStream in;
    in.openString("# comment\nword \"a \\\"q\\\"\nb\"{[x]}\nlabel   \"so\\me\"  text \n last");
    std::string t;
    bool quoted = false;
    std::vector<std::string> got;
    ASSERT_TRUE(in.getToken(t, &quoted));
    EXPECT_EQ(std::tuple(t, in.getLine()), std::tuple("word", 2));
    ASSERT_TRUE(in.getToken(t, &quoted));
    EXPECT_TRUE(quoted);
    EXPECT_EQ(t, "a \"q\"\nb");
    while (in.getToken(t) && t != "label")
        got.push_back(t);
    EXPECT_EQ(got, (std::vector<std::string>{"{", "[", "x", "]", "}"}));
    EXPECT_EQ(in.getLine(), 4);
    ASSERT_TRUE(in.nextOnSameLine()); // a peeked token is given back as raw text
    EXPECT_EQ(in.getRestOfLine(), "\"so\\me\"  text");
    ASSERT_TRUE(in.getToken(t));
    EXPECT_EQ(std::tuple(t, in.getLine()), std::tuple("last", 5));
    EXPECT_FALSE(in.getToken(t));
}

TEST(DialogScript, SectionBuildsTemplatesAndImports)
{
    HostDialogStream in;
    ASSERT_TRUE(in.openFile(GZ_TEST_DATA_DIR "/section.ds"));
    HostDiagnosticCapture diag;
    HostScriptPage page;
    EXPECT_TRUE(page.parseSection(in));
    EXPECT_EQ(diag.text(), "");
    HostSpareLayout layout;
    std::string errors;
    ASSERT_TRUE(page.buildTemplates(layout, errors)) << errors;
    const HostParmTemplateList &l = layout.myTemplates;
    ASSERT_EQ(l.size(), 7);
    EXPECT_TRUE(l[0].getType().isJoinNext());
    EXPECT_EQ(l[0].getDefault(0).myNumber, 1.5);
    EXPECT_TRUE(l[0].getRange().myMinStrict);
    EXPECT_EQ(l[0].getExportLevel(), HostParmTemplate::EXPORT_ALL);

    const HostParmTemplate &sw = l[1];
    ASSERT_TRUE(sw.getType().isSwitcher());
    EXPECT_EQ(std::tuple(sw.getName(), sw.getFolderCount(), sw.getFolderLabel(1)),
              std::tuple("folder0", 2, "Other"));
    EXPECT_EQ(std::pair(sw.getFolderParmCount(0), sw.getFolderParmCount(1)), std::pair(1, 2));
    EXPECT_STREQ(sw.getTag("script_callback"), "print 1");
    EXPECT_STREQ(sw.getTag("script_callback:1"), "print 2");
    EXPECT_STREQ(sw.getTag("folder_hidden:1"), "1");
    EXPECT_EQ(sw.getTabCondition(0, HOST_COND_DISABLE), "{ scale == 0 }");

    EXPECT_EQ(
        std::tuple(l[2].getVectorSize(), l[2].getDefault(2).myString, l[2].getDefault(2).myMeaning),
        std::tuple(3, "ch(\"../x\")", HOST_STRING_EXPRESSION));
    const HostChoiceList *menu = l[3].getChoiceList();
    ASSERT_NE(menu, nullptr);
    EXPECT_TRUE(menu->usesToken() && menu->isExclusive());
    EXPECT_EQ(menu->getLabel(1), "Beta");
    ASSERT_NE(l[4].getChoiceList(), nullptr);
    EXPECT_EQ(l[4].getChoiceList()->getScript(), "echo a b\necho \"c\"");
    EXPECT_TRUE(l[4].getChoiceList()->isReplace());
    EXPECT_STREQ(l[4].getTag(HostSpareData::UNQUOTED_TAG), "1");

    ASSERT_TRUE(l[5].getType().isMultiparm());
    EXPECT_EQ(l[5].getDefault(0).myNumber, 2);
    ASSERT_EQ(l[5].getNumChildren(), 1);
    EXPECT_EQ(l[5].getChild(0).getName(), "pt#");
    EXPECT_EQ(l[5].getMultiStartOffset(), 0);
    EXPECT_EQ(l[6].getMultiType(), HostParmTemplate::MULTI_RAMP_COLOR);
    EXPECT_STREQ(l[6].getTag("ramp_color_default"), "1pos ( 0 ) 1c ( 0 0 0 )\n2pos ( 1 )");
    ASSERT_EQ(page.getParm(page.getNumParms() - 1)->mySelectors.size(), 1u);
    EXPECT_EQ(page.getParm(page.getNumParms() - 1)->mySelectors[0][5], "0x04");

    ASSERT_EQ(layout.myImports.size(), 1u);
    const HostImportRecord &r = layout.myImports[0];
    EXPECT_EQ(std::tuple(r.myLabel, r.myAfter, r.myEnable),
              std::tuple("My \"Import\" Label", 5, false));

    // Templates -> page -> templates is a fixed point.
    HostSpareLayout again;
    ASSERT_TRUE(HostScriptPage::fromTemplates(layout)->buildTemplates(again, errors));
    EXPECT_TRUE(again == layout);
}

TEST(DialogScript, SwitchersImportsAndTabBreaksSurviveTheWayBack)
{
    HostDiagnosticCapture diag;
    HostSpareLayout layout;
    const std::string text = "group { name \"a\" label \"A\" tabbreak parm { name \"x\" } }\n"
                             "group { name \"b\" label \"B\"\n"
                             "  import { label L\n source \"f.ds\" }\n"
                             "  groupradio { name \"r\" label \"R\" parm { name \"y\" } }\n"
                             "  groupradio { name \"r2\" label \"R2\" }\n"
                             "}\n"
                             "groupcollapsible { name \"c\" label \"C\" }\n"
                             "groupcollapsible { name \"d\" label \"D\" }\n";
    auto parsed = parseText(text, diag, &layout);
    EXPECT_EQ(diag.text(), "");
    EXPECT_EQ(parsed->getSwitcherFolderCount(0), 1); // the tab break ends it
    EXPECT_EQ(parsed->getSwitcherFolderCount(3), 1); // collapsible folders stand alone
    const HostScriptPage &inner = *parsed->getParm(1)->myPage;
    int first = -1, last = -1;
    inner.getSwitcherRange(2, first, last);
    EXPECT_EQ(std::pair(first, last), std::pair(1, 2));
    const HostParmTemplateList &l = layout.myTemplates;
    ASSERT_EQ(l.size(), 7); // a, x, b, r, y, c, d
    EXPECT_EQ(l[0].getFolderCount(), 1);
    EXPECT_EQ(std::pair(l[2].getFolderCount(), l[2].getFolderParmCount(0)), std::pair(1, 1));
    EXPECT_EQ(std::tuple(l[3].getType().isExclusive(), l[3].getFolderCount()), std::tuple(true, 2));
    EXPECT_STREQ(l[5].getTag("group_type"), "collapsible");
    EXPECT_EQ(l[6].getFolderCount(), 1);
    ASSERT_EQ(layout.myImports.size(), 1u);
    const HostImportRecord &r = layout.myImports[0];
    EXPECT_EQ(std::tuple(r.mySwitcher, r.myFolder, r.myAfter), std::tuple(2, 0, -1));

    auto page = HostScriptPage::fromTemplates(layout);
    EXPECT_TRUE(page->getParm(0)->myTabBreak);
    HostSpareLayout again;
    std::string errors;
    ASSERT_TRUE(page->buildTemplates(again, errors));
    EXPECT_TRUE(again == layout);
}

TEST(DialogScript, BadInputIsReportedWithFileAndLineAndReadingGoesOn)
{
    const std::tuple<const char *, const char *> cases[] = {
        {"parm {\n name \"a\"\n", "t.ds[2]: Missing '}' at the end of the parm block 'a'\n"},
        {"parm {\n bogus 1 { 2 }\n name \"a\" }",
         "t.ds[2]: Unknown keyword 'bogus' in a parm block\n"},
        {"parm { range { x 1 } }", "t.ds[1]: Bad number in range { x 1 }\n"},
        {"parm {\n name \"a\"\n type vector\n default { 1 2 3 4 }\n}",
         "t.ds[5]: Parameter 'a' has 4 default values for size 3\n"},
        {"parm { size 17 }", "t.ds[1]: Size 17 is outside 1 to 16\n"},
        {"parm { size 2.5 }", "t.ds[1]: Bad size '2.5'\n"},
        {"parm { size 99999999999999999999 }",
         "t.ds[1]: Size 99999999999999999999 is outside 1 to 16\n"},
        {"parm { type bogus }", "t.ds[1]: Unknown parameter type 'bogus'\n"},
        {"parm { default { [ \"x\" perl ] } }", "t.ds[1]: Unknown expression language 'perl'\n"},
        {"}\nparm { }", "t.ds[1]: Unexpected '}'\n"},
        {"parm {\x01 }", "t.ds[1]: Unexpected byte 0x01\n"},
        {"parm { name \"a }", "t.ds[1]: Unterminated string\n"
                              "t.ds[1]: Missing '}' at the end of the parm block 'a }'\n"},
        {"parm { name }", "t.ds[1]: Expected a value after 'name'\n"},
        {"frobnicate 1 2\nparm { }", "t.ds[1]: Unknown keyword 'frobnicate'\n"},
    };
    for (const auto &[text, report] : cases)
    {
        HostDiagnosticCapture diag;
        auto page = parseText(text, diag);
        EXPECT_EQ(diag.text(), report) << text;
    }
    // Reading went on: the block after the bad keyword still has its name.
    HostDiagnosticCapture diag;
    EXPECT_EQ(parseText(std::get<0>(cases[1]), diag)->getParm(0)->myName, "a");
}

TEST(DialogScript, EndlessNestingAndErrorFloodsStop)
{
    std::string deep;
    for (int i = 0; i < 5000; ++i)
        deep += "group {\n";
    HostDiagnosticCapture diag;
    parseText(deep, diag);
    ASSERT_EQ(diag.diagnostics().size(), 1u);
    EXPECT_EQ(diag.diagnostics()[0].myMessage, "Blocks nested too deeply");

    HostDiagnosticCapture flood;
    parseText(std::string(100000, '\x02'), flood);
    EXPECT_EQ(flood.diagnostics().size(), size_t(HostDialogStream::MAX_ERRORS) + 1);
}

TEST(DialogScript, EveryTypeTokenComesBackFromItsTemplate)
{
    const char *tokens[] = {
        "integer",      "float",        "vector2",      "vector",     "vector4",     "intvector2",
        "intvector",    "intvector4",   "uv",           "uvw",        "toggle",      "ordinal",
        "button",       "angle",        "direction",    "color",      "color4",      "ramp_flt",
        "ramp_rgb",     "string",       "file",         "directory",  "image",       "geometry",
        "oppath",       "oplist",       "label",        "heading",    "message",     "separator",
        "spacer",       "rgbamask",     "group",        "log",        "intlog",      "data",
        "geometrydata", "keyvaluedict", "float_minmax", "int_minmax", "buttonstrip", "iconstrip"};
    for (const char *token : tokens)
    {
        HostDiagnosticCapture diag;
        HostSpareLayout layout;
        parseText(std::string("parm { name \"p\" type ") + token + " }", diag, &layout);
        ASSERT_EQ(layout.myTemplates.size(), 1) << token;
        EXPECT_EQ(HostScriptParm::tokenFromType(layout.myTemplates[0]), token);
        EXPECT_EQ(diag.text(), "");
    }
}

TEST(DialogStream, IncludesAndOptionalFiles)
{
    const std::string dir = GZ_TEST_DATA_DIR;
    HostDiagnosticCapture diag;
    HostDialogStream missing;
    EXPECT_FALSE(missing.openFile(dir + "/none.ds", HostDialogStream::OPTIONAL));
    EXPECT_EQ(diag.text(), "");
    EXPECT_FALSE(missing.openFile(dir + "/none.ds"));
    EXPECT_EQ(diag.diagnostics().size(), 1u);

    // With includes on, the included section is read in place; without, the line is a comment.
    for (int option : {int(HostDialogStream::INCLUDES), 0})
    {
        HostDialogStream in;
        in.openString("#include \"section.ds\"\nparm { name \"last\" }\n", dir + "/main.ds",
                      option);
        HostScriptPage page;
        EXPECT_TRUE(page.parseSection(in));
        EXPECT_EQ(page.getNumParms(), option ? 7 : 1);
        EXPECT_EQ(page.getParm(page.getNumParms() - 1)->myName, "last");
    }
}
