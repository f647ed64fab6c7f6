// GZ_EditScriptedOpHandle: one handle bound to the parameters of an edited operator type.
#include "scriptedit/GZ_EditScriptedOpHandle.h"

#include "host/HostDiagnostics.h"
#include "host/HostDialogQuote.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_ResourceManager.h"

#include <algorithm>
#include <numeric>
#include <ostream>

GZ_EditScriptedOpHandle::GZ_EditScriptedOpHandle(const std::string &type_name)
{
    GZ_ResourceManager *manager = GZgetResourceManager();
    const GZ_GZTemplate *tmpl =
        manager ? manager->getOpHandleLinkTemplate(type_name.c_str()) : nullptr;
    if (!tmpl)
    {
        HostDiagnostics::report(HostDiagSeverity::Error, "", 0,
                                "Creation of unknown handle type " + type_name);
        return;
    }
    myType = tmpl->name();
    myDescription = tmpl->englishName();
    for (const std::string &name : tmpl->parmNameList())
        addGZName(name);
    // Nothing is bound yet, so sorting the names alone keeps the two arrays parallel.
    std::sort(myGZNames.begin(), myGZNames.end());
}

void GZ_EditScriptedOpHandle::addGZName(const std::string &name)
{
    if (std::find(myGZNames.begin(), myGZNames.end(), name) != myGZNames.end())
        return;
    myGZNames.push_back(name);
    myBindings.emplace_back();
}

int GZ_EditScriptedOpHandle::bindChannel(const std::string &gz_name, const std::string &op_parm)
{
    auto it = std::find(myGZNames.begin(), myGZNames.end(), gz_name);
    if (it == myGZNames.end())
        return -1;
    const int index = static_cast<int>(it - myGZNames.begin());
    myBindings[index] = op_parm;
    return index;
}

bool GZ_EditScriptedOpHandle::hasBinding() const
{
    return std::any_of(myBindings.begin(), myBindings.end(),
                       [](const std::string &b) { return !b.empty(); });
}

std::vector<std::string> GZ_EditScriptedOpHandle::getValidTypes()
{
    std::vector<std::string> names;
    GZ_ResourceManager *manager = GZgetResourceManager();
    if (!manager)
        return names;
    names = manager->getBuiltinOpHandleNames();
    const std::vector<std::string> &viewer = manager->getViewerHandleTypeNames();
    names.insert(names.end(), viewer.begin(), viewer.end());
    std::sort(names.begin(), names.end());
    return names;
}

void GZ_EditScriptedOpHandle::save(std::ostream &os) const
{
    for (size_t i = 0; i < myGZNames.size(); ++i)
    {
        if (myBindings[i].empty())
            continue;
        os << "    bindhandle " << myBindings[i] << ' ' << myType << ' '
           << HostDialogQuote::quote(myDescription) << ' ' << myGZNames[i] << ' '
           << HostDialogQuote::quote(mySettings) << '\n';
    }
}
