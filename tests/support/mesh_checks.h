// What a mesh can be judged by without drawing it: its open edges, its volume, and the side that
// its normals are on. Vertices are three a triangle, counter-clockwise seen from outside.
#pragma once

#include <cmath>
#include <cstdint>
#include <map>
#include <span>
#include <tuple>
#include <utility>

#include "gpu/mesh_buffers.h"

// Edges that are not run once each way. Corners closer than a hundredth of a millimetre are one.
inline std::size_t OpenEdges(std::span<const MeshVertex> vertices) {
    using Corner = std::tuple<std::int64_t, std::int64_t, std::int64_t>;
    const auto corner = [&](std::size_t i) {
        const Vec3& p = vertices[i].position;
        return Corner{std::llround(p.x * 5e4), std::llround(p.y * 5e4), std::llround(p.z * 5e4)};
    };
    std::map<std::pair<Corner, Corner>, int> balance;
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const Corner from = corner(i), to = corner(i % 3 == 2 ? i - 2 : i + 1);
        from < to ? ++balance[{from, to}] : --balance[{to, from}];
    }
    std::size_t open = 0;
    for (const auto& [edge, sum] : balance) open += sum != 0;
    return open;
}

// By the divergence theorem: what the triangles span with the origin, with its sign.
inline double Volume(std::span<const MeshVertex> vertices) {
    double six = 0;
    for (std::size_t i = 0; i + 2 < vertices.size(); i += 3) {
        const Vec3 cross = Vec3Cross(vertices[i + 1].position, vertices[i + 2].position);
        const Vec3& p = vertices[i].position;
        six += static_cast<double>(p.x) * cross.x + static_cast<double>(p.y) * cross.y +
               static_cast<double>(p.z) * cross.z;
    }
    return six / 6;
}

// Vertices whose normal is not on the side from which their triangle is seen.
inline std::size_t NormalsFacingIn(std::span<const MeshVertex> vertices) {
    std::size_t wrong = 0;
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const MeshVertex* t = &vertices[i - i % 3];
        const auto edge = [&](int k) {
            return Vec3{t[k].position.x - t[0].position.x, t[k].position.y - t[0].position.y,
                        t[k].position.z - t[0].position.z};
        };
        const Vec3 face = Vec3Cross(edge(1), edge(2)), &normal = vertices[i].normal;
        wrong += !(face.x * normal.x + face.y * normal.y + face.z * normal.z > 0);
    }
    return wrong;
}
