#include "bvh_motion.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <string>

namespace {

using testing::HasSubstr;
using testing::SizeIs;

// A figure of 16 joints in centimetres, 180 high, that faces z with arms to its sides. The root has
// three channels of place and one turn about y; nothing else moves.
std::string Figure(bool ends, int frames, double frameSeconds, double speed) {
    std::string text =
        "HIERARCHY\nROOT Hips\n{\nOFFSET 0 0 0\n"
        "CHANNELS 4 Xposition Yposition Zposition Yrotation\n";
    const auto open = [&](const std::string& name, const std::string& offset) {
        text += "JOINT " + name + "\n{\nOFFSET " + offset + "\nCHANNELS 0\n";
    };
    const auto close = [&](int count) {
        for (int i = 0; i < count; ++i) text += "}\n";
    };
    const auto end = [&](const std::string& offset) {
        if (ends) text += "End Site\n{\nOFFSET " + offset + "\n}\n";
    };
    open("Neck", "0 55 0");
    open("Head", "0 10 0");
    end("0 15 0");
    close(1);
    for (const int sign : {1, -1}) {
        const std::string side = sign > 0 ? "Left" : "Right";
        const auto x = [&](int value) { return std::to_string(sign * value) + " "; };
        open(side + "Arm", x(20) + "-5 0");
        open(side + "ForeArm", x(30) + "0 0");
        open(side + "Hand", x(20) + "0 0");
        end(x(18) + "0 0");
        close(3);
    }
    close(1);
    for (const int sign : {1, -1}) {
        const std::string side = sign > 0 ? "Left" : "Right";
        open(side + "UpLeg", std::to_string(sign * 10) + " -5 0");
        open(side + "Leg", "0 -45 0");
        open(side + "Foot", "0 -40 0");
        end("0 -10 12");
        close(3);
    }
    char time[32];
    std::snprintf(time, sizeof time, "%.12f", frameSeconds);
    text += "}\nMOTION\nFrames: " + std::to_string(frames) + "\nFrame Time: " + time + "\n";
    for (int i = 0; i < frames; ++i) {
        text += std::to_string(speed * i * frameSeconds) + " 100 0 0\n";
    }
    return text;
}

BvhFile Parsed(const std::string& text) {
    BvhFile file;
    std::string fault;
    EXPECT_TRUE(ParseBvh(text, file, fault)) << fault;
    return file;
}

std::string Convert(const BvhFile& file, const BvhConversion& conversion,
                    std::vector<CaptureFrame>& frames) {
    BvhJointMap map;
    std::string fault;
    EXPECT_TRUE(MapBvhJoints(file, "", map, fault)) << fault;
    const bool converted = ConvertBvh(file, map, conversion, frames, fault);
    EXPECT_EQ(converted, fault.empty());
    return fault;
}

std::vector<CaptureFrame> Converted(const BvhFile& file, const BvhConversion& conversion = {}) {
    std::vector<CaptureFrame> frames;
    EXPECT_EQ(Convert(file, conversion, frames), "");
    return frames;
}

void ExpectJoint(const CaptureFrame& frame, JointType joint, double x, double y, double z) {
    const Vec3& place = frame.joints[static_cast<std::size_t>(joint)].position;
    SCOPED_TRACE(JointTypeName(joint));
    // Single precision at about a metre.
    EXPECT_NEAR(static_cast<double>(place.x), x, 2e-7);
    EXPECT_NEAR(static_cast<double>(place.y), y, 2e-7);
    EXPECT_NEAR(static_cast<double>(place.z), z, 2e-7);
}

TEST(BvhMotion, GivesAllJointsInMetresFacingTheSensor) {
    const auto frames = Converted(Parsed(Figure(true, 1, 0.01, 0)));
    ASSERT_THAT(frames, SizeIs(1));
    EXPECT_TRUE(frames[0].known.all());
    ExpectJoint(frames[0], kSpineBase, 0, 1, 0);
    ExpectJoint(frames[0], kSpineMid, 0, 1.25, 0);
    ExpectJoint(frames[0], kSpineShoulder, 0, 1.5, 0);
    ExpectJoint(frames[0], kNeck, 0, 1.55, 0);
    ExpectJoint(frames[0], kHead, 0, 1.725, 0);
    ExpectJoint(frames[0], kShoulderLeft, -0.2, 1.5, 0);
    ExpectJoint(frames[0], kElbowLeft, -0.5, 1.5, 0);
    ExpectJoint(frames[0], kWristLeft, -0.7, 1.5, 0);
    ExpectJoint(frames[0], kHandLeft, -0.79, 1.5, 0);
    ExpectJoint(frames[0], kHandTipLeft, -0.88, 1.5, 0);
    ExpectJoint(frames[0], kThumbLeft, -0.79, 1.5, 0);
    ExpectJoint(frames[0], kHandTipRight, 0.88, 1.5, 0);
    ExpectJoint(frames[0], kHipLeft, -0.1, 0.95, 0);
    ExpectJoint(frames[0], kKneeRight, 0.1, 0.5, 0);
    ExpectJoint(frames[0], kAnkleRight, 0.1, 0.1, 0);
    ExpectJoint(frames[0], kFootRight, 0.1, 0, -0.12);
}

TEST(BvhMotion, MakesUpHandsForFilesWithoutEnds) {
    const auto frames = Converted(Parsed(Figure(false, 1, 0.01, 0)));
    ExpectJoint(frames[0], kWristLeft, -0.7, 1.5, 0);
    ExpectJoint(frames[0], kHandLeft, -0.76, 1.5, 0);
    ExpectJoint(frames[0], kHandTipLeft, -0.82, 1.5, 0);
    ExpectJoint(frames[0], kHead, 0, 1.65, 0);
}

TEST(BvhMotion, IsResampledToTheSensorsRate) {
    for (const int rate : {24, 30, 60, 120}) {
        const BvhFile file = Parsed(Figure(true, 2 * rate + 1, 1.0 / rate, 50));
        const auto frames = Converted(file);
        ASSERT_THAT(frames, SizeIs(61)) << rate;
        for (std::size_t i = 0; i < frames.size(); ++i) {
            EXPECT_FLOAT_EQ(frames[i].timeSeconds,
                            static_cast<float>(static_cast<double>(i) / 30.0));
            // The file gives places in centimetres with six decimals.
            EXPECT_NEAR(static_cast<double>(frames[i].joints[kSpineBase].position.x),
                        -0.5 * static_cast<double>(i) / 30.0, 1e-7);
        }
    }
}

TEST(BvhMotion, TakesAScaleOrAHeight) {
    const BvhFile file = Parsed(Figure(true, 1, 0.01, 0));
    EXPECT_DOUBLE_EQ(BvhFigureHeight(file), 180);
    BvhConversion conversion;
    conversion.metresPerUnit = 0.02;
    ExpectJoint(Converted(file, conversion)[0], kKneeRight, 0.2, 1, 0);
    conversion.figureMetres = 0.9;
    ExpectJoint(Converted(file, conversion)[0], kKneeRight, 0.05, 0.25, 0);
}

TEST(BvhMotion, TurnsTheFigureAsAsked) {
    const BvhFile file = Parsed(Figure(true, 1, 0.01, 0));
    BvhConversion conversion;
    conversion.turnDegrees = 0;
    ExpectJoint(Converted(file, conversion)[0], kFootLeft, 0.1, 0, 0.12);
    conversion.turnDegrees = 90;
    ExpectJoint(Converted(file, conversion)[0], kFootLeft, 0.12, 0, -0.1);
}

TEST(BvhMotion, RefusesMotionsThatNoCaptureHolds) {
    std::vector<CaptureFrame> frames;
    BvhFile file = Parsed(Figure(true, 3, 0.01, 0));
    file.frameSeconds = 1e300;
    EXPECT_THAT(Convert(file, {}, frames), HasSubstr("seconds long"));
    file = Parsed(Figure(true, 3, 0.1, 1e12));
    EXPECT_THAT(Convert(file, {}, frames), HasSubstr("too far away"));
}

TEST(BvhMotion, RefusesAFigureWithoutHeightThatIsToBeFitted) {
    BvhFile file = Parsed(Figure(true, 1, 0.01, 0));
    for (BvhJoint& joint : file.joints) joint.offset.y = 0;
    BvhConversion conversion;
    conversion.figureMetres = 1.8;
    std::vector<CaptureFrame> frames;
    EXPECT_THAT(Convert(file, conversion, frames), HasSubstr("no height"));
}

}  // namespace
