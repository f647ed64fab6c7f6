// gz_Binding: parsing of the binding text that ties a handle parameter to a node parameter.
#include "link/gz_Binding.h"

#include <cstdlib>
#include <cstring>

namespace gz
{

double parseLeadingDecimal(const char *text)
{
    const char *p = text;
    if (*p == '+' || *p == '-')
        ++p;
    const char *digits = p;
    while (*p >= '0' && *p <= '9')
        ++p;
    bool any = p != digits;
    if (*p == '.')
    {
        ++p;
        const char *frac = p;
        while (*p >= '0' && *p <= '9')
            ++p;
        any = any || p != frac;
    }
    if (!any)
        return 0.0;
    if (*p == 'e' || *p == 'E')
    {
        const char *e = p + 1;
        if (*e == '+' || *e == '-')
            ++e;
        if (*e >= '0' && *e <= '9')
        {
            while (*e >= '0' && *e <= '9')
                ++e;
            p = e;
        }
    }
    // Only the validated prefix goes to strtod, so hex, "inf" and "nan" never reach it.
    std::string number(text, p);
    return std::strtod(number.c_str(), nullptr);
}

namespace
{

std::string trimmed(const std::string &text)
{
    size_t first = 0;
    while (first < text.size() && isBindingSpace(text[first]))
        ++first;
    size_t last = text.size();
    while (last > first && isBindingSpace(text[last - 1]))
        --last;
    return text.substr(first, last - first);
}

} // namespace

void parseBinding(const std::string &text, std::string &channel, Projection &projection)
{
    projection = Projection();
    if (text.empty() || text[0] != '{')
    {
        channel = text;
        return;
    }

    std::string body = text.substr(1);
    size_t close = body.find('}');
    if (close != std::string::npos)
        body.resize(close);

    double values[4] = {0.0, 0.0, 0.0, 0.0};
    size_t pos = 0;
    for (double &value : values)
    {
        while (pos < body.size() && isBindingSpace(body[pos]))
            ++pos;
        size_t end = body.find(',', pos);
        if (end == std::string::npos)
            end = body.size();
        value = parseLeadingDecimal(body.substr(pos, end - pos).c_str());
        pos = end < body.size() ? end + 1 : end;
    }
    channel = trimmed(body.substr(pos));

    if (values[1] * values[2] - values[0] * values[3] == 0.0)
        return; // a singular mapping cannot be inverted: keep the identity
    projection.a = values[0];
    projection.b = values[1];
    projection.c = values[2];
    projection.d = values[3];
}

} // namespace gz
