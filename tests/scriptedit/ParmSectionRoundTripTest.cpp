// Parameter sections read and written again: the writer's output is a fixed point.
#include "scriptedit/GZ_EditScriptedParms.h"

#include "tests/TestFiles.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace
{
/// Reads a section and writes it back; fails the test on read errors.
std::string rewrite(const std::string &text)
{
    GZ_EditScriptedParms parms;
    std::string messages;
    EXPECT_TRUE(parms.parseParmSection(text, "section", messages)) << messages;
    std::ostringstream os;
    std::string errors;
    parms.save(os, errors, /*check_joins=*/true);
    EXPECT_EQ(errors, "");
    return os.str();
}
} // namespace

TEST(ParmSectionRoundTrip, WrittenTextIsAFixedPoint)
{
    // A section as the writer writes it comes back byte for byte; the writer's golden text
    // (built by hand, with defaults the reader fills in) settles after one round.
    const std::string section =
        readTestFile(std::string(GZ_SOURCE_DIR) + "/tests/scenarios/data/spare_section.ds");
    EXPECT_EQ(rewrite(section), section);
    const std::string once = rewrite(readTestFile(std::string(GZ_TEST_DATA_DIR) + "/writer_golden.ds"));
    EXPECT_EQ(rewrite(once), once);
    EXPECT_NE(once.find("import {"), std::string::npos);
    EXPECT_NE(once.find("multiparm {"), std::string::npos);
    EXPECT_NE(once.find("groupcollapsible {"), std::string::npos);
}

TEST(ParmSectionRoundTrip, ReadErrorsAppendNothing)
{
    GZ_EditScriptedParms parms;
    std::string messages;
    EXPECT_FALSE(parms.parseParmSection("parm {\n name \"a\"\n size 40\n default { \"1\" \n",
                                        "bad.ds", messages));
    EXPECT_EQ(parms.entries(), 0);
    EXPECT_EQ(messages.compare(0, 7, "bad.ds["), 0) << messages;
}
