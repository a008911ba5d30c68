// What stands in the hall, and what rains and circles in other scenes.
#include <cmath>

#include "hall_plan.h"
#include "models.h"

namespace models {

// A trefoil of a soft three-sided band that turns on its way.
ObjModel knot() {
    const std::vector<Vec3> path = CurvePoints(320, Path::Closed, [](float t) {
        const float a = 2 * kPi * t, r = 0.82f + 0.34f * std::cos(3 * a);
        return Vec3{r * std::cos(2 * a), 0.36f * std::sin(3 * a), r * std::sin(2 * a)};
    });
    SweepShape shape{{}, Path::Closed, 2.0f / 3, {}};
    for (int i = 0; i < 36; ++i) {
        const float angle = 2 * kPi * static_cast<float>(i) / 36;
        const float radius = 0.17f * (1 + 0.22f * std::cos(3 * angle));
        shape.section.push_back({radius * std::cos(angle), radius * std::sin(angle)});
    }
    ObjModel model;
    // Upright, on one of its three lobes.
    model.add("knot", Rotated(Sweep(path, shape), {90, 0, 0}));
    return model;
}

namespace {

Mesh cutStone(std::span<const Vec2> profile, int sides) {
    return Faceted(Lathe(profile, sides));
}

// A five-pointed body: each face of an icosahedron-like ball of 20 triangles raised to a point.
Mesh spikedBall(float radius, float point) {
    const float golden = (1 + std::sqrt(5.0f)) / 2;
    const Vec3 corners[] = {{-1, golden, 0}, {1, golden, 0}, {-1, -golden, 0}, {1, -golden, 0},
                            {0, -1, golden}, {0, 1, golden}, {0, -1, -golden}, {0, 1, -golden},
                            {golden, 0, -1}, {golden, 0, 1}, {-golden, 0, -1}, {-golden, 0, 1}};
    const int faces[][3] = {{0, 11, 5}, {0, 5, 1},  {0, 1, 7},   {0, 7, 10}, {0, 10, 11},
                            {1, 5, 9},  {5, 11, 4}, {11, 10, 2}, {10, 7, 6}, {7, 1, 8},
                            {3, 9, 4},  {3, 4, 2},  {3, 2, 6},   {3, 6, 8},  {3, 8, 9},
                            {4, 9, 5},  {2, 4, 11}, {6, 2, 10},  {8, 6, 7},  {9, 8, 1}};
    Mesh mesh;
    for (const auto& face : faces) {
        Vec3 middle;
        MeshVertex around[3];
        for (int i = 0; i < 3; ++i) {
            const Vec3 direction = Vec3Normalise(corners[face[i]]);
            around[i] = {direction * radius, {}, {static_cast<float>(i) * 0.5f, 0}};
            middle = middle + direction;
        }
        const MeshVertex tip{Vec3Normalise(middle) * point, {}, {0.5f, 1}};
        for (int i = 0; i < 3; ++i) mesh.addTriangle(around[i], around[(i + 1) % 3], tip);
    }
    return Faceted(mesh);
}

}  // namespace

// A brilliant: crown, girdle and pavilion, with a small stone that floats over it.
ObjModel gem() {
    const std::vector<Vec2> brilliant{{0, -0.62f},    {0.5f, -0.06f}, {0.6f, 0.05f}, {0.6f, 0.1f},
                                      {0.46f, 0.26f}, {0.3f, 0.33f},  {0, 0.33f}};
    const std::vector<Vec2> drop{{0, -0.12f}, {0.09f, 0}, {0, 0.12f}};
    ObjModel model;
    model.add("brilliant", cutStone(brilliant, 12));
    model.add("drop", Moved(cutStone(drop, 6), {0, 0.58f, 0}));
    return model;
}

ObjModel star() {
    ObjModel model;
    model.add("star", spikedBall(0.24f, 0.55f));
    return model;
}

ObjModel spheres() {
    ObjModel model;
    int number = 0;
    for (const auto& [x, z, radius] : hall::balls()) {
        model.add("ball" + std::to_string(number++),
                  Moved(Sphere(radius, 40, 24), {x, hall::kFloor + radius, z}));
    }
    return model;
}

ObjModel vase() {
    const std::vector<Vec2> profile{{0, 0},         {0.2f, 0},      {0.2f, 0},      {0.22f, 0.03f},
                                    {0.14f, 0.12f}, {0.2f, 0.26f},  {0.31f, 0.45f}, {0.33f, 0.58f},
                                    {0.27f, 0.72f}, {0.14f, 0.85f}, {0.1f, 0.95f},  {0.12f, 1.02f},
                                    {0.17f, 1.06f}, {0.17f, 1.06f}, {0.1f, 1.04f},  {0.07f, 0.95f},
                                    {0, 0.92f}};
    ObjModel model;
    model.add("vase", Lathe(profile, 64));
    return model;
}

// Six sides, two points of unlike length.
ObjModel crystal() {
    const std::vector<Vec2> profile{{0, -0.55f}, {0.15f, -0.2f}, {0.17f, 0.18f}, {0, 0.42f}};
    ObjModel model;
    model.add("crystal", cutStone(profile, 6));
    return model;
}

ObjModel shard() {
    const std::vector<Vec2> profile{{0, -0.3f}, {0.1f, 0}, {0, 0.3f}};
    ObjModel model;
    model.add("shard", cutStone(profile, 4));
    return model;
}

// A flat band of radius 1, rounded, on its edge around y.
ObjModel ring() {
    const std::vector<Vec2> profile{{1.0f, -0.03f}, {1.02f, -0.02f}, {1.02f, 0.02f}, {1.0f, 0.03f},
                                    {0.98f, 0.02f}, {0.98f, -0.02f}, {1.0f, -0.03f}};
    ObjModel model;
    model.add("ring", Lathe(profile, 128));
    return model;
}

}  // namespace models
