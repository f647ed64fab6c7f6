// GZ_Vector: small fixed-size vectors of doubles (2, 3 and 4 components) used by handle values.
#pragma once

/// Two doubles. Plain value; the library uses it for handle settings and parameter pairs.
struct GZ_Vector2
{
    double x = 0.0;
    double y = 0.0;

    bool operator==(const GZ_Vector2 &o) const { return x == o.x && y == o.y; }
    bool operator!=(const GZ_Vector2 &o) const { return !(*this == o); }
};

/// Three doubles: positions, directions, colours without alpha.
struct GZ_Vector3
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    bool operator==(const GZ_Vector3 &o) const { return x == o.x && y == o.y && z == o.z; }
    bool operator!=(const GZ_Vector3 &o) const { return !(*this == o); }
};

/// Four doubles: colours with alpha, homogeneous points.
struct GZ_Vector4
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double w = 0.0;

    bool operator==(const GZ_Vector4 &o) const
    {
        return x == o.x && y == o.y && z == o.z && w == o.w;
    }
    bool operator!=(const GZ_Vector4 &o) const { return !(*this == o); }
};
