#include "geometry/skeleton_capture.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "core/byte_stream.h"
#include "platform/debug_output.h"
#include "support/dance.h"
#include "support/temp_folder.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

struct FileJoint {
    std::uint32_t id;
    Vec3 place;
    std::uint32_t state = 2;
};
struct FileFrame {
    float time;
    std::vector<FileJoint> joints;
};

std::vector<std::uint8_t> Taken(const ByteWriter& out) {
    return {out.bytes().begin(), out.bytes().end()};
}

std::vector<std::uint8_t> FileOf(const std::vector<FileFrame>& frames, bool extended) {
    ByteWriter out;
    if (extended) out.writeU32(0xAFFE0001u);
    out.writeU32(static_cast<std::uint32_t>(frames.size()));
    for (const FileFrame& frame : frames) {
        out.writeFloat(frame.time);
        out.writeU32(static_cast<std::uint32_t>(frame.joints.size()));
        for (const FileJoint& joint : frame.joints) {
            out.writeU32(joint.id);
            out.writeU32(0x12345678u);
            out.writeFloat(joint.place.x);
            out.writeFloat(joint.place.y);
            out.writeFloat(joint.place.z);
            if (extended) out.writeU32(joint.state);
        }
    }
    return Taken(out);
}

std::vector<CaptureFrame> Parsed(const std::vector<std::uint8_t>& bytes,
                                 std::string* fault = nullptr) {
    std::string reason;
    auto frames = ParseCapture(bytes, reason);
    if (fault != nullptr) {
        *fault = reason;
    } else {
        EXPECT_EQ(reason, "");
    }
    return frames;
}

std::vector<float> TimesOf(const std::vector<CaptureFrame>& frames) {
    std::vector<float> times;
    for (const CaptureFrame& frame : frames) times.push_back(frame.timeSeconds);
    return times;
}

// Frames that know the joints of `place` only.
CaptureFrame Sparse(float time, std::initializer_list<std::pair<int, Vec3>> places) {
    CaptureFrame frame;
    frame.timeSeconds = time;
    for (const auto& [joint, place] : places) {
        frame.joints[static_cast<std::size_t>(joint)].position = place;
        frame.known.set(static_cast<std::size_t>(joint));
    }
    return frame;
}

const Vec3& PlaceOf(const CaptureFrame& frame, int joint) {
    return frame.joints[static_cast<std::size_t>(joint)].position;
}

void ExpectPlace(const Vec3& actual, const Vec3& expected) {
    EXPECT_EQ(actual.x, expected.x);
    EXPECT_EQ(actual.y, expected.y);
    EXPECT_EQ(actual.z, expected.z);
}

TEST(CaptureFile, ReadsThePlainFormAndCountsAllJointsAsTracked) {
    const auto frames = Parsed(
        FileOf({{0.5f, {{0, {1, 2, 3}}, {24, {4, 5, 6}}}}, {1.5f, {{3, {7, 8, 9}}}}}, false));
    ASSERT_THAT(frames, SizeIs(2));
    EXPECT_EQ(frames[0].timeSeconds, 0.5f);
    EXPECT_EQ(frames[0].known.count(), 2u);
    ExpectPlace(PlaceOf(frames[0], 0), {1, 2, 3});
    ExpectPlace(PlaceOf(frames[0], 24), {4, 5, 6});
    EXPECT_EQ(frames[0].joints[0].trackingState, 2u);
    EXPECT_EQ(frames[0].joints[24].trackingState, 2u);
    EXPECT_EQ(frames[1].timeSeconds, 1.5f);
    EXPECT_TRUE(frames[1].known[3]);
    EXPECT_FALSE(frames[1].known[0]);
}

TEST(CaptureFile, ReadsTheTrackingStatesOfTheExtendedForm) {
    const auto frames =
        Parsed(FileOf({{0, {{0, {1, 2, 3}, 1}, {5, {4, 5, 6}, 0}}}, {1, {{2, {7, 8, 9}}}}}, true));
    ASSERT_THAT(frames, SizeIs(2));
    EXPECT_EQ(frames[0].joints[0].trackingState, 1u);
    EXPECT_EQ(frames[0].joints[5].trackingState, 0u);
    ExpectPlace(PlaceOf(frames[0], 5), {4, 5, 6});
    ExpectPlace(PlaceOf(frames[1], 2), {7, 8, 9});
}

TEST(CaptureFile, TakesTheLastOfARepeatedJoint) {
    const auto frames = Parsed(FileOf({{0, {{4, {1, 1, 1}}, {4, {2, 3, 4}}}}}, false));
    ASSERT_THAT(frames, SizeIs(1));
    ExpectPlace(PlaceOf(frames[0], 4), {2, 3, 4});
}

TEST(CaptureFile, PassesOverJointsThatTheSkeletonLacks) {
    const auto frames =
        Parsed(FileOf({{0, {{25, {1, 1, 1}}, {0xFFFFFFFFu, {1, 1, 1}}, {1, {2, 2, 2}}}}}, true));
    ASSERT_THAT(frames, SizeIs(1));
    EXPECT_EQ(frames[0].known.count(), 1u);
    ExpectPlace(PlaceOf(frames[0], 1), {2, 2, 2});
}

TEST(CaptureFile, PassesOverFramesWithoutABody) {
    const auto frames = Parsed(FileOf({{0, {}}, {1, {{0, {}}}}, {2, {}}}, true));
    EXPECT_THAT(TimesOf(frames), ElementsAre(1.0f));
}

TEST(CaptureFile, IgnoresWhatFollowsTheLastFrame) {
    auto bytes = FileOf({{1, {{0, {}}}}}, false);
    bytes.push_back(7);
    EXPECT_THAT(Parsed(bytes), SizeIs(1));
}

TEST(CaptureFile, GivesTheWholeFramesOfACutFile) {
    for (const bool extended : {false, true}) {
        const auto whole = FileOf({{0, {{0, {1, 1, 1}}}}, {1, {{0, {2, 2, 2}}}}}, extended);
        const std::size_t head = extended ? 8 : 4;
        const std::size_t frameBytes = (whole.size() - head) / 2;
        for (std::size_t size = 0; size < whole.size(); ++size) {
            std::string fault;
            const auto frames =
                Parsed({whole.begin(), whole.begin() + static_cast<long>(size)}, &fault);
            EXPECT_THAT(frames, SizeIs(size < head ? 0 : (size - head) / frameBytes)) << size;
            EXPECT_NE(fault, "") << size;
        }
    }
}

TEST(CaptureFile, BelievesNoCountThatTheFileCannotHold) {
    ByteWriter out;
    out.writeU32(0xFFFFFFFFu);
    out.writeFloat(0);
    out.writeU32(0xFFFFFFFFu);
    std::string fault;
    EXPECT_THAT(Parsed(Taken(out), &fault), IsEmpty());
    EXPECT_THAT(fault, HasSubstr("ends after 0 of its 4294967295 frames"));
}

TEST(CaptureFile, SortsFramesByTime) {
    std::string fault;
    const auto frames =
        Parsed(FileOf({{2, {{0, {2, 0, 0}}}}, {1, {{0, {1, 0, 0}}}}, {2, {{0, {3, 0, 0}}}}}, false),
               &fault);
    EXPECT_THAT(TimesOf(frames), ElementsAre(1.0f, 2.0f, 2.0f));
    EXPECT_EQ(PlaceOf(frames[1], 0).x, 2);
    EXPECT_THAT(fault, HasSubstr("not in order of time"));
}

TEST(CaptureFile, LeavesOutWhatIsNoNumber) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    std::string fault;
    const auto frames = Parsed(FileOf({{nan, {{0, {1, 1, 1}}}},
                                       {1, {{0, {1, 1, 1}}, {1, {nan, 0, 0}}, {2, {0, 0, -inf}}}},
                                       {inf, {{0, {1, 1, 1}}}}},
                                      true),
                               &fault);
    ASSERT_THAT(TimesOf(frames), ElementsAre(1.0f));
    EXPECT_EQ(frames[0].known.count(), 1u);
    EXPECT_NE(fault, "");
}

TEST(CaptureFile, ReadsBackWhatIsWritten) {
    const dance::Dancer dancer(1);
    std::vector<CaptureFrame> frames;
    for (int i = 0; i < 20; ++i) {
        frames.push_back(dance::FrameOf(static_cast<float>(i) / 30, dancer.at(i / 30.0)));
        frames.back().known.reset(static_cast<std::size_t>(i));
        frames.back().joints[24].trackingState = 1;
    }
    const auto read = Parsed(CaptureBytes(frames));
    ASSERT_THAT(read, SizeIs(frames.size()));
    for (std::size_t i = 0; i < frames.size(); ++i) {
        EXPECT_EQ(read[i].timeSeconds, frames[i].timeSeconds);
        EXPECT_EQ(read[i].known, frames[i].known);
        EXPECT_EQ(read[i].joints[24].trackingState, 1u);
        for (int joint = 0; joint < kJointCount; ++joint) {
            if (frames[i].known[static_cast<std::size_t>(joint)]) {
                ExpectPlace(PlaceOf(read[i], joint), PlaceOf(frames[i], joint));
            }
        }
    }
}

TEST(CaptureFile, IsSilentlyEmptyWhenItCannotBeOpened) {
    const TempFolder folder;
    const DebugCapture debug;
    std::vector<CaptureFrame> frames(3);
    EXPECT_FALSE(ReadCaptureFile(folder.file("none.cap"), frames));
    EXPECT_THAT(frames, IsEmpty());
    EXPECT_EQ(debug.text(), "");
}

TEST(CaptureFile, ReportsAFaultInOneLine) {
    const TempFolder folder;
    auto bytes = FileOf({{1, {{0, {}}}}, {0, {{0, {}}}}}, false);
    bytes[0] = 9;
    folder.write("bad.cap", {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    const DebugCapture debug;
    std::vector<CaptureFrame> frames;
    EXPECT_TRUE(ReadCaptureFile(folder.file("bad.cap"), frames));
    EXPECT_THAT(frames, SizeIs(2));
    EXPECT_THAT(debug.messages(), ElementsAre(HasSubstr("bad.cap: ends after 2 of its 9 frames")));
}

TEST(CapturePreparation, PutsTheMiddleFramesBodyAtTheOriginInPlan) {
    for (const int count : {1, 2, 3, 6}) {
        std::vector<CaptureFrame> frames;
        for (int i = 0; i < count; ++i) {
            const auto x = static_cast<float>(i);
            frames.push_back(Sparse(x, {{kSpineBase, {x + 1, 2 * x, 3 * x}}, {kHead, {x, 5, 7}}}));
        }
        PrepareCapture(frames, 0);
        const auto middle = static_cast<float>(count / 2);
        for (int i = 0; i < count; ++i) {
            const auto x = static_cast<float>(i);
            const CaptureFrame& frame = frames[static_cast<std::size_t>(i)];
            ExpectPlace(PlaceOf(frame, kSpineBase), {x - middle, 2 * x, 3 * x - 3 * middle});
            ExpectPlace(PlaceOf(frame, kHead), {x - middle - 1, 5, 7 - 3 * middle});
        }
    }
}

TEST(CapturePreparation, WeighsTheHipsWithTheSpinesBase) {
    std::vector<CaptureFrame> frames = {Sparse(0, {{kSpineBase, {0, 1, 0}},
                                                   {kHipLeft, {-1, 2, 3}},
                                                   {kHipRight, {1, 0, 0}},
                                                   {kKneeLeft, {-1, 0, 0}}})};
    PrepareCapture(frames, 0);
    const Vec3& left = PlaceOf(frames[0], kHipLeft);
    EXPECT_FLOAT_EQ(left.x, -0.9f);
    EXPECT_FLOAT_EQ(left.y, 1.9f);
    EXPECT_FLOAT_EQ(left.z, 2.7f);
    EXPECT_FLOAT_EQ(PlaceOf(frames[0], kHipRight).x, 0.9f);
    ExpectPlace(PlaceOf(frames[0], kKneeLeft), {-1, 0, 0});
}

TEST(CapturePreparation, FillsInJointsThatAFrameLacks) {
    std::vector<CaptureFrame> frames = {
        Sparse(0, {{kSpineBase, {}}}), Sparse(1, {{kSpineBase, {}}, {kHead, {2, 4, 8}}}),
        Sparse(2, {{kSpineBase, {}}}), Sparse(5, {{kSpineBase, {}}, {kHead, {6, 0, 4}}}),
        Sparse(6, {{kSpineBase, {}}}),
    };
    PrepareCapture(frames, 0);
    ExpectPlace(PlaceOf(frames[0], kHead), {2, 4, 8});
    ExpectPlace(PlaceOf(frames[1], kHead), {2, 4, 8});
    ExpectPlace(PlaceOf(frames[2], kHead), {3, 3, 7});
    ExpectPlace(PlaceOf(frames[3], kHead), {6, 0, 4});
    ExpectPlace(PlaceOf(frames[4], kHead), {6, 0, 4});
}

TEST(CapturePreparation, PutsJointsThatNoFrameKnowsOnTheirParents) {
    std::vector<CaptureFrame> frames = {
        Sparse(0, {{kSpineBase, {0, 1, 0}}, {kHandLeft, {1, 2, 3}}})};
    PrepareCapture(frames, 0);
    ExpectPlace(PlaceOf(frames[0], kHandTipLeft), {1, 2, 3});
    ExpectPlace(PlaceOf(frames[0], kThumbRight), {0, 1, 0});
    ExpectPlace(PlaceOf(frames[0], kNeck), {0, 1, 0});
}

TEST(CapturePreparation, LeavesNoFramesAlone) {
    std::vector<CaptureFrame> frames;
    PrepareCapture(frames, 0.9f);
    EXPECT_THAT(frames, IsEmpty());
}

// The head jumps from 0 to 1 right after the first frame.
std::vector<CaptureFrame> Jump(double framesPerSecond, double seconds) {
    std::vector<CaptureFrame> frames;
    for (int i = 0; i <= static_cast<int>(seconds * framesPerSecond + 0.5); ++i) {
        frames.push_back(Sparse(static_cast<float>(i / framesPerSecond),
                                {{kSpineBase, {}}, {kHead, {i == 0 ? 0.0f : 1.0f, 0, 0}}}));
    }
    return frames;
}

TEST(CaptureSmoothing, LeavesItsFactorOfTheOldPoseAfterEachThirtiethOfASecond) {
    for (const float factor : {0.9f, 0.5f, 0.1f}) {
        auto frames = Jump(30, 1);
        PrepareCapture(frames, factor);
        for (std::size_t i = 0; i < frames.size(); ++i) {
            const double expected =
                1 - std::pow(static_cast<double>(factor), static_cast<double>(i));
            // Each step rounds once, and times are single numbers too.
            EXPECT_NEAR(static_cast<double>(PlaceOf(frames[i], kHead).x), expected, 2e-5);
        }
    }
}

TEST(CaptureSmoothing, IsTheSameForEveryFrameRate) {
    for (const double rate : {15.0, 30.0, 60.0, 120.0, 240.0}) {
        auto frames = Jump(rate, 2);
        PrepareCapture(frames, 0.9f);
        for (const double seconds : {0.2, 0.4, 1.0, 2.0}) {
            Skeleton pose;
            ASSERT_TRUE(SampleCapture(frames, static_cast<float>(seconds), pose));
            // Rounding of up to 480 steps and of the frames' times.
            EXPECT_NEAR(static_cast<double>(pose[kHead].x), 1 - std::pow(0.9, seconds * 30), 1e-4)
                << rate;
        }
    }
}

TEST(CaptureSmoothing, IsOffAtZeroAndBelow) {
    for (const float factor : {0.0f, -1.0f, std::numeric_limits<float>::quiet_NaN()}) {
        auto frames = Jump(30, 0.2);
        PrepareCapture(frames, factor);
        EXPECT_EQ(PlaceOf(frames[0], kHead).x, 0);
        EXPECT_EQ(PlaceOf(frames[1], kHead).x, 1);
    }
}

TEST(CaptureSmoothing, NeverFreezesTheBody) {
    for (const float factor : {1.0f, 5.0f}) {
        auto frames = Jump(30, 10);
        PrepareCapture(frames, factor);
        EXPECT_GT(PlaceOf(frames.back(), kHead).x, 0.2f);
        EXPECT_LT(PlaceOf(frames.back(), kHead).x, 1.0f);
    }
}

class CaptureSampling : public testing::Test {
  protected:
    Vec3 at(float seconds) const {
        Skeleton pose;
        EXPECT_TRUE(SampleCapture(frames_, seconds, pose));
        return pose[kHead];
    }
    std::vector<CaptureFrame> frames_ = {
        Sparse(1, {{kHead, {0, 10, 0}}}), Sparse(2, {{kHead, {4, 20, 8}}}),
        Sparse(2, {{kHead, {8, 0, 0}}}), Sparse(6, {{kHead, {0, 4, 16}}})};
};

TEST_F(CaptureSampling, BlendsBetweenTheFramesAroundATime) {
    ExpectPlace(at(1.25f), {1, 12.5f, 2});
    ExpectPlace(at(3), {6, 1, 4});
}

TEST_F(CaptureSampling, HoldsTheEndFramesOutside) {
    for (const float early : {1.0f, 0.5f, -1e30f, -std::numeric_limits<float>::infinity()}) {
        ExpectPlace(at(early), {0, 10, 0});
    }
    for (const float late : {6.0f, 7.0f, 1e30f, std::numeric_limits<float>::infinity()}) {
        ExpectPlace(at(late), {0, 4, 16});
    }
}

TEST_F(CaptureSampling, ReachesTheFirstOfTwoFramesOfOneTimeAndLeavesFromTheLast) {
    ExpectPlace(at(2), {4, 20, 8});
    const Vec3 after = at(std::nextafter(2.0f, 3.0f));
    EXPECT_NEAR(static_cast<double>(after.x), 8, 1e-5);  // one step of time further
}

TEST_F(CaptureSampling, AgreesWithAPlainSearch) {
    std::vector<CaptureFrame> frames;
    for (int i = 0; i < 200; ++i) {
        const auto value = static_cast<float>(i * i % 97);
        frames.push_back(Sparse(static_cast<float>(i) * 0.04f, {{kHead, {value, 0, 0}}}));
    }
    for (int step = -10; step < 900; ++step) {
        const float t = static_cast<float>(step) * 0.01f;
        std::size_t earlier = frames.size();
        for (std::size_t i = 0; i < frames.size() && frames[i].timeSeconds < t; ++i) earlier = i;
        Skeleton pose;
        ASSERT_TRUE(SampleCapture(frames, t, pose));
        const auto x = [&](std::size_t i) {
            return static_cast<double>(PlaceOf(frames[i], kHead).x);
        };
        double expected = 0;
        if (earlier == frames.size()) {
            expected = x(0);
        } else if (earlier + 1 == frames.size()) {
            expected = x(earlier);
        } else {
            const auto from = static_cast<double>(frames[earlier].timeSeconds);
            const auto to = static_cast<double>(frames[earlier + 1].timeSeconds);
            const double f = (static_cast<double>(t) - from) / (to - from);
            expected = (1 - f) * x(earlier) + f * x(earlier + 1);
        }
        EXPECT_NEAR(static_cast<double>(pose[kHead].x), expected, 2e-5) << t;  // rounds at up to 97
    }
}

TEST_F(CaptureSampling, HasNothingToGiveWithoutFrames) {
    Skeleton pose;
    pose[0] = {1, 2, 3};
    EXPECT_FALSE(SampleCapture({}, 0, pose));
    ExpectPlace(pose[0], {1, 2, 3});
}

TEST_F(CaptureSampling, SurvivesAnyTimes) {
    frames_ = {Sparse(-3e38f, {{kHead, {1, 0, 0}}}), Sparse(3e38f, {{kHead, {3, 0, 0}}})};
    ExpectPlace(at(0), {2, 0, 0});
    EXPECT_EQ(at(std::numeric_limits<float>::quiet_NaN()).x, 1);
}

}  // namespace
