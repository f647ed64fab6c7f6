// Undo re-creates deleted nodes with their old unique ids and places in the network.
#include "HostFixture.h"

#include "host/HostNetwork.h"

using HostNodeRecreation = HostFixture;

TEST_F(HostNodeRecreation, ReusesOnlyFreedIdsAndPlacesTheNode)
{
    HostNode *a = make("tnull", "/obj/a");
    HostNode *b = make("tnull", "/obj/b");
    make("tnull", "/obj/c");
    const int freed = b->getUniqueId();
    ASSERT_TRUE(myDirector.deleteNode(b));

    HostNode *back = myDirector.createNode("tnull", "/obj/b", nullptr, freed, 1);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->getUniqueId(), freed);
    EXPECT_EQ(myDirector.findNodeById(freed), back);
    HostNetwork *obj = myDirector.findNode("/obj")->getChildNetwork();
    ASSERT_EQ(obj->getNumNodes(), 3);
    EXPECT_EQ(std::tuple(obj->getNode(1), obj->getNode(2)->getName()), std::tuple(back, "c"));

    // A live id, an id never handed out and a position out of range give the usual node.
    HostNode *d = myDirector.createNode("tnull", "/obj/d", nullptr, a->getUniqueId(), 99);
    ASSERT_NE(d, nullptr);
    EXPECT_NE(d->getUniqueId(), a->getUniqueId());
    EXPECT_EQ(obj->getNode(3), d);
    HostNode *e = myDirector.createNode("tnull", "/obj/e", nullptr, 1 << 30);
    ASSERT_NE(e, nullptr);
    EXPECT_NE(e->getUniqueId(), 1 << 30);
    EXPECT_EQ(myDirector.findNodeById(a->getUniqueId()), a);
}
