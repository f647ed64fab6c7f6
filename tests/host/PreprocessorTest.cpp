// The preprocessing reader: comments, conditionals, includes, locations and tokens.
#include "host/HostPreprocessor.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace
{
const std::vector<std::string> theBindingOptions = {"", "-x", "-P"};

std::vector<std::string> allLines(HostPreprocessor &pp)
{
    std::vector<std::string> lines;
    std::string line;
    while (pp.getLine(line))
        lines.push_back(line + "@" + pp.fileName() + ":" + std::to_string(pp.lineNumber()));
    return lines;
}

class TempDir
{
public:
    TempDir()
    {
        char tmpl[] = "/tmp/gzppXXXXXX";
        myPath = mkdtemp(tmpl);
    }
    ~TempDir() { std::filesystem::remove_all(myPath); }
    std::string write(const std::string &name, const std::string &text) const
    {
        std::string path = myPath + "/" + name;
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(path) << text;
        return path;
    }
    const std::string &path() const { return myPath; }

private:
    std::string myPath;
};
} // namespace

TEST(Preprocessor, RemovesCommentsButNotInsideStrings)
{
    HostPreprocessor pp;
    pp.openText("a /* one\ntwo */ b\nc // tail\n\"x // y\" '/* z */'\n", "f", theBindingOptions);
    EXPECT_EQ(allLines(pp), (std::vector<std::string>{"a @f:1", "  b@f:2", "c @f:3",
                                                      "\"x // y\" '/* z */'@f:4"}));
}

TEST(Preprocessor, ConditionalsAndMacros)
{
    HostPreprocessor pp;
    pp.openText("#define A 2\n"
                "#ifdef A\nyes A\n#else\nno\n#endif\n"
                "#if defined(B) || A == 2\nif\n#elif 1\nelif\n#endif\n"
                "#ifndef A\nhidden\n#endif\n"
                "#undef A\n#if A\nhidden\n#else\nshown A \"A\"\n#endif\n",
                "f", theBindingOptions);
    EXPECT_EQ(allLines(pp),
              (std::vector<std::string>{"yes 2@f:3", "if@f:8", "shown A \"A\"@f:19"}));
}

TEST(Preprocessor, HashLinesAndErrorsAreDeliveredInBand)
{
    HostPreprocessor pp;
    pp.openText("# a comment\n#error stop here\n#endif\n#if 1\nx\n", "f", theBindingOptions);
    EXPECT_EQ(allLines(pp),
              (std::vector<std::string>{"# a comment@f:1", "# error f[2]: stop here@f:2",
                                        "# error f[3]: #endif without #if@f:3", "x@f:5",
                                        "# error f[4]: missing #endif@f:5"}));

    // Without -P an unknown directive is an error, not text.
    HostPreprocessor strict;
    strict.openText("# a comment\n", "g");
    std::string line;
    ASSERT_TRUE(strict.getLine(line));
    EXPECT_EQ(line, "# error g[1]: unknown directive: # a comment");
}

TEST(Preprocessor, IncludesBesideThenOnSearchPathWithLocations)
{
    TempDir dir;
    dir.write("lib/common", "from lib\n");
    dir.write("main/inner", "inner 1\n#include \"../main/missing\"\n");
    std::string main =
        dir.write("main/top", "first\n#include \"inner\"\n#include <common>\nlast\n");
    HostPreprocessor pp;
    pp.setSearchPath({dir.path() + "/lib"});
    ASSERT_TRUE(pp.open(main, theBindingOptions));
    std::vector<std::string> lines = allLines(pp);
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_EQ(lines[0], "first@" + main + ":1");
    EXPECT_EQ(lines[1], "inner 1@" + dir.path() + "/main/inner:1");
    EXPECT_EQ(lines[2].rfind("# error " + dir.path() + "/main/inner[2]: cannot open include", 0),
              0u)
        << lines[2];
    EXPECT_EQ(lines[3], "from lib@" + dir.path() + "/lib/common:1");
    EXPECT_EQ(lines[4], "last@" + main + ":4");
    EXPECT_FALSE(HostPreprocessor().open(dir.path() + "/nope"));
}

TEST(Preprocessor, CircularIncludesStop)
{
    TempDir dir;
    std::string a = dir.write("a", "#include \"a\"\n");
    HostPreprocessor pp;
    ASSERT_TRUE(pp.open(a));
    std::string line;
    ASSERT_TRUE(pp.getLine(line));
    EXPECT_NE(line.find("nested too deeply"), std::string::npos) << line;
    EXPECT_FALSE(pp.getLine(line));
}

TEST(Preprocessor, TokensCrossLinesAndHonourQuotes)
{
    HostPreprocessor pp;
    pp.openText("bindhandle xform \"Trans form\" \"a(\\\"q\\\")\"\n{\n  tx\n tx }\n'unterminated\n",
                "f");
    std::vector<std::pair<std::string, bool>> tokens;
    std::string token;
    bool quoted = false;
    // getLineToken never fetches a line; getToken does.
    EXPECT_FALSE(pp.getLineToken(token, &quoted));
    ASSERT_TRUE(pp.getToken(token, &quoted));
    EXPECT_EQ(token, "bindhandle");
    ASSERT_TRUE(pp.getLineToken(token, &quoted));
    EXPECT_EQ(token, "xform");
    EXPECT_EQ(pp.restOfLine(), " \"Trans form\" \"a(\\\"q\\\")\"");
    pp.openText("a \"b c\" 'd\\'e'\n\n  f\n'open", "f");
    while (pp.getToken(token, &quoted))
        tokens.emplace_back(token, quoted);
    EXPECT_EQ(tokens,
              (std::vector<std::pair<std::string, bool>>{
                  {"a", false}, {"b c", true}, {"d'e", true}, {"f", false}, {"open", true}}));
    EXPECT_EQ(pp.lineNumber(), 4);
}
