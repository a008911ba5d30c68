// Meshes for the demo's models, built from round profiles with smooth normals, and written as
// Wavefront OBJ text. Metres. Depends on the dance's mathematics only; any thread.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "demo/tool/dance_math.h"

namespace puppet {

using dance::Point;

// A cross-section at height y: a superellipse around (x, z).
struct Ring {
    double y;
    double radiusX, radiusZ;
    double x = 0, z = 0;
    double squareness = 2;  // 2 an ellipse; more comes closer to a box
};

// A body of revolution in the widest sense: rings from the lower to the upper end with a smooth
// curve between them (Catmull and Rom's).
class Profile {
  public:
    explicit Profile(std::vector<Ring> rings) : rings_(std::move(rings)) {}

    double bottom() const { return rings_.front().y; }
    double top() const { return rings_.back().y; }
    std::size_t ringCount() const { return rings_.size(); }
    // `place`: 0 the first ring, ringCount() - 1 the last.
    Ring ringAt(double place) const;
    double placeOf(double y) const;
    // On the surface, `lift` outside of it; angle 0 is the front (z), a quarter turn the side (x).
    static Point pointOn(const Ring& ring, double angle, double lift = 0);

  private:
    std::vector<Ring> rings_;
};

class Mesh {
  public:
    // All that is added later is moved by this first.
    void setPlacement(std::function<Point(const Point&)> placement) {
        placement_ = std::move(placement);
    }

    void addProfile(const Profile& profile, int segments = 20, int rowsBetweenRings = 3);
    void addBall(const Point& centre, double radius, int segments = 18);
    // A raised patch on a profile, sunk in at its rim: from `bottom` to `top` and `halfAngle` to
    // both sides of `angle`.
    void addPatch(const Profile& profile, double bottom, double top, double angle, double halfAngle,
                  double lift, int columns = 10, int rows = 8);
    // A tube around a profile, or around the front of it.
    void addBelt(const Profile& profile, double y, double thickness, int segments = 24);
    // A box with corners cut off, around (x, y, z).
    void addPanel(const Point& centre, const Point& halfSize, double bevel);
    // What has no area but takes part in the mesh's box, so that the box's middle is the origin.
    void balance();

    // Normals are shared across edges that are less sharp than this.
    static constexpr double kSharpEdge = 0.75;
    std::vector<std::array<Point, 3>> cornerNormals() const;

    const std::vector<Point>& points() const { return points_; }
    const std::vector<std::array<std::size_t, 3>>& triangles() const { return triangles_; }

  private:
    std::size_t add(const Point& point);
    void addGrid(std::size_t first, std::size_t columns, std::size_t rows, bool closed);

    std::function<Point(const Point&)> placement_;
    std::vector<Point> points_;
    std::vector<std::array<std::size_t, 3>> triangles_;
};

// Appends an object to an OBJ text; indices go on from what has been written.
class ObjWriter {
  public:
    void add(const std::string& name, const Mesh& mesh, double scale);
    const std::string& text() const { return text_; }

  private:
    std::string text_;
    std::size_t positions_ = 0, normals_ = 0;
};

}  // namespace puppet
