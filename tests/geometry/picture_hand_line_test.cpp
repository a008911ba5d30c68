#include <GL/glew.h>
#include <gmock/gmock.h>

#include <cmath>

#include "geometry/geometry_node_hand_line.h"
#include "geometry/geometry_node_kinect_model.h"
#include "geometry/material_node.h"
#include "support/geometry_fixture.h"
#include "support/graph_fixture.h"
#include "support/puppet_files.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// The spans of the table, in thousandths of a second.
constexpr int kSpans[8][2] = {{171679, 173046}, {175746, 177146}, {179246, 181546},
                              {183146, 184847}, {188626, 190426}, {191526, 192926},
                              {194193, 195093}, {197127, 198661}};

// Hundredths of a second in the spans [from, to), of the minute that begins 150 seconds in.
std::vector<int> HundredthsIn(int from, int to) {
    std::vector<int> result;
    for (int hundredth = 15001; hundredth <= 21000; ++hundredth) {
        for (int span = from; span < to; ++span) {
            const bool inside =
                kSpans[span][0] <= hundredth * 10 && hundredth * 10 <= kSpans[span][1];
            if (inside) result.push_back(hundredth);
        }
    }
    return result;
}

// The left hand of the capture, which the model calls right, is at (seconds, 2, -3).
Skeleton WavingHand(double seconds) {
    Skeleton skeleton{};
    const auto x = static_cast<float>(seconds);
    skeleton[kHandLeft] = {x, 2.1f, -3};
    skeleton[kHandTipLeft] = {x, 1.9f, -3};
    return skeleton;
}

std::vector<MeshVertex> Uploaded(const GeometryObject& object) {
    GLint bytes = 0;
    glBindBuffer(GL_ARRAY_BUFFER, object.vertexBuffer);
    glGetBufferParameteriv(GL_ARRAY_BUFFER, GL_BUFFER_SIZE, &bytes);
    std::vector<MeshVertex> vertices(static_cast<std::size_t>(bytes) / sizeof(MeshVertex));
    glGetBufferSubData(GL_ARRAY_BUFFER, 0, bytes, vertices.data());
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    return vertices;
}

class HandLineTest : public GraphTest {
  protected:
    HandLineTest() : line_(add<GeometryNode_HandLine>("line")) {}

    GeometryNode_KinectModel& addPuppet(const std::string& id,
                                        std::initializer_list<const char*> objects) {
        auto& puppet = add<GeometryNode_KinectModel>(id);
        puppet.smoothing = "0";
        puppet.startTime = "-150";
        puppet.kinectFile = WriteCapture(folder_, id + ".cap", CaptureOf(1800, WavingHand));
        puppet.modelFile = WriteModel(folder_, id + ".obj", objects);
        return puppet;
    }
    GeometryNode_KinectModel& linkPuppet() {
        auto& puppet = addPuppet("puppet", {"HEAD", "RIGHT_HAND"});
        link(puppet, line_, 1);
        return puppet;
    }
    void choose(const std::string& from, const std::string& to) {
        line_.from = from;
        line_.to = to;
    }
    void runFrame(float timeSeconds) {
        engine.update(timeSeconds);
        EXPECT_TRUE(line_.pull());
    }
    const GeometryObject& object() const { return line_.objects.at(0); }

    TempFolder folder_;
    GeometryNode_HandLine& line_;
};

TEST_F(HandLineTest, DeclaresItsInputsAndParameters) {
    EXPECT_THAT(ParameterTable(engine, line_), ElementsAre("From text ''", "To text ''"));
    EXPECT_THAT(line_.inputNames, ElementsAre("Material", "Puppet"));
    EXPECT_EQ(line_.getType(), 2);
}

TEST_F(HandLineTest, TakesAMaterialAndAPuppetOnly) {
    const auto& puppet = add<GeometryNode_KinectModel>("puppet");
    const auto& material = add<MaterialNode>("material");
    const auto& geometry = add<GeometrySource>("geometry");
    EXPECT_TRUE(line_.canConnect(0, &material));
    EXPECT_FALSE(line_.canConnect(0, &puppet));
    EXPECT_FALSE(line_.canConnect(0, nullptr));
    EXPECT_TRUE(line_.canConnect(1, &puppet));
    EXPECT_FALSE(line_.canConnect(1, &geometry));
    EXPECT_FALSE(line_.canConnect(1, &material));
    EXPECT_FALSE(line_.canConnect(1, nullptr));
    EXPECT_FALSE(line_.canConnect(2, &puppet));
    EXPECT_FALSE(line_.canConnect(2, &material));
}

TEST_F(HandLineTest, SamplesTheChosenSpans) {
    linkPuppet();
    const std::size_t counts[8] = {137, 140, 230, 170, 180, 140, 90, 154};
    std::size_t all = 0;
    for (int span = 0; span < 8; ++span) {
        choose(std::to_string(span), std::to_string(span + 1));
        runFrame(0);
        EXPECT_THAT(line_.growth, SizeIs(counts[span])) << span;
        all += counts[span];
    }
    choose("0", "8");
    runFrame(0);
    EXPECT_THAT(line_.growth, SizeIs(all));
    EXPECT_THAT(Uploaded(object()), SizeIs(all * 6));
}

TEST_F(HandLineTest, CountsItsSamplesByTheirTimes) {
    linkPuppet();
    choose("1", "4");
    runFrame(0);
    const std::vector<int> expected = HundredthsIn(1, 4);
    ASSERT_THAT(line_.growth, SizeIs(expected.size()));
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_FLOAT_EQ(line_.growth[i].timeSeconds, static_cast<float>(expected[i] / 100.0));
        EXPECT_EQ(line_.growth[i].sampleCount, static_cast<int>(i) + 1);
    }
}

TEST_F(HandLineTest, SamplesNoMoreThanAMinute) {
    linkPuppet().startTime = "-120";
    choose("0", "8");
    runFrame(0);
    // 171.679 to 173.046, 175.746 to 177.146, and of the span from 179.246 what lies before 180.
    ASSERT_FALSE(line_.growth.empty());
    EXPECT_EQ(line_.growth.size(), 137u + 140u + 76u);
    EXPECT_EQ(line_.growth.back().timeSeconds, 180.0f);
}

TEST_F(HandLineTest, IncludesBothEndsOfASpan) {
    auto& puppet = linkPuppet();
    choose("0", "1");
    puppet.startTime = "-171.669";  // the first sample is at the start of the span
    runFrame(0);
    EXPECT_FLOAT_EQ(line_.growth.at(0).timeSeconds, 171.679f);
    puppet.startTime = "-173.036";  // and here at its end
    runFrame(0);
    ASSERT_THAT(line_.growth, SizeIs(1));
    EXPECT_FLOAT_EQ(line_.growth[0].timeSeconds, 173.046f);
}

TEST_F(HandLineTest, DrawsASquareAroundEachPlaceOfTheHand) {
    linkPuppet();
    choose("6", "8");
    runFrame(0);
    const std::vector<MeshVertex> vertices = Uploaded(object());
    const std::vector<int> times = HundredthsIn(6, 8);
    ASSERT_EQ(vertices.size(), times.size() * 6);
    const float corners[6][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 0}, {1, 1}, {0, 1}};
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const MeshVertex& vertex = vertices[i];
        const float u = corners[i % 6][0], v = corners[i % 6][1];
        const double x = times[i / 6] / 100.0 - 150 + (u > 0 ? 0.01 : -0.01);
        // The clock's single seconds are good to 2e-5 at 200.
        EXPECT_NEAR(static_cast<double>(vertex.position.x), x, 5e-5);
        EXPECT_FLOAT_EQ(vertex.position.y, v > 0 ? 1.99f : 2.01f);
        EXPECT_FLOAT_EQ(vertex.position.z, -3);
        EXPECT_EQ(vertex.uv.x, u);
        EXPECT_EQ(vertex.uv.y, v);
        EXPECT_EQ(vertex.normal.x, 0);
        EXPECT_EQ(vertex.normal.y, 0);
        EXPECT_EQ(vertex.normal.z, 1);
    }
}

TEST_F(HandLineTest, FollowsThePuppetsSpeedAndOffset) {
    auto& puppet = linkPuppet();
    puppet.playerSpeed = 0.5f;
    puppet.timeOffset = 90;
    choose("0", "1");
    runFrame(0);
    const double x = static_cast<double>(Uploaded(object()).at(2).position.x) - 0.01;
    EXPECT_NEAR(x, 171.68 * 0.5 + 90 - 150, 5e-5);
}

TEST_F(HandLineTest, GrowsWithTheDemosClock) {
    linkPuppet();
    choose("0", "2");
    runFrame(171);
    EXPECT_EQ(object().vertexCount, 0);
    runFrame(171.685f);
    EXPECT_EQ(object().vertexCount, 6);
    runFrame(172.685f);
    EXPECT_EQ(object().vertexCount, 101 * 6);
    runFrame(174);
    EXPECT_EQ(object().vertexCount, 137 * 6);
    runFrame(500);
    EXPECT_EQ(object().vertexCount, 277 * 6);
    runFrame(171);
    EXPECT_EQ(object().vertexCount, 0);
}

TEST_F(HandLineTest, ReachesASampleOnlyAfterItsTime) {
    linkPuppet();
    choose("0", "1");
    runFrame(0);
    const float first = line_.growth.at(0).timeSeconds;
    runFrame(first);
    EXPECT_EQ(object().vertexCount, 0);
    runFrame(std::nextafter(first, 1000.0f));
    EXPECT_EQ(object().vertexCount, 6);
}

TEST_F(HandLineTest, IsEmptyWhenFromEqualsTo) {
    linkPuppet();
    choose("3", "3");
    runFrame(200);
    EXPECT_THAT(line_.growth, IsEmpty());
    ASSERT_THAT(line_.objects, SizeIs(1));
    EXPECT_EQ(object().vertexCount, 0);
}

TEST_F(HandLineTest, TakesNoSpanThatTheTableLacks) {
    linkPuppet();
    choose("-5", "1");
    runFrame(0);
    EXPECT_THAT(line_.growth, SizeIs(137));
    choose("7", "99999999999");
    runFrame(0);
    EXPECT_THAT(line_.growth, SizeIs(154));
    for (const auto& [from, to] :
         {std::pair("9", "20"), std::pair("5", "2"), std::pair("x", "y")}) {
        choose(from, to);
        runFrame(0);
        EXPECT_THAT(line_.growth, IsEmpty()) << from;
    }
}

TEST_F(HandLineTest, HasNoSamplesAndNoPlaceWithoutAPuppet) {
    choose("0", "8");
    runFrame(200);
    EXPECT_EQ(line_.puppet, nullptr);
    EXPECT_THAT(line_.growth, IsEmpty());
    EXPECT_EQ(object().vertexCount, 0);
    EXPECT_EQ(line_.transform[0], 1);
    EXPECT_EQ(line_.transform[12], 0);
}

TEST_F(HandLineTest, HasNoSamplesWithoutARightHand) {
    auto& puppet = addPuppet("puppet", {"HEAD", "LEFT_HAND"});
    link(puppet, line_, 1);
    choose("0", "8");
    runFrame(200);
    EXPECT_EQ(line_.puppet, &puppet);
    EXPECT_THAT(line_.growth, IsEmpty());
}

TEST_F(HandLineTest, StaysWithThePuppet) {
    auto& puppet = linkPuppet();
    puppet.translate = {1, 2, 3};
    puppet.rotate = {40, 50, 60};
    puppet.scale = 3;
    runFrame(0);
    Mat4 expected;
    Mat4ComposeTRS(expected, {1, 2, 3}, {40, 50, 60}, 3);
    for (int i = 0; i < 16; ++i) EXPECT_EQ(line_.transform[i], expected[i]) << i;
    for (int i = 0; i < 16; ++i) EXPECT_EQ(object().transform[i], Mat4{}[i]) << i;
}

TEST_F(HandLineTest, WearsItsMaterial) {
    linkPuppet();
    runFrame(0);
    EXPECT_EQ(object().material, nullptr);
    const auto& material = add<MaterialNode>("material");
    link(material, line_, 0);
    runFrame(0);
    EXPECT_EQ(object().material, material.data);
    engine.disconnect("line", 0);
    runFrame(0);
    EXPECT_EQ(object().material, nullptr);
}

TEST_F(HandLineTest, KeepsItsMeshWhileNothingChanges) {
    auto& puppet = linkPuppet();
    choose("0", "1");
    runFrame(0);
    const auto buffers = object().buffers;
    puppet.translate.x = 5;
    runFrame(1);
    EXPECT_EQ(object().buffers, buffers);
    choose("0", "2");
    runFrame(2);
    EXPECT_NE(object().buffers, buffers);
}

TEST_F(HandLineTest, LosesItsSamplesWithThePuppet) {
    linkPuppet();
    choose("0", "1");
    runFrame(200);
    EXPECT_EQ(object().vertexCount, 137 * 6);
    engine.deleteNode("puppet");
    runFrame(200);
    EXPECT_EQ(line_.puppet, nullptr);
    EXPECT_EQ(object().vertexCount, 0);
}

// The new one may lie where the deleted one lay.
TEST_F(HandLineTest, TellsANewPuppetFromADeletedOne) {
    linkPuppet();
    choose("0", "1");
    runFrame(200);
    for (int i = 0; i < 20; ++i) {
        const std::string id = "other" + std::to_string(i);
        engine.deleteNode(i == 0 ? "puppet" : "other" + std::to_string(i - 1));
        auto& other = addPuppet(id, {i % 2 == 0 ? "HEAD" : "RIGHT_HAND"});
        link(other, line_, 1);
        runFrame(200);
        EXPECT_EQ(line_.growth.size(), i % 2 == 0 ? 0u : 137u) << i;
    }
}

TEST_F(HandLineTest, IsBuiltAnewForACaptureThatComesLater) {
    auto& puppet = linkPuppet();
    const std::string capture = puppet.kinectFile;
    puppet.kinectFile = "";
    choose("0", "1");
    runFrame(200);
    puppet.kinectFile = capture;
    runFrame(200);
    EXPECT_NEAR(static_cast<double>(Uploaded(object()).at(2).position.x), 21.69, 5e-5);
}

}  // namespace
