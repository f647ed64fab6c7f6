// Settings text parsing: values, errors and what survives them, duplicates, hostile input.
#include "SettingTestUtil.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <tuple>
#include <utility>

namespace
{
const gz_Setting &only(const GZ_SettingList &list)
{
    EXPECT_EQ(list.getNumSettings(), 1);
    return *list.getSettingAt(0);
}

template <gz_SettingType T>
const typename gz_SpecificSetting<T>::ValueType &valueOf(const gz_Setting &s)
{
    EXPECT_EQ(s.getType(), T);
    return static_cast<const gz_SpecificSetting<T> &>(s).getValue();
}
} // namespace

TEST(SettingListParse, EmptyNullAndBlankTextsGiveEmptyLists)
{
    for (const char *text : {static_cast<const char *>(nullptr), "", " \t\n\v\f\r "})
    {
        GZ_SettingList list;
        list.appendSetting("stale", 1);
        EXPECT_EQ(parseInto(list, text), "");
        EXPECT_TRUE(list.isEmpty());
    }
}

TEST(SettingListParse, ReadsEachValueForm)
{
    GZ_SettingList list;
    EXPECT_EQ(parseInto(list, "a(1)"), "");
    EXPECT_EQ(valueOf<GZ_SETTING_NUMBER>(only(list)), 1.0);
    EXPECT_EQ(only(list).getName(), "a");
    EXPECT_EQ(parseInto(list, "a( 1  2 )"), "");
    EXPECT_EQ(valueOf<GZ_SETTING_VECTOR2>(only(list)), (GZ_Vector2{1, 2}));
    EXPECT_EQ(parseInto(list, "\ta\n(\v1 2\r3\f)\n"), "");
    EXPECT_EQ(valueOf<GZ_SETTING_VECTOR3>(only(list)), (GZ_Vector3{1, 2, 3}));
    EXPECT_EQ(parseInto(list, "a(1 2 3 4)"), "");
    EXPECT_EQ(valueOf<GZ_SETTING_VECTOR4>(only(list)), (GZ_Vector4{1, 2, 3, 4}));

    // A backslash makes any character literal and is itself dropped.
    const char *strings[][2] = {{"a ( 'x y' )", "x y"},
                                {"a('it\\'s')", "it's"},
                                {"a('')", ""},
                                {"a('\\\\\\)\\q(\"')", "\\)q(\""}};
    for (const auto &[text, value] : strings)
    {
        EXPECT_EQ(parseInto(list, text), "") << text;
        EXPECT_EQ(valueOf<GZ_SETTING_STRING>(only(list)), value) << text;
    }

    // Names run to white space or "(", so quotes and ")" belong to them; settings need no
    // blank between them; a lone "(" starts a setting with an empty name.
    EXPECT_EQ(parseInto(list, "x)'y(1)b(2)(3)"), "");
    ASSERT_EQ(list.getNumSettings(), 3);
    EXPECT_EQ(list.getSettingAt(0)->getName(), "x)'y");
    EXPECT_EQ(list.getSettingAt(1)->getName(), "b");
    EXPECT_EQ(list.getSettingAt(2)->getName(), "");
}

TEST(SettingListParse, ConvertsTheLongestLeadingDecimalNumber)
{
    const double max = std::numeric_limits<double>::max(); // overflow saturates
    // clang-format off
    const std::pair<const char *, double> cases[] = {
        {"a(+.5e-3)", 0.0005}, {"a(5.)", 5.0}, {"a(-2.5E+2)", -250.0}, {"a(1e)", 1.0},
        {"a(1e+)", 1.0}, {"a(1-2)", 1.0}, {"a(--)", 0.0}, {"a(e5)", 0.0}, {"a(.e1)", 0.0},
        {"a(1e999)", max}, {"a(-1e999)", -max}, {"a(100000e305)", max}, {"a(0.001e311)", 1e308},
        {"a(1e-999)", 0.0}, {"a(0.00001e-320)", 0.0}, {"a(1e99999999999999999999999999)", max},
        {"a(4.9406564584124654e-324)", 4.9406564584124654e-324}, {"a(0.10000000000000001)", 0.1}};
    // clang-format on
    for (const auto &[text, value] : cases)
    {
        GZ_SettingList list;
        EXPECT_EQ(parseInto(list, text), "") << text;
        EXPECT_EQ(valueOf<GZ_SETTING_NUMBER>(only(list)), value) << text;
    }
    GZ_SettingList list;
    EXPECT_EQ(parseInto(list, "a(1e-999)"), "");
    EXPECT_TRUE(std::signbit(-valueOf<GZ_SETTING_NUMBER>(only(list))));
    EXPECT_EQ(parseInto(list, "a(-1e-999)"), "");
    EXPECT_TRUE(std::signbit(valueOf<GZ_SETTING_NUMBER>(only(list))));
}

TEST(SettingListParse, ReportsEachErrorAndKeepsWhatParsed)
{
    // Rows: the text, the message (without the trailing newline), the list written back.
    const std::tuple<const char *, const char *, const char *> cases[] = {
        {"a(1 2 3 4 5)", "Too many vector elements in setting a", ""},
        {"a('x' 1)", "Found value after string when parsing setting a", ""},
        {"a(1 'x')", "Strings may not appear in multi-element values for setting a", ""},
        {"a()", "Missing values for setting a", ""},
        {"a", "Missing value for setting a", ""},
        {"a(1", "Missing terminating ')' when parsing setting a", ""},
        {"a(1 ", "Missing terminating ')' when parsing setting a", ""},
        {"a('x", "Missing ' on string when parsing setting a", ""},
        {"a('x\\", "Missing character following \\ in setting a", ""},
        {"a('x'", "Missing terminating ')' when parsing setting a", ""},
        // A name without values does not stop the parse; the next character starts a name.
        {"a b(1)", "Missing value for setting a", "b(1)"},
        {"x  a b(1) c",
         "Missing value for setting x\nHandle Setting Error: Missing value for "
         "setting a\nHandle Setting Error: Missing value for setting c",
         "b(1)"},
        // Errors that stop the parse keep the settings before them and ignore the rest.
        {"b(1) a() c(2)", "Missing values for setting a", "b(1)"},
        {"b(1) a(1 'x') c(2)", "Strings may not appear in multi-element values for setting a",
         "b(1)"},
        {"b('q') a('x' 'y') c(2)", "Found value after string when parsing setting a", "b('q')"},
        // Invalid words still build the setting from their leading numbers.
        {"a(x)", "Invalid number in setting a.\n    (Enclose strings in single quotes.)", "a(0)"},
        {"p(2x 3 y) q(1)",
         "Invalid number in setting p.\n    (Enclose strings in single quotes.)\nHandle Setting "
         "Error: Invalid number in setting p.\n    (Enclose strings in single quotes.)",
         "p(2 3 0) q(1)"},
        {"a(1'x')", "Invalid number in setting a.\n    (Enclose strings in single quotes.)",
         "a(1)"},
    };
    for (const auto &[text, message, kept] : cases)
    {
        std::string errors;
        EXPECT_EQ(reparsed(text, &errors), kept) << text;
        EXPECT_EQ(errors, std::string("Handle Setting Error: ") + message + "\n") << text;
    }
}

TEST(SettingListParse, LastDuplicateWinsAtTheFirstPosition)
{
    std::string errors;
    EXPECT_EQ(reparsed("a(1) a(2)", &errors), "a(2)");
    EXPECT_EQ(errors, "Handle Setting Error: The setting \"a\" appears more than once\n");

    // The replacement may change the type; messages come in text order, an invalid number
    // before the duplicate it causes.
    EXPECT_EQ(reparsed("a(1) b(x) a('s') c(1 2) a(y)", &errors), "a(0) b(0) c(1 2)");
    EXPECT_EQ(errors, "Handle Setting Error: Invalid number in setting b.\n"
                      "    (Enclose strings in single quotes.)\n"
                      "Handle Setting Error: The setting \"a\" appears more than once\n"
                      "Handle Setting Error: Invalid number in setting a.\n"
                      "    (Enclose strings in single quotes.)\n"
                      "Handle Setting Error: The setting \"a\" appears more than once\n");

    // Long lists look names up through an index; the rule must not change there.
    std::string text, expected;
    for (int i = 0; i < 40; ++i)
    {
        text += "s" + std::to_string(i) + "(" + std::to_string(i) + ") ";
        expected += (i ? " s" : "s") + std::to_string(i) + "(" +
                    std::to_string(i == 3    ? 103
                                   : i == 30 ? 130
                                             : i) +
                    ")";
    }
    text += "s30(130) s3(103) s3(103)";
    EXPECT_EQ(reparsed(text.c_str(), &errors), expected);
    EXPECT_EQ(errors, "Handle Setting Error: The setting \"s30\" appears more than once\n"
                      "Handle Setting Error: The setting \"s3\" appears more than once\n"
                      "Handle Setting Error: The setting \"s3\" appears more than once\n");
}

TEST(SettingListParse, SurvivesHostileInput)
{
    // Huge numbers, long words and strings, and many settings parse without trouble.
    std::string big = "n(" + std::string(5000, '9') + ") s('" + std::string(10000, 'x') + "')";
    std::string errors;
    EXPECT_EQ(reparsed(big.c_str(), &errors).substr(0, 26), "n(1.7976931348623157e+308)");
    EXPECT_EQ(errors, "");

    std::string many;
    for (int i = 0; i < 100000; ++i)
        many += "k" + std::to_string(i % 50000) + "(1) ";
    GZ_SettingList list;
    errors = parseInto(list, many.c_str());
    EXPECT_EQ(list.getNumSettings(), 50000);
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 50000);

    // Random bytes (no NUL): whatever parsed must write back as text that parses cleanly
    // into an equal list.
    std::mt19937 rng(20240611);
    const char alphabet[] = "()'\\\" \t\n.-+eE0123456789abz";
    for (int round = 0; round < 2000; ++round)
    {
        std::string text(rng() % 64, ' ');
        for (char &c : text)
            c = (rng() % 3 == 0) ? static_cast<char>(1 + rng() % 255)
                                 : alphabet[rng() % (sizeof(alphabet) - 1)];
        GZ_SettingList parsed;
        parseInto(parsed, text.c_str());
        const std::string out = written(parsed);
        if (out.find("inf") != std::string::npos || out.find("nan") != std::string::npos)
            continue;
        GZ_SettingList again;
        EXPECT_EQ(parseInto(again, out.c_str()), "") << text;
        EXPECT_EQ(written(again), out) << text;
    }
}
