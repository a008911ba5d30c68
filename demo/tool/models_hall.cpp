// The hall: walls that show the painted light, columns, frames and furniture, and lamps.
#include <cmath>

#include "hall_plan.h"
#include "models.h"

namespace models {

namespace {

using hall::Surface;

std::string numbered(const char* name, int number) {
    return name + std::to_string(number);
}

// In squares, so that the passes that work on vertices have some to work on.
Mesh plane(const Surface& surface) {
    constexpr int kSquares = 8;
    const auto vertex = [&](int column, int row) {
        const float u = static_cast<float>(column) / kSquares;
        const float v = static_cast<float>(row) / kSquares;
        return MeshVertex{surface.at(u, v), surface.normal(), {u, v}};
    };
    Mesh mesh;
    for (int row = 0; row < kSquares; ++row) {
        for (int column = 0; column < kSquares; ++column) {
            mesh.addQuad(vertex(column, row), vertex(column + 1, row), vertex(column + 1, row + 1),
                         vertex(column, row + 1));
        }
    }
    return mesh;
}

ObjModel onePlane(const char* name, const Surface& surface) {
    ObjModel model;
    model.add(name, plane(surface));
    return model;
}

Mesh boxBetween(const Vec3& low, const Vec3& high, float bevel) {
    return Moved(Box((high - low) * 0.5f, bevel), (low + high) * 0.5f);
}

// A round sheet that faces z, with the texture over its square.
Mesh disc(float radius, int slices) {
    const auto rim = [&](int slice) {
        const float angle =
            2 * kPi * static_cast<float>(slice % slices) / static_cast<float>(slices);
        const float x = std::cos(angle), y = std::sin(angle);
        return MeshVertex{
            {x * radius, y * radius, 0}, {0, 0, 1}, {x * 0.5f + 0.5f, y * 0.5f + 0.5f}};
    };
    const MeshVertex middle{{0, 0, 0}, {0, 0, 1}, {0.5f, 0.5f}};
    Mesh mesh;
    for (int slice = 0; slice < slices; ++slice) {
        mesh.addTriangle(middle, rim(slice), rim(slice + 1));
    }
    return mesh;
}

}  // namespace

ObjModel hallFloor() {
    return onePlane("floor", hall::kFloorPlane);
}

ObjModel hallCeiling() {
    return onePlane("ceiling", hall::kCeilingPlane);
}

ObjModel hallLeftWall() {
    return onePlane("left_wall", hall::kLeftWall);
}

ObjModel hallRightWall() {
    return onePlane("right_wall", hall::kRightWall);
}

// Back and front share a picture, side by side.
ObjModel hallEndWalls() {
    ObjModel model;
    model.add("back_wall", TextureScaled(plane(hall::kBackWall), 0.5f, 1));
    Mesh front = TextureScaled(plane(hall::kFrontWall), 0.5f, 1);
    for (MeshVertex& vertex : front.vertices) vertex.uv.x += 0.5f;
    model.add("front_wall", front);
    return model;
}

// Each column has a strip of the texture, which holds the light around it.
ObjModel hallColumns() {
    constexpr float kR = hall::kColumnRadius, kTop = hall::kHeight;
    const std::vector<Vec2> profile{{0, 0},
                                    {kR + 0.16f, 0},
                                    {kR + 0.16f, 0},
                                    {kR + 0.16f, 0.22f},
                                    {kR + 0.16f, 0.22f},
                                    {kR + 0.10f, 0.24f},
                                    {kR + 0.12f, 0.30f},
                                    {kR + 0.08f, 0.36f},
                                    {kR, 0.42f},
                                    {kR, 0.42f},
                                    {kR * 0.97f, 2.0f},
                                    {kR * 0.9f, kTop - 0.6f},
                                    {kR * 0.9f, kTop - 0.6f},
                                    {kR + 0.05f, kTop - 0.5f},
                                    {kR + 0.05f, kTop - 0.44f},
                                    {kR * 0.95f, kTop - 0.4f},
                                    {kR * 0.95f, kTop - 0.4f},
                                    {kR + 0.20f, kTop - 0.12f},
                                    {kR + 0.20f, kTop - 0.12f},
                                    {kR + 0.20f, kTop},
                                    {kR + 0.20f, kTop},
                                    {0, kTop}};
    ObjModel model;
    for (int column = 0; column < hall::kColumnCount; ++column) {
        Mesh mesh = Lathe(profile, 48);
        for (MeshVertex& vertex : mesh.vertices) {
            vertex.uv.x = (vertex.uv.x + static_cast<float>(column)) / hall::kColumnCount;
            vertex.uv.y = vertex.position.y / kTop;
        }
        model.add(numbered("column", column), Moved(mesh, hall::columnFoot(column)));
    }
    return model;
}

namespace {

void addWindowFrame(ObjModel& model, int number, float z) {
    constexpr float kBar = 0.09f, kDeep = 0.16f, kMiddle = hall::kWindowX - 0.06f;
    const std::string name = numbered("frame", number);
    const auto bar = [&](float lowY, float highY, float lowZ, float highZ) {
        model.add(name, boxBetween({kMiddle - kDeep, lowY, z + lowZ},
                                   {hall::kHalfWidth + 0.05f, highY, z + highZ}, 0.02f));
    };
    const float half = hall::kWindowHalfWidth;
    for (const float at : {-half, -half / 3, half / 3, half}) {
        bar(hall::kWindowLow - kBar, hall::kWindowHigh + kBar, at - kBar / 2, at + kBar / 2);
    }
    for (int row = 0; row <= 4; ++row) {
        const float y =
            pictures::mix(hall::kWindowLow, hall::kWindowHigh, static_cast<float>(row) / 4);
        bar(y - kBar / 2, y + kBar / 2, -half - kBar / 2, half + kBar / 2);
    }
    // The sill.
    model.add(
        name,
        boxBetween({hall::kHalfWidth - 0.4f, hall::kWindowLow - 0.2f, z - half - 0.15f},
                   {hall::kHalfWidth + 0.05f, hall::kWindowLow - 0.08f, z + half + 0.15f}, 0.025f));
}

void addBench(ObjModel& model, int number, const Vec3& middle) {
    const std::string name = numbered("bench", number);
    const Vec3 foot{middle.x, hall::kFloor, middle.z};
    model.add(name,
              boxBetween(foot + Vec3{-hall::kBenchHalfWidth, 0.38f, -hall::kBenchHalfLength},
                         foot + Vec3{hall::kBenchHalfWidth, 0.48f, hall::kBenchHalfLength}, 0.03f));
    for (const float z : {-0.8f, 0.8f}) {
        model.add(name, boxBetween(foot + Vec3{-0.24f, 0, z - 0.05f},
                                   foot + Vec3{0.24f, 0.39f, z + 0.05f}, 0.015f));
    }
}

void addPlinth(ObjModel& model, int number, float x, float z) {
    constexpr float kFoot = hall::kPlinthHalfWidth, kBody = 0.34f, kHigh = 1.05f;
    const std::string name = numbered("plinth", number);
    model.add(name, boxBetween({x - kFoot, hall::kFloor, z - kFoot},
                               {x + kFoot, hall::kFloor + 0.08f, z + kFoot}, 0.02f));
    model.add(name, boxBetween({x - kBody, hall::kFloor + 0.05f, z - kBody},
                               {x + kBody, hall::kFloor + kHigh, z + kBody}, 0.03f));
}

}  // namespace

ObjModel hallMetal() {
    ObjModel model;
    for (int i = 0; i < 4; ++i) addWindowFrame(model, i, hall::kBayZ[i]);
    // Steps under the knot.
    const std::vector<Vec2> steps{
        {0, 0},         {hall::kStepRadius, 0}, {hall::kStepRadius, 0}, {hall::kStepRadius, 0.12f},
        {1.66f, 0.16f}, {1.66f, 0.16f},         {1.3f, 0.16f},          {1.3f, 0.16f},
        {1.3f, 0.30f},  {1.26f, 0.34f},         {1.26f, 0.34f},         {0, 0.34f}};
    model.add("steps", Moved(Lathe(steps, 96), {0, hall::kFloor, 0}));
    for (int i = 0; i < 4; ++i) {
        addPlinth(model, i, i % 2 == 0 ? -hall::kPlinthX : hall::kPlinthX,
                  i < 2 ? -hall::kPlinthZ : hall::kPlinthZ);
    }
    addBench(model, 0, {-hall::kBenchX, 0, 0});
    addBench(model, 1, {hall::kBenchX, 0, 0});
    // Beams across the ceiling, and the rails of the light strips.
    for (int i = 0; i < 5; ++i) {
        const float z = hall::kColumnZ[i];
        model.add(numbered("beam", i),
                  boxBetween({-hall::kHalfWidth, hall::kCeiling - 0.38f, z - 0.2f},
                             {hall::kHalfWidth, hall::kCeiling + 0.1f, z + 0.2f}, 0.03f));
    }
    for (int i = 0; i < 4; ++i) {
        const auto& [x, y, z] = hall::kGlobes[i];
        model.add(numbered("rod", i), boxBetween({x - 0.012f, y + 0.1f, z - 0.012f},
                                                 {x + 0.012f, hall::kCeiling, z + 0.012f}, 0));
    }
    // The ring around the sun.
    model.add("sun_frame", Moved(Rotated(Torus(hall::kSunRadius + 0.1f, 0.1f, 96, 16), {90, 0, 0}),
                                 hall::kSunCentre));
    return model;
}

namespace {

ObjModel arches(int first) {
    ObjModel model;
    for (int bay = first; bay < 4; bay += 2) {
        for (std::size_t i = 0; i < hall::kArchRadii.size(); ++i) {
            const std::vector<Vec3> path = CurvePoints(72, Path::Open, [&](float t) {
                return hall::archPoint(hall::kBayZ[bay], hall::kArchRadii[i], t);
            });
            model.add(numbered("arch", bay * 3 + static_cast<int>(i)),
                      Tube(path, Path::Open, 0.045f, 12));
        }
    }
    return model;
}

}  // namespace

ObjModel hallArchesRose() {
    return arches(0);
}

ObjModel hallArchesBlue() {
    return arches(1);
}

// All windows show one picture, as one wide view that goes on from bay to bay.
ObjModel hallWindows() {
    ObjModel model;
    for (int bay = 0; bay < 4; ++bay) {
        const float height = hall::kWindowHigh - hall::kWindowLow;
        Mesh pane = Panel(2 * hall::kWindowHalfWidth, height);
        for (MeshVertex& vertex : pane.vertices) {
            vertex.uv.x = (vertex.uv.x * 0.6f + 0.2f + static_cast<float>(bay)) / 4;
        }
        model.add(
            numbered("pane", bay),
            Moved(Rotated(pane, {0, 270, 0}),
                  {hall::kWindowX, (hall::kWindowLow + hall::kWindowHigh) / 2, hall::kBayZ[bay]}));
    }
    return model;
}

ObjModel hallSun() {
    ObjModel model;
    model.add("sun", Moved(disc(hall::kSunRadius, 96), hall::kSunCentre));
    return model;
}

ObjModel hallStrips() {
    ObjModel model;
    int number = 0;
    for (const float x : {-hall::kStripX, hall::kStripX}) {
        for (const float bay : hall::kBayZ) {
            model.add(numbered("strip", number++),
                      boxBetween({x - 0.11f, hall::kStripY, bay - 1.55f},
                                 {x + 0.11f, hall::kCeiling, bay + 1.55f}, 0.03f));
        }
    }
    return model;
}

ObjModel hallLamps() {
    ObjModel model;
    for (int i = 0; i < 4; ++i) {
        model.add(numbered("globe", i), Moved(Sphere(0.17f, 32, 16), hall::kGlobes[i]));
    }
    return model;
}

}  // namespace models
