// The command-language tokenizer: words, quotes, escapes, separators, comments, variables.
#include "host/HostCommandParser.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace
{
/// Parses all of `text`; each command becomes its words joined by '|', or "!" + error.
std::vector<std::string> parseAll(const std::string &text,
                                  const std::map<std::string, std::string> &vars = {})
{
    HostCommandParser parser(text, 1,
                             [&vars](const std::string &name) -> const std::string *
                             {
                                 auto it = vars.find(name);
                                 return it == vars.end() ? nullptr : &it->second;
                             });
    std::vector<std::string> result;
    HostParsedCommand cmd;
    while (parser.next(cmd))
    {
        std::string joined = std::to_string(cmd.line) + ":";
        if (!cmd.error.empty())
        {
            result.push_back(joined + "!" + cmd.error);
            continue;
        }
        for (size_t i = 0; i < cmd.words.size(); ++i)
            joined += (i ? "|" : "") + cmd.words[i].text;
        result.push_back(joined);
    }
    return result;
}

using Lines = std::vector<std::string>;
} // namespace

TEST(CommandParser, SplitsWordsAndCommands)
{
    EXPECT_EQ(parseAll("a b\tc"), Lines({"1:a|b|c"}));
    EXPECT_EQ(parseAll("a; b c ;; d\n\ne"), Lines({"1:a", "1:b|c", "1:d", "3:e"}));
    EXPECT_EQ(parseAll("  \n ; \n"), Lines({}));
    EXPECT_EQ(parseAll("x\r\ny\r\n"), Lines({"1:x", "2:y"}));
}

TEST(CommandParser, QuotesAndEscapes)
{
    EXPECT_EQ(parseAll("echo 'a b;c#d $X \\n'"), Lines({"1:echo|a b;c#d $X \\n"}));
    EXPECT_EQ(parseAll("echo \"a 'b' \\\" \\$X\""), Lines({"1:echo|a 'b' \" $X"}));
    // Inside double quotes a backslash escapes only '"' and '$': settings text such as
    // name('it\'s \\ ok') must reach the command unchanged.
    EXPECT_EQ(parseAll("omparm \"s('it\\'s \\\\ ok')\""), Lines({"1:omparm|s('it\\'s \\\\ ok')"}));
    EXPECT_EQ(parseAll("a\\ b \\;c \\\\"), Lines({"1:a b|;c|\\"}));
    EXPECT_EQ(parseAll("ab'cd'\"ef\"gh"), Lines({"1:abcdefgh"}));
    // Empty quoted words are kept.
    EXPECT_EQ(parseAll("a '' \"\" b"), Lines({"1:a|||b"}));
    // Quotes may span lines; the line count goes on.
    EXPECT_EQ(parseAll("a 'x\ny' b\nc"), Lines({"1:a|x\ny|b", "3:c"}));
    // A backslash before a newline joins the lines.
    EXPECT_EQ(parseAll("a \\\n b\\\nc\nd"), Lines({"1:a|bc", "4:d"}));
    // A backslash at the very end stays.
    EXPECT_EQ(parseAll("a b\\"), Lines({"1:a|b\\"}));
}

TEST(CommandParser, ExpandsSetVariablesOnly)
{
    std::map<std::string, std::string> vars{{"X", "one two"}, {"EMPTY", ""}, {"_n1", "N"}};
    EXPECT_EQ(parseAll("echo $X", vars), Lines({"1:echo|one two"}));
    EXPECT_EQ(parseAll("echo a${X}b \"$_n1$X\" '$X'", vars),
              Lines({"1:echo|aone twob|None two|$X"}));
    // An unset name, a lone '$' and a broken brace stay as written.
    EXPECT_EQ(parseAll("echo $UNSET $ $1 ${X ${}", vars), Lines({"1:echo|$UNSET|$|$1|${X|${}"}));
    // An unquoted word that expands to nothing vanishes; a quoted one stays.
    EXPECT_EQ(parseAll("echo $EMPTY \"$EMPTY\" b", vars), Lines({"1:echo||b"}));
}

TEST(CommandParser, UnterminatedQuoteCostsOnlyItsLine)
{
    EXPECT_EQ(parseAll("a\nb 'oops\nc\n"), Lines({"1:a", "2:!unterminated single quote", "3:c"}));
    EXPECT_EQ(parseAll("x; y \"z"), Lines({"1:x", "1:!unterminated double quote"}));
    // The resumed line starts a fresh command even after ';'.
    EXPECT_EQ(parseAll("p \"q\nr; s\n"), Lines({"1:!unterminated double quote", "2:r", "2:s"}));
}

TEST(CommandParser, MarksQuotedWords)
{
    HostCommandParser parser("cmd -a '-b' \\-c x\"\"");
    HostParsedCommand cmd;
    ASSERT_TRUE(parser.next(cmd));
    std::string quoted;
    for (const auto &word : cmd.words)
        quoted += word.quoted ? '1' : '0';
    EXPECT_EQ(std::tuple(quoted, cmd.words[4].text), std::tuple("00111", "x"));
    EXPECT_FALSE(parser.next(cmd));
}

TEST(CommandParser, KnowsWhenAPromptMustReadOn)
{
    // clang-format off
    const std::pair<const char *, bool> cases[] = {
        {"echo 'a", true}, {"echo \"a\\\"", true}, {"echo a\\", true}, {"echo 'a\nb'", false},
        {"echo \"a\\\\\"", true}, {"echo a\\\\", false}, {"echo # it's", false}, {"echo a#'b", true},
        {"echo '#' \"", true}, {"echo \"x\" 'y' z", false}, {"", false}};
    // clang-format on
    for (const auto &[text, more] : cases)
        EXPECT_EQ(HostCommandParser::needsMoreLines(text), more) << text;
}
