// HostSpareUpdate: checking and applying a node's new spare interface, with its undo record.
#include "host/HostSpareUpdate.h"

#include "host/HostDialogStream.h"
#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostOperator.h"
#include "host/HostScriptPage.h"
#include "host/HostUndo.h"
#include "host/HostUndoManager.h"

#include <map>
#include <set>

namespace
{
/// Saves a node's whole spare interface with the state of every spare parameter; undo and
/// redo swap it with the current one.
class HostSpareUndo : public HostUndo
{
public:
    explicit HostSpareUndo(const HostNode &node) : myNodeId(node.getUniqueId()) { save(node); }
    void undo() override { swap(); }
    void redo() override { swap(); }
    bool isValid() const override { return node() != nullptr; }

private:
    HostNode *node() const { return HostDirector::instance()->findNodeById(myNodeId); }

    void save(const HostNode &n)
    {
        myLayout = n.getSpareLayout();
        myStates.clear();
        const HostParmList &list = n.getParmList();
        for (int i = 0; i < list.getEntries(); ++i)
            if (list.getParm(i)->isSpare())
                myStates.emplace_back(list.getParm(i)->getName(), list.getParm(i)->saveState());
    }

    void swap()
    {
        HostNode *n = node();
        if (!n)
            return;
        HostSpareLayout layout = std::move(myLayout);
        std::vector<std::pair<std::string, HostParmState>> states = std::move(myStates);
        save(*n);
        n->setSpareLayout(layout);
        // In the saved order, so that multiparms get their instances first. A name found twice
        // (a multiparm child without "#" has it in every instance) restores the first state
        // only, as the node does when its templates change: lookups by name reach that one.
        std::set<std::string> restored;
        for (const auto &s : states)
            if (HostParm *p = n->getParm(s.first); p && restored.insert(s.first).second)
                p->restoreState(s.second);
    }

    int myNodeId;
    HostSpareLayout myLayout;
    std::vector<std::pair<std::string, HostParmState>> myStates;
};

void checkNames(const HostParmTemplate *list, const std::set<std::string> &reserved,
                std::set<std::string> &seen, std::string &errors)
{
    for (; list && !list->isTerminator(); ++list)
    {
        const std::string &name = list->getName();
        if (name.empty())
            errors += "A spare parameter has no name\n";
        else if (reserved.count(name))
            errors += "Spare parameter '" + name + "' has the name of a parameter of the node\n";
        else if (!seen.insert(name).second)
            errors += "Spare parameter name '" + name + "' is used twice\n";
        if (list->getChildList())
        {
            std::set<std::string> children;
            checkNames(list->getChildList(), reserved, children, errors);
        }
    }
}
} // namespace

std::string HostSpareUpdate::check(const HostNode &node, const HostSpareLayout &layout)
{
    std::set<std::string> reserved;
    const HostParmList &list = node.getParmList();
    for (int i = 0; i < list.getEntries(); ++i)
        if (!list.getParm(i)->isSpare())
            reserved.insert(list.getParm(i)->getName());
    std::string errors;
    std::set<std::string> seen;
    checkNames(layout.myTemplates.data(), reserved, seen, errors);
    return errors;
}

bool HostSpareUpdate::updateNode(HostNode &node, const HostSpareLayout &layout, std::string &errors)
{
    const std::string problems = check(node, layout);
    if (!problems.empty())
    {
        errors += problems;
        return false;
    }
    HostUndoManager &undo = HostUndoManager::current();
    undo.beginUndoBlock(UNDO_NAME);
    if (undo.willAcceptUndoAddition())
        undo.addToUndoBlock(std::make_unique<HostSpareUndo>(node));
    node.setSpareLayout(layout);
    undo.endUndoBlock();
    return true;
}

bool HostSpareUpdate::updateNode(HostNode &node, HostDialogStream &in, std::string &errors)
{
    HostScriptPage page;
    if (!page.parseSection(in))
    {
        errors += "The parameter section could not be read\n";
        return false;
    }
    HostSpareLayout layout;
    if (!page.buildTemplates(layout, errors))
        return false;
    return updateNode(node, layout, errors);
}
