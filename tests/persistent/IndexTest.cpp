// Tests of the ordered member list and the name index against plain linear models.
#include "persistent/gz_NameIndex.h"
#include "persistent/gz_OrderedList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace
{
// The free-name rule written out as the plain probe it describes.
std::string naiveFreeName(const std::multiset<std::string> &taken, const char *requested,
                          const char *fallback)
{
    std::string name = (requested && *requested) ? requested : fallback;
    if (!taken.count(name))
        return name;
    if (name.size() > 511)
        name.resize(511);
    std::size_t p = name.size();
    while (p > 0 && name[p - 1] >= '0' && name[p - 1] <= '9')
        --p;
    unsigned long long n = p < name.size() ? std::stoull(name.substr(p)) : 0;
    name.resize(p);
    for (unsigned long long k = n + 1;; ++k)
        if (!taken.count(name + std::to_string(k)))
            return name + std::to_string(k);
}
} // namespace

TEST(OrderedList, MatchesAVectorThroughRandomEdits)
{
    std::vector<int> storage(400);
    std::vector<int *> model;
    gz_OrderedList<int> list;
    std::mt19937 random(7);
    for (int step = 0; step < 20000; ++step)
    {
        int *item = &storage[random() % storage.size()];
        switch (random() % 4)
        {
        case 0:
        case 1:
        {
            // Appends, inserts at the front (undo of deletions made first to last) and at
            // any place (undo puts members back where they were).
            const bool fresh = std::find(model.begin(), model.end(), item) == model.end();
            const int end = static_cast<int>(model.size());
            const int at =
                std::vector<int>{end, 0, static_cast<int>(random() % (end + 1))}[random() % 3];
            EXPECT_EQ(list.insert(at, item), fresh);
            if (fresh)
                model.insert(model.begin() + at, item);
            break;
        }
        case 2:
        {
            auto it = std::find(model.begin(), model.end(), item);
            EXPECT_EQ(list.erase(item), it != model.end());
            if (it != model.end())
                model.erase(it);
            break;
        }
        default:
            if (model.size() > 1)
            {
                const int i = random() % model.size();
                const int j = random() % model.size();
                list.swap(i, j);
                std::swap(model[i], model[j]);
            }
        }
        ASSERT_EQ(list.size(), static_cast<int>(model.size()));
        if (step % 97 == 0)
        {
            ASSERT_EQ(list.items(), model);
            for (int i = 0; i < static_cast<int>(model.size()); ++i)
            {
                ASSERT_EQ(list.at(i), model[i]);
                ASSERT_EQ(list.indexOf(model[i]), i);
            }
        }
    }
    EXPECT_EQ(std::tuple(list.at(-1), list.at(list.size())), std::tuple(nullptr, nullptr));
    EXPECT_EQ(list.indexOf(nullptr), -1);
    EXPECT_FALSE(list.append(nullptr));
}

TEST(FreeName, NumbersTheTrailingDigitRun)
{
    gz_NameIndex index;
    int object = 0;
    EXPECT_EQ(index.freeName(nullptr, "Handle"), "Handle");
    EXPECT_EQ(index.freeName("", "Group"), "Group");
    index.add("Handle", &object);
    EXPECT_EQ(index.freeName(nullptr, "Handle"), "Handle1");
    index.add("x9", &object);
    EXPECT_EQ(index.freeName("x9", "Handle"), "x10");
    index.add("x07", &object);
    EXPECT_EQ(index.freeName("x07", "Handle"), "x8");
    index.add("x8", &object);
    index.add("x10", &object);
    EXPECT_EQ(index.freeName("x07", "Handle"), "x11");
    // Names that are taken but can never be candidates do not block numbering.
    index.add("cam007", &object);
    index.add("cam", &object);
    EXPECT_EQ(index.freeName("cam", "Handle"), "cam1");
    // Only the first 511 characters of a long name count.
    const std::string long_name(600, 'a');
    index.add(long_name, &object);
    EXPECT_EQ(index.freeName(long_name.c_str(), "Handle"), std::string(511, 'a') + "1");
    // An all-digit name numbers from its value.
    index.add("41", &object);
    EXPECT_EQ(index.freeName("41", "Handle"), "42");
    // A freed number is found again, before any higher one.
    index.add("Handle1", &object);
    index.add("Handle2", &object);
    index.remove("Handle1", &object);
    EXPECT_EQ(index.freeName("Handle", "Handle"), "Handle1");
    // A digit run too long to count saturates rather than wrapping.
    const std::string huge = "n" + std::string(25, '9');
    index.add(huge, &object);
    EXPECT_EQ(index.freeName(huge.c_str(), "Handle"), "n1000000000000000000");
}

TEST(FreeName, MatchesTheLinearProbeThroughRandomEdits)
{
    const char *stems[] = {"h", "h0", "h01", "h9", "h10", "h2", "", "7", "g12x3", "Handle"};
    std::multiset<std::string> taken;
    gz_NameIndex index;
    int a = 0, b = 0;
    std::mt19937 random(11);
    std::vector<std::pair<std::string, const void *>> held;
    for (int step = 0; step < 5000; ++step)
    {
        const char *stem = stems[random() % 10];
        const std::string expected = naiveFreeName(taken, stem, "Handle");
        ASSERT_EQ(index.freeName(stem, "Handle"), expected) << stem;
        if (random() % 3 != 0 || held.empty())
        {
            // Mostly take the free name; sometimes a duplicate of a held one (node renames
            // can make two handles alike).
            std::string name = expected;
            const void *who = &a;
            if (!held.empty() && random() % 5 == 0)
            {
                name = held[random() % held.size()].first;
                who = &b;
            }
            index.add(name, who);
            taken.insert(name);
            held.emplace_back(name, who);
        }
        else
        {
            const std::size_t k = random() % held.size();
            index.remove(held[k].first, held[k].second);
            taken.erase(taken.find(held[k].first));
            held.erase(held.begin() + k);
        }
        ASSERT_EQ(index.isTaken(expected), taken.count(expected) != 0);
    }
}
