#include "demo/tool/stage_model.h"

#include "demo/tool/model_file.h"
#include "demo/tool/puppet_mesh.h"

namespace {

using namespace puppet;
using dance::turned;

constexpr int kColumns = 20;
constexpr double kColumnsAway = 6.2;
constexpr double kHalfHeight = 1.65, kFoot = 0.12;

// Stands what is built around (0, 0, 0) to its place in the circle, its front to the middle.
void standInCircle(Mesh& mesh, int column, double away) {
    const double angle = 2 * std::numbers::pi * (column + 0.5) / kColumns;
    mesh.setPlacement([=](const Point& p) {
        return turned(p + Point{0, kHalfHeight + kFoot, -away}, {0, 1, 0}, angle);
    });
}

// A ring of light on a circle at some height.
Mesh ringOf(double radius, double height, double thickness) {
    Mesh mesh;
    mesh.addBelt(Profile({{height - 1, radius, radius}, {height + 1, radius, radius}}), height,
                 thickness, 72);
    return mesh;
}

}  // namespace

std::string StageLightsObj() {
    ObjWriter writer;
    for (int i = 0; i < kColumns; ++i) {
        Mesh mesh;
        standInCircle(mesh, i, kColumnsAway);
        for (const double aside : {-0.30, 0.30}) {
            mesh.addPanel({aside, 0, 0}, {0.035, kHalfHeight, 0.02}, 0.01);
        }
        writer.add("COLUMN_" + std::to_string(i), mesh, 1);
    }
    writer.add("FLOOR_RING", ringOf(2.3, 0.012, 0.014), 1);
    writer.add("OUTER_RING", ringOf(5.3, 0.02, 0.025), 1);
    writer.add("CEILING_RING", ringOf(2.4, 3.7, 0.045), 1);
    return writer.text();
}

std::string StageFramesObj() {
    ObjWriter writer;
    for (int i = 0; i < kColumns; ++i) {
        Mesh mesh;
        standInCircle(mesh, i, kColumnsAway + 0.16);
        mesh.addPanel({0, 0, 0}, {0.46, kHalfHeight + 0.1, 0.09}, 0.03);
        for (int slat = -4; slat <= 4; ++slat) {
            mesh.addPanel({0, slat * 0.36, 0.11}, {0.22, 0.13, 0.03}, 0.015);
        }
        writer.add("FRAME_" + std::to_string(i), mesh, 1);
    }
    return writer.text();
}

bool WriteStage(const std::filesystem::path& folder, std::string& error) {
    return WriteModelFile(folder / "stage_lights.obj", StageLightsObj(), error) &&
           WriteModelFile(folder / "stage_frames.obj", StageFramesObj(), error);
}
