// Tests of nodes, networks and the director: creation, lookup, events, rename, delete.
#include "HostFixture.h"

#include "host/HostNetwork.h"

#include <sstream>
#include <string>
#include <tuple>
#include <vector>

namespace
{
struct EventLog
{
    std::vector<std::string> myEvents;
    HostNode *myRemoveOnEvent = nullptr;          ///< removes its own callback from this node
    std::vector<const void *> *myOrder = nullptr; ///< where calls are recorded in order
};

void logEvent(HostNode *node, void *callee, HostNodeEvent event, void *data)
{
    auto *log = static_cast<EventLog *>(callee);
    std::string text = node->getName() + ":" + std::to_string(event);
    if (event == HOST_NODE_RENAMED)
        text += ":" + std::string(static_cast<const char *>(data));
    if (event == HOST_NODE_PARM_CHANGED)
        text += ":" + static_cast<HostParm *>(data)->getName();
    log->myEvents.push_back(text);
    if (log->myOrder)
        log->myOrder->push_back(callee);
    if (log->myRemoveOnEvent == node)
        node->removeEventCallback(callee, logEvent);
}
} // namespace

using HostNodeCreation = HostFixture;

TEST_F(HostNodeCreation, CreatesNodesAtFullPathsAndRefusesBadOnes)
{
    HostNode *geo = make("tgeo", "/obj/geo1");
    ASSERT_NE(geo, nullptr);
    EXPECT_EQ(std::tuple(geo->getFullPath(), geo->getOperatorName(), geo->getNetworkTypeId()),
              std::tuple("/obj/geo1", "tgeo", HOST_NETWORK_OBJECT));
    ASSERT_NE(geo->getChildNetwork(), nullptr);

    HostNode *box = make("tbox", "/obj/geo1/box1");
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->getFullPath(), "/obj/geo1/box1");
    EXPECT_EQ(box->getNetworkTypeId(), HOST_NETWORK_SOP);

    // Wrong table for the parent network, missing parent, duplicate, bad name, no children,
    // relative path (the messages are in the shell_nodes scenario). Rows: type, path.
    std::string error;
    const std::pair<const char *, const char *> refused[] = {
        {"tbox", "/obj/box2"},     {"tbox", "/obj/nothere/box1"}, {"tgeo", "/obj/geo1"},
        {"tgeo", "/obj/bad name"}, {"tbox", "/obj/geo1/box1/x"},  {"tgeo", "obj/geo3"}};
    for (const auto &[type, path] : refused)
        EXPECT_EQ(myDirector.createNode(type, path, &error), nullptr) << path;

    // Unnamed nodes get the type name and a free number.
    HostNetwork *obj = myDirector.findNode("/obj")->getChildNetwork();
    EXPECT_EQ(obj->createNode("tnull", "")->getName(), "tnull1");
    EXPECT_EQ(obj->createNode("tnull", "")->getName(), "tnull2");
    EXPECT_EQ(obj->getFreeName("geo1"), "geo2");
    EXPECT_EQ(obj->getFreeName("geo7"), "geo7");
}

TEST_F(HostNodeCreation, FindsNodesByPathRelativePathAndId)
{
    HostNode *geo1 = make("tgeo", "/obj/geo1");
    HostNode *geo2 = make("tgeo", "/obj/geo2");
    HostNode *box = make("tbox", "/obj/geo1/box1");

    HostNode *root = myDirector.getRoot(); // rows: from, path, found
    const std::tuple<HostNode *, const char *, HostNode *> finds[] = {
        {root, "/obj/geo1/box1", box}, {root, "/obj/geo1/", geo1}, {root, "/", root},
        {root, "/obj/geo9", nullptr},  {root, "obj/geo2", geo2},   {box, "..", geo1},
        {box, "../../geo2", geo2},     {geo1, "box1", box},        {geo1, "./box1", box},
        {geo1, "../geo2", geo2},       {geo1, "../../..", nullptr}};
    for (const auto &[from, path, found] : finds)
        EXPECT_EQ(from == root ? myDirector.findNode(path) : from->findNode(path), found) << path;
    EXPECT_EQ(myDirector.findNode("../geo2", geo1), geo2);

    EXPECT_EQ(box->getRelativePathTo(*geo2), "../../geo2");
    EXPECT_EQ(geo1->getRelativePathTo(*box), "box1");
    EXPECT_EQ(box->getRelativePathTo(*box), ".");
    EXPECT_EQ(box->findNode(box->getRelativePathTo(*geo2)), geo2);

    EXPECT_EQ(myDirector.findNodeById(box->getUniqueId()), box);
    EXPECT_NE(geo1->getUniqueId(), geo2->getUniqueId());
}

TEST_F(HostNodeCreation, UniqueIdsAreNeverReused)
{
    HostNode *a = make("tgeo", "/obj/a");
    const int first = a->getUniqueId();
    ASSERT_TRUE(myDirector.deleteNode(a));
    EXPECT_EQ(myDirector.findNodeById(first), nullptr);
    HostNode *b = make("tgeo", "/obj/a");
    EXPECT_GT(b->getUniqueId(), first);
    myDirector.clearScene();
    HostNode *c = make("tgeo", "/obj/a");
    EXPECT_GT(c->getUniqueId(), first + 1);
}

TEST_F(HostNodeCreation, DeleteSendsDeletedToChildrenFirstAndClearsCurrent)
{
    HostNode *geo = make("tgeo", "/obj/geo1");
    HostNode *box = make("tbox", "/obj/geo1/box1");
    EventLog log;
    geo->addEventCallback(&log, logEvent);
    box->addEventCallback(&log, logEvent);
    myDirector.setCurrentNode(box);
    const int box_id = box->getUniqueId();

    EXPECT_FALSE(myDirector.deleteNode(myDirector.findNode("/obj")));
    EXPECT_TRUE(myDirector.deleteNode(geo));
    EXPECT_EQ(log.myEvents, (std::vector<std::string>{"box1:2", "geo1:2"}));
    EXPECT_EQ(myDirector.findNode("/obj/geo1"), nullptr);
    EXPECT_EQ(myDirector.findNodeById(box_id), nullptr);
    EXPECT_EQ(myDirector.getCurrentNode(), nullptr);
}

TEST_F(HostNodeCreation, RenameSendsOldNameAndKeepsLookupsInStep)
{
    HostNode *geo = make("tgeo", "/obj/geo1");
    make("tgeo", "/obj/geo2");
    EventLog log;
    geo->addEventCallback(&log, logEvent);

    std::string error;
    EXPECT_FALSE(myDirector.renameNode(geo, "geo2", &error));
    EXPECT_FALSE(myDirector.renameNode(geo, "", &error));
    EXPECT_TRUE(myDirector.renameNode(geo, "geo1", &error)); // same name: nothing happens
    EXPECT_TRUE(log.myEvents.empty());

    EXPECT_TRUE(myDirector.renameNode(geo, "main"));
    EXPECT_EQ(log.myEvents, (std::vector<std::string>{"main:3:geo1"}));
    EXPECT_EQ(myDirector.findNode("/obj/main"), geo);
    EXPECT_EQ(myDirector.findNode("/obj/geo1"), nullptr);
    EXPECT_EQ(geo->getFullPath(), "/obj/main");
    myDirector.clearScene(); // the local listeners die before TearDown
}

TEST_F(HostNodeCreation, CallbacksAreUniqueAndMayRemoveThemselvesWhileCalled)
{
    HostNode *geo = make("tgeo", "/obj/geo1");
    EventLog first, second;
    geo->addEventCallback(&first, logEvent);
    geo->addEventCallback(&first, logEvent);
    geo->addEventCallback(&second, logEvent);
    EXPECT_EQ(geo->getNumEventCallbacks(), 2);

    first.myRemoveOnEvent = geo;
    geo->sendEvent(HOST_NODE_DATA_CHANGED);
    geo->sendEvent(HOST_NODE_FLAG_CHANGED);
    EXPECT_EQ(first.myEvents, (std::vector<std::string>{"geo1:17"}));
    EXPECT_EQ(second.myEvents, (std::vector<std::string>{"geo1:17", "geo1:12"}));
    EXPECT_FALSE(geo->hasEventCallback(&first, logEvent));
    EXPECT_EQ(geo->getNumEventCallbacks(), 1);

    geo->setFlag(HostNode::FLAG_DISPLAY, true);
    geo->setFlag(HostNode::FLAG_DISPLAY, true); // unchanged: no event
    EXPECT_EQ(second.myEvents.size(), 3u);
    myDirector.clearScene(); // the local listeners die before TearDown
}

TEST_F(HostNodeCreation, ManyCallbacksKeepTheirOrderThroughRemovals)
{
    // Enough watchers that the node indexes them; half remove themselves while called.
    HostNode *geo = make("tgeo", "/obj/geo1");
    std::vector<EventLog> logs(40);
    std::vector<const void *> order, expected;
    for (EventLog &log : logs)
    {
        geo->addEventCallback(&log, logEvent);
        geo->addEventCallback(&log, logEvent);
        log.myOrder = &order;
    }
    for (size_t i = 0; i < logs.size(); i += 2)
        logs[i].myRemoveOnEvent = geo;
    geo->sendEvent(HOST_NODE_DATA_CHANGED);
    EXPECT_EQ(order.size(), 40u);
    order.clear();
    // Registered again, a removed watcher comes last.
    logs[0].myRemoveOnEvent = nullptr;
    geo->addEventCallback(&logs[0], logEvent);
    geo->sendEvent(HOST_NODE_FLAG_CHANGED);
    for (size_t i = 1; i < logs.size(); i += 2)
        expected.push_back(&logs[i]);
    expected.push_back(&logs[0]);
    EXPECT_EQ(order, expected);
    for (size_t i = 1; i < logs.size(); ++i)
        EXPECT_EQ(geo->hasEventCallback(&logs[i], logEvent), i % 2 == 1) << i;
    for (size_t i = 1; i < logs.size(); i += 2)
        geo->removeEventCallback(&logs[i], logEvent);
    EXPECT_EQ(geo->getNumEventCallbacks(), 1);
    order.clear();
    geo->sendEvent(HOST_NODE_DATA_CHANGED);
    EXPECT_EQ(order, std::vector<const void *>{&logs[0]});
    myDirector.clearScene();
}

TEST_F(HostNodeCreation, ParmWritesNotifyAndRespectLocksAndAccess)
{
    HostNode *geo = make("tgeo", "/obj/geo1");
    EventLog log;
    geo->addEventCallback(&log, logEvent);
    HostParm *t = geo->getParm("t");
    ASSERT_NE(t, nullptr);

    EXPECT_TRUE(geo->setParmValue(*t, 1, 2.5));
    EXPECT_EQ(t->getValue(1), 2.5);
    EXPECT_EQ(log.myEvents, (std::vector<std::string>{"geo1:11:t"}));

    t->setLocked(1, true);
    EXPECT_FALSE(geo->setParmValue(*t, 1, 3.0));
    EXPECT_TRUE(geo->setParmValue(*t, 0, 3.0));
    t->setEnabled(2, false);
    EXPECT_FALSE(geo->setParmValue(*t, 2, 3.0));
    geo->setPermissions(0755);
    EXPECT_FALSE(geo->canAccess(HostNode::ACCESS_WRITE, *t));
    EXPECT_FALSE(geo->setParmValue(*t, 0, 4.0));
    EXPECT_EQ(std::tuple(t->getValue(0), t->getValue(1)), std::tuple(3.0, 2.5));
    EXPECT_EQ(geo->getNumParmChanges(), 2);
    myDirector.clearScene(); // the local listeners die before TearDown
}

TEST_F(HostNodeCreation, DirectorsAreIndependentAndOneIsCurrent)
{
    make("tgeo", "/obj/geo1");
    {
        HostDirector other;
        EXPECT_EQ(HostDirector::instance(), &myDirector);
        other.makeCurrent();
        EXPECT_EQ(HostDirector::instance(), &other);
        EXPECT_EQ(other.findNode("/obj/geo1"), nullptr);
        EXPECT_NE(other.findNode("/obj"), nullptr);
        myDirector.makeCurrent();
    }
    EXPECT_EQ(HostDirector::instance(), &myDirector);
    EXPECT_NE(myDirector.findNode("/obj/geo1"), nullptr);
}

namespace
{
HostErrorSeverity writeScene(std::ostream &os)
{
    os << "scene\n";
    return HOST_ERR_WARNING;
}
} // namespace

TEST_F(HostNodeCreation, DirectorKeepsTimeProxiesAndTheSaveCallback)
{
    myDirector.setFps(25.0);
    myDirector.setFps(0.0); // refused
    EXPECT_EQ(std::tuple(myDirector.getFps(), myDirector.timeToFrame(0.0)), std::tuple(25.0, 1.0));
    EXPECT_EQ(myDirector.timeToFrame(1.0), 26.0);
    EXPECT_EQ(myDirector.frameToTime(51.0), 2.0);

    int a = 0, b = 0;
    const int pa = myDirector.allocProxy(&a);
    const int pb = myDirector.allocProxy(&b);
    EXPECT_EQ(myDirector.getProxy(pb), &b);
    myDirector.freeProxy(pa);
    EXPECT_EQ(myDirector.getProxy(pa), nullptr);
    EXPECT_NE(myDirector.allocProxy(&a), pa); // a freed index is not handed out again
    myDirector.clearScene();
    EXPECT_EQ(myDirector.getProxy(pb), nullptr);

    std::ostringstream os;
    EXPECT_EQ(myDirector.runSaveCallback(os), HOST_ERR_NONE);
    myDirector.setSaveCallback(writeScene);
    EXPECT_EQ(myDirector.runSaveCallback(os), HOST_ERR_WARNING);
    EXPECT_EQ(os.str(), "scene\n");
    myDirector.setLoading(true);
    myDirector.clearScene();
    EXPECT_FALSE(myDirector.isLoading());
    EXPECT_EQ(myDirector.getSaveCallback(), &writeScene); // installed once by the library
}
