// HostMultiParmLinks: multiparm link records, their undo record and the instances they drive.
#include "host/HostMultiParmLinks.h"

#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostParm.h"
#include "host/HostParmTemplate.h"
#include "host/HostRampNaming.h"
#include "host/HostUndo.h"
#include "host/HostUndoManager.h"

#include <cctype>
#include <memory>

/// Swaps a link's text with the saved one. The instances that existed at the change have
/// records of their own; instances made since then that follow the link follow it back.
class HostMultiParmLinkUndo : public HostUndo
{
public:
    HostMultiParmLinkUndo(HostMultiParmLinks &links, int node_id, std::string pattern,
                          std::string text)
        : myLinks(links), myNodeId(node_id), myPattern(std::move(pattern)), myText(std::move(text))
    {
    }
    void undo() override { swap(); }
    void redo() override { swap(); }
    bool isValid() const override
    {
        return HostDirector::instance()->findNodeById(myNodeId) != nullptr;
    }

private:
    void swap()
    {
        HostNode *node = HostDirector::instance()->findNodeById(myNodeId);
        if (!node)
            return;
        std::string now = myLinks.get(*node, myPattern);
        myLinks.setText(myNodeId, myPattern, myText);
        if (!now.empty() && !myText.empty())
            HostMultiParmLinks::repoint(*node, myPattern, now, myText);
        myText = std::move(now);
    }

    HostMultiParmLinks &myLinks;
    int myNodeId;
    std::string myPattern;
    std::string myText;
};

namespace
{
// The component of an instance template of `multi` (or of a multiparm nested in it) whose
// channel pattern is `channel`, or -1.
int patternComponent(const HostParmTemplate &multi, const std::string &channel)
{
    const HostParmTemplate *children = multi.getChildList();
    if (!multi.getType().isMultiparm() || !children)
        return -1;
    for (const HostParmTemplate *c = children; !c->isTerminator(); ++c)
    {
        for (int k = 0; k < c->getVectorSize(); ++k)
            if (HostParmTemplate::makeChannelName(c->getType(), c->getName(), c->getVectorSize(),
                                                  k) == channel)
                return k;
        if (const int k = patternComponent(*c, channel); k >= 0)
            return k;
    }
    return -1;
}
} // namespace

std::string HostMultiParmLinks::get(const HostNode &node, const std::string &pattern) const
{
    const auto links = myLinks.find(node.getUniqueId());
    if (links == myLinks.end())
        return std::string();
    const auto link = links->second.find(pattern);
    return link == links->second.end() ? std::string() : link->second;
}

void HostMultiParmLinks::setText(int node_id, const std::string &pattern, const std::string &text)
{
    if (!text.empty())
    {
        myLinks[node_id][pattern] = text;
        return;
    }
    const auto links = myLinks.find(node_id);
    if (links == myLinks.end())
        return;
    links->second.erase(pattern);
    if (links->second.empty())
        myLinks.erase(links);
}

void HostMultiParmLinks::setTextWithUndo(int node_id, const std::string &pattern,
                                         const std::string &text)
{
    const auto links = myLinks.find(node_id);
    std::string before;
    if (links != myLinks.end())
        if (const auto link = links->second.find(pattern); link != links->second.end())
            before = link->second;
    HostUndoManager &undo = HostUndoManager::current();
    if (undo.willAcceptUndoAddition())
        undo.addToUndoBlock(
            std::make_unique<HostMultiParmLinkUndo>(*this, node_id, pattern, before));
    setText(node_id, pattern, text);
}

void HostMultiParmLinks::movePattern(const HostNode &node, const std::string &from,
                                     const std::string &to)
{
    const std::string text = get(node, from);
    if (text.empty() || from == to)
        return;
    setTextWithUndo(node.getUniqueId(), from, std::string());
    setTextWithUndo(node.getUniqueId(), to, text);
}

void HostMultiParmLinks::set(HostNode &node, const std::string &pattern, const std::string &text,
                             double time)
{
    const std::string before = get(node, pattern);
    if (before == text)
        return;
    setTextWithUndo(node.getUniqueId(), pattern, text);
    const HostParmList &list = node.getParmList();
    for (int i = 0; i < list.getEntries(); ++i)
    {
        HostParm &parm = *list.getParm(i);
        if (!parm.getMultiParmOwner())
            continue;
        for (int k = 0; k < parm.getVectorSize(); ++k)
        {
            const int number = matchInstance(pattern, parm.getChannelName(k));
            if (number < 0)
                continue;
            if (text.empty())
            {
                // Only what the link itself put there is baked.
                if (parm.getExpression(k) == referenceExpression(parm, before, number))
                    node.bakeParmValue(parm, k, time);
                continue;
            }
            node.saveParmForUndo(parm);
            node.parmChanging(parm);
            parm.setString(k, time, referenceExpression(parm, text, number),
                           HOST_STRING_EXPRESSION);
            node.parmChanged(parm);
        }
    }
}

void HostMultiParmLinks::repoint(HostNode &node, const std::string &pattern,
                                 const std::string &from, const std::string &to)
{
    const HostParmList &list = node.getParmList();
    for (int i = 0; i < list.getEntries(); ++i)
    {
        HostParm &parm = *list.getParm(i);
        for (int k = 0; parm.getMultiParmOwner() && k < parm.getVectorSize(); ++k)
            if (const int number = matchInstance(pattern, parm.getChannelName(k));
                number >= 0 && parm.getExpression(k) == referenceExpression(parm, from, number))
                parm.setString(k, node.getDirector()->getTime(),
                               referenceExpression(parm, to, number), HOST_STRING_EXPRESSION);
    }
}

std::vector<HostMultiParmLinks::Link> HostMultiParmLinks::getAll() const
{
    std::vector<Link> out;
    for (const auto &[id, links] : myLinks)
        for (const auto &[pattern, text] : links)
            out.push_back({id, pattern, text});
    return out;
}

std::vector<HostMultiParmLinks::Link> HostMultiParmLinks::findLinksOf(const HostNode &node) const
{
    std::vector<Link> out;
    const auto links = myLinks.find(node.getUniqueId());
    if (links != myLinks.end())
        for (const auto &[pattern, text] : links->second)
            out.push_back({node.getUniqueId(), pattern, text});
    return out;
}

std::vector<HostMultiParmLinks::Link>
HostMultiParmLinks::findLinksTo(const HostNode &target, const std::string &channel) const
{
    std::vector<Link> out;
    HostDirector *director = target.getDirector();
    for (const auto &[id, links] : myLinks)
    {
        const HostNode *from = director ? director->findNodeById(id) : nullptr;
        if (!from)
            continue;
        for (const auto &[pattern, text] : links)
        {
            const size_t slash = text.rfind('/');
            const std::string name = slash == std::string::npos ? text : text.substr(slash + 1);
            if (name != channel)
                continue;
            const HostNode *to =
                slash == std::string::npos ? from : from->findNode(text.substr(0, slash));
            if (to == &target)
                out.push_back({id, pattern, text});
        }
    }
    return out;
}

void HostMultiParmLinks::fillInstance(HostNode &node, const std::vector<HostParm *> &instance) const
{
    const auto links = myLinks.find(node.getUniqueId());
    if (links == myLinks.end())
        return;
    for (HostParm *parm : instance)
        for (int k = 0; k < parm->getVectorSize(); ++k)
            for (const auto &[pattern, text] : links->second)
                if (const int number = matchInstance(pattern, parm->getChannelName(k));
                    number >= 0)
                    parm->setString(k, node.getDirector()->getTime(),
                                    referenceExpression(*parm, text, number),
                                    HOST_STRING_EXPRESSION, /*propagate=*/false);
}

int HostMultiParmLinks::findInstancePattern(const HostNode &node, const std::string &channel)
{
    if (channel.find('#') == std::string::npos)
        return -1;
    const HostParmList &list = node.getParmList();
    for (int i = 0; i < list.getEntries(); ++i)
    {
        const HostParm &parm = *list.getParm(i);
        if (!parm.hasInstances() || parm.getMultiParmOwner())
            continue;
        if (HostRampNaming::isRamp(parm.getTemplate()))
        {
            // A colour point's three channels are components of one parameter.
            const bool color = HostRampNaming::isColor(parm.getTemplate());
            const std::vector<std::string> patterns =
                HostRampNaming::pointPatterns(parm.getName(), color);
            for (size_t p = 0; p < patterns.size(); ++p)
                if (patterns[p] == channel)
                    return color && p >= 1 && p <= 3 ? static_cast<int>(p) - 1 : 0;
            continue;
        }
        if (const int k = patternComponent(parm.getTemplate(), channel); k >= 0)
            return k;
    }
    return -1;
}

int HostMultiParmLinks::matchInstance(const std::string &pattern, const std::string &channel)
{
    const size_t mark = pattern.find('#');
    if (mark == std::string::npos || pattern.find('#', mark + 1) != std::string::npos)
        return -1;
    const size_t tail = pattern.size() - mark - 1;
    if (channel.size() <= pattern.size() - 1 || channel.compare(0, mark, pattern, 0, mark) != 0 ||
        channel.compare(channel.size() - tail, tail, pattern, mark + 1, tail) != 0)
        return -1;
    const std::string digits = channel.substr(mark, channel.size() - mark - tail);
    for (char c : digits)
        if (!std::isdigit(static_cast<unsigned char>(c)))
            return -1;
    return digits.size() > 9 ? -1 : std::stoi(digits);
}

std::string HostMultiParmLinks::referenceExpression(const HostParm &parm, const std::string &text,
                                                    int number)
{
    std::string path = text;
    for (size_t at; (at = path.find('#')) != std::string::npos;)
        path.replace(at, 1, std::to_string(number));
    const bool chs = parm.getType().isString() || parm.getType().isData();
    return (chs ? "chs(\"" : "ch(\"") + path + "\")";
}
