// Import sources and tokens: building, parsing, import files and validation.
#include "gz_PersistentTestEnv.h"

#include "host/HostScriptPage.h"
#include "persistent/GZ_ImportUtils.h"

#include <cstdio>
#include <fstream>
#include <tuple>

namespace
{
using gztest::PersistentFixture;
using IU = GZ_ImportUtils;

HostParmTemplate switcher(const char *name, std::initializer_list<const char *> labels)
{
    HostParmTemplate sw(HOST_PARM_SWITCHER, name, name);
    for (const char *label : labels)
        sw.addFolder(label, 0);
    return sw;
}

TEST(ImportStrings, BuildAndQuery)
{
    std::string out = "stale";
    IU::buildFileSource(out, nullptr);
    EXPECT_EQ(out, "");
    IU::buildFileSource(out, "a.ds");
    EXPECT_EQ(out, "a.ds");
    IU::buildOpSource(out, "");
    EXPECT_EQ(out, "op:");
    IU::buildFolderToken(out, nullptr, "Tab");
    EXPECT_EQ(out, ":Tab");
    IU::buildFolderToken(out, "f", "");
    EXPECT_EQ(std::tuple(out, IU::queryImportType(nullptr)), std::tuple("f:", GZ_IMPORT_NONE));
    EXPECT_EQ(IU::queryImportType("op:/obj/geo1"), GZ_IMPORT_OP);
    EXPECT_EQ(IU::queryImportType("file.ds"), GZ_IMPORT_FILE);
    EXPECT_EQ(IU::queryImportType("op"), GZ_IMPORT_FILE);
    EXPECT_FALSE(IU::parseFileSource("", out));
    EXPECT_TRUE(IU::parseFileSource("x.ds", out));
    EXPECT_EQ(out, "x.ds");
}

TEST(ImportAvailability, ExportDisableTags)
{
    HostParmTemplate plain(HOST_PARM_FLOAT, "f", "F");
    EXPECT_FALSE(IU::isAvailableForImport(static_cast<const HostParmTemplate *>(nullptr), 0));
    EXPECT_FALSE(IU::isAvailableForImport(static_cast<const HostParm *>(nullptr), -1));
    EXPECT_TRUE(IU::isAvailableForImport(&plain, 5));
    for (const char *value : {"10", "true", "0"})
    {
        plain.tags().set("export_disable", value);
        EXPECT_TRUE(IU::isAvailableForImport(&plain, -1)) << value;
    }
    plain.tags().set("export_disable", "1");
    EXPECT_FALSE(IU::isAvailableForImport(&plain, -1));

    HostParmTemplate sw = switcher("sw", {"A", "B", "C"});
    sw.tags().set("export_disable:2", "1");
    EXPECT_TRUE(IU::isAvailableForImport(&sw, 1));
    EXPECT_FALSE(IU::isAvailableForImport(&sw, 2));
    EXPECT_FALSE(IU::isAvailableForImport(&sw, 3)); // past the last tab
    EXPECT_TRUE(IU::isAvailableForImport(&sw, -1));
    sw.tags().set("export_disable", "1");
    EXPECT_FALSE(IU::isAvailableForImport(&sw, 0));
}

class ImportUtilsTest : public PersistentFixture
{
};

TEST_F(ImportUtilsTest, OpSourceFindsAndValidates)
{
    HostNode *src = make("/obj/src");
    make("/obj/other");
    HostParmTemplateList spare;
    spare.append(HostParmTemplate(HOST_PARM_FLOAT, "amp", "Amp"));
    spare.append(HostParmTemplate(HOST_PARM_MULTIPARM, "pts", "Points"));
    HostParmTemplate sw = switcher("fold", {"Main", "Hidden", "Extra"});
    sw.tags().set("export_disable:1", "1");
    spare.append(sw);
    src->setSpareTemplates(spare);

    std::string path;
    EXPECT_EQ(IU::parseOpSource("op:../other", src, path)->getFullPath(), "/obj/other");
    EXPECT_EQ(path, "../other");
    EXPECT_EQ(IU::parseOpSource("op:", src, path), nullptr);
    EXPECT_EQ(IU::parseOpSource("/obj/src", src, path), nullptr);
    EXPECT_EQ(IU::parseOpSource("op:/obj/none", src, path), nullptr);

    std::map<std::string, HostParm *> parms{{"gone", nullptr}};
    for (const char *name : {"amp", "pts", "fold"})
        parms[name] = src->getParm(name);
    // clang-format off
    const std::tuple<const char *, const char *, bool, bool, bool> cases[] = {
        {"op:/obj/src", "amp", false, false, true}, {"op:/obj/src", "amp", false, true, false},
        {"op:/obj/src", "pts", false, true, true}, {"op:/obj/src", "gone", false, true, true},
        {"op:/obj/src", "nope", false, false, false}, {"op:/obj/other", "amp", false, false, false},
        {"/obj/src", "amp", false, false, false}, {"op:/obj/src", "fold:Extra", true, false, true},
        {"op:/obj/src", "fold:Hidden", true, false, false},
        {"op:/obj/src", "fold:Nope", true, false, false},
        {"op:/obj/src", "amp:Main", true, false, false},
        {"op:/obj/src", "fold", true, false, false}, {"op:/obj/src", nullptr, false, false, false}};
    // clang-format on
    for (const auto &[source, token, folder, multi, ok] : cases)
        EXPECT_EQ(IU::validateOpSource(source, token, folder, multi, "/obj/src", parms), ok)
            << source << " " << (token ? token : "(null)");
}

TEST_F(ImportUtilsTest, ImportFileParsesAndValidates)
{
    const std::string dir = ::testing::TempDir();
    const std::string file = dir + "/import_utils.ds";
    std::ofstream(file) << "{\n name imp\n label Imp\n"
                           " group { name tabs label First\n"
                           "  parm { name inner label Inner type float }\n }\n"
                           " group { name tabs_1 label Second }\n"
                           " multiparm { name pts label Points default 1\n"
                           "  parm { name \"pt#\" label Pt type float }\n }\n"
                           " parm { name amp label Amp type float }\n}\n";
    HostCommandManager::getInstance()->setVariable("IMPDIR", dir);
    auto page = IU::parseImportFile("$IMPDIR/import_utils.ds");
    HostCommandManager::getInstance()->unsetVariable("IMPDIR");
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(std::tuple(page->getName(), IU::parseImportFile("")), std::tuple("imp", nullptr));
    EXPECT_EQ(IU::parseImportFile((dir + "/missing.ds").c_str()), nullptr);

    std::vector<std::unique_ptr<HostScriptParm>> storage;
    std::map<std::string, HostScriptParm *> parms;
    IU::indexFileParms(*page, storage, parms);
    EXPECT_EQ(parms.size(), 4u); // tabs, inner, pts, amp: not "pt#", not the second tab
    const char *src = "lib.ds";
    // clang-format off
    const std::tuple<const char *, bool, bool, bool> cases[] = {
        {"amp", false, false, true}, {"inner", false, false, true}, {"pts", false, true, true},
        {"pts", false, false, false}, {"pt#", false, true, false},
        {"tabs:Second", true, false, true}, {"tabs:First", true, false, true},
        {"tabs:", true, false, false}, {"tabs_1:Second", true, false, false},
        {"amp:First", true, false, false}};
    // clang-format on
    for (const auto &[token, folder, multi, ok] : cases)
        EXPECT_EQ(IU::validateFileSource(src, token, folder, multi, src, parms), ok) << token;
    EXPECT_FALSE(IU::validateFileSource("other.ds", "amp", false, false, src, parms));
    EXPECT_FALSE(IU::validateFileSource(nullptr, "amp", false, false, src, parms));
    std::remove(file.c_str());
}
} // namespace
