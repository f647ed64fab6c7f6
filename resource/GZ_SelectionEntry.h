// GZ_SelectionEntry: one entry of a selector's component selection (geometry type and value).
#pragma once

#include <cstdint>

/// The kind of geometry component a selection entry refers to. The library only carries the
/// value; the host's selection code gives it meaning.
enum GZ_GeometryType : std::int32_t
{
    GZ_GEOMETRY_NONE = 0,
    GZ_GEOMETRY_PRIMITIVE = 1,
    GZ_GEOMETRY_POINT = 2,
    GZ_GEOMETRY_EDGE = 3,
    GZ_GEOMETRY_VERTEX = 4,
    GZ_GEOMETRY_BREAKPOINT = 5,
};

/// A plain record shared with the host's selector classes: a geometry type, the value the
/// host constructs it with, and a third value that starts at 0. Copy and move assign freely.
struct GZ_SelectionEntry
{
    GZ_SelectionEntry() = default;
    GZ_SelectionEntry(GZ_GeometryType geometry_type, std::int32_t value)
        : myGeometryType(geometry_type), myValue(value), myExtra(0)
    {
    }

    GZ_GeometryType myGeometryType = GZ_GEOMETRY_NONE;
    std::int32_t myValue = 0;
    std::int32_t myExtra = 0;
};
