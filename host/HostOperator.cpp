// HostOperator: templates, flags, table membership, active nodes and template listeners.
#include "host/HostOperator.h"

#include "host/HostOperatorTable.h"
#include "host/HostTemplatesSink.h"

#include <algorithm>
#include <iterator>

namespace
{
const std::string theEmpty;
}

HostOperator::HostOperator(const std::string &name, const std::string &label,
                           const HostParmTemplateList &templates, const std::string &child_table,
                           int min_inputs, int max_inputs, unsigned flags, const std::string &icon)
    : myName(name), myLabel(label), myIcon(icon), myTemplates(templates), myChildTable(child_table),
      myMinInputs(min_inputs), myMaxInputs(max_inputs), myFlags(flags)
{
}

HostOperator::~HostOperator()
{
    // Sinks that were not told of a deletion (the type dies with its table at exit) just
    // forget it.
    for (HostTemplatesSink *sink : mySinks)
    {
        auto &ops = sink->myOperators;
        ops.erase(std::remove(ops.begin(), ops.end(), this), ops.end());
    }
}

const HostParmTemplate *HostOperator::getParmTemplates()
{
    ensureTemplatesLoaded();
    return myTemplates.data();
}

const HostParmTemplate *HostOperator::findParmTemplate(const std::string &name) const
{
    const int i = myTemplates.find(name);
    return i < 0 ? nullptr : &myTemplates[i];
}

void HostOperator::setInputCounts(int min_inputs, int max_inputs)
{
    myMinInputs = min_inputs;
    myMaxInputs = max_inputs;
}

void HostOperator::setControlsSwitcher(int a, int b, int c)
{
    myControls[0] = a;
    myControls[1] = b;
    myControls[2] = c;
}

const std::string &HostOperator::getTableName() const
{
    return myTable ? myTable->getName() : theEmpty;
}

std::string HostOperator::getQualifiedName() const
{
    return myTable ? HostOperatorTable::makeQualifiedName(myTable->getName(), myName) : myName;
}

void HostOperator::addTemplatesSink(HostTemplatesSink *sink)
{
    if (!sink || hasTemplatesSink(sink))
        return;
    mySinks.push_back(sink);
    sink->myOperators.push_back(this);
}

void HostOperator::removeTemplatesSink(HostTemplatesSink *sink)
{
    auto it = std::find(mySinks.begin(), mySinks.end(), sink);
    if (it == mySinks.end())
        return;
    mySinks.erase(it);
    auto &ops = sink->myOperators;
    ops.erase(std::remove(ops.begin(), ops.end(), this), ops.end());
}

bool HostOperator::hasTemplatesSink(const HostTemplatesSink *sink) const
{
    return std::find(mySinks.begin(), mySinks.end(), sink) != mySinks.end();
}

void HostOperator::getRefreshGZCommands(HostNode * /*node*/, std::ostream & /*os*/) {}

const std::vector<HostNode *> &HostOperator::getActiveNodes() const
{
    if (myNodes.size() != myNodeCount)
    {
        myNodes.erase(std::remove(myNodes.begin(), myNodes.end(), nullptr), myNodes.end());
        myFirstNode = 0;
    }
    return myNodes;
}

void HostOperator::addActiveNode(HostNode *node)
{
    myNodes.push_back(node);
    ++myNodeCount;
}

void HostOperator::removeActiveNode(HostNode *node)
{
    // From both ends: a scene is cleared last node first, scripts often delete first node
    // first, and both stay linear.
    for (size_t front = myFirstNode, back = myNodes.size(); front < back; ++front)
    {
        if (myNodes[front] == node)
            return dropActiveNode(front);
        if (myNodes[--back] == node)
            return dropActiveNode(back);
    }
}

void HostOperator::dropActiveNode(std::size_t index)
{
    myNodes[index] = nullptr;
    if (--myNodeCount == 0)
    {
        myNodes.clear();
        myFirstNode = 0;
        return;
    }
    while (!myNodes.back())
        myNodes.pop_back();
    while (!myNodes[myFirstNode])
        ++myFirstNode;
    if (myNodes.size() > 2 * myNodeCount + 16)
        getActiveNodes();
}

void HostOperator::notifyTemplatesUpdated()
{
    // A sink may remove itself (or others) while being told.
    const std::vector<HostTemplatesSink *> sinks = mySinks;
    for (HostTemplatesSink *sink : sinks)
        if (hasTemplatesSink(sink))
            sink->templatesUpdated(this);
}

void HostOperator::notifyDeleted()
{
    const std::vector<HostTemplatesSink *> sinks = mySinks;
    for (HostTemplatesSink *sink : sinks)
        if (hasTemplatesSink(sink))
            sink->operatorDeleted(this);
    // Overrides that did not call the base still must not keep a pointer to a dead type.
    while (!mySinks.empty())
        removeTemplatesSink(mySinks.back());
}
