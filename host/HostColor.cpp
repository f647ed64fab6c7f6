// HostColor: construction from model codes and equality of colours.
#include "host/HostColor.h"

bool HostColor::operator==(const HostColor &other) const
{
    if (myModel != other.myModel)
        return false;
    for (int i = 0; i < 4; ++i)
        if (myComponents[i] != other.myComponents[i])
            return false;
    return true;
}

HostColor HostColor::fromCode(int code, double c0, double c1, double c2, double alpha)
{
    const Model model = (code >= HSV && code <= XYZ) ? static_cast<Model>(code) : RGB;
    return HostColor(model, c0, c1, c2, alpha);
}
