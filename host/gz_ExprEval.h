// gz_ExprEval: evaluates a parsed expression tree against a HostExprContext.
#pragma once

#include <string>

#include "host/HostExpression.h"
#include "host/gz_ExprParser.h"

/// Walks a gz_ExprNode tree once. Stops at the first error, whose message it keeps.
/// The walk's depth is bounded by the parser's nesting limit.
class gz_ExprEval
{
public:
    explicit gz_ExprEval(const HostExprContext &context) : myContext(context) {}

    bool eval(const gz_ExprNode &node, HostExprValue &value);
    const std::string &getError() const { return myError; }

private:
    bool evalChain(const gz_ExprNode &node, HostExprValue &value);
    bool evalUnary(const gz_ExprNode &node, HostExprValue &value);
    bool evalPower(const gz_ExprNode &node, HostExprValue &value);
    bool evalVariable(const gz_ExprNode &node, HostExprValue &value);
    bool evalCall(const gz_ExprNode &node, HostExprValue &value);
    bool evalChannel(const gz_ExprNode &node, bool asString, HostExprValue &value);
    bool applyBinary(const std::string &op, const HostExprValue &lhs, const HostExprValue &rhs,
                     HostExprValue &value);
    bool number(double v, HostExprValue &value);
    bool fail(const std::string &message);

    const HostExprContext &myContext;
    std::string myError;
};
