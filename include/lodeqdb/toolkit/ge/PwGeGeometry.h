// Plain geometry values of the toolkit: points, vectors and scale factors in 2D and 3D.
//
//   PwGePoint3d insertion(10.0, 20.0, 0.0);
//   PwGeScale3d scale(2.0, 2.0, 1.0);
//   PwGeVector3d offset = PwGePoint3d(1, 1, 0) - insertion;
#pragma once

#include <cmath>

struct PwGePoint2d {
    double x = 0.0;
    double y = 0.0;
    constexpr PwGePoint2d() = default;
    constexpr PwGePoint2d(double px, double py) : x(px), y(py) {}
    constexpr bool operator==(const PwGePoint2d&) const = default;
    /// True when no coordinate is infinite or NaN.
    bool isFinite() const { return std::isfinite(x) && std::isfinite(y); }
};

struct PwGeVector3d {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    constexpr PwGeVector3d() = default;
    constexpr PwGeVector3d(double vx, double vy, double vz) : x(vx), y(vy), z(vz) {}
    constexpr bool operator==(const PwGeVector3d&) const = default;
};

struct PwGePoint3d {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    constexpr PwGePoint3d() = default;
    constexpr PwGePoint3d(double px, double py, double pz) : x(px), y(py), z(pz) {}
    constexpr bool operator==(const PwGePoint3d&) const = default;
    /// True when no coordinate is infinite or NaN.
    bool isFinite() const { return std::isfinite(x) && std::isfinite(y) && std::isfinite(z); }
    constexpr PwGeVector3d operator-(const PwGePoint3d& other) const {
        return {x - other.x, y - other.y, z - other.z};
    }
    constexpr PwGePoint3d operator+(const PwGeVector3d& offset) const {
        return {x + offset.x, y + offset.y, z + offset.z};
    }
};

/// Scale factors along the three axes; 1, 1, 1 by default.
struct PwGeScale3d {
    double sx = 1.0;
    double sy = 1.0;
    double sz = 1.0;
    constexpr PwGeScale3d() = default;
    constexpr PwGeScale3d(double x, double y, double z) : sx(x), sy(y), sz(z) {}
    constexpr bool operator==(const PwGeScale3d&) const = default;
    /// True when every factor is finite and none is 0: a scale that can be undone.
    bool isUsable() const {
        return sx != 0.0 && sy != 0.0 && sz != 0.0 && std::isfinite(sx) && std::isfinite(sy) &&
               std::isfinite(sz);
    }
};
