// The figures that the dancer draws in the air: closed and open strokes in an upright plane, seen
// from the front, with the seconds in which the hand draws each. Depends on nothing; any thread.
#pragma once

#include <array>

namespace dance {

enum class Figure { Circle, Heart, Star, Spiral, Infinity, Wave, Tick, Arrow };

struct DrawnFigure {
    Figure figure;
    double startSeconds, stopSeconds;
    double x;  // of the figure's middle, to the dancer's right
};

inline constexpr double kFigureHeight = 1.40;  // of the middle over the floor
inline constexpr double kFigureAhead = 0.34;   // of the plane, before the dancer's ankles
inline constexpr double kFigureSize = 0.42;    // metres of one unit of a figure

// In order of time.
inline constexpr std::array<DrawnFigure, 8> kDrawnFigures = {{
    {Figure::Circle, 171.679, 173.046, 1.29},
    {Figure::Heart, 175.746, 177.146, 0.43},
    {Figure::Star, 179.246, 181.546, -0.43},
    {Figure::Spiral, 183.146, 184.847, -1.29},
    {Figure::Infinity, 188.626, 190.426, -1.29},
    {Figure::Wave, 191.526, 192.926, -0.43},
    {Figure::Tick, 194.193, 195.093, 0.43},
    {Figure::Arrow, 197.127, 198.661, 1.29},
}};

// A place of a figure as who looks at the dancer's face sees it: x to the right, y up, within -1.1
// to 1.1.
struct FigurePoint {
    double x, y;
};

// Where the hand is when `part`, 0 to 1, of the time has passed. It rests at both ends, and slows
// down at corners as a hand does.
FigurePoint FigureAt(Figure figure, double part);

}  // namespace dance
