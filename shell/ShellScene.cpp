// ShellScene: writing the scene as host command lines.
#include "shell/ShellScene.h"

#include "shell/ShellChannels.h"
#include "shell/ShellParmAccess.h"
#include "shell/ShellPersistent.h"

#include "host/HostChoiceList.h"
#include "host/HostCommandManager.h"
#include "host/HostDirector.h"
#include "host/HostNetwork.h"
#include "host/HostNode.h"
#include "host/HostParm.h"
#include "resource/GZ_ResourceManager.h"
#include "scriptedit/GZ_EditScriptedParms.h"

#include <cstdio>
#include <cstdlib>
#include <ostream>
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

HostErrorSeverity ShellScene::write(std::ostream &os, const HostDirector &director)
{
    if (director.getTime() != 0.0)
        os << "tcur " << formatNumber(director.getTime()) << "\n";
    writeNode(os, *director.getRoot());
    return director.runSaveCallback(os);
}
