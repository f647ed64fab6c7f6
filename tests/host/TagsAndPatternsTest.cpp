// Tests of wildcard matching, tag lists and expressions, the tag manager and node filters.
#include "HostFixture.h"

#include "host/HostBundleFilter.h"
#include "host/HostPatternMatch.h"
#include "host/HostTagExpression.h"
#include "host/HostTagList.h"
#include "host/HostTagManager.h"

#include <thread>
#include <tuple>

TEST(PatternMatch, WildcardsAndAlternatives)
{
    const std::tuple<const char *, const char *, bool> cases[] = {
        {"render", "render", true}, {"render", "rend*", true}, {"render", "r?nder", true},
        {"render", "*x*", false},   {"", "*", true},           {"ab", "a", false},
        {"aaab", "*a*b", true},     {"abc", "a*c*", true},     {"abc", "a*d", false}};
    for (const auto &[text, pattern, match] : cases)
        EXPECT_EQ(HostPatternMatch::match(text, pattern), match) << pattern;
    EXPECT_TRUE(HostPatternMatch::matchMulti("shading", "render, shad*"));
    EXPECT_TRUE(HostPatternMatch::matchMulti("b", "a b"));
    EXPECT_FALSE(HostPatternMatch::matchMulti("c", "a,, b"));
    // A long run of stars against a long text stays quick (no backtracking blow-up).
    EXPECT_FALSE(HostPatternMatch::match(std::string(5000, 'a'), std::string(2000, '*') + "b"));
}

TEST(TagExpression, ParsesEvaluatesAndReportsErrors)
{
    std::string errors;
    const HostTagList list("render, shading  legacy", errors);
    EXPECT_EQ(errors, "");
    // clang-format off
    const std::tuple<const char *, bool> cases[] = {
        {"render", true}, {"!render", false}, {"render & !legacy", false},
        {"render !legacy | x", false}, {"(x | shad*) & render", true}, {"", true}, {"*", true},
        {"nope", false}};
    // clang-format on
    for (const auto &[expr, holds] : cases)
    {
        HostTagExpression e(expr, errors);
        EXPECT_TRUE(e.isValid()) << expr;
        EXPECT_EQ(e.evaluate(&list), holds) << expr;
    }
    EXPECT_EQ(errors, "");
    for (const char *bad : {"(a", "a |", "a & )", "a $"})
    {
        std::string e;
        EXPECT_FALSE(HostTagExpression(bad, e).isValid()) << bad;
        EXPECT_NE(e, "") << bad;
    }
    EXPECT_FALSE(HostTagExpression("a", errors).evaluate(nullptr));
    EXPECT_TRUE(HostTagExpression(" * ", errors).isAlwaysTrue());
    std::string e;
    HostTagList("ok b@d", e);
    EXPECT_EQ(e, "Invalid tag 'b@d'\n");
}

TEST(TagManager, OneManagerSharesEqualLists)
{
    HostTagManager *seen[4] = {};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&seen, i] { seen[i] = &HostTagManager::get(); });
    for (std::thread &t : threads)
        t.join();
    for (HostTagManager *m : seen)
        EXPECT_EQ(m, &HostTagManager::get());
    std::string errors;
    auto a = HostTagManager::get().createTagList("x y", errors);
    EXPECT_EQ(a, HostTagManager::get().createTagList("x y", errors));
    EXPECT_EQ(HostTagManager::get().createExpression("(", errors), nullptr);
    EXPECT_NE(errors, "");
}

using BundleFilter = HostFixture;

TEST_F(BundleFilter, AcceptsByTableAndType)
{
    HostNode *geo = make("tgeo", "/obj/geo1");
    HostNode *box = make("tbox", "/obj/geo1/box1");
    const HostBundleFilter *objects = HostBundleFilter::find("objects");
    ASSERT_NE(objects, nullptr);
    EXPECT_EQ(objects->getLabel(), "Any Object");
    EXPECT_TRUE(objects->accepts(geo));
    EXPECT_FALSE(objects->accepts(box));
    EXPECT_FALSE(objects->accepts(nullptr));
    HostBundleFilter::add(HostBundleFilter("boxes", "Boxes", "Sop", "tbox, box"));
    EXPECT_TRUE(HostBundleFilter::find("boxes")->accepts(box));
    EXPECT_EQ(HostBundleFilter::find("none"), nullptr);
}
