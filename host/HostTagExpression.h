// HostTagExpression: a condition over a tag list ("render & !legacy | shading").
#pragma once

#include <memory>
#include <string>

class HostTagList;

/// Grammar (precedence from low to high):
///     expr   := term { "|" term }
///     term   := factor { "&" factor }        (two factors side by side also mean "&")
///     factor := "!" factor | "(" expr ")" | TAG
/// A TAG may hold the wildcards of HostPatternMatch and holds when any tag of the list
/// matches it. An empty expression and "*" hold for every list (`isAlwaysTrue`).
class HostTagExpression
{
public:
    /// Parses `text`; on a syntax error `errors` gets one line and `isValid` is false.
    HostTagExpression(const std::string &text, std::string &errors);
    ~HostTagExpression();

    bool isValid() const { return myValid; }
    /// Whether the expression holds for every list: it is empty or "*".
    bool isAlwaysTrue() const;
    /// Whether `list` satisfies it (a null list is an empty one). An invalid expression holds
    /// for nothing.
    bool evaluate(const HostTagList *list) const;

    struct Node;

private:
    std::unique_ptr<Node> myRoot;
    bool myValid = false;
};
