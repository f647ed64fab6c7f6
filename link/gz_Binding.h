// gz_Binding: parsing of the binding text that ties a handle parameter to a node parameter.
#pragma once

#include <string>

namespace gz
{

/// The mapping between an operator parameter value p and a handle value h:
/// h = (a*p + b) / (c*p + d). The identity is 1, 0, 0, 1.
struct Projection
{
    double a = 1.0;
    double b = 0.0;
    double c = 0.0;
    double d = 1.0;

    /// The handle value for the parameter value p.
    double toHandle(double p) const { return (a * p + b) / (c * p + d); }
    /// The parameter value for the handle value h (the inverse mapping).
    double toParm(double h) const { return (b - d * h) / (c * h - a); }
};

/// Whether a binding is an expression ("!" followed by the expression text).
inline bool isExpressionBinding(const std::string &binding)
{
    return !binding.empty() && binding[0] == '!';
}

/// Splits a binding into its channel name and projection.
/// Grammar: "{" a "," b "," c "," d "," name "}" where each number field starts after
/// leading white space and ends at the next "," (a field that is no number reads 0) and the
/// name is trimmed at both ends; text after the first "}" is ignored. Any other text is a
/// channel name as it stands, with the identity projection. A singular mapping
/// (b*c - a*d == 0) becomes the identity.
void parseBinding(const std::string &text, std::string &channel, Projection &projection);

/// The longest leading decimal floating-point number of `text` (optional sign, digits with
/// an optional point, optional exponent); 0 when the text does not start with one.
double parseLeadingDecimal(const char *text);

/// Whether `c` is one of blank, tab, newline, vertical tab, form feed, carriage return.
inline bool isBindingSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

} // namespace gz
