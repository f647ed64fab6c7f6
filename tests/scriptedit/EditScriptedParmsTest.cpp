// Parameter sets: structure rules, editing, moves, safe names, compilation, aggregates.
#include "ScriptEditFixture.h"

#include "scriptedit/GZ_EditScriptedParmsAggregate.h"
#include "scriptedit/gz_NameCounts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

using namespace gztest;

TEST(EditScriptedParms, StructureRules)
{
    // 0 f1 { 1 a  2 g { 3 b 4 } 5 } 6 f2(tab, continues f1) 7 } 8 c
    auto s = set(open(GZ_FOLDER_TABS, "f1"), parm("a"), open(GZ_FOLDER_SIMPLE, "g"), parm("b"),
                 end(), end(), open(GZ_FOLDER_TABS, "f2"), end(), parm("c"));
    EXPECT_EQ(std::tuple(s.getMatchingGroupParm(0), s.getMatchingGroupParm(4)), std::tuple(5, 2));
    EXPECT_EQ(s.getMatchingGroupParm(1), -1);
    EXPECT_EQ(std::tuple(s.getMatchingGroupParm(99), s.getParentGroupParm(3)), std::tuple(-1, 2));
    EXPECT_EQ(std::tuple(s.getParentGroupParm(4), s.getParentGroupParm(8)), std::tuple(0, -1));
    std::vector<int> folders;
    s.getContainingFolders(3, folders);
    EXPECT_EQ(std::tuple(folders, s.getIsFirstPage(0), s.getIsFirstPage(6)),
              std::tuple((std::vector<int>{2, 0}), true, false));
    s.getParm(0)->setTabBreak(true);
    EXPECT_TRUE(s.getIsFirstPage(6));
    EXPECT_FALSE(s.getIsFirstPage(2)); // not a tab or radio folder
    EXPECT_EQ(s.getNestedFolderIndex({"f1", "g"}), 2);
    EXPECT_EQ(s.getNestedFolderIndex({"g"}), -1);
    EXPECT_EQ(s.getParmWithName(""), nullptr);
    EXPECT_EQ(s.getFolderIndexWithName("b"), -1);
    EXPECT_EQ(s.getFolderWithLabel("g"), s.getParm(2));
    s.getParm(3)->setAutolink(1, "../geo2/tx  /obj/geo3/ty");
    int k = 0;
    EXPECT_EQ(s.getParmWithAutolink("/obj/geo2/./tx", "/obj/geo1", k), s.getParm(3));
    EXPECT_EQ(k, 1);
    EXPECT_EQ(s.getParmWithAutolink("../../obj/geo3/ty", "/obj/geo1", k), s.getParm(3));
    EXPECT_EQ(s.getParmWithAutolink("/obj/geo2/tx", "/obj/geo1/deeper", k), nullptr);
    EXPECT_EQ(k, -1);
}

TEST(EditScriptedParms, RemovingAndJoins)
{
    auto s = set(open(GZ_FOLDER_SIMPLE, "f"), parm("a"), parm("b"), end(), parm("c"));
    s.getParm(2)->setJoinNext(true); // followed by a group end
    s.getParm(4)->setJoinNext(true); // the last entry
    s.getParm(1)->setJoinNext(true);
    s.removeInvalidJoins();
    EXPECT_TRUE(s.getParm(1)->getJoinNext());
    EXPECT_FALSE(s.getParm(2)->getJoinNext());
    EXPECT_FALSE(s.getParm(4)->getJoinNext());
    // The opener alone takes its end with it; the contents stay.
    EXPECT_EQ(s.removeParms(0, 0), 2);
    EXPECT_EQ(names(s), "a b c");
    EXPECT_EQ(s.removeParms(-1, 0), 0);
    EXPECT_EQ(s.removeParms(0, 3), 0);

    // Empty folders: separators and empty nested folders do not count.
    auto e = set(open(GZ_FOLDER_SIMPLE, "empty"), parm("sep", "Separator"),
                 open(GZ_FOLDER_COLLAPSIBLE, "inner"), end(), end(), open(GZ_FOLDER_SIMPLE, "full"),
                 open(GZ_FOLDER_SIMPLE, "deep"), parm("x"), end(), end());
    e.removeEmptyFolders();
    EXPECT_EQ(names(e), "full deep x } }");
}

TEST(EditScriptedParms, Moves)
{
    // 0 a 1 f { 2 b 3 c 4 } 5 d
    auto s = set(parm("a"), open(GZ_FOLDER_SIMPLE, "f"), parm("b"), parm("c"), end(), parm("d"));
    EXPECT_FALSE(s.isParmMoveAllowed(3, 3, 1));  // out across the folder's end
    EXPECT_FALSE(s.isParmMoveAllowed(2, 2, -1)); // out across its opener
    EXPECT_FALSE(s.isParmMoveAllowed(1, 2, 3));  // half a block
    EXPECT_FALSE(s.isParmMoveAllowed(5, 5, 1));  // past the end
    EXPECT_TRUE(s.moveParms(1, 4, 1));           // the whole folder past d
    EXPECT_EQ(names(s), "a d f b c }");
    EXPECT_TRUE(s.moveParms(0, 0, 2)); // a into the folder
    EXPECT_EQ(names(s), "d f a b c }");
    EXPECT_TRUE(s.moveParms({4, 0}, 3));
    EXPECT_EQ(names(s), "f a c d b }");
    EXPECT_TRUE(s.permuteParms({1, 0, 2, 3, 4, 5}));
    EXPECT_FALSE(s.permuteParms({0, 0, 1, 2, 3, 4}));
    EXPECT_EQ(names(s), "a f c d b }");
}

TEST(EditScriptedParms, SafeNames)
{
    auto s = set(parm("newparameter"), parm("tx"), parm("scale"), parm("a9"));
    std::string name;
    EXPECT_TRUE(s.makeSafeParmName(nullptr, name, nullptr, true));
    EXPECT_EQ(name, "newparameter1");
    auto t = parm("t", "Float Vector 3", 3);
    name = "t";
    EXPECT_TRUE(s.makeSafeParmName(t.get(), name, nullptr, true)); // t's own tx is taken
    EXPECT_EQ(name, "t1");
    name = "t";
    EXPECT_FALSE(s.makeSafeParmName(t.get(), name, nullptr, false));
    name = "a9";
    s.makeSafeParmName(nullptr, name, nullptr, true);
    EXPECT_EQ(name, "a10");
    name = "pt#";
    std::unordered_set<std::string> avoid{"pt#"};
    s.makeSafeParmName(nullptr, name, &avoid, false);
    EXPECT_EQ(name, "pt#_1");
    name = "1 bad";
    EXPECT_TRUE(s.makeSafeParmName(nullptr, name, nullptr, false));
    EXPECT_NE(name, "1 bad");
    // An entry does not collide with itself.
    name = "scale";
    EXPECT_FALSE(s.makeSafeParmName(s.getParm(2), name, nullptr, true));

    // An instance of a multiparm pattern cannot be fixed by another number: it gets a "_".
    auto m = set(open(GZ_FOLDER_MULTI_LIST, "m"), parm("pt#"), end());
    name = "pt2";
    EXPECT_TRUE(m.makeSafeParmName(nullptr, name, nullptr, true));
    EXPECT_EQ(name, "_pt2");
    name = "pt";
    EXPECT_FALSE(m.makeSafeParmName(nullptr, name, nullptr, true));

    // Merging makes every copy unique, also against copies merged before it.
    auto other = set(parm("scale"), parm("scale"));
    s.mergeParms(other);
    EXPECT_EQ(names(s), "newparameter tx scale a9 scale1 scale2");
}

TEST(EditScriptedParms, Compile)
{
    auto s = set(open(GZ_FOLDER_TABS, "page1"), parm("a"), parm("lab", "Label"), end(),
                 open(GZ_FOLDER_TABS, "page2"), parm("b"), end(), open(GZ_FOLDER_TABS, "page3"),
                 end(), open(GZ_FOLDER_TABS, "main_"), end(), open(GZ_FOLDER_TABS, "main2"), end(),
                 parm("sep", "Separator"), open(GZ_FOLDER_COLLAPSIBLE, "box"), parm("base"), end());
    s.getParm(7)->setTabBreak(true); // page3 ends its switcher: main_ starts another
    s.getParm(15)->setIsBaseParm(true);
    s.getParm(1)->setDefault(0, "3");
    s.getParm(1)->setHelp("help");
    s.compile();
    EXPECT_EQ(names(s), "page1 a b main_ box base }");
    const GZ_EditScriptedParm &menu = *s.getParm(0);
    EXPECT_EQ(std::tuple(menu.getType(), menu.getSize(), menu.getFolderType()),
              std::tuple("Ordered Menu", 3, GZ_FOLDER_NONE));
    EXPECT_EQ(s.getParm(3)->getSize(), 2); // main_ and main2 share the base name main
    const GZ_EditScriptedParm &a = *s.getParm(1);
    EXPECT_EQ(std::tuple(a.getInvisible(), a.getDefault(0), a.getHelp(), a.getLabel()),
              std::tuple(true, "", "", ""));
    EXPECT_FALSE(s.getParm(5)->getInvisible()); // base parameters stay visible
}

namespace
{
class TestAggregate : public GZ_EditScriptedParmsAggregate
{
public:
    void add(GZ_EditScriptedParms parms)
    {
        appendToAggregate(nullptr, std::make_unique<GZ_EditScriptedParms>(std::move(parms)));
    }
};
} // namespace

TEST(EditScriptedParmsAggregate, GlobalIndicesAndCopies)
{
    TestAggregate agg;
    agg.add(set(open(GZ_FOLDER_SIMPLE, "f"), parm("scale"), parm("x")));
    agg.add(set(parm("scale"), end()));
    EXPECT_EQ(agg.getNParms(), 5);
    int m, l;
    agg.getNodeAndParmIndices(m, l, 4);
    EXPECT_EQ(std::tuple(m, l), std::tuple(1, 1));
    agg.getNodeAndParmIndices(m, l, 5);
    EXPECT_EQ(std::tuple(m, l, agg.getParmIndex(1, 2)), std::tuple(-1, -1, -1));
    EXPECT_EQ(agg.getParmIndex(1, 1), 4);
    EXPECT_EQ(agg.getMatchingGroupParm(4), -1); // never across members
    EXPECT_EQ(agg.getParm(3)->getName(), "scale");

    GZ_EditScriptedParms target;
    agg.copyToParms(target);
    EXPECT_EQ(names(target), "f scale x scale1 }");
    EXPECT_EQ(agg.removeParms(2, 3), 2);
    EXPECT_EQ(agg.getNParms(), 3);
}

TEST(NameCounts, MatchesAMultisetThroughGrowthAndCountsToZero)
{
    gz_NameCounts counts;
    std::map<std::string, int> model;
    for (int step = 0; step < 6000; ++step)
    {
        // Many names (the table grows several times), some counted down past zero.
        const std::string name = "p" + std::to_string(step * 7919 % 1500);
        const int delta = step % 3 == 2 ? -1 : 1;
        counts.add(name, delta);
        model[name] = std::max(0, model[name] + delta);
    }
    for (int i = 0; i < 1600; ++i)
    {
        const std::string name = "p" + std::to_string(i);
        ASSERT_EQ(counts.has(name), model[name] > 0) << name;
    }
}

TEST(EditScriptedParms, IndexFollowsEveryEdit)
{
    // After each edit the set's indexed answers must equal those of a copy indexed afresh.
    auto s = set(parm("a"), open(GZ_FOLDER_TABS, "f1", "One"), parm("b"),
                 open(GZ_FOLDER_SIMPLE, "g", "Inner"), parm("c"), end(), end(),
                 open(GZ_FOLDER_TABS, "f2", "Two"), parm("d"), end(), parm("e"));
    const std::vector<std::pair<const char *, std::function<void()>>> edits = {
        {"insert",
         [&]
         {
             std::vector<std::unique_ptr<GZ_EditScriptedParm>> v;
             v.push_back(open(GZ_FOLDER_RADIO, "r", "One"));
             v.push_back(parm("x"));
             v.push_back(end());
             s.insertParms(2, std::move(v));
         }},
        {"remove",
         [&] { s.removeParms(s.getParmIndexWithName("x"), s.getParmIndexWithName("x")); }},
        {"move", [&] { s.moveParms(s.entries() - 1, s.entries() - 1, 1 - s.entries()); }},
        {"rename", [&] { s.getParm(s.getParmIndexWithName("b"))->setName("bb"); }},
        {"relabel", [&] { s.getFolderWithName("f2")->setLabel("One"); }},
        {"retype", [&] { s.getFolderWithName("g")->setFolderType(GZ_FOLDER_MULTI_LIST); }},
        {"append after stale",
         [&]
         {
             s.getParm(0)->setName("e2");
             s.addParm(open(GZ_FOLDER_TABS, "f3", "Two"));
             s.addParm(end());
         }},
        {"merge",
         [&] { s.mergeParms(set(parm("a"), open(GZ_FOLDER_TABS, "f4", "Inner"), end())); }},
        {"remove tail", [&] { s.removeParms(s.entries() - 3, s.entries() - 1, false); }},
        {"clear",
         [&]
         {
             s.clearParms();
             s.addParm(parm("z"));
         }},
    };
    const char *names_seen[] = {"a", "b", "bb", "c", "e", "e2", "x", "r", "g", "f3", "f4", "z"};
    for (const auto &edit : edits)
    {
        edit.second();
        const GZ_EditScriptedParms fresh(s);
        for (const char *name : names_seen)
            EXPECT_EQ(s.hasParmWithName(name), fresh.hasParmWithName(name)) << edit.first << name;
        for (const char *label : {"One", "Two", "Inner"})
            EXPECT_EQ(s.getOpenerIndicesWithLabel(label), fresh.getOpenerIndicesWithLabel(label))
                << edit.first << label;
        for (int i = 0; i < s.entries(); ++i)
        {
            EXPECT_EQ(s.getFolderRunEnd(i), fresh.getFolderRunEnd(i)) << edit.first << i;
            EXPECT_EQ(s.getFirstNestedFolderIndex(i), fresh.getFirstNestedFolderIndex(i))
                << edit.first << i;
            EXPECT_EQ(s.getMatchingGroupParm(i), fresh.getMatchingGroupParm(i)) << edit.first << i;
        }
    }
}
