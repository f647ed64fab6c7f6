// gz_SafeNameContext: the indexes behind makeSafeParmName, and the naming rule itself.
#include "scriptedit/gz_SafeNameContext.h"

#include "scriptedit/GZ_EditScriptedParms.h"
#include "scriptedit/gz_ScriptHost.h"

#include "host/HostNode.h"
#include "host/HostOperator.h"
#include "host/HostParmTemplate.h"

#include <algorithm>
#include <cctype>

namespace
{
void count(std::unordered_map<std::string, int> &map, const std::string &key, int delta)
{
    int &n = map[key];
    n += delta;
    if (n <= 0)
        map.erase(key);
}

bool isDigit(char c)
{
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}
} // namespace

std::string gz_SafeNameContext::shapeOf(const std::string &name)
{
    std::string shape;
    shape.reserve(name.size());
    bool in_run = false;
    for (char c : name)
    {
        const bool run = isDigit(c) || c == '#';
        if (!run)
            shape += c;
        else if (!in_run)
            shape += '#';
        in_run = run;
    }
    return shape;
}

void gz_SafeNameContext::NameSet::add(const std::string &name, int delta)
{
    if (name.empty())
        return;
    myCounts.add(name, delta);
    if (name.find('#') == std::string::npos)
        return;
    const std::string shape = shapeOf(name);
    count(myShapes[shape], name, delta);
    if (myShapes[shape].empty())
        myShapes.erase(shape);
}

bool gz_SafeNameContext::NameSet::has(const std::string &name) const
{
    return myCounts.has(name);
}

bool gz_SafeNameContext::NameSet::matchesPattern(const std::string &name) const
{
    // An instance has a number where its pattern has "#", and no "#" of its own.
    if (myShapes.empty() || name.find('#') != std::string::npos ||
        std::none_of(name.begin(), name.end(), isDigit))
        return false;
    auto it = myShapes.find(shapeOf(name));
    if (it == myShapes.end())
        return false;
    for (const auto &p : it->second)
        if (matchesInstancePattern(name, p.first))
            return true;
    return false;
}

gz_SafeNameContext::gz_SafeNameContext(const GZ_EditScriptedParms &parms, bool make_unique,
                                       int more)
    : myParms(parms), myMakeUnique(make_unique)
{
    // One allocation up front instead of a rehash each time the set doubles (an entry has
    // a name and, for vectors, channel names besides).
    if (make_unique)
        myEntryNames.myCounts.reserve(static_cast<size_t>(parms.entries() + std::max(more, 0)) *
                                      2);
    if (HostOperator *op = parms.getOperator())
        addTemplates(op->getParmTemplates(), /*conflicts=*/true, /*patterns=*/true);
    if (HostNode *node = parms.getNode())
        addTemplates(node->getSpareTemplates().data(), /*conflicts=*/false, /*patterns=*/true);
    for (int i = 0; i < parms.entries(); ++i)
        noteAppended(*parms.getParm(i));
}

void gz_SafeNameContext::addTemplates(const HostParmTemplate *t, bool conflicts, bool patterns)
{
    for (; t && !t->isTerminator(); ++t)
    {
        const std::string &name = t->getName();
        const bool counts = !myParms.getCheckReservedOnly() || myParms.checkReservedName(name);
        if (conflicts && counts)
        {
            myTemplateNames.add(name, 1);
            for (int k = 0; k < t->getNumChannels(); ++k)
                if (t->getChannelName(k) != name)
                    myTemplateNames.add(t->getChannelName(k), 1);
        }
        if (patterns && name.find('#') != std::string::npos)
            myInstanceNames.add(name, 1);
        if (t->getType().isMultiparm())
            addTemplates(t->getChildList(), conflicts, patterns);
    }
}

void gz_SafeNameContext::addEntry(const GZ_EditScriptedParm &parm, int delta)
{
    if (parm.getIsGroupEnd() || parm.getName().empty())
        return;
    myEntryNames.add(parm.getName(), delta);
    if (parm.getSize() > 1) // one component: the channel is the name itself
        for (const std::string &c : parm.getChannelNames())
            if (c != parm.getName())
                myEntryNames.add(c, delta);
    if (parm.getName().find('#') != std::string::npos)
        myInstanceNames.add(parm.getName(), delta);
}

void gz_SafeNameContext::noteAppended(const GZ_EditScriptedParm &parm)
{
    if (myMakeUnique)
        addEntry(parm, 1);
    if (parm.getIsGroupStart())
    {
        myOpenIsMulti.push_back(parm.getIsMultiParm());
        myMultiLevel += parm.getIsMultiParm() ? 1 : 0;
    }
    else if (parm.getIsGroupEnd() && !myOpenIsMulti.empty())
    {
        myMultiLevel -= myOpenIsMulti.back() ? 1 : 0;
        myOpenIsMulti.pop_back();
    }
}

bool gz_SafeNameContext::makeSafeAndAppend(GZ_EditScriptedParm &parm)
{
    std::string name = parm.getName();
    const int level = myMultiLevel;
    const bool changed = makeSafe(&parm, name, nullptr, level, nullptr);
    if (changed)
        parm.setName(name);
    noteAppended(parm);
    return changed;
}

gz_SafeNameContext::Verdict
gz_SafeNameContext::check(const std::vector<std::string> &names,
                          const std::unordered_set<std::string> *avoid) const
{
    Verdict verdict = PASSES;
    for (const std::string &n : names)
    {
        if (myParms.checkReservedName(n) || (avoid && avoid->count(n)) || myTemplateNames.has(n) ||
            (myMakeUnique && myEntryNames.has(n)))
            return TAKEN;
        if (myTemplateNames.matchesPattern(n) || (myMakeUnique && myEntryNames.matchesPattern(n)))
            verdict = INSTANCE;
    }
    return verdict;
}

bool gz_SafeNameContext::makeSafe(const GZ_EditScriptedParm *parm, std::string &name,
                                  const std::unordered_set<std::string> *avoid, int level,
                                  const GZ_EditScriptedParm *self)
{
    if (parm && (parm->getIsGroupEnd() || parm->getIsBaseParm()))
        return false;
    const std::string original = name;
    gz_ScriptHost::forceValidVariableName(name, "#");
    if (self && myMakeUnique)
        addEntry(*self, -1);
    while (true)
    {
        if (name.empty())
            name = "newparameter";
        std::vector<std::string> names =
            parm ? parm->getChannelNames(name) : std::vector<std::string>();
        names.push_back(name);
        const Verdict verdict = check(names, avoid);
        if (verdict == TAKEN)
        {
            name = bump(name);
            continue;
        }
        // Another number would be an instance of the same pattern again: only a prefix
        // takes the name out of the pattern's reach.
        if (verdict == INSTANCE || (level > 0 && myInstanceNames.matchesPattern(name)))
        {
            name = "_" + name;
            continue;
        }
        break;
    }
    if (self && myMakeUnique)
        addEntry(*self, 1);
    return name != original;
}

std::string gz_SafeNameContext::bump(const std::string &name)
{
    std::string decoded = gz_ScriptHost::decodeVariableName(name);
    if (!decoded.empty() && decoded.back() == '#')
        decoded += '_';
    size_t digits = decoded.size();
    while (digits > 0 && std::isdigit(static_cast<unsigned char>(decoded[digits - 1])))
        --digits;
    if (digits == decoded.size())
        return gz_ScriptHost::encodeVariableName(decoded + "1");
    // Increment the decimal text in place, so that long runs of digits never overflow.
    std::string number = decoded.substr(digits);
    int i = static_cast<int>(number.size()) - 1;
    for (; i >= 0; --i)
    {
        if (number[i] != '9')
        {
            ++number[i];
            break;
        }
        number[i] = '0';
    }
    if (i < 0)
        number.insert(number.begin(), '1');
    return gz_ScriptHost::encodeVariableName(decoded.substr(0, digits) + number);
}

bool gz_SafeNameContext::matchesInstancePattern(const std::string &name, const std::string &pattern)
{
    size_t n = 0;
    for (size_t p = 0; p < pattern.size(); ++p)
    {
        if (pattern[p] != '#')
        {
            if (n >= name.size() || name[n] != pattern[p])
                return false;
            ++n;
            continue;
        }
        const size_t start = n;
        while (n < name.size() && std::isdigit(static_cast<unsigned char>(name[n])))
            ++n;
        if (n == start)
            return false;
    }
    return n == name.size();
}
