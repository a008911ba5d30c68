#include "demo/tool/puppet_mesh.h"

#include <charconv>

namespace puppet {

using namespace dance;

namespace {

constexpr double kTurn = 2 * std::numbers::pi;

double spline(double a, double b, double c, double d, double t) {
    return b + 0.5 * t * (c - a + t * (2 * a - 5 * b + 4 * c - d + t * (3 * (b - c) + d - a)));
}

double signedPower(double value, double exponent) {
    return std::copysign(std::pow(std::abs(value), exponent), value);
}

Point faceNormal(const Point& a, const Point& b, const Point& c) {
    return cross(b - a, c - a);  // as long as the face is large
}

void writeNumber(std::string& text, double value) {
    char digits[40];
    const double shown = std::abs(value) < 0.000005 ? 0.0 : value;  // no "-0"
    const auto end =
        std::to_chars(digits, digits + sizeof digits, shown, std::chars_format::fixed, 5);
    text += ' ';
    text.append(digits, end.ptr);
}

void writeLine(std::string& text, const char* word, std::initializer_list<double> numbers) {
    text += word;
    for (const double number : numbers) writeNumber(text, number);
    text += '\n';
}

}  // namespace

Ring Profile::ringAt(double place) const {
    const auto last = rings_.size() - 1;
    const auto segment = std::min(static_cast<std::size_t>(std::max(place, 0.0)), last - 1);
    const double t = std::min(place - static_cast<double>(segment), 1.0);
    const Ring& a = rings_[segment == 0 ? 0 : segment - 1];
    const Ring& b = rings_[segment];
    const Ring& c = rings_[segment + 1];
    const Ring& d = rings_[std::min(segment + 2, last)];
    const auto between = [&](double Ring::*member) {
        return spline(a.*member, b.*member, c.*member, d.*member, t);
    };
    return {b.y + (c.y - b.y) * t,
            std::max(0.0, between(&Ring::radiusX)),
            std::max(0.0, between(&Ring::radiusZ)),
            between(&Ring::x),
            between(&Ring::z),
            between(&Ring::squareness)};
}

double Profile::placeOf(double y) const {
    std::size_t segment = 0;
    while (segment + 2 < rings_.size() && y > rings_[segment + 1].y) ++segment;
    const double height = rings_[segment + 1].y - rings_[segment].y;
    const double part = height > 0 ? (y - rings_[segment].y) / height : 0;
    return static_cast<double>(segment) + std::clamp(part, 0.0, 1.0);
}

Point Profile::pointOn(const Ring& ring, double angle, double lift) {
    const double exponent = 2 / ring.squareness;
    return {ring.x + (ring.radiusX + lift) * signedPower(std::sin(angle), exponent), ring.y,
            ring.z + (ring.radiusZ + lift) * signedPower(std::cos(angle), exponent)};
}

std::size_t Mesh::add(const Point& point) {
    points_.push_back(placement_ ? placement_(point) : point);
    return points_.size() - 1;
}

// Rows of points, each from the left to the right as seen from outside, the lowest first.
void Mesh::addGrid(std::size_t first, std::size_t columns, std::size_t rows, bool closed) {
    for (std::size_t row = 0; row + 1 < rows; ++row) {
        for (std::size_t column = 0; column + (closed ? 0 : 1) < columns; ++column) {
            const std::size_t next = (column + 1) % columns;
            const std::size_t a = first + row * columns + column;
            const std::size_t b = first + row * columns + next;
            triangles_.push_back({a, b, b + columns});
            triangles_.push_back({a, b + columns, a + columns});
        }
    }
}

void Mesh::addProfile(const Profile& profile, int segments, int rowsBetweenRings) {
    const std::size_t first = points_.size();
    const std::size_t rows =
        (profile.ringCount() - 1) * static_cast<std::size_t>(rowsBetweenRings) + 1;
    for (std::size_t row = 0; row < rows; ++row) {
        const Ring ring = profile.ringAt(static_cast<double>(row) / rowsBetweenRings);
        for (int i = 0; i < segments; ++i) add(Profile::pointOn(ring, kTurn * i / segments));
    }
    addGrid(first, static_cast<std::size_t>(segments), rows, true);
}

void Mesh::addBall(const Point& centre, double radius, int segments) {
    const int rows = segments / 2;
    const std::size_t first = points_.size();
    for (int row = 0; row <= rows; ++row) {
        const double rise = std::numbers::pi * (static_cast<double>(row) / rows - 0.5);
        for (int i = 0; i < segments; ++i) {
            const double angle = kTurn * i / segments;
            add(centre + Point{std::cos(rise) * std::sin(angle), std::sin(rise),
                               std::cos(rise) * std::cos(angle)} *
                             radius);
        }
    }
    addGrid(first, static_cast<std::size_t>(segments), static_cast<std::size_t>(rows) + 1, true);
}

void Mesh::addPatch(const Profile& profile, double bottom, double top, double angle,
                    double halfAngle, double lift, int columns, int rows) {
    // Up at once behind the rim, and even from there on.
    const auto raised = [](double place) { return std::min(1.0, 5 * (1 - std::abs(place))); };
    const std::size_t first = points_.size();
    for (int row = 0; row <= rows; ++row) {
        const double v = 2.0 * row / rows - 1;
        const Ring ring = profile.ringAt(profile.placeOf(bottom + (top - bottom) * (v + 1) / 2));
        for (int column = 0; column <= columns; ++column) {
            const double u = 2.0 * column / columns - 1;
            const double height = lift * (2 * std::min(raised(u), raised(v)) - 1);
            add(Profile::pointOn(ring, angle + halfAngle * u, height));
        }
    }
    addGrid(first, static_cast<std::size_t>(columns) + 1, static_cast<std::size_t>(rows) + 1,
            false);
}

void Mesh::addBelt(const Profile& profile, double y, double thickness, int segments) {
    constexpr int kSides = 8;
    const std::size_t first = points_.size();
    for (int side = 0; side <= kSides; ++side) {
        const double around = std::numbers::pi * (static_cast<double>(side) / kSides - 0.5);
        const double height = y + thickness * std::sin(around);
        Ring ring = profile.ringAt(profile.placeOf(height));
        ring.y = height;
        const double lift = thickness * (1.2 * std::cos(around) - 0.5);
        for (int i = 0; i < segments; ++i) add(Profile::pointOn(ring, kTurn * i / segments, lift));
    }
    addGrid(first, static_cast<std::size_t>(segments), kSides + 1, true);
}

void Mesh::addPanel(const Point& centre, const Point& halfSize, double bevel) {
    constexpr double kBox = 40;  // squareness
    const double inX = halfSize.x - bevel, inZ = halfSize.z - bevel;
    const std::size_t first = points_.size();
    const Ring rings[] = {{-halfSize.y, 0, 0, 0, 0, kBox},
                          {-halfSize.y, inX, inZ, 0, 0, kBox},
                          {-halfSize.y + bevel, halfSize.x, halfSize.z, 0, 0, kBox},
                          {halfSize.y - bevel, halfSize.x, halfSize.z, 0, 0, kBox},
                          {halfSize.y, inX, inZ, 0, 0, kBox},
                          {halfSize.y, 0, 0, 0, 0, kBox}};
    constexpr double kCorners[] = {0.125, 0.375, 0.625, 0.875};
    for (const Ring& ring : rings) {
        for (const double corner : kCorners) add(centre + Profile::pointOn(ring, kTurn * corner));
    }
    addGrid(first, std::size(kCorners), std::size(rings), true);
}

void Mesh::balance() {
    Point reach;
    for (const Point& p : points_) {
        reach.x = std::max(reach.x, std::abs(p.x));
        reach.y = std::max(reach.y, std::abs(p.y));
        reach.z = std::max(reach.z, std::abs(p.z));
    }
    placement_ = nullptr;
    for (const Point& corner : {reach, reach * -1}) {
        const std::size_t at = add(corner);
        triangles_.push_back({at, at, at});
    }
}

std::vector<std::array<Point, 3>> Mesh::cornerNormals() const {
    std::vector<Point> faces;
    std::vector<std::vector<std::size_t>> around(points_.size());
    for (std::size_t i = 0; i < triangles_.size(); ++i) {
        const auto& [a, b, c] = triangles_[i];
        faces.push_back(faceNormal(points_[a], points_[b], points_[c]));
        for (const std::size_t corner : triangles_[i]) around[corner].push_back(i);
    }
    std::vector<std::array<Point, 3>> normals(triangles_.size());
    for (std::size_t i = 0; i < triangles_.size(); ++i) {
        const Point own = unit(faces[i]);
        for (std::size_t corner = 0; corner < 3; ++corner) {
            Point sum;
            for (const std::size_t face : around[triangles_[i][corner]]) {
                if (dot(unit(faces[face]), own) > kSharpEdge) sum = sum + faces[face];
            }
            normals[i][corner] = length(sum) > 1e-12 ? unit(sum) : Point{0, 1, 0};
        }
    }
    return normals;
}

void ObjWriter::add(const std::string& name, const Mesh& mesh, double scale) {
    text_ += "o " + name + '\n';
    const auto [low, high] =
        std::minmax_element(mesh.points().begin(), mesh.points().end(),
                            [](const Point& a, const Point& b) { return a.y < b.y; });
    const double bottom = low->y, height = std::max(high->y - bottom, 1e-9);
    for (const Point& p : mesh.points()) {
        writeLine(text_, "v", {p.x * scale, p.y * scale, p.z * scale});
        writeLine(text_, "vt", {0.5 + std::atan2(p.x, p.z) / kTurn, (p.y - bottom) / height});
    }
    // Corners that share a point mostly share its normal, too.
    std::vector<std::vector<std::pair<Point, std::size_t>>> written(mesh.points().size());
    const auto numberOf = [&](std::size_t point, const Point& normal) {
        for (const auto& [known, number] : written[point]) {
            if (dot(known, normal) > 0.99999) return number;
        }
        writeLine(text_, "vn", {normal.x, normal.y, normal.z});
        written[point].push_back({normal, ++normals_});
        return normals_;
    };
    const auto normals = mesh.cornerNormals();
    for (std::size_t i = 0; i < normals.size(); ++i) {
        std::string face = "f";
        for (std::size_t corner = 0; corner < 3; ++corner) {
            const std::size_t point = mesh.triangles()[i][corner];
            const std::string index = std::to_string(positions_ + point + 1);
            face += ' ' + index + '/' + index + '/' +
                    std::to_string(numberOf(point, normals[i][corner]));
        }
        text_ += face + '\n';
    }
    positions_ += mesh.points().size();
}

}  // namespace puppet
