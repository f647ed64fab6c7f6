// GZ_EditScriptedParm: the dialog-script block of one ordinary parameter.
#include "scriptedit/GZ_EditScriptedParm.h"

#include "scriptedit/gz_ScriptHost.h"

#include "resource/GZ_ResourceManager.h"

#include "host/HostSpareData.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ostream>
#include <sstream>

using gz_ScriptHost::quote;

namespace
{
std::string blanks(int n)
{
    return std::string(static_cast<size_t>(n > 0 ? n : 0), ' ');
}

/// Whether the whole text reads as one number.
bool parsesAsNumber(const std::string &text, double &value)
{
    if (text.empty())
        return false;
    const char *begin = text.c_str();
    char *end = nullptr;
    value = std::strtod(begin, &end);
    return end != begin && *end == '\0';
}

std::string formatG(double value)
{
    char buf[64];
    std::snprintf(buf, sizeof(buf), "%g", value);
    return buf;
}

/// Single-precision numbers as a default-formatted stream writes them.
std::string formatFloat(float value)
{
    std::ostringstream os;
    os << value;
    return os.str();
}

bool isStringHostType(const HostParmType &type)
{
    return type.isString();
}

/// Joins are meaningful only before an ordinary parameter.
bool joinIsWritten(bool join, bool check_joins, const GZ_EditScriptedParm *next)
{
    if (!join)
        return false;
    return !check_joins || (next && next->getFolderType() == GZ_FOLDER_NONE);
}

const char *exportWord(int level)
{
    return level <= 0 ? "none" : level == 1 ? "dialog" : "all";
}

const GZ_EditScriptedParm::GZ_ParmType &terminatorRow()
{
    return GZ_EditScriptedParm::theParmTypes[GZ_EditScriptedParm::getNumParmTypes()];
}

const char *const IMPORT_TAGS[] = {"import_enable", "import_source", "import_token", "import_mask"};

bool isImportTag(const std::string &name)
{
    for (const char *t : IMPORT_TAGS)
        if (name == t)
            return true;
    return false;
}

bool isBlank(const std::string &s)
{
    return s.find_first_not_of(" \t\r\n") == std::string::npos;
}
} // namespace

int GZ_EditScriptedParm::save(std::ostream &os, int depth, HostOperator *op, bool check_joins,
                              const GZ_EditScriptedParm *next, bool in_import_scope)
{
    const std::string outer = blanks(4 * depth + 4);
    const std::string inner = blanks(4 * depth + 8);
    if (myBaseParm)
    {
        saveBaseParm(os, outer, inner, op, check_joins, next);
        return os.good() ? 1 : 0;
    }
    const int row_idx = findParmTypeIdx(myType);
    const GZ_ParmType *row = row_idx >= 0 ? &theParmTypes[row_idx] : &terminatorRow();

    os << outer << "parm {\n";
    os << inner << "name    " << quote(myName) << "\n";
    os << inner << "label   " << quote(myLabel) << "\n";
    os << inner << "type    " << (row_idx >= 0 ? row->scriptToken : "float") << "\n";
    if (myInvisible)
        os << inner << "invisible\n";
    if (!myShowLabel)
        os << inner << "nolabel\n";
    if (joinIsWritten(myJoinNext, check_joins, next))
        os << inner << "joinnext\n";
    if (mySize > 1)
        os << inner << "size    " << mySize << "\n";
    saveDefaults(os, inner, row);
    if (!myHelp.empty())
        os << inner << "help    " << quote(myHelp) << "\n";
    saveConditional(os, depth + 1, "disablewhen", myConditions[0]);
    saveConditional(os, depth + 1, "hidewhen", myConditions[1]);
    saveConditional(os, depth + 1, "nocookwhen", myConditions[2]);
    saveMenu(os, depth, inner, row);
    saveRange(os, inner, row);
    if (myExportLevel > 0)
        os << inner << "export  " << exportWord(myExportLevel) << "\n";

    // "unquoted" has a keyword of its own; it must not come back a second time as a tag.
    const bool unquoted = myType == "String" && getUnquotedFlag();
    if (unquoted)
    {
        os << inner << "unquoted\n";
        setUnquotedFlag(false);
    }
    const bool skip_import = !(in_import_scope || getImportEnable());
    saveSpareData(os, inner, skip_import, /*switcher_start=*/false);
    if (unquoted)
        setUnquotedFlag(true);
    saveSelectors(os, inner, op);
    os << outer << "}\n";
    return os.good() ? 1 : 0;
}

void GZ_EditScriptedParm::saveBaseParm(std::ostream &os, const std::string &outer,
                                       const std::string &inner, HostOperator *op, bool check_joins,
                                       const GZ_EditScriptedParm *next) const
{
    os << outer << "parm {\n";
    os << inner << "name    " << quote(myName) << "\n";
    os << inner << "baseparm\n";
    os << inner << "label   " << quote(myLabel) << "\n";
    if (!myShowLabel)
        os << inner << "nolabel\n";
    if (myInvisible)
        os << inner << "invisible\n";
    if (joinIsWritten(myJoinNext, check_joins, next))
        os << inner << "joinnext\n";
    os << inner << "export  " << exportWord(myExportLevel) << "\n";
    saveSelectors(os, inner, op);
    os << outer << "}\n";
}

void GZ_EditScriptedParm::saveDefaults(std::ostream &os, const std::string &inner,
                                       const GZ_ParmType *row)
{
    os << inner << "default {";
    if (mySize <= 0)
        os << " \"\"";
    for (int k = 0; k < mySize && k < MAX_SIZE; ++k)
    {
        double value = 0.0;
        if (!isStringHostType(row->hostType) && parsesAsNumber(myDefaults.get(k), value))
            myDefaults.set(k, formatG(value));
        if (myDefaultMeanings[k] != 0)
            os << " [ " << quote(myDefaults.get(k)) << " "
               << gz_ScriptHost::stringMeaningName(myDefaultMeanings[k]) << " ]";
        else
            os << " " << quote(myDefaults.get(k));
    }
    os << " }\n";
}

void GZ_EditScriptedParm::saveMenu(std::ostream &os, int depth, const std::string &inner,
                                   const GZ_ParmType *row) const
{
    const bool ordinal = row->hostType.isOrdinalMenu();
    if (!((row->allowMenu && myMenuSource != 0) || ordinal))
        return;
    const char *keyword = "menu";
    if (myMenuStyle == 1)
        keyword = "menumini";
    else if (myMenuStyle == 2)
        keyword = "menujoin";
    else if (myMenuStyle != 0 && !ordinal)
        keyword = myMenuStyle == 3 ? "menureplace" : "menutoggle";
    os << inner << keyword << (myUseTokenValue ? " usetokenvalue" : "") << " {\n";

    const std::string item_indent = blanks(4 * depth + 12);
    if (myMenuSource != 2)
    {
        size_t longest = 0;
        for (const auto &item : myMenuItems)
            if (!item.getToken().empty())
                longest = std::max(longest, gz_ScriptHost::escape(item.getToken()).size());
        const int width = static_cast<int>(longest + 6) & ~3;
        for (const auto &item : myMenuItems)
        {
            if (!item.isValidChoice())
                continue;
            const int len = static_cast<int>(gz_ScriptHost::escape(item.getToken()).size());
            os << item_indent << quote(item.getToken()) << blanks(std::max(1, width - 2 - len))
               << quote(item.getLabel()) << "\n";
        }
    }
    else
    {
        size_t start = 0;
        while (true)
        {
            const size_t nl = myMenuScript.find('\n', start);
            const std::string piece = myMenuScript.substr(start, nl - start);
            os << item_indent << "[ " << quote(piece) << " ]\n";
            if (nl == std::string::npos)
                break;
            start = nl + 1;
        }
        if (myMenuScriptLanguage != 0)
            os << item_indent << "language "
               << gz_ScriptHost::scriptLanguageName(myMenuScriptLanguage) << "\n";
    }
    os << inner << "}\n";
}

void GZ_EditScriptedParm::saveRange(std::ostream &os, const std::string &inner,
                                    const GZ_ParmType *row) const
{
    if (myHasRange)
    {
        os << inner << "range   { " << formatFloat(myRangeMin) << (myRangeMinStrict ? "!" : "")
           << " " << formatFloat(myRangeMax) << (myRangeMaxStrict ? "!" : "") << " }\n";
        return;
    }
    const HostParmType &t = row->hostType;
    if (t.isString() || t.isOrdinal() || t.isData())
        return;
    os << inner << "range   { " << formatFloat(row->rangeMin) << " " << formatFloat(row->rangeMax)
       << " }\n";
}

void GZ_EditScriptedParm::saveConditional(std::ostream &os, int depth, const char *keyword,
                                          std::string &cond)
{
    // Braces get one blank on each side. Blanks already beside a brace are absorbed, so
    // that a condition written and read back is written the same way again.
    std::string padded;
    padded.reserve(cond.size() + 8);
    for (char c : cond)
    {
        if (c != '{' && c != '}')
        {
            if (c == ' ' && !padded.empty() && padded.back() == ' ' && padded.size() >= 2 &&
                (padded[padded.size() - 2] == '{' || padded[padded.size() - 2] == '}'))
                continue;
            padded += c;
            continue;
        }
        while (!padded.empty() && padded.back() == ' ')
            padded.pop_back();
        padded += ' ';
        padded += c;
        padded += ' ';
    }
    const size_t first = padded.find_first_not_of(" \t\r\n");
    const size_t last = padded.find_last_not_of(" \t\r\n");
    cond = first == std::string::npos ? std::string() : padded.substr(first, last - first + 1);
    if (cond.empty())
        return;
    os << blanks(4 * depth + 4) << keyword << " " << quote(cond) << "\n";
}

void GZ_EditScriptedParm::saveSpareData(std::ostream &os, const std::string &indent,
                                        bool skip_import_tags, bool switcher_start) const
{
    if (!myTags)
        return;
    const bool ramp = getIsRampParm();
    const bool block_keyword = myFolderType <= GZ_FOLDER_IMPORT;
    for (const auto &tag : myTags->tags())
    {
        const std::string &name = tag.first;
        if (isBlank(name))
            continue;
        if (skip_import_tags && isImportTag(name))
            continue;
        if (ramp && name.compare(0, 4, "ramp") == 0)
        {
            os << indent << "parmtag { " << quote(name) << " "
               << quote(tag.second, /*alternative=*/true) << " }\n";
            continue;
        }
        const bool group = block_keyword && !(switcher_start && isSwitcherLevelSpareToken(name));
        os << indent << (group ? "grouptag {" : "parmtag {") << " " << quote(name) << " "
           << quote(tag.second) << " }\n";
    }
}

void GZ_EditScriptedParm::saveSelectors(std::ostream &os, const std::string &indent,
                                        HostOperator *op) const
{
    if (!op || !GZresourceManagerExists())
        return;
    const auto *bindings = GZgetResourceManager()->getBindingSelectors(op);
    if (!bindings)
        return;
    for (const auto &b : *bindings)
    {
        if (b.getOpParm() != myName)
            continue;
        os << indent << "bindselector " << b.getName() << " " << b.getDescription() << "\n";
        os << indent << "    " << b.getPrompt() << "\n";
        os << indent << "    " << b.getOpInput() << " " << (b.getOpInputReq() ? 1 : 0) << " "
           << b.getPrimMask() << " " << (b.getAllowDrag() ? 1 : 0) << " " << b.getMenu() << " "
           << (b.getAstSelAll() ? 1 : 0) << "\n";
    }
}
