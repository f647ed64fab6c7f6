// ShellScene: writing the scene as host command lines.
#include "shell/ShellScene.h"

#include "shell/ShellChannels.h"
#include "shell/ShellParmAccess.h"
#include "shell/ShellPersistent.h"

#include "host/HostAssetLibraryManager.h"
#include "host/HostChoiceList.h"
#include "host/HostCommandManager.h"
#include "host/HostDirector.h"
#include "host/HostNetwork.h"
#include "host/HostNode.h"
#include "host/HostOperatorTable.h"
#include "host/HostParm.h"
#include "persistent/GZ_ScriptOperator.h"
#include "resource/GZ_ResourceManager.h"
#include "scriptedit/GZ_EditScriptedParms.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <ostream>
#include <set>
#include <sstream>

void ShellScene::clear(HostDirector &director)
{
    ShellPersistent::clear(director);
    if (GZ_ResourceManager *resources = GZgetResourceManager())
        resources->clearOpGZSettings();
    director.clearScene();
}

std::string ShellScene::formatNumber(double value)
{
    char text[40];
    for (int digits = 15; digits <= 17; ++digits)
    {
        std::snprintf(text, sizeof(text), "%.*g", digits, value);
        if (std::strtod(text, nullptr) == value)
            break;
    }
    return text;
}

namespace
{
// A menu value that is an item's index is written as the item's token, which reads better
// and still reads back (parmset takes tokens).
std::string numberOrToken(const HostParm &parm, int k)
{
    const double value = parm.getValue(k);
    const HostChoiceList *menu = parm.getTemplate().getChoiceList();
    if (menu && value >= 0 && value < menu->getNumItems() && value == static_cast<int>(value))
    {
        const std::string &token = menu->getToken(static_cast<int>(value));
        double as_number = 0;
        if (!token.empty() && menu->findToken(token) == static_cast<int>(value) &&
            !ShellParmAccess::parseNumber(token, as_number))
            return HostCommandManager::protectString(token);
    }
    return ShellScene::formatNumber(value);
}
} // namespace

void ShellScene::writeParm(std::ostream &os, const std::string &path, const HostParm &parm)
{
    const int size = parm.getVectorSize();
    bool at_default = true;
    for (int k = 0; k < size && at_default; ++k)
        at_default = parm.isAtDefault(k);
    if (at_default || !(parm.getType().isNumeric() || parm.getType().isString()))
        return;
    os << "parmset " << HostCommandManager::protectString(path) << " "
       << HostCommandManager::protectString(parm.getName());
    for (int k = 0; k < size; ++k)
    {
        os << " ";
        if (parm.getType().isString())
            HostCommandManager::protectString(os, parm.getString(k));
        else
            os << numberOrToken(parm, k);
    }
    os << "\n";
    ShellChannels::writeAnimation(os, path, parm);
}

void ShellScene::writeSpareInterface(std::ostream &os, const HostNode &node)
{
    if (node.getSpareLayout().empty())
        return;
    GZ_EditScriptedParms::BuildOptions options;
    options.myFallbackToOperator = false;
    GZ_EditScriptedParms parms(const_cast<HostNode *>(&node), options);
    std::ostringstream text;
    std::string errors;
    parms.save(text, errors, /*check_joins=*/true);
    os << "spareadd -s " << HostCommandManager::protectString(node.getFullPath()) << " "
       << HostCommandManager::protectString(text.str()) << "\n";
}

void ShellScene::writeNode(std::ostream &os, const HostNode &node)
{
    const std::string path = node.getFullPath();
    if (node.getOperator())
    {
        os << "nodeadd " << HostCommandManager::protectString(node.getOperatorName()) << " "
           << HostCommandManager::protectString(path) << "\n";
        writeSpareInterface(os, node);
        const HostParmList &parms = node.getParmList();
        for (int i = 0; i < parms.getEntries(); ++i)
            writeParm(os, path, *parms.getParm(i));
    }
    if (const HostNetwork *children = node.getChildNetwork())
        for (int i = 0; i < children->getNumNodes(); ++i)
            writeNode(os, *children->getNode(i));
}

void ShellScene::writeOperatorTypes(std::ostream &os)
{
    // A type comes from the library file it was loaded from, or else from the plain dialog
    // script it was read from: one libload line per library in loading order, then one
    // optypeload line per type read from a plain file, by table and type name. Not in table
    // order: the loaded scene adds the types in another order when a library defined one
    // first that a plain file then redefined, and its save must write the same lines.
    const HostAssetLibraryManager &libraries = HostAssetLibraryManager::get();
    std::set<std::string> used;
    std::ostringstream plain;
    for (const HostOperatorTable *table : HostOperatorTable::getTables())
    {
        std::map<std::string, std::string> by_name;
        for (int i = 0; i < table->getNumOperators(); ++i)
        {
            const auto *op = dynamic_cast<const GZ_ScriptOperator *>(table->getOperator(i));
            if (!op || op->getDefinitionPath().empty())
                continue;
            if (libraries.isLoaded(op->getDefinitionPath()))
                used.insert(op->getDefinitionPath());
            else
                by_name[op->getName()] = op->getDefinitionPath();
        }
        for (const auto &[name, path] : by_name)
            plain << "optypeload -t " << HostCommandManager::protectString(table->getName()) << " "
                  << HostCommandManager::protectString(path) << "\n";
    }
    for (const HostAssetLibraryManager::Library &library : libraries.getLibraries())
        if (used.count(library.myPath))
            os << "libload " << HostCommandManager::protectString(library.myPath) << "\n";
    os << plain.str();
}

HostErrorSeverity ShellScene::write(std::ostream &os, const HostDirector &director)
{
    writeOperatorTypes(os);
    if (director.getTime() != 0.0)
        os << "tcur " << formatNumber(director.getTime()) << "\n";
    writeNode(os, *director.getRoot());
    return director.runSaveCallback(os);
}
