#include <GL/glew.h>
#include <gmock/gmock.h>

#include <cmath>

#include "geometry/geometry_node_kinect_model.h"
#include "platform/debug_output.h"
#include "support/graph_fixture.h"
#include "support/parameter_table.h"
#include "support/puppet_files.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

const Mat4 kIdentity;

// The head stands at (seconds, 2 + seconds, 0), above the neck.
Skeleton WalkingHead(double seconds) {
    Skeleton skeleton = dance::PoseOf({});
    const auto x = static_cast<float>(seconds);
    for (Vec3& place : skeleton) place = {0, 1, 0};
    skeleton[kHead] = {x, 2.5f, 0};
    skeleton[kNeck] = {x, 1.5f, 0};
    return skeleton;
}

std::vector<float> Elements(const Mat4& m) {
    return {m.m, m.m + 16};
}

class KinectModelTest : public GraphTest {
  protected:
    KinectModelTest() : puppet_(add<GeometryNode_KinectModel>("puppet")) {
        puppet_.smoothing = "0";
    }
    void loadModel(std::initializer_list<const char*> objects) {
        puppet_.modelFile = WriteModel(folder_, "model.obj", objects);
    }
    void loadCapture(const std::vector<CaptureFrame>& frames) {
        puppet_.kinectFile = WriteCapture(folder_, "walk.cap", frames);
    }
    void runFrame(float timeSeconds) {
        engine.update(timeSeconds);
        EXPECT_TRUE(puppet_.pull());
    }
    // Where the head stands at a time.
    double headX(float timeSeconds) {
        runFrame(timeSeconds);
        return static_cast<double>(puppet_.objects.at(0).transform[12]);
    }

    TempFolder folder_;
    GeometryNode_KinectModel& puppet_;
};

// Places are sums of a few numbers of up to 10.
constexpr double kRounding = 1e-5;

TEST_F(KinectModelTest, DeclaresItsParameters) {
    auto& fresh = add<GeometryNode_KinectModel>("fresh");
    EXPECT_THAT(
        ParameterTable(engine, fresh),
        ElementsAre("Kinect File text ''", "Model File text ''",
                    "Time Offset float -10 to 10, 3 decimals, 0, animatable",
                    "Player Speed float 0 to 3, 2 decimals, 1, animatable",
                    "Translate.X float -10 to 10, 2 decimals, 0, animatable",
                    "Translate.Y float -10 to 10, 2 decimals, 0, animatable",
                    "Translate.Z float -10 to 10, 2 decimals, 0, animatable",
                    "Rotat-e.X float 0 to 360, 2 decimals, 0, animatable",
                    "Rotat-e.Y float 0 to 360, 2 decimals, 0, animatable",
                    "Rotat-e.Z float 0 to 360, 2 decimals, 0, animatable",
                    "Scale float 0 to 10, 2 decimals, 1, animatable",
                    "Joint Scale float 0 to 20, 2 decimals, 10, animatable", "Smoothing text '0.9'",
                    "Start Time text '0.0'", "off. Head float -2 to 2, 2 decimals, 0, animatable",
                    "off. Torso float -2 to 2, 2 decimals, -0.1, animatable",
                    "off. Shoulder float -2 to 2, 2 decimals, 0, animatable",
                    "off. Hand float -2 to 2, 2 decimals, 0, animatable",
                    "off. Thigh float -2 to 2, 2 decimals, 0, animatable",
                    "off. Knee float -2 to 2, 2 decimals, 0, animatable"));
    EXPECT_EQ(fresh.inputCount, 0);
    EXPECT_EQ(fresh.getType(), 2);
    EXPECT_FALSE(fresh.canConnect(0, &puppet_));
}

TEST_F(KinectModelTest, BindsEachParameterToItsMember) {
    const auto member = [&](const char* name) { return FloatMember(engine, puppet_, name); };
    EXPECT_EQ(member("Time Offset"), &puppet_.timeOffset);
    EXPECT_EQ(member("Player Speed"), &puppet_.playerSpeed);
    EXPECT_EQ(member("Translate.X"), &puppet_.translate.x);
    EXPECT_EQ(member("Rotat-e.X"), &puppet_.rotate.x);
    EXPECT_EQ(member("Scale"), &puppet_.scale);
    EXPECT_EQ(member("Joint Scale"), &puppet_.shape.jointScale);
    EXPECT_EQ(member("off. Head"), &puppet_.shape.headOffset);
    EXPECT_EQ(member("off. Torso"), &puppet_.shape.torsoOffset);
    EXPECT_EQ(member("off. Shoulder"), &puppet_.shape.shoulderOffset);
    EXPECT_EQ(member("off. Hand"), &puppet_.shape.handOffset);
    EXPECT_EQ(member("off. Thigh"), &puppet_.shape.thighOffset);
    EXPECT_EQ(member("off. Knee"), &puppet_.shape.kneeOffset);
}

TEST_F(KinectModelTest, HasNothingToDrawAtFirst) {
    const DebugCapture debug;
    runFrame(0);
    EXPECT_THAT(puppet_.objects, IsEmpty());
    EXPECT_FALSE(puppet_.hasError);
    EXPECT_EQ(debug.text(), "");
}

TEST_F(KinectModelTest, MakesAnObjectOfEachOfTheModel) {
    loadModel({"HEAD", "cape", "LEFT_FOOT_1"});
    runFrame(0);
    ASSERT_THAT(puppet_.objects, SizeIs(3));
    EXPECT_EQ(puppet_.objects[0].name, "HEAD");
    EXPECT_EQ(puppet_.objects[1].name, "cape");
    EXPECT_EQ(puppet_.objects[2].vertexCount, 3);
    EXPECT_THAT(puppet_.limbs, SizeIs(2));
}

TEST_F(KinectModelTest, CentresAndUnwrapsEachObject) {
    loadModel({"HEAD"});
    runFrame(0);
    MeshVertex vertices[3];
    glBindBuffer(GL_ARRAY_BUFFER, puppet_.objects.at(0).vertexBuffer);
    glGetBufferSubData(GL_ARRAY_BUFFER, 0, sizeof vertices, vertices);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    EXPECT_EQ(vertices[0].position.y, -1);
    EXPECT_EQ(vertices[2].position.y, 1);
    EXPECT_EQ(vertices[2].uv.y, 1);
    EXPECT_FLOAT_EQ(vertices[2].uv.x, 0.75f);
}

TEST_F(KinectModelTest, KeepsIdentityMatricesWithoutACapture) {
    loadModel({"HEAD", "cape"});
    runFrame(1);
    for (const GeometryObject& object : puppet_.objects) {
        EXPECT_EQ(Elements(object.transform), Elements(kIdentity));
    }
}

TEST_F(KinectModelTest, PosesTheModelByTheClock) {
    loadModel({"HEAD", "cape"});
    loadCapture(CaptureOf(301, WalkingHead));
    EXPECT_NEAR(headX(2), 2, kRounding);
    EXPECT_NEAR(static_cast<double>(puppet_.objects[0].transform[13]), 2, kRounding);
    EXPECT_NEAR(headX(7.25f), 7.25, kRounding);
    EXPECT_NEAR(headX(3.5f), 3.5, kRounding);
    EXPECT_NEAR(headX(-4), 0, kRounding);
    EXPECT_NEAR(headX(50), 10, kRounding);
    EXPECT_EQ(Elements(puppet_.objects[1].transform), Elements(kIdentity));
}

TEST_F(KinectModelTest, PlaysAtItsSpeedFromItsOffsetAndStart) {
    loadModel({"HEAD"});
    loadCapture(CaptureOf(301, WalkingHead));
    puppet_.playerSpeed = 0.5f;
    puppet_.timeOffset = -1;
    puppet_.startTime = "2.5 seconds";
    EXPECT_NEAR(headX(4), 3.5, kRounding);
}

TEST_F(KinectModelTest, HoldsTheCaptureAtSpeedZero) {
    loadModel({"HEAD"});
    loadCapture(CaptureOf(301, WalkingHead));
    puppet_.playerSpeed = 0;
    puppet_.timeOffset = 1;
    puppet_.startTime = "2";
    for (const float time : {0.0f, 5.0f, 100.0f}) EXPECT_NEAR(headX(time), 3, kRounding);
}

TEST_F(KinectModelTest, IsTheSameHoweverTheClockGotThere) {
    const dance::Dancer dancer(5);
    loadModel({"LEFT_HAND"});
    loadCapture(CaptureOf(301, [&](double seconds) { return dancer.at(seconds); }));
    puppet_.smoothing = "0.9";
    runFrame(4.321f);
    const auto first = Elements(puppet_.objects[0].transform);
    for (const float time : {0.0f, 9.0f, 4.32f}) runFrame(time);
    runFrame(4.321f);
    EXPECT_EQ(Elements(puppet_.objects[0].transform), first);
}

TEST_F(KinectModelTest, SmoothsAsItsTextSays) {
    std::vector<CaptureFrame> jump = CaptureOf(31, WalkingHead);
    for (CaptureFrame& frame : jump) {
        for (CaptureJoint& joint : frame.joints) joint.position.x = 0;
        const float x = frame.timeSeconds > 0 ? 1 : 0;
        frame.joints[kHead].position.x = frame.joints[kNeck].position.x = x;
    }
    loadModel({"HEAD"});
    loadCapture(jump);
    EXPECT_NEAR(headX(1), 1, kRounding);
    puppet_.smoothing = "0.9";
    EXPECT_NEAR(headX(1), 1 - std::pow(0.9, 30), 2e-5);  // thirty steps that round
}

TEST_F(KinectModelTest, ReadsTheCaptureAgainOnlyWhenItsNameStartOrSmoothingChanges) {
    loadModel({"HEAD"});
    loadCapture(CaptureOf(31, WalkingHead));
    EXPECT_NEAR(headX(0.5f), 0.5, kRounding);
    loadCapture(CaptureOf(31, [](double seconds) { return WalkingHead(seconds + 5); }));
    const std::uint64_t before = puppet_.loadId;
    EXPECT_NEAR(headX(0.5f), 0.5, kRounding);
    EXPECT_EQ(puppet_.loadId, before);
    puppet_.startTime = "0.00";
    EXPECT_NEAR(headX(0.5f), 5.5, kRounding);
    EXPECT_NE(puppet_.loadId, before);
}

TEST_F(KinectModelTest, PlacesItselfByItsParameters) {
    puppet_.translate = {1, 2, 3};
    puppet_.rotate = {10, 20, 30};
    puppet_.scale = 2;
    runFrame(0);
    Mat4 expected;
    Mat4ComposeTRS(expected, {1, 2, 3}, {10, 20, 30}, 2);
    EXPECT_EQ(Elements(puppet_.transform), Elements(expected));
}

TEST_F(KinectModelTest, GivesAnObjectOfTwoNamesTheLaterLimb) {
    loadModel({"HEAD_LEFT_FOOT", "LEFT_FOOT"});
    const dance::Dancer dancer(2);
    loadCapture(CaptureOf(31, [&](double seconds) { return dancer.at(seconds); }));
    runFrame(0.5f);
    EXPECT_THAT(puppet_.limbs, SizeIs(3));
    EXPECT_EQ(Elements(puppet_.objects[0].transform), Elements(puppet_.objects[1].transform));
}

TEST_F(KinectModelTest, TakesAnotherModel) {
    loadModel({"HEAD", "TORSO"});
    loadCapture(CaptureOf(31, WalkingHead));
    runFrame(0.5f);
    puppet_.modelFile = WriteModel(folder_, "other.obj", {"LEFT_HAND"});
    runFrame(0.5f);
    ASSERT_THAT(puppet_.objects, SizeIs(1));
    EXPECT_THAT(puppet_.limbs, SizeIs(1));
    EXPECT_NE(Elements(puppet_.objects[0].transform), Elements(kIdentity));
}

TEST_F(KinectModelTest, LosesItsPoseWithItsCapture) {
    loadModel({"HEAD"});
    loadCapture(CaptureOf(31, WalkingHead));
    runFrame(0.5f);
    const DebugCapture debug;
    puppet_.kinectFile = folder_.file("none.cap");
    runFrame(0.5f);
    EXPECT_EQ(Elements(puppet_.objects[0].transform), Elements(kIdentity));
    EXPECT_TRUE(puppet_.hasError);
    EXPECT_EQ(debug.text(), "");
    puppet_.kinectFile = "";
    runFrame(0.5f);
    EXPECT_FALSE(puppet_.hasError);
}

TEST_F(KinectModelTest, ShowsThatItsModelIsMissing) {
    const DebugCapture debug;
    puppet_.modelFile = folder_.file("none.obj");
    runFrame(0);
    runFrame(1);
    EXPECT_TRUE(puppet_.hasError);
    EXPECT_THAT(debug.messages(), ElementsAre(HasSubstr("none.obj")));
}

TEST_F(KinectModelTest, ReadsASecondModelBesideItsOwn) {
    folder_.write("c:/temp/cubeline2.obj",
                  "v 1 1 1\nv 3 1 1\nv 1 3 1\nvn 0 0 1\no line\nf 1/1/1 2/1/1 3/1/1\n");
    const WorkingFolder working(folder_.path());
    loadModel({"HEAD"});
    runFrame(0);
    ASSERT_THAT(puppet_.lineModel, SizeIs(1));
    EXPECT_EQ(puppet_.lineModel.find("line")->at(0).position.x, -1);
    EXPECT_EQ(puppet_.lineModel.find("line")->at(0).uv.x, 0) << "it is not unwrapped";
    EXPECT_THAT(puppet_.objects, SizeIs(1));
}

}  // namespace
