// GZ_Manager: the saved form of handles and groups (pom* lines) and the refresh commands.
#include "persistent/GZ_Manager.h"

#include "host/HostCommandManager.h"
#include "host/HostExpression.h"
#include "host/HostNode.h"
#include "persistent/GZ_OHLPersistent.h"
#include "resource/GZ_GZTemplate.h"

#include <algorithm>
#include <ostream>
#include <sstream>

namespace
{
const char *onOff(bool on)
{
    return on ? "on" : "off";
}

void protect(std::ostream &os, const std::string &text)
{
    HostCommandManager::protectString(os, text);
}

/// One handle's lines:
///   pomadd -e E -p P -c C -s S -r R G B [-m MASK] NAME TYPE
///   pomparm NAME "SETTINGS"                      (when it has settings)
///   pomattach -i ID NAME NODEPATH [BINDING:HANDLEPARM ...]   (one per attached node)
/// Colour components are written with the fewest digits that read back exactly, so that
/// re-running the lines (undo, a reloaded scene) restores the colour bit for bit.
void writeGZ(std::ostream &os, const GZ_OHLPersistent &handle)
{
    const HostColor &color = handle.getActiveColor();
    os << "pomadd -e " << onOff(handle.getExpose()) << " -p " << onOff(handle.getDisplayInParent())
       << " -c " << onOff(handle.getDisplayInChild()) << " -s "
       << onOff(handle.getDisplayInSibling()) << " -r "
       << HostExpression::formatNumber(color.component(0)) << " "
       << HostExpression::formatNumber(color.component(1)) << " "
       << HostExpression::formatNumber(color.component(2));
    if (handle.getPaneMask() != "*")
    {
        os << " -m ";
        protect(os, handle.getPaneMask());
    }
    os << " ";
    protect(os, handle.getName());
    os << " ";
    protect(os, handle.getTemplate().name());
    os << "\n";

    if (!handle.getSettingList().isEmpty())
    {
        os << "pomparm ";
        protect(os, handle.getName());
        os << " ";
        std::ostringstream settings;
        handle.getSettingList().generateSettingString(settings);
        HostCommandManager::protectQuotedString(os, settings.str());
        os << "\n";
    }

    std::ostringstream prefix;
    prefix << "pomattach -i " << handle.id() << " ";
    protect(prefix, handle.getName());
    handle.writeOptions(os, prefix.str().c_str());
}

/// pomadd -g NAME, then pomattach -g NAME MEMBER... when it has members.
void writeGroup(std::ostream &os, const GZ_OHLGroup &group)
{
    os << "pomadd -g ";
    protect(os, group.getName());
    os << "\n";
    if (group.getNumGZs() == 0)
        return;
    os << "pomattach -g ";
    protect(os, group.getName());
    for (int i = 0; i < group.getNumGZs(); ++i)
    {
        os << " ";
        protect(os, group.getGZ(i)->getName());
    }
    os << "\n";
}

/// The handle's saved form without its pomadd line.
std::string linesAfterAdd(const GZ_Manager &manager, int index)
{
    std::ostringstream os;
    manager.savePersistentGZs(os, index);
    const std::string text = os.str();
    const std::size_t newline = text.find('\n');
    return newline == std::string::npos ? std::string() : text.substr(newline + 1);
}

void replaceAll(std::string &text, const std::string &from, const std::string &to)
{
    if (from.empty())
        return;
    std::string out;
    std::size_t start = 0;
    std::size_t at = 0;
    while ((at = text.find(from, start)) != std::string::npos)
    {
        out.append(text, start, at - start).append(to);
        start = at + from.size();
    }
    if (start == 0)
        return;
    out.append(text, start, std::string::npos);
    text.swap(out);
}
} // namespace

HostErrorSeverity GZ_Manager::savePersistentGZs(std::ostream &os, int index) const
{
    if (index >= 0)
    {
        if (const GZ_OHLPersistent *handle = getGZ(index))
            writeGZ(os, *handle);
        return HOST_ERR_NONE;
    }
    myMasterGroup.myMembers.forEach([&os](const GZ_OHLPersistent *handle)
                                    { writeGZ(os, *handle); });
    return HOST_ERR_NONE;
}

HostErrorSeverity GZ_Manager::savePersistentGroups(std::ostream &os, int index) const
{
    if (index >= 0)
    {
        if (const GZ_OHLGroup *group = getGroup(index))
            writeGroup(os, *group);
        return HOST_ERR_NONE;
    }
    myGroups.forEach([&os](const GZ_OHLGroup *group) { writeGroup(os, *group); });
    return HOST_ERR_NONE;
}

HostErrorSeverity GZ_Manager::save(std::ostream &os)
{
    HostErrorSeverity result = savePersistentGZs(os, -1);
    if (result == HOST_ERR_NONE)
        result = savePersistentGroups(os, -1);
    return result;
}

HostErrorSeverity GZ_Manager::getRefreshGZCommands(std::ostream &os, HostNode *node) const
{
    if (!node)
        return HOST_ERR_NONE;
    std::vector<int> list;
    addGZsWithOp(*node, list);
    std::sort(list.begin(), list.end());
    for (int index : list)
        os << linesAfterAdd(*this, index) << "\n";
    return HOST_ERR_NONE;
}

HostErrorSeverity GZ_Manager::getRefreshGZCommands(std::ostream &os,
                                                   const std::vector<HostNode *> &from,
                                                   const std::vector<HostNode *> &to) const
{
    const int count = static_cast<int>(std::min(from.size(), to.size()));
    std::vector<int> collected;
    for (int j = count - 1; j >= 0; --j)
        if (from[j])
            addGZsWithOp(*from[j], collected);

    for (auto it = collected.rbegin(); it != collected.rend(); ++it)
    {
        std::string rest = linesAfterAdd(*this, *it);
        std::string name = getGZ(*it)->getName();
        os << "pomrename ";
        protect(os, name);
        os << " ";
        for (int j = count - 1; j >= 0; --j)
        {
            if (!from[j] || !to[j])
                continue;
            const std::string old_path = from[j]->getFullPath();
            const std::string new_path = to[j]->getFullPath();
            replaceAll(rest, old_path, new_path);
            replaceAll(name, old_path, new_path);
        }
        protect(os, name);
        os << "\npomdetach ";
        protect(os, name);
        os << "\n" << rest << "\n";
    }
    return HOST_ERR_NONE;
}
