// The demo's models, as the program reads them: every one without complaint, whole where it has an
// inside, facing the guest.
#include "models.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <fstream>
#include <iterator>
#include <set>

#include "geometry/read_obj_file.h"
#include "hall_plan.h"
#include "support/mesh_checks.h"
#include "support/temp_folder.h"

namespace {

class DemoModel : public testing::TestWithParam<std::string> {};

struct ReadModel {
    explicit ReadModel(const std::string& name) {
        EXPECT_EQ(ReadObjText(ModelText(name), objects, 0), "");
    }
    ObjObjects objects;
};

// Sheets have one side only; everything else is a body.
bool isSheet(const std::string& model) {
    const std::set<std::string> sheets{"hall_floor.obj", "hall_ceiling.obj", "hall_left.obj",
                                       "hall_right.obj", "hall_ends.obj",    "hall_windows.obj",
                                       "hall_sun.obj"};
    return sheets.contains(model);
}

std::string testName(const testing::TestParamInfo<std::string>& model) {
    std::string name = model.param;
    std::erase_if(name, [](unsigned char c) { return std::isalnum(c) == 0; });
    return name;
}

}  // namespace

TEST_P(DemoModel, IsReadWithoutComplaintAndHasTextureCoordinates) {
    const ReadModel model(GetParam());
    ASSERT_GT(model.objects.size(), 0u);
    for (const auto& [name, vertices] : model.objects) {
        ASSERT_GT(vertices.size(), 0u) << name;
        std::set<std::pair<float, float>> places;
        for (const MeshVertex& vertex : vertices) places.insert({vertex.uv.x, vertex.uv.y});
        EXPECT_GT(places.size(), 2u) << name;
    }
}

TEST_P(DemoModel, IsClosedWhereItHasAnInsideAndFacesOut) {
    const ReadModel model(GetParam());
    for (const auto& [name, vertices] : model.objects) {
        EXPECT_EQ(NormalsFacingIn(vertices), 0u) << name;
        if (isSheet(GetParam())) continue;
        EXPECT_EQ(OpenEdges(vertices), 0u) << name;
        EXPECT_GT(Volume(vertices), 0) << name;
    }
}

TEST_P(DemoModel, HasNormalsOfUnitLength) {
    const ReadModel model(GetParam());
    for (const auto& [name, vertices] : model.objects) {
        for (const MeshVertex& vertex : vertices) {
            const Vec3& n = vertex.normal;
            // Four digits a component are in the file.
            ASSERT_NEAR(n.x * n.x + n.y * n.y + n.z * n.z, 1, 5e-4f) << name;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, DemoModel, testing::ValuesIn(ModelNames()), testName);

TEST(DemoModels, WallsOfTheHallFaceItsMiddle) {
    for (const char* file : {"hall_floor.obj", "hall_ceiling.obj", "hall_left.obj",
                             "hall_right.obj", "hall_ends.obj", "hall_windows.obj"}) {
        const ReadModel model(file);
        for (const auto& [name, vertices] : model.objects) {
            for (const auto& [place, normal, uv] : vertices) {
                EXPECT_LT(place.x * normal.x + place.y * normal.y + place.z * normal.z, 0) << name;
            }
        }
    }
}

TEST(DemoModels, PartsThatShineAloneAreObjectsOfTheirOwn) {
    EXPECT_EQ(ReadModel("hall_strips.obj").objects.size(), 8u);
    EXPECT_EQ(ReadModel("hall_lamps.obj").objects.size(), 4u);
    EXPECT_EQ(ReadModel("hall_arches_rose.obj").objects.size(), 6u);
    EXPECT_EQ(ReadModel("spheres.obj").objects.size(), hall::balls().size());
}

TEST(DemoModels, BallsLieOnTheFloorAndTouchNothing) {
    for (const hall::Ball& ball : hall::balls()) {
        for (const hall::Ball& other : hall::balls()) {
            if (&ball == &other) continue;
            EXPECT_GT(std::hypot(ball.x - other.x, ball.z - other.z), ball.radius + other.radius);
        }
        EXPECT_GT(std::hypot(ball.x, ball.z), hall::kStepRadius + ball.radius);
        EXPECT_LT(hall::openness(ball.x, ball.z), 0.1f);
    }
    EXPECT_GT(hall::openness(0, 9), 0.9f);
}

TEST(DemoModels, LightFallsOffWithDistanceAndOnlyOnTheSideOfTheLamps) {
    const hall::Lighting lighting;
    const auto brightness = [&](const Vec3& place, const Vec3& normal) {
        const pictures::Colour colour = lighting.at(place, normal);
        return colour.r + colour.g + colour.b;
    };
    const float near = brightness({0, 1.7f, -8}, {0, 0, -1});
    EXPECT_GT(near, 2 * brightness({0, 1.7f, -5}, {0, 0, -1}));
    EXPECT_EQ(brightness({0, 9, 0}, {0, 1, 0}), 0);
}

TEST(DemoModels, AreTheSameEachTime) {
    for (const std::string& name : ModelNames()) EXPECT_EQ(ModelText(name), ModelText(name));
}

TEST(DemoModels, AreWrittenUnderTheirNames) {
    const TempFolder folder;
    std::string error;
    ASSERT_TRUE(BuildModels(folder.path(), error)) << error;
    std::ifstream stream(folder.path() / "knot.obj", std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream),
                            std::istreambuf_iterator<char>()};
    EXPECT_EQ(bytes, ModelText("knot.obj"));
    EXPECT_EQ(ModelText("nothing.obj"), "");
}
