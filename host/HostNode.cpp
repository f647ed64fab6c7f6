// HostNode: paths, parameters and their notifications, flags and event callbacks.
#include "host/HostNode.h"

#include "host/HostDirector.h"
#include "host/HostNetwork.h"
#include "host/HostOperator.h"
#include "host/HostOperatorTable.h"
#include "host/HostParmComponentUndo.h"
#include "host/HostParmUndo.h"

#include <algorithm>
#include <map>
#include <set>

namespace
{
const std::string theEmpty;

int depthOf(const HostNode *node)
{
    int depth = 0;
    for (const HostNode *n = node->getParent(); n; n = n->getParent())
        ++depth;
    return depth;
}
} // namespace

HostNode::HostNode(HostDirector *director, HostNetwork *parent, HostOperator *op,
                   const std::string &name, int unique_id)
    : myDirector(director), myParent(parent), myOperator(op), myName(name), myUniqueId(unique_id)
{
    myDirector->registerNode(this);
    if (myOperator)
    {
        myOperator->addActiveNode(this);
        if (!myOperator->getChildTableName().empty())
            if (HostOperatorTable *table =
                    HostOperatorTable::getTable(myOperator->getChildTableName()))
                myChildren = std::make_unique<HostNetwork>(myDirector, this, table);
    }
    buildParms();
}

HostNode::~HostNode()
{
    myChildren.reset();
    if (myOperator)
        myOperator->removeActiveNode(this);
    myDirector->unregisterNode(this);
}

void HostNode::buildParms()
{
    myParms =
        std::make_unique<HostParmList>(this, myOperator ? myOperator->getParmTemplates() : nullptr);
    if (!mySpareTemplates.empty())
        myParms->appendSpareParms(mySpareTemplates.data());
}

const std::string &HostNode::getOperatorName() const
{
    return myOperator ? myOperator->getName() : theEmpty;
}

int HostNode::getNetworkTypeId() const
{
    if (!myOperator || !myOperator->getTable())
        return -1;
    return myOperator->getTable()->getNetworkType();
}

HostNode *HostNode::getParent() const
{
    return myParent ? myParent->getOwner() : nullptr;
}

std::string HostNode::getFullPath() const
{
    const HostNode *parent = getParent();
    if (!parent)
        return myName.empty() ? "/" : myName;
    if (!parent->getParent())
        return "/" + myName;
    return parent->getFullPath() + "/" + myName;
}

HostNode *HostNode::findNode(const std::string &path) const
{
    if (path.empty())
        return nullptr;
    const HostNode *cur = this;
    if (path[0] == '/')
        cur = myDirector->getRoot();
    size_t pos = 0;
    while (cur && pos <= path.size())
    {
        size_t slash = path.find('/', pos);
        if (slash == std::string::npos)
            slash = path.size();
        const std::string part = path.substr(pos, slash - pos);
        pos = slash + 1;
        if (part.empty() || part == ".")
            continue;
        if (part == "..")
            cur = cur->getParent();
        else
            cur = cur->myChildren ? cur->myChildren->findNode(part) : nullptr;
    }
    return const_cast<HostNode *>(cur);
}

std::string HostNode::getRelativePathTo(const HostNode &target) const
{
    if (&target == this)
        return ".";
    // Walk both up to their common ancestor.
    const HostNode *a = this;
    const HostNode *b = &target;
    int da = depthOf(a);
    int db = depthOf(b);
    std::string up;
    std::vector<const HostNode *> down;
    while (da > db)
    {
        a = a->getParent();
        --da;
        up += up.empty() ? ".." : "/..";
    }
    while (db > da)
    {
        down.push_back(b);
        b = b->getParent();
        --db;
    }
    while (a != b)
    {
        a = a->getParent();
        up += up.empty() ? ".." : "/..";
        down.push_back(b);
        b = b->getParent();
    }
    std::string path = up;
    for (auto it = down.rbegin(); it != down.rend(); ++it)
        path += (path.empty() ? "" : "/") + (*it)->getName();
    return path;
}

bool HostNode::canAccess(unsigned mask, const HostParm & /*parm*/) const
{
    return (myPermissions & mask) == mask;
}

bool HostNode::canModifyFromUI(const HostParm &parm, int k) const
{
    return canAccess(ACCESS_WRITE, parm) && !parm.isLocked(k) && parm.isEnabled(k);
}

void HostNode::saveParmForUndo(const HostParm &parm)
{
    HostUndoManager &undo = myDirector->getUndoManager();
    if (undo.willAcceptUndoAddition())
        undo.addToUndoBlock(std::make_unique<HostParmUndo>(*this, parm));
}

void HostNode::saveComponentForUndo(const HostParm &parm, int k)
{
    if (k < 0 || k >= parm.getVectorSize())
        return saveParmForUndo(parm);
    HostUndoManager &undo = myDirector->getUndoManager();
    if (undo.willAcceptUndoAddition())
        undo.addToUndoBlock(std::make_unique<HostParmComponentUndo>(*this, parm, k));
}

void HostNode::parmChanging(HostParm & /*parm*/)
{
    ++myParmChanges;
}

void HostNode::parmChanged(HostParm &parm)
{
    parm.notifyInputInterests(&parm);
    sendEvent(HOST_NODE_PARM_CHANGED, &parm);
}

bool HostNode::setParmValue(HostParm &parm, int k, double value)
{
    if (!canModifyFromUI(parm, k))
        return false;
    saveParmForUndo(parm);
    parmChanging(parm);
    // At the current time: an animated component changes its key there or holds the value.
    parm.setValue(k, myDirector->getTime(), value, /*setKey=*/false, /*propagate=*/false);
    if (parm.hasInstances())
        myParms->setInstanceCount(parm, parm.getInt(0));
    parmChanged(parm);
    return true;
}

bool HostNode::setParmString(HostParm &parm, int k, const std::string &text,
                             HostStringMeaning meaning)
{
    if (!canModifyFromUI(parm, k))
        return false;
    saveParmForUndo(parm);
    parmChanging(parm);
    parm.setString(k, myDirector->getTime(), text, meaning, /*propagate=*/false);
    parmChanged(parm);
    return true;
}

bool HostNode::bakeParmValue(HostParm &parm, int k, double time)
{
    if (k < 0 || k >= parm.getVectorSize() || !canModify() || parm.isLocked(k))
        return false;
    if (!parm.hasExpression(k) && !parm.hasChannel(k))
        return true;
    saveParmForUndo(parm);
    parmChanging(parm);
    parm.bakeValue(k, time);
    parmChanged(parm);
    return true;
}

int HostNode::updateInputGroups(double /*time*/, bool notify)
{
    int watched = 0;
    for (int i = 0; i < myParms->getEntries(); ++i)
    {
        HostParm *parm = myParms->getParm(i);
        if (!parm || parm->getNumInputInterests() == 0)
            continue;
        ++watched;
        if (notify)
            parm->notifyInputInterests(parm);
    }
    return watched;
}

int HostNode::runParmCallback(HostParm &parm, int data, double time)
{
    HostParmCallback cb = parm.getTemplate().getCallback();
    if (!cb)
        return 0;
    return cb(this, parm.getIndex(), data, time, &parm.getTemplate());
}

namespace
{
// What survives a rebuild of a parameter list: states and input interests, by name.
struct SavedParm
{
    HostParmState myState;
    int mySize;
    std::vector<HostParmInterest> myInterests;
};

void saveParms(const HostParmList &list, bool spare_only, std::vector<std::string> &order,
               std::map<std::string, SavedParm> &saved)
{
    for (int i = 0; i < list.getEntries(); ++i)
    {
        const HostParm *parm = list.getParm(i);
        if (spare_only && !parm->isSpare())
            continue;
        order.push_back(parm->getName());
        saved.emplace(parm->getName(), SavedParm{parm->saveState(), parm->getVectorSize(),
                                                 parm->getInputInterests()});
    }
}

void restoreParms(HostParmList &list, const std::vector<std::string> &order,
                  const std::map<std::string, SavedParm> &saved)
{
    // In the old order, so that a multiparm gets its instances before they are restored.
    for (const std::string &name : order)
    {
        HostParm *parm = list.getParm(name);
        if (!parm)
            continue;
        const SavedParm &s = saved.at(name);
        if (parm->getVectorSize() == s.mySize)
            parm->restoreState(s.myState);
        for (const HostParmInterest &i : s.myInterests)
            parm->addInputInterest(i);
    }
}

/// The names a template takes on its node: its own and its channels'.
void addNames(const HostParmTemplate &t, std::set<std::string> &names)
{
    names.insert(t.getName());
    for (int k = 0; k < t.getNumChannels(); ++k)
        names.insert(t.getChannelName(k));
}

bool takesAny(const HostParmTemplate &t, const std::set<std::string> &names)
{
    if (names.count(t.getName()))
        return true;
    for (int k = 0; k < t.getNumChannels(); ++k)
        if (names.count(t.getChannelName(k)))
            return true;
    return false;
}

/// Renames `t` to its name, `separator` and the first number that frees all its names.
void renameFree(HostParmTemplate &t, const std::string &separator, std::set<std::string> &taken)
{
    const std::string old_name = t.getName();
    for (int n = 1; n == 1 || takesAny(t, taken); ++n)
        t.setName(old_name + separator + std::to_string(n));
    addNames(t, taken);
}

/// Forgets the saved values of the instances of `child`: their names now belong to the
/// operator's own instances.
void forgetInstances(const HostParmTemplate &child, const HostParmList &old_parms,
                     std::vector<std::string> &order, std::map<std::string, SavedParm> &saved)
{
    for (int i = 0; i < old_parms.getEntries(); ++i)
    {
        const HostParm *parm = old_parms.getParm(i);
        if (&parm->getTemplate() != &child)
            continue;
        saved.erase(parm->getName());
        order.erase(std::remove(order.begin(), order.end(), parm->getName()), order.end());
    }
}

/// A spare parameter that one of the operator's templates now takes a name or channel of is
/// renamed as spareadd names a clashing spare ("amt1"; an instance pattern "w#_1"), keeping
/// its value (not those of renamed instances, which start at their defaults); references to it are
/// not repaired.
void renameTakenSpares(const HostParmTemplate *own_templates, HostParmTemplateList &spares,
                       const HostParmList &old_parms, std::vector<std::string> &order,
                       std::map<std::string, SavedParm> &saved)
{
    std::set<std::string> own, own_instances, taken;
    for (const HostParmTemplate *t = own_templates; t && !t->isTerminator(); ++t)
    {
        addNames(*t, own);
        for (int c = 0; c < t->getNumChildren(); ++c)
            addNames(t->getChild(c), own_instances);
    }
    taken = own;
    for (int i = 0; i < spares.size(); ++i)
        addNames(spares[i], taken);
    for (int i = 0; i < spares.size(); ++i)
    {
        HostParmTemplate &t = spares[i];
        for (int c = 0; c < t.getNumChildren(); ++c)
            if (takesAny(t.getChild(c), own_instances))
            {
                forgetInstances(t.getChild(c), old_parms, order, saved);
                renameFree(t.getChild(c), "_", own_instances);
            }
        if (!takesAny(t, own))
            continue;
        const std::string old_name = t.getName();
        renameFree(t, "", taken);
        // The value saved under the old name was the spare parameter's: it moves with it.
        const HostParm *old_parm = old_parms.getParm(old_name);
        auto found = saved.find(old_name);
        if (old_parm && old_parm->isSpare() && found != saved.end())
        {
            saved.emplace(t.getName(), std::move(found->second));
            saved.erase(found);
            std::replace(order.begin(), order.end(), old_name, t.getName());
        }
    }
}
} // namespace

void HostNode::setSpareTemplates(const HostParmTemplateList &templates)
{
    std::vector<std::string> order;
    std::map<std::string, SavedParm> saved;
    saveParms(*myParms, /*spare_only=*/true, order, saved);
    // The spare parameters point into the old templates: remove them before replacing.
    myParms->removeSpareParms();
    mySpareTemplates = templates;
    myParms->appendSpareParms(mySpareTemplates.data());
    restoreParms(*myParms, order, saved);
    sendEvent(HOST_NODE_INTERFACE_CHANGED);
}

void HostNode::setSpareLayout(const HostSpareLayout &layout)
{
    mySpareImports = layout.myImports;
    setSpareTemplates(layout.myTemplates);
}

void HostNode::rebuildParms()
{
    std::vector<std::string> order;
    std::map<std::string, SavedParm> saved;
    saveParms(*myParms, /*spare_only=*/false, order, saved);
    renameTakenSpares(myOperator ? myOperator->getParmTemplates() : nullptr, mySpareTemplates,
                      *myParms, order, saved);
    buildParms();
    restoreParms(*myParms, order, saved);
    sendEvent(HOST_NODE_TEMPLATES_CHANGED);
}

void HostNode::setFlag(unsigned mask, bool on)
{
    const unsigned flags = on ? (myFlags | mask) : (myFlags & ~mask);
    if (flags == myFlags)
        return;
    myFlags = flags;
    sendEvent(HOST_NODE_FLAG_CHANGED);
}

void HostNode::addEventCallback(void *callee, HostNodeEventCallback cb)
{
    myCallbacks.add(callee, cb);
}

void HostNode::removeEventCallback(void *callee, HostNodeEventCallback cb)
{
    myCallbacks.remove(callee, cb);
}

bool HostNode::hasEventCallback(void *callee, HostNodeEventCallback cb) const
{
    return myCallbacks.contains(callee, cb);
}

int HostNode::getNumEventCallbacks() const
{
    return myCallbacks.size();
}

void HostNode::sendEvent(HostNodeEvent event, void *data)
{
    // Callbacks added during the send are not called for this event.
    myCallbacks.forEach([&](void *callee, HostNodeEventCallback cb)
                        { cb(this, callee, event, data); });
}
