// Tests of a handle's channel operations (keys, scoping, locks, defaults, key navigation) and
// of the parameter cache periods they hand keys and scopes to.
#include "gz_LinkTestEnv.h"

#include "host/HostChannelManager.h"
#include "host/HostCommandArgs.h"
#include "host/HostCommandManager.h"
#include "host/HostUndoManager.h"

#include <string>
#include <tuple>
#include <vector>

using gztest::LinkFixture;
using gztest::TestLink;

namespace
{

/// Opens, reads and closes parameter cache periods, which only a derived manager may do.
class CacheControl : public GZ_ResourceManager
{
public:
    using GZ_ResourceManager::getParmsCache;
    using GZ_ResourceManager::getParmsCacheBehaviour;
    using GZ_ResourceManager::startParmsCache;
    using GZ_ResourceManager::stopParmsCache;

    static size_t size()
    {
        std::vector<HostNode *> *nodes = nullptr;
        std::vector<HostParm *> *parms = nullptr;
        std::vector<int> *indices = nullptr;
        getParmsCache(nodes, parms, indices);
        EXPECT_EQ(nodes->size(), indices->size());
        EXPECT_EQ(parms->size(), indices->size());
        return indices->size();
    }

    /// The cache behaviour flags (set key, scope, append) as "010" for only scope.
    static std::string behaviour()
    {
        bool flags[3] = {true, true, true};
        getParmsCacheBehaviour(flags[0], flags[1], flags[2]);
        return {flags[0] ? '1' : '0', flags[1] ? '1' : '0', flags[2] ? '1' : '0'};
    }
};

/// A link fixture whose command interpreter records the commands the link issues (scope,
/// motion scope and time), as the host would receive them; "tcur" also sets the time.
class ChannelOpsTest : public LinkFixture
{
protected:
    void SetUp() override
    {
        LinkFixture::SetUp();
        HostCommandManager *commands = HostCommandManager::getInstance();
        for (const char *name : {"chscope", "chopscope", "tcur"})
        {
            ASSERT_TRUE(commands->installCommand(name, "wa",
                                                 [this](HostCommandArgs &args) { record(args); }));
        }
        GZ_ResourceManager::setScopeChannelsOnKey(true);
        GZ_ResourceManager::setAddScopedChannels(false);
        GZ_ResourceManager::setOpenChannelEditorOnScope(false);
    }

    void TearDown() override
    {
        HostCommandManager *commands = HostCommandManager::getInstance();
        for (const char *name : {"chscope", "chopscope", "tcur"})
            commands->uninstallCommand(name);
        GZ_ResourceManager::setScopeChannelsOnKey(true);
        GZ_ResourceManager::setAddScopedChannels(false);
        GZ_ResourceManager::setOpenChannelEditorOnScope(false);
        while (GZ_ResourceManager::cacheParms() > 0)
            CacheControl::stopParmsCache();
        LinkFixture::TearDown();
    }

    /// The command text again: the name, the options in the order given, the arguments.
    void record(HostCommandArgs &args)
    {
        std::string text = args.commandName();
        for (char letter : args.optionLetters())
            text += std::string(" -") + letter;
        for (int i = 1; i < args.argc(); ++i)
            text += " " + args.arg(i);
        myCommands.push_back(text);
        if (args.commandName() == "tcur")
            myDirector.setTime(std::stod(args.arg(1)));
    }

    /// A link with tx, ty, tz bound on the transform type, attached to the nodes.
    std::unique_ptr<TestLink> makeXyzLink(const std::vector<HostNode *> &nodes)
    {
        std::unique_ptr<TestLink> link = makeLink();
        link->bind("lxform", {"tx", "ty", "tz"});
        for (HostNode *node : nodes)
            link->attach(*node);
        return link;
    }

    HostParm &t(HostNode *node) { return *parm(node, "tx"); }

    /// The lock flags of the three components, as "100" for only the first locked.
    static std::string locks(const HostParm &p)
    {
        std::string flags;
        for (int i = 0; i < 3; ++i)
            flags += p.isLocked(i) ? '1' : '0';
        return flags;
    }

    std::vector<std::string> myCommands;
};

} // namespace

TEST_F(ChannelOpsTest, SetKeysOverTwoNodesIsOneBlockAndOneScopeCommand)
{
    HostNode *a = make("lxform", "/obj/a");
    HostNode *b = make("lxform", "/obj/b");
    std::unique_ptr<TestLink> link = makeXyzLink({a, b});
    t(b).setLocked(1, true); // b's ty refuses the key
    myDirector.setTime(2.0);
    HostUndoManager &undo = HostUndoManager::current();
    const int blocks = undo.getNumBlocksOpened();

    link->setKeys(-1, 0, 2, nullptr);

    EXPECT_EQ(undo.getNumBlocksOpened(), blocks + 1);
    EXPECT_EQ(undo.getUndoName(), "Create Key(s)");
    for (HostNode *node : {a, b})
    {
        EXPECT_TRUE(t(node).isKeyAt(0, 2.0));
        EXPECT_TRUE(t(node).isKeyAt(2, 2.0));
    }
    EXPECT_EQ(std::tuple(t(a).isKeyAt(1, 2.0), t(b).isKeyAt(1, 2.0)), std::tuple(true, false));
    ASSERT_EQ(myCommands.size(), 1u);
    EXPECT_EQ(myCommands[0], "chscope /obj/a/tz /obj/a/ty /obj/a/tx /obj/b/tz /obj/b/tx");

    // Undo takes every key of both nodes back in one step.
    ASSERT_TRUE(undo.undo());
    EXPECT_EQ(std::tuple(t(a).hasChannel(0), t(b).hasChannel(2)), std::tuple(false, false));

    // Add mode marks every channel; the open-editor preference changes the prefix; a named
    // block replaces the default name; a range keys only its handle parameters.
    GZ_ResourceManager::setAddScopedChannels(true);
    GZ_ResourceManager::setOpenChannelEditorOnScope(true);
    link->setKeys(1, 0, 1, "Drag Keys");
    EXPECT_EQ(undo.getUndoName(), "Drag Keys");
    ASSERT_EQ(myCommands.size(), 2u);
    EXPECT_EQ(myCommands[1], "chscope -w +/obj/b/tx");
    EXPECT_FALSE(t(b).hasChannel(2));

    // Without scope-on-key nothing is scoped.
    GZ_ResourceManager::setScopeChannelsOnKey(false);
    link->setKeys(0, -1, -1, nullptr);
    EXPECT_EQ(std::tuple(myCommands.size(), t(a).isKeyAt(2, 2.0)), std::tuple(2u, true));
}

TEST_F(ChannelOpsTest, SetKeysSkipsWhatCannotBeKeyedAndOpensNoBlockForAnEmptyRange)
{
    HostNode *a = make("lxform", "/obj/a");
    std::unique_ptr<TestLink> link = makeXyzLink({});
    link->linkOpParm("lxform", 3, "still"); // a type without the channel flag
    link->attach(*a);
    HostUndoManager &undo = HostUndoManager::current();
    const int blocks = undo.getNumBlocksOpened();

    link->setKeys(-1, 3, 1, nullptr);
    EXPECT_EQ(std::tuple(undo.getNumBlocksOpened(), t(a).hasChannel(0), myCommands.empty()),
              std::tuple(blocks, false, true));

    link->setKeys(-1, 3, 3, nullptr);
    int k = -1;
    EXPECT_FALSE(parm(a, "still", k)->hasChannel(k));
    EXPECT_TRUE(myCommands.empty()) << "a bare prefix would list the scope";
}

TEST(ParmCache, OnlyTheOutermostStopClearsAndResets)
{
    // Stopping with nothing open changes nothing.
    GZ_ResourceManager::setParmsCacheBehaviour(true, false, true);
    GZ_ResourceManager::appendToParmsCache(nullptr, nullptr, 5);
    CacheControl::stopParmsCache();
    EXPECT_EQ(GZ_ResourceManager::cacheParms(), 0);
    EXPECT_EQ(CacheControl::size(), 1u);

    CacheControl::startParmsCache();
    CacheControl::startParmsCache();
    GZ_ResourceManager::appendToParmsCache(nullptr, nullptr, 2);
    GZ_ResourceManager::appendToParmsCache(nullptr, nullptr, 2); // duplicates stay
    GZ_ResourceManager::setParmsCacheBehaviour(false, true, false);
    CacheControl::stopParmsCache();
    EXPECT_EQ(GZ_ResourceManager::cacheParms(), 1);
    EXPECT_EQ(CacheControl::size(), 3u);

    // The last behaviour set is what the host reads before the outermost stop.
    EXPECT_EQ(CacheControl::behaviour(), "010");

    CacheControl::stopParmsCache();
    EXPECT_EQ(GZ_ResourceManager::cacheParms(), 0);
    EXPECT_EQ(std::tuple(CacheControl::size(), CacheControl::behaviour()), std::tuple(0u, "000"));
}

TEST_F(ChannelOpsTest, KeysAndScopesGoToTheOpenCache)
{
    HostNode *a = make("lxform", "/obj/a");
    std::unique_ptr<TestLink> link = makeXyzLink({a});
    GZ_ResourceManager::setAddScopedChannels(true);
    CacheControl::startParmsCache();

    link->setKeys(-1, -1, -1, nullptr);
    EXPECT_EQ(std::tuple(t(a).hasChannel(0), myCommands.empty()), std::tuple(false, true));
    std::vector<HostNode *> *nodes = nullptr;
    std::vector<HostParm *> *parms = nullptr;
    std::vector<int> *indices = nullptr;
    CacheControl::getParmsCache(nodes, parms, indices);
    ASSERT_EQ(indices->size(), 3u);
    EXPECT_EQ(std::tuple(*indices, (*nodes)[0], (*parms)[0], CacheControl::behaviour()),
              std::tuple((std::vector<int>{2, 1, 0}), a, &t(a), "111"));

    // Scoping states its own behaviour and appends again (duplicates are kept).
    link->editChannels(0, -1);
    EXPECT_TRUE(myCommands.empty());
    EXPECT_EQ(std::tuple(CacheControl::behaviour(), indices->size()), std::tuple("010", 6u));
}

TEST_F(ChannelOpsTest, EditChannelsBuildsOnePatternPerNodeAndNamesOverrides)
{
    HostNode *a = make("lxform", "/obj/a");
    HostNode *b = make("lxform", "/obj/b");
    std::unique_ptr<TestLink> link = makeLink();
    link->bind("lxform", {"tx", "ty", "!1+1"}); // expressions are not channels
    link->attach(*a);
    link->attach(*b);

    link->editChannels(0, -1);
    ASSERT_EQ(myCommands.size(), 1u);
    EXPECT_EQ(myCommands[0], "chscope -a /obj/a/ty,tx -a /obj/b/ty,tx");

    t(b).setChannelOverride(0, "/ch/motion/tx");
    GZ_ResourceManager::setOpenChannelEditorOnScope(true);
    link->editChannels(1, 1);
    ASSERT_EQ(myCommands.size(), 3u);
    EXPECT_EQ(myCommands[1], "chopscope /ch/motion/tx");
    EXPECT_EQ(myCommands[2], "chscope -w -a +/obj/b/ty,tx");
}

TEST_F(ChannelOpsTest, LockTwiceRestoresEveryLock)
{
    HostNode *a = make("lxform", "/obj/a");
    std::unique_ptr<TestLink> link = makeXyzLink({a});
    HostParm &p = t(a);
    p.setLocked(1, true);
    p.setEnabled(2, false); // a disabled component keeps its flag

    link->lockParms(-1);
    EXPECT_EQ(HostUndoManager::current().getUndoName(), "Lock Parms");
    EXPECT_EQ(locks(p), "100");
    link->lockParms(-1);
    EXPECT_EQ(locks(p), "010");
    // The first lock is one undo step back.
    ASSERT_TRUE(HostUndoManager::current().undo());
    EXPECT_EQ(locks(p), "100");
}

TEST_F(ChannelOpsTest, FindKeyMovesToTheNearestKeyOfAnyNode)
{
    HostNode *a = make("lxform", "/obj/a");
    HostNode *b = make("lxform", "/obj/b");
    std::unique_ptr<TestLink> link = makeXyzLink({a, b});
    for (double time : {10.0, 12.0, 15.0})
        t(a).setKey(0, time, time);
    t(b).setKey(2, 14.0, 1.0);
    myDirector.setTime(10.0);

    link->findKey(1, -1);
    ASSERT_EQ(myCommands.size(), 1u);
    EXPECT_EQ(myCommands[0], "tcur 12.000000");
    link->findKey(1, -1);
    EXPECT_DOUBLE_EQ(myDirector.getTime(), 14.0) << "the other node's key is nearer";
    link->findKey(-1, 0);
    EXPECT_DOUBLE_EQ(myDirector.getTime(), 12.0);

    // A key a hair away from the current time is the current one.
    myDirector.setTime(15.0 - 5e-6);
    link->findKey(1, 0);
    EXPECT_EQ(myCommands.size(), 3u) << "no later key: no command";
    link->findKey(-1, 0);
    EXPECT_DOUBLE_EQ(myDirector.getTime(), 12.0);
}

TEST_F(ChannelOpsTest, RemoveKeysAndDeleteChannelsKeepTheValue)
{
    HostNode *a = make("lxform", "/obj/a");
    std::unique_ptr<TestLink> link = makeXyzLink({a});
    HostParm &p = t(a);
    for (const auto &[index, time, v] :
         {std::tuple{0, 1.0, 4.0}, {0, 2.0, 6.0}, {1, 1.0, 7.0}, {2, 1.0, 3.0}, {2, 3.0, 9.0}})
        p.setKey(index, time, v);
    myDirector.setTime(1.0);

    link->removeKeys(-1);
    EXPECT_EQ(HostUndoManager::current().getUndoName(), "Remove Key(s)");
    EXPECT_EQ(std::tuple(p.isKeyAt(0, 1.0), p.isKeyAt(0, 2.0)), std::tuple(false, true));
    EXPECT_FALSE(p.hasChannel(1)) << "the channel lost its only key";
    EXPECT_DOUBLE_EQ(value(a, "ty"), 7.0);

    link->deleteChannels(-1);
    EXPECT_EQ(HostUndoManager::current().getUndoName(), "Delete Channels");
    EXPECT_EQ(std::tuple(p.hasChannel(0), p.hasChannel(2)), std::tuple(false, false));
    EXPECT_DOUBLE_EQ(value(a, "tx"), 6.0);
    EXPECT_DOUBLE_EQ(value(a, "tz"), 9.0);
    ASSERT_TRUE(HostUndoManager::current().undo());
    EXPECT_TRUE(p.isKeyAt(2, 3.0));
}

TEST_F(ChannelOpsTest, DefaultsLeaveTheWatchedGroupAlone)
{
    HostNode *a = make("lxform", "/obj/a");
    auto watching = makeLink();
    watching->linkOpParm("lxform", 0, "tx");
    watching->linkOpParm("lxform", 4, "group");
    watching->watch(4, [](void *, void *) {});
    watching->attach(*a);
    int gk = -1;
    HostParm &group = *parm(a, "group", gk);
    group.setString(gk, "left", HOST_STRING_LITERAL);
    t(a).setValue(0, 5.0);

    watching->revertToDefaults(-1);
    EXPECT_EQ(HostUndoManager::current().getUndoName(), "Revert To Defaults");
    EXPECT_DOUBLE_EQ(value(a, "tx"), 0.0);
    EXPECT_EQ(group.getString(gk), "left");

    t(a).setValue(0, 5.0);
    watching->overwriteDefaults(-1);
    EXPECT_DOUBLE_EQ(t(a).getDefault(0).myNumber, 5.0);
    EXPECT_EQ(group.getDefault(gk).myString, "");

    t(a).setLocked(0, true); // factory defaults need access, not an unlocked component
    watching->revertToFactoryDefaults(-1);
    EXPECT_EQ(HostUndoManager::current().getUndoName(), "Revert To Factory Defaults");
    EXPECT_DOUBLE_EQ(t(a).getDefault(0).myNumber, 0.0);
    EXPECT_DOUBLE_EQ(value(a, "tx"), 0.0);
    EXPECT_EQ(group.getString(gk), "left");

    // A link that does not watch the group resets it like any other parameter.
    watching.reset();
    auto plain = makeLink();
    plain->linkOpParm("lxform", 4, "group");
    plain->attach(*a);
    plain->revertToDefaults(-1);
    EXPECT_EQ(group.getString(gk), "");
}

TEST_F(ChannelOpsTest, CopyKeyStructureCopiesOrRemovesTheChannel)
{
    HostNode *a = make("lxform", "/obj/a");
    std::unique_ptr<TestLink> link = makeXyzLink({a});
    HostParm &p = t(a);
    p.setKey(0, 0.0, 1.0);
    p.setKey(0, 1.0, 2.0);
    p.setValue(1, 8.0);

    link->copyKeyStructure(0, 1);
    ASSERT_NE(p.getChannel(1), nullptr);
    EXPECT_EQ(*p.getChannel(1), *p.getChannel(0));
    EXPECT_DOUBLE_EQ(p.getValue(1), 8.0);

    link->copyKeyStructure(2, 1);
    EXPECT_FALSE(p.hasChannel(1));
}
