// GZ_EditScriptedParms: definitions from templates, operator types and nodes.
#include "scriptedit/GZ_EditScriptedParms.h"

#include "scriptedit/gz_SafeNameContext.h"
#include "scriptedit/gz_ScriptHost.h"
#include "scriptedit/gz_TemplateConversion.h"

#include "host/HostNode.h"
#include "host/HostOperator.h"
#include "host/HostParmTemplate.h"
#include "host/HostSpareData.h"
#include "host/HostSpareLayout.h"

#include <memory>
#include <string>

GZ_EditScriptedParms::GZ_EditScriptedParms(HostOperator *op, HostNode *node,
                                           const BuildOptions &options)
    : myOperator(op), myNodeId(node ? node->getUniqueId() : -1)
{
    if (op)
        createParms(op->getParmTemplates(), node, options);
}

GZ_EditScriptedParms::GZ_EditScriptedParms(HostNode *node, const BuildOptions &options)
{
    if (!node)
        return;
    myOperator = node->getOperator();
    myNodeId = node->getUniqueId();
    initializeReserveNames(node);
    const HostSpareLayout spares = node->getSpareLayout();
    if (!spares.empty())
        createParms(spares, node, options);
    else if (options.myFallbackToOperator && myOperator)
        createParms(myOperator->getParmTemplates(), node, options);
    initializeReserveFlags();
}

GZ_EditScriptedParms::GZ_EditScriptedParms(HostNode *node, const HostParmTemplate *templates,
                                           const BuildOptions &options)
{
    if (node)
    {
        myOperator = node->getOperator();
        myNodeId = node->getUniqueId();
        initializeReserveNames(node);
    }
    createParms(templates, node, options);
    if (node)
        initializeReserveFlags();
}

// ---------------------------------------------------------------------------------------------
// Conversion.

namespace
{
/// One name index for a whole conversion: built at the first name that must be made safe,
/// it then catches up with the entries appended since (a conversion only appends), so that a
/// list with many switchers or import groups is not indexed again for each of their names.
struct BuildNames
{
    std::unique_ptr<gz_SafeNameContext> myContext;
    int myNoted = 0;

    /// makeSafeParmName with the make-unique flag, for a definition not in the set yet.
    void makeSafe(const GZ_EditScriptedParms &parms, const GZ_EditScriptedParm *parm,
                  std::string &name)
    {
        if (!myContext)
        {
            myContext = std::make_unique<gz_SafeNameContext>(parms, /*make_unique=*/true);
            myNoted = parms.entries();
        }
        for (; myNoted < parms.entries(); ++myNoted)
            myContext->noteAppended(*parms.getParm(myNoted));
        myContext->makeSafe(parm, name, nullptr, /*level=*/0, nullptr);
    }
};

// Import tags are C strings, so a text is cut at its first NUL byte. One cut to nothing is
// no text at all, as an empty one is; otherwise the writer would write an empty text that
// reads back as none.
const char *importText(const std::string &text)
{
    return text.c_str()[0] == '\0' ? nullptr : text.c_str();
}
} // namespace

/// What a conversion carries through its recursion. `myBase` is the top-level list (flat
/// indices of import records count from it); templates of multiparm children are outside it.
struct GZ_EditScriptedParms::BuildState
{
    HostNode *myNode = nullptr;
    const BuildOptions *myOptions = nullptr;
    const HostParmTemplate *myBase = nullptr;
    const std::vector<HostImportRecord> *myImports = nullptr;
    BuildNames *myNames = nullptr; ///< shared by the recursion

    int flatIndex(const HostParmTemplate *t) const
    {
        return myBase ? static_cast<int>(t - myBase) : -1;
    }
};

void GZ_EditScriptedParms::createParms(const HostParmTemplate *templates, HostNode *node,
                                       const BuildOptions &options)
{
    BuildState state;
    state.myNode = node;
    state.myOptions = &options;
    state.myBase = templates;
    createList(templates, state);
}

void GZ_EditScriptedParms::createParms(const HostSpareLayout &layout, HostNode *node,
                                       const BuildOptions &options)
{
    BuildState state;
    state.myNode = node;
    state.myOptions = &options;
    state.myBase = layout.myTemplates.data();
    state.myImports = &layout.myImports;
    createList(layout.myTemplates.data(), state);
}

void GZ_EditScriptedParms::createList(const HostParmTemplate *templates, BuildState &state)
{
    BuildNames names;
    state.myNames = &names;
    lockMultiparmInfo();
    createImportGroups(state, -1, -1, -1);
    for (const HostParmTemplate *t = templates; t && !t->isTerminator();)
        createOne(t, state);
    releaseMultiparmInfo();
    clearMultiparmInfo();
}

void GZ_EditScriptedParms::createImportGroups(BuildState &state, int switcher, int folder,
                                              int after)
{
    if (!state.myImports)
        return;
    for (const HostImportRecord &rec : *state.myImports)
    {
        const bool here = after >= 0 ? rec.myAfter == after
                                     : rec.myAfter < 0 && rec.mySwitcher == switcher &&
                                           (switcher < 0 || rec.myFolder == folder);
        if (!here)
            continue;
        auto imp = std::make_unique<GZ_EditScriptedParm>(GZ_FOLDER_IMPORT);
        std::string name = "folder0";
        state.myNames->makeSafe(*this, imp.get(), name);
        imp->setName(name);
        imp->setLabel(rec.myLabel);
        imp->setImportEnable(rec.myEnable);
        imp->setImportSource(importText(rec.mySource));
        imp->setImportToken(importText(rec.myToken));
        imp->setImportMask(importText(rec.myMask));
        addParm(std::move(imp));
        addParm(std::make_unique<GZ_EditScriptedParm>(GZ_FOLDER_END));
    }
}

void GZ_EditScriptedParms::createOne(const HostParmTemplate *&t, BuildState &state)
{
    const BuildOptions &options = *state.myOptions;
    const int flat = state.flatIndex(t);
    const HostParmTemplate *use = t;
    if (t->isBaseParm() && !t->getType().isSwitcher() && myOperator)
        if (const HostParmTemplate *base = myOperator->findParmTemplate(t->getName()))
            use = base;
    if (options.mySkipVopVariables && t->getTag(HostSpareData::VOP_VARIABLE_TAG))
    {
        ++t;
        return;
    }
    if (t->getType().isSwitcher())
        createSwitcher(t, state);
    else
    {
        if (use->getType().isMultiparm() &&
            !(use->getMultiType() &
              (HostParmTemplate::MULTI_RAMP_FLOAT | HostParmTemplate::MULTI_RAMP_COLOR)))
            createMultiparm(*use, state);
        else
        {
            auto parm =
                gz_TemplateConversion::makeDefinition(*use, state.myNode, options.myReadAutolinks);
            if (t->isBaseParm())
                parm->setIsBaseParm(true);
            addParm(std::move(parm));
        }
        ++t;
    }
    if (flat >= 0)
        createImportGroups(state, -1, -1, flat);
}

void GZ_EditScriptedParms::createSwitcher(const HostParmTemplate *&t, BuildState &state)
{
    const BuildOptions &options = *state.myOptions;
    const HostParmTemplate &sw = *t;
    const int flat = state.flatIndex(t);
    ++t;
    std::string name = sw.getName();
    const std::string original = name;
    if (options.mySafeSwitcherNames)
        state.myNames->makeSafe(*this, nullptr, name);
    const std::string decoded = gz_ScriptHost::decodeVariableName(name);
    GZ_EditScriptedParm *last_folder = nullptr;
    for (int f = 0; f < sw.getFolderCount(); ++f)
    {
        auto folder = std::make_unique<GZ_EditScriptedParm>(GZ_FOLDER_TABS);
        folder->extractGroupSpareData(sw.getTags(), f);
        HostSpareData style;
        if (const char *g = gz_TemplateConversion::folderTag(sw, HostSpareData::GROUP_TYPE_TAG, f))
            style.set(HostSpareData::GROUP_TYPE_TAG, g);
        folder->setFolderType(GZ_EditScriptedParm::getSwitcherFolderType(sw.getType(), &style));
        folder->setLabel(sw.getFolderLabel(f));
        folder->setInvisible(sw.getType().isInvisible() ||
                             gz_TemplateConversion::isTabHidden(sw, f));
        for (int c = 0; c < GZ_EditScriptedParm::NUM_CONDITIONS; ++c)
        {
            folder->setTabCondition(c, sw.getTabCondition(f, static_cast<HostParmCondition>(c)));
            folder->setCondition(c, sw.getCondition(static_cast<HostParmCondition>(c)));
        }
        folder->setName(
            f == 0 ? name : gz_ScriptHost::encodeVariableName(decoded + "_" + std::to_string(f)));
        if (f == 0 && name != original)
            folder->setSpareValue(HostSpareData::SWITCHER_BASE_TAG, original.c_str());
        if (options.myReadAutolinks && state.myNode)
            folder->setAutolinksToCurrentLinks(state.myNode, -1);
        last_folder = folder.get();
        addParm(std::move(folder));
        if (flat >= 0)
            createImportGroups(state, flat, f, -1);
        for (int n = sw.getFolderParmCount(f); n > 0 && t && !t->isTerminator(); --n)
            createOne(t, state);
        addParm(std::make_unique<GZ_EditScriptedParm>(GZ_FOLDER_END));
    }
    // Two switchers in a row would read back as one: a tab break keeps them apart.
    if (last_folder && t && !t->isTerminator() && t->getType().isSwitcher())
        last_folder->setTabBreak(true);
}

void GZ_EditScriptedParms::createMultiparm(const HostParmTemplate &t, BuildState &state)
{
    const int layout = t.getMultiType() & 0x0F;
    auto multi = std::make_unique<GZ_EditScriptedParm>(
        layout == HostParmTemplate::MULTI_LIST     ? GZ_FOLDER_MULTI_LIST
        : layout == HostParmTemplate::MULTI_SCROLL ? GZ_FOLDER_MULTI_SCROLL
                                                   : GZ_FOLDER_MULTI_SWITCH);
    multi->setName(t.getName());
    multi->setLabel(t.getLabel());
    multi->setInvisible(t.getType().isInvisible() ? 1 : 0);
    for (int c = 0; c < GZ_EditScriptedParm::NUM_CONDITIONS; ++c)
        multi->setCondition(c, t.getCondition(static_cast<HostParmCondition>(c)));
    double first = t.getDefault(0).myNumber;
    if (t.getDefaults().empty() && !t.getSecondDefaults().empty())
        first = t.getSecondDefaults()[0].myNumber;
    multi->setDefault(0, gz_TemplateConversion::formatInt(first));
    multi->setDefaultMeaning(0, 0);
    multi->addSpareData(t.getTags());
    if (state.myOptions->myReadAutolinks && state.myNode)
        multi->setAutolinksToCurrentLinks(state.myNode, -1);
    addParm(std::move(multi));
    BuildState children = state;
    children.myBase = nullptr; // flat indices of imports count in the top-level list only
    for (const HostParmTemplate *c = t.getChildList(); c && !c->isTerminator();)
        createOne(c, children);
    addParm(std::make_unique<GZ_EditScriptedParm>(GZ_FOLDER_END));
}
