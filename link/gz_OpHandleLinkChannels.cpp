// GZ_OpHandleLink: the channel operations of a handle — keys, channels, locks, defaults,
// scoping and key navigation over every bound component.
#include "link/GZ_OpHandleLink.h"

#include "host/HostChannel.h"
#include "host/HostCommandManager.h"
#include "host/HostNode.h"
#include "host/HostParm.h"
#include "link/gz_Binding.h"
#include "link/gz_References.h"
#include "link/gz_Resolved.h"
#include "link/gz_UndoBlock.h"
#include "resource/GZ_ResourceManager.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

/// One component reached by the per-node walk: the final component after channel
/// references, and the parameter the binding named before they were followed.
struct GZ_OpHandleLink::BoundComponent
{
    HostNode *myNode = nullptr;
    HostParm *myParm = nullptr;
    int myVectorIndex = -1;
    HostParm *myBoundParm = nullptr;
};

namespace
{

/// Key times this close to the current time count as the current time when looking for the
/// next or previous key (the host's single-precision tolerance).
constexpr double theKeyTolerance = static_cast<double>(1e-5f);

/// Saves the parameter for undo and announces the change before `apply`, and notifies the
/// node's listeners after it, as every user-visible change of a parameter does.
template <typename Apply> void changeParm(HostNode &node, HostParm &parm, Apply apply)
{
    node.saveParmForUndo(parm);
    node.parmChanging(parm);
    apply();
    node.parmChanged(parm);
}

void runCommand(const std::string &text)
{
    HostCommandManager::getInstance()->execute(text);
}

bool cacheActive()
{
    return GZ_ResourceManager::cacheParms() > 0;
}

/// The key time nearest to `time` in one direction, ignoring keys within the tolerance of
/// `time`; false when there is none.
bool nearestKey(const HostParm &parm, int k, double time, int direction, double &key_time)
{
    double from = time;
    for (;;)
    {
        const bool found = direction < 0 ? parm.getPrevKeyTime(k, from, key_time)
                                         : parm.getNextKeyTime(k, from, key_time);
        if (!found)
            return false;
        if (std::fabs(key_time - time) > theKeyTolerance)
            return true;
        from = key_time;
    }
}

/// Removes the key of component k at `time`; a channel left without segments goes, and the
/// component keeps the removed key's value rather than what an empty channel reads.
void removeKeyAt(HostParm &parm, int k, double time)
{
    const double value = parm.getChannel(k)->evaluateKeys(time);
    parm.removeKey(k, time);
    if (parm.getNumSegments(k) != 0)
        return;
    parm.destroyChannel(k, time);
    parm.setValue(k, value);
}

} // namespace

// ---------------------------------------------------------------------------------------
// Iteration

void GZ_OpHandleLink::forEachChannelNode(int opnum, const std::function<void(int)> &fn) const
{
    if (opnum >= 0)
    {
        fn(opnum);
        return;
    }
    // Node 0 always takes part (the walk skips it when it is missing); later nodes only up
    // to the first gap.
    fn(0);
    for (int i = 1; i < getKeyframeNumOps() && getKeyframeOpNode(i); ++i)
        fn(i);
}

void GZ_OpHandleLink::walkBoundComponents(int opnum, int first, int last, bool on_attached,
                                          const ComponentFn &fn) const
{
    HostNode *node = on_attached ? getOpNode(opnum) : getKeyframeOpNode(opnum);
    if (!node)
        return;
    const StringArray &bindings = allParmNames(opnum);
    const int size = static_cast<int>(bindings.size());
    const bool every = first < 0 || last < 0;
    const int lo = every ? 0 : first;
    const int hi = every ? size - 1 : std::min(last, size - 1);
    const double time = getTime();
    for (int i = hi; i >= lo; --i)
    {
        const std::string &binding = bindings[static_cast<size_t>(i)];
        if (binding.empty() || gz::isExpressionBinding(binding))
            continue;
        std::string channel;
        extractChannelName(channel, binding);
        BoundComponent c;
        if (channel.empty() || !node->resolveChannel(channel, c.myNode, c.myParm, c.myVectorIndex))
            continue;
        c.myBoundParm = c.myParm;
        gz::followReferences(time, c.myNode, c.myParm, c.myVectorIndex);
        if (!c.myNode || !c.myParm)
            continue;
        fn(c);
    }
}

bool GZ_OpHandleLink::watchesParm(const HostParm &parm) const
{
    const std::vector<HostParmInterest> &interests = parm.getInputInterests();
    return std::any_of(interests.begin(), interests.end(),
                       [this](const HostParmInterest &interest)
                       { return interest.myCallee == this; });
}

void GZ_OpHandleLink::changeBoundComponents(int opnum, const char *undo_name, bool on_attached,
                                            const ComponentFn &fn)
{
    gz_UndoBlock block(undo_name);
    forEachChannelNode(opnum, [&](int i) { walkBoundComponents(i, -1, -1, on_attached, fn); });
}

// ---------------------------------------------------------------------------------------
// Keys and channels

void GZ_OpHandleLink::setKeys(int opnum, int first, int last, const char *undo_name)
{
    if (first > last)
        return;
    gz_UndoBlock block(undo_name ? undo_name : "Create Key(s)");

    const bool scope_on_key = GZ_ResourceManager::getScopeChannelsOnKey();
    const bool add_scoped = GZ_ResourceManager::getAddScopedChannels();
    // The scope command is built only when the host does not collect the keys itself.
    const bool scoping = !cacheActive() && scope_on_key;
    std::string command;
    if (scoping)
        GZ_ResourceManager::getChannelScopeCommandPrefix(command);
    const char *marker = add_scoped ? "+" : "";
    bool named = false;
    const double time = getTime();

    auto key = [&](const BoundComponent &c)
    {
        if (!c.myBoundParm->getType().isAnimatable() ||
            !c.myNode->canModifyFromUI(*c.myParm, c.myVectorIndex))
            return;
        if (cacheActive())
        {
            GZ_ResourceManager::setParmsCacheBehaviour(/*set_key=*/true, scope_on_key, add_scoped);
            GZ_ResourceManager::appendToParmsCache(c.myNode, c.myParm, c.myVectorIndex);
            return;
        }
        changeParm(*c.myNode, *c.myParm, [&]() { c.myParm->setKey(c.myVectorIndex, time); });
        if (!scoping)
            return;
        command += " ";
        command += marker;
        command += c.myNode->getFullPath() + "/" + c.myParm->getChannelName(c.myVectorIndex);
        named = true;
    };
    forEachChannelNode(opnum, [&](int i)
                       { walkBoundComponents(i, first, last, /*on_attached=*/false, key); });
    // A bare prefix would list the scope instead of setting it.
    if (named)
        runCommand(command);
}

void GZ_OpHandleLink::removeKeys(int opnum)
{
    const double time = getTime();
    changeBoundComponents(
        opnum, "Remove Key(s)", /*on_attached=*/true,
        [time](const BoundComponent &c)
        {
            const int k = c.myVectorIndex;
            if (!c.myNode->canModifyFromUI(*c.myParm, k) || !c.myParm->isKeyAt(k, time))
                return;
            changeParm(*c.myNode, *c.myParm, [&]() { removeKeyAt(*c.myParm, k, time); });
        });
}

void GZ_OpHandleLink::deleteChannels(int opnum)
{
    const double time = getTime();
    changeBoundComponents(
        opnum, "Delete Channels", /*on_attached=*/false,
        [time](const BoundComponent &c)
        {
            const int k = c.myVectorIndex;
            if (!c.myParm->hasChannel(k) || !c.myNode->canModifyFromUI(*c.myParm, k))
                return;
            changeParm(*c.myNode, *c.myParm, [&]() { c.myParm->destroyChannel(k, time); });
        });
}

void GZ_OpHandleLink::copyKeyStructure(int from, int to)
{
    Resolved src, dst;
    if (!resolve(from, -1, nullptr, 0, /*project=*/true, src) || src.myIsExpression ||
        !resolve(to, -1, nullptr, 0, /*project=*/true, dst) || dst.myIsExpression)
        return;
    const double time = getTime();
    gz::followReferences(time, src.myParmNode, src.myParm, src.myVectorIndex);
    gz::followReferences(time, dst.myParmNode, dst.myParm, dst.myVectorIndex);
    if (!src.myParm || !dst.myParmNode || !dst.myParm)
        return;
    HostParm &parm = *dst.myParm;
    const int k = dst.myVectorIndex;
    if (!dst.myParmNode->canModifyFromUI(parm, k))
        return;
    const double value = parm.evalFloat(k, time);
    changeParm(*dst.myParmNode, parm,
               [&]()
               {
                   if (!src.myParm->hasChannel(src.myVectorIndex))
                   {
                       parm.destroyChannel(k, time);
                       return;
                   }
                   parm.copyChannel(k, *src.myParm, src.myVectorIndex);
                   parm.setValue(k, value);
               });
}

// ---------------------------------------------------------------------------------------
// Locks and defaults

void GZ_OpHandleLink::lockParms(int opnum)
{
    changeBoundComponents(opnum, "Lock Parms", /*on_attached=*/false,
                          [](const BoundComponent &c)
                          {
                              const int k = c.myVectorIndex;
                              if (!c.myNode->canAccess(HostNode::ACCESS_WRITE, *c.myParm) ||
                                  !c.myParm->isEnabled(k))
                                  return;
                              changeParm(*c.myNode, *c.myParm,
                                         [&]() { c.myParm->setLocked(k, !c.myParm->isLocked(k)); });
                          });
}

void GZ_OpHandleLink::revertToDefaults(int opnum)
{
    changeBoundComponents(opnum, "Revert To Defaults", /*on_attached=*/false,
                          [this](const BoundComponent &c)
                          {
                              const int k = c.myVectorIndex;
                              if (watchesParm(*c.myBoundParm) || watchesParm(*c.myParm) ||
                                  !c.myNode->canModifyFromUI(*c.myParm, k))
                                  return;
                              changeParm(*c.myNode, *c.myParm,
                                         [&]() { c.myParm->revertToDefault(k); });
                          });
}

void GZ_OpHandleLink::revertToFactoryDefaults(int opnum)
{
    changeBoundComponents(opnum, "Revert To Factory Defaults", /*on_attached=*/false,
                          [this](const BoundComponent &c)
                          {
                              const int k = c.myVectorIndex;
                              if (watchesParm(*c.myBoundParm) || watchesParm(*c.myParm) ||
                                  !c.myNode->canAccess(HostNode::ACCESS_WRITE, *c.myParm))
                                  return;
                              changeParm(*c.myNode, *c.myParm,
                                         [&]()
                                         {
                                             c.myParm->restoreFactoryDefault(k);
                                             c.myParm->revertToDefault(k);
                                         });
                          });
}

void GZ_OpHandleLink::overwriteDefaults(int opnum)
{
    const double time = getTime();
    // Defaults are not part of the undoable state of a scene edit: no block, no record.
    forEachChannelNode(opnum,
                       [&](int i)
                       {
                           walkBoundComponents(
                               i, -1, -1, /*on_attached=*/false,
                               [&](const BoundComponent &c)
                               {
                                   if (watchesParm(*c.myBoundParm) || watchesParm(*c.myParm))
                                       return;
                                   c.myParm->overwriteDefault(c.myVectorIndex, time);
                               });
                       });
}

// ---------------------------------------------------------------------------------------
// Scoping and key navigation

void GZ_OpHandleLink::editChannels(int add_mode, int opnum)
{
    std::string overrides = "chopscope";
    bool any_override = false;
    std::string scope;
    GZ_ResourceManager::getChannelScopeCommandPrefix(scope);
    bool any_channel = false;
    // One pattern per node: a new one starts whenever the component belongs to another node
    // than the previous one (a channel reference may lead elsewhere).
    const HostNode *pattern_node = nullptr;

    auto add = [&](const BoundComponent &c)
    {
        const std::string &path = c.myParm->getChannelOverride(c.myVectorIndex);
        if (!path.empty())
        {
            overrides += " " + path;
            any_override = true;
        }
        if (cacheActive())
        {
            GZ_ResourceManager::setParmsCacheBehaviour(/*set_key=*/false, /*scope_channels=*/true,
                                                       add_mode != 0);
            GZ_ResourceManager::appendToParmsCache(c.myNode, c.myParm, c.myVectorIndex);
            return;
        }
        if (c.myNode != pattern_node)
        {
            scope += " -a ";
            if (add_mode)
                scope += "+";
            scope += c.myNode->getFullPath() + "/";
            pattern_node = c.myNode;
        }
        else
        {
            scope += ",";
        }
        scope += c.myParm->getChannelName(c.myVectorIndex);
        any_channel = true;
    };
    forEachChannelNode(opnum,
                       [&](int i)
                       {
                           pattern_node = nullptr;
                           walkBoundComponents(i, -1, -1, /*on_attached=*/false, add);
                       });
    if (any_override)
        runCommand(overrides);
    if (any_channel)
        runCommand(scope);
}

void GZ_OpHandleLink::findKey(int direction, int opnum)
{
    const double time = getTime();
    bool found = false;
    double best = 0.0;
    auto look = [&](const BoundComponent &c)
    {
        double key_time = 0.0;
        if (!nearestKey(*c.myParm, c.myVectorIndex, time, direction, key_time))
            return;
        const bool better = direction < 0 ? key_time > best : key_time < best;
        if (!found || better)
            best = key_time;
        found = true;
    };
    forEachChannelNode(opnum,
                       [&](int i) { walkBoundComponents(i, -1, -1, /*on_attached=*/false, look); });
    if (!found)
        return;
    // Room for any finite double in %f form.
    char command[400];
    std::snprintf(command, sizeof(command), "tcur %f", best);
    runCommand(command);
}
