// GZ_NetworkType: the network (operator table) kinds a handle, selector or state applies to.
#pragma once

/// The value is also the bit position of the type in network masks.
enum GZ_NetworkType : int
{
    GZ_NETWORK_OBJ = 0,
    GZ_NETWORK_SOP = 1,
    GZ_NETWORK_DOP = 2,
    GZ_NETWORK_COP2 = 3,
    GZ_NETWORK_CHOP = 4,
    GZ_NETWORK_LOP = 5,
    GZ_NETWORK_TOP = 6,
    GZ_NETWORK_MAX_TYPES = 7
};

/// The bit of a network type in a network mask.
constexpr unsigned GZnetworkMaskBit(GZ_NetworkType type)
{
    return 1u << static_cast<unsigned>(type);
}
