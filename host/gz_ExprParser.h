// gz_ExprParser: parses expression text into a tree of gz_ExprNode.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/gz_ExprLexer.h"

/// One node of a parsed expression. Owns its operands.
///
/// A run of operators of one precedence level ("a + b - c") is one Chain node whose
/// operands are evaluated left to right, so that long sums do not make deep trees.
struct gz_ExprNode
{
    enum class Kind
    {
        Number,   ///< myNumber
        String,   ///< myText is the literal
        Variable, ///< myText is the name without '$'
        Unary,    ///< myText is the operator ("-", "+", "!"); one operand
        Power,    ///< two operands, base and exponent
        Chain,    ///< operands joined by myOps (one fewer than operands)
        Call      ///< myText is the function name; operands are the arguments
    };

    Kind myKind = Kind::Number;
    double myNumber = 0.0;
    std::string myText;
    std::vector<std::string> myOps;
    std::vector<std::unique_ptr<gz_ExprNode>> myArgs;
};

/// Recursive-descent parser. Grammar (lowest precedence first):
///   expr    := and ("||" and)*
///   and     := compare ("&&" compare)*
///   compare := sum (("==" | "!=" | "<" | ">" | "<=" | ">=") sum)*
///   sum     := product (("+" | "-") product)*
///   product := unary (("*" | "/" | "%") unary)*
///   unary   := ("-" | "+" | "!") unary | power
///   power   := primary ["^" unary]               (right-associative; 2^-1 allowed)
///   primary := number | string | variable | name "(" [expr ("," expr)*] ")" | "(" expr ")"
/// Nesting (parentheses, unary operators, powers, calls) is limited to theMaxDepth.
class gz_ExprParser
{
public:
    static constexpr int theMaxDepth = 128;

    explicit gz_ExprParser(const std::string &text);

    /// The whole text as one expression; null with `error` set when it does not parse.
    std::unique_ptr<gz_ExprNode> parse(std::string &error);

private:
    using NodePtr = std::unique_ptr<gz_ExprNode>;

    NodePtr parseChain(int level);
    NodePtr parseUnary();
    NodePtr parsePower();
    NodePtr parsePrimary();
    NodePtr parseCall(std::string name);

    void advance() { myToken = myLexer.next(); }
    bool isOp(const char *op) const;
    bool fail(const std::string &message);
    bool failUnexpected();

    gz_ExprLexer myLexer;
    gz_ExprToken myToken;
    std::string myError;
    int myDepth = 0;
};
