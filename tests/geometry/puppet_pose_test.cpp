#include "geometry/puppet_pose.h"

#include <gmock/gmock.h>

#include <cmath>
#include <string>

#include "support/dance.h"

namespace {

using dance::Angles;
using dance::Cross;
using dance::Dot;
using dance::Length;
using dance::PoseOf;
using dance::Unit;
using dance::Vector;
using dance::Widened;
using testing::ElementsAre;

constexpr double kPi = 3.14159265358979323846;
// Places of about a metre in single precision, after some ten operations.
constexpr double kMetreRounding = 2e-6;

const std::vector<std::string> kAllNames = {
    "HEAD",           "RIGHT_HAND",     "LEFT_HAND",     "RIGHT_LOWERARM", "LEFT_LOWERARM",
    "RIGHT_UPPERARM", "LEFT_UPPERARM",  "TORSO",         "TRICENTER",      "RIGHT_UPPERLEG",
    "LEFT_UPPERLEG",  "RIGHT_LOWERLEG", "LEFT_LOWERLEG", "RIGHT_FOOT",     "LEFT_FOOT"};

std::vector<PuppetLimb> AllLimbs() {
    std::vector<PuppetLimb> limbs;
    for (std::size_t i = 0; i < kAllNames.size(); ++i) BindLimbs(kAllNames[i], i, limbs);
    return limbs;
}

std::vector<PuppetLimb> Posed(const Skeleton& skeleton, const PuppetShape& shape = {}) {
    std::vector<PuppetLimb> limbs = AllLimbs();
    PoseLimbs(skeleton, shape, limbs);
    return limbs;
}

const PuppetLimb& Limb(const std::vector<PuppetLimb>& limbs, LimbKind kind) {
    return limbs.at(static_cast<std::size_t>(kind) - 1);
}

bool HasTwoJoints(LimbKind kind) {
    return kind != LimbKind::kTorso && kind != LimbKind::kTricenter;
}
bool HasLowPivot(LimbKind kind) {
    return kind == LimbKind::kTorso || kind == LimbKind::kRightUpperArm ||
           kind == LimbKind::kLeftUpperArm;
}

Vector Column(const Mat4& m, int column) {
    return Widened({m[column * 4], m[column * 4 + 1], m[column * 4 + 2]});
}
// A unit axis of the model in the skeleton's space.
Vector Axis(const PuppetLimb& limb, int column) {
    return Unit(Column(limb.transform, column));
}
// A point of the model in the skeleton's space.
Vector Laid(const PuppetLimb& limb, const Vector& p) {
    return Column(limb.transform, 0) * p.x + Column(limb.transform, 1) * p.y +
           Column(limb.transform, 2) * p.z + Column(limb.transform, 3);
}
Vector Place(const Skeleton& skeleton, int joint) {
    return Widened(skeleton[static_cast<std::size_t>(joint)]);
}

testing::AssertionResult IsAt(const Vector& actual, const Vector& expected, double tolerance) {
    const double distance = Length(actual - expected);
    if (distance <= tolerance) return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << "(" << actual.x << ", " << actual.y << ", " << actual.z << ") is " << distance
           << " away from (" << expected.x << ", " << expected.y << ", " << expected.z << ")";
}

void ExpectTurnedAndScaledOnly(const PuppetLimb& limb, double scale) {
    const Vector x = Column(limb.transform, 0) * (1 / scale);
    const Vector y = Column(limb.transform, 1) * (1 / scale);
    const Vector z = Column(limb.transform, 2) * (1 / scale);
    const double rounding = 2e-6;  // of unit vectors in single precision
    EXPECT_NEAR(Dot(x, x), 1, rounding);
    EXPECT_NEAR(Dot(y, y), 1, rounding);
    EXPECT_NEAR(Dot(z, z), 1, rounding);
    EXPECT_NEAR(Dot(x, y), 0, rounding);
    EXPECT_NEAR(Dot(y, z), 0, rounding);
    EXPECT_NEAR(Dot(z, x), 0, rounding);
    EXPECT_NEAR(Dot(Cross(x, y), z), 1, rounding) << "mirrored";
    EXPECT_EQ(limb.transform[3], 0);
    EXPECT_EQ(limb.transform[7], 0);
    EXPECT_EQ(limb.transform[11], 0);
    EXPECT_EQ(limb.transform[15], 1);
}

// How far a limb turns from one pose to another, about any axis, in radians.
double TurnBetween(const PuppetLimb& from, const PuppetLimb& to) {
    double trace = 0;
    for (int axis = 0; axis < 3; ++axis) trace += Dot(Axis(from, axis), Axis(to, axis));
    return std::acos(std::fmin(1, std::fmax(-1, (trace - 1) / 2)));
}

TEST(LimbNames, BindKindsAndJoints) {
    const struct {
        int kind, a, b;
    } expected[] = {{1, 3, 2},    {2, 7, 21},   {3, 11, 23},  {4, 5, 6},    {5, 9, 10},
                    {6, 4, 5},    {7, 8, 9},    {8, -1, -1},  {9, -1, -1},  {10, 12, 13},
                    {11, 16, 17}, {12, 13, 14}, {13, 17, 18}, {14, 15, 14}, {15, 19, 18}};
    const std::vector<PuppetLimb> limbs = AllLimbs();
    ASSERT_EQ(limbs.size(), std::size(expected));
    for (std::size_t i = 0; i < limbs.size(); ++i) {
        EXPECT_EQ(static_cast<int>(limbs[i].kind), expected[i].kind) << kAllNames[i];
        EXPECT_EQ(limbs[i].object, i);
        if (expected[i].a < 0) continue;
        EXPECT_EQ(limbs[i].jointA, expected[i].a) << kAllNames[i];
        EXPECT_EQ(limbs[i].jointB, expected[i].b) << kAllNames[i];
    }
}

TEST(LimbNames, AreFoundAnywhereInTheObjectsName) {
    std::vector<PuppetLimb> limbs;
    BindLimbs("xLEFT_FOOT_Group1", 3, limbs);
    ASSERT_EQ(limbs.size(), 1u);
    EXPECT_EQ(limbs[0].kind, LimbKind::kLeftFoot);
    EXPECT_EQ(limbs[0].object, 3u);
    EXPECT_EQ(limbs[0].transform[0], 1);
    EXPECT_EQ(limbs[0].transform[5], 1);
}

TEST(LimbNames, AllOfOneObjectGetALimbEach) {
    std::vector<PuppetLimb> limbs;
    BindLimbs("TORSO_AND_HEAD", 0, limbs);
    ASSERT_EQ(limbs.size(), 2u);
    EXPECT_EQ(limbs[0].kind, LimbKind::kHead);
    EXPECT_EQ(limbs[1].kind, LimbKind::kTorso);
}

TEST(LimbNames, OthersBindNothing) {
    std::vector<PuppetLimb> limbs;
    for (const char* name : {"", "head", "HAND", "default", "RIGHT_LEG"}) BindLimbs(name, 0, limbs);
    EXPECT_TRUE(limbs.empty());
}

TEST(PuppetPose, ScalesEveryLimbByTheJointScale) {
    const Skeleton skeleton = PoseOf({});
    for (const float jointScale : {10.0f, 1.0f, 20.0f}) {
        PuppetShape shape;
        shape.jointScale = jointScale;
        const double scale = static_cast<double>(jointScale) * 0.01 * 0.56 * 1.465;
        for (const PuppetLimb& limb : Posed(skeleton, shape))
            ExpectTurnedAndScaledOnly(limb, scale);
    }
}

TEST(PuppetPose, LaysEachLimbFromJointToJoint) {
    const dance::Dancer dancer(7);
    const double scale = static_cast<double>(LimbScale(10));
    for (int step = 0; step < 500; ++step) {
        const Skeleton skeleton = dancer.at(step * 0.05);
        for (const PuppetLimb& limb : Posed(skeleton)) {
            if (!HasTwoJoints(limb.kind)) continue;
            SCOPED_TRACE(kAllNames[limb.object] + " in step " + std::to_string(step));
            const Vector a = Place(skeleton, limb.jointA), b = Place(skeleton, limb.jointB);
            const double half = Length(a - b) / scale / 2;
            // The upper arms hang a little lower in the model.
            const double drop = HasLowPivot(limb.kind) ? 0.115 : 0;
            EXPECT_TRUE(IsAt(Laid(limb, {0, half + drop, 0}), a, kMetreRounding));
            EXPECT_TRUE(IsAt(Laid(limb, {0, drop - half, 0}), b, kMetreRounding));
        }
    }
}

TEST(PuppetPose, NeverMirrorsOrBendsALimb) {
    for (std::uint32_t seed = 1; seed <= 5; ++seed) {
        const dance::Dancer dancer(seed);
        for (int step = 0; step < 200; ++step) {
            for (const PuppetLimb& limb : Posed(dancer.at(step * 0.1))) {
                SCOPED_TRACE(kAllNames[limb.object]);
                ExpectTurnedAndScaledOnly(limb, static_cast<double>(LimbScale(10)));
            }
        }
    }
}

// The dancer's joints turn at some ten radians a second at the most, and a limb sums up to four of
// them; a flip or a spin is pi within one step.
TEST(PuppetPose, TurnsNoLimbByLeaps) {
    constexpr double kStepSeconds = 1.0 / 500;
    for (std::uint32_t seed = 1; seed <= 8; ++seed) {
        const dance::Dancer dancer(seed);
        std::vector<PuppetLimb> before = Posed(dancer.at(0));
        for (int step = 1; step < 10000; ++step) {
            const std::vector<PuppetLimb> now = Posed(dancer.at(step * kStepSeconds));
            for (std::size_t i = 0; i < now.size(); ++i) {
                ASSERT_LT(TurnBetween(before[i], now[i]), 60 * kStepSeconds)
                    << kAllNames[i] << ", seed " << seed << ", step " << step;
            }
            before = now;
        }
    }
}

TEST(PuppetPose, StandsWithAllLimbsToTheFront) {
    // Faces -z, and the model's x leads to the limbs called RIGHT, at the dancer's left.
    for (const PuppetLimb& limb : Posed(PoseOf({}))) {
        SCOPED_TRACE(kAllNames[limb.object]);
        if (limb.kind == LimbKind::kRightFoot || limb.kind == LimbKind::kLeftFoot) continue;
        EXPECT_TRUE(IsAt(Axis(limb, 0), {-1, 0, 0}, 1e-5));  // rounding of small triangles
        EXPECT_TRUE(IsAt(Axis(limb, 1), {0, 1, 0}, 1e-5));
        EXPECT_TRUE(IsAt(Axis(limb, 2), {0, 0, -1}, 1e-5));
    }
}

TEST(PuppetPose, PointsFeetAlongYWithTheirSolesDown) {
    const std::vector<PuppetLimb> limbs = Posed(PoseOf({}));
    for (const LimbKind kind : {LimbKind::kRightFoot, LimbKind::kLeftFoot}) {
        const PuppetLimb& foot = Limb(limbs, kind);
        EXPECT_TRUE(IsAt(Axis(foot, 0), {-1, 0, 0}, 1e-5));
        EXPECT_TRUE(IsAt(Axis(foot, 1), Unit({0, -0.05, -0.15}), 1e-5));
        EXPECT_LT(Axis(foot, 2).y, -0.9);
    }
}

// All in the plane through front and up, where the roll follows from the angles alone.
TEST(PuppetPose, RollsRaisedLimbsAboutTheSideAxis) {
    for (int degrees = -60; degrees <= 170; degrees += 10) {
        Angles angles;
        const double raised = degrees * kPi / 180;
        angles.legForward[0] = raised;
        angles.knee[0] = degrees > 0 ? 1.0 : 0.0;
        const std::vector<PuppetLimb> limbs = Posed(PoseOf(angles));
        const double shin = raised - angles.knee[0];
        SCOPED_TRACE(degrees);
        EXPECT_TRUE(IsAt(Axis(Limb(limbs, LimbKind::kRightUpperLeg), 2),
                         {0, std::sin(raised), -std::cos(raised)}, 1e-5));
        EXPECT_TRUE(IsAt(Axis(Limb(limbs, LimbKind::kRightLowerLeg), 2),
                         {0, std::sin(shin), -std::cos(shin)}, 1e-5));
        EXPECT_TRUE(IsAt(Axis(Limb(limbs, LimbKind::kRightUpperLeg), 0), {-1, 0, 0}, 1e-5));
    }
}

TEST(PuppetPose, BendsTheForearmAboutTheUpperArmsSideAxis) {
    for (const double outward : {0.0, 0.8, 1.57, 2.5}) {
        Angles angles;
        angles.armOut[0] = angles.armOut[1] = outward;
        angles.elbow[0] = angles.elbow[1] = 1.2;
        const std::vector<PuppetLimb> limbs = Posed(PoseOf(angles));
        for (const auto& [upper, lower] :
             {std::pair(LimbKind::kRightUpperArm, LimbKind::kRightLowerArm),
              std::pair(LimbKind::kLeftUpperArm, LimbKind::kLeftLowerArm)}) {
            const PuppetLimb& arm = Limb(limbs, upper);
            const PuppetLimb& forearm = Limb(limbs, lower);
            // The smallest turn between them is about the axis that is square to both.
            const Vector axis = Unit(Cross(Axis(arm, 1), Axis(forearm, 1)));
            for (int column = 0; column < 3; ++column) {
                EXPECT_NEAR(Dot(Axis(arm, column), axis), Dot(Axis(forearm, column), axis), 1e-5);
            }
        }
    }
}

TEST(PuppetPose, PassesArmsThroughTheVerticalWithoutAFlip) {
    const double ways[][2] = {{1, 0}, {0, 1}, {0.7, 0.7}, {1, 0.1}, {0.1, 1}};  // forward, outward
    for (const auto& way : ways) {
        std::vector<PuppetLimb> before;
        for (int degrees = -30; degrees <= 200; ++degrees) {
            Angles angles;
            for (int side = 0; side < 2; ++side) {
                angles.armForward[side] = way[0] * degrees * kPi / 180;
                angles.armOut[side] = way[1] * degrees * kPi / 180;
            }
            const std::vector<PuppetLimb> now = Posed(PoseOf(angles));
            for (std::size_t i = 0; i < before.size(); ++i) {
                EXPECT_LT(TurnBetween(before[i], now[i]), 8 * kPi / 180)
                    << kAllNames[i] << " at " << degrees;
            }
            before = now;
        }
    }
}

TEST(PuppetPose, FollowsTheShouldersWithTheTorso) {
    Angles angles;
    angles.twist = 0.6;
    angles.bend = 0.5;
    const Skeleton skeleton = PoseOf(angles);
    PuppetShape shape;
    shape.torsoOffset = 0;
    const std::vector<PuppetLimb> limbs = Posed(skeleton, shape);
    const PuppetLimb& torso = Limb(limbs, LimbKind::kTorso);
    const Vector shoulders =
        (Place(skeleton, kShoulderLeft) + Place(skeleton, kShoulderRight)) * 0.5;
    const Vector hips = (Place(skeleton, kHipLeft) + Place(skeleton, kHipRight)) * 0.5;
    const double half = Length(shoulders - hips) / static_cast<double>(LimbScale(10)) / 2;
    EXPECT_TRUE(IsAt(Laid(torso, {0, half + 0.115, 0}), shoulders, kMetreRounding));
    EXPECT_TRUE(IsAt(Laid(torso, {0, 0.115 - half, 0}), hips, kMetreRounding));
    // Its side axis lies in the plane of spine and shoulders.
    const Vector across = Place(skeleton, kShoulderLeft) - Place(skeleton, kShoulderRight);
    EXPECT_NEAR(Dot(Axis(torso, 2), across), 0, 1e-6);  // rounding of a unit vector
    EXPECT_GT(Dot(Axis(torso, 0), across), 0);
}

TEST(PuppetPose, FollowsTheHipsAndKneesWithThePelvis) {
    Angles angles;
    angles.turn = 0.4;
    angles.legForward[0] = 0.9;
    angles.legOut[1] = 0.3;
    const Skeleton skeleton = PoseOf(angles);
    const PuppetLimb pelvis = Limb(Posed(skeleton), LimbKind::kTricenter);
    const Vector base = Place(skeleton, kSpineBase);
    const Vector hipLeft = Place(skeleton, kHipLeft), hipRight = Place(skeleton, kHipRight);
    EXPECT_TRUE(
        IsAt(Column(pelvis.transform, 3), (base + hipLeft + hipRight) * (1.0 / 3), kMetreRounding));
    const Vector legs =
        Unit(Unit(Place(skeleton, kKneeLeft) - base) + Unit(Place(skeleton, kKneeRight) - base));
    EXPECT_TRUE(IsAt(Axis(pelvis, 1), legs * -1, 1e-5));
    EXPECT_NEAR(Dot(Axis(pelvis, 2), hipLeft - hipRight), 0, 1e-6);
}

TEST(PuppetPose, KeepsThePelvisWhereTheLegsLeadApart) {
    std::vector<PuppetLimb> before;
    for (int degrees = 0; degrees <= 90; ++degrees) {
        Angles angles;
        angles.legForward[0] = degrees * kPi / 180;
        angles.legForward[1] = -degrees * kPi / 180;
        const std::vector<PuppetLimb> now = Posed(PoseOf(angles));
        for (std::size_t i = 0; i < before.size(); ++i) {
            EXPECT_LT(TurnBetween(before[i], now[i]), 8 * kPi / 180) << kAllNames[i];
        }
        before = now;
    }
    EXPECT_GT(Axis(Limb(before, LimbKind::kTricenter), 1).y, 0.9);
}

TEST(PuppetPose, MovesLimbsByTheirOffsetsAlongThemselves) {
    const dance::Dancer dancer(3);
    const Skeleton skeleton = dancer.at(1.5);
    PuppetShape plain;
    plain.torsoOffset = 0;
    const std::vector<PuppetLimb> without = Posed(skeleton, plain);
    const struct {
        float PuppetShape::*offset;
        std::vector<LimbKind> moves;
    } cases[] = {
        {&PuppetShape::headOffset, {LimbKind::kHead}},
        {&PuppetShape::torsoOffset, {LimbKind::kTorso}},
        {&PuppetShape::shoulderOffset, {LimbKind::kRightUpperArm, LimbKind::kLeftUpperArm}},
        {&PuppetShape::handOffset, {LimbKind::kRightHand, LimbKind::kLeftHand}},
        {&PuppetShape::thighOffset, {LimbKind::kRightUpperLeg, LimbKind::kLeftUpperLeg}},
        {&PuppetShape::kneeOffset, {LimbKind::kRightLowerLeg, LimbKind::kLeftLowerLeg}},
    };
    for (const auto& [offset, moves] : cases) {
        PuppetShape shape = plain;
        shape.*offset = 0.5f;
        const std::vector<PuppetLimb> with = Posed(skeleton, shape);
        for (std::size_t i = 0; i < with.size(); ++i) {
            SCOPED_TRACE(kAllNames[i]);
            Vector expected = Column(without[i].transform, 3);
            if (testing::Value(moves, testing::Contains(with[i].kind))) {
                Vector a = Place(skeleton, with[i].jointA), b = Place(skeleton, with[i].jointB);
                if (with[i].kind == LimbKind::kTorso) {
                    a = (Place(skeleton, kShoulderLeft) + Place(skeleton, kShoulderRight)) * 0.5;
                    b = (Place(skeleton, kHipLeft) + Place(skeleton, kHipRight)) * 0.5;
                }
                expected = expected + (a - b) * 0.5;
            }
            EXPECT_TRUE(IsAt(Column(with[i].transform, 3), expected, kMetreRounding));
        }
    }
}

TEST(PuppetPose, IsWholeForBodiesThatAreNone) {
    Skeleton heap{};
    Skeleton line{};
    for (std::size_t i = 0; i < line.size(); ++i) line[i] = {static_cast<float>(i) * 0.1f, 0, 0};
    Skeleton upright{};
    for (std::size_t i = 0; i < line.size(); ++i)
        upright[i] = {0, static_cast<float>(i) * -0.1f, 0};
    for (const Skeleton& skeleton : {heap, line, upright}) {
        for (const PuppetLimb& limb : Posed(skeleton)) {
            SCOPED_TRACE(kAllNames[limb.object]);
            ExpectTurnedAndScaledOnly(limb, static_cast<double>(LimbScale(10)));
        }
    }
}

TEST(PuppetPose, TurnsFoldedLimbsAboutTheirHinge) {
    Angles angles;
    angles.elbow[0] = kPi;
    angles.knee[0] = kPi;
    for (const PuppetLimb& limb : Posed(PoseOf(angles))) {
        SCOPED_TRACE(kAllNames[limb.object]);
        ExpectTurnedAndScaledOnly(limb, static_cast<double>(LimbScale(10)));
    }
}

}  // namespace
