// The manager follows operator tables and operator types: automatic states on table changes,
// renamed and deleted operator types, and the bindings of scripted definitions.
#include "gz_ResourceTestEnv.h"

#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_SelectorTemplate.h"
#include "resource/GZ_StateTemplate.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace
{

/// Records the automatic-state requests and treats the states named in myScriptedNames as
/// states written in the scripting layer.
class MonitoringManager : public gztest::ScratchManager
{
public:
    using GZ_ResourceManager::ensureTableInterestExists;

    bool isRegisteredViewerState(const char *name) const override
    {
        return myScriptedNames.count(name) > 0;
    }

    std::vector<GZ_NetworkType> myAutomaticCalls;
    std::set<std::string> myScriptedNames;

protected:
    void addAutomaticStates(GZ_NetworkType type) override { myAutomaticCalls.push_back(type); }
};

std::unique_ptr<GZ_StateTemplate> makeState(const std::string &name, GZ_ViewerType viewer,
                                            unsigned mask, HostOperator *op)
{
    return std::make_unique<GZ_StateTemplate>(name.c_str(), "Label", "ICON", nullptr, nullptr,
                                              viewer, mask, 0, "", op);
}

std::vector<std::string> names(const std::vector<GZ_StateTemplate *> &list)
{
    std::vector<std::string> result;
    for (const GZ_StateTemplate *state : list)
        result.push_back(state->name());
    return result;
}

HostOperatorTable *sopTable()
{
    return HostOperatorTable::getTable(HOST_NETWORK_SOP);
}

} // namespace

TEST(TableMonitoring, OnlyWatchedTablesAskForAutomaticStates)
{
    MonitoringManager manager;
    HostOperatorTable *sop = sopTable();

    manager.tableUpdated(sop);
    EXPECT_TRUE(manager.myAutomaticCalls.empty());

    manager.ensureTableInterestExists(GZ_NETWORK_SOP, sop);
    EXPECT_TRUE(sop->hasSink(&manager));
    HostOperator *op = gztest::addOperator(HOST_NETWORK_SOP, "tmwatch");
    ASSERT_NE(op, nullptr);
    EXPECT_EQ(manager.myAutomaticCalls, (std::vector<GZ_NetworkType>{GZ_NETWORK_SOP}));

    // By the manager's table names only.
    manager.myAutomaticCalls.clear();
    manager.ensureStatesExistForAllOperators("SOP");
    manager.ensureStatesExistForAllOperators("Sop");
    manager.ensureStatesExistForAllOperators("NOPE");
    EXPECT_EQ(manager.myAutomaticCalls, (std::vector<GZ_NetworkType>{GZ_NETWORK_SOP}));

    // A deleted table is forgotten: one made again under the same names is not watched.
    manager.myAutomaticCalls.clear();
    HostOperatorTable *extra = HostOperatorTable::createTable("Tmon", "TMON");
    ASSERT_NE(extra, nullptr);
    manager.ensureTableInterestExists(GZ_NETWORK_DOP, extra);
    extra->addOperator("tmone", "One", HostParmTemplateList());
    EXPECT_EQ(manager.myAutomaticCalls, (std::vector<GZ_NetworkType>{GZ_NETWORK_DOP}));
    EXPECT_TRUE(HostOperatorTable::destroyTable("Tmon"));
    EXPECT_TRUE(manager.getTableInterests() == std::vector<HostOperatorTable *>{sop});
    HostOperatorTable *again = HostOperatorTable::createTable("Tmon", "TMON");
    manager.tableUpdated(again);
    EXPECT_EQ(manager.myAutomaticCalls.size(), 1u);
    EXPECT_TRUE(HostOperatorTable::destroyTable("Tmon"));

    EXPECT_TRUE(sop->deleteOperator(op->getName()));
}

TEST(TableMonitoring, RenamedOperatorRenamesItsStatesAndFreesTheOldName)
{
    MonitoringManager manager;
    HostOperatorTable *sop = sopTable();
    HostOperator *op = gztest::addOperator(HOST_NETWORK_SOP, "tmmover");
    const std::string first = op->getName();
    ASSERT_TRUE(sop->setLabelAndIcon(op, "Mover", "SOP_mover"));
    manager.addTemplatesInterest(op);

    HostParmTemplate state_parms[] = {HostParmTemplate(HOST_PARM_FLOAT, "size", "Size"),
                                      HostParmTemplate()};
    int constructor = 0;
    GZ_StateTemplate scene(first.c_str(), "Old", "OLD", &constructor, state_parms, GZ_VIEWER_SCENE,
                           0x02, 1, "k", op);
    scene.setHidden(true);
    auto composite = makeState(first, GZ_VIEWER_COMPOSITE, 0x02, op);
    auto scripted = makeState("tmscripted", GZ_VIEWER_SCENEGRAPH, 0x02, op);
    manager.myScriptedNames.insert("tmscripted");
    ASSERT_EQ(manager.registerState(&scene), 1);
    ASSERT_EQ(manager.registerState(composite.get()), 1);
    ASSERT_EQ(manager.registerState(scripted.get()), 1);

    ASSERT_TRUE(sop->renameOperator(op, gztest::uniqueName("tmshifter")));
    const std::string second = op->getName();
    EXPECT_EQ(scene.name(), second);
    EXPECT_EQ(scene.englishName(), "Mover");
    EXPECT_EQ(scene.getIconName(), "SOP_mover");
    // Everything that is the state's own stays.
    EXPECT_EQ(scene.constructor(), &constructor);
    EXPECT_EQ(scene.templates(), state_parms);
    EXPECT_EQ(scene.viewerType(), GZ_VIEWER_SCENE);
    EXPECT_EQ(scene.networkTypes(), 0x02u);
    EXPECT_EQ(scene.opIndependent(), 1);
    EXPECT_EQ(scene.volatileHotkey(), "k");
    EXPECT_TRUE(scene.getHidden());
    EXPECT_EQ(scene.getOperator(), op);
    EXPECT_EQ(composite->name(), second);
    EXPECT_EQ(scripted->name(), "tmscripted");
    EXPECT_TRUE(manager.validStateTemplateName(first.c_str()));
    EXPECT_FALSE(manager.validStateTemplateName(second.c_str()));
    EXPECT_EQ(manager.getStateTemplate(second.c_str(), GZ_VIEWER_SCENE, "SOP"), &scene);

    // While another state bears the old name, the name stays taken.
    auto other = makeState(second, GZ_VIEWER_SCENE, 0x01, nullptr);
    ASSERT_EQ(manager.registerState(other.get()), 1);
    ASSERT_TRUE(sop->renameOperator(op, gztest::uniqueName("tmslider")));
    EXPECT_EQ(scene.name(), op->getName());
    EXPECT_FALSE(manager.validStateTemplateName(second.c_str()));

    // A change of label and icon refreshes them under the same name.
    ASSERT_TRUE(sop->setLabelAndIcon(op, "Slider", "SOP_slide"));
    EXPECT_EQ(scene.name(), op->getName());
    EXPECT_EQ(composite->englishName(), "Slider");
    EXPECT_EQ(composite->getIconName(), "SOP_slide");

    manager.removeTemplatesInterest(op);
    EXPECT_TRUE(sop->deleteOperator(op->getName()));
}

TEST(TableMonitoring, DeletedOperatorDropsOnlyItsOwnStates)
{
    MonitoringManager manager;
    HostOperatorTable *sop = sopTable();
    HostOperator *op = gztest::addOperator(HOST_NETWORK_SOP, "tmdel");
    const std::string name = op->getName();
    // Another operator object of the same name, in another table.
    HostOperator *namesake =
        HostOperatorTable::getTable(HOST_NETWORK_OBJECT)->addOperator(name, "Namesake", {});
    ASSERT_NE(namesake, nullptr);
    manager.addTemplatesInterest(op);

    // The states of a deleted operator type are deleted by the manager.
    GZ_StateTemplate *own_scene = makeState(name, GZ_VIEWER_SCENE, 0x02, op).release();
    GZ_StateTemplate *own_composite = makeState(name, GZ_VIEWER_COMPOSITE, 0x02, op).release();
    auto unbound = makeState(name, GZ_VIEWER_SCENE, 0x02, nullptr);
    auto foreign = makeState(name, GZ_VIEWER_SCENE, 0x01, namesake);
    ASSERT_EQ(manager.registerState(unbound.get()), 1);
    ASSERT_EQ(manager.registerState(own_scene), 1);
    ASSERT_EQ(manager.registerState(own_composite), 1);
    ASSERT_EQ(manager.registerState(foreign.get()), 1);

    ASSERT_TRUE(sop->deleteOperator(name));
    EXPECT_EQ(names(manager.stateList(GZ_VIEWER_SCENE, GZ_NETWORK_SOP)),
              std::vector<std::string>{name});
    EXPECT_EQ(manager.stateList(GZ_VIEWER_SCENE, GZ_NETWORK_SOP)[0], unbound.get());
    EXPECT_TRUE(manager.stateList(GZ_VIEWER_COMPOSITE, GZ_NETWORK_SOP).empty());
    EXPECT_EQ(manager.stateList(GZ_VIEWER_SCENE, GZ_NETWORK_OBJ)[0], foreign.get());
    EXPECT_FALSE(manager.validStateTemplateName(name.c_str()));
    EXPECT_TRUE(HostOperatorTable::getTable(HOST_NETWORK_OBJECT)->deleteOperator(name));

    // With no other state of its name left, the name is free again.
    HostOperator *alone = gztest::addOperator(HOST_NETWORK_SOP, "tmalone");
    const std::string alone_name = alone->getName();
    manager.addTemplatesInterest(alone);
    ASSERT_EQ(manager.registerState(makeState(alone_name, GZ_VIEWER_SCENE, 0x02, alone).release()),
              1);
    ASSERT_TRUE(sop->deleteOperator(alone_name));
    EXPECT_TRUE(manager.validStateTemplateName(alone_name.c_str()));
    EXPECT_EQ(manager.getStateTemplate(alone_name.c_str(), GZ_VIEWER_SCENE, "SOP"), nullptr);
    EXPECT_FALSE(manager.hasTemplatesInterest(alone));
}

TEST(TableMonitoring, DeletedScriptedDefinitionDropsItsBindings)
{
    MonitoringManager manager;
    const char *const handle_parms[] = {"tx", nullptr};
    ASSERT_EQ(manager.registerOpHandleLink(
                  new GZ_GZTemplate("tmxform", "Xform", "sop", "", handle_parms, 0, ~0u, false)),
              1);
    ASSERT_EQ(manager.registerSelector(new GZ_SelectorTemplate("tmprims", "Prims", "sop", false)),
              1);
    HostOperatorTable *sop = sopTable();
    const std::string scripted_name = gztest::uniqueName("tmscript");
    const std::string plain_name = gztest::uniqueName("tmplain");

    auto add_bound = [&](const std::string &name, unsigned flags)
    {
        HostOperator *op = sop->addOperator(name, name, {}, "", flags);
        EXPECT_EQ(manager.bind(op, "tmxform", "h1", nullptr), GZ_ResourceManager::BIND_OK);
        EXPECT_EQ(manager.bindSelector(op, "tmprims", "s1", "Select", "", 0, 0, "", 0, "", 0, "",
                                       /*skip_parm_check=*/true),
                  GZ_ResourceManager::BIND_OK);
        manager.addTemplatesInterest(op);
        return op;
    };
    add_bound(scripted_name, HostOperator::FLAG_SCRIPTED);
    add_bound(plain_name, 0);
    ASSERT_TRUE(sop->deleteOperator(scripted_name));
    ASSERT_TRUE(sop->deleteOperator(plain_name));

    // Types loaded again under the same names: only the plain one finds its bindings.
    HostOperator *scripted =
        sop->addOperator(scripted_name, "", {}, "", HostOperator::FLAG_SCRIPTED);
    HostOperator *plain = sop->addOperator(plain_name, "", {});
    EXPECT_EQ(manager.getBindingHandles(scripted), nullptr);
    EXPECT_EQ(manager.getBindingSelectors(scripted), nullptr);
    ASSERT_NE(manager.getBindingHandles(plain), nullptr);
    EXPECT_EQ(manager.getBindingHandles(plain)->size(), 1u);
    ASSERT_NE(manager.getBindingSelectors(plain), nullptr);
    EXPECT_EQ(manager.getBindingSelectors(plain)->size(), 1u);

    EXPECT_TRUE(sop->deleteOperator(scripted_name));
    EXPECT_TRUE(sop->deleteOperator(plain_name));
}
