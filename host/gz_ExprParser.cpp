// gz_ExprParser: parses expression text into a tree of gz_ExprNode.
#include "host/gz_ExprParser.h"

namespace
{
// Operators of each chain level, lowest precedence first; null-terminated lists.
const char *const theLevelOps[][7] = {
    {"||", nullptr},     {"&&", nullptr},          {"==", "!=", "<=", ">=", "<", ">", nullptr},
    {"+", "-", nullptr}, {"*", "/", "%", nullptr},
};
constexpr int theNumLevels = sizeof(theLevelOps) / sizeof(theLevelOps[0]);

/// Increments a depth counter for the lifetime of one nested parse.
class DepthGuard
{
public:
    explicit DepthGuard(int &depth) : myDepth(depth) { ++myDepth; }
    ~DepthGuard() { --myDepth; }

private:
    int &myDepth;
};
} // namespace

gz_ExprParser::gz_ExprParser(const std::string &text) : myLexer(text) {}

std::unique_ptr<gz_ExprNode> gz_ExprParser::parse(std::string &error)
{
    advance();
    NodePtr root = parseChain(0);
    if (root && myToken.myKind != gz_ExprTokenKind::End)
    {
        failUnexpected();
        root.reset();
    }
    if (!root)
        error = myError;
    return root;
}

bool gz_ExprParser::isOp(const char *op) const
{
    return myToken.myKind == gz_ExprTokenKind::Op && myToken.myText == op;
}

bool gz_ExprParser::fail(const std::string &message)
{
    if (myError.empty())
        myError = message;
    return false;
}

bool gz_ExprParser::failUnexpected()
{
    switch (myToken.myKind)
    {
    case gz_ExprTokenKind::End:
        return fail("Syntax error: unexpected end of expression");
    case gz_ExprTokenKind::Error:
        if (myToken.myText == "unterminated string")
            return fail("Syntax error: unterminated string");
        return fail("Syntax error: unexpected character '" + myToken.myText + "'");
    default:
        return fail("Syntax error: unexpected '" + myToken.myText + "'");
    }
}

gz_ExprParser::NodePtr gz_ExprParser::parseChain(int level)
{
    if (level >= theNumLevels)
        return parseUnary();
    NodePtr first = parseChain(level + 1);
    if (!first)
        return nullptr;
    NodePtr chain;
    for (;;)
    {
        const char *matched = nullptr;
        for (const char *const *op = theLevelOps[level]; *op; ++op)
        {
            if (isOp(*op))
            {
                matched = *op;
                break;
            }
        }
        if (!matched)
            break;
        advance();
        NodePtr operand = parseChain(level + 1);
        if (!operand)
            return nullptr;
        if (!chain)
        {
            chain = std::make_unique<gz_ExprNode>();
            chain->myKind = gz_ExprNode::Kind::Chain;
            chain->myArgs.push_back(std::move(first));
        }
        chain->myOps.emplace_back(matched);
        chain->myArgs.push_back(std::move(operand));
    }
    return chain ? std::move(chain) : std::move(first);
}

gz_ExprParser::NodePtr gz_ExprParser::parseUnary()
{
    DepthGuard guard(myDepth);
    if (myDepth > theMaxDepth)
    {
        fail("Expression nested too deeply");
        return nullptr;
    }
    if (isOp("-") || isOp("+") || isOp("!"))
    {
        auto node = std::make_unique<gz_ExprNode>();
        node->myKind = gz_ExprNode::Kind::Unary;
        node->myText = myToken.myText;
        advance();
        NodePtr operand = parseUnary();
        if (!operand)
            return nullptr;
        node->myArgs.push_back(std::move(operand));
        return node;
    }
    return parsePower();
}

gz_ExprParser::NodePtr gz_ExprParser::parsePower()
{
    NodePtr base = parsePrimary();
    if (!base || !isOp("^"))
        return base;
    advance();
    NodePtr exponent = parseUnary();
    if (!exponent)
        return nullptr;
    auto node = std::make_unique<gz_ExprNode>();
    node->myKind = gz_ExprNode::Kind::Power;
    node->myArgs.push_back(std::move(base));
    node->myArgs.push_back(std::move(exponent));
    return node;
}

gz_ExprParser::NodePtr gz_ExprParser::parsePrimary()
{
    auto node = std::make_unique<gz_ExprNode>();
    switch (myToken.myKind)
    {
    case gz_ExprTokenKind::Number:
        node->myKind = gz_ExprNode::Kind::Number;
        node->myNumber = myToken.myNumber;
        advance();
        return node;
    case gz_ExprTokenKind::String:
        node->myKind = gz_ExprNode::Kind::String;
        node->myText = myToken.myText;
        advance();
        return node;
    case gz_ExprTokenKind::Variable:
        node->myKind = gz_ExprNode::Kind::Variable;
        node->myText = myToken.myText;
        advance();
        return node;
    case gz_ExprTokenKind::Ident:
    {
        std::string name = myToken.myText;
        advance();
        if (!isOp("("))
        {
            fail("Syntax error: '" + name + "' is not a function call");
            return nullptr;
        }
        return parseCall(std::move(name));
    }
    default:
        break;
    }
    if (!isOp("("))
    {
        failUnexpected();
        return nullptr;
    }
    advance();
    NodePtr inner = parseChain(0);
    if (!inner)
        return nullptr;
    if (!isOp(")"))
    {
        failUnexpected();
        return nullptr;
    }
    advance();
    return inner;
}

gz_ExprParser::NodePtr gz_ExprParser::parseCall(std::string name)
{
    auto node = std::make_unique<gz_ExprNode>();
    node->myKind = gz_ExprNode::Kind::Call;
    node->myText = std::move(name);
    advance(); // "("
    if (isOp(")"))
    {
        advance();
        return node;
    }
    for (;;)
    {
        NodePtr arg = parseChain(0);
        if (!arg)
            return nullptr;
        node->myArgs.push_back(std::move(arg));
        if (isOp(","))
        {
            advance();
            continue;
        }
        if (!isOp(")"))
        {
            failUnexpected();
            return nullptr;
        }
        advance();
        return node;
    }
}
