// GZ_ScriptOperator: scripted operator types, their definition from dialog scripts and their
// binding maintenance.
#include "persistent/GZ_ScriptOperator.h"

#include "persistent/GZ_Manager.h"
#include "persistent/gz_ScriptOpPage.h"
#include "resource/GZ_ResourceManager.h"

#include "host/HostAssetDefinition.h"
#include "host/HostDiagnostics.h"
#include "host/HostDialogStream.h"
#include "host/HostOperatorTable.h"
#include "host/HostReader.h"
#include "host/HostSpareLayout.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

GZ_ScriptOperator::GZ_ScriptOperator(const std::string &name, const std::string &label,
                                     const HostParmTemplateList &templates,
                                     const std::string &child_table, int min_inputs,
                                     int max_inputs, unsigned flags, const std::string &icon)
    : HostScriptOperator(name, label, templates, child_table, min_inputs, max_inputs, flags, icon)
{
}

GZ_ScriptOperator::~GZ_ScriptOperator() = default;

GZ_ScriptOperator *GZ_ScriptOperator::createScriptOp(const std::string &name,
                                                     const std::string &label, int min_inputs,
                                                     int max_inputs,
                                                     const std::string &definition_path,
                                                     const std::string &child_table,
                                                     unsigned flags)
{
    auto *op = new GZ_ScriptOperator(name, label, HostParmTemplateList(), child_table, min_inputs,
                                     max_inputs, flags);
    op->setDefinitionPath(definition_path);
    return op;
}

std::unique_ptr<HostScriptPage> GZ_ScriptOperator::allocateScriptPage()
{
    return std::make_unique<gz_ScriptOpPage>(this, 0, 0);
}

bool GZ_ScriptOperator::parseUnknownToken(HostDialogStream &, const std::string &)
{
    return false;
}

void GZ_ScriptOperator::getRefreshGZCommands(HostNode *node, std::ostream &os)
{
    if (node)
        GZgetManager()->getRefreshGZCommands(os, node);
}

void GZ_ScriptOperator::removeAllBindings()
{
    if (!GZresourceManagerExists())
        return;
    GZgetResourceManager()->removeAllBindings(this);
    refreshAllBindings();
}

void GZ_ScriptOperator::refreshAllBindings()
{
    if (!GZresourceManagerExists() || !getTable())
        return;
    GZgetResourceManager()->updateViewports(getTable()->getNetworkType(), getName().c_str(),
                                            /*force=*/false);
}

std::vector<std::string> GZ_ScriptOperator::includePath() const
{
    const char *added = getAddedDSIncludePath();
    if (!added)
        return {};
    if (std::string(added) != "@/vop/include")
        return {added};
    std::vector<std::string> dirs;
    for (const std::string &dir : HostReader::getSearchPath())
        dirs.push_back(dir + "/vop/include");
    return dirs;
}

namespace
{
void forEachTemplate(HostParmTemplateList &templates,
                     void (*apply)(HostParmTemplate &, const GZ_ScriptOperator &),
                     const GZ_ScriptOperator &op)
{
    for (int i = 0; i < templates.size(); ++i)
    {
        HostParmTemplate &t = templates[i];
        apply(t, op);
        for (int c = 0; c < t.getNumChildren(); ++c)
            apply(t.getChild(c), op);
    }
}

void applyFlags(HostParmTemplate &t, const GZ_ScriptOperator &op)
{
    t.setCallback(GZ_ScriptOperator::getDefaultCallback());
    if (op.isAllCookParms())
        t.setCooks(true);
    if (op.isAllNoSimParms())
        t.setNoResim(true);
}

/// Whether the tag holds a non-zero leading integer.
bool tagIsSet(const HostScriptPage &page, const std::string &name)
{
    const char *value = page.getTag(name);
    return value && std::atoi(value) != 0;
}
} // namespace

void GZ_ScriptOperator::applyTemplateFlags(HostParmTemplateList &templates) const
{
    // Multiparm children one level down get the callback too: their instances are
    // parameters of the node like any other.
    forEachTemplate(templates, &applyFlags, *this);
}

bool GZ_ScriptOperator::loadParmTemplates(HostDialogStream &in, std::string &errors)
{
    in.setIncludePath(includePath());
    setHelp("");
    gz_ScriptOpPage page(this, getMinInputs(), getMaxInputs());
    if (!page.parsePage(in))
        return false;
    // Without a script line the type's script is named after it: the writer always writes a
    // script line, and an empty one would not read back.
    setScriptName(page.myScriptName.empty() ? page.getName() : page.myScriptName);
    setInputNames(page.myInputNames);
    setInputLabels(page.myInputLabels);
    setOutputLabels(page.myOutputLabels);
    setUnitLength(page.myHasUnitLength ? page.myUnitLength : 1.0);
    setUnitMass(page.myHasUnitMass ? page.myUnitMass : 1.0);
    // Named inputs exist even when no "maxinput" line says so.
    const int named = static_cast<int>(
        std::max(page.myInputNames.size(), page.myInputLabels.size()));
    setInputCounts(page.myMinInputs, std::max(page.myMaxInputs, named));
    std::vector<bool> is_ref;
    for (int i = 1; i <= getMaxInputs(); ++i)
        is_ref.push_back(tagIsSet(page, "inputisref" + std::to_string(i)));
    setInputIsReference(is_ref);

    if (const HostScriptPage *obsolete = page.getObsolete())
    {
        HostSpareLayout layout;
        obsolete->buildTemplates(layout, errors);
        myObsoleteList = layout.myTemplates;
        setObsoleteTemplates(myObsoleteList);
    }
    else
    {
        myObsoleteList.clear();
        setObsoleteTemplates(myObsoleteList);
    }
    HostSpareLayout layout;
    page.buildTemplates(layout, errors);
    applyTemplateFlags(layout.myTemplates);
    if (getTable())
    {
        getTable()->setTemplates(this, layout.myTemplates);
        getTable()->setLabelAndIcon(this, page.getLabel().empty() ? getName() : page.getLabel(),
                                    getIconName());
    }
    return true;
}

namespace
{
/// Reads a whole script without applying anything: the operator's name, or false (with
/// nothing reported unless `report`) when it is not one braced page with a name.
bool checkScript(const std::string &text, const std::string &file, bool report,
                 std::string &name)
{
    std::unique_ptr<HostDiagnosticCapture> quiet;
    if (!report)
        quiet = std::make_unique<HostDiagnosticCapture>();
    HostDialogStream in;
    in.openString(text, file, HostDialogStream::INCLUDES);
    gz_ScriptOpPage page(nullptr, 0, 0, /*check_only=*/true);
    if (!page.parsePage(in))
        return false;
    name = page.getName();
    if (name.empty() && report)
        in.error("the script names no operator type");
    return !name.empty();
}
} // namespace

GZ_ScriptOperator *GZ_ScriptOperator::defineFromLibrary(const HostAssetDefinition &def,
                                                        const std::string &library,
                                                        const std::string &shown,
                                                        std::string &error)
{
    const std::string *script = def.findSection("DialogScript");
    if (!script)
    {
        error = def.getName() + " in " + shown + " has no DialogScript";
        return nullptr;
    }
    std::string table, name;
    HostOperatorTable::splitQualifiedName(def.getName(), table, name);
    return defineFromText(table, *script, library, shown + "(" + def.getName() + ")", error);
}

GZ_ScriptOperator *GZ_ScriptOperator::defineFromText(const std::string &table_name,
                                                     const std::string &text,
                                                     const std::string &source,
                                                     const std::string &file, std::string &error)
{
    HostOperatorTable *table = HostOperatorTable::getTable(table_name);
    if (!table)
    {
        error = "no operator table " + table_name;
        return nullptr;
    }
    // The whole page is checked before anything is applied, so a broken script leaves an
    // existing type and its bindings as they were; it is read once more to report why.
    std::string name;
    if (!checkScript(text, file, /*report=*/false, name))
    {
        checkScript(text, file, /*report=*/true, name);
        error = file + " defines no operator type";
        return nullptr;
    }
    GZ_ScriptOperator *op = nullptr;
    bool created = false;
    if (HostOperator *existing = table->getOperator(name))
    {
        op = dynamic_cast<GZ_ScriptOperator *>(existing);
        if (!op)
        {
            error = table_name + "/" + name + " is not a scripted operator type";
            return nullptr;
        }
        op->removeAllBindings();
    }
    else
    {
        std::unique_ptr<HostOperator> made(
            createScriptOp(name, name, 0, 0, source, "", HostOperator::FLAG_EDITABLE));
        op = static_cast<GZ_ScriptOperator *>(table->addOperator(std::move(made)));
        if (!op)
        {
            error = "cannot define an operator type named " + name;
            return nullptr;
        }
        created = true;
    }
    op->setDefinitionPath(source);
    op->setDialogScript(text);
    HostDialogStream in;
    in.openString(text, file, HostDialogStream::INCLUDES);
    std::string errors;
    if (!op->loadParmTemplates(in, errors) && created)
    {
        op->removeAllBindings();
        table->deleteOperator(name);
        error = file + " defines no operator type";
        return nullptr;
    }
    std::size_t start = 0;
    while (start < errors.size())
    {
        std::size_t end = errors.find('\n', start);
        if (end == std::string::npos)
            end = errors.size();
        if (end > start)
            HostDiagnostics::report(HostDiagSeverity::Error, file, 0,
                                    errors.substr(start, end - start));
        start = end + 1;
    }
    return op;
}
