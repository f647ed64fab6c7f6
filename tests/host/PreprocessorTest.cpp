// The preprocessing reader: comments, conditionals, includes, locations and tokens.
#include "host/HostPreprocessor.h"

#include "host/HostDiagnostics.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace
{
const std::vector<std::string> theBindingOptions = {"", "-x", "-P"};

/// Every delivered line as "TEXT@FILE:LINE", and every problem as "!FILE[LINE]: MESSAGE"
/// where it was met among them.
std::vector<std::string> allLines(HostPreprocessor &pp)
{
    std::vector<std::string> lines;
    pp.setProblemHandler(
        [&lines](const std::string &file, int number, const std::string &message)
        { lines.push_back("!" + file + "[" + std::to_string(number) + "]: " + message); });
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

TEST(Preprocessor, HashLinesAreTextAndProblemsGoToTheHandler)
{
    // A comment that reads like a problem is text like any other; problems never are.
    HostPreprocessor pp;
    pp.openText("# errors are in this comment\n#error stop here\n#endif\n#error\n#if 1\nx\n", "f",
                theBindingOptions);
    EXPECT_EQ(allLines(pp),
              (std::vector<std::string>{"# errors are in this comment@f:1", "!f[2]: stop here",
                                        "!f[3]: #endif without #if", "!f[4]: #error", "x@f:6",
                                        "!f[5]: missing #endif"}));

    // Without -P an unknown directive is a problem, not text; without a handler it goes to the
    // diagnostics channel.
    HostDiagnosticCapture capture;
    HostPreprocessor strict;
    strict.openText("# a comment\n", "g");
    std::string line;
    EXPECT_FALSE(strict.getLine(line));
    ASSERT_EQ(capture.diagnostics().size(), 1u);
    EXPECT_EQ(capture.diagnostics()[0].myLine, 1);
    EXPECT_EQ(capture.text(), "g[1]: unknown directive: # a comment\n");
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
    EXPECT_EQ(lines[2].rfind("!" + dir.path() + "/main/inner[2]: cannot open include", 0), 0u)
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
    const std::vector<std::string> lines = allLines(pp);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_NE(lines[0].find("nested too deeply"), std::string::npos) << lines[0];
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
