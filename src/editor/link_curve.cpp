#include "editor/link_curve.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kLeastReach = 24, kMostReach = 160;  // pixels at zoom 1 of the end tangents
constexpr float kPieceLength = 11;                   // pixels
constexpr int kMostPieces = 32;

// Twice the area of the triangle; its sign tells on which side of the line a-b the point c is.
float Side(const Vec2& a, const Vec2& b, const Vec2& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

bool Between(float p, float a, float b) {
    return p >= std::min(a, b) && p <= std::max(a, b);
}

bool SegmentsMeet(const Vec2& a, const Vec2& b, const Vec2& c, const Vec2& d) {
    if (a.x == b.x && a.y == b.y) return false;
    const float sideC = Side(a, b, c), sideD = Side(a, b, d);
    const float sideA = Side(c, d, a), sideB = Side(c, d, b);
    if (sideC == 0 && sideD == 0) {  // on one line
        return (Between(c.x, a.x, b.x) && Between(c.y, a.y, b.y)) ||
               (Between(a.x, c.x, d.x) && Between(a.y, c.y, d.y));
    }
    return std::min(sideC, sideD) <= 0 && std::max(sideC, sideD) >= 0 &&
           std::min(sideA, sideB) <= 0 && std::max(sideA, sideB) >= 0;
}

}  // namespace

LinkCurve::LinkCurve(const Vec2& from, const Vec2& to, float zoom) {
    const float dx = std::fabs(to.x - from.x), dy = to.y - from.y;
    // A link that leads up swings out more, so that it does not hide behind its boxes.
    const float wanted = dy >= 0 ? dy * 0.5f : -dy * 0.5f + dx * 0.25f + 20 * zoom;
    const float reach = std::clamp(wanted, kLeastReach * zoom, kMostReach * zoom);
    points_[0] = from;
    points_[1] = {from.x, from.y + reach};
    points_[2] = {to.x, to.y - reach};
    points_[3] = to;
    least = most = from;
    for (const Vec2& point : points_) {
        least = {std::min(least.x, point.x), std::min(least.y, point.y)};
        most = {std::max(most.x, point.x), std::max(most.y, point.y)};
    }
    length = std::sqrt(dx * dx + dy * dy) + reach * 0.5f;
}

Vec2 LinkCurve::at(float t) const {
    const float u = 1 - t;
    const float a = u * u * u, b = 3 * u * u * t, c = 3 * u * t * t, d = t * t * t;
    return {a * points_[0].x + b * points_[1].x + c * points_[2].x + d * points_[3].x,
            a * points_[0].y + b * points_[1].y + c * points_[2].y + d * points_[3].y};
}

Vec2 LinkCurve::normal(float t) const {
    const float u = 1 - t;
    const auto slope = [&](float p0, float p1, float p2, float p3) {
        return u * u * (p1 - p0) + 2 * u * t * (p2 - p1) + t * t * (p3 - p2);
    };
    const float dx = slope(points_[0].x, points_[1].x, points_[2].x, points_[3].x);
    const float dy = slope(points_[0].y, points_[1].y, points_[2].y, points_[3].y);
    const float size = std::sqrt(dx * dx + dy * dy);
    if (!(size > 0)) return {1, 0};
    return {-dy / size, dx / size};
}

int LinkCurve::pieces() const {
    // One straight down needs no more than one.
    if (points_[0].x == points_[3].x && points_[3].y >= points_[0].y) return 1;
    return std::clamp(static_cast<int>(std::min(length, 1e6f) / kPieceLength), 1, kMostPieces);
}

bool LinkCurve::crosses(const Vec2& a, const Vec2& b) const {
    if (std::min(a.x, b.x) > most.x || std::max(a.x, b.x) < least.x ||
        std::min(a.y, b.y) > most.y || std::max(a.y, b.y) < least.y) {
        return false;
    }
    const int count = 2 * pieces();
    Vec2 before = at(0);
    for (int i = 1; i <= count; ++i) {
        const Vec2 next = at(static_cast<float>(i) / static_cast<float>(count));
        if (SegmentsMeet(a, b, before, next)) return true;
        before = next;
    }
    return false;
}
