// Tests of operator tables: registry, names, listeners.
#include "HostFixture.h"

#include "host/HostOperatorTableSink.h"
#include "host/HostScriptOperator.h"
#include "host/HostTemplatesSink.h"

#include <string>
#include <vector>

namespace
{
/// Listens to tables and to operator types; each instance is used as one of the two.
class SinkLog : public HostOperatorTableSink, public HostTemplatesSink
{
public:
    void tableUpdated(HostOperatorTable *table) override { log("updated:" + table->getName()); }
    void tableDeleted(HostOperatorTable *table) override
    {
        log("deleted:" + table->getName());
        HostOperatorTableSink::tableDeleted(table);
    }
    void templatesUpdated(HostOperator *op) override { log("templates:" + op->getName()); }
    void operatorDeleted(HostOperator *op) override
    {
        log("deleted:" + op->getName());
        HostTemplatesSink::operatorDeleted(op);
    }
    void log(const std::string &event) { myLog.push_back(event); }
    std::vector<std::string> myLog;
};
} // namespace

TEST(HostOperatorTableRegistry, TablesAnswerToTokenAndTypeName)
{
    const char *tokens[] = {"Object", "Sop", "Dop", "Cop2", "Chop", "Lop", "Top"};
    const char *types[] = {"OBJ", "SOP", "DOP", "COP2", "CHOP", "LOP", "TOP"};
    for (int i = 0; i < HOST_NUM_NETWORK_TYPES; ++i)
    {
        HostOperatorTable *table = HostOperatorTable::getTable(tokens[i]);
        ASSERT_NE(table, nullptr) << tokens[i];
        EXPECT_EQ(HostOperatorTable::getTable(types[i]), table);
        EXPECT_EQ(HostOperatorTable::getTable(static_cast<HostNetworkType>(i)), table);
        EXPECT_EQ(table->getNetworkType(), i);
        EXPECT_EQ(table->getTypeName(), types[i]);
        EXPECT_STREQ(HostOperatorTable::getNetworkToken(i), tokens[i]);
    }
    EXPECT_EQ(HostOperatorTable::getTable("sop"), nullptr);
    EXPECT_STREQ(HostOperatorTable::getNetworkToken(7), "");

    for (const auto &[qualified, split] :
         {std::pair{"Sop/xform", "Sop|xform"}, {"xform", "|xform"}, {"Sop/a/b", "Sop|a/b"}})
    {
        std::string table, name;
        HostOperatorTable::splitQualifiedName(qualified, table, name);
        EXPECT_EQ(table + "|" + name, split);
    }
}

using HostOperatorTableChanges = HostFixture;

TEST_F(HostOperatorTableChanges, AddRenameDeleteTellTheListeners)
{
    HostOperatorTable *sop = HostOperatorTable::getTable("Sop");
    SinkLog tables;
    SinkLog templates;
    tables.addTableInterest(sop);
    tables.addTableInterest(sop);
    EXPECT_TRUE(sop->hasSink(&tables));

    HostOperator *op = addType("Sop", "tmover", {HostParmTemplate(HOST_PARM_FLOAT, "a", "A")});
    ASSERT_NE(op, nullptr);
    EXPECT_EQ(std::tuple(op->getTable(), op->getQualifiedName()), std::tuple(sop, "Sop/tmover"));
    EXPECT_EQ(sop->getOperator("tmover"), op);
    EXPECT_EQ(addType("Sop", "tmover", {}), nullptr); // duplicate refused
    EXPECT_EQ(addType("Sop", "bad/name", {}), nullptr);
    templates.addTemplatesInterest(op);

    EXPECT_FALSE(sop->renameOperator(op, "tbox")); // taken
    EXPECT_TRUE(sop->renameOperator(op, "tshifter"));
    myTypes.back().second = "tshifter";
    EXPECT_EQ(sop->getOperator("tmover"), nullptr);
    EXPECT_EQ(sop->getOperator("tshifter"), op);

    EXPECT_TRUE(sop->setLabelAndIcon(op, "Shifter", "SOP_shift"));
    EXPECT_EQ(op->getLabel(), "Shifter");

    EXPECT_TRUE(sop->deleteOperator("tshifter"));
    myTypes.pop_back();
    EXPECT_EQ(tables.myLog,
              (std::vector<std::string>{"updated:Sop", "updated:Sop", "updated:Sop"}));
    EXPECT_EQ(templates.myLog, (std::vector<std::string>{"templates:tshifter", "templates:tshifter",
                                                         "deleted:tshifter"}));
    EXPECT_TRUE(templates.getTemplatesInterests().empty());
    tables.removeTableInterest(sop);
    EXPECT_FALSE(sop->hasSink(&tables));
}

TEST_F(HostOperatorTableChanges, NewTemplatesRebuildNodesKeepingValues)
{
    HostOperator *geo_op = HostOperatorTable::getTable("Object")->getOperator("tgeo");
    HostNode *geo = make("tgeo", "/obj/geo1");
    geo->getParm("t")->setValue(1, 5.0);
    SinkLog templates;
    templates.addTemplatesInterest(geo_op);
    std::vector<int> events;
    geo->addEventCallback(&events, [](HostNode *, void *callee, HostNodeEvent e, void *)
                          { static_cast<std::vector<int> *>(callee)->push_back(e); });

    HostParmTemplateList list(geo_op->getParmTemplates());
    list.append(HostParmTemplate(HOST_PARM_TOGGLE, "vis", "Visible"));
    EXPECT_TRUE(HostOperatorTable::getTable("Object")->setTemplates(geo_op, list));
    EXPECT_EQ(templates.myLog, (std::vector<std::string>{"templates:tgeo"}));
    EXPECT_EQ(events, (std::vector<int>{HOST_NODE_TEMPLATES_CHANGED}));
    ASSERT_NE(geo->getParm("vis"), nullptr);
    EXPECT_EQ(geo->getParm("t")->getValue(1), 5.0);

    // A type with nodes cannot be deleted.
    EXPECT_FALSE(HostOperatorTable::getTable("Object")->deleteOperator("tgeo"));
    myDirector.clearScene(); // the local listeners die before TearDown
}

TEST_F(HostOperatorTableChanges, DestroyingATableTellsItsSinksAndTypes)
{
    HostOperatorTable *table = HostOperatorTable::createTable("Test", "TEST");
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(HostOperatorTable::createTable("Test", "TEST2"), nullptr);
    EXPECT_EQ(HostOperatorTable::getTable("TEST"), table);
    auto scripted =
        std::make_unique<HostScriptOperator>("tscripted", "Scripted", HostParmTemplateList(), "", 0,
                                             1, HostOperator::FLAG_STATE_OPTIONAL);
    HostOperator *op = table->addOperator(std::move(scripted));
    ASSERT_NE(op, nullptr);
    EXPECT_EQ(std::tuple(op->isScriptedDefinition(), op->isStateOptional(), op->getFlags()),
              std::tuple(true, true, 0x18u));

    SinkLog tables;
    SinkLog templates;
    tables.addTableInterest(table);
    templates.addTemplatesInterest(op);
    EXPECT_FALSE(HostOperatorTable::destroyTable("Sop")); // standard tables stay
    EXPECT_TRUE(HostOperatorTable::destroyTable("Test"));
    EXPECT_EQ(tables.myLog, (std::vector<std::string>{"deleted:Test"}));
    EXPECT_EQ(templates.myLog, (std::vector<std::string>{"deleted:tscripted"}));
    EXPECT_TRUE(tables.getTableInterests().empty());
    EXPECT_EQ(HostOperatorTable::getTable("Test"), nullptr);
}

TEST_F(HostOperatorTableChanges, SinksThatDieFirstLeaveNoDanglingListener)
{
    HostOperator *op = HostOperatorTable::getTable("Sop")->getOperator("tbox");
    {
        SinkLog tables;
        SinkLog templates;
        tables.addTableInterest(HostOperatorTable::getTable("Sop"));
        templates.addTemplatesInterest(op);
    }
    EXPECT_NE(addType("Sop", "tlater", {}), nullptr); // would reach a dead sink otherwise
    EXPECT_TRUE(HostOperatorTable::getTable("Sop")->setLabelAndIcon(op, "Box", ""));
}
