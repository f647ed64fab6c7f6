// GZ_OldParms: repairing the references to renamed and deleted parameters.
#include "scriptedit/GZ_OldParms.h"

#include "host/HostCommandManager.h"
#include "host/HostDirector.h"
#include "host/HostMultiParmLinks.h"
#include "host/HostNode.h"
#include "host/HostParm.h"
#include "host/HostPrefetch.h"
#include "host/HostRampNaming.h"
#include "host/HostReferenceIndex.h"
#include "host/HostSpareData.h"

#include <set>

namespace
{
using Pairs = std::vector<std::pair<std::string, std::string>>;

const char *const CONDITION_FIELDS[3] = {"Disable When", "Hide When", "No Cook When"};

std::string deletedLine(const std::string &name)
{
    return "The parameter '" + name + "' has been deleted,";
}

std::string changedLine(const gz_OldParm &rec)
{
    if (rec.isDeleted())
        return deletedLine(rec.getOldChannel());
    return "The parameter '" + rec.getOldChannel() + "' has been renamed to '" +
           rec.getNewChannel() + "',";
}

std::string referencedLine(const HostParm &parm, int k)
{
    return "        and is referenced by '" + parm.getNode()->getFullPath() + "/" +
           parm.getChannelName(k) + "'";
}

std::string expressionLine(const std::string &text)
{
    return "        in the expression '" + text + "'.";
}

// Runs a host command on the library's behalf: its output is not examined.
void runCommand(const std::string &text)
{
    HostExecOptions options;
    options.output = false;
    options.errors = false;
    HostCommandManager::getInstance()->execute(text, options);
}

bool mayModify(const HostParm &parm, int k)
{
    return parm.getNode()->canModify() && !parm.isLocked(k);
}
} // namespace

struct GZ_OldParms::Context
{
    HostNode *myNode;
    GZ_EditScriptedParms *myParms;
    std::vector<std::string> *myWarnings;
    Pairs *myRenamed;
    double myTime;
    /// Names of the edited node's parameters that this edit replaces: their own
    /// expressions go with them and are not repaired.
    std::set<std::string> myReplaced;
};

void GZ_OldParms::resolveOldParmLinks(int node_id, GZ_EditScriptedParms &parms,
                                      std::vector<std::string> &warnings, Pairs *renamed)
{
    HostNode *node = HostDirector::instance()->findNodeById(node_id);
    if (!node)
        return;
    Pairs local;
    Context ctx{node, &parms, &warnings, renamed ? renamed : &local, node->getDirector()->getTime(),
                {}};
    for (const gz_OldParm &rec : myRecords)
        if (rec.isChanged())
            ctx.myReplaced.insert(rec.myOriginalName);
    for (const gz_OldParm &rec : myRecords)
        if (rec.isChanged())
            resolveInInterface(rec, parms, *node, warnings);
    // The names each record's referrers are found under, worked out once for both passes.
    std::vector<Pairs> names(myRecords.size());
    for (size_t r = 0; r < myRecords.size(); ++r)
        if (myRecords[r].isChanged())
            addReferenceNames(myRecords[r], parms, names[r]);
    for (size_t r = 0; r < myRecords.size(); ++r)
        if (myRecords[r].isChanged())
            resolveOldParmChannels(myRecords[r], names[r], ctx);
    for (size_t r = 0; r < myRecords.size(); ++r)
        if (myRecords[r].isChanged())
            resolveOldMultiParmInfo(myRecords[r], names[r], ctx);
    for (const gz_OldParm &rec : myRecords)
        if (rec.isChanged())
            resolveOnNode(rec, ctx);
}

// Callbacks (in the command language only), conditions, tab conditions and defaults of
// every definition, from the last to the first.
void GZ_OldParms::resolveInInterface(const gz_OldParm &rec, GZ_EditScriptedParms &parms,
                                     const HostNode &node, std::vector<std::string> &warnings) const
{
    const std::string old_channel = rec.getOldChannel();
    const std::string new_channel = rec.getNewChannel();
    for (int i = parms.entries() - 1; i >= 0; --i)
    {
        GZ_EditScriptedParm &def = *parms.getParm(i);
        // Rewrites one field; a deleted record only reports the field that names it.
        auto fix = [&](const std::string &text, const std::string &field) -> std::string
        {
            std::string out;
            if (!getModifiedString(text, out, &node, &node, old_channel, new_channel))
                return text;
            if (!rec.isDeleted())
                return out;
            warnings.push_back(deletedLine(rec.myOriginalName));
            warnings.push_back("        but is referenced by the '" + field + "' field of '" +
                               def.getName() + "'.");
            return text;
        };
        if (def.getCallbackLanguage() != 1)
            if (const char *callback = def.getSpareValue(HostSpareData::CALLBACK_TAG))
            {
                const std::string text = fix(callback, "Callback");
                if (text != callback)
                    def.setSpareValue(HostSpareData::CALLBACK_TAG, text.c_str());
            }
        for (int c = 0; c < 3; ++c)
        {
            def.setCondition(c, fix(def.getCondition(c), CONDITION_FIELDS[c]));
            def.setTabCondition(
                c, fix(def.getTabCondition(c), std::string("Tab ") + CONDITION_FIELDS[c]));
        }
        for (int k = def.getSize() - 1; k >= 0; --k)
            def.setDefault(k, fix(def.getDefault(k), "Default"));
    }
}

void GZ_OldParms::addChannelNames(const gz_OldParm &rec, const GZ_EditScriptedParms &parms,
                                  Pairs &pairs) const
{
    if (!rec.myOriginalSuffix.empty() || !rec.myCurrentSuffix.empty())
    {
        pairs.emplace_back(rec.getOldChannel(), rec.getNewChannel());
        return;
    }
    const GZ_EditScriptedParm *before = findOriginal(rec.myOriginalName);
    const GZ_EditScriptedParm *after = parms.getParmWithName(rec.myCurrentName);
    if (!before || !after)
        return;
    const std::vector<std::string> &old_names = before->getChannelNames();
    const std::vector<std::string> &new_names = after->getChannelNames();
    for (size_t i = 0; i < old_names.size() && i < new_names.size(); ++i)
        pairs.emplace_back(old_names[i], new_names[i]);
}

// The old and new channel names under which a record's referrers are found: the parameter
// name (it stands for the first component) and every channel name, so a deleted or renamed
// parameter's referrers are found whether or not the node still has it. A deleted record's
// pairs keep the old names.
void GZ_OldParms::addReferenceNames(const gz_OldParm &rec, const GZ_EditScriptedParms &parms,
                                    Pairs &pairs) const
{
    if (rec.isDeleted())
    {
        if (const GZ_EditScriptedParm *before = findOriginal(rec.myOriginalName))
            for (const std::string &channel : before->getChannelNames())
                pairs.emplace_back(channel, channel);
        if (!rec.myOriginalSuffix.empty())
            pairs.assign(1, {rec.getOldChannel(), rec.getOldChannel()});
    }
    else
        addChannelNames(rec, parms, pairs);
    if (rec.myOriginalSuffix.empty() &&
        (pairs.empty() || pairs.front().first != rec.myOriginalName))
        pairs.insert(pairs.begin(), {rec.myOriginalName, rec.myCurrentName});
}

void GZ_OldParms::resolveOldParmChannels(const gz_OldParm &rec, Pairs pairs, Context &ctx) const
{
    addInstanceNames(*ctx.myNode, pairs);
    for (const auto &pair : pairs)
        resolveSingleParm(rec, pair.first, pair.second, ctx);
}

// Multiparm links of other nodes that lead to the record follow a rename and go (or are
// reported, by the deletion behaviour) with a deletion; the edited node's own links of a
// renamed or deleted instance pattern follow it too. A ramp's point patterns are both: the
// edited node may link them, and other nodes may link theirs to them.
void GZ_OldParms::resolveOldMultiParmInfo(const gz_OldParm &rec, const Pairs &pairs,
                                          Context &ctx) const
{
    for (const auto &[from, to] : pairs)
    {
        if (from.find('#') != std::string::npos)
            resolveOwnPattern(rec, from, to, ctx);
        else
            resolveLinksTo(rec, from, to, ctx);
    }
    if (!rec.isRamp())
        return;
    const std::vector<std::string> from =
        HostRampNaming::pointPatterns(rec.myOriginalName, rec.myRampColor != 0);
    const std::vector<std::string> to =
        HostRampNaming::pointPatterns(rec.myCurrentName, rec.myRampColor != 0);
    for (size_t i = 0; i < from.size(); ++i)
    {
        resolveOwnPattern(rec, from[i], to[i], ctx);
        resolveLinksTo(rec, from[i], to[i], ctx);
    }
}

void GZ_OldParms::resolveOwnPattern(const gz_OldParm &rec, const std::string &from,
                                    const std::string &to, Context &ctx)
{
    HostMultiParmLinks &links = ctx.myNode->getDirector()->getMultiParmLinks();
    if (rec.isDeleted())
        links.set(*ctx.myNode, from, std::string(), ctx.myTime);
    else
        links.movePattern(*ctx.myNode, from, to);
}

void GZ_OldParms::resolveLinksTo(const gz_OldParm &rec, const std::string &from,
                                 const std::string &to, Context &ctx) const
{
    HostNode &edited = *ctx.myNode;
    HostMultiParmLinks &links = edited.getDirector()->getMultiParmLinks();
    const bool report = rec.isDeleted() && getParameterDeletionBehavior() >= 2;
    for (const HostMultiParmLinks::Link &link : links.findLinksTo(edited, from))
    {
        HostNode *linking = edited.getDirector()->findNodeById(link.myNodeId);
        if (report)
        {
            ctx.myWarnings->insert(ctx.myWarnings->end(),
                                   {deletedLine(rec.getOldChannel()),
                                    "        and is referenced by '" + linking->getFullPath() +
                                        "/" + link.myPattern + "'"});
            continue;
        }
        const std::string path = linking->getRelativePathTo(edited);
        const std::string text =
            rec.isDeleted() ? std::string() : (path == "." ? "" : path + "/") + to;
        links.set(*linking, link.myPattern, text, ctx.myTime);
    }
}

// A renamed ramp's points carry their values too: one pair per channel of every point the
// ramp has under its old name.
void GZ_OldParms::addRampPointNames(const gz_OldParm &rec, const HostNode &node, Pairs &pairs)
{
    const HostParm *ramp = node.getParm(rec.myOriginalName);
    if (!rec.isRamp() || !ramp)
        return;
    const bool color = rec.myRampColor != 0;
    for (int i = 1; i <= ramp->getInstanceCount(); ++i)
    {
        const std::vector<std::string> from =
            HostRampNaming::pointChannels(rec.myOriginalName, color, i);
        const std::vector<std::string> to =
            HostRampNaming::pointChannels(rec.myCurrentName, color, i);
        for (size_t c = 0; c < from.size(); ++c)
            pairs.emplace_back(from[c], to[c]);
    }
}

// References name the instances of a multiparm ("pt2"), not its pattern ("pt#"): every
// instance the node has gets its own pair. One level of instance marks only.
void GZ_OldParms::addInstanceNames(const HostNode &node, Pairs &pairs)
{
    const size_t count = pairs.size();
    for (size_t p = 0; p < count; ++p)
    {
        const std::string from = pairs[p].first;
        const std::string to = pairs[p].second;
        const size_t mark = from.find('#');
        if (mark == std::string::npos || from.find('#', mark + 1) != std::string::npos)
            continue;
        for (int i = 0, missing = 0; missing < 2; ++i)
        {
            std::string instance = from;
            instance.replace(mark, 1, std::to_string(i));
            int k = -1;
            if (!node.findChannel(instance, k))
            {
                missing += i > 0 ? 1 : 0;
                continue;
            }
            std::string renamed = to;
            const size_t at = renamed.find('#');
            if (at != std::string::npos)
                renamed.replace(at, 1, std::to_string(i));
            pairs.emplace_back(instance, renamed);
        }
    }
}

void GZ_OldParms::resolveSingleParm(const gz_OldParm &rec, const std::string &old_channel,
                                    const std::string &new_channel, Context &ctx) const
{
    HostNode &edited = *ctx.myNode;
    std::vector<std::string> &warnings = *ctx.myWarnings;
    const int behavior = getParameterDeletionBehavior();
    const GZ_EditScriptedParm *now = ctx.myParms->getParmWithName(rec.myCurrentName);
    const bool check_reference =
        rec.isDeleted() || (now && now->getAutolinkChanged(rec.myComponent) != 0);
    int old_k = -1;
    const HostParm *old_parm = edited.findChannel(old_channel, old_k);
    const std::vector<HostReferrer> referrers =
        edited.getDirector()->getReferenceIndex().findReferrersByName(edited, old_channel);
    for (std::size_t i = 0; i < referrers.size(); ++i)
    {
        HostPrefetchAhead(
            i, referrers.size(),
            [&](std::size_t j, int stage)
            { HostParm::prefetch(referrers[j].myParm, referrers[j].myComponent, stage); });
        const HostReferrer &ref = referrers[i];
        HostParm &parm = *ref.myParm;
        HostNode &rnode = *parm.getNode();
        const int k = ref.myComponent;
        if (&rnode == &edited && ctx.myReplaced.count(parm.getName()) != 0)
            continue;
        // Read before any change to the component below; not copied, as thousands of
        // referrers may pass through here.
        const std::string &text = parm.getExpression(k);
        HostNode *tnode = nullptr;
        HostParm *tparm = nullptr;
        int tk = -1;
        if (check_reference && parm.getChannelReference(k, tnode, tparm, tk) && tnode == &edited &&
            tparm == old_parm && tk == old_k)
        {
            if (rec.isDeleted() && behavior >= 2)
            {
                warnings.insert(warnings.end(), {deletedLine(rec.getOldChannel()),
                                                 referencedLine(parm, k), expressionLine(text)});
                continue;
            }
            if (!mayModify(parm, k))
            {
                warnings.insert(warnings.end(),
                                {changedLine(rec), referencedLine(parm, k),
                                 "        An attempt to modify this reference failed."});
                continue;
            }
            rnode.bakeParmValue(parm, k, ctx.myTime);
            // Only animation moves over: an expression would read differently from there.
            if (old_parm->hasChannel(old_k))
                runCommand("chcp '" + edited.getFullPath() + "/" + old_channel + "' '" +
                           rnode.getFullPath() + "/" + parm.getChannelName(k) + "'");
            continue;
        }
        std::string rewritten;
        if (!getModifiedString(text, rewritten, &edited, &rnode, old_channel, new_channel))
            continue;
        if (!mayModify(parm, k))
        {
            warnings.insert(warnings.end(),
                            {changedLine(rec), referencedLine(parm, k), expressionLine(text),
                             "        An attempt to modify this expression failed."});
        }
        else if (!rec.isDeleted())
        {
            rnode.saveComponentForUndo(parm, k);
            rnode.parmChanging(parm);
            parm.setString(k, ctx.myTime, rewritten, parm.getStringMeaning(k));
            rnode.parmChanged(parm);
        }
        else if (behavior == 0)
            rnode.bakeParmValue(parm, k, ctx.myTime);
        else
            warnings.insert(warnings.end(), {deletedLine(rec.getOldChannel()),
                                             referencedLine(parm, k), expressionLine(text)});
    }
}

void GZ_OldParms::resolveOnNode(const gz_OldParm &rec, Context &ctx) const
{
    HostNode &node = *ctx.myNode;
    if (rec.isDeleted())
    {
        HostParm *parm = node.getParm(rec.myOriginalName);
        int k = -1;
        if (!parm)
            parm = node.findChannel(rec.getOldChannel(), k);
        if (!parm)
            return;
        node.saveParmForUndo(*parm);
        node.parmChanging(*parm);
        for (int c = 0; c < parm->getVectorSize(); ++c)
            parm->destroyChannel(c, ctx.myTime);
        node.parmChanged(*parm);
        return;
    }
    Pairs pairs;
    addChannelNames(rec, *ctx.myParms, pairs);
    addInstanceNames(node, pairs);
    addRampPointNames(rec, node, pairs);
    // The renamed ramp needs its points before chrename can move their values.
    HostParm *from = node.getParm(rec.myOriginalName);
    HostParm *to = node.getParm(rec.myCurrentName);
    if (rec.isRamp() && from && to)
        node.getParmList().setInstanceCount(*to, from->getInstanceCount());
    for (const auto &pair : pairs)
    {
        // A pattern names no channel: its instances, added above, carry the values.
        if (pair.first.find('#') != std::string::npos)
            continue;
        runCommand("chrename '" + node.getFullPath() + "/" + pair.first + "' '" + pair.second +
                   "'");
        ctx.myRenamed->push_back(pair);
    }
}

void GZ_OldParms::getChannelChanges(const GZ_EditScriptedParms &parms, Pairs &renamed,
                                    std::vector<std::string> &deleted) const
{
    for (const gz_OldParm &rec : myRecords)
    {
        if (!rec.isChanged())
            continue;
        Pairs pairs;
        if (rec.myOriginalSuffix.empty())
            pairs.emplace_back(rec.myOriginalName, rec.myCurrentName);
        if (rec.isDeleted())
        {
            const GZ_EditScriptedParm *before = findOriginal(rec.myOriginalName);
            if (before && rec.myOriginalSuffix.empty())
                for (const std::string &channel : before->getChannelNames())
                    pairs.emplace_back(channel, channel);
            else if (!rec.myOriginalSuffix.empty())
                pairs.emplace_back(rec.getOldChannel(), rec.getOldChannel());
            for (const auto &pair : pairs)
                deleted.push_back(pair.first);
            continue;
        }
        addChannelNames(rec, parms, pairs);
        renamed.insert(renamed.end(), pairs.begin(), pairs.end());
    }
}

// Two parameters of the edit must never stand under one name at a step of the repair: when a
// rename takes a name the edit frees (a swap, or a rename onto a deleted parameter), the
// renames go through free temporary names in two passes.
bool GZ_OldParms::reusesFreedName() const
{
    std::set<std::string> freed;
    for (const gz_OldParm &rec : myRecords)
        if (rec.isChanged())
            freed.insert(rec.myOriginalName);
    for (const gz_OldParm &rec : myRecords)
        if (!rec.isDeleted() && rec.myCurrentName != rec.myOriginalName &&
            freed.count(rec.myCurrentName) != 0)
            return true;
    return false;
}

int GZ_OldParms::updateNode(GZ_EditScriptedParms &parms, std::vector<std::string> &warnings,
                            std::string *error)
{
    HostNode *node = parms.getNode();
    if (!node)
        return parms.updateNode(error);
    if (reusesFreedName())
        return updateThroughTemporaryNames(parms, warnings, error);
    bool with_interim = false;
    if (!applyInterim(parms, with_interim, error))
        return 0;
    resolveOldParmLinks(node->getUniqueId(), parms, warnings);
    return applyFinal(parms, with_interim, error);
}

// The interim interface: the new one with every changed parameter beside it under its old
// name, so that chrename and the bakes still find the old channels. A renamed instance
// pattern goes into its multiparm next to the new one, so that both have instances.
bool GZ_OldParms::applyInterim(const GZ_EditScriptedParms &parms, bool &with_interim,
                               std::string *error) const
{
    GZ_EditScriptedParms interim(parms);
    for (const gz_OldParm &rec : myRecords)
    {
        const GZ_EditScriptedParm *before = findOriginal(rec.myOriginalName);
        if (!rec.isChanged() || !before || before->getIsGroupParm() ||
            interim.getParmWithName(before->getName()))
            continue;
        auto copy = std::make_unique<GZ_EditScriptedParm>(*before);
        if (before->getName().find('#') == std::string::npos)
            interim.addParm(std::move(copy));
        else if (const int at = interim.getParmIndexWithName(rec.myCurrentName);
                 at >= 0 && !rec.isDeleted())
            insertAfter(interim, at, std::move(copy));
    }
    with_interim = interim.entries() != parms.entries();
    return !with_interim || interim.updateNode(error);
}

int GZ_OldParms::applyFinal(GZ_EditScriptedParms &parms, bool with_interim,
                            std::string *error) const
{
    if (parms.updateNode(error))
        return 1;
    if (with_interim)
    {
        // The host refused the final interface: the node must not keep the interim one.
        GZ_EditScriptedParms original(myOriginal);
        original.updateNode();
    }
    return 0;
}

void GZ_OldParms::insertAfter(GZ_EditScriptedParms &parms, int at,
                              std::unique_ptr<GZ_EditScriptedParm> parm)
{
    std::vector<std::unique_ptr<GZ_EditScriptedParm>> one;
    one.push_back(std::move(parm));
    parms.insertParms(at + 1, std::move(one));
}

// The first pass renames to the temporary names (and deletes), onto an interface that holds
// the final parameters and the temporary ones; the second renames the temporary names to the
// final ones. Warning lines name the final names, not the temporary ones.
int GZ_OldParms::updateThroughTemporaryNames(GZ_EditScriptedParms &parms,
                                             std::vector<std::string> &warnings, std::string *error)
{
    HostNode &node = *parms.getNode();
    GZ_OldParms first, second;
    first.myOriginal = myOriginal;
    GZ_EditScriptedParms middle(parms);
    // The node first gets the old interface with the temporary parameters beside it, so that
    // every old value is still under its old name whatever the new sizes.
    GZ_EditScriptedParms start(myOriginal);
    std::vector<std::pair<std::string, std::string>> temporaries; // (temporary, final)
    for (gz_OldParm rec : myRecords)
    {
        const GZ_EditScriptedParm *after = parms.getParmWithName(rec.myCurrentName);
        if (rec.isDeleted() || rec.myCurrentName == rec.myOriginalName || !after ||
            !findOriginal(rec.myOriginalName))
        {
            first.myRecords.push_back(rec);
            continue;
        }
        const std::string temporary = temporaryName(node, middle, rec.myCurrentName);
        auto copy = std::make_unique<GZ_EditScriptedParm>(*after);
        copy->setName(temporary);
        auto other = std::make_unique<GZ_EditScriptedParm>(*copy);
        if (temporary.find('#') == std::string::npos)
        {
            middle.addParm(std::move(copy));
            start.addParm(std::move(other));
        }
        else
        {
            insertAfter(middle, middle.getParmIndexWithName(rec.myCurrentName), std::move(copy));
            insertAfter(start, start.getParmIndexWithName(rec.myOriginalName), std::move(other));
        }
        temporaries.emplace_back(temporary, rec.myCurrentName);
        gz_OldParm to_final = rec;
        to_final.myOriginalName = temporary;
        rec.myCurrentName = temporary;
        first.myRecords.push_back(rec);
        second.myRecords.push_back(to_final);
    }
    if (!start.updateNode(error))
        return 0;
    std::vector<std::string> lines;
    first.resolveOldParmLinks(node.getUniqueId(), middle, lines);
    // The fields of the interface were repaired in the middle interface: the final one is
    // that interface without the temporary parameters.
    second.myOriginal = middle;
    GZ_EditScriptedParms repaired(middle);
    for (const auto &t : temporaries)
    {
        const int i = repaired.getParmIndexWithName(t.first);
        repaired.removeParms(i, i, /*fix_joins=*/false);
    }
    for (int i = 0; i < parms.entries() && i < repaired.entries(); ++i)
        *parms.getParm(i) = *repaired.getParm(i);
    if (!first.applyFinal(middle, /*with_interim=*/true, error))
        return 0;
    for (std::string &line : lines)
        for (const auto &t : temporaries)
            if (const size_t at = line.find("renamed to '" + t.first + "',");
                at != std::string::npos)
                line.replace(at + 12, t.first.size(), t.second);
    warnings.insert(warnings.end(), lines.begin(), lines.end());
    return second.updateNode(parms, warnings, error);
}

// A name that neither the node nor the interface uses, made from `name` (an instance mark
// stays in it).
std::string GZ_OldParms::temporaryName(const HostNode &node, const GZ_EditScriptedParms &parms,
                                       const std::string &name)
{
    for (int n = 1;; ++n)
    {
        const std::string candidate = "gzrename" + std::to_string(n) + "_" + name;
        int k = -1;
        if (!parms.getParmWithName(candidate) && !node.getParm(candidate) &&
            !node.findChannel(candidate, k))
            return candidate;
    }
}
