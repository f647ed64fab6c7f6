// Tests of the search path and line reading.
#include "host/HostReader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace
{
namespace fs = std::filesystem;

class HostSearchPath : public ::testing::Test
{
protected:
    void SetUp() override
    {
        mySaved = HostReader::getSearchPath();
        myRoot =
            fs::temp_directory_path() /
            ("gzhost_reader_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
             "_" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(myRoot);
        fs::create_directories(myRoot / "a" / "config" / "Help" / "handle");
        fs::create_directories(myRoot / "b" / "config" / "Help" / "handle");
        fs::create_directories(myRoot / "b" / "OPbindings"); // a directory is not a file
    }
    void TearDown() override
    {
        HostReader::setSearchPath(mySaved);
        fs::remove_all(myRoot);
    }
    void write(const fs::path &rel, const std::string &text)
    {
        std::ofstream(myRoot / rel, std::ios::binary) << text;
    }
    std::string dir(const char *name) const { return (myRoot / name).string(); }

    std::vector<std::string> mySaved;
    fs::path myRoot;
};
} // namespace

TEST_F(HostSearchPath, FindsTheFirstFileInPathOrder)
{
    write("a/config/Help/handle/xform", "help a\n");
    write("b/config/Help/handle/xform", "help b\n");
    write("a/OPbindings", "x");
    HostReader::setSearchPath({dir("b"), dir("a")});

    std::string path;
    ASSERT_TRUE(HostReader::findFile("config/Help/handle/xform", path));
    EXPECT_EQ(path, dir("b") + "/config/Help/handle/xform");
    ASSERT_TRUE(HostReader::findFile("OPbindings", path)); // b has a directory of that name
    EXPECT_EQ(path, dir("a") + "/OPbindings");
    EXPECT_EQ(HostReader::findAllFiles("config/Help/handle/xform").size(), 2u);
    EXPECT_FALSE(HostReader::findFile("config/Help/handle/missing", path));
    EXPECT_FALSE(HostReader::findFile("", path));
    ASSERT_TRUE(HostReader::findFile(dir("a") + "/OPbindings", path)); // absolute: as given

    HostReader::clearSearchPath();
    EXPECT_FALSE(HostReader::findFile("OPbindings", path));
    HostReader::appendSearchPath(dir("a") + "/");
    EXPECT_TRUE(HostReader::findFile("OPbindings", path));
    EXPECT_EQ(path, dir("a") + "/OPbindings");
}

TEST_F(HostSearchPath, ReadsLinesWithNumbersAndAnyLineEnd)
{
    write("a/lines", "one\r\ntwo\n\nlast");
    std::vector<std::string> lines;
    ASSERT_TRUE(HostReader::readLines(dir("a") + "/lines", lines));
    EXPECT_EQ(lines, (std::vector<std::string>{"one", "two", "", "last"}));

    HostReader reader(dir("a") + "/lines");
    ASSERT_TRUE(reader.isOpen());
    std::string line;
    EXPECT_EQ(reader.getLineNumber(), 0);
    reader.getLine(line);
    reader.getLine(line);
    EXPECT_EQ(std::tuple(line, reader.getLineNumber()), std::tuple("two", 2));

    EXPECT_FALSE(HostReader::readLines(dir("a") + "/missing", lines));
    std::string text;
    ASSERT_TRUE(HostReader::readFile(dir("a") + "/lines", text));
    EXPECT_EQ(text, "one\r\ntwo\n\nlast");
}
