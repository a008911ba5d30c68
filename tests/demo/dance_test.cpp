// Looks at the dance as a physician would: bones that keep their lengths, feet that stand where
// they stand, and no limb that is faster than a dancer's.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "demo/tool/dance_capture.h"
#include "demo/tool/dance_feet.h"
#include "demo/tool/dance_figures.h"
#include "demo/tool/dance_performance.h"
#include "geometry/puppet_pose.h"

namespace {

using dance::length;
using dance::Point;
using dance::Pose;
using dance::Side;

constexpr double kFramesPerSecond = dance::kFramesPerSecond;

const dance::DancePlan& plan() {
    static const dance::DancePlan plan = dance::PlanDance();
    return plan;
}

const std::vector<Pose>& poses() {
    static const std::vector<Pose> poses = dance::PerformDance(plan());
    return poses;
}

const std::vector<CaptureFrame>& frames() {
    static const std::vector<CaptureFrame> frames = DanceFrames();
    return frames;
}

double secondOf(std::size_t frame) {
    return static_cast<double>(frame) / kFramesPerSecond;
}

struct Bone {
    const char* name;
    int from, to;
};

constexpr Bone kBones[] = {{"lower spine", kSpineBase, kSpineMid},
                           {"upper spine", kSpineMid, kSpineShoulder},
                           {"neck", kSpineShoulder, kNeck},
                           {"head", kNeck, kHead},
                           {"left collarbone", kSpineShoulder, kShoulderLeft},
                           {"left upper arm", kShoulderLeft, kElbowLeft},
                           {"left forearm", kElbowLeft, kWristLeft},
                           {"left palm", kWristLeft, kHandLeft},
                           {"left fingers", kHandLeft, kHandTipLeft},
                           {"left thumb", kWristLeft, kThumbLeft},
                           {"right collarbone", kSpineShoulder, kShoulderRight},
                           {"right upper arm", kShoulderRight, kElbowRight},
                           {"right forearm", kElbowRight, kWristRight},
                           {"right palm", kWristRight, kHandRight},
                           {"right fingers", kHandRight, kHandTipRight},
                           {"right thumb", kWristRight, kThumbRight},
                           {"left hip", kSpineBase, kHipLeft},
                           {"left thigh", kHipLeft, kKneeLeft},
                           {"left shin", kKneeLeft, kAnkleLeft},
                           {"left foot", kAnkleLeft, kFootLeft},
                           {"right hip", kSpineBase, kHipRight},
                           {"right thigh", kHipRight, kKneeRight},
                           {"right shin", kKneeRight, kAnkleRight},
                           {"right foot", kAnkleRight, kFootRight}};

double speedAt(std::size_t frame, int joint) {
    const auto j = static_cast<std::size_t>(joint);
    return length(poses()[frame][j] - poses()[frame - 1][j]) * kFramesPerSecond;
}

double largestSpeed(int joint) {
    double largest = 0;
    for (std::size_t i = 1; i < poses().size(); ++i) largest = std::max(largest, speedAt(i, joint));
    return largest;
}

double meanHandSpeed(double startSeconds, double stopSeconds) {
    double sum = 0;
    std::size_t count = 0;
    for (std::size_t i = 1; i < poses().size(); ++i) {
        if (secondOf(i) < startSeconds || secondOf(i) >= stopSeconds) continue;
        sum += speedAt(i, kHandLeft) + speedAt(i, kHandRight);
        count += 2;
    }
    return sum / static_cast<double>(count);
}

Point figurePlace(const dance::DrawnFigure& drawn, double seconds) {
    const double part = (seconds - drawn.startSeconds) / (drawn.stopSeconds - drawn.startSeconds);
    const dance::FigurePoint at = dance::FigureAt(drawn.figure, part);
    return {drawn.x - dance::kFigureSize * at.x, dance::kFigureHeight + dance::kFigureSize * at.y,
            dance::kSensorDistance - dance::kFigureAhead};
}

}  // namespace

TEST(Dance, LastsForTheWholeMusicAtThirtyFramesASecond) {
    ASSERT_EQ(frames().size(), 6901u);
    for (std::size_t i = 0; i < frames().size(); ++i) {
        ASSERT_EQ(frames()[i].timeSeconds, static_cast<float>(static_cast<double>(i) / 30));
        ASSERT_TRUE(frames()[i].known.all()) << "frame " << i;
    }
    EXPECT_EQ(frames().back().timeSeconds, 230.0f);
}

TEST(Dance, BonesKeepTheirLengths) {
    // Files hold single precision; a place 3 m away is rounded by up to 0.2 micrometres.
    constexpr double kRounding = 2e-6;
    for (const Bone& bone : kBones) {
        double shortest = 10, longest = 0;
        for (const CaptureFrame& frame : frames()) {
            const Vec3& a = frame.joints[static_cast<std::size_t>(bone.from)].position;
            const Vec3& b = frame.joints[static_cast<std::size_t>(bone.to)].position;
            const double now = length(Point{b.x, b.y, b.z} - Point{a.x, a.y, a.z});
            shortest = std::min(shortest, now);
            longest = std::max(longest, now);
        }
        EXPECT_GT(shortest, 0.02) << bone.name;
        EXPECT_LT(longest - shortest, kRounding) << bone.name;
    }
}

TEST(Dance, FeetStandStillWhileTheyArePlanted) {
    constexpr double kStill = 1e-9;  // of rounding only
    for (const Side side : {dance::kLeft, dance::kRight}) {
        const std::size_t ankle = side == dance::kLeft ? kAnkleLeft : kAnkleRight;
        dance::FootTrack track(plan().feet[side]);
        std::size_t planted = 0;
        bool stoodBefore = false;
        for (std::size_t i = 0; i < poses().size(); ++i) {
            const bool stands = track.at(secondOf(i)).planted;
            if (stands && stoodBefore) {
                ++planted;
                for (const std::size_t joint : {ankle, ankle + 1}) {
                    ASSERT_LT(length(poses()[i][joint] - poses()[i - 1][joint]), kStill)
                        << "joint " << joint << " at second " << secondOf(i);
                }
            }
            stoodBefore = stands;
        }
        EXPECT_GT(planted, poses().size() / 2) << "side " << side;
    }
}

TEST(Dance, OneFootStandsUnlessTheDancerHops) {
    dance::FootTrack left(plan().feet[dance::kLeft]), right(plan().feet[dance::kRight]);
    for (std::size_t i = 0; i < poses().size(); ++i) {
        const double seconds = secondOf(i);
        // Both tracks go on with the time.
        const bool onLeft = left.at(seconds).planted, onRight = right.at(seconds).planted;
        const bool hops =
            std::any_of(plan().hops.begin(), plan().hops.end(), [=](const dance::FootMark& hop) {
                return seconds >= hop.landSeconds - hop.travelSeconds && seconds <= hop.landSeconds;
            });
        EXPECT_TRUE(onLeft || onRight || hops) << "second " << seconds;
    }
}

TEST(Dance, FeetNeverSinkIntoTheFloor) {
    constexpr double kToeHeight = dance::bones::kAnkleHeight - dance::bones::kFootDown;
    for (const Pose& pose : poses()) {
        for (const std::size_t ankle : {kAnkleLeft, kAnkleRight}) {
            ASSERT_GE(pose[ankle].y, dance::bones::kAnkleHeight - 1e-9);
            ASSERT_GE(pose[ankle + 1].y, kToeHeight - 1e-9);
        }
    }
}

TEST(Dance, KneesBendToTheFrontOnly) {
    for (const Pose& pose : poses()) {
        for (const std::size_t hip : {kHipLeft, kHipRight}) {
            const Point straight = unit(pose[hip + 2] - pose[hip]);
            const Point bend = cross(pose[hip + 1] - pose[hip], straight);
            const Point toes = pose[hip + 3] - pose[hip + 2];
            // Both lie in the plane of a leg that walks; a knee behind it would turn the sign.
            ASSERT_GT(dot(cross(toes, straight), bend), 0);
        }
    }
}

TEST(Dance, NoLimbIsFasterThanADancers) {
    // Metres a second, in the order of what fast dancers reach: a waving hand and a kicking foot.
    for (const int joint : {kHandLeft, kHandRight, kHandTipLeft, kHandTipRight}) {
        EXPECT_LT(largestSpeed(joint), 7.5) << "joint " << joint;
    }
    for (const int joint : {kElbowLeft, kElbowRight}) EXPECT_LT(largestSpeed(joint), 6.5);
    for (const int joint : {kAnkleLeft, kAnkleRight, kFootLeft, kFootRight}) {
        EXPECT_LT(largestSpeed(joint), 5.5) << "joint " << joint;
    }
    for (const int joint : {kSpineBase, kSpineMid, kSpineShoulder, kNeck, kHead}) {
        EXPECT_LT(largestSpeed(joint), 2.6) << "joint " << joint;
    }
}

TEST(Dance, IsCalmWhereTheMusicIs) {
    const double intro = meanHandSpeed(0, 14), breakdown = meanHandSpeed(64, 78);
    const double outro = meanHandSpeed(218, 230);
    for (const auto& [start, stop] : {std::pair(34.0, 64.0), std::pair(80.0, 112.0),
                                      std::pair(152.0, 158.0), std::pair(160.0, 168.0)}) {
        const double loud = meanHandSpeed(start, stop);
        EXPECT_GT(loud, 2 * intro) << "from " << start;
        EXPECT_GT(loud, 1.5 * breakdown) << "from " << start;
        EXPECT_GT(loud, 2 * outro) << "from " << start;
    }
}

TEST(Dance, IsTheSameEveryTime) {
    EXPECT_EQ(CaptureBytes(DanceFrames()), CaptureBytes(frames()));
}

TEST(DanceCapture, PlainAndExtendedFilesHoldTheSameFrames) {
    std::string fault;
    const std::vector<CaptureFrame> extended = ParseCapture(CaptureBytes(frames()), fault);
    EXPECT_EQ(fault, "");
    const std::vector<CaptureFrame> plain =
        ParseCapture(CaptureBytes(frames(), CaptureForm::Plain), fault);
    EXPECT_EQ(fault, "");
    ASSERT_EQ(extended.size(), frames().size());
    EXPECT_EQ(CaptureBytes(extended), CaptureBytes(frames()));
    EXPECT_EQ(CaptureBytes(plain), CaptureBytes(extended));
}

TEST(DanceCapture, TakeIsAMinuteOfTheDanceOnItsOwnClock) {
    const std::vector<CaptureFrame> take = TakeOf(frames());
    ASSERT_EQ(take.size(), 1801u);
    EXPECT_EQ(take.front().timeSeconds, 0.0f);
    EXPECT_EQ(take.back().timeSeconds, 60.0f);
    const Vec3& own = take[900].joints[kHandLeft].position;
    const Vec3& whole = frames()[180 * 30].joints[kHandLeft].position;
    EXPECT_EQ(own.x, whole.x);
    EXPECT_EQ(own.y, whole.y);
    EXPECT_EQ(own.z, whole.z);
}

TEST(DanceFigures, AreDrawnByTheHandInTheirSpans) {
    constexpr double kReach = 1e-4;  // a tenth of a millimetre; arms are two bones and cannot cheat
    for (const dance::DrawnFigure& drawn : dance::kDrawnFigures) {
        std::size_t count = 0;
        for (std::size_t i = 0; i < poses().size(); ++i) {
            if (secondOf(i) < drawn.startSeconds || secondOf(i) > drawn.stopSeconds) continue;
            const Point hand = (poses()[i][kHandLeft] + poses()[i][kHandTipLeft]) * 0.5;
            ASSERT_LT(length(hand - figurePlace(drawn, secondOf(i))), kReach)
                << "second " << secondOf(i);
            ++count;
        }
        EXPECT_GE(count, 26u);
    }
}

// What a line in the air samples: the limb of a puppet that plays the take.
TEST(DanceFigures, AreUprightAndLargeOnThePuppetsHand) {
    std::vector<CaptureFrame> take = TakeOf(frames());
    PrepareCapture(take, 0);
    std::vector<PuppetLimb> limbs;
    BindLimbs("RIGHT_HAND", 0, limbs);
    ASSERT_EQ(limbs.size(), 1u);
    for (const dance::DrawnFigure& drawn : dance::kDrawnFigures) {
        Point low{10, 10, 10}, high{-10, -10, -10};
        const double first = drawn.startSeconds - static_cast<double>(kTakeStartSeconds);
        const double last = drawn.stopSeconds - static_cast<double>(kTakeStartSeconds);
        // From the first whole frame within to the last: frames outside are on their way.
        for (double s = std::ceil(first * 30) / 30; s <= std::floor(last * 30) / 30; s += 0.01) {
            Skeleton skeleton;
            ASSERT_TRUE(SampleCapture(take, static_cast<float>(s), skeleton));
            PoseLimbs(skeleton, {}, limbs);
            const Mat4& m = limbs.front().transform;
            low = {std::min<double>(low.x, m[12]), std::min<double>(low.y, m[13]),
                   std::min<double>(low.z, m[14])};
            high = {std::max<double>(high.x, m[12]), std::max<double>(high.y, m[13]),
                    std::max<double>(high.z, m[14])};
        }
        EXPECT_LT(high.z - low.z, 0.001) << "figure at " << drawn.startSeconds;
        EXPECT_GT(high.x - low.x, 0.4) << "figure at " << drawn.startSeconds;
        EXPECT_GT(high.y - low.y, 0.35) << "figure at " << drawn.startSeconds;
    }
}

TEST(DanceFigures, StayWithinTheirSizeAndDrawWithoutLeaps) {
    for (const dance::DrawnFigure& drawn : dance::kDrawnFigures) {
        dance::FigurePoint last = dance::FigureAt(drawn.figure, 0);
        for (int i = 1; i <= 1000; ++i) {
            const dance::FigurePoint next = dance::FigureAt(drawn.figure, i / 1000.0);
            ASSERT_LE(std::abs(next.x), 1.1);
            ASSERT_LE(std::abs(next.y), 1.1);
            ASSERT_LT(std::hypot(next.x - last.x, next.y - last.y), 0.05);
            last = next;
        }
    }
}
