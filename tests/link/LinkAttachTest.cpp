// Tests of attaching nodes, op numbers, node events, locked parts, commands and settings.
#include "gz_LinkTestEnv.h"

#include "host/HostCommandArgs.h"
#include "link/GZ_SettingList.h"

#include <sstream>

using gztest::LinkFixture;
using gztest::TestLink;

namespace
{

/// Runs the bind command on `link` with the node path and pairs in `words`; returns what the
/// command wrote to its error stream.
std::string runBind(TestLink &link, std::vector<std::string> words)
{
    std::ostringstream out, err;
    words.insert(words.begin(), {"pomattach", "h"});
    HostCommandArgs args(words, out, err);
    EXPECT_EQ(link.runBindCommand(args), 1);
    return err.str();
}

std::string runUnbind(TestLink &link, std::vector<std::string> words)
{
    std::ostringstream out, err;
    words.insert(words.begin(), {"pomdetach", "h"});
    HostCommandArgs args(words, out, err);
    args.setUsage("pomdetach NAME [PATH]");
    EXPECT_EQ(link.runUnbindCommand(args), 1);
    return err.str();
}

std::string options(const TestLink &link, const char *prefix = "P")
{
    std::ostringstream os;
    EXPECT_EQ(link.writeOptions(os, prefix), 1);
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

TEST_F(LinkFixture, AttachingAndDetachingShiftsOpNumbers)
{
    HostNode *a = make("lxform", "/obj/a");
    HostNode *b = make("lxform", "/obj/b");
    auto link = makeLink();

    EXPECT_EQ(runBind(*link, {"/obj/a", "tx:tx"}), "");
    EXPECT_EQ(runBind(*link, {"/obj/b", "ty:ty"}), "");
    ASSERT_EQ(link->getNumOps(), 2);
    EXPECT_EQ(link->getOpnumForHandleParmIndex(0), 0);
    EXPECT_EQ(link->getOpnumForHandleParmIndex(1), 1);
    EXPECT_EQ(link->getOpnumForHandleParmIndex(5), -1);
    EXPECT_EQ(options(*link), "P /obj/a tx:tx\nP /obj/b ty:ty\n");
    EXPECT_EQ(link->attach(*a), -1);
    EXPECT_EQ(link->getNumOps(), 2);
    EXPECT_EQ(link->getKeyframeNumOps(), 2);

    EXPECT_EQ(link->detach(*a), 0);
    EXPECT_EQ(link->getOpnumForHandleParmIndex(1), 0);
    EXPECT_EQ(link->getOpNode(0), b);
    EXPECT_EQ(link->getOpNode(1), nullptr);
    EXPECT_FALSE(watches(a, link.get()));
    EXPECT_TRUE(watches(b, link.get()));
    // Bindings live per operator type, so b's list holds both.
    EXPECT_EQ(options(*link), "P /obj/b tx:tx ty:ty\n");
    EXPECT_EQ(link->detach(*a), -1);

    link->detachAll();
    EXPECT_EQ(link->getNumOps(), 0);
    EXPECT_FALSE(link->hasLinkedParms());
    EXPECT_FALSE(watches(b, link.get()));
    EXPECT_EQ(options(*link), "");
}

TEST_F(LinkFixture, LinkingStoresBindingsPerOperatorType)
{
    HostNode *a = make("lxform", "/obj/a");
    HostNode *box = make("lbox", "/obj/box");
    auto link = makeLink();

    EXPECT_EQ(link->linkOpParm("lxform", 0, "tx"), 1);
    EXPECT_EQ(link->linkOpParm("lxform", 1, "!3*2"), 1);
    EXPECT_EQ(link->linkOpParmToHandleParm("lxform", "tz", "{2,0,0,1,tz}"), 1);
    EXPECT_EQ(link->linkOpParmToHandleParm("lxform", "nosuch", "tx"), 0);
    EXPECT_EQ(link->myLinked, (std::vector<int>{0, 2}));
    EXPECT_EQ(link->getOpnumForHandleParmIndex(1), 0);

    link->attach(*a);
    link->attach(*box);
    EXPECT_EQ(link->allParmNames(0),
              (GZ_OpHandleLink::StringArray{"tx", "!3*2", "{2,0,0,1,tz}", "", ""}));
    EXPECT_EQ(link->allParmNames(1), GZ_OpHandleLink::StringArray(5));
    EXPECT_TRUE(link->allParmNames(7).empty());
    EXPECT_EQ(link->getLinkedParmCount(), 2);

    // Bindings outlive a detach and come back with the node.
    link->detach(*a);
    link->attach(*a);
    EXPECT_EQ(link->allParmNames(1)[2], "{2,0,0,1,tz}");

    EXPECT_EQ(link->findOpNode(0, "lbox"), box);
    EXPECT_EQ(link->findOpNode(1, "lbox"), nullptr);
    EXPECT_EQ(link->refreshBindings(0, "lxform"), 0);
    EXPECT_EQ(link->refreshBindings(0, "other"), 1);
    EXPECT_EQ(link->lastSettingsOperatorTypeRestriction(), nullptr); // two nodes

    link->clearOpTypeParmNamesMap();
    link->detachAll();
    link->attach(*a);
    EXPECT_EQ(link->allParmNames(0), GZ_OpHandleLink::StringArray(5));
    EXPECT_EQ(link->lastSettingsOperatorTypeRestriction(), myXform);
    link->setAllowUsingOpTypeSettings(false);
    EXPECT_EQ(link->lastSettingsOperatorTypeRestriction(), nullptr);
}

TEST_F(LinkFixture, NodeEventsDetachAndDescribe)
{
    HostNode *a = make("lxform", "/obj/a");
    HostNode *b = make("lxform", "/obj/b");
    HostNode *c = make("lbox", "/obj/c");
    auto link = makeLink();
    EXPECT_EQ(link->getDescription(), "");
    link->attach(*a);
    EXPECT_EQ(link->getDescription(), "ltest: /obj/a");
    link->attach(*b);
    link->attachForKeyframe(*c);
    EXPECT_EQ(link->getKeyframeNumOps(), 3);
    EXPECT_EQ(link->getNumOps(), 2);

    ASSERT_TRUE(myDirector.deleteNode(a));
    EXPECT_EQ(link->getNumOps(), 1);
    EXPECT_EQ(link->getOpNode(0), b);
    EXPECT_EQ(link->getKeyframeNumOps(), 2);
    EXPECT_EQ(link->getDescription(), "ltest: /obj/b");
    EXPECT_EQ(link->myUpdates, 1); // nodes remain, so the handle re-reads its values

    ASSERT_TRUE(myDirector.deleteNode(c));
    EXPECT_EQ(link->getKeyframeNumOps(), 1);
    EXPECT_EQ(link->getNumOps(), 1);
    EXPECT_EQ(link->myUpdates, 2);

    // A rename changes nothing until the description is rebuilt.
    ASSERT_TRUE(myDirector.renameNode(b, "bee"));
    EXPECT_EQ(link->getDescription(), "ltest: /obj/b");
    EXPECT_TRUE(link->hasOpNode(*b));
    link->buildDescription();
    EXPECT_EQ(link->getDescription(), "ltest: /obj/bee");

    ASSERT_TRUE(myDirector.deleteNode(b));
    EXPECT_EQ(link->getNumOps(), 0);
    EXPECT_EQ(link->getKeyframeNumOps(), 0);
    EXPECT_EQ(link->myUpdates, 2);
    EXPECT_EQ(link->getDescription(), "ltest");
    EXPECT_EQ(link->myDescriptionChanges.back(), "ltest: /obj/bee");

    HostNode *d = make("lbox", "/obj/d");
    link->setShowOpPath(false);
    link->attach(*d);
    EXPECT_EQ(link->getDescription(), "ltest");
    link->setRootDescription("mover");
    EXPECT_EQ(link->getDescription(), "mover");
}

TEST_F(LinkFixture, LockedPartsAreHidden)
{
    HostNode *a = make("lxform", "/obj/a");
    HostNode *b = make("lxform", "/obj/b");
    int k = -1;
    HostParm *t = parm(a, "ty", k);
    t->setLocked(1, true);
    auto link = makeLink();
    link->linkOpParm("lxform", 0, "tx");
    link->linkOpParm("lxform", 1, "ty");
    link->linkOpParm("lxform", 2, "{2,0,0,1,tz}");
    link->linkOpParm("lxform", 3, "!1");

    link->myUnlinked.clear();
    link->attach(*a);
    EXPECT_EQ(link->myUnlinked, std::vector<int>{1});

    link->detach(*a);
    GZ_ResourceManager::setHideLockedHandleParts(false);
    link->myUnlinked.clear();
    link->attach(*a);
    EXPECT_TRUE(link->myUnlinked.empty());
    link->handleOpNodeChange(*a);
    EXPECT_TRUE(link->myUnlinked.empty());

    // Unlocking and locking again reach the handle through node changes.
    GZ_ResourceManager::setHideLockedHandleParts(true);
    t->setLocked(1, false);
    t->setLocked(2, true);
    link->myLinked.clear();
    link->handleOpNodeChange(*a);
    EXPECT_EQ(link->myLinked, (std::vector<int>{1, 0}));
    EXPECT_EQ(link->myUnlinked, std::vector<int>{2});

    // A component that refers to a channel of a node the handle may not write is locked too.
    t->setLocked(2, false);
    t->setExpression(0, "ch(\"../b/tx\")");
    b->setPermissions(0444);
    HostParm *found_parm = nullptr;
    HostNode *found_node = nullptr;
    EXPECT_TRUE(GZ_OpHandleLink::isOpParmLocked("tx", *a, 0.0, &found_parm, &found_node));
    EXPECT_EQ(found_node, b);
    EXPECT_EQ(found_parm, parm(b, "tx", k));
    EXPECT_FALSE(GZ_OpHandleLink::isOpParmLocked("ty", *a, 0.0));
    EXPECT_FALSE(GZ_OpHandleLink::isOpParmLocked("nosuch", *a, 0.0, &found_parm, &found_node));
    EXPECT_EQ(found_parm, nullptr);
    EXPECT_EQ(found_node, nullptr);
    link->myUnlinked.clear();
    link->handleOpNodeChange(*a);
    EXPECT_EQ(link->myUnlinked, std::vector<int>{0});
}

TEST_F(LinkFixture, BindCommandRoundTripsWriteOptions)
{
    make("lxform", "/obj/geo1");
    auto link = makeLink();
    EXPECT_EQ(runBind(*link, {"/obj/geo1", "t1:tx", "!2*3:ty", "{2,0,0,1,tz}:tz"}), "");
    const std::string written = options(*link);
    EXPECT_EQ(written, "P /obj/geo1 t1:tx !2*3:ty {2,0,0,1,tz}:tz\n");
    EXPECT_EQ(link->myLinked, (std::vector<int>{0, 2}));

    // The written words restore the same bindings in another link.
    std::istringstream words(written);
    std::vector<std::string> args;
    for (std::string word; words >> word;)
        args.push_back(word);
    auto copy = makeLink();
    runBind(*copy, std::vector<std::string>(args.begin() + 1, args.end()));
    EXPECT_EQ(options(*copy), written);

    // Binding the node again replaces its bindings.
    EXPECT_EQ(runBind(*link, {"/obj/geo1", "tx:tx"}), "");
    EXPECT_EQ(options(*link), "P /obj/geo1 tx:tx\n");

    EXPECT_EQ(runBind(*link, {"/obj/geo1", "tx", "ty:", "t:nosuch", "ty:ty"}),
              "Bad parameter pair: tx\nBad parameter pair: ty:\n"
              "Unknown handle parameter: nosuch\n");
    EXPECT_EQ(link->getNumOps(), 1);
    EXPECT_EQ(options(*link), "P /obj/geo1 ty:ty\n");

    EXPECT_EQ(runBind(*link, {"/obj/none", "tx:tx"}), "Unknown operator: /obj/none\n");
    EXPECT_EQ(link->getNumOps(), 1);
}

TEST_F(LinkFixture, UnbindCommandDetaches)
{
    make("lxform", "/obj/a");
    make("lxform", "/obj/b");
    auto link = makeLink();
    runBind(*link, {"/obj/a", "tx:tx"});
    runBind(*link, {"/obj/b", "ty:ty"});

    EXPECT_EQ(runUnbind(*link, {"/obj/zz"}), "Unknown operator: /obj/zz\n");
    EXPECT_EQ(runUnbind(*link, {"/obj/a"}), "");
    EXPECT_EQ(link->getNumOps(), 1);
    EXPECT_EQ(runUnbind(*link, {"/obj/a", "extra"}), "Usage: pomdetach NAME [PATH]\n");
    EXPECT_EQ(link->getNumOps(), 1);
    EXPECT_EQ(runUnbind(*link, {}), "");
    EXPECT_EQ(link->getNumOps(), 0);
}

TEST_F(LinkFixture, EqualityAndCopying)
{
    HostNode *a = make("lxform", "/obj/a");
    make("lbox", "/obj/b");
    auto link = makeLink();
    link->id(7);
    link->setActiveColor(HostColor(HostColor::RGB, 0, 1, 0));
    runBind(*link, {"/obj/a", "tx:tx", "{2,0,0,1,ty}:ty"});
    runBind(*link, {"/obj/b", "tz:tz"});

    auto copy = makeLink();
    EXPECT_EQ(copy->isEqual(*link), 0);
    EXPECT_EQ(copy->setEqual(*link), 1);
    EXPECT_EQ(copy->isEqual(*link), 1);
    EXPECT_EQ(link->isEqual(*copy), 1);
    EXPECT_EQ(copy->id(), 7);
    EXPECT_EQ(copy->getActiveColor(), link->getActiveColor());
    EXPECT_EQ(options(*copy), options(*link));

    copy->linkOpParm("lxform", 0, "rx");
    copy->detach(*a);
    copy->attach(*a);
    EXPECT_EQ(copy->isEqual(*link), 0);
    copy->id(8);
    EXPECT_EQ(copy->setEqual(*link), 1);
    EXPECT_EQ(copy->id(), 7);

    const char *names[] = {"tx", "ty", "tz", "uniform", "group", nullptr};
    GZ_GZTemplate other("lother", "Other", "obj", "", names, 0, ~0u, false);
    TestLink stranger(other);
    EXPECT_EQ(stranger.setEqual(*link), 0);
    EXPECT_EQ(stranger.isEqual(*link), 0);
}

TEST_F(LinkFixture, SettingsOfALink)
{
    make("lxform", "/obj/a");
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

    auto other = makeLink();
    GZ_SettingList list;
    list.loadFromSettingString("showoppath(0) color(0 0 1) ownerop('../b')");
    other->loadSettings(list);
    EXPECT_FALSE(other->getShowOpPath());
    EXPECT_EQ(other->getActiveColor(), HostColor(HostColor::RGB, 0, 0, 1));
    EXPECT_EQ(other->getOwnerOp(), "../b");
    EXPECT_EQ(other->getOwnerOpGroup(), "");
    EXPECT_EQ(settingsText(*other), "showoppath(0) color(0 0 1) ownerop('../b')");

    // Only settings the handle already has take new values.
    other->updateSettings("color(0.5 0.5 0.5) showoppath(1) owneropgroup('g') bogus(1)");
    EXPECT_EQ(settingsText(*other), "color(0.5 0.5 0.5) ownerop('../b')");
    other->updateSettings(nullptr);
    EXPECT_EQ(settingsText(*other), "color(0.5 0.5 0.5) ownerop('../b')");

    // Loading an empty list brings the defaults back.
    other->loadSettings(GZ_SettingList());
    EXPECT_EQ(settingsText(*other), "");
    EXPECT_EQ(other->getActiveColor(), GZ_OpHandleLink::getDefaultColor());

    // The owner op redirects bindings to another node.
    auto owned = makeLink();
    owned->setOwnerOp("../b");
    EXPECT_EQ(owned->getOwnerOpRelativeTo(link->getOpNode(0)), nullptr);
    EXPECT_EQ(owned->getOwnerOpRelativeTo(myDirector.findNode("/obj/a")), b);
    owned->setOwnerOp("");
    EXPECT_EQ(owned->getOwnerOpRelativeTo(b), b);
}

TEST_F(LinkFixture, InputGroupInterestsFollowTheNodes)
{
    HostNode *a = make("lxform", "/obj/a");
    HostNode *b = make("lxform", "/obj/b");
    int k = -1;
    HostParm *group_a = parm(a, "group", k);
    HostParm *group_b = parm(b, "group", k);
    theInterestCalls = 0;
    {
        auto link = makeLink();
        link->watch(4, &countInterest);
        link->linkOpParm("lxform", 4, "group");
        link->attach(*a);
        EXPECT_EQ(group_a->getNumInputInterests(), 1);
        EXPECT_EQ(link->getFirstInputGroupInterestName(), "group");
        EXPECT_EQ(theInterestCalls, 1); // the node brings its groups up to date
        a->setParmString(*group_a, 0, "pts");
        EXPECT_EQ(theInterestCalls, 2);

        // Moving the owner re-registers on the owner's group.
        GZ_SettingList list;
        list.loadFromSettingString("ownerop('../b')");
        link->loadSettings(list);
        EXPECT_EQ(group_a->getNumInputInterests(), 0);
        EXPECT_EQ(group_b->getNumInputInterests(), 1);
        // Interests are removed where they were made even after the owner path changed.
        link->setOwnerOp("");
        link->detach(*a);
        EXPECT_EQ(group_b->getNumInputInterests(), 0);
        EXPECT_TRUE(link->getInputGroupInterestNames().empty());

        link->attach(*a);
        EXPECT_EQ(group_a->getNumInputInterests(), 1);
    }
    // The destroyed link left nothing behind.
    EXPECT_EQ(group_a->getNumInputInterests(), 0);
    EXPECT_EQ(a->getNumEventCallbacks(), 0);
    const int calls = theInterestCalls;
    a->setParmString(*group_a, 0, "prims");
    EXPECT_EQ(theInterestCalls, calls);

    // Without a binding and without an owner group nothing is registered.
    auto bare = makeLink();
    bare->watch(4, &countInterest);
    bare->attach(*b);
    EXPECT_EQ(group_b->getNumInputInterests(), 0);
    EXPECT_EQ(bare->addInputGroupInterest(4, &countInterest, 0), 0);
    bare->setOwnerOpGroup("group");
    EXPECT_EQ(bare->addInputGroupInterest(4, &countInterest, 0), 1);
    EXPECT_EQ(group_b->getNumInputInterests(), 1);
    EXPECT_EQ(bare->addInputGroupInterest(4, &countInterest, 3), 1); // no such node
}

TEST_F(LinkFixture, DestroyAndDeleteInAnyOrder)
{
    HostNode *a = make("lxform", "/obj/a");
    HostNode *b = make("lxform", "/obj/b");
    HostNode *c = make("lbox", "/obj/c");
    int k = -1;
    HostParm *group_b = parm(b, "group", k);
    {
        auto link = makeLink();
        link->attach(*a);
        link->attachForKeyframe(*c);
        EXPECT_TRUE(watches(a, link.get()));
        EXPECT_TRUE(watches(c, link.get()));
    }
    EXPECT_EQ(a->getNumEventCallbacks(), 0);
    EXPECT_EQ(c->getNumEventCallbacks(), 0);

    // The node goes first, then the link.
    auto link = makeLink();
    link->watch(4, &countInterest);
    link->linkOpParm("lxform", 4, "group");
    link->attach(*b);
    EXPECT_EQ(group_b->getNumInputInterests(), 1);
    link->attach(*a);
    ASSERT_TRUE(myDirector.deleteNode(b));
    EXPECT_EQ(link->getNumOps(), 1);
    link.reset();
    EXPECT_EQ(a->getNumEventCallbacks(), 0);

    // The owner node of an interest goes while the link stays.
    auto owned = makeLink();
    owned->watch(4, &countInterest);
    owned->linkOpParm("lxform", 4, "group");
    owned->setOwnerOp("../c2");
    HostNode *c2 = make("lxform", "/obj/c2");
    owned->attach(*a);
    EXPECT_EQ(parm(c2, "group", k)->getNumInputInterests(), 1);
    ASSERT_TRUE(myDirector.deleteNode(c2));
    owned->detach(*a);
    EXPECT_TRUE(owned->getInputGroupInterestNames().empty());
    owned->attach(*a);
    myDirector.clearScene(); // deletes every node, sending their events
    EXPECT_EQ(owned->getNumOps(), 0);
    EXPECT_EQ(owned->getKeyframeNumOps(), 0);
}

TEST_F(LinkFixture, IsolatingAndBindingState)
{
    HostNode *a = make("lxform", "/obj/a");
    HostNode *b = make("lxform", "/obj/b");
    auto link = makeLink();
    link->isolateHandleParms(1, {"tx", "ty", "group"});
    EXPECT_EQ(link->myUnlinked, (std::vector<int>{0, 2, 3}));

    int k = -1;
    HostParm *t = parm(a, "tx", k);
    parm(a, "tz", k)->setExpression(2, "ch(\"../b/tz\")");
    link->linkOpParm("lxform", 0, "tx");
    link->linkOpParm("lxform", 2, "tz");
    link->linkOpParm("lxform", 3, "!1");
    link->linkOpParm("lxform", 4, "nosuch");
    link->attach(*a);
    link->setBindingState(true);
    EXPECT_TRUE(t->isActive(0));
    EXPECT_FALSE(t->isActive(1));
    EXPECT_FALSE(t->isActive(2));               // the reference is followed...
    EXPECT_TRUE(parm(b, "tz", k)->isActive(2)); // ...to the component that is driven
    link->setBindingState(false);
    EXPECT_FALSE(t->isActive(0));
    EXPECT_FALSE(parm(b, "tz", k)->isActive(2));
}
