// GZ_ImportUtils: source and token strings of parameter imports, and their checks.
#include "persistent/GZ_ImportUtils.h"

#include "host/HostCommandManager.h"
#include "host/HostDialogStream.h"
#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostParm.h"
#include "host/HostParmTemplate.h"
#include "host/HostReader.h"
#include "host/HostScriptPage.h"
#include "host/HostScriptParm.h"

#include <cstring>

namespace
{
constexpr char OP_PREFIX[] = "op:";
constexpr std::size_t OP_PREFIX_LENGTH = sizeof(OP_PREFIX) - 1;

bool isOpSource(const char *source)
{
    return source && std::strncmp(source, OP_PREFIX, OP_PREFIX_LENGTH) == 0;
}

// Only the exact text "1" disables: "10" or "true" are someone else's values, not ours.
bool isDisabled(const char *value)
{
    return value && std::strcmp(value, "1") == 0;
}

// "NAME:LABEL" split at its last colon (labels may not hold one, folder names never do).
bool splitFolderToken(const char *token, std::string &folder, std::string &tab)
{
    const char *colon = std::strrchr(token, ':');
    if (!colon)
        return false;
    folder.assign(token, colon);
    tab = colon + 1;
    return true;
}

// The index of the first tab of `sw` labelled `label`, or -1.
int findTab(const HostParmTemplate &sw, const std::string &label)
{
    for (int k = 0; k < sw.getFolderCount(); ++k)
        if (sw.getFolderLabel(k) == label)
            return k;
    return -1;
}

bool hasTabLabelled(const HostScriptParm &folder, const std::string &label)
{
    if (!folder.myPage)
        return false;
    const HostScriptPage &tabs = *folder.myPage;
    for (int k = 0; k < tabs.getNumParms(); ++k)
        if (tabs.getParm(k)->isFolder() && tabs.getParm(k)->myLabel == label)
            return true;
    return false;
}

// One folder block that stands for the switcher of folders first..last of `page`.
std::unique_ptr<HostScriptParm> switcherEntry(const HostScriptPage &page, int first, int last)
{
    const HostScriptParm &head = *page.getParm(first);
    auto entry = std::make_unique<HostScriptParm>(head.myKind);
    entry->myName = head.myName;
    entry->myLabel = head.myLabel;
    entry->myLine = head.myLine;
    entry->myPage = std::make_unique<HostScriptPage>();
    for (int i = first; i <= last; ++i)
    {
        auto tab = std::make_unique<HostScriptParm>(page.getParm(i)->myKind);
        tab->myLabel = page.getParm(i)->myLabel;
        entry->myPage->addParm(std::move(tab));
    }
    return entry;
}
} // namespace

void GZ_ImportUtils::buildFileSource(std::string &out, const char *path)
{
    out.clear();
    if (path)
        out = path;
}

void GZ_ImportUtils::buildOpSource(std::string &out, const char *node_path)
{
    out = OP_PREFIX;
    if (node_path)
        out += node_path;
}

void GZ_ImportUtils::buildFolderToken(std::string &out, const char *folder, const char *tab)
{
    out.clear();
    if (folder)
        out = folder;
    out += ':';
    if (tab)
        out += tab;
}

GZ_ImportType GZ_ImportUtils::queryImportType(const char *source)
{
    if (!source)
        return GZ_IMPORT_NONE;
    return isOpSource(source) ? GZ_IMPORT_OP : GZ_IMPORT_FILE;
}

bool GZ_ImportUtils::parseFileSource(const char *source, std::string &path)
{
    path = source ? source : "";
    return !path.empty();
}

HostNode *GZ_ImportUtils::parseOpSource(const char *source, const HostNode *relative_to,
                                        std::string &path)
{
    path.clear();
    if (!isOpSource(source))
        return nullptr;
    path = source + OP_PREFIX_LENGTH;
    if (path.empty())
        return nullptr;
    return HostDirector::instance()->findNode(path, relative_to);
}

std::unique_ptr<HostScriptPage> GZ_ImportUtils::parseImportFile(const char *path)
{
    if (!path)
        return nullptr;
    const std::string expanded = HostCommandManager::getInstance()->expandVariables(path);
    if (expanded.empty() || !HostReader(expanded).isOpen())
        return nullptr;
    HostDialogStream in;
    if (!in.openFile(expanded, HostDialogStream::INCLUDES))
        return nullptr;
    auto page = std::make_unique<HostScriptPage>();
    if (!page->parsePage(in))
        return nullptr;
    return page;
}

bool GZ_ImportUtils::isAvailableForImport(const HostParmTemplate *tmpl, int tab_index)
{
    if (!tmpl)
        return false;
    if (!tmpl->getTags() || tmpl->getTags()->empty())
        return true;
    const bool disabled = isDisabled(tmpl->getTag(EXPORT_DISABLE_TAG));
    if (!tmpl->getType().isSwitcher() || tab_index < 0)
        return !disabled;
    if (disabled || tab_index >= tmpl->getFolderCount())
        return false;
    const std::string tab_tag = std::string(EXPORT_DISABLE_TAG) + ':' + std::to_string(tab_index);
    return !isDisabled(tmpl->getTag(tab_tag));
}

bool GZ_ImportUtils::isAvailableForImport(const HostParm *parm, int tab_index)
{
    return parm && isAvailableForImport(&parm->getTemplate(), tab_index);
}

void GZ_ImportUtils::indexFileParms(const HostScriptPage &page,
                                    std::vector<std::unique_ptr<HostScriptParm>> &storage,
                                    std::map<std::string, HostScriptParm *> &parms)
{
    for (int i = 0; i < page.getNumParms(); ++i)
    {
        HostScriptParm *parm = page.getParm(i);
        if (parm->isImport())
            continue;
        if (!parm->isFolder())
        {
            if (!parm->myName.empty())
                parms.emplace(parm->myName, parm);
            continue;
        }
        int first = i, last = i;
        page.getSwitcherRange(i, first, last);
        if (!parm->myName.empty())
        {
            storage.push_back(switcherEntry(page, first, last));
            parms.emplace(parm->myName, storage.back().get());
        }
        for (int k = first; k <= last; ++k)
            if (page.getParm(k)->myPage)
                indexFileParms(*page.getParm(k)->myPage, storage, parms);
        i = last;
    }
}

bool GZ_ImportUtils::validateFileSource(const char *source, const char *token, bool is_folder,
                                        bool is_multi_parm, const char *expected_source,
                                        const std::map<std::string, HostScriptParm *> &parms)
{
    if (!source || !token || std::strcmp(source, expected_source ? expected_source : "") != 0)
        return false;
    if (!is_folder)
    {
        const auto it = parms.find(token);
        if (it == parms.end())
            return false;
        return !it->second || it->second->isMultiparm() == is_multi_parm;
    }
    std::string folder, tab;
    if (!splitFolderToken(token, folder, tab) || tab.empty())
        return false;
    const auto it = parms.find(folder);
    if (it == parms.end() || !it->second || !it->second->isFolder())
        return false;
    return hasTabLabelled(*it->second, tab);
}

bool GZ_ImportUtils::validateOpSource(const char *source, const char *token, bool is_folder,
                                      bool is_multi_parm, const char *expected_path,
                                      const std::map<std::string, HostParm *> &parms)
{
    if (!isOpSource(source) || !token ||
        std::strcmp(source + OP_PREFIX_LENGTH, expected_path ? expected_path : "") != 0)
        return false;
    if (!is_folder)
    {
        const auto it = parms.find(token);
        if (it == parms.end())
            return false;
        return !it->second || it->second->isMultiParm() == is_multi_parm;
    }
    std::string folder, tab;
    if (!splitFolderToken(token, folder, tab))
        return false;
    const auto it = parms.find(folder);
    if (it == parms.end() || !it->second || !it->second->getType().isSwitcher())
        return false;
    const int index = findTab(it->second->getTemplate(), tab);
    return index >= 0 && isAvailableForImport(it->second, index);
}
