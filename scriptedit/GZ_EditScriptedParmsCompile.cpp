// GZ_EditScriptedParms::compile: the bare interface that stored values and channels need.
#include "scriptedit/GZ_EditScriptedParms.h"

#include <cctype>
#include <unordered_map>

namespace
{
/// Folders of one switcher are named page, page_1, page2...: the name without trailing
/// digits, then without trailing "_", is what they share.
std::string folderBaseName(const std::string &name)
{
    size_t end = name.size();
    while (end > 0 && std::isdigit(static_cast<unsigned char>(name[end - 1])))
        --end;
    while (end > 0 && name[end - 1] == '_')
        --end;
    return name.substr(0, end);
}
} // namespace

void GZ_EditScriptedParms::compile()
{
    // Entries are only removed at or after the one being looked at, so the structure of
    // everything before it, which the first-page test reads, is that of the original list.
    const std::vector<int> match = computeMatches();
    std::vector<bool> removed(myParms.size(), false);
    std::unordered_map<std::string, int> counts;
    for (int i = entries() - 1; i >= 0; --i)
    {
        GZ_EditScriptedParm &p = *myParms[i];
        if (p.getType() == "Label" || p.getType() == "Separator")
        {
            removed[i] = true;
            continue;
        }
        if (p.getIsGroupEnd())
        {
            const int opener = match[i];
            if (opener >= 0 && myParms[opener]->getFolderType() == GZ_FOLDER_TABS)
                removed[i] = true;
            continue;
        }
        if (p.getFolderType() != GZ_FOLDER_TABS)
            continue;
        int &count = counts[folderBaseName(p.getName())];
        ++count;
        const GZ_EditScriptedParm *sibling =
            i > 0 && myParms[i - 1]->getIsGroupEnd() ? getParm(match[i - 1]) : nullptr;
        const bool first_page = i == 0 || !myParms[i - 1]->getIsGroupEnd() || !sibling ||
                                sibling->getFolderType() != GZ_FOLDER_TABS ||
                                sibling->getTabBreak();
        if (first_page)
        {
            p.setFolderType(GZ_FOLDER_NONE);
            p.setType("Ordered Menu");
            p.setSize(count);
            count = 0;
        }
        else
            removed[i] = true;
    }
    removeMarked(removed);

    for (auto &p : myParms)
    {
        p->setLabel("");
        p->setShowLabel(1);
        p->setJoinNext(false);
        if (!p->getIsBaseParm())
            p->setInvisible(1);
        for (int k = 0; k < GZ_EditScriptedParm::MAX_SIZE; ++k)
        {
            p->setDefault(k, "");
            p->setDefaultMeaning(k, 0);
        }
        for (int c = 0; c < GZ_EditScriptedParm::NUM_CONDITIONS; ++c)
        {
            p->setCondition(c, "");
            p->setTabCondition(c, "");
        }
        p->setHelp("");
    }
}
