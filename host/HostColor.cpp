// HostColor: equality of colours.
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
