// The plan of the hall: the one place that knows where its walls, columns and lights are. The
// models are built from it, and the pictures of its surfaces are painted with the light that falls
// on them. Metres, y up, the middle of the hall at the origin, the eye of a standing guest at
// height 0. No state; any thread.
#pragma once

#include <array>
#include <vector>

#include "gpu/math_types.h"
#include "pictures_colour.h"

namespace hall {

inline constexpr float kHalfWidth = 7, kHalfLength = 10, kFloor = -1.6f, kCeiling = 4.4f;
inline constexpr float kHeight = kCeiling - kFloor;

// A rectangle with the texture once over it: the place (u, v) is at corner + u * right + v * up,
// and right x up faces the hall.
struct Surface {
    Vec3 corner, right, up;
    Vec3 at(float u, float v) const;
    Vec3 normal() const;
};

inline constexpr Surface kFloorPlane{
    {-kHalfWidth, kFloor, kHalfLength}, {2 * kHalfWidth, 0, 0}, {0, 0, -2 * kHalfLength}};
inline constexpr Surface kCeilingPlane{
    {-kHalfWidth, kCeiling, -kHalfLength}, {2 * kHalfWidth, 0, 0}, {0, 0, 2 * kHalfLength}};
inline constexpr Surface kLeftWall{
    {-kHalfWidth, kFloor, kHalfLength}, {0, 0, -2 * kHalfLength}, {0, kHeight, 0}};
inline constexpr Surface kRightWall{
    {kHalfWidth, kFloor, -kHalfLength}, {0, 0, 2 * kHalfLength}, {0, kHeight, 0}};
inline constexpr Surface kBackWall{
    {-kHalfWidth, kFloor, -kHalfLength}, {2 * kHalfWidth, 0, 0}, {0, kHeight, 0}};
inline constexpr Surface kFrontWall{
    {kHalfWidth, kFloor, kHalfLength}, {-2 * kHalfWidth, 0, 0}, {0, kHeight, 0}};

// Columns stand along both walls; between two of them are arches of neon on the left and a window
// on the right.
inline constexpr std::array kColumnZ{-8.0f, -4.0f, 0.0f, 4.0f, 8.0f};
inline constexpr std::array kBayZ{-6.0f, -2.0f, 2.0f, 6.0f};
inline constexpr float kColumnX = 6.15f, kColumnRadius = 0.34f;
inline constexpr int kColumnCount = 2 * static_cast<int>(kColumnZ.size());
// Left side first, each from the back to the front.
Vec3 columnFoot(int column);

// Arches of one bay lie inside each other; the outermost first.
inline constexpr std::array kArchRadii{1.25f, 0.9f, 0.55f};
inline constexpr float kArchX = -6.82f, kArchSpring = 1.5f, kArchFoot = -1.0f;
// Point of an arch, `t` from 0 at one foot to 1 at the other.
Vec3 archPoint(float bayZ, float radius, float t);

inline constexpr float kWindowHalfWidth = 1.2f, kWindowLow = -0.7f, kWindowHigh = 3.4f;
inline constexpr float kWindowX = 6.93f;

inline constexpr Vec3 kSunCentre{0, 1.7f, -9.88f};
inline constexpr float kSunRadius = 1.9f;

inline constexpr float kStripX = 2.7f, kStripY = 4.28f, kStripHalfLength = 8.4f;

// Globes on rods from the ceiling.
inline constexpr std::array kGlobes{Vec3{-2.2f, 1.9f, -1.9f}, Vec3{2.1f, 2.35f, -2.4f},
                                    Vec3{-1.8f, 2.5f, 2.2f}, Vec3{2.3f, 2.0f, 1.7f}};

inline constexpr float kStepRadius = 1.7f;
inline constexpr float kPlinthX = 3.3f, kPlinthZ = 3.4f, kPlinthHalfWidth = 0.42f;  // four of them
inline constexpr float kBenchX = 4.9f;                                              // two of them
inline constexpr float kBenchHalfWidth = 0.3f, kBenchHalfLength = 1.1f;

// Balls lie on the floor around the steps, none through another.
struct Ball {
    float x, z, radius;
};
const std::vector<Ball>& balls();

// How much of the light from above what stands on the floor leaves to a place of it: 1 is all.
float openness(float x, float z);

inline constexpr pictures::Colour kArchColours[] = {pictures::kMagenta, pictures::kCyan};
inline constexpr pictures::Colour kStripColour = pictures::hexColour(0xc9b8ff);

// The light that falls on a place facing `normal`, all lamps together, without shadows.
class Lighting {
  public:
    Lighting();
    pictures::Colour at(const Vec3& place, const Vec3& normal) const;

  private:
    struct Lamp {
        Vec3 place, facing;  // a lamp that faces nowhere shines all around
        pictures::Colour power;
    };
    std::vector<Lamp> lamps_;
};

}  // namespace hall
