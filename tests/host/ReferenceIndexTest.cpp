// The reverse index of channel references and the path rewrite of node renames.
#include "HostFixture.h"

#include "host/HostParm.h"
#include "host/HostReferenceIndex.h"
#include "host/HostReferrerSet.h"
#include "host/HostRenameRepair.h"

#include <set>
#include <tuple>
#include <vector>

namespace
{
std::vector<std::string> paths(const std::string &text)
{
    std::vector<std::string> out;
    for (const HostChannelPathLiteral &l : HostReferenceIndex::findChannelPaths(text))
        out.push_back(l.myPath + "@" + std::to_string(l.myBegin) + "-" + std::to_string(l.myEnd));
    return out;
}
} // namespace

TEST(ReferenceIndexText, FindsLiteralPathsOnly)
{
    using V = std::vector<std::string>;
    EXPECT_EQ(paths("ch(\"tx\")"), V{"tx@4-6"});
    EXPECT_EQ(paths("1 + chs ( '../a/b' ) * ch(\"x\\\"y\")"), (V{"../a/b@11-17", "x\"y@27-31"}));
    EXPECT_EQ(paths("mych(\"tx\") + $ch + ch(\"a\" + \"b\") + ch(name) + ch(\"open"), V{});
    EXPECT_EQ(paths("chx(\"tx\") + ch(\"\")"), V{"@16-16"});
    // Text in another language: characters this one lacks do not hide later calls.
    EXPECT_EQ(paths("zum.ch('a/b')[0] # ch(\"c\")"), (V{"a/b@8-11", "c@23-24"}));

    std::string node, token;
    for (const auto &[path, split] : {std::pair{"tx", "/obj/geo1|tx"},
                                      {"../geo2/t", "/obj/geo2|t"},
                                      {"box1//./tx", "/obj/geo1/box1|tx"},
                                      {"/obj/x/../geo3/ty", "/obj/geo3|ty"},
                                      {"../../tx", "/|tx"}})
    {
        ASSERT_TRUE(HostReferenceIndex::splitChannelPath("/obj/geo1", path, node, token)) << path;
        EXPECT_EQ(node + "|" + token, split);
    }
    for (const char *bad : {"../../../tx", "../geo2/", ""})
        EXPECT_FALSE(HostReferenceIndex::splitChannelPath("/obj/geo1", bad, node, token)) << bad;
}

class ReferenceIndex : public HostFixture
{
protected:
    std::vector<std::string> referrers(const std::string &path, const std::string &channel)
    {
        HostNode *node = myDirector.findNode(path);
        int k = -1;
        HostParm *parm = node ? node->findChannel(channel, k) : nullptr;
        std::vector<std::string> out;
        if (!parm)
            return out;
        for (const HostReferrer &r : myDirector.getReferenceIndex().findReferrers(*node, *parm, k))
            out.push_back(r.myParm->getNode()->getName() + "/" +
                          r.myParm->getChannelName(r.myComponent));
        return out;
    }
    std::vector<std::string> byName(const std::string &path, const std::string &channel)
    {
        std::vector<std::string> out;
        for (const HostReferrer &r : myDirector.getReferenceIndex().findReferrersByName(
                 *myDirector.findNode(path), channel))
            out.push_back(r.myParm->getNode()->getName() + "/" +
                          r.myParm->getChannelName(r.myComponent));
        return out;
    }
    void expr(const std::string &path, const std::string &channel, const std::string &text)
    {
        int k = -1;
        HostParm *parm = myDirector.findNode(path)->findChannel(channel, k);
        parm->setString(k, 0.0, text, HOST_STRING_EXPRESSION);
    }
};

TEST_F(ReferenceIndex, FollowsValuesNodesAndNames)
{
    using V = std::vector<std::string>;
    make("tgeo", "/obj/geo1");
    make("tgeo", "/obj/geo2");
    make("tbox", "/obj/geo2/box1");
    expr("/obj/geo2", "tx", "ch(\"../geo1/tx\") + ch(\"/obj/geo1/t\")");
    expr("/obj/geo2", "ty", "ch(\"../geo1/ty\")");
    expr("/obj/geo2", "tz", "ch(\"../geo3/tx\")"); // not there yet
    expr("/obj/geo2/box1", "label", "chs(\"../../geo1/scale\")");
    expr("/obj/geo2/box1", "sizex", "ch(\"../tx\")");
    EXPECT_EQ(referrers("/obj/geo1", "tx"), (V{"geo2/tx"}));
    EXPECT_EQ(referrers("/obj/geo1", "ty"), (V{"geo2/ty"}));
    EXPECT_EQ(referrers("/obj/geo1", "scale"), (V{"box1/label"}));
    EXPECT_EQ(referrers("/obj/geo2", "tx"), (V{"box1/sizex"}));
    EXPECT_EQ(referrers("/obj/geo1", "tz"), V{});
    // By name, a channel the node does not have (a parameter renamed away) is still found.
    expr("/obj/geo2", "rx", "ch(\"../geo1/old\") + ch(\"../geo2/../geo1/t\")");
    EXPECT_EQ(byName("/obj/geo1", "old"), (V{"geo2/rx"}));
    EXPECT_EQ(byName("/obj/geo1", "t"), (V{"geo2/tx", "geo2/rx"}));
    EXPECT_EQ(referrers("/obj/geo1", "tx"), (V{"geo2/tx", "geo2/rx"}));
    EXPECT_EQ(byName("/obj/geo1", "tx"), (V{"geo2/tx"}));
    myDirector.findNode("/obj/geo2")->getParm("r")->setValue(0, 0.0, 1.0, false);

    // A constant replaces the expression; undo of the parameter brings it back.
    HostParm *ty = myDirector.findNode("/obj/geo2")->getParm("t");
    const HostParmState before = ty->saveState();
    ty->setValue(1, 0.0, 5.0, false);
    EXPECT_EQ(referrers("/obj/geo1", "ty"), V{});
    ty->restoreState(before);
    EXPECT_EQ(referrers("/obj/geo1", "ty"), (V{"geo2/ty"}));

    // A reference to a missing node is found once a node appears there.
    make("tgeo", "/obj/geo3");
    EXPECT_EQ(referrers("/obj/geo3", "tx"), (V{"geo2/tz"}));
    ASSERT_TRUE(myDirector.renameNode(myDirector.findNode("/obj/geo3"), "geo4"));
    EXPECT_EQ(referrers("/obj/geo4", "tx"), V{});
    ASSERT_TRUE(myDirector.renameNode(myDirector.findNode("/obj/geo1"), "geo3"));
    EXPECT_EQ(referrers("/obj/geo3", "tx"), (V{"geo2/tz"}));

    // Renaming the referrer's parent re-files its relative paths; deleting it forgets them.
    ASSERT_TRUE(myDirector.renameNode(myDirector.findNode("/obj/geo2"), "geo1"));
    EXPECT_EQ(referrers("/obj/geo3", "scale"), V{});
    EXPECT_EQ(referrers("/obj/geo1", "tx"), (V{"geo1/tx", "box1/sizex"}));
    const size_t entries = myDirector.getReferenceIndex().getNumEntries();
    ASSERT_TRUE(myDirector.deleteNode(myDirector.findNode("/obj/geo1/box1")));
    EXPECT_EQ(myDirector.getReferenceIndex().getNumEntries(), entries - 2);
    myDirector.clearScene();
    EXPECT_EQ(myDirector.getReferenceIndex().getNumEntries(), 0u);
}

TEST_F(ReferenceIndex, RenameRepairRewritesPathsIntoTheNode)
{
    make("tgeo", "/obj/geo1");
    make("tgeo", "/obj/geo2");
    HostNode *box = make("tbox", "/obj/geo1/box1");
    HostNode *geo1 = myDirector.findNode("/obj/geo1");
    HostNode *geo2 = myDirector.findNode("/obj/geo2");
    using Row = std::tuple<HostNode *, const char *, const char *>; // from, text, rewritten
    for (const auto &[from, text, rewritten] : {
             Row{geo2, "ch(\"../geo1/tx\") + ch('/obj/geo1/box1/sizex')",
                 "ch(\"../g\\\"1/tx\") + ch('/obj/g\"1/box1/sizex')"},
             Row{box, "ch(\"../tx\") + ch(\"../../geo1/ty\") + ch(\"sizex\")",
                 "ch(\"../tx\") + ch(\"../../g\\\"1/ty\") + ch(\"sizex\")"},
             Row{geo2, "ch(\"../geo1x/tx\") + ch(\"../nothere/../geo1/tx\")",
                 "ch(\"../geo1x/tx\") + ch(\"../nothere/../geo1/tx\")"},
         })
        EXPECT_EQ(HostRenameRepair::rewriteText(text, *from, *geo1, "g\"1"), rewritten);

    expr("/obj/geo2", "tx", "ch(\"../geo1/tx\")");
    expr("/obj/geo2", "ty", "ch(\"../geo1/box1/sizey\")");
    expr("/obj/geo1/box1", "label", "chs(\"../../geo1/tx\")");
    geo2->getParm("t")->setLocked(1, true);
    const HostRenameRepair repair(*geo1, "geo9");
    EXPECT_EQ(repair.getNumRewrites(), 3);
    ASSERT_TRUE(myDirector.renameNode(geo1, "geo9"));
    std::vector<std::string> warnings;
    repair.apply(0.0, warnings);
    EXPECT_EQ(geo2->getParm("t")->getExpression(0), "ch(\"../geo9/tx\")");
    EXPECT_EQ(box->getParm("label")->getExpression(0), "chs(\"../../geo9/tx\")");
    EXPECT_EQ(warnings,
              std::vector<std::string>{"/obj/geo2/ty: cannot update the reference to /obj/geo1"});
    EXPECT_EQ(referrers("/obj/geo9", "tx"), (std::vector<std::string>{"geo2/tx", "box1/label"}));
}

TEST_F(ReferenceIndex, BakeKeepsTheValueDropsTheReferenceAndUndoes)
{
    make("tgeo", "/obj/geo1")->getParm("t")->setValue(0, 1.5);
    HostNode *geo2 = make("tgeo", "/obj/geo2");
    HostNode *box = make("tbox", "/obj/geo2/box1");
    expr("/obj/geo2", "tx", "ch(\"../geo1/tx\") * 2");
    expr("/obj/geo2/box1", "label", "\"v\" + chs(\"../../geo1/tx\")");
    geo2->getParm("t")->setKey(1, 0.0, 4.0);
    HostParm &t = *geo2->getParm("t");
    HostParm &label = *box->getParm("label");

    HostUndoManager &undo = myDirector.getUndoManager();
    const int block = undo.beginUndoBlock("bake");
    EXPECT_TRUE(geo2->bakeParmValue(t, 0, 0.0));
    EXPECT_TRUE(geo2->bakeParmValue(t, 1, 0.0));
    EXPECT_TRUE(geo2->bakeParmValue(t, 2, 0.0)); // a constant: nothing to do
    EXPECT_TRUE(box->bakeParmValue(label, 0, 0.0));
    undo.endUndoBlock(block);
    EXPECT_FALSE(t.hasExpression(0) || t.hasChannel(1) || label.hasExpression(0));
    EXPECT_EQ(std::tuple(t.getValue(0), t.getValue(1)), std::tuple(3.0, 4.0));
    EXPECT_EQ(label.getString(0), "v1.5");
    EXPECT_EQ(referrers("/obj/geo1", "tx"), std::vector<std::string>{});

    undo.undo();
    EXPECT_EQ(t.getExpression(0), "ch(\"../geo1/tx\") * 2");
    EXPECT_TRUE(t.hasChannel(1));
    EXPECT_EQ(referrers("/obj/geo1", "tx"), (std::vector<std::string>{"geo2/tx", "box1/label"}));

    geo2->setPermissions(0);
    EXPECT_FALSE(geo2->canModify());
    EXPECT_FALSE(geo2->bakeParmValue(t, 0, 0.0));
    EXPECT_TRUE(t.hasExpression(0));
}

TEST(ReferrerSet, MatchesASetThroughGrowthAndErasure)
{
    // Slots of a few fake parameters, inserted and erased in a mixed order through several
    // growths: every entry left must stay reachable after the erasures around it.
    HostReferrerSet set;
    std::set<HostReferrerSet::Slot> model;
    std::vector<char> parms(64);
    for (int step = 0; step < 5000; ++step)
    {
        const HostReferrerSet::Slot slot(reinterpret_cast<HostParm *>(&parms[step * 37 % 64]),
                                         step * 11 % 3);
        const bool add = step % 5 < 3;
        ASSERT_EQ(add ? set.insert(slot) : set.erase(slot),
                  add ? model.insert(slot).second : model.erase(slot) == 1)
            << step;
        ASSERT_EQ(set.size(), model.size());
    }
    std::set<HostReferrerSet::Slot> walked;
    set.forEach([&](const HostReferrerSet::Slot &slot) { walked.insert(slot); });
    EXPECT_EQ(walked, model);
}
