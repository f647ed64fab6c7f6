// GZ_EditScriptedParms: definitions from templates, operator types and nodes.
#include "scriptedit/GZ_EditScriptedParms.h"

#include "scriptedit/gz_TemplateConversion.h"
#include "scriptedit/gz_ScriptHost.h"

#include "host/HostNode.h"
#include "host/HostOperator.h"
#include "host/HostParmTemplate.h"
#include "host/HostSpareData.h"

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
    const HostParmTemplateList &spares = node->getSpareTemplates();
    if (!spares.empty())
        createParms(spares.data(), node, options);
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

void GZ_EditScriptedParms::createParms(const HostParmTemplate *templates, HostNode *node,
                                       const BuildOptions &options)
{
    lockMultiparmInfo();
    for (const HostParmTemplate *t = templates; t && !t->isTerminator();)
        createOne(t, node, options);
    releaseMultiparmInfo();
    clearMultiparmInfo();
}

void GZ_EditScriptedParms::createOne(const HostParmTemplate *&t, HostNode *node,
                                     const BuildOptions &options)
{
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
    {
        createSwitcher(t, node, options);
        return;
    }
    if (use->getType().isMultiparm() &&
        !(use->getMultiType() &
          (HostParmTemplate::MULTI_RAMP_FLOAT | HostParmTemplate::MULTI_RAMP_COLOR)))
        createMultiparm(*use, node, options);
    else
    {
        auto parm = gz_TemplateConversion::makeDefinition(*use, node, options.myReadAutolinks);
        if (t->isBaseParm())
            parm->setIsBaseParm(true);
        addParm(std::move(parm));
    }
    ++t;
}

void GZ_EditScriptedParms::createSwitcher(const HostParmTemplate *&t, HostNode *node,
                                          const BuildOptions &options)
{
    const HostParmTemplate &sw = *t;
    ++t;
    std::string name = sw.getName();
    const std::string original = name;
    if (options.mySafeSwitcherNames)
        makeSafeParmName(nullptr, name, nullptr, /*make_unique=*/true);
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
        folder->setName(f == 0 ? name
                               : gz_ScriptHost::encodeVariableName(decoded + "_" +
                                                                   std::to_string(f)));
        if (f == 0 && name != original)
            folder->setSpareValue(HostSpareData::SWITCHER_BASE_TAG, original.c_str());
        if (options.myReadAutolinks && node)
            folder->setAutolinksToCurrentLinks(node, -1);
        last_folder = folder.get();
        addParm(std::move(folder));
        for (int n = sw.getFolderParmCount(f); n > 0 && t && !t->isTerminator(); --n)
            createOne(t, node, options);
        addParm(std::make_unique<GZ_EditScriptedParm>(GZ_FOLDER_END));
    }
    // Two switchers in a row would read back as one: a tab break keeps them apart.
    if (last_folder && t && !t->isTerminator() && t->getType().isSwitcher())
        last_folder->setTabBreak(true);
}

void GZ_EditScriptedParms::createMultiparm(const HostParmTemplate &t, HostNode *node,
                                           const BuildOptions &options)
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
    if (options.myReadAutolinks && node)
        multi->setAutolinksToCurrentLinks(node, -1);
    addParm(std::move(multi));
    for (const HostParmTemplate *c = t.getChildList(); c && !c->isTerminator();)
        createOne(c, node, options);
    addParm(std::make_unique<GZ_EditScriptedParm>(GZ_FOLDER_END));
}
