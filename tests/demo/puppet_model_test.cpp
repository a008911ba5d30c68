// Reads the puppet and its stage as the program does, and looks at their meshes.
#include "demo/tool/puppet_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <string>
#include <vector>

#include "demo/tool/dance_performance.h"
#include "demo/tool/stage_model.h"
#include "geometry/puppet_pose.h"
#include "geometry/read_obj_file.h"

namespace {

struct Model {
    explicit Model(const std::string& text) { EXPECT_EQ(ReadObjText(text, objects, 0), ""); }
    ObjObjects objects;
};

struct Box {
    Vec3 low{1e9f, 1e9f, 1e9f}, high{-1e9f, -1e9f, -1e9f};
};

Box boxOf(const std::vector<MeshVertex>& vertices) {
    Box box;
    for (const MeshVertex& v : vertices) {
        const Vec3& p = v.position;
        box.low = {std::min(box.low.x, p.x), std::min(box.low.y, p.y), std::min(box.low.z, p.z)};
        box.high = {std::max(box.high.x, p.x), std::max(box.high.y, p.y),
                    std::max(box.high.z, p.z)};
    }
    return box;
}

float dotOf(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Vec3 minus(const Vec3& a, const Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

// Every normal is on the side from which the triangle runs counter-clockwise.
void expectNormalsOutside(const Model& model) {
    for (const auto& [name, vertices] : model.objects) {
        ASSERT_EQ(vertices.size() % 3, 0u);
        for (std::size_t i = 0; i < vertices.size(); i += 3) {
            const Vec3 face = Vec3Cross(minus(vertices[i + 1].position, vertices[i].position),
                                        minus(vertices[i + 2].position, vertices[i].position));
            const float area = std::sqrt(dotOf(face, face));
            if (area < 1e-6f) continue;  // at poles, and what only balances the box
            for (std::size_t corner = i; corner < i + 3; ++corner) {
                ASSERT_GT(dotOf(vertices[corner].normal, face) / area, 0.1f)
                    << name << ", triangle " << i / 3;
            }
        }
    }
}

}  // namespace

TEST(PuppetModel, HasAllFifteenLimbsOnce) {
    std::vector<PuppetLimb> limbs;
    std::size_t index = 0;
    const Model body(PuppetBodyObj());
    for (const auto& [name, vertices] : body.objects) {
        BindLimbs(name, index++, limbs);
    }
    std::set<LimbKind> kinds;
    for (const PuppetLimb& limb : limbs) kinds.insert(limb.kind);
    EXPECT_EQ(index, 15u);
    EXPECT_EQ(limbs.size(), 15u);
    EXPECT_EQ(kinds.size(), 15u);
}

TEST(PuppetModel, LampsHangOnLimbsOfTheBody) {
    const Model body(PuppetBodyObj());
    const Model lamps(PuppetLampsObj());
    for (const auto& lamp : lamps.objects) {
        EXPECT_TRUE(std::any_of(body.objects.begin(), body.objects.end(), [&](const auto& limb) {
            return limb.first == lamp.first;
        })) << lamp.first;
    }
}

TEST(PuppetModel, RecentringMovesNothing) {
    // Numbers in the file are rounded to 0.000005.
    constexpr float kRounding = 1e-5f;
    for (const std::string& text : {PuppetBodyObj(), PuppetLampsObj()}) {
        const Model model(text);
        for (const auto& [name, vertices] : model.objects) {
            const Box box = boxOf(vertices);
            EXPECT_NEAR(box.low.x + box.high.x, 0, 2 * kRounding) << name;
            EXPECT_NEAR(box.low.y + box.high.y, 0, 2 * kRounding) << name;
            EXPECT_NEAR(box.low.z + box.high.z, 0, 2 * kRounding) << name;
        }
    }
}

TEST(PuppetModel, LimbsReachFromJointToJoint) {
    const double scale = static_cast<double>(LimbScale(10));
    const std::vector<std::pair<std::string, double>> bones = {
        {"UPPERARM", dance::bones::kUpperArm},
        {"LOWERARM", dance::bones::kForearm},
        {"UPPERLEG", dance::bones::kThigh},
        {"LOWERLEG", dance::bones::kShin}};
    const Model body(PuppetBodyObj());
    for (const auto& [part, bone] : bones) {
        for (const auto& [name, vertices] : body.objects) {
            if (name.find(part) == std::string::npos) continue;
            const Box box = boxOf(vertices);
            EXPECT_GT(static_cast<double>(box.high.y - box.low.y) * scale, bone) << name;
        }
    }
}

TEST(PuppetModel, HasNormalsOutside) {
    expectNormalsOutside(Model(PuppetBodyObj()));
    expectNormalsOutside(Model(PuppetLampsObj()));
}

TEST(PuppetModel, HasSomeThousandTriangles) {
    std::size_t corners = 0;
    const Model body(PuppetBodyObj());
    for (const auto& [name, vertices] : body.objects) corners += vertices.size();
    EXPECT_GT(corners / 3, 8000u);
    EXPECT_LT(corners / 3, 40000u);
}

TEST(StageModel, ReadsWithoutComplaintWithNormalsOutside) {
    const Model lights(StageLightsObj());
    EXPECT_EQ(lights.objects.size(), 23u);
    expectNormalsOutside(lights);
    const Model frames(StageFramesObj());
    EXPECT_EQ(frames.objects.size(), 20u);
    expectNormalsOutside(frames);
}
