// Tests of attaching nodes, op numbers, node events, locked parts, commands and settings.
#include "gz_LinkTestEnv.h"

#include "host/HostCommandArgs.h"
#include "link/GZ_SettingList.h"
#include "link/gz_SharedBindings.h"

#include <sstream>

using gztest::LinkFixture;
using gztest::TestLink;
using Names = GZ_OpHandleLink::StringArray;

namespace
{

/// Runs a bind (or unbind) command with `words` after the command and handle name; returns
/// what it wrote to its error stream.
std::string run(TestLink &link, bool bind, std::vector<std::string> words)
{
    std::ostringstream out, err;
    words.insert(words.begin(), {"cmd", "h"});
    HostCommandArgs args(words, out, err);
    args.setUsage("cmd NAME [PATH]");
    EXPECT_EQ(bind ? link.runBindCommand(args) : link.runUnbindCommand(args), 1);
    return err.str();
}

std::string options(const TestLink &link)
{
    std::ostringstream os;
    EXPECT_EQ(link.writeOptions(os, "P"), 1);
    return os.str();
}

std::string settingsText(const GZ_OpHandleLink &link)
{
    GZ_SettingList settings;
    link.saveSettings(settings, true);
    std::string text;
    settings.generateSettingString(text);
    return text;
}

bool watches(HostNode *node, const GZ_OpHandleLink *link)
{
    return node->hasEventCallback(const_cast<GZ_OpHandleLink *>(link),
                                  &GZ_OpHandleLink::handleOpChangeCallback);
}

int theInterestCalls = 0;
void countInterest(void *, void *)
{
    ++theInterestCalls;
}

} // namespace

TEST_F(LinkFixture, DetachingShiftsOpNumbers)
{
    HostNode *a = make("lxform", "/obj/a");
    HostNode *b = make("lxform", "/obj/b");
    auto link = makeLink();
    run(*link, true, {"/obj/a", "tx:tx"});
    run(*link, true, {"/obj/b", "ty:ty"});
    EXPECT_EQ(link->getOpnumForHandleParmIndex(1), 1);
    EXPECT_EQ(link->getOpnumForHandleParmIndex(5), -1);
    EXPECT_EQ(options(*link), "P /obj/a tx:tx\nP /obj/b ty:ty\n");
    EXPECT_EQ(link->attach(*a), -1);
    EXPECT_EQ(link->getNumOps(), 2);

    EXPECT_EQ(link->detach(*a), 0);
    EXPECT_EQ(link->getOpnumForHandleParmIndex(1), 0);
    EXPECT_EQ(link->getOpNode(0), b);
    EXPECT_FALSE(watches(a, link.get()));
    // Bindings live per operator type, so b's list holds both.
    EXPECT_EQ(options(*link), "P /obj/b tx:tx ty:ty\n");
    EXPECT_EQ(link->detach(*a), -1);

    link->detachAll();
    EXPECT_FALSE(link->hasLinkedParms());
    EXPECT_FALSE(watches(b, link.get()));
    EXPECT_EQ(options(*link), "");
}

TEST_F(LinkFixture, BindingsAreKeptPerOperatorType)
{
    HostNode *a = make("lxform", "/obj/a");
    HostNode *box = make("lbox", "/obj/box");
    auto link = makeLink();
    EXPECT_EQ(link->linkOpParm("lxform", 0, "tx"), 1);
    EXPECT_EQ(link->linkOpParm("lxform", 1, "!3*2"), 1);
    EXPECT_EQ(link->linkOpParmToHandleParm("lxform", "tz", "{2,0,0,1,tz}"), 1);
    EXPECT_EQ(link->linkOpParmToHandleParm("lxform", "nosuch", "tx"), 0);
    EXPECT_EQ(link->myLinked, (std::vector<int>{0, 2}));

    link->attach(*a);
    link->attach(*box);
    EXPECT_EQ(link->allParmNames(0), (Names{"tx", "!3*2", "{2,0,0,1,tz}", "", ""}));
    EXPECT_EQ(link->allParmNames(1), Names(5));
    EXPECT_TRUE(link->allParmNames(7).empty());

    // A node's list is a copy, shared with a link bound the same way until either changes.
    auto twin = makeLink();
    for (int i = 0; i < 3; ++i)
        twin->linkOpParm("lxform", i, link->allParmNames(0)[i].c_str());
    twin->attach(*a);
    EXPECT_EQ(&twin->allParmNames(0), &link->allParmNames(0));
    twin->opParmNames("lxform")[0] = "ty";
    EXPECT_EQ(twin->allParmNames(0)[0], "tx");
    EXPECT_EQ(link->opParmNames("lxform")[0], "tx");
    // Lists nobody holds leave the pool: it stays far below the lists ever made.
    for (int i = 0; i < 1000; ++i)
    {
        twin->linkOpParm("lbox", 3, std::to_string(i).c_str());
        twin->attach(*box);
        twin->detach(*box);
    }
    EXPECT_LT(gz_SharedBindings::size(), 200u);
    link->detach(*a); // bindings outlive a detach
    link->attach(*a);
    EXPECT_EQ(link->allParmNames(1)[2], "{2,0,0,1,tz}");

    EXPECT_EQ(link->findOpNode(0, "lbox"), box);
    EXPECT_EQ(link->refreshBindings(0, "other"), 1);
    EXPECT_EQ(link->lastSettingsOperatorTypeRestriction(), nullptr); // two nodes
    link->clearOpTypeParmNamesMap();
    link->detachAll();
    link->attach(*a);
    EXPECT_EQ(link->allParmNames(0), Names(5));
    EXPECT_EQ(link->lastSettingsOperatorTypeRestriction(), myXform);
}

TEST_F(LinkFixture, NodeEventsDetachAndDescribe)
{
    HostNode *a = make("lxform", "/obj/a");
    HostNode *b = make("lxform", "/obj/b");
    HostNode *c = make("lbox", "/obj/c");
    auto link = makeLink();
    link->attach(*a);
    link->attach(*b);
    link->attachForKeyframe(*c);
    EXPECT_EQ(link->getDescription(), "ltest: /obj/a");

    ASSERT_TRUE(myDirector.deleteNode(a));
    EXPECT_EQ(std::tuple(link->getOpNode(0), link->getKeyframeNumOps()), std::tuple(b, 2));
    EXPECT_EQ(link->getDescription(), "ltest: /obj/b");
    EXPECT_EQ(link->myUpdates, 1); // nodes remain, so the handle reads its values again
    ASSERT_TRUE(myDirector.deleteNode(c));
    EXPECT_EQ(link->getKeyframeNumOps(), 1);

    // A rename changes nothing until the description is rebuilt.
    ASSERT_TRUE(myDirector.renameNode(b, "bee"));
    EXPECT_EQ(link->getDescription(), "ltest: /obj/b");
    link->buildDescription();
    EXPECT_EQ(link->getDescription(), "ltest: /obj/bee");

    ASSERT_TRUE(myDirector.deleteNode(b));
    EXPECT_EQ(std::tuple(link->getKeyframeNumOps(), link->myUpdates), std::tuple(0, 2));
    EXPECT_EQ(link->getDescription(), "ltest");
    EXPECT_EQ(link->myDescriptionChanges.back(), "ltest: /obj/bee");

    link->setShowOpPath(false);
    link->attach(*make("lbox", "/obj/d"));
    EXPECT_EQ(link->getDescription(), "ltest");
}

TEST_F(LinkFixture, LockedPartsAreHidden)
{
    HostNode *a = make("lxform", "/obj/a");
    HostNode *b = make("lxform", "/obj/b");
    HostParm *t = parm(a, "ty");
    t->setLocked(1, true);
    auto link = makeLink();
    const char *bindings[] = {"tx", "ty", "{2,0,0,1,tz}", "!1"};
    for (int i = 0; i < 4; ++i)
        link->linkOpParm("lxform", i, bindings[i]);
    link->attach(*a);
    EXPECT_EQ(link->myUnlinked, std::vector<int>{1});

    link->detach(*a);
    GZ_ResourceManager::setHideLockedHandleParts(false);
    link->myUnlinked.clear();
    link->attach(*a);
    link->handleOpNodeChange(*a);
    EXPECT_TRUE(link->myUnlinked.empty());

    GZ_ResourceManager::setHideLockedHandleParts(true);
    t->setLocked(1, false);
    t->setLocked(2, true);
    link->myLinked.clear();
    link->handleOpNodeChange(*a);
    EXPECT_EQ(link->myLinked, (std::vector<int>{1, 0}));
    EXPECT_EQ(link->myUnlinked, std::vector<int>{2});

    // A reference to a channel the handle may not write is locked too.
    t->setLocked(2, false);
    t->setExpression(0, "ch(\"../b/tx\")");
    b->setPermissions(0444);
    HostParm *found_parm = nullptr;
    HostNode *found_node = nullptr;
    EXPECT_TRUE(GZ_OpHandleLink::isOpParmLocked("tx", *a, 0.0, &found_parm, &found_node));
    EXPECT_EQ(found_node, b);
    EXPECT_FALSE(GZ_OpHandleLink::isOpParmLocked("nosuch", *a, 0.0, &found_parm, &found_node));
    EXPECT_EQ(found_parm, nullptr);
    link->myUnlinked.clear();
    link->handleOpNodeChange(*a);
    EXPECT_EQ(link->myUnlinked, std::vector<int>{0});

    // Binding state marks the component that is finally driven.
    link->setBindingState(true);
    EXPECT_EQ(std::tuple(t->isActive(0), parm(b, "tx")->isActive(0), t->isActive(1)),
              std::tuple(false, true, true));
    link->setBindingState(false);
    EXPECT_FALSE(parm(b, "tx")->isActive(0));

    link->myUnlinked.clear();
    link->isolateHandleParms(1, {"tx", "ty", "group"});
    EXPECT_EQ(link->myUnlinked, (std::vector<int>{0, 2, 3}));
}

TEST_F(LinkFixture, BindCommandsRoundTripWriteOptions)
{
    make("lxform", "/obj/geo1");
    auto link = makeLink();
    EXPECT_EQ(run(*link, true, {"/obj/geo1", "t1:tx", "!2*3:ty", "{2,0,0,1,tz}:tz"}), "");
    const std::string written = options(*link);
    EXPECT_EQ(written, "P /obj/geo1 t1:tx !2*3:ty {2,0,0,1,tz}:tz\n");

    std::istringstream words(written);
    std::vector<std::string> args;
    for (std::string word; words >> word;)
        args.push_back(word);
    auto copy = makeLink();
    run(*copy, true, std::vector<std::string>(args.begin() + 1, args.end()));
    EXPECT_EQ(options(*copy), written);

    // Binding the node again replaces its bindings; bad pairs are reported and skipped.
    EXPECT_EQ(run(*link, true, {"/obj/geo1", "tx", "ty:", "t:nosuch", "ty:ty"}),
              "Bad parameter pair: tx\nBad parameter pair: ty:\n"
              "Unknown handle parameter: nosuch\n");
    EXPECT_EQ(options(*link), "P /obj/geo1 ty:ty\n");
    EXPECT_EQ(run(*link, true, {"/obj/none", "tx:tx"}), "Unknown operator: /obj/none\n");

    make("lxform", "/obj/geo2");
    run(*link, true, {"/obj/geo2", "tx:tx"});
    EXPECT_EQ(run(*link, false, {"/obj/zz"}), "Unknown operator: /obj/zz\n");
    EXPECT_EQ(run(*link, false, {"/obj/geo1"}), "");
    EXPECT_EQ(link->getNumOps(), 1);
    EXPECT_EQ(run(*link, false, {"/obj/geo2", "extra"}), "Usage: cmd NAME [PATH]\n");
    EXPECT_EQ(run(*link, false, {}), "");
    EXPECT_EQ(link->getNumOps(), 0);
}

TEST_F(LinkFixture, EqualityAndCopying)
{
    HostNode *a = make("lxform", "/obj/a");
    make("lbox", "/obj/b");
    auto link = makeLink();
    link->id(7);
    link->setActiveColor(HostColor(HostColor::RGB, 0, 1, 0));
    run(*link, true, {"/obj/a", "tx:tx", "{2,0,0,1,ty}:ty"});
    run(*link, true, {"/obj/b", "tz:tz"});

    auto copy = makeLink();
    EXPECT_EQ(copy->isEqual(*link), 0);
    EXPECT_EQ(copy->setEqual(*link), 1);
    EXPECT_EQ(std::tuple(link->isEqual(*copy), copy->id()), std::tuple(1, 7));
    EXPECT_EQ(options(*copy), options(*link));

    copy->linkOpParm("lxform", 0, "rx");
    copy->detach(*a);
    copy->attach(*a);
    EXPECT_EQ(copy->isEqual(*link), 0);

    const char *names[] = {"tx", "ty", "tz", "uniform", "group", nullptr};
    GZ_GZTemplate other("lother", "Other", "obj", "", names, 0, ~0u, false);
    TestLink stranger(other);
    EXPECT_EQ(stranger.setEqual(*link), 0);
}

TEST_F(LinkFixture, SettingsOfALink)
{
    HostNode *a = make("lxform", "/obj/a");
    HostNode *b = make("lxform", "/obj/b");
    auto link = makeLink();
    EXPECT_EQ(settingsText(*link), "");
    link->setShowOpPath(false);
    EXPECT_EQ(settingsText(*link), "showoppath(0)");
    link->setShowOpPath(true);
    link->setActiveColor(HostColor(HostColor::RGB, 0, 0.5, 1));
    link->setOwnerOp("../b");
    link->setOwnerOpGroup("group");
    EXPECT_EQ(settingsText(*link), "color(0 0.5 1) ownerop('../b') owneropgroup('group')");
    EXPECT_EQ(link->getOwnerOpRelativeTo(a), b);

    auto other = makeLink();
    GZ_SettingList list;
    list.loadFromSettingString("showoppath(0) color(0 0 1) ownerop('../b')");
    other->loadSettings(list);
    EXPECT_EQ(settingsText(*other), "showoppath(0) color(0 0 1) ownerop('../b')");
    // Only settings the handle already has take new values.
    other->updateSettings("color(0.5 0.5 0.5) showoppath(1) owneropgroup('g') bogus(1)");
    EXPECT_EQ(settingsText(*other), "color(0.5 0.5 0.5) ownerop('../b')");
    other->loadSettings(GZ_SettingList());
    EXPECT_EQ(settingsText(*other), "");
}

TEST_F(LinkFixture, CallbacksNeverOutliveLinksOrNodes)
{
    HostNode *a = make("lxform", "/obj/a");
    HostNode *b = make("lxform", "/obj/b");
    HostParm *group_a = parm(a, "group");
    HostParm *group_b = parm(b, "group");
    theInterestCalls = 0;
    {
        auto link = makeLink();
        link->watch(4, &countInterest);
        link->linkOpParm("lxform", 4, "group");
        link->attach(*a);
        link->attachForKeyframe(*b);
        EXPECT_EQ(group_a->getNumInputInterests(), 1);
        EXPECT_EQ(link->getFirstInputGroupInterestName(), "group");
        EXPECT_EQ(theInterestCalls, 1); // the node brings its groups up to date
        a->setParmString(*group_a, 0, "pts");
        EXPECT_EQ(theInterestCalls, 2);

        // Moving the owner moves the interest, which is removed where it was made.
        GZ_SettingList list;
        list.loadFromSettingString("ownerop('../b')");
        link->loadSettings(list);
        EXPECT_EQ(group_a->getNumInputInterests(), 0);
        EXPECT_EQ(group_b->getNumInputInterests(), 1);
        link->setOwnerOp("");
        link->detach(*a);
        EXPECT_EQ(group_b->getNumInputInterests(), 0);
        EXPECT_TRUE(link->getInputGroupInterestNames().empty());
        link->attach(*a);
    }
    // The destroyed link left nothing behind.
    EXPECT_EQ(group_a->getNumInputInterests(), 0);
    EXPECT_EQ(a->getNumEventCallbacks() + b->getNumEventCallbacks(), 0);

    // Nodes go first, then the link, including the owner of an interest.
    auto link = makeLink();
    link->watch(4, &countInterest);
    link->linkOpParm("lxform", 4, "group");
    link->setOwnerOp("../c");
    HostNode *c = make("lxform", "/obj/c");
    link->attach(*a);
    link->attach(*b);
    EXPECT_EQ(parm(c, "group")->getNumInputInterests(), 1);
    ASSERT_TRUE(myDirector.deleteNode(c));
    ASSERT_TRUE(myDirector.deleteNode(b));
    EXPECT_EQ(link->getNumOps(), 1);
    link->detach(*a);
    EXPECT_TRUE(link->getInputGroupInterestNames().empty());
    link->attach(*a);
    myDirector.clearScene(); // deletes every node, sending their events
    EXPECT_EQ(link->getKeyframeNumOps(), 0);
}
