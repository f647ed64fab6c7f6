// GZ_OpHandleLink: attaching nodes, bindings, events, settings, equality and the bind commands.
#include "link/GZ_OpHandleLink.h"

#include "host/HostChannelManager.h"
#include "host/HostCommandArgs.h"
#include "host/HostCommandManager.h"
#include "host/HostDirector.h"
#include "host/HostOperator.h"
#include "host/HostParm.h"
#include "link/GZ_SettingList.h"
#include "link/gz_Binding.h"
#include "link/gz_References.h"
#include "link/gz_SharedBindings.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_ResourceManager.h"

#include <algorithm>
#include <ostream>

/// Where an input-group interest was registered, so that it can be removed there even after
/// the owner path or the bindings changed. The watched node is found again by its unique id,
/// so a node deleted in the meantime is simply not found.
struct GZ_OpHandleLink::InterestRecord
{
    HostNode *myAttached;
    int myHandleParmIndex;
    InterestCallback myCallback;
    HostDirector *myDirector;
    int myNodeId;
    std::string myParmName;
    std::string myName;

    void unregister(GZ_OpHandleLink *link) const
    {
        HostNode *node = myDirector->findNodeById(myNodeId);
        HostParm *parm = node ? node->getParm(myParmName) : nullptr;
        if (parm)
            parm->removeInputInterest(HostParmInterest{link, myCallback});
    }
};

namespace
{

const GZ_OpHandleLink::StringArray theNoParmNames;

bool isLinkableBinding(const std::string &binding)
{
    return !binding.empty() && !gz::isExpressionBinding(binding);
}

const char *orEmpty(const char *text)
{
    return text ? text : "";
}

} // namespace

GZ_OpHandleLink::GZ_OpHandleLink(const GZ_GZTemplate &gz_template)
    : myTemplate(&gz_template), myHandleParmOpnums(gz_template.parmNameList().size(), 0),
      myRootDescription(gz_template.name()), myActiveColor(getDefaultColor())
{
}

GZ_OpHandleLink::~GZ_OpHandleLink()
{
    // The interest table may belong to the derived object, which is gone by now; the
    // records say where every interest was registered.
    myCurrentInterests = nullptr;
    detachAll();
    clearOpTypeParmNamesMap();
    // Whatever detachAll could not reach by opnum (interests registered before a node list
    // changed) must not outlive the link either.
    for (InterestRecord &record : myInterestRecords)
        record.unregister(this);
    myInterestRecords.clear();
    freeProxy();
}

const HostColor &GZ_OpHandleLink::getDefaultColor()
{
    static const HostColor theDefaultColor(HostColor::RGB, 1.0, 0.0, 0.0);
    return theDefaultColor;
}

// ---------------------------------------------------------------------------------------
// Template and bookkeeping

int GZ_OpHandleLink::getNumHandleParms() const
{
    return static_cast<int>(myTemplate->parmNameList().size());
}

int GZ_OpHandleLink::findHandleParmIndex(const char *name) const
{
    if (!name)
        return -1;
    const auto &table = myTemplate->parmNameTable();
    auto it = table.find(name);
    return it == table.end() ? -1 : it->second;
}

bool GZ_OpHandleLink::ethereal() const
{
    return myTemplate->getEthereal() != 0;
}

GZ_OpHandleLink::StringArray &GZ_OpHandleLink::opParmNames(const char *operator_type_name)
{
    auto it = myOpTypeParmNames.find(orEmpty(operator_type_name));
    if (it == myOpTypeParmNames.end())
        it = myOpTypeParmNames
                 .emplace(orEmpty(operator_type_name),
                          std::make_shared<StringArray>(getNumHandleParms()))
                 .first;
    // Held by the pool or a node's list as well, the list is copied before anybody changes
    // it; held by this entry alone, it was made here (non-const) and is nobody else's.
    std::shared_ptr<const StringArray> &names = it->second;
    if (names.use_count() != 1)
        names = std::make_shared<StringArray>(*names);
    return const_cast<StringArray &>(*names);
}

std::shared_ptr<const GZ_OpHandleLink::StringArray>
GZ_OpHandleLink::sharedOpParmNames(const std::string &operator_type_name)
{
    auto it = myOpTypeParmNames.find(operator_type_name);
    if (it == myOpTypeParmNames.end())
        it = myOpTypeParmNames
                 .emplace(operator_type_name, std::make_shared<StringArray>(getNumHandleParms()))
                 .first;
    it->second = gz_SharedBindings::intern(std::move(it->second));
    return it->second;
}

void GZ_OpHandleLink::clearOpTypeParmNamesMap()
{
    myOpTypeParmNames.clear();
}

int GZ_OpHandleLink::linkOpParm(const char *operator_type_name, int handle_parm_index,
                                const char *binding)
{
    StringArray &names = opParmNames(operator_type_name);
    if (handle_parm_index < 0 || handle_parm_index >= static_cast<int>(names.size()))
        return 1;
    names[handle_parm_index] = orEmpty(binding);
    if (isLinkableBinding(names[handle_parm_index]))
        justLinked(handle_parm_index);
    else
        myHandleParmOpnums[handle_parm_index] = 0;
    return 1;
}

int GZ_OpHandleLink::linkOpParmToHandleParm(const char *operator_type_name,
                                            const char *handle_parm_name, const char *binding)
{
    int index = findHandleParmIndex(handle_parm_name);
    if (index < 0)
        return 0;
    return linkOpParm(operator_type_name, index, binding);
}

const GZ_OpHandleLink::StringArray &GZ_OpHandleLink::allParmNames(int opnum) const
{
    if (opnum < 0 || opnum >= getLinkedParmCount())
        return theNoParmNames;
    return *myNodeParmNames[opnum];
}

int GZ_OpHandleLink::getOpnumForHandleParmIndex(int index) const
{
    if (index < 0 || index >= static_cast<int>(myHandleParmOpnums.size()))
        return -1;
    return myHandleParmOpnums[index];
}

std::string GZ_OpHandleLink::bindingOf(int opnum, int index) const
{
    const StringArray &names = allParmNames(opnum);
    if (index < 0 || index >= static_cast<int>(names.size()))
        return std::string();
    return names[index];
}

void GZ_OpHandleLink::addParmNames(int opnum)
{
    HostNode *node = getOpNode(opnum);
    const std::string type = node ? node->getOperatorName() : std::string();
    myNodeParmNames.push_back(sharedOpParmNames(type));
}

void GZ_OpHandleLink::removeParmNames(int opnum)
{
    if (opnum < 0 || opnum >= getLinkedParmCount())
        return;
    myNodeParmNames.erase(myNodeParmNames.begin() + opnum);
}

// ---------------------------------------------------------------------------------------
// Nodes

HostNode *GZ_OpHandleLink::getOpNode(int i) const
{
    return (i >= 0 && i < getNumOps()) ? myOps[i] : nullptr;
}

HostNode *GZ_OpHandleLink::getKeyframeOpNode(int i) const
{
    return (i >= 0 && i < getKeyframeNumOps()) ? myKeyframeOps[i] : nullptr;
}

int GZ_OpHandleLink::indexOfOp(const HostNode &node) const
{
    if (!hasOpNode(node))
        return -1;
    auto it = std::find(myOps.begin(), myOps.end(), &node);
    return static_cast<int>(it - myOps.begin());
}

void GZ_OpHandleLink::attachForKeyframe(HostNode &node)
{
    if (hasKeyframeOpNode(node))
        return;
    myKeyframeOps.push_back(&node);
    myKeyframeSet.insert(&node);
    node.addEventCallback(this, &GZ_OpHandleLink::handleOpChangeCallback);
}

void GZ_OpHandleLink::detachForKeyframe(HostNode &node)
{
    if (!hasKeyframeOpNode(node))
        return;
    node.removeEventCallback(this, &GZ_OpHandleLink::handleOpChangeCallback);
    myKeyframeOps.erase(std::find(myKeyframeOps.begin(), myKeyframeOps.end(), &node));
    myKeyframeSet.erase(&node);
}

void GZ_OpHandleLink::detachAllForKeyframe()
{
    for (int i = getKeyframeNumOps() - 1; i >= 0; --i)
        myKeyframeOps[i]->removeEventCallback(this, &GZ_OpHandleLink::handleOpChangeCallback);
    myKeyframeOps.clear();
    myKeyframeSet.clear();
}

int GZ_OpHandleLink::attach(HostNode &node)
{
    attachForKeyframe(node);
    if (hasOpNode(node))
        return -1;

    myOps.push_back(&node);
    myOpSet.insert(&node);
    const int opnum = getNumOps() - 1;
    addParmNames(opnum);
    addAllInputGroupInterests(opnum);

    if (GZ_ResourceManager::getHideLockedHandleParts())
    {
        for (int i = getNumHandleParms() - 1; i >= 0; --i)
        {
            const int op = myHandleParmOpnums[i];
            HostNode *bound = getOpNode(op);
            const std::string binding = bindingOf(op, i);
            if (!bound || binding.empty())
                continue;
            std::string channel;
            extractChannelName(channel, binding);
            if (isLinkableBinding(channel) && isOpParmLocked(channel, *bound, getTime()))
                justUnlinked(i);
        }
    }

    buildDescription();
    return 0;
}

int GZ_OpHandleLink::detach(HostNode &node)
{
    detachForKeyframe(node);
    const int k = indexOfOp(node);
    if (k < 0)
        return -1;

    for (int i = getNumHandleParms() - 1; i >= 0; --i)
    {
        int &op = myHandleParmOpnums[i];
        if (op == k)
            op = 0;
        else if (op > k)
            --op;
    }
    removeAllInputGroupInterests(k);
    removeParmNames(k);
    myOps.erase(myOps.begin() + k);
    myOpSet.erase(&node);
    buildDescription();
    return 0;
}

void GZ_OpHandleLink::detachAll()
{
    detachAllForKeyframe();
    for (int i = getNumOps() - 1; i >= 0; --i)
        removeAllInputGroupInterests(i);
    myNodeParmNames.clear();
    myHandleParmOpnums.assign(getNumHandleParms(), 0);
    myOps.clear();
    myOpSet.clear();
    buildDescription();
}

HostNode *GZ_OpHandleLink::findOpNode(int network_type_id, const char *operator_type_name) const
{
    const std::string type = orEmpty(operator_type_name);
    for (HostNode *node : myOps)
    {
        if (!node)
            break;
        if (node->getNetworkTypeId() == network_type_id && node->getOperatorName() == type)
            return node;
    }
    return nullptr;
}

HostNode *GZ_OpHandleLink::getOwnerOpRelativeTo(HostNode *node) const
{
    if (!node)
        return nullptr;
    if (myOwnerOp.empty())
        return node;
    return node->findNode(myOwnerOp);
}

HostOperator *GZ_OpHandleLink::lastSettingsOperatorTypeRestriction() const
{
    if (!myAllowOpTypeSettings || getNumOps() != 1)
        return nullptr;
    return myOps[0]->getOperator();
}

int GZ_OpHandleLink::refreshBindings(int network_type_id, const char *operator_type_name)
{
    return findOpNode(network_type_id, operator_type_name) ? 0 : 1;
}

// ---------------------------------------------------------------------------------------
// Description and simple virtual defaults

void GZ_OpHandleLink::setRootDescription(const char *text)
{
    myRootDescription = orEmpty(text);
    buildDescription();
}

void GZ_OpHandleLink::buildDescription()
{
    const std::string previous = myDescription;
    if (getShowOpPath() && getNumOps() > 0)
        myDescription = myRootDescription + ": " + myOps[0]->getFullPath();
    else
        myDescription = myRootDescription;
    descriptionChanged(previous.c_str());
}

void GZ_OpHandleLink::descriptionChanged(const char *) {}
void GZ_OpHandleLink::onDeletion() {}
void GZ_OpHandleLink::handleOpUIChange(HostNode &) {}
int GZ_OpHandleLink::wantsOpNodeChange(const HostNode &) const
{
    return 0;
}
bool GZ_OpHandleLink::flagOpNodeChangeNeeded(HostNode &)
{
    return false;
}
void GZ_OpHandleLink::forceUpdateFromOpParms() {}
void GZ_OpHandleLink::updateFromOpParms() {}
int GZ_OpHandleLink::justLinked(int)
{
    return 1;
}
void GZ_OpHandleLink::justUnlinked(int) {}
int GZ_OpHandleLink::hasTimeInterest() const
{
    return 1;
}

GZ_OpHandleLink::GZ_Interest *GZ_OpHandleLink::getInputGroupInterests() const
{
    static GZ_Interest theNoInterests[1] = {GZ_Interest(-1, nullptr)};
    return theNoInterests;
}

void GZ_OpHandleLink::setActiveColor(const HostColor &color)
{
    myActiveColor = color;
}

void GZ_OpHandleLink::setOwnerOp(const char *path)
{
    myOwnerOp = orEmpty(path);
}

void GZ_OpHandleLink::setOwnerOpGroup(const char *name)
{
    myOwnerOpGroup = orEmpty(name);
}

double GZ_OpHandleLink::getTime() const
{
    if (myIsTimeOverride)
        return myTimeOverrideTime;
    return HostChannelManager::get().getEvaluateTime();
}

void GZ_OpHandleLink::allocProxy(void *owner)
{
    freeProxy();
    myProxyDirector = HostDirector::instance();
    myProxyIndex = myProxyDirector->allocProxy(owner);
}

void GZ_OpHandleLink::freeProxy()
{
    // A proxy lives in the director that made it; never free it in another one.
    if (myProxyIndex >= 0 && myProxyDirector == HostDirector::instance())
        myProxyDirector->freeProxy(myProxyIndex);
    myProxyIndex = -1;
    myProxyDirector = nullptr;
}

// ---------------------------------------------------------------------------------------
// Locked parts and binding state

bool GZ_OpHandleLink::isOpParmLocked(const std::string &channel_name, HostNode &node, double time,
                                     HostParm **out_parm, HostNode **out_node)
{
    HostNode *found_node = nullptr;
    HostParm *parm = nullptr;
    int vi = -1;
    if (out_parm)
        *out_parm = nullptr;
    if (out_node)
        *out_node = nullptr;
    if (!node.resolveChannel(channel_name, found_node, parm, vi))
        return false;
    if (out_parm)
        *out_parm = parm;
    if (out_node)
        *out_node = found_node;
    if (parm->isLocked(vi))
        return true;

    gz::followReferences(time, found_node, parm, vi);
    if (out_parm)
        *out_parm = parm;
    if (out_node)
        *out_node = found_node;
    const bool drivable = found_node && parm && parm->isVisible() &&
                          found_node->canAccess(HostNode::ACCESS_WRITE, *parm) &&
                          !parm->isLocked(vi);
    return !drivable;
}

void GZ_OpHandleLink::updateParmLockStatus(HostNode &node)
{
    int k = -1;
    for (int i = getNumOps() - 1; i >= 0; --i)
        if (myOps[i] == &node)
        {
            k = i;
            break;
        }
    if (k < 0)
        return;

    const StringArray &names = allParmNames(k);
    for (int i = static_cast<int>(names.size()) - 1; i >= 0; --i)
    {
        std::string channel;
        extractChannelName(channel, names[i]);
        if (!isLinkableBinding(channel))
            continue;
        HostNode *found_node = nullptr;
        HostParm *parm = nullptr;
        int vi = -1;
        if (!node.resolveChannel(channel, found_node, parm, vi))
            continue;
        bool drivable = !parm->isLocked(vi);
        if (drivable)
        {
            gz::followReferences(getTime(), found_node, parm, vi);
            drivable = found_node && parm && parm->isVisible() &&
                       found_node->canAccess(HostNode::ACCESS_WRITE, *parm) && !parm->isLocked(vi);
        }
        if (drivable)
            justLinked(i);
        else
            justUnlinked(i);
    }
}

void GZ_OpHandleLink::handleOpNodeChange(HostNode &node)
{
    if (GZ_ResourceManager::getHideLockedHandleParts())
        updateParmLockStatus(node);
}

void GZ_OpHandleLink::isolateHandleParms(int first, const StringArray &names)
{
    std::unordered_set<std::string> keep;
    for (size_t i = first < 0 ? 0 : static_cast<size_t>(first); i < names.size(); ++i)
        keep.insert(names[i]);
    const StringArray &parms = myTemplate->parmNameList();
    for (int i = 0; i < static_cast<int>(parms.size()); ++i)
        if (keep.count(parms[i]) == 0)
            justUnlinked(i);
}

void GZ_OpHandleLink::setBindingState(bool active)
{
    const double time = HostChannelManager::get().getEvaluateTime();
    for (int k = 0; k < getNumOps(); ++k)
    {
        for (const std::string &binding : allParmNames(k))
        {
            if (binding.empty())
                continue;
            std::string channel;
            extractChannelName(channel, binding);
            HostNode *node = nullptr;
            HostParm *parm = nullptr;
            int vi = -1;
            if (!myOps[k]->resolveChannel(channel, node, parm, vi))
                continue;
            gz::followReferences(time, node, parm, vi);
            if (parm)
                parm->setActive(vi, active);
        }
    }
    if (GZ_ResourceManager *manager = GZgetResourceManager())
        manager->updateViewports(0, nullptr, true);
}

// ---------------------------------------------------------------------------------------
// Node events and time

void GZ_OpHandleLink::handleOpChangeCallback(HostNode *node, void *callee, HostNodeEvent event,
                                             void *data)
{
    static_cast<GZ_OpHandleLink *>(callee)->handleOpChange(node, event, data);
}

void GZ_OpHandleLink::handleOpChange(HostNode *node, HostNodeEvent event, void *)
{
    if (!node || event < HOST_NODE_DELETED || event > HOST_NODE_TEMPLATES_CHANGED)
        return;
    switch (event)
    {
    case HOST_NODE_DELETED:
        if (hasOpNode(*node))
            detach(*node);
        else if (hasKeyframeOpNode(*node))
            detachForKeyframe(*node);
        if (getNumOps() > 0)
            handleTimeChange();
        break;
    case HOST_NODE_PARM_CHANGED:
    case HOST_NODE_FLAG_CHANGED:
    case HOST_NODE_INPUT_CHANGED:
    case HOST_NODE_CHANNEL_CHANGED:
    case HOST_NODE_DATA_CHANGED:
        if (wantsOpNodeChange(*node))
            flagOpNodeChangeNeeded(*node);
        break;
    case HOST_NODE_INTERFACE_CHANGED:
    case HOST_NODE_TEMPLATES_CHANGED:
        handleOpUIChange(*node);
        break;
    default:
        break;
    }
}

void GZ_OpHandleLink::handleTimeChange()
{
    HostErrorSuppressScope quiet;
    if (myLateBinding)
        myLateBinding->updateHandleValues(this);
    updateFromOpParms();
}

// ---------------------------------------------------------------------------------------
// Input-group interests

std::string GZ_OpHandleLink::getFirstInputGroupInterestName() const
{
    return myInputGroupInterestNames.empty() ? std::string() : myInputGroupInterestNames[0];
}

void GZ_OpHandleLink::addAllInputGroupInterests(int opnum)
{
    myCurrentInterests = getInputGroupInterests();
    for (GZ_Interest *entry = myCurrentInterests; entry && entry->myCallback; ++entry)
        addInputGroupInterest(entry->myHandleParmIndex, entry->myCallback, opnum);

    HostNode *node = getOwnerOpRelativeTo(getOpNode(opnum));
    if (!node || myInputGroupInterestNames.empty())
        return;
    if (!node->getFlag(HostNode::FLAG_HARD_LOCKED))
        node->updateInputGroups(getTime(), /*notify=*/true);
}

int GZ_OpHandleLink::addInputGroupInterest(int handle_parm_index, InterestCallback callback,
                                           int opnum)
{
    const std::string binding = bindingOf(opnum, handle_parm_index);
    if (binding.empty() && myOwnerOpGroup.empty())
        return 0;
    HostNode *attached = getOpNode(opnum);
    HostNode *node = getOwnerOpRelativeTo(attached);
    if (!node)
        return 1;

    std::string name;
    extractChannelName(name, binding);
    if (!myOwnerOpGroup.empty())
        name = myOwnerOpGroup;
    HostNode *parm_node = nullptr;
    HostParm *parm = nullptr;
    int vi = -1;
    if (node->resolveChannel(name, parm_node, parm, vi))
    {
        parm->addInputInterest(HostParmInterest{this, callback});
        myInputGroupInterestNames.push_back(name);
        myInterestRecords.push_back(
            InterestRecord{attached, handle_parm_index, callback, parm_node->getDirector(),
                           parm_node->getUniqueId(), parm->getName(), name});
    }
    return 1;
}

void GZ_OpHandleLink::removeInputGroupInterest(int handle_parm_index, InterestCallback callback,
                                               int opnum)
{
    // Interests are removed where they were registered, which the records remember: the
    // owner path or the bindings may have changed since, and a parameter must never keep a
    // callback into a link that is gone.
    HostNode *attached = getOpNode(opnum);
    for (size_t i = 0; i < myInterestRecords.size();)
    {
        InterestRecord &record = myInterestRecords[i];
        if (record.myAttached != attached || record.myHandleParmIndex != handle_parm_index ||
            record.myCallback != callback)
        {
            ++i;
            continue;
        }
        record.unregister(this);
        auto name = std::find(myInputGroupInterestNames.begin(), myInputGroupInterestNames.end(),
                              record.myName);
        if (name != myInputGroupInterestNames.end())
            myInputGroupInterestNames.erase(name);
        myInterestRecords.erase(myInterestRecords.begin() + i);
    }
}

void GZ_OpHandleLink::removeAllInputGroupInterests(int opnum)
{
    for (GZ_Interest *entry = myCurrentInterests; entry && entry->myCallback; ++entry)
        removeInputGroupInterest(entry->myHandleParmIndex, entry->myCallback, opnum);

    // Interests added under an earlier interest table go too.
    HostNode *attached = getOpNode(opnum);
    for (size_t i = 0; i < myInterestRecords.size();)
    {
        if (myInterestRecords[i].myAttached == attached)
            removeInputGroupInterest(myInterestRecords[i].myHandleParmIndex,
                                     myInterestRecords[i].myCallback, opnum);
        else
            ++i;
    }
}

// ---------------------------------------------------------------------------------------
// Settings

void GZ_OpHandleLink::saveSettings(GZ_SettingList &settings, bool) const
{
    if (!myShowOpPath)
        settings.appendSetting("showoppath", false);
    if (myActiveColor != getDefaultColor())
        settings.appendSetting("color",
                               GZ_Vector3{myActiveColor.component(0), myActiveColor.component(1),
                                          myActiveColor.component(2)});
    if (!myOwnerOp.empty())
        settings.appendSetting("ownerop", myOwnerOp.c_str());
    if (!myOwnerOpGroup.empty())
        settings.appendSetting("owneropgroup", myOwnerOpGroup.c_str());
}

void GZ_OpHandleLink::loadSettings(const GZ_SettingList &settings)
{
    settings.getSetting("showoppath", myShowOpPath, true);
    buildDescription();

    const HostColor &dflt = getDefaultColor();
    GZ_Vector3 color;
    settings.getSetting("color", color,
                        GZ_Vector3{dflt.component(0), dflt.component(1), dflt.component(2)});
    setActiveColor(HostColor(dflt.model(), color.x, color.y, color.z));

    for (int i = 0; i < getNumOps(); ++i)
        removeAllInputGroupInterests(i);
    std::string text;
    settings.getSetting("ownerop", text, nullptr);
    setOwnerOp(text.c_str());
    settings.getSetting("owneropgroup", text, nullptr);
    setOwnerOpGroup(text.c_str());
    for (int i = 0; i < getNumOps(); ++i)
        addAllInputGroupInterests(i);
}

void GZ_OpHandleLink::updateSettings(const char *text)
{
    if (!text)
        return;
    GZ_SettingList parsed;
    parsed.loadFromSettingString(text);
    GZ_SettingList current;
    saveSettings(current, true);
    current.updateSettings(parsed);
    loadSettings(current);
}

void GZ_OpHandleLink::saveSettingsToAppropriateLocation()
{
    if (getNumOps() < 1)
        return;
    if (GZ_ResourceManager *manager = GZgetResourceManager())
        manager->saveGZSettingsToTables(*this);
}

void GZ_OpHandleLink::loadSettingsFromTables(bool use_last_table)
{
    if (getNumOps() < 1)
        return;
    if (GZ_ResourceManager *manager = GZgetResourceManager())
        manager->loadGZSettingsFromTables(*this, use_last_table);
}

void GZ_OpHandleLink::removeSettingsFromTables()
{
    if (getNumOps() < 1)
        return;
    if (GZ_ResourceManager *manager = GZgetResourceManager())
        manager->removeGZSettingsFromTables(*this);
}

// ---------------------------------------------------------------------------------------
// Equality and copying

int GZ_OpHandleLink::isEqual(const GZ_OpHandleLink &other) const
{
    if (myTemplate->name() != other.myTemplate->name())
        return 0;
    if (getNumOps() != other.getNumOps() || myId != other.myId)
        return 0;
    for (const HostNode *node : myOps)
        if (!other.hasOpNode(*node))
            return 0;
    if (getNumHandleParms() != other.getNumHandleParms())
        return 0;
    for (int i = 0; i < getNumHandleParms(); ++i)
    {
        const int mine = myHandleParmOpnums[i];
        const int theirs = other.myHandleParmOpnums[i];
        if (getOpNode(mine) != other.getOpNode(theirs))
            return 0;
        if (bindingOf(mine, i) != other.bindingOf(theirs, i))
            return 0;
    }
    return 1;
}

int GZ_OpHandleLink::setEqual(const GZ_OpHandleLink &other)
{
    if (myTemplate->name() != other.myTemplate->name())
        return 0;
    detachAll();
    clearOpTypeParmNamesMap();
    myId = other.myId;
    setActiveColor(other.myActiveColor);
    for (HostNode *node : other.myOps)
    {
        const std::string &type = node->getOperatorName();
        if (myOpTypeParmNames.count(type) == 0)
        {
            auto theirs = other.myOpTypeParmNames.find(type);
            if (theirs != other.myOpTypeParmNames.end())
            {
                const StringArray names = *theirs->second;
                for (int i = 0; i < static_cast<int>(names.size()); ++i)
                    if (!names[i].empty())
                        linkOpParm(type.c_str(), i, names[i].c_str());
            }
        }
        if (attach(*node) < 0)
            return 0;
    }
    myHandleParmOpnums = other.myHandleParmOpnums;
    return isEqual(other);
}

// ---------------------------------------------------------------------------------------
// Command operations

int GZ_OpHandleLink::writeOptions(std::ostream &os, const char *prefix) const
{
    const StringArray &parms = myTemplate->parmNameList();
    for (int k = 0; k < getNumOps(); ++k)
    {
        os << orEmpty(prefix) << " " << myOps[k]->getFullPath();
        const StringArray &names = allParmNames(k);
        for (int j = 0; j < static_cast<int>(names.size()) && j < getNumHandleParms(); ++j)
            if (!names[j].empty() && myHandleParmOpnums[j] == k)
            {
                // An expression binding holds quotes and blanks; protected, the pair reads
                // back as one word.
                os << " ";
                HostCommandManager::protectString(os, names[j] + ":" + parms[j]);
            }
        os << "\n";
    }
    return 1;
}

int GZ_OpHandleLink::runBindCommand(HostCommandArgs &args)
{
    const std::string &path = args.arg(2);
    HostNode *node = HostDirector::instance()->findNode(path);
    if (!node)
    {
        args.err() << "Unknown operator: " << path << "\n";
        return 1;
    }

    const std::string type = node->getOperatorName();
    const int k = indexOfOp(*node);
    if (k >= 0)
    {
        StringArray &names = opParmNames(type.c_str());
        for (int i = getNumHandleParms() - 1; i >= 0; --i)
        {
            if (myHandleParmOpnums[i] != k)
                continue;
            names[i].clear();
            myHandleParmOpnums[i] = 0;
        }
        detach(*node);
    }

    const int n = getNumOps();
    for (int a = 3; a < args.argc(); ++a)
    {
        const std::string &pair = args.arg(a);
        const size_t colon = pair.find(':');
        if (colon == std::string::npos || colon + 1 == pair.size())
        {
            args.err() << "Bad parameter pair: " << pair << "\n";
            continue;
        }
        const std::string parm_name = pair.substr(colon + 1);
        const int index = findHandleParmIndex(parm_name.c_str());
        if (index < 0)
        {
            args.err() << "Unknown handle parameter: " << parm_name << "\n";
            continue;
        }
        std::string &binding = opParmNames(type.c_str())[index];
        binding = pair.substr(0, colon);
        if (isLinkableBinding(binding))
            justLinked(index);
        // Expressions and empty bindings are driven by no node, but the pair names this one.
        myHandleParmOpnums[index] = n;
    }

    attach(*node);
    return 1;
}

int GZ_OpHandleLink::runUnbindCommand(HostCommandArgs &args)
{
    if (args.argc() == 2)
    {
        detachAll();
        return 1;
    }
    if (args.argc() != 3)
    {
        args.showUsage();
        return 1;
    }
    const std::string &path = args.arg(2);
    if (HostNode *node = HostDirector::instance()->findNode(path))
        detach(*node);
    else
        args.err() << "Unknown operator: " << path << "\n";
    return 1;
}

// ---------------------------------------------------------------------------------------
// Binding text

void GZ_OpHandleLink::extractProjection(std::string &out, const std::string &text, double &a,
                                        double &b, double &c, double &d)
{
    gz::Projection projection;
    gz::parseBinding(text, out, projection);
    a = projection.a;
    b = projection.b;
    c = projection.c;
    d = projection.d;
}

void GZ_OpHandleLink::extractChannelName(std::string &out, const std::string &text)
{
    gz::Projection projection;
    gz::parseBinding(text, out, projection);
}
