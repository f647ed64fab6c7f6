// HostReferenceIndex: which parameter components refer to a node's channels.
#include "host/HostReferenceIndex.h"

#include "host/HostNetwork.h"
#include "host/HostNode.h"
#include "host/HostParm.h"
#include "host/HostParmList.h"
#include "host/gz_ExprLexer.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <tuple>

namespace
{
// A cursor over the tokens of an expression text that goes on after a character the
// language does not know (the text may be in the scripting language), so that every ch()
// call with a literal path is seen.
class TokenCursor
{
public:
    explicit TokenCursor(const std::string &text) : myText(text) { restart(0); }

    gz_ExprToken next()
    {
        for (;;)
        {
            gz_ExprToken token = myLexer->next();
            token.myOffset += myBase;
            if (token.myKind != gz_ExprTokenKind::Error)
                return token;
            if (token.myOffset + 1 >= myText.size())
                return gz_ExprToken{};
            restart(token.myOffset + 1);
        }
    }

private:
    void restart(size_t from)
    {
        myBase = from;
        myRest = myText.substr(from);
        myLexer = std::make_unique<gz_ExprLexer>(myRest);
    }

    const std::string &myText;
    std::string myRest;
    size_t myBase = 0;
    std::unique_ptr<gz_ExprLexer> myLexer;
};

// Every node under `node`, itself first.
void forSubtree(HostNode &node, const std::function<void(HostNode &)> &visit)
{
    visit(node);
    if (HostNetwork *children = node.getChildNetwork())
        for (int i = 0; i < children->getNumNodes(); ++i)
            forSubtree(*children->getNode(i), visit);
}
} // namespace

std::vector<HostChannelPathLiteral> HostReferenceIndex::findChannelPaths(const std::string &text)
{
    std::vector<HostChannelPathLiteral> found;
    if (text.find("ch") == std::string::npos)
        return found;
    // The last four tokens: a call is Ident "ch"/"chs", "(", String, ")".
    gz_ExprToken window[4];
    TokenCursor cursor(text);
    for (;;)
    {
        std::rotate(window, window + 1, window + 4);
        window[3] = cursor.next();
        if (window[3].myKind == gz_ExprTokenKind::End)
            return found;
        const bool call = window[0].myKind == gz_ExprTokenKind::Ident &&
                          (window[0].myText == "ch" || window[0].myText == "chs") &&
                          window[1].myKind == gz_ExprTokenKind::Op && window[1].myText == "(" &&
                          window[2].myKind == gz_ExprTokenKind::String &&
                          window[3].myKind == gz_ExprTokenKind::Op && window[3].myText == ")";
        if (!call)
            continue;
        HostChannelPathLiteral literal;
        literal.myPath = window[2].myText;
        literal.myQuote = text[window[2].myOffset];
        literal.myBegin = window[2].myOffset + 1;
        literal.myEnd = text.rfind(literal.myQuote, window[3].myOffset);
        found.push_back(std::move(literal));
    }
}

bool HostReferenceIndex::splitChannelPath(const std::string &nodePath, const std::string &path,
                                          std::string &targetNode, std::string &token)
{
    const size_t slash = path.rfind('/');
    token = slash == std::string::npos ? path : path.substr(slash + 1);
    if (token.empty())
        return false;
    std::vector<std::string> parts;
    auto walk = [&parts](const std::string &text, size_t from, size_t to)
    {
        while (from < to)
        {
            size_t next = text.find('/', from);
            if (next == std::string::npos || next > to)
                next = to;
            const std::string part = text.substr(from, next - from);
            from = next + 1;
            if (part.empty() || part == ".")
                continue;
            if (part != "..")
                parts.push_back(part);
            else if (parts.empty())
                return false;
            else
                parts.pop_back();
        }
        return true;
    };
    const bool absolute = slash != std::string::npos && path[0] == '/';
    if (!absolute && !walk(nodePath, 0, nodePath.size()))
        return false;
    if (slash != std::string::npos && !walk(path, 0, slash))
        return false;
    targetNode.clear();
    for (const std::string &part : parts)
        targetNode += "/" + part;
    if (targetNode.empty())
        targetNode = "/";
    return true;
}

void HostReferenceIndex::update(HostParm &parm, int k)
{
    const std::string &text = parm.getExpression(k);
    const bool may_refer = mayRefer(text);
    if (!may_refer && !parm.myReferenced)
        return;
    unfile(parm, k);
    if (may_refer)
        file(parm, k, text);
}

void HostReferenceIndex::remove(HostParm &parm)
{
    if (!parm.myReferenced)
        return;
    for (int k = 0; k < parm.getVectorSize(); ++k)
        unfile(parm, k);
    parm.rare().myFiled.clear();
    parm.myReferenced = false;
}

const std::vector<HostReferenceIndex::Filed> *HostReferenceIndex::filedOf(const HostParm &parm,
                                                                          int k)
{
    if (!parm.myRare || k < 0 || k >= static_cast<int>(parm.myRare->myFiled.size()))
        return nullptr;
    return &parm.myRare->myFiled[k];
}

void HostReferenceIndex::unfile(HostParm &parm, int k)
{
    if (!filedOf(parm, k))
        return;
    std::vector<Filed> &filed = parm.myRare->myFiled[k];
    for (const Filed &f : filed)
    {
        auto target = myByTarget.find(f.myTarget);
        if (target == myByTarget.end())
            continue;
        auto token = target->second.find(f.myToken);
        if (token == target->second.end())
            continue;
        myNumEntries -= token->second.erase(Slot(&parm, k));
        if (token->second.empty())
            target->second.erase(token);
        if (target->second.empty())
            myByTarget.erase(target);
    }
    filed.clear();
}

void HostReferenceIndex::file(HostParm &parm, int k, const std::string &text)
{
    const HostNode *node = parm.getNode();
    if (!node)
        return;
    const std::string nodePath = node->getFullPath();
    // The component's list, emptied by unfile, is refilled in place: a rename re-files
    // every referrer, and a fresh list each would be an allocation each. A parameter
    // gets its rare block only once a path is filed.
    std::vector<Filed> *filed = nullptr;
    for (HostChannelPathLiteral &literal : findChannelPaths(text))
    {
        Filed f;
        if (!splitChannelPath(nodePath, literal.myPath, f.myTarget, f.myToken))
            continue;
        f.myPath = std::move(literal.myPath);
        if (myByTarget[f.myTarget][f.myToken].insert(Slot(&parm, k)))
            ++myNumEntries;
        if (!filed)
        {
            std::vector<std::vector<Filed>> &slots = parm.rare().myFiled;
            slots.resize(parm.getVectorSize());
            filed = &slots[k];
            filed->clear();
        }
        filed->push_back(std::move(f));
    }
    if (filed)
        parm.myReferenced = true;
}

void HostReferenceIndex::nodeRenamed(HostNode &node)
{
    forSubtree(node,
               [this](HostNode &n)
               {
                   HostParmList &list = n.getParmList();
                   for (int i = 0; i < list.getEntries(); ++i)
                   {
                       HostParm *parm = list.getParm(i);
                       if (!parm || !parm->myReferenced)
                           continue;
                       for (int k = 0; k < parm->getVectorSize(); ++k)
                       {
                           unfile(*parm, k);
                           file(*parm, k, parm->getExpression(k));
                       }
                   }
               });
}

bool HostReferenceIndex::refersTo(const HostParm &parm, const std::vector<Filed> &filed,
                                  const Match &m)
{
    const HostNode *from = parm.getNode();
    for (const Filed &f : filed)
    {
        if (m.myToken)
        {
            // By name: the node part must lead to the node; the channel need not exist.
            if (f.myToken != *m.myToken)
                continue;
            const size_t slash = f.myPath.rfind('/');
            const HostNode *n =
                slash == std::string::npos
                    ? from
                    : from->findNode(slash == 0 ? std::string("/") : f.myPath.substr(0, slash));
            if (n == m.myNode)
                return true;
            continue;
        }
        HostNode *n = nullptr;
        HostParm *p = nullptr;
        int k = -1;
        if (!from->resolveChannel(f.myPath, n, p, k) || n != m.myNode)
            continue;
        if (!m.myParm || (p == m.myParm && k == m.myComponent))
            return true;
    }
    return false;
}

void HostReferenceIndex::collect(const HostReferrerSet &slots, const Match &m,
                                 std::vector<Found> &out) const
{
    slots.forEach([](const Slot &slot, int stage)
                  { HostParm::prefetch(slot.first, slot.second, stage); },
                  [&](const Slot &slot)
                  {
                      const HostParm &parm = *slot.first;
                      const std::vector<Filed> *filed = filedOf(parm, slot.second);
                      if (filed && refersTo(parm, *filed, m))
                          out.push_back({parm.getNode()->getUniqueId(), parm.getIndex(),
                                         slot.second, slot.first});
                  });
}

std::vector<HostReferrer>
HostReferenceIndex::find(const HostNode &node, const Match &m,
                         const std::function<bool(const std::string &)> &takeToken) const
{
    std::vector<HostReferrer> out;
    auto target = myByTarget.find(node.getFullPath());
    if (target == myByTarget.end())
        return out;
    // The sort keys are read with the check, while each parameter is in the cache: a pass
    // of their own (or comparing through the parameters) would visit every scattered
    // referrer again. A component filed under two tokens is found twice, next to itself.
    std::vector<Found> found;
    for (const auto &token : target->second)
        if (takeToken(token.first))
            collect(token.second, m, found);
    std::sort(found.begin(), found.end());
    out.reserve(found.size());
    for (size_t i = 0; i < found.size(); ++i)
        if (i == 0 || found[i].myParm != found[i - 1].myParm ||
            found[i].myComponent != found[i - 1].myComponent)
            out.push_back({found[i].myParm, found[i].myComponent});
    return out;
}

std::vector<HostReferrer> HostReferenceIndex::findReferrers(const HostNode &node,
                                                            const HostParm &parm, int k) const
{
    // Each token is resolved once on the target, however many components write it.
    return find(node, Match{&node, &parm, k, nullptr},
                [&](const std::string &token)
                {
                    int tk = -1;
                    return node.findChannel(token, tk) == &parm && tk == k;
                });
}

std::vector<HostReferrer> HostReferenceIndex::findReferrersByName(const HostNode &node,
                                                                  const std::string &channel) const
{
    return find(node, Match{&node, nullptr, -1, &channel},
                [&](const std::string &token) { return token == channel; });
}

std::vector<HostReferrer> HostReferenceIndex::findNodeReferrers(const HostNode &node) const
{
    return find(node, Match{&node, nullptr, -1, nullptr}, [](const std::string &) { return true; });
}
