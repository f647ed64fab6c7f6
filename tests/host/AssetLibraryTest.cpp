// Operator type library files: the exact bytes, refusal of damaged files, atomic saves.
#include "host/HostAssetLibraryFile.h"
#include "host/HostAssetLibraryManager.h"
#include "host/HostDiagnostics.h"

#include "tests/TestFiles.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace
{
namespace fs = std::filesystem;

std::vector<HostAssetDefinition> twoTypes()
{
    HostAssetDefinition nudge("Sop/nudge", "Nudge \"it\"", 0, 1);
    nudge.setSection("DialogScript", "{\n    name\tnudge\n}\n");
    nudge.setSection("Extra bytes", std::string("a\0\n\nb", 5));
    HostAssetDefinition spin("Object/spin", "", 1, 4);
    spin.setSection("DialogScript", "");
    return {nudge, spin};
}

struct LibraryFixture : testing::Test
{
    void SetUp() override
    {
        fs::create_directories(dir);
        HostAssetLibraryManager::get().clear();
    }
    void TearDown() override
    {
        HostAssetLibraryManager::get().clear();
        fs::remove_all(dir);
    }
    std::string path(const char *name) const { return (dir / name).string(); }

    fs::path dir = fs::temp_directory_path() / ("gz_oplib_" + std::to_string(::getpid()));
};
} // namespace

TEST(AssetLibraryFile, WritesTheGoldenBytesAndReadsThemBack)
{
    const std::string golden =
        readTestFile(std::string(GZ_SOURCE_DIR) + "/tests/host/data/two_types.oplib");
    EXPECT_EQ(HostAssetLibraryFile::format(twoTypes()), golden);
    std::vector<HostAssetDefinition> read;
    std::string error;
    int line = 0;
    ASSERT_TRUE(HostAssetLibraryFile::parse(golden, read, error, line)) << error;
    EXPECT_EQ(read, twoTypes());
    EXPECT_EQ(HostAssetLibraryFile::format(read), golden);
}

TEST(AssetLibraryFile, EveryTruncationAndEveryChangedByteIsRefusedWhole)
{
    const std::string text = HostAssetLibraryFile::format(twoTypes());
    std::vector<HostAssetDefinition> read;
    std::string error;
    int line = 0;
    for (size_t size = 0; size < text.size(); ++size)
    {
        EXPECT_FALSE(HostAssetLibraryFile::parse(text.substr(0, size), read, error, line)) << size;
        EXPECT_TRUE(read.empty());
    }
    for (size_t at = 0; at < text.size(); ++at)
    {
        std::string damaged = text;
        damaged[at] = static_cast<char>(damaged[at] ^ 1);
        EXPECT_FALSE(HostAssetLibraryFile::parse(damaged, read, error, line)) << at;
        EXPECT_TRUE(read.empty());
    }
    EXPECT_FALSE(HostAssetLibraryFile::parse(text + "x", read, error, line));
}

TEST_F(LibraryFixture, SavesReplaceInPlaceAndAFailedSaveKeepsTheOldFile)
{
    HostAssetLibraryManager &libraries = HostAssetLibraryManager::get();
    const std::string lib = path("sub/lib.oplib");
    for (const HostAssetDefinition &def : twoTypes())
        ASSERT_TRUE(libraries.addDefinitionToFile(lib, def));
    ASSERT_TRUE(libraries.loadLibrary(lib, "test"));
    EXPECT_EQ(libraries.findDefinitionLibrary("Object/spin"), lib);
    EXPECT_EQ(libraries.findDefinitionLibrary("Sop/spin"), "");

    HostAssetDefinition changed("Sop/nudge", "Nudge 2", 0, 2);
    changed.setSection("DialogScript", "new");
    ASSERT_TRUE(libraries.addDefinitionToFile(lib, changed));
    std::vector<HostAssetDefinition> expected = twoTypes();
    expected[0] = changed;
    EXPECT_EQ(libraries.findLibrary(lib)->myDefinitions, expected); // the loaded copy too
    const std::string before = readTestFile(lib);
    EXPECT_EQ(before, HostAssetLibraryFile::format(expected));

    // The new file cannot be made: the save fails, says so, and the old bytes stay.
    fs::create_directories(lib + ".new");
    HostDiagnosticCapture capture;
    EXPECT_FALSE(libraries.addDefinitionToFile(lib, HostAssetDefinition("Sop/x", "", 0, 0)));
    EXPECT_EQ(readTestFile(lib), before);
    EXPECT_EQ(capture.text(),
              lib + ": operator type library not saved: cannot write " + lib + ".new\n");
}

TEST_F(LibraryFixture, ADamagedLibraryIsNeitherLoadedNorOverwritten)
{
    HostAssetLibraryManager &libraries = HostAssetLibraryManager::get();
    const std::string lib = path("bad.oplib");
    const std::string text = HostAssetLibraryFile::format(twoTypes());
    const std::string damaged = text.substr(0, text.size() - 30);
    std::ofstream(lib, std::ios::binary) << damaged;
    HostDiagnosticCapture capture;
    EXPECT_FALSE(libraries.loadLibrary(lib, "test"));
    EXPECT_FALSE(libraries.addDefinitionToFile(lib, twoTypes()[1]));
    EXPECT_FALSE(libraries.isLoaded(lib));
    EXPECT_EQ(readTestFile(lib), damaged);
    ASSERT_EQ(capture.diagnostics().size(), 2u);
    EXPECT_EQ(capture.diagnostics()[0].myText,
              lib + "[21]: damaged operator type library, nothing loaded: the file ends "
                    "before its last line");
}
