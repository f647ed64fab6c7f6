// The manager follows operator tables and operator types: automatic states on table changes,
// renamed and deleted operator types, and the bindings of scripted definitions.
#include "gz_ResourceTestEnv.h"

#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_SelectorTemplate.h"
#include "resource/GZ_StateTemplate.h"

#include <memory>
#include <string>
#include <vector>

namespace
{

/// Records the automatic-state requests; states named "tmscripted" count as scripted ones.
class MonitoringManager : public gztest::ScratchManager
{
public:
    using GZ_ResourceManager::ensureTableInterestExists;
    bool isRegisteredViewerState(const char *name) const override
    {
        return std::string(name) == "tmscripted";
    }
    std::vector<GZ_NetworkType> myCalls;

protected:
    void addAutomaticStates(GZ_NetworkType type) override { myCalls.push_back(type); }
};

GZ_StateTemplate *makeState(const std::string &name, GZ_ViewerType viewer, unsigned mask,
                            HostOperator *op)
{
    return new GZ_StateTemplate(name.c_str(), "Label", "ICON", nullptr, nullptr, viewer, mask, 0,
                                "", op);
}

HostOperatorTable *const theSop = HostOperatorTable::getTable(HOST_NETWORK_SOP);

} // namespace

TEST(TableMonitoring, OnlyWatchedTablesAskForAutomaticStates)
{
    MonitoringManager manager;
    manager.tableUpdated(theSop);
    manager.ensureStatesExistForAllOperators("Sop"); // the manager's names are "OBJ", "SOP", ...
    EXPECT_TRUE(manager.myCalls.empty());

    manager.ensureTableInterestExists(GZ_NETWORK_SOP, theSop);
    HostOperator *op = gztest::addOperator(HOST_NETWORK_SOP, "tmwatch");
    manager.ensureStatesExistForAllOperators("SOP");
    EXPECT_EQ(manager.myCalls, (std::vector<GZ_NetworkType>{GZ_NETWORK_SOP, GZ_NETWORK_SOP}));
    EXPECT_TRUE(theSop->deleteOperator(op->getName()));

    // A deleted table is forgotten: one made again under the same names is not watched.
    manager.myCalls.clear();
    manager.ensureTableInterestExists(GZ_NETWORK_DOP, HostOperatorTable::createTable("Tm", "TM"));
    EXPECT_TRUE(HostOperatorTable::destroyTable("Tm"));
    EXPECT_EQ(manager.getTableInterests(), std::vector<HostOperatorTable *>{theSop});
    manager.tableUpdated(HostOperatorTable::createTable("Tm", "TM"));
    EXPECT_TRUE(manager.myCalls.empty());
    EXPECT_TRUE(HostOperatorTable::destroyTable("Tm"));
}

TEST(TableMonitoring, RenamedOperatorRenamesItsStatesAndFreesTheOldName)
{
    MonitoringManager manager;
    HostOperator *op = gztest::addOperator(HOST_NETWORK_SOP, "tmmover");
    const std::string first = op->getName();
    ASSERT_TRUE(theSop->setLabelAndIcon(op, "Mover", "SOP_mover"));
    manager.addTemplatesInterest(op);

    HostParmTemplate parms[] = {HostParmTemplate(HOST_PARM_FLOAT, "size", "Size"),
                                HostParmTemplate()};
    GZ_StateTemplate scene(first.c_str(), "Old", "OLD", &manager, parms, GZ_VIEWER_SCENE, 0x02, 1,
                           "k", op);
    scene.setHidden(true);
    std::unique_ptr<GZ_StateTemplate> composite(makeState(first, GZ_VIEWER_COMPOSITE, 0x02, op));
    std::unique_ptr<GZ_StateTemplate> scripted(
        makeState("tmscripted", GZ_VIEWER_SCENEGRAPH, 0x02, op));
    for (GZ_StateTemplate *state : {&scene, composite.get(), scripted.get()})
        ASSERT_EQ(manager.registerState(state), 1);

    ASSERT_TRUE(theSop->renameOperator(op, gztest::uniqueName("tmshifter")));
    const std::string second = op->getName();
    EXPECT_EQ(std::tuple(scene.name(), composite->name()), std::tuple(second, second));
    EXPECT_EQ(scripted->name(), "tmscripted");
    EXPECT_TRUE(scene.englishName() == "Mover" && scene.getIconName() == "SOP_mover");
    // Everything that is the state's own stays.
    EXPECT_TRUE(scene.constructor() == &manager && scene.templates() == parms);
    EXPECT_TRUE(scene.opIndependent() == 1 && scene.volatileHotkey() == "k" && scene.getHidden());
    EXPECT_TRUE(manager.validStateTemplateName(first.c_str()));
    EXPECT_FALSE(manager.validStateTemplateName(second.c_str()));

    // While another state bears the old name, the name stays taken.
    std::unique_ptr<GZ_StateTemplate> other(makeState(second, GZ_VIEWER_SCENE, 0x01, nullptr));
    ASSERT_EQ(manager.registerState(other.get()), 1);
    ASSERT_TRUE(theSop->renameOperator(op, gztest::uniqueName("tmslider")));
    EXPECT_EQ(scene.name(), op->getName());
    EXPECT_FALSE(manager.validStateTemplateName(second.c_str()));

    manager.removeTemplatesInterest(op);
    EXPECT_TRUE(theSop->deleteOperator(op->getName()));
}

TEST(TableMonitoring, DeletedOperatorDropsOnlyItsOwnStates)
{
    MonitoringManager manager;
    HostOperator *op = gztest::addOperator(HOST_NETWORK_SOP, "tmdel");
    const std::string name = op->getName();
    manager.addTemplatesInterest(op);
    // The manager drops the two states of the operator in its own network's lists and
    // deletes them, since they are its own (LeakSanitizer would find them otherwise).
    std::unique_ptr<GZ_StateTemplate> unbound(makeState(name, GZ_VIEWER_SCENE, 0x02, nullptr));
    std::unique_ptr<GZ_StateTemplate> elsewhere(makeState(name, GZ_VIEWER_SCENE, 0x01, op));
    ASSERT_EQ(manager.registerState(unbound.get()), 1);
    for (GZ_StateTemplate *state : {makeState(name, GZ_VIEWER_SCENE, 0x02, op),
                                    makeState(name, GZ_VIEWER_COMPOSITE, 0x02, op)})
        ASSERT_EQ(manager.adoptState(std::unique_ptr<GZ_StateTemplate>(state)), 1);
    ASSERT_EQ(manager.registerState(elsewhere.get()), 1);

    ASSERT_TRUE(theSop->deleteOperator(name));
    EXPECT_EQ(manager.stateList(GZ_VIEWER_SCENE, GZ_NETWORK_SOP),
              std::vector<GZ_StateTemplate *>{unbound.get()});
    EXPECT_TRUE(manager.stateList(GZ_VIEWER_COMPOSITE, GZ_NETWORK_SOP).empty());
    EXPECT_EQ(manager.stateList(GZ_VIEWER_SCENE, GZ_NETWORK_OBJ)[0], elsewhere.get());
    EXPECT_FALSE(manager.validStateTemplateName(name.c_str()));

    // With no other state of its name left, the name is free again.
    HostOperator *alone = gztest::addOperator(HOST_NETWORK_SOP, "tmalone");
    const std::string alone_name = alone->getName();
    manager.addTemplatesInterest(alone);
    ASSERT_EQ(manager.adoptState(std::unique_ptr<GZ_StateTemplate>(
                  makeState(alone_name, GZ_VIEWER_SCENE, 0x02, alone))),
              1);
    ASSERT_TRUE(theSop->deleteOperator(alone_name));
    EXPECT_TRUE(manager.validStateTemplateName(alone_name.c_str()));
}

TEST(TableMonitoring, DeletedScriptedDefinitionDropsItsBindings)
{
    MonitoringManager manager;
    const char *const parms[] = {"tx", nullptr};
    manager.registerOpHandleLink(new GZ_GZTemplate("tmx", "X", "sop", "", parms, 0, ~0u, false));
    manager.registerSelector(new GZ_SelectorTemplate("tmprims", "Prims", "sop", false));
    const std::string names[] = {gztest::uniqueName("tmscript"), gztest::uniqueName("tmplain")};
    const unsigned flags[] = {HostOperator::FLAG_SCRIPTED, 0};
    for (int i = 0; i < 2; ++i)
    {
        HostOperator *op = theSop->addOperator(names[i], names[i], {}, "", flags[i]);
        ASSERT_EQ(manager.bind(op, "tmx", "h1", nullptr), GZ_ResourceManager::BIND_OK);
        ASSERT_EQ(manager.bindSelector(op, "tmprims", "s1", "Select", "", 0, 0, "", 0, "", 0, "",
                                       /*skip_parm_check=*/true),
                  GZ_ResourceManager::BIND_OK);
        manager.addTemplatesInterest(op);
        ASSERT_TRUE(theSop->deleteOperator(names[i]));
    }

    // Types loaded again under the same names: only the plain one finds its bindings.
    HostOperator *scripted = theSop->addOperator(names[0], "", {}, "", flags[0]);
    HostOperator *plain = theSop->addOperator(names[1], "", {});
    EXPECT_EQ(manager.getBindingHandles(scripted), nullptr);
    EXPECT_EQ(manager.getBindingSelectors(scripted), nullptr);
    EXPECT_NE(manager.getBindingHandles(plain), nullptr);
    EXPECT_NE(manager.getBindingSelectors(plain), nullptr);
    EXPECT_TRUE(theSop->deleteOperator(names[0]) && theSop->deleteOperator(names[1]));
}
