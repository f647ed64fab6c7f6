// Settings text writing: golden text, stream state, and a randomized write/parse round trip.
#include "SettingTestUtil.h"

#include <cfloat>
#include <cmath>
#include <cstring>
#include <iomanip>
#include <limits>
#include <random>
#include <sstream>

namespace
{
std::string streamed(const GZ_SettingList &list)
{
    std::ostringstream os;
    list.generateSettingString(os);
    return os.str();
}
} // namespace

TEST(SettingListWrite, WritesGoldenText)
{
    EXPECT_EQ(reparsed("color(0.5 0.5 1) showoppath(1) ownerop('geo1')"),
              "color(0.5 0.5 1) showoppath(1) ownerop('geo1')");
    EXPECT_EQ(reparsed("a(1) b('q')"), "a(1) b('q')");
    EXPECT_EQ(reparsed("  a ( 1  2 )\n\tb(\n'x y'\n)  "), "a(1 2) b('x y')");

    GZ_SettingList list;
    list.appendSetting("tenth", 0.1);
    list.appendSetting("third", 1.0 / 3.0);
    list.appendSetting("big", 1e21);
    list.appendSetting("tiny", 1e-5);
    list.appendSetting("neg", -0.0);
    list.appendSetting("max", DBL_MAX);
    list.appendSetting("q", "x\"y");
    list.appendSetting("r", "it's a \\ path");
    list.appendSetting("v", GZ_Vector4{-1.5, 0, 2, 1e100});
    const char *golden = "tenth(0.10000000000000001) third(0.33333333333333331) big(1e+21) "
                         "tiny(1.0000000000000001e-05) neg(-0) max(1.7976931348623157e+308) "
                         "q('x\\\"y') r('it\\'s a \\\\ path') v(-1.5 0 2 1e+100)";
    EXPECT_EQ(written(list), golden);
    EXPECT_EQ(streamed(list), golden);

    GZ_SettingList empty;
    std::string out = "previous";
    empty.generateSettingString(out);
    EXPECT_EQ(out, "");
    EXPECT_EQ(streamed(empty), "");
}

TEST(SettingListWrite, RestoresTheStreamsPrecisionAndNotation)
{
    GZ_SettingList list;
    list.appendSetting("a", 0.1);
    list.appendSetting("b", 0.5);
    std::ostringstream os;
    os << std::fixed << std::setprecision(3) << 0.5 << ' ';
    list.generateSettingString(os);
    os << ' ' << 0.5;
    EXPECT_EQ(os.str(), "0.500 a(0.10000000000000001) b(0.5) 0.500");
    EXPECT_EQ(os.precision(), 3);

    // A single setting written on its own uses the stream as it is.
    std::ostringstream plain;
    list.getSettingAt(0)->write(plain);
    EXPECT_EQ(plain.str(), "a(0.1)");
}

namespace
{
/// Random settings lists built to stress the writer: awkward names and strings, all five
/// types, and doubles at the edges of the range.
class ListGenerator
{
public:
    explicit ListGenerator(unsigned seed) : myRng(seed) {}

    GZ_SettingList make()
    {
        GZ_SettingList list;
        const int count = pick(9);
        for (int i = 0; i < count; ++i)
        {
            // A numeric suffix keeps names unique, as parsing would make them.
            const std::string name = text(/*forName=*/true) + std::to_string(i);
            switch (pick(5))
            {
            case 0:
                list.appendSetting(name, number());
                break;
            case 1:
                list.appendSetting(name, text(/*forName=*/false).c_str());
                break;
            case 2:
                list.appendSetting(name, GZ_Vector2{number(), number()});
                break;
            case 3:
                list.appendSetting(name, GZ_Vector3{number(), number(), number()});
                break;
            default:
                list.appendSetting(name, GZ_Vector4{number(), number(), number(), number()});
                break;
            }
        }
        return list;
    }

private:
    int pick(int n) { return static_cast<int>(myRng() % static_cast<unsigned>(n)); }

    double number()
    {
        // clang-format off
        static const double edges[] = {
            0.0, -0.0, 1.0, -1.0, 0.1, 1.0 / 3.0, DBL_MAX, -DBL_MAX, DBL_MIN,
            std::numeric_limits<double>::denorm_min(), -std::numeric_limits<double>::denorm_min(),
            DBL_EPSILON, 1e21, 123456789012345678.0, 0.5, -0.0625, -0.9375, 999999999999.9375,
            1e12, 1e12 + 0.5, 1e16, 1e17};
        // clang-format on
        switch (pick(4))
        {
        case 0:
            return edges[pick(sizeof(edges) / sizeof(edges[0]))];
        case 1:
            return static_cast<double>(static_cast<int>(myRng())) / (1 + pick(1000));
        case 2:
            return static_cast<double>(static_cast<int>(myRng())) / 16.0;
        default:
        {
            // Any finite bit pattern.
            double d;
            do
            {
                const unsigned long long bits =
                    (static_cast<unsigned long long>(myRng()) << 32) | myRng();
                std::memcpy(&d, &bits, sizeof(d));
            } while (!std::isfinite(d));
            return d;
        }
        }
    }

    // Names may hold anything but white space and "("; strings anything but NUL.
    std::string text(bool forName)
    {
        static const char awkward[] = "'\\\")(x y\t\n";
        std::string s(static_cast<std::size_t>(pick(8)), 'a');
        for (char &c : s)
        {
            do
                c = pick(2) ? awkward[pick(sizeof(awkward) - 1)] : static_cast<char>(1 + pick(255));
            while (forName && (c == '(' || std::strchr(" \t\n\v\f\r", c)));
        }
        return s;
    }

    std::mt19937 myRng;
};
} // namespace

TEST(SettingListWrite, RandomListsRoundTrip)
{
    ListGenerator generate(/*seed=*/0x5e771265u);
    for (int round = 0; round < 4000; ++round)
    {
        GZ_SettingList original = generate.make();
        const std::string text = written(original);
        ASSERT_EQ(streamed(original), text);

        GZ_SettingList parsed;
        ASSERT_EQ(parseInto(parsed, text.c_str()), "") << text;
        ASSERT_EQ(written(parsed), text);
        ASSERT_TRUE(parsed == original) << text;
    }
}
