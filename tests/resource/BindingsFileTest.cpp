// The bindings file: golden files good and damaged, write-read-write round trips.
#include "gz_ResourceTestEnv.h"

#include "host/HostPreprocessor.h"
#include "host/HostReader.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_SelectorTemplate.h"
#include "resource/gz_BindingsParser.h"
#include "tests/DiagnosticsRecorder.h"
#include "tests/TestFiles.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

namespace
{
DiagnosticsRecorder theDiagnostics;

const std::string theCasesDir = std::string(GZ_TEST_DATA_DIR) + "/bindings";

void replaceAll(std::string &text, const std::string &from, const std::string &to)
{
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

/// The operator types the golden files bind to, made once for the process.
void ensureOperators()
{
    static bool theMade = false;
    if (theMade)
        return;
    theMade = true;
    const HostParmTemplateList xform{HostParmTemplate(HOST_PARM_STRING, "group", "Group", 1),
                                     HostParmTemplate(HOST_PARM_XYZ, "t", "Translate", 3),
                                     HostParmTemplate(HOST_PARM_XYZ, "r", "Rotate", 3),
                                     HostParmTemplate(HOST_PARM_XYZ, "s", "Scale", 3),
                                     HostParmTemplate(HOST_PARM_FLOAT, "scale", "Scale", 1)};
    HostOperatorTable *sop = HostOperatorTable::getTable(HOST_NETWORK_SOP);
    HostOperatorTable *obj = HostOperatorTable::getTable(HOST_NETWORK_OBJECT);
    sop->addOperator("bf_xform", "Transform", xform);
    sop->addOperator("bf_box", "Box", xform);
    sop->addOperator("bf_scripted", "Scripted", xform, "", HostOperator::FLAG_SCRIPTED);
    obj->addOperator("bf_geo", "Geometry", xform);
}

HostOperator *op(const char *name)
{
    const HostNetworkType table =
        std::string(name) == "bf_geo" ? HOST_NETWORK_OBJECT : HOST_NETWORK_SOP;
    return HostOperatorTable::getTable(table)->getOperator(name);
}

/// A registry of a few handles and selectors, apart from the process's instance.
class FileManager : public gztest::ScratchManager
{
public:
    FileManager()
    {
        ensureOperators();
        static const char *const xform_parms[] = {
            "tx", "ty", "tz", "rx", "ry", "rz", "sx", "sy", "sz", "uniform_scale", nullptr};
        static const char *const cop_parms[] = {"parm0", nullptr};
        registerOpHandleLink(new GZ_GZTemplate("xform", "Transformer", "Sop Object", "",
                                               xform_parms, 0, ~0u, false));
        registerOpHandleLink(
            new GZ_GZTemplate("cop2only", "Cop2 only", "Cop2", "", cop_parms, 0, ~0u, false));
        registerSelector(new GZ_SelectorTemplate("everything", "Everything", "Sop", false));
        registerSelector(new GZ_SelectorTemplate("objselect", "Objects", "Object", false));
    }

    /// Reads the "OPbindings" of `dir` as the host would find it; returns what was printed.
    std::string readFrom(const std::string &dir)
    {
        const std::vector<std::string> saved = HostReader::getSearchPath();
        HostReader::setSearchPath({dir});
        theDiagnostics.start();
        registerOpHandleBindings();
        std::string printed = theDiagnostics.take();
        HostReader::setSearchPath(saved);
        replaceAll(printed, dir, "<DIR>");
        return printed;
    }

    /// The bindings as the writer writes them.
    std::string written()
    {
        const fs::path path = gztest::scratchPath("gz_bindings_file_test.out");
        EXPECT_NE(writeBindingsFile(path.c_str()), 0);
        std::string text = readTestFile(path.string());
        fs::remove(path);
        return text;
    }
};

/// Writes `text` as the "OPbindings" of a scratch folder and expects it to read back silently
/// and write the same text again; `reread` is the manager that read it.
void expectReadsBack(const std::string &text, FileManager &reread)
{
    const fs::path dir = gztest::scratchPath("gz_bindings_round_trip");
    fs::create_directories(dir);
    std::ofstream(dir / "OPbindings", std::ios::binary) << text;
    EXPECT_EQ(reread.readFrom(dir.string()), "");
    EXPECT_EQ(reread.written(), text);
    fs::remove_all(dir);
}

/// Reads a case directory and compares the messages and the bindings with its goldens.
void checkCase(const std::string &name)
{
    SCOPED_TRACE(name);
    const std::string dir = theCasesDir + "/" + name;
    ASSERT_TRUE(fs::exists(dir + "/OPbindings"));
    FileManager manager;
    expectGolden(manager.readFrom(dir), dir + "/expected.err");
    expectGolden(manager.written(), dir + "/expected.bindings");
}

} // namespace

TEST(BindingsFileRead, GoodFileReadsEveryFormSilently)
{
    checkCase("good");
    // The forms that the writer cannot show directly.
    FileManager manager;
    EXPECT_EQ(manager.readFrom(theCasesDir + "/good"), "");
    const std::vector<GZ_BindingHandleInfo> *handles = manager.getBindingHandles(op("bf_xform"));
    ASSERT_NE(handles, nullptr);
    ASSERT_EQ(handles->size(), 2u);
    EXPECT_EQ(std::tuple((*handles)[0].getId(), (*handles)[1].getId()), std::tuple(0, 1));
    std::string label;
    (*handles)[0].getDefaultSettings().getSetting("label", label, "");
    EXPECT_EQ(label, "say \"hi\"");
    // The operator listed twice keeps only its second block.
    handles = manager.getBindingHandles(op("bf_geo"));
    ASSERT_NE(handles, nullptr);
    ASSERT_EQ(handles->size(), 1u);
    EXPECT_EQ((*handles)[0].getGZDescription(), "new");
    // Operator types that keep their own bindings are read but not written.
    EXPECT_NE(manager.getBindingHandles(op("bf_scripted")), nullptr);
}

TEST(BindingsFileRead, DamagedFilesReportWithFileAndLine)
{
    for (const char *name :
         {"unknown_keyword", "unknown_names", "missing_fields", "legacy", "unterminated_handle",
          "unterminated_selector", "missing_open_brace", "includes", "binary_junk"})
        checkCase(name);
}

TEST(BindingsFileRead, WarningsFollowThePrintFlag)
{
    // With warnings off, only the messages about the file's form remain.
    FileManager manager;
    std::string printed;
    {
        GZ_ResourceManager::WarningScope quiet(false);
        printed = manager.readFrom(theCasesDir + "/unknown_names");
    }
    EXPECT_EQ(printed.find("Bad handle"), std::string::npos);
    EXPECT_EQ(printed.find("Warning"), std::string::npos);
    const std::string legacy = manager.readFrom(theCasesDir + "/legacy");
    EXPECT_NE(legacy.find("Legacy bindhandle format"), std::string::npos);
}

TEST(BindingsFileRead, FirstFileOnTheSearchPathWinsAndNoFileIsNoError)
{
    FileManager manager;
    const fs::path empty = gztest::scratchPath("gz_bindings_no_file");
    fs::create_directories(empty);
    EXPECT_EQ(manager.readFrom(empty.string()), "");
    EXPECT_EQ(manager.written(), "");

    const std::vector<std::string> saved = HostReader::getSearchPath();
    HostReader::setSearchPath({empty.string(), theCasesDir + "/good", theCasesDir + "/legacy"});
    theDiagnostics.start();
    manager.registerOpHandleBindings();
    EXPECT_EQ(theDiagnostics.take(), "");
    HostReader::setSearchPath(saved);
    EXPECT_EQ(manager.written(), readTestFile(theCasesDir + "/good/expected.bindings"));
    fs::remove_all(empty);
}

TEST(BindingsFileWrite, WriteReadWriteIsAFixedPoint)
{
    // From a file, and from bindings made through the binding operations.
    FileManager from_file, again;
    from_file.readFrom(theCasesDir + "/good");
    expectReadsBack(from_file.written(), again);

    FileManager made;
    HostOperator *box = op("bf_box"), *xform = op("bf_xform"), *geo = op("bf_geo");
    ASSERT_EQ(made.bind(box, "xform", "b", "tx", "tx", "color(1 0 0) scale(0.1) name('a\\'b')"), 1);
    ASSERT_EQ(made.bind(box, "xform", "b", "{ t }", "sx", nullptr), 1);
    ASSERT_EQ(made.bind(geo, "xform", "g", "rz", "rz", ""), 1);
    ASSERT_EQ(made.bindSelector(xform, "everything", "e", "Pick", "group", 1, 0, "poly", 1, "menu",
                                1, "more", false),
              1);
    ASSERT_EQ(made.bindSelector(box, "everything", "f", "Pick", "group", 0, 1, "all", 0, "m", 0, "",
                                false),
              1);
    // Prompts with blanks, and empty parameters and menus, are quoted.
    ASSERT_EQ(made.bindSelector(box, "everything", "two words", "Pick \"one\"", "", 0, 1, "all", 0,
                                "", 0, "#not a comment", false),
              1);
    const std::string from_bindings = made.written();
    EXPECT_EQ(from_bindings, "Sop/bf_box\n"
                             "{\n"
                             "    bindhandle xform b \"color(1 0 0) scale(0.10000000000000001) "
                             "name('a\\\\'b')\"\n"
                             "    {\n"
                             "\ttx tx\n"
                             "\t{ t } sx\n"
                             "    }\n"
                             "    bindselector everything f\n"
                             "    {\n"
                             "\tPick\n"
                             "\tgroup 0 1 all 0 m 0\n"
                             "    }\n"
                             "    bindselector everything \"two words\"\n"
                             "    {\n"
                             "\t\"Pick \\\"one\\\"\"\n"
                             "\t\"\" 0 1 all 0 \"\" 0\n"
                             "\t\"#not a comment\"\n"
                             "    }\n"
                             "}\n"
                             "\n"
                             "Object/bf_geo\n"
                             "{\n"
                             "    bindhandle xform g \"\"\n"
                             "    {\n"
                             "\trz rz\n"
                             "    }\n"
                             "}\n"
                             "\n"
                             "Sop/bf_xform\n"
                             "{\n"
                             "    bindselector everything e\n"
                             "    {\n"
                             "\tPick\n"
                             "\tgroup 1 0 poly 1 menu 1\n"
                             "\tmore\n"
                             "    }\n"
                             "}\n"
                             "\n");
    FileManager reread;
    expectReadsBack(from_bindings, reread);
}

TEST(BindingsFileWrite, AnyWordsReadBackAsWritten)
{
    // Words with blanks, quotes, backslashes, comment marks and braces, and empty words, in
    // every place a word is written (the shipped file's empty menu and prompt with blanks
    // once came back as other fields).
    FileManager made;
    HostOperator *box = op("bf_box"), *xform = op("bf_xform");
    ASSERT_EQ(made.bind(box, "xform", "two words", "a\"b", "tx", "label('x \\\\ \"y\"')"), 1);
    for (const auto &[op_parm, handle_parm] :
         {std::pair{"#t", "ty"}, {"}t", "tz"}, {"{x", "rx"}, {"a//b", "ry"}, {"{ a\tb }", "rz"}})
        ASSERT_EQ(made.bind(box, "xform", "two words", op_parm, handle_parm, ""), 1);
    ASSERT_EQ(made.bindSelector(xform, "everything", "#d", "Select the geometry, then Enter.",
                                "group", 0, 1, "", 0, "", 0, "}more info", false),
              1);
    ASSERT_EQ(made.bindSelector(box, "everything", "/*d", "{", "a b", 0, 1, "'m'", 0, "x\\", 0,
                                "// i", /*skip_parm_check=*/true),
              1);
    FileManager reread;
    expectReadsBack(made.written(), reread);
    const std::vector<GZ_BindingHandleInfo> *handles = reread.getBindingHandles(box);
    ASSERT_NE(handles, nullptr);
    ASSERT_EQ(handles->size(), 1u);
    EXPECT_EQ((*handles)[0].getGZDescription(), "two words");
    ASSERT_EQ((*handles)[0].getBindings().size(), 6u);
    EXPECT_EQ((*handles)[0].getBindings()[0].getOpParm(), "a\"b");
    std::string label;
    (*handles)[0].getDefaultSettings().getSetting("label", label, "");
    EXPECT_EQ(label, "x \\ \"y\"");
}

TEST(BindingsFileWrite, UnwritablePathReturnsZero)
{
    FileManager manager;
    EXPECT_EQ(manager.writeBindingsFile("/nonexistent-dir/OPbindings"), 0);
    EXPECT_EQ(manager.writeBindingsFile(nullptr), 0);
}

TEST(BindingsFileRead, TextDecodesIntoRecordsWithLocationsAndAppliesAsTheFileDoes)
{
    // Decoding needs no registry: every record knows its line, problems sit in file order.
    const std::string text = "Sop/a\n{\n    bindhandle xform d \"\"\n    {\n\ttx 0 ty\n"
                             "\tty 1x tz\n    }\n    bindselector everything s\n    {\n\tp\n"
                             "\tgroup 0 1 \"\" 0 \"\" 0\n\tx\n\tfourth\n    }\n    junk\n}\n";
    HostPreprocessor pp;
    pp.openText(text, "t");
    gz_BindingsDocument document;
    gz_BindingsParser::read(pp, document);
    std::string kinds;
    for (const gz_BindingsRecord &record : document.records)
        kinds += std::to_string(record.kind) + "@" + std::to_string(record.line) + " ";
    using R = gz_BindingsRecord;
    const auto at = [](R::Kind kind, int line)
    { return std::to_string(kind) + "@" + std::to_string(line) + " "; };
    EXPECT_EQ(kinds, at(R::OPERATOR, 1) + at(R::HANDLE, 3) + at(R::LINK, 5) + at(R::PROBLEM, 6) +
                         at(R::SELECTOR, 8) + at(R::PROBLEM, 13) + at(R::SELECTOR_END, 14) +
                         at(R::PROBLEM, 15));
    EXPECT_EQ(document.records[2].vecIndex, 0);
    EXPECT_TRUE(document.records[5].onlyForKnownSelector);
    EXPECT_TRUE(document.selectors[document.records[6].detail].complete);
    EXPECT_EQ(document.file(document.records[2]), "t");

    // The text entry point reads as the file does, includes beside the name given.
    const std::string dir = theCasesDir + "/good";
    FileManager from_file, from_text;
    from_file.readFrom(dir);
    theDiagnostics.start();
    from_text.registerOpHandleBindingsFromText(readTestFile(dir + "/OPbindings"),
                                               dir + "/OPbindings");
    EXPECT_EQ(theDiagnostics.take(), "");
    EXPECT_EQ(from_text.written(), from_file.written());
}
