// Setting lists in memory: typed getters and read flags, appending and removing, merging,
// copying, sorting and equality.
#include "SettingTestUtil.h"

#include <climits>
#include <cmath>
#include <limits>

TEST(SettingListGet, FindsTheFirstSettingOfNameAndType)
{
    GZ_SettingList list;
    parseInto(list, "a(2.9) n(-2.9) h(0.5) v(1 2) w(1 2 3) x(1 2 3 4) s('geo1') e('')");
    EXPECT_EQ(got<int>(list, "a", 7), 2);
    EXPECT_EQ(got<int>(list, "n", 7), -2);
    EXPECT_EQ(got<int>(list, "v", 7), 7); // a vector is not a number
    EXPECT_EQ(got<int>(list, "missing", 7), 7);
    EXPECT_FALSE(got(list, "h", true, true)); // 0.5 truncates to 0
    EXPECT_TRUE(got(list, "n", false, false));
    EXPECT_TRUE(got(list, "s", true, false));
    EXPECT_EQ(got<double>(list, "n", 5.0), -2.9);
    EXPECT_EQ(got<GZ_Vector2>(list, "v", GZ_Vector2{9, 9}), (GZ_Vector2{1, 2}));
    EXPECT_EQ(got<GZ_Vector3>(list, "v", GZ_Vector3{9, 9, 9}), (GZ_Vector3{9, 9, 9}));
    EXPECT_EQ(got<GZ_Vector3>(list, "w", GZ_Vector3{}), (GZ_Vector3{1, 2, 3}));
    EXPECT_EQ(got<GZ_Vector4>(list, "x", GZ_Vector4{}), (GZ_Vector4{1, 2, 3, 4}));
    const std::string old = "old";
    EXPECT_EQ(got(list, "s", "dflt", old), "geo1");
    EXPECT_EQ(got(list, "e", "dflt", old), "");
    EXPECT_EQ(got(list, "a", "dflt", old), "dflt");
    EXPECT_EQ(got(list, "a", static_cast<const char *>(nullptr), old), "");

    // Appended lists may repeat a name with another type: each getter finds its own type.
    GZ_SettingList repeated;
    repeated.appendSetting("c", 3.0);
    repeated.appendSetting("c", GZ_Vector3{4, 5, 6});
    repeated.appendSetting("c", 8.0);
    EXPECT_EQ(got<GZ_Vector3>(repeated, "c", GZ_Vector3{}), (GZ_Vector3{4, 5, 6}));
    EXPECT_EQ(got<double>(repeated, "c", 0.0), 3.0);
}

TEST(SettingListGet, ClampsNumbersBeyondIntRange)
{
    GZ_SettingList list;
    list.appendSetting("big", 1e300);
    list.appendSetting("small", -1e300);
    list.appendSetting("nan", std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(got<int>(list, "big", 0), INT_MAX);
    EXPECT_EQ(got<int>(list, "small", 0), INT_MIN);
    EXPECT_EQ(got<int>(list, "nan", 7), 0);
    EXPECT_FALSE(got(list, "nan", true, true));
}

TEST(SettingListGet, ReadFlagsTrackWhatGettersFound)
{
    GZ_SettingList list;
    parseInto(list, "a(1) b(2) c(1 2)");
    double d = 0;
    list.getSetting("a", d, 0.0);
    list.getSetting("c", d, 0.0); // wrong type: c stays unread
    std::string unread = "junk";
    EXPECT_TRUE(list.findUnreadSettings(unread));
    EXPECT_EQ(unread, "b(2) c(1 2)");
    // Each unread setting is reported once.
    EXPECT_FALSE(list.findUnreadSettings(unread));
    EXPECT_EQ(unread, "");
    list.appendSetting("d", 4);
    EXPECT_TRUE(list.findUnreadSettings(unread));
    EXPECT_EQ(unread, "d(4)");

    // A copy carries the read flags over.
    GZ_SettingList fresh;
    parseInto(fresh, "a(1) b(2) c(1 2)");
    fresh.getSetting("b", d, 0.0);
    GZ_SettingList copy(fresh);
    EXPECT_TRUE(copy.findUnreadSettings(unread));
    EXPECT_EQ(unread, "a(1) c(1 2)");
    GZ_SettingList empty;
    EXPECT_FALSE(empty.findUnreadSettings(unread));
    EXPECT_EQ(unread, "");
}

TEST(SettingListEdit, AppendsRemovesAndClears)
{
    GZ_SettingList list;
    list.appendSetting("s", static_cast<const char *>(nullptr));
    list.appendSetting("t", "");
    list.appendSetting("i", 3);
    list.appendSetting("b", true);
    list.appendSetting("f", false);
    list.appendSetting("d", 0.25);
    list.appendSetting("v", GZ_Vector2{1, 2});
    list.appendSetting("i", GZ_Vector3{1, 2, 3});
    list.appendSetting("w", GZ_Vector4{1, 2, 3, 4});
    EXPECT_EQ(written(list), "s('') t('') i(3) b(1) f(0) d(0.25) v(1 2) i(1 2 3) w(1 2 3 4)");

    list.removeSetting("i"); // the first one, whatever its type
    list.removeSetting("nothing");
    EXPECT_EQ(written(list), "s('') t('') b(1) f(0) d(0.25) v(1 2) i(1 2 3) w(1 2 3 4)");
    list.removeSetting("i");
    list.removeSetting("s");
    EXPECT_EQ(written(list), "t('') b(1) f(0) d(0.25) v(1 2) w(1 2 3 4)");
    list.clear();
    EXPECT_EQ(std::tuple(list.isEmpty(), list.getSettingAt(0)), std::tuple(true, nullptr));
}

TEST(SettingListMerge, UpdateTakesValuesOfMatchingNameAndType)
{
    GZ_SettingList list, other;
    parseInto(list, "a(1) b('x') c(1 2) d(5)");
    list.appendSetting("a", 2.0); // the last "a" takes the value
    double d = 0;
    list.getSetting("d", d, 0.0);
    parseInto(other, "z(9) c(3 4) b(7) a(8) d(6)");
    list.updateSettings(other);
    // b keeps its string (types differ), z is not added, order is unchanged.
    EXPECT_EQ(written(list), "a(1) b('x') c(3 4) d(6) a(8)");
    std::string unread;
    list.findUnreadSettings(unread);
    EXPECT_EQ(unread, "a(1) b('x') c(3 4) a(8)"); // d stayed read

    GZ_SettingList empty;
    list.updateSettings(empty);
    empty.updateSettings(other);
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_EQ(written(list), "a(1) b('x') c(3 4) d(6) a(8)");
}

TEST(SettingListMerge, CopyMissingAppendsOnlyAbsentNames)
{
    GZ_SettingList list, other;
    parseInto(list, "a(1) b(2)");
    other.appendSetting("c", "x");
    other.appendSetting("a", 5.0);
    other.appendSetting("d", 1);
    other.appendSetting("c", 2); // both c's are absent from the list, so both come over
    list.copyMissing(other);
    EXPECT_EQ(written(list), "a(1) b(2) c('x') d(1) c(2)");
    list.copyMissing(list);
    EXPECT_EQ(written(list), "a(1) b(2) c('x') d(1) c(2)");

    GZ_SettingList empty;
    list.copyMissing(empty);
    EXPECT_EQ(list.getNumSettings(), 5);
    empty.copyMissing(other);
    EXPECT_EQ(written(empty), "c('x') a(5) d(1) c(2)");
    // A copy owns clones: changing the source does not change it.
    other.clear();
    EXPECT_EQ(written(empty), "c('x') a(5) d(1) c(2)");
}

TEST(SettingListCompare, SortsByTypeThenNameThenValue)
{
    GZ_SettingList list;
    list.appendSetting("b", 1);
    list.appendSetting("\xc3", 0); // bytes compare unsigned: after every ASCII name
    list.appendSetting("a", "x");
    list.appendSetting("a", 2);
    list.appendSetting("c", GZ_Vector2{1, 3});
    list.appendSetting("c", GZ_Vector2{1, 2});
    list.appendSetting("a", 1);
    list.appendSetting("a", "");
    list.appendSetting("b", GZ_Vector4{0, 0, 0, -1});
    list.appendSetting("a", GZ_Vector3{0, 0, 0});
    list.sort();
    EXPECT_EQ(written(list), "a(1) a(2) b(1) \xc3(0) a('') a('x') c(1 2) c(1 3) a(0 0 0) "
                             "b(0 0 0 -1)");
}

TEST(SettingListCompare, EqualityIgnoresOrderAndLeavesBothAlone)
{
    GZ_SettingList a, b;
    parseInto(a, "x(1) y('s') z(1 2)");
    parseInto(b, "z(1 2) x(1) y('s')");
    double d;
    b.getSetting("x", d, 0.0); // read flags are not part of a setting's identity
    EXPECT_TRUE(a == b);
    EXPECT_EQ(written(b), "z(1 2) x(1) y('s')"); // comparing does not reorder

    GZ_SettingList one, pair;
    parseInto(one, "a(1)");
    parseInto(pair, "a(1 0)");
    EXPECT_FALSE(one == pair);
    parseInto(pair, "a(1) b(1)");
    EXPECT_FALSE(one == pair);
    parseInto(pair, "a('1')");
    EXPECT_FALSE(one == pair);
    parseInto(pair, "a(1.0000000000000002)");
    EXPECT_TRUE(one != pair);

    GZ_SettingList e1, e2;
    EXPECT_TRUE(e1 == e2);

    // A copy keeps the order and the values; an assignment replaces everything.
    GZ_SettingList copy(b);
    EXPECT_TRUE(copy == a);
    copy = one;
    EXPECT_EQ(written(copy), "a(1)");
    copy = copy;
    EXPECT_EQ(written(copy), "a(1)");
}
