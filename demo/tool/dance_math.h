// The small mathematics of the dance: vectors in double precision, turns, and curves that are
// sampled once a frame. Metres, seconds and radians. Depends on nothing; any thread.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

namespace dance {

// The dancer faces the sensor: x to the dancer's right, y up, z away from the sensor.
struct Point {
    double x = 0, y = 0, z = 0;
};

inline Point operator+(const Point& a, const Point& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Point operator-(const Point& a, const Point& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Point operator*(const Point& v, double factor) {
    return {v.x * factor, v.y * factor, v.z * factor};
}
inline double dot(const Point& a, const Point& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Point cross(const Point& a, const Point& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(const Point& v) {
    return std::sqrt(dot(v, v));
}
inline Point unit(const Point& v) {
    return v * (1.0 / std::max(length(v), 1e-12));
}
inline Point mix(const Point& from, const Point& to, double part) {
    return from + (to - from) * part;
}

// Rodrigues' formula; `axis` has unit length.
inline Point turned(const Point& v, const Point& axis, double angle) {
    const double c = std::cos(angle);
    return v * c + cross(axis, v) * std::sin(angle) + axis * (dot(axis, v) * (1 - c));
}

// How a part of the body is turned: unit vectors, square to each other.
struct Axes {
    Point right{1, 0, 0}, up{0, 1, 0}, front{0, 0, -1};

    // A place given as (to the right, up, to the front).
    Point at(double toRight, double upwards, double forward) const {
        return right * toRight + up * upwards + front * forward;
    }
};

// Turned to the left by `yaw`, then bent forward by `pitch`, then tilted to the right by `roll`.
inline Axes bodyAxes(double yaw, double pitch, double roll) {
    Axes axes;
    axes.right = turned(axes.right, {0, 1, 0}, yaw);
    axes.front = turned(axes.front, {0, 1, 0}, yaw);
    axes.up = turned(axes.up, axes.right, -pitch);
    axes.front = turned(axes.front, axes.right, -pitch);
    axes.right = turned(axes.right, axes.front, roll);
    axes.up = turned(axes.up, axes.front, roll);
    return axes;
}

// 0 to 1 with velocity and acceleration 0 at both ends.
inline double eased(double part) {
    const double t = std::clamp(part, 0.0, 1.0);
    return t * t * t * (t * (t * 6 - 15) + 10);
}

inline double degrees(double angle) {
    return angle * std::numbers::pi / 180;
}

// A value for every frame.
using Curve = std::vector<double>;

// Blurred by a Gaussian of this many frames, which shifts nothing in time.
Curve blurred(const Curve& curve, double sigmaFrames);
// The largest value within `reach` frames.
Curve widened(const Curve& curve, std::size_t reach);

}  // namespace dance
