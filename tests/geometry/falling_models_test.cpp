#include "geometry/geometry_node_falling_models.h"

#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "core/engine.h"
#include "core/random.h"
#include "geometry/material_node.h"
#include "support/parameter_table.h"

namespace {

using testing::ElementsAre;

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

// Offers two objects with made-up buffers.
class ModelNode : public GeometryNode {
  public:
    ModelNode(Engine* owner, const std::string& nodeId) : GeometryNode(owner, nodeId) {
        GeometryObject object;
        object.vertexArray = 7;
        object.vertexBuffer = 9;
        object.vertexCount = 36;
        object.name = "a name that is too long to be kept without an allocation";
        object.material = std::make_shared<MaterialData>();
        object.buffers = std::make_shared<int>(0);
        AppendObject(object);
        object.name = "second";
        AppendObject(object);
    }
    bool canConnect(int, const Node*) const override { return false; }
    bool process() override { return true; }
};

// An engine without built-in types, a model and the node that repeats it. No OpenGL is needed.
class FallingModelsTest : public testing::Test {
  protected:
    FallingModelsTest() : engine({}, nullptr) {
        model = add<ModelNode>("model");
        falling = add<GeometryNode_FallingModels>("falling");
        engine.time = 0.0f;
    }

    template <typename NodeClass>
    NodeClass* add(const std::string& id) {
        auto node = std::make_unique<NodeClass>(&engine, id);
        NodeClass* const result = node.get();
        EXPECT_TRUE(engine.addNode(id, std::move(node)));
        return result;
    }
    void link() { ASSERT_TRUE(engine.connect("model", "falling", 0)); }
    void run(float timeSeconds) {
        engine.time = timeSeconds;
        EXPECT_TRUE(falling->process());
    }

    Engine engine;
    ModelNode* model;
    GeometryNode_FallingModels* falling;
};

using Matrix = std::array<double, 16>;

Matrix InDouble(const Mat4& matrix) {
    Matrix result;
    for (int i = 0; i < 16; ++i) result[static_cast<std::size_t>(i)] = double{matrix[i]};
    return result;
}

Matrix Product(const Matrix& left, const Matrix& right) {
    Matrix result = {};
    for (std::size_t c = 0; c < 4; ++c) {
        for (std::size_t r = 0; r < 4; ++r) {
            for (std::size_t k = 0; k < 4; ++k) {
                result[c * 4 + r] += left[k * 4 + r] * right[c * 4 + k];
            }
        }
    }
    return result;
}

// What a copy's matrix is by the formula; only the argument of the remainder is rounded to single
// precision, since a remainder may jump.
Matrix ExpectedTransform(const GeometryNode_FallingModels& node, std::size_t index, double speed,
                         double time, const ModelNode& model) {
    const auto& d = node.drops[index];
    const auto age = static_cast<float>(speed * time + double{d.phase} - double{node.timeOffset});
    const double base = std::fmod(double{age}, double{node.timeAlive});
    const double s = std::min(base * base, 1.0);
    const double area = double{node.area};
    const Matrix place = {1,          0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, area * d.x, -base * base,
                          area * d.z, 1};
    const Matrix grow = {s, 0, 0, 0, 0, s, 0, 0, 0, 0, s, 0, 0, 0, 0, 1};
    return Product(
        Product(Product(place, InDouble(model.objects[0].transform)), InDouble(model.transform)),
        grow);
}

}  // namespace

TEST_F(FallingModelsTest, DeclaresItsParametersInOrder) {
    const auto values = engine.valuesOf(falling);
    std::vector<std::string> names;
    for (const Value_Object* value : values) names.push_back(value->name);
    EXPECT_THAT(names, ElementsAre("Count", "Speed", "Time Offset", "Time Alive", "Area",
                                   "Translate.X", "Translate.Y", "Translate.Z", "Rotate.X",
                                   "Rotate.Y", "Rotate.Z", "Scale"));
    EXPECT_EQ(dynamic_cast<const ValueString&>(*values[0]).defaultValue, "32");
    EXPECT_EQ(dynamic_cast<const ValueString&>(*values[1]).defaultValue, "1.0");
    struct Range {
        float min, max, defaultValue;
    };
    constexpr Range kRanges[] = {{-10, 10, 0}, {0, 10, 10}, {0, 50, 10}, {-20, 20, 0}, {-20, 20, 0},
                                 {-20, 20, 0}, {0, 360, 0}, {0, 360, 0}, {0, 360, 0},  {0, 10, 1}};
    for (std::size_t i = 0; i < std::size(kRanges); ++i) {
        const auto& value = dynamic_cast<const ValueFloat&>(*values[i + 2]);
        EXPECT_EQ(value.min, kRanges[i].min) << value.name;
        EXPECT_EQ(value.max, kRanges[i].max) << value.name;
        EXPECT_EQ(value.defaultValue, kRanges[i].defaultValue) << value.name;
        EXPECT_EQ(*value.data, kRanges[i].defaultValue) << value.name;
        EXPECT_EQ(value.decimals, 2) << value.name;
        EXPECT_TRUE(value.animatable) << value.name;
    }
    EXPECT_EQ(falling->count, "32");
    EXPECT_EQ(falling->speed, "1.0");
}

TEST_F(FallingModelsTest, BindsEachParameterToItsMember) {
    const auto floatAt = [&](const char* name) { return FloatMember(engine, *falling, name); };
    EXPECT_EQ(floatAt("Time Offset"), &falling->timeOffset);
    EXPECT_EQ(floatAt("Time Alive"), &falling->timeAlive);
    EXPECT_EQ(floatAt("Area"), &falling->area);
    EXPECT_EQ(floatAt("Translate.Z"), &falling->translate.z);
    EXPECT_EQ(floatAt("Rotate.Y"), &falling->rotate.y);
    EXPECT_EQ(floatAt("Scale"), &falling->scale);
}

TEST_F(FallingModelsTest, TakesGeometryOnly) {
    EXPECT_EQ(falling->getType(), kGeometryNode);
    EXPECT_EQ(falling->inputCount, 1);
    EXPECT_EQ(falling->getInputName(0), "Model");
    EXPECT_TRUE(falling->canConnect(0, model));
    EXPECT_FALSE(falling->canConnect(0, nullptr));
    const MaterialNode material(&engine, "material");
    EXPECT_FALSE(falling->canConnect(0, &material));
}

TEST_F(FallingModelsTest, ScattersItsDropsInTheSameWayEverywhere) {
    run(0);
    ASSERT_EQ(falling->drops.size(), 32u);
    const auto expectDrop = [&](std::size_t index, int x, int z, int phase, int size) {
        const auto& drop = falling->drops[index];
        // The numbers of the generator, taken apart by hand; one rounding more than here each.
        EXPECT_NEAR(drop.x, x / 1000.0, 1e-7) << index;
        EXPECT_EQ(drop.y, 0.0f) << index;
        EXPECT_NEAR(drop.z, z / 1000.0, 1e-7) << index;
        EXPECT_NEAR(drop.phase, phase / 10000.0 * 10, 1e-6) << index;
        EXPECT_EQ(drop.size, static_cast<float>(size / 1000.0)) << index;
    };
    expectDrop(0, -677, 473, 231, 366);
    expectDrop(1, 561, -820, 7414, 895);
    expectDrop(2, 42, -986, 6657, 809);
    expectDrop(31, 515, -416, 4955, 250);
}

TEST_F(FallingModelsTest, KeepsDropsWithinTheirRanges) {
    falling->count = "5000";
    run(0);
    ASSERT_EQ(falling->drops.size(), 5000u);
    for (const auto& drop : falling->drops) {
        EXPECT_GT(drop.x, -1.0f);
        EXPECT_LE(drop.x, 1.0f);
        EXPECT_EQ(drop.y, 0.0f);
        EXPECT_GT(drop.z, -1.0f);
        EXPECT_LE(drop.z, 1.0f);
        EXPECT_GE(drop.phase, 0.0f);
        EXPECT_LT(drop.phase, 10.0f);
        EXPECT_GE(drop.size, 0.0f);
        EXPECT_LT(drop.size, 1.0f);
    }
}

TEST_F(FallingModelsTest, LeavesTheGeneratorAtItsSeed) {
    for (const char* count : {"32", "32", "1"}) {
        falling->count = count;
        Random::seed(1);
        run(0);
        EXPECT_EQ(Random::next(), 16366);
        EXPECT_EQ(Random::next(), 10231);
    }
}

TEST_F(FallingModelsTest, RefillsOnNewCountOrSpeedOnly) {
    run(0);
    const float phase = falling->drops[0].phase;
    falling->timeAlive = 5;
    run(1);
    EXPECT_EQ(falling->drops[0].phase, phase) << "the lifetime alone changes nothing";
    falling->speed = "2";
    run(1);
    EXPECT_FLOAT_EQ(falling->drops[0].phase, phase / 2);
    falling->timeAlive = 10;
    run(1);
    EXPECT_FLOAT_EQ(falling->drops[0].phase, phase / 2);
    falling->count = "33";
    run(1);
    EXPECT_EQ(falling->drops.size(), 33u);
    EXPECT_EQ(falling->drops[0].phase, phase);
    falling->timeAlive = 5;
    falling->count = " 33 copies";
    run(1);
    EXPECT_EQ(falling->drops[0].phase, phase) << "the same number in other words";
}

TEST_F(FallingModelsTest, RepeatsTheFirstObjectWithItsBuffersAndItsMaterial) {
    link();
    run(3);
    ASSERT_EQ(falling->objects.size(), 32u);
    const GeometryObject& first = model->objects[0];
    for (const GeometryObject& copy : falling->objects) {
        EXPECT_EQ(copy.vertexArray, first.vertexArray);
        EXPECT_EQ(copy.vertexBuffer, first.vertexBuffer);
        EXPECT_EQ(copy.vertexCount, first.vertexCount);
        EXPECT_EQ(copy.name, first.name);
        EXPECT_EQ(copy.material, first.material);
        EXPECT_EQ(copy.buffers, first.buffers);
    }
    EXPECT_EQ(falling->material, nullptr);
}

TEST_F(FallingModelsTest, PlacesCopiesAsTheFormulaInDoublePrecision) {
    link();
    Mat4ComposeTRS(model->objects[0].transform, {1, -2, 3}, {10, 20, 30}, 1.5f);
    Mat4ComposeTRS(model->transform, {-0.5f, 0.25f, 4}, {200, 40, 5}, 0.75f);
    falling->area = 17.5f;
    const struct {
        const char* text;
        double speed;
        float time, offset, alive;
    } settings[] = {{"1.0", 1, 0, 0, 10},     {"1.0", 1, 12.34f, 0, 10},
                    {"2.5", 2.5, 100, -3, 7}, {"0.1", 0.1, 3.3f, 9.75f, 0.5f},
                    {"-1", -1, 55, 1, 2.5f},  {"text", 0, 55, 1, 2.5f}};
    for (const auto& s : settings) {
        SCOPED_TRACE(testing::Message() << "speed " << s.text << " time " << s.time);
        falling->speed = s.text;
        falling->timeOffset = s.offset;
        falling->timeAlive = s.alive;
        run(s.time);
        ASSERT_EQ(falling->objects.size(), 32u);
        for (std::size_t i = 0; i < 32; ++i) {
            const Matrix expected = ExpectedTransform(*falling, i, s.speed, double{s.time}, *model);
            for (int e = 0; e < 16; ++e) {
                // Three products in single precision of numbers up to 100.
                EXPECT_NEAR(falling->objects[i].transform[e], expected[static_cast<std::size_t>(e)],
                            3e-5)
                    << "copy " << i << " element " << e;
            }
        }
    }
}

TEST_F(FallingModelsTest, GrowsWithTheSquareOfItsAgeInTheFirstSecond) {
    link();
    run(0);
    // The first drop's phase is 0.231 seconds.
    const auto& matrix = falling->objects[0].transform;
    EXPECT_NEAR(matrix[0], 0.231 * 0.231, 1e-7) << "the phase is rounded";
    EXPECT_NEAR(matrix[13], -0.231 * 0.231, 1e-7);
    EXPECT_NEAR(matrix[12], -6.77, 1e-6);
    EXPECT_NEAR(matrix[14], 4.73, 1e-6);
    run(0.5f);
    EXPECT_NEAR(matrix[0], 0.731 * 0.731, 2e-7);
    run(0.9f);
    EXPECT_EQ(matrix[0], 1.0f) << "full size after a second";
    EXPECT_NEAR(matrix[13], -1.131 * 1.131, 1e-6);
    run(9.7f);
    EXPECT_NEAR(matrix[13], -9.931 * 9.931, 1e-4);
    run(9.8f);
    EXPECT_NEAR(matrix[13], -0.031 * 0.031, 1e-6) << "a new life";
}

TEST_F(FallingModelsTest, RisesInMirrorImageBeforeItsBegin) {
    link();
    falling->timeOffset = 1;
    run(0);
    // Age -0.769 of the first drop: small again, and as far down as at 0.769.
    const auto& matrix = falling->objects[0].transform;
    EXPECT_NEAR(matrix[0], 0.769 * 0.769, 1e-6);
    EXPECT_NEAR(matrix[13], -0.769 * 0.769, 1e-6);
    run(0.1f);
    EXPECT_NEAR(matrix[13], -0.669 * 0.669, 1e-6) << "it rises";
}

TEST_F(FallingModelsTest, IsTheSameForATimeHoweverItIsReached) {
    link();
    run(7.25f);
    const Mat4 straight = falling->objects[5].transform;
    for (int frame = 0; frame < 100; ++frame) run(static_cast<float>(frame) / 3);
    run(7.25f);
    for (int e = 0; e < 16; ++e) EXPECT_EQ(falling->objects[5].transform[e], straight[e]);
}

TEST_F(FallingModelsTest, HasItsOwnMatrix) {
    falling->translate = {1, 2, 3};
    falling->rotate = {30, 60, 90};
    falling->scale = 2;
    run(0);
    Mat4 expected;
    Mat4ComposeTRS(expected, {1, 2, 3}, {30, 60, 90}, 2);
    for (int e = 0; e < 16; ++e) EXPECT_EQ(falling->transform[e], expected[e]);
}

TEST_F(FallingModelsTest, OffersNothingWithoutAModel) {
    run(0);
    EXPECT_TRUE(falling->objects.empty());
    EXPECT_FALSE(falling->hasError);
    link();
    run(0);
    EXPECT_EQ(falling->objects.size(), 32u);
    model->ClearObjects();
    run(0);
    EXPECT_TRUE(falling->objects.empty());
    EXPECT_FALSE(falling->hasError);
}

TEST_F(FallingModelsTest, LetsGoOfTheModelWhenTheLinkIsCut) {
    link();
    run(0);
    const std::weak_ptr<const void> buffers = model->objects[0].buffers;
    ASSERT_TRUE(engine.deleteNode("model"));
    EXPECT_FALSE(buffers.expired()) << "copies keep the buffers that they draw";
    run(1);
    EXPECT_TRUE(falling->objects.empty());
    EXPECT_TRUE(buffers.expired());
}

TEST_F(FallingModelsTest, FindsNothingToRepeatInItself) {
    link();
    run(0);
    ASSERT_EQ(falling->objects.size(), 32u);
    engine.disconnect("falling", 0);
    ASSERT_TRUE(engine.connect("falling", "falling", 0));
    run(1);
    EXPECT_TRUE(falling->objects.empty()) << "its own copies of the frame before";
}

TEST_F(FallingModelsTest, DoesNothingWhileRenderingIsOff) {
    link();
    run(1);
    engine.renderEnabled = 0;
    falling->count = "3";
    falling->translate = {5, 5, 5};
    Random::seed(1);
    run(2);
    EXPECT_EQ(falling->objects.size(), 32u);
    EXPECT_EQ(falling->drops.size(), 32u);
    EXPECT_EQ(falling->transform[12], 0.0f);
    EXPECT_EQ(Random::next(), 41) << "the first number of seed 1";
}

TEST_F(FallingModelsTest, GivesNotANumberForALifetimeOfNothing) {
    link();
    falling->timeAlive = 0;
    run(1);
    ASSERT_EQ(falling->objects.size(), 32u);
    EXPECT_TRUE(std::isnan(falling->objects[0].transform[13]));
    falling->timeAlive = 10;
    falling->speed = "1";
    run(1);
    EXPECT_FALSE(std::isnan(falling->objects[0].transform[13])) << "and recovers";
}

TEST_F(FallingModelsTest, LivesWithParametersThatAreNoNumbers) {
    link();
    for (const float odd : {kNan, kInfinity, -kInfinity, 3e38f, -3e38f, -0.0f}) {
        for (float* member : {&falling->timeOffset, &falling->timeAlive, &falling->area,
                              &falling->translate.x, &falling->rotate.y, &falling->scale}) {
            const float before = *member;
            *member = odd;
            run(1);
            EXPECT_EQ(falling->objects.size(), 32u);
            *member = before;
        }
        run(odd);
        EXPECT_EQ(falling->objects.size(), 32u);
    }
    for (const char* text : {"", "nan", "inf", "1e999", "-1e999", "0x", "x"}) {
        falling->speed = text;
        run(1);
        EXPECT_EQ(falling->objects.size(), 32u);
    }
}

TEST_F(FallingModelsTest, MakesNoCopiesForACountThatIsNone) {
    link();
    for (const char* count : {"0", "-1", "-2147483648", "-99999999999999999999", "", "many"}) {
        falling->count = "4";
        run(0);
        falling->count = count;
        run(0);
        EXPECT_TRUE(falling->drops.empty()) << count;
        EXPECT_TRUE(falling->objects.empty()) << count;
    }
}

TEST_F(FallingModelsTest, LimitsHugeCounts) {
    for (const char* count : {"100001", "2147483647", "4294967296", "99999999999999999999"}) {
        falling->count = count;
        run(0);
        EXPECT_EQ(falling->drops.size(), std::size_t{GeometryNode_FallingModels::kMaxCount});
    }
    const auto* const place = falling->drops.data();
    falling->drops[0].size = 5;
    run(1);
    EXPECT_EQ(falling->drops.data(), place);
    EXPECT_EQ(falling->drops[0].size, 5.0f) << "filled anew in each frame";
}

TEST_F(FallingModelsTest, NeedsNoNewMemoryFromFrameToFrame) {
    link();
    run(0);
    const GeometryObject* const objects = falling->objects.data();
    const char* const name = falling->objects[31].name.data();
    for (int frame = 1; frame < 50; ++frame) run(static_cast<float>(frame));
    EXPECT_EQ(falling->objects.data(), objects);
    EXPECT_EQ(falling->objects[31].name.data(), name);
}
