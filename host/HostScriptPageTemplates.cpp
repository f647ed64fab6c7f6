// HostScriptPage: conversion between parsed pages and template lists with import records.
#include "host/HostScriptPage.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <tuple>

namespace
{
using Kind = HostScriptParm::Kind;

/// The shortest text that reads back as exactly `value`.
std::string formatNumber(double value)
{
    char buf[40];
    for (int precision : {6, 9, 12, 15, 17})
    {
        std::snprintf(buf, sizeof buf, "%.*g", precision, value);
        if (std::strtod(buf, nullptr) == value)
            break;
    }
    return buf;
}

HostParmType presentation(HostParmType type, const HostScriptParm &p)
{
    std::uint64_t flags = 0;
    if (p.myInvisible)
        flags |= HostParmType::INVISIBLE;
    if (p.myNoLabel)
        flags |= HostParmType::NO_LABEL;
    if (p.myJoinNext)
        flags |= HostParmType::JOIN_NEXT;
    return type.withFlags(flags);
}

/// Sets or removes one tag, leaving no empty tag set behind.
void setTag(HostParmTemplate &t, const char *name, const char *value)
{
    if (value)
        t.tags().set(name, value);
    else if (t.getTags() && t.getTags()->has(name))
    {
        t.tags().remove(name);
        if (t.getTags()->empty())
            t.setTags(nullptr);
    }
}

void setConditionsAndTags(HostParmTemplate &t, const HostScriptParm &p)
{
    for (int c = 0; c < HOST_NUM_CONDITIONS; ++c)
        t.setCondition(static_cast<HostParmCondition>(c), p.myConditions[c]);
    t.setHelp(p.myHelp);
    t.setBaseParm(p.myBaseParm);
    if (!p.myParmTags.empty())
        t.tags().merge(p.myParmTags);
    if (!p.myGroupTags.empty())
        t.tags().merge(p.myGroupTags);
    if (p.myUnquoted)
        t.tags().set(HostSpareData::UNQUOTED_TAG, "1");
    // The type token alone decides the variant.
    setTag(t, HostSpareData::TYPE_VARIANT_TAG,
           p.myKind == HostScriptParm::PARM ? HostScriptParm::typeVariant(p.myTypeToken) : nullptr);
}

void setMenu(HostParmTemplate &t, const HostScriptParm &p)
{
    unsigned flags = 0;
    if (p.myMenuStyle == HostScriptParm::MENU_REPLACE)
        flags = HostChoiceList::REPLACE;
    else if (p.myMenuStyle != HostScriptParm::MENU_TOGGLE)
        flags = HostChoiceList::EXCLUSIVE;
    if (p.myUseTokenValue)
        flags |= HostChoiceList::USE_TOKEN;
    HostChoiceList menu(flags);
    if (p.myMenuIsScript)
        menu.setScript(p.myMenuScript, p.myMenuLanguage);
    for (const HostChoiceList::Item &item : p.myMenuItems)
        menu.addItem(item.myToken, item.myLabel);
    t.setChoiceList(&menu);
    // A node path keeps its own extension; the menu style then cannot be told apart.
    if (t.getTypeExtension() != HostParmTemplate::EXT_NONE)
        return;
    if (p.myMenuStyle == HostScriptParm::MENU_MINI)
        t.setTypeExtension(HostParmTemplate::EXT_MINI_MENU);
    else if (p.myMenuStyle == HostScriptParm::MENU_JOIN)
        t.setTypeExtension(HostParmTemplate::EXT_JOIN_MENU);
}

HostParmTemplate parmTemplate(const HostScriptParm &p)
{
    HostParmType type = HOST_PARM_FLOAT;
    int ext = 0, multi = 0, fixed = 0;
    if (!p.myTypeToken.empty())
        HostScriptParm::typeFromToken(p.myTypeToken, type, ext, multi, fixed);
    HostParmTemplate t(presentation(type, p), p.myName, p.myLabel, p.effectiveSize());
    t.setTypeExtension(ext);
    t.setMultiType(multi);
    for (std::size_t k = 0; k < p.myDefaults.size(); ++k)
    {
        const HostScriptParm::Default &d = p.myDefaults[k];
        double number = 0;
        if (d.myMeaning == 0 && type.isNumeric() && HostScriptParm::parseNumber(d.myText, number))
            t.setDefault(static_cast<int>(k), HostParmDefault(number));
        else
            t.setDefault(static_cast<int>(k),
                         HostParmDefault(d.myText, static_cast<HostStringMeaning>(d.myMeaning)));
    }
    if (p.myHasRange)
        t.setRange(
            HostParmRange(p.myRangeMin, p.myRangeMax, p.myRangeMinStrict, p.myRangeMaxStrict));
    if (p.myHasMenu)
        setMenu(t, p);
    t.setExportLevel(p.myExport);
    setConditionsAndTags(t, p);
    return t;
}

/// Builds one level of a page into `list`; `imports` is null inside multiparms.
class Builder
{
public:
    Builder(std::string &errors) : myErrors(errors) {}

    /// Returns the number of templates directly at this level (a folder's count).
    int build(const HostScriptPage &page, HostParmTemplateList &list,
              std::vector<HostImportRecord> *imports, int switcher, int folder, int &last)
    {
        int count = 0;
        for (int i = 0; i < page.getNumParms(); ++i)
        {
            const HostScriptParm &p = *page.getParm(i);
            if (p.isImport())
                count += addImport(p, list, imports, switcher, folder, last);
            else if (p.isFolder())
            {
                i = addSwitcher(page, i, list, imports, last);
                ++count;
            }
            else
            {
                list.append(p.isMultiparm() ? multiparmTemplate(p) : parmTemplate(p));
                last = list.size() - 1;
                ++count;
            }
        }
        return count;
    }

    bool myOk = true;

private:
    int addImport(const HostScriptParm &p, HostParmTemplateList &list,
                  std::vector<HostImportRecord> *imports, int switcher, int folder, int &last)
    {
        if (!imports)
        {
            fail("Import block '" + p.myLabel + "' inside a multiparm is not kept");
            return 0;
        }
        HostImportRecord r;
        r.mySwitcher = switcher;
        r.myFolder = folder;
        r.myAfter = last;
        r.myLabel = p.myLabel;
        r.mySource = p.mySource;
        r.myToken = p.myToken;
        r.myMask = p.myMask;
        r.myEnable = p.myEnable;
        imports->push_back(r);
        // Blocks written inside an import are kept as ordinary parameters after it.
        return p.myPage ? build(*p.myPage, list, imports, switcher, folder, last) : 0;
    }

    HostParmTemplate multiparmTemplate(const HostScriptParm &p)
    {
        HostParmTemplate t(presentation(HOST_PARM_MULTIPARM, p), p.myName, p.myLabel);
        t.setMultiType(p.myKind == HostScriptParm::MULTI_LIST ? HostParmTemplate::MULTI_LIST
                       : p.myKind == HostScriptParm::MULTI_SCROLL
                           ? HostParmTemplate::MULTI_SCROLL
                           : HostParmTemplate::MULTI_SWITCHER);
        double count = 0;
        if (!p.myDefaults.empty() && HostScriptParm::parseNumber(p.myDefaults[0].myText, count) &&
            std::fabs(count) < 1e9)
            t.setDefault(0, HostParmDefault(static_cast<double>(static_cast<long long>(count))));
        setConditionsAndTags(t, p);
        t.setExportLevel(p.myExport);
        if (p.myPage)
        {
            HostParmTemplateList children;
            int last = -1;
            build(*p.myPage, children, nullptr, -1, -1, last);
            for (int c = 0; c < children.size(); ++c)
                t.addChild(children[c]);
        }
        return t;
    }

    int addSwitcher(const HostScriptPage &page, int first, HostParmTemplateList &list,
                    std::vector<HostImportRecord> *imports, int &last)
    {
        const HostScriptParm &head = *page.getParm(first);
        int start = first, end = first;
        page.getSwitcherRange(first, start, end);
        HostParmType type = HOST_PARM_SWITCHER;
        if (head.myKind == HostScriptParm::GROUP_RADIO)
            type = type.withFlags(HostParmType::EXCLUSIVE);
        HostParmTemplate sw(type, head.myName, head.myLabel);
        sw.setBaseParm(head.myBaseParm);
        if (head.myKind == HostScriptParm::GROUP_COLLAPSIBLE)
            sw.tags().set(HostSpareData::GROUP_TYPE_TAG, HostSpareData::COLLAPSIBLE_GROUP);
        else if (head.myKind == HostScriptParm::GROUP_SIMPLE)
            sw.tags().set(HostSpareData::GROUP_TYPE_TAG, HostSpareData::SIMPLE_GROUP);
        const int index = list.size();
        list.append(sw);
        last = index;
        for (int k = 0; k <= end - first; ++k)
        {
            const HostScriptParm &f = *page.getParm(first + k);
            int inner = -1;
            const int n = f.myPage ? build(*f.myPage, list, imports, index, k, inner) : 0;
            applyFolder(list[index], f, k, n);
        }
        return end;
    }

    static void applyFolder(HostParmTemplate &sw, const HostScriptParm &f, int k, int count)
    {
        sw.addFolder(f.myLabel, count);
        for (int c = 0; c < HOST_NUM_CONDITIONS; ++c)
        {
            const auto which = static_cast<HostParmCondition>(c);
            if (!f.myConditions[c].empty())
                sw.setCondition(which, f.myConditions[c]);
            if (!f.myTabConditions[c].empty())
                sw.setTabCondition(k, which, f.myTabConditions[c]);
        }
        // The folder kind alone decides the group type.
        for (const auto &tag : f.myParmTags.tags())
            if (tag.first != HostSpareData::GROUP_TYPE_TAG)
                sw.tags().set(tag.first, tag.second);
        for (const auto &tag : f.myGroupTags.tags())
            sw.tags().set(HostSpareData::folderTagName(tag.first, k), tag.second);
        if (f.myInvisibleTab || f.myInvisible)
            sw.tags().set(HostSpareData::folderTagName(HostSpareData::FOLDER_HIDDEN_TAG, k), "1");
    }

    void fail(const std::string &message)
    {
        myErrors += message + '\n';
        myOk = false;
    }

    std::string &myErrors;
};
} // namespace

bool HostScriptPage::buildBlockTemplates(const HostScriptParm &parm, HostSpareLayout &layout,
                                        std::string &errors)
{
    layout.myTemplates.clear();
    layout.myImports.clear();
    // A lone block is built as the only block of a page it does not belong to; the page
    // borrows it and gives it back before it goes.
    struct Borrowed
    {
        HostScriptPage page;
        ~Borrowed() { (void)page.myParms.back().release(); }
    } borrowed;
    borrowed.page.myParms.emplace_back(const_cast<HostScriptParm *>(&parm));
    Builder builder(errors);
    int last = -1;
    builder.build(borrowed.page, layout.myTemplates, &layout.myImports, -1, -1, last);
    return builder.myOk;
}

bool HostScriptPage::buildTemplates(HostSpareLayout &layout, std::string &errors) const
{
    layout.myTemplates.clear();
    layout.myImports.clear();
    Builder builder(errors);
    int last = -1;
    builder.build(*this, layout.myTemplates, &layout.myImports, -1, -1, last);
    return builder.myOk;
}

namespace
{
/// Writes a template list back into pages, placing import records where they name.
class Emitter
{
public:
    explicit Emitter(const std::vector<HostImportRecord> &imports)
        : myImports(imports), myPlaced(imports.size(), false)
    {
        for (std::size_t r = 0; r < imports.size(); ++r)
            myByPlace[place(imports[r].mySwitcher, imports[r].myFolder, imports[r].myAfter)]
                .push_back(r);
    }

    /// Emits up to `n` direct entries of `list` from index i into `page` (a folder of the
    /// switcher at `switcher`, or the top level); returns the index after them.
    int emit(const HostParmTemplateList &list, int i, int n, HostScriptPage &page, int switcher,
             int folder, bool imports)
    {
        HostScriptParm *previous = nullptr; // the last folder of the switcher just written
        if (imports)
            placeImports(page, switcher, folder, -1, previous);
        for (int c = 0; c < n && i < list.size(); ++c)
        {
            const int here = i;
            if (list[i].getType().isSwitcher())
                i = emitSwitcher(list, i, page, previous, imports);
            else
            {
                page.addParm(parmBlock(list[i]));
                previous = nullptr;
                ++i;
            }
            if (imports)
                placeImports(page, switcher, folder, here, previous);
        }
        return i;
    }

    /// Records that could not be placed go at the end of the top level.
    void placeRest(HostScriptPage &page)
    {
        for (std::size_t r = 0; r < myImports.size(); ++r)
            if (!myPlaced[r])
                page.addParm(importBlock(myImports[r]));
    }

    static std::unique_ptr<HostScriptParm> parmBlock(const HostParmTemplate &t);

private:
    int emitSwitcher(const HostParmTemplateList &list, int i, HostScriptPage &page,
                     HostScriptParm *&previous, bool imports)
    {
        const HostParmTemplate &sw = list[i];
        const Kind kind = folderKind(sw);
        // Two switchers of one kind in a row stay apart only with a tab break between them.
        if (previous && previous->myKind == kind)
            previous->myTabBreak = true;
        int next = i + 1;
        HostScriptParm *folder = nullptr;
        for (int k = 0; k < sw.getFolderCount(); ++k)
        {
            auto f = folderBlock(sw, k, kind);
            folder = f.get();
            page.addParm(std::move(f));
            next = emit(list, next, sw.getFolderParmCount(k), *folder->myPage, i, k, imports);
        }
        previous = (kind == HostScriptParm::GROUP_TAB || kind == HostScriptParm::GROUP_RADIO)
                       ? folder
                       : nullptr;
        return next;
    }

    void placeImports(HostScriptPage &page, int switcher, int folder, int after,
                      HostScriptParm *&previous)
    {
        auto it = myByPlace.find(place(switcher, folder, after));
        if (it == myByPlace.end())
            return;
        for (std::size_t r : it->second)
        {
            if (myPlaced[r])
                continue;
            page.addParm(importBlock(myImports[r]));
            myPlaced[r] = true;
            previous = nullptr;
        }
    }

    static Kind folderKind(const HostParmTemplate &sw)
    {
        if (sw.getType().isExclusive())
            return HostScriptParm::GROUP_RADIO;
        const char *group = sw.getTag(HostSpareData::GROUP_TYPE_TAG);
        if (group && std::strcmp(group, HostSpareData::COLLAPSIBLE_GROUP) == 0)
            return HostScriptParm::GROUP_COLLAPSIBLE;
        if (group && std::strcmp(group, HostSpareData::SIMPLE_GROUP) == 0)
            return HostScriptParm::GROUP_SIMPLE;
        return HostScriptParm::GROUP_TAB;
    }

    static std::unique_ptr<HostScriptParm> folderBlock(const HostParmTemplate &sw, int k, Kind kind)
    {
        auto f = std::make_unique<HostScriptParm>(kind);
        f->myPage = std::make_unique<HostScriptPage>();
        f->myName = k == 0 ? sw.getName() : std::string();
        f->myLabel = sw.getFolderLabel(k);
        f->myBaseParm = k == 0 && sw.isBaseParm();
        for (int c = 0; c < HOST_NUM_CONDITIONS; ++c)
        {
            const auto which = static_cast<HostParmCondition>(c);
            if (k == 0)
                f->myConditions[c] = sw.getCondition(which);
            f->myTabConditions[c] = sw.getTabCondition(k, which);
        }
        if (!sw.getTags())
            return f;
        const std::string suffix = ':' + std::to_string(k);
        for (const auto &tag : sw.getTags()->tags())
        {
            const std::string &name = tag.first;
            const std::size_t colon = name.rfind(':');
            const bool per_folder =
                colon != std::string::npos && colon != 0 &&
                name.find_first_not_of("0123456789", colon + 1) == std::string::npos &&
                colon + 1 < name.size();
            if (!per_folder)
            {
                if (k == 0 && name != HostSpareData::GROUP_TYPE_TAG)
                    f->myParmTags.set(name, tag.second);
                continue;
            }
            if (name.compare(colon, std::string::npos, suffix) != 0)
                continue;
            const std::string base = name.substr(0, colon);
            if (base == HostSpareData::FOLDER_HIDDEN_TAG && tag.second == "1")
                f->myInvisibleTab = true;
            else
                f->myGroupTags.set(base, tag.second);
        }
        return f;
    }

    static std::unique_ptr<HostScriptParm> importBlock(const HostImportRecord &r)
    {
        auto p = std::make_unique<HostScriptParm>(HostScriptParm::IMPORT);
        p->myPage = std::make_unique<HostScriptPage>();
        p->myLabel = r.myLabel;
        p->mySource = r.mySource;
        p->myToken = r.myToken;
        p->myMask = r.myMask;
        p->myEnable = r.myEnable;
        return p;
    }

    using Place = std::tuple<int, int, int>;
    static Place place(int switcher, int folder, int after) { return {switcher, folder, after}; }

    const std::vector<HostImportRecord> &myImports;
    std::vector<bool> myPlaced;
    std::map<Place, std::vector<std::size_t>> myByPlace; ///< records by their place, in order
};

void fillMenu(HostScriptParm &p, const HostParmTemplate &t)
{
    const HostChoiceList *menu = t.getChoiceList();
    if (!menu)
        return;
    p.myHasMenu = true;
    if (t.getTypeExtension() == HostParmTemplate::EXT_MINI_MENU)
        p.myMenuStyle = HostScriptParm::MENU_MINI;
    else if (t.getTypeExtension() == HostParmTemplate::EXT_JOIN_MENU)
        p.myMenuStyle = HostScriptParm::MENU_JOIN;
    else if (menu->isExclusive())
        p.myMenuStyle = HostScriptParm::MENU_NORMAL;
    else
        p.myMenuStyle =
            menu->isReplace() ? HostScriptParm::MENU_REPLACE : HostScriptParm::MENU_TOGGLE;
    p.myUseTokenValue = menu->usesToken();
    p.myMenuIsScript = !menu->getScript().empty();
    p.myMenuScript = menu->getScript();
    p.myMenuLanguage = menu->getScriptLanguage();
    p.myMenuItems = menu->items();
}

void fillCommon(HostScriptParm &p, const HostParmTemplate &t)
{
    p.myName = t.getName();
    p.myLabel = t.getLabel();
    p.myInvisible = t.getType().isInvisible();
    p.myNoLabel = t.getType().isNoLabel();
    p.myJoinNext = t.getType().isJoinNext();
    p.myBaseParm = t.isBaseParm();
    p.myHelp = t.getHelp();
    p.myExport = t.getExportLevel();
    for (int c = 0; c < HOST_NUM_CONDITIONS; ++c)
        p.myConditions[c] = t.getCondition(static_cast<HostParmCondition>(c));
    if (!t.getTags())
        return;
    for (const auto &tag : t.getTags()->tags())
    {
        if (tag.first == HostSpareData::TYPE_VARIANT_TAG)
            continue;
        if (tag.first == HostSpareData::UNQUOTED_TAG && tag.second == "1")
            p.myUnquoted = true;
        else
            p.myParmTags.set(tag.first, tag.second);
    }
}

std::unique_ptr<HostScriptParm> multiparmBlock(const HostParmTemplate &t)
{
    const int layout = t.getMultiType() & 15;
    auto p = std::make_unique<HostScriptParm>(
        layout == HostParmTemplate::MULTI_LIST     ? HostScriptParm::MULTI_LIST
        : layout == HostParmTemplate::MULTI_SCROLL ? HostScriptParm::MULTI_SCROLL
                                                   : HostScriptParm::MULTI_SWITCHER);
    fillCommon(*p, t);
    if (!t.getDefaults().empty())
        p->myDefaults.push_back({formatNumber(t.getDefault(0).myNumber), 0});
    p->myPage = std::make_unique<HostScriptPage>();
    HostParmTemplateList children(t.getChildList());
    const std::vector<HostImportRecord> none;
    Emitter inner(none);
    inner.emit(children, 0, children.size(), *p->myPage, -1, -1, /*imports=*/false);
    return p;
}
} // namespace

std::unique_ptr<HostScriptParm> Emitter::parmBlock(const HostParmTemplate &t)
{
    if (t.getType().isMultiparm())
        return multiparmBlock(t);
    auto p = std::make_unique<HostScriptParm>(HostScriptParm::PARM);
    fillCommon(*p, t);
    p->myTypeToken = HostScriptParm::tokenFromType(t);
    p->mySize = t.getVectorSize();
    for (const HostParmDefault &d : t.getDefaults())
    {
        const bool text =
            !d.myString.empty() || d.myMeaning != HOST_STRING_LITERAL || !t.getType().isNumeric();
        p->myDefaults.push_back({text ? d.myString : formatNumber(d.myNumber), d.myMeaning});
    }
    p->myHasDefault = !p->myDefaults.empty();
    if (t.hasRange())
    {
        const HostParmRange &r = t.getRange();
        p->myHasRange = true;
        p->myRangeMin = r.myMin;
        p->myRangeMax = r.myMax;
        p->myRangeMinStrict = r.myMinStrict;
        p->myRangeMaxStrict = r.myMaxStrict;
    }
    fillMenu(*p, t);
    return p;
}

std::unique_ptr<HostScriptPage> HostScriptPage::fromTemplates(const HostSpareLayout &layout)
{
    auto page = std::make_unique<HostScriptPage>();
    Emitter emitter(layout.myImports);
    emitter.emit(layout.myTemplates, 0, layout.myTemplates.size(), *page, -1, -1,
                 /*imports=*/true);
    emitter.placeRest(*page);
    return page;
}
