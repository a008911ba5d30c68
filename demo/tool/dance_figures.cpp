#include "demo/tool/dance_figures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <span>
#include <vector>

namespace dance {

namespace {

constexpr double kTurn = 2 * std::numbers::pi;

// Even speed but for a short start and stop.
double handPace(double part) {
    constexpr double kRamp = 0.12;
    constexpr double kTop = 1 / (1 - kRamp);  // the speed in between
    const double t = std::clamp(part, 0.0, 1.0);
    if (t < kRamp) return kTop * t * t / (2 * kRamp);
    if (t > 1 - kRamp) return 1 - kTop * (1 - t) * (1 - t) / (2 * kRamp);
    return kTop * (t - kRamp / 2);
}

// Straight strokes from corner to corner, each eased in and out, in time by their lengths.
FigurePoint alongStrokes(std::span<const FigurePoint> corners, double part) {
    std::vector<double> ends{0};
    for (std::size_t i = 1; i < corners.size(); ++i) {
        ends.push_back(ends.back() + std::hypot(corners[i].x - corners[i - 1].x,
                                                corners[i].y - corners[i - 1].y));
    }
    const double way = std::clamp(part, 0.0, 1.0) * ends.back();
    std::size_t stroke = 1;
    while (stroke + 1 < ends.size() && way > ends[stroke]) ++stroke;
    const double within = (way - ends[stroke - 1]) / (ends[stroke] - ends[stroke - 1]);
    const double moved = 0.5 * within + 0.5 * within * within * (3 - 2 * within);
    const FigurePoint& from = corners[stroke - 1];
    const FigurePoint& to = corners[stroke];
    return {from.x + (to.x - from.x) * moved, from.y + (to.y - from.y) * moved};
}

// Along a curve at even speed but for the start and the stop.
template <typename Curve>
FigurePoint alongCurve(const Curve& curve, double part) {
    constexpr int kSteps = 256;
    std::array<double, kSteps + 1> ways{};
    FigurePoint last = curve(0.0);
    for (std::size_t i = 1; i < ways.size(); ++i) {
        const FigurePoint next = curve(static_cast<double>(i) / kSteps);
        ways[i] = ways[i - 1] + std::hypot(next.x - last.x, next.y - last.y);
        last = next;
    }
    const double way = handPace(part) * ways.back();
    const auto after = std::upper_bound(ways.begin() + 1, ways.end() - 1, way);
    const double within = (way - *(after - 1)) / (*after - *(after - 1));
    return curve((static_cast<double>(after - ways.begin()) - 1 + within) / kSteps);
}

FigurePoint circle(double part) {
    const double angle = kTurn * (0.25 + 1.02 * part);
    return {std::cos(angle), std::sin(angle)};
}

// Begins and ends in the notch.
FigurePoint heart(double part) {
    const double angle = kTurn * part;
    const double x = std::pow(std::sin(angle), 3);
    const double y = (13 * std::cos(angle) - 5 * std::cos(2 * angle) - 2 * std::cos(3 * angle) -
                      std::cos(4 * angle)) /
                     16;
    return {x, y + 0.12};
}

// A pentagram in one stroke.
FigurePoint star(double part) {
    std::vector<FigurePoint> corners;
    for (int i = 0; i <= 5; ++i) {
        const double angle = kTurn * (0.65 + 0.4 * -i);
        corners.push_back({1.06 * std::cos(angle), 1.06 * std::sin(angle)});
    }
    return alongStrokes(corners, part);
}

// From the middle outward.
FigurePoint spiral(double part) {
    constexpr double kTurns = 2.6;
    const double grown = 0.06 + 0.94 * part;
    const double angle = -kTurn * kTurns * grown;
    return {grown * std::cos(angle), grown * std::sin(angle)};
}

// Gerono's lemniscate.
FigurePoint infinity(double part) {
    const double angle = kTurn * (0.25 + 1.02 * part);
    return {1.08 * std::cos(angle), 0.62 * std::sin(2 * angle)};
}

FigurePoint wave(double part) {
    return {-1.08 + 2.16 * part, 0.45 * std::sin(kTurn * 2 * part)};
}

FigurePoint tick(double part) {
    constexpr FigurePoint kCorners[] = {{-0.8, 0.05}, {-0.25, -0.75}, {0.8, 0.75}};
    return alongStrokes(kCorners, part);
}

// Shaft first, then the head over its tip.
FigurePoint arrow(double part) {
    constexpr FigurePoint kCorners[] = {{0, -1}, {0, 1}, {-0.55, 0.4}, {0, 1}, {0.55, 0.4}};
    return alongStrokes(kCorners, part);
}

}  // namespace

FigurePoint FigureAt(Figure figure, double part) {
    switch (figure) {
        case Figure::Circle:
            return alongCurve(circle, part);
        case Figure::Heart:
            return alongCurve(heart, part);
        case Figure::Star:
            return star(part);
        case Figure::Spiral:
            return alongCurve(spiral, part);
        case Figure::Infinity:
            return alongCurve(infinity, part);
        case Figure::Wave:
            return alongCurve(wave, part);
        case Figure::Tick:
            return tick(part);
        case Figure::Arrow:
            return arrow(part);
    }
    return {0, 0};
}

}  // namespace dance
