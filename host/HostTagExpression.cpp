// HostTagExpression: parsing and evaluating tag conditions.
#include "host/HostTagExpression.h"

#include "host/HostPatternMatch.h"
#include "host/HostTagList.h"

struct HostTagExpression::Node
{
    enum Op
    {
        TAG,
        NOT,
        AND,
        OR
    } myOp = TAG;
    std::string myTag;
    std::unique_ptr<Node> myLeft, myRight;
};

namespace
{
using Node = HostTagExpression::Node;
constexpr int MAX_DEPTH = 200;

class Parser
{
public:
    explicit Parser(const std::string &text) : myText(text) {}

    std::unique_ptr<Node> parse(std::string &error)
    {
        std::unique_ptr<Node> root = expr(0);
        skip();
        if (root && myPos < myText.size())
            fail("Unexpected '" + std::string(1, myText[myPos]) + "'");
        if (!myError.empty())
        {
            error = myError;
            return nullptr;
        }
        return root;
    }

private:
    void skip()
    {
        while (myPos < myText.size() && (myText[myPos] == ' ' || myText[myPos] == '\t' ||
                                         myText[myPos] == '\n' || myText[myPos] == ','))
            ++myPos;
    }
    bool peek(char c)
    {
        skip();
        return myPos < myText.size() && myText[myPos] == c;
    }
    void fail(const std::string &message)
    {
        if (myError.empty())
            myError = message;
    }
    static std::unique_ptr<Node> join(Node::Op op, std::unique_ptr<Node> l, std::unique_ptr<Node> r)
    {
        auto n = std::make_unique<Node>();
        n->myOp = op;
        n->myLeft = std::move(l);
        n->myRight = std::move(r);
        return n;
    }
    bool startsFactor()
    {
        skip();
        if (myPos >= myText.size())
            return false;
        const char c = myText[myPos];
        return c == '!' || c == '(' || c == '*' || c == '?' || HostTagList::isTagChar(c);
    }

    std::unique_ptr<Node> expr(int depth)
    {
        std::unique_ptr<Node> left = term(depth);
        while (left && peek('|'))
        {
            ++myPos;
            std::unique_ptr<Node> right = term(depth);
            if (!right)
                return nullptr;
            left = join(Node::OR, std::move(left), std::move(right));
        }
        return left;
    }
    std::unique_ptr<Node> term(int depth)
    {
        std::unique_ptr<Node> left = factor(depth);
        while (left && (peek('&') || startsFactor()))
        {
            if (peek('&'))
                ++myPos;
            std::unique_ptr<Node> right = factor(depth);
            if (!right)
                return nullptr;
            left = join(Node::AND, std::move(left), std::move(right));
        }
        return left;
    }
    std::unique_ptr<Node> factor(int depth)
    {
        if (depth > MAX_DEPTH)
        {
            fail("Tag expression nested too deeply");
            return nullptr;
        }
        skip();
        if (myPos >= myText.size())
        {
            fail("Tag expression ends early");
            return nullptr;
        }
        const char c = myText[myPos];
        if (c == '!')
        {
            ++myPos;
            std::unique_ptr<Node> inner = factor(depth + 1);
            return inner ? join(Node::NOT, std::move(inner), nullptr) : nullptr;
        }
        if (c == '(')
        {
            ++myPos;
            std::unique_ptr<Node> inner = expr(depth + 1);
            if (inner && !peek(')'))
                fail("Missing ')' in tag expression");
            if (!inner || !myError.empty())
                return nullptr;
            ++myPos;
            return inner;
        }
        const std::size_t b = myPos;
        while (myPos < myText.size() && (HostTagList::isTagChar(myText[myPos]) ||
                                         myText[myPos] == '*' || myText[myPos] == '?'))
            ++myPos;
        if (myPos == b)
        {
            fail("Unexpected '" + std::string(1, c) + "'");
            return nullptr;
        }
        auto n = std::make_unique<Node>();
        n->myTag = myText.substr(b, myPos - b);
        return n;
    }

    const std::string &myText;
    std::size_t myPos = 0;
    std::string myError;
};

bool holds(const Node &n, const HostTagList *list)
{
    switch (n.myOp)
    {
    case Node::NOT:
        return !holds(*n.myLeft, list);
    case Node::AND:
        return holds(*n.myLeft, list) && holds(*n.myRight, list);
    case Node::OR:
        return holds(*n.myLeft, list) || holds(*n.myRight, list);
    case Node::TAG:
        break;
    }
    if (!list)
        return false;
    if (!HostPatternMatch::hasWildcards(n.myTag))
        return list->has(n.myTag);
    for (const std::string &tag : list->tags())
        if (HostPatternMatch::match(tag, n.myTag))
            return true;
    return false;
}

bool blank(const std::string &text)
{
    return text.find_first_not_of(" \t\n") == std::string::npos;
}
} // namespace

HostTagExpression::HostTagExpression(const std::string &text, std::string &errors)
{
    if (blank(text))
    {
        myValid = true;
        return;
    }
    std::string error;
    myRoot = Parser(text).parse(error);
    myValid = myRoot != nullptr;
    if (!myValid)
        errors += error + " in tag expression '" + text + "'\n";
}

HostTagExpression::~HostTagExpression() = default;

bool HostTagExpression::isAlwaysTrue() const
{
    return myValid && (!myRoot || (myRoot->myOp == Node::TAG && myRoot->myTag == "*"));
}

bool HostTagExpression::evaluate(const HostTagList *list) const
{
    if (!myValid)
        return false;
    if (isAlwaysTrue())
        return true;
    return holds(*myRoot, list);
}
