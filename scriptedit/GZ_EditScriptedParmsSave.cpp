// GZ_EditScriptedParms: the parameter section of a dialog script, and the naming rule.
#include "scriptedit/GZ_EditScriptedParms.h"

#include "scriptedit/gz_SafeNameContext.h"
#include "scriptedit/gz_ScriptHost.h"

#include <cmath>
#include <cstdlib>
#include <memory>
#include <ostream>
#include <utility>
#include <vector>

using gz_ScriptHost::quote;

namespace
{
std::string blanks(int n)
{
    return std::string(static_cast<size_t>(n > 0 ? n : 0), ' ');
}

const char *const GROUP_KEYWORDS[] = {"groupcollapsible {", "groupsimple {", "group {",
                                      "groupradio {"};
const char *const MULTI_KEYWORDS[] = {"multiparm {", "multiscroll {", "multiswitcher {"};

/// Import scope: a block inside an import source writes its import tags.
void enterBlock(const GZ_EditScriptedParm &parm, bool &scope, int &count)
{
    if (!scope)
    {
        if (parm.getImportEnable() && parm.getImportSource())
            scope = true;
    }
    else
        ++count;
}
} // namespace

bool GZ_EditScriptedParms::makeSafeParmName(const GZ_EditScriptedParm *parm, std::string &name,
                                            const std::unordered_set<std::string> *avoid,
                                            bool make_unique) const
{
    gz_SafeNameContext ctx(*this, make_unique);
    const int index = parm ? getParmIndex(parm) : -1;
    const int level = index >= 0 ? getMultiParmInstanceLevel(index) : 0;
    return ctx.makeSafe(parm, name, avoid, level, index >= 0 ? parm : nullptr);
}

int GZ_EditScriptedParms::save(std::ostream &os, std::string &errors, bool check_joins)
{
    int depth = 0;
    std::vector<std::pair<int, int>> levels{{-1, -1}};
    bool import_scope = false;
    int import_count = 0;
    std::unique_ptr<gz_SafeNameContext> names; // built only when a block has no name
    for (int i = 0; i < entries(); ++i)
    {
        GZ_EditScriptedParm &parm = *myParms[i];
        if (parm.getIsGroupStart() && parm.getName().empty())
        {
            if (!names)
                names = std::make_unique<gz_SafeNameContext>(*this, /*make_unique=*/true);
            std::string name = "folder0";
            names->makeSafe(&parm, name, nullptr, getMultiParmInstanceLevel(i), nullptr);
            parm.setName(name);
            names->noteNamed(parm);
        }
        if (parm.getIsGroupEnd())
        {
            if (depth == 0)
                continue;
            levels.pop_back();
            levels.back().second = i;
            saveGroupFooter(os, depth, import_scope, import_count);
            continue;
        }
        if (parm.getIsGroupStart())
        {
            const auto &top = levels.back();
            const GZ_EditScriptedParm *sibling = getParm(top.first);
            const bool continues = top.second == i - 1 && sibling &&
                                   sibling->getFolderType() == parm.getFolderType() &&
                                   (parm.getFolderType() == GZ_FOLDER_TABS ||
                                    parm.getFolderType() == GZ_FOLDER_RADIO) &&
                                   !sibling->getTabBreak();
            levels.back().first = i;
            levels.emplace_back(-1, -1);
            if (parm.getFolderType() <= GZ_FOLDER_RADIO)
                saveGroupHeader(os, depth, parm, !continues, import_scope, import_count);
            else if (parm.getFolderType() == GZ_FOLDER_IMPORT)
                saveImportHeader(os, depth, parm, import_scope, import_count);
            else
                saveMultiParmHeader(os, depth, parm, import_scope, import_count);
            continue;
        }
        const GZ_EditScriptedParm *next = getParm(i + 1);
        if (!parm.save(os, depth, myOperator, check_joins, next, import_scope))
        {
            if (!errors.empty())
                errors += "\n";
            errors += "Error saving dialog script";
        }
    }
    while (depth > 0)
    {
        --depth;
        os << blanks(4 * depth + 4) << "}\n\n";
    }
    return 1;
}

void GZ_EditScriptedParms::saveGroupFooter(std::ostream &os, int &depth, bool &import_scope,
                                           int &import_count)
{
    --depth;
    os << blanks(4 * depth + 4) << "}\n\n";
    if (!import_scope)
        return;
    if (import_count == 0)
        import_scope = false;
    else
        --import_count;
}

void GZ_EditScriptedParms::saveGroupHeader(std::ostream &os, int &depth, GZ_EditScriptedParm &parm,
                                           bool switcher_start, bool &import_scope,
                                           int &import_count)
{
    os << blanks(4 * depth + 4) << GROUP_KEYWORDS[parm.getFolderType()] << "\n";
    ++depth;
    const std::string inner = blanks(4 * depth + 4);
    os << inner << "name    " << quote(parm.getName()) << "\n";
    os << inner << "label   " << quote(parm.getLabel()) << "\n";
    if (parm.getIsBaseParm())
        os << inner << "baseparm\n";
    if (parm.getInvisible())
        os << inner << "invisibletab\n";
    if (parm.getTabBreak())
        os << inner << "tabbreak\n";
    static const char *const keywords[] = {"disablewhen", "hidewhen", "nocookwhen"};
    for (int c = 0; c < GZ_EditScriptedParm::NUM_CONDITIONS; ++c)
    {
        GZ_EditScriptedParm::saveConditional(os, depth, (std::string(keywords[c]) + "tab").c_str(),
                                             parm.tabCondition(c));
        GZ_EditScriptedParm::saveConditional(os, depth, keywords[c], parm.condition(c));
    }
    enterBlock(parm, import_scope, import_count);
    parm.saveSpareData(os, inner, !import_scope, switcher_start);
    os << "\n";
}

void GZ_EditScriptedParms::saveMultiParmHeader(std::ostream &os, int &depth,
                                               GZ_EditScriptedParm &parm, bool &import_scope,
                                               int &import_count)
{
    os << blanks(4 * depth + 4) << MULTI_KEYWORDS[parm.getFolderType() - GZ_FOLDER_MULTI_LIST]
       << "\n";
    ++depth;
    const std::string inner = blanks(4 * depth + 4);
    os << inner << "name    " << quote(parm.getName()) << "\n";
    os << inner << "label    " << quote(parm.getLabel()) << "\n";
    if (parm.getIsBaseParm())
        os << inner << "baseparm\n";
    if (parm.getInvisible())
        os << inner << "invisible\n";
    const std::string &first = parm.getDefault(0);
    char *end = nullptr;
    const double value = std::strtod(first.c_str(), &end);
    if (!first.empty() && end != first.c_str() && *end == '\0' && std::fabs(value) < 1e18)
        os << inner << "default " << static_cast<long long>(value) << "\n";
    GZ_EditScriptedParm::saveConditional(os, depth, "disablewhen", parm.condition(0));
    GZ_EditScriptedParm::saveConditional(os, depth, "hidewhen", parm.condition(1));
    GZ_EditScriptedParm::saveConditional(os, depth, "nocookwhen", parm.condition(2));
    enterBlock(parm, import_scope, import_count);
    parm.saveSpareData(os, inner, !import_scope, /*switcher_start=*/false);
    os << "\n";
}

void GZ_EditScriptedParms::saveImportHeader(std::ostream &os, int &depth, GZ_EditScriptedParm &parm,
                                            bool &import_scope, int &import_count)
{
    os << blanks(4 * depth + 4) << "import {\n";
    ++depth;
    const std::string inner = blanks(4 * depth + 4);
    os << inner << "label   " << parm.getLabel() << "\n";
    if (!import_scope)
        import_scope = true;
    else
        ++import_count;
    if (const char *source = parm.getImportSource())
        os << inner << "source  " << quote(source) << "\n";
    if (const char *token = parm.getImportToken())
        os << inner << "token   " << quote(token) << "\n";
    if (const char *mask = parm.getImportMask())
        os << inner << "mask    " << quote(mask) << "\n";
    os << inner << "enable  " << (parm.getImportEnable() ? 1 : 0) << "\n";
    os << "\n";
}
