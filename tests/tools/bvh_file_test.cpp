#include "bvh_file.h"

#include <gmock/gmock.h>

#include <cmath>
#include <string>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr double kRounding = 1e-12;  // double precision, numbers of about 10

std::string Chain(const std::string& rootChannels, const std::string& armChannels,
                  const std::string& motion) {
    return "HIERARCHY\nROOT Hips\n{\n OFFSET 0 0 0\n CHANNELS " + rootChannels +
           "\n JOINT Arm\n {\n  OFFSET 1 2 3\n  CHANNELS " + armChannels +
           "\n  End Site\n  {\n   OFFSET 4 0 0\n  }\n }\n}\nMOTION\n" + motion;
}

const std::string kSix = "6 Xposition Yposition Zposition Zrotation Xrotation Yrotation";
const std::string kThree = "3 Zrotation Xrotation Yrotation";

BvhFile Parsed(const std::string& text) {
    BvhFile file;
    std::string fault;
    EXPECT_TRUE(ParseBvh(text, file, fault)) << fault;
    EXPECT_EQ(fault, "");
    return file;
}

std::string FaultOf(const std::string& text) {
    BvhFile file;
    std::string fault;
    EXPECT_FALSE(ParseBvh(text, file, fault));
    return fault;
}

void ExpectAt(const BvhVector& place, double x, double y, double z) {
    EXPECT_NEAR(place.x, x, kRounding);
    EXPECT_NEAR(place.y, y, kRounding);
    EXPECT_NEAR(place.z, z, kRounding);
}

struct Turned {
    double x, y, z;
    Turned about(char axis, double degrees) const {
        const double a = degrees * 3.14159265358979323846 / 180;
        const double c = std::cos(a), s = std::sin(a);
        if (axis == 'X') return {x, c * y - s * z, s * y + c * z};
        if (axis == 'Y') return {c * x + s * z, y, c * z - s * x};
        return {c * x - s * y, s * x + c * y, z};
    }
};

TEST(BvhFile, ReadsHierarchyAndMotion) {
    const BvhFile file = Parsed(Chain(kSix, kThree,
                                      "Frames: 2\nFrame Time: 0.025\n"
                                      "1 2 3 0 0 0 0 0 0\n4 5 6 0 0 0 0 0 0\n"));
    ASSERT_THAT(file.joints, SizeIs(3));
    EXPECT_EQ(file.joints[0].name, "Hips");
    EXPECT_EQ(file.joints[1].name, "Arm");
    EXPECT_EQ(file.joints[1].parent, 0);
    EXPECT_TRUE(file.joints[2].isEnd());
    EXPECT_EQ(file.joints[2].parent, 1);
    EXPECT_EQ(file.valuesPerFrame, 9u);
    EXPECT_EQ(file.frameCount, 2u);
    EXPECT_EQ(file.frameSeconds, 0.025);
    const auto places = file.pose(1);
    ExpectAt(places[0], 4, 5, 6);
    ExpectAt(places[1], 5, 7, 9);
    ExpectAt(places[2], 9, 7, 9);
}

TEST(BvhFile, TurnsInTheOrderOfTheChannels) {
    const std::string orders[] = {"XYZ", "XZY", "YXZ", "YZX", "ZXY", "ZYX"};
    for (const std::string& order : orders) {
        std::string channels = "3";
        for (const char axis : order) channels += std::string(" ") + axis + "rotation";
        const BvhFile file =
            Parsed(Chain(channels, kThree, "Frames: 1\nFrame Time: 1\n10 20 30 0 0 0\n"));
        // The channel that stands last turns first.
        const Turned place =
            Turned{1, 2, 3}.about(order[2], 30).about(order[1], 20).about(order[0], 10);
        SCOPED_TRACE(order);
        ExpectAt(file.pose(0)[1], place.x, place.y, place.z);
    }
}

TEST(BvhFile, TurnsChildrenWithTheirParents) {
    const BvhFile file =
        Parsed(Chain(kSix, kThree, "Frames: 1\nFrame Time: 1\n1 1 1 90 0 0 0 0 90\n"));
    const auto places = file.pose(0);
    ExpectAt(places[1], -1, 2, 4);
    ExpectAt(places[2], -1, 2, 0);
}

TEST(BvhFile, TakesPlacesOfJointsInTheSteadOfTheirOffsets) {
    const BvhFile file =
        Parsed(Chain("1 Yposition", "2 Zposition Xposition", "Frames: 1\nFrame Time: 1\n5 7 9\n"));
    const auto places = file.pose(0);
    ExpectAt(places[0], 0, 5, 0);
    ExpectAt(places[1], 9, 7, 7);
}

TEST(BvhFile, ReadsAnyLayoutOfItsText) {
    const BvhFile file = Parsed(
        "hierarchy\r\nRoot my figure {\r\noffset 0 1e0 +0\tCHANNELS 1 YROTATION JOINT a{OFFSET 0 0 "
        "0 "
        "CHANNELS 0}}\r\nMotion\r\nFRAMES:\t1\r\nframe time: .5\r\n 1.5e1");
    ASSERT_THAT(file.joints, SizeIs(2));
    EXPECT_EQ(file.joints[0].name, "my figure");
    EXPECT_EQ(file.joints[1].name, "a");
    EXPECT_THAT(file.values, ElementsAre(15));
    EXPECT_EQ(file.frameSeconds, 0.5);
}

TEST(BvhFile, GivesTheWholeFramesOfACutFile) {
    const BvhFile file = Parsed(
        Chain("1 Xposition", "1 Xposition", "Frames: 4000000000\nFrame Time: 1\n1 2\n3 4\n5"));
    EXPECT_EQ(file.frameCount, 2u);
    EXPECT_THAT(file.values, ElementsAre(1, 2, 3, 4));
}

TEST(BvhFile, TellsWhatIsWrongAndWhere) {
    EXPECT_THAT(FaultOf(""), HasSubstr("HIERARCHY"));
    EXPECT_THAT(FaultOf("HIERARCHY\nJOINT"), HasSubstr("line 2: has no ROOT"));
    EXPECT_THAT(FaultOf("HIERARCHY\nROOT\n{"), HasSubstr("no name"));
    EXPECT_THAT(FaultOf("HIERARCHY\nROOT a\nOFFSET"), HasSubstr("'{' expected"));
    EXPECT_THAT(FaultOf("HIERARCHY\nROOT a\n{\nOFFSET 1 x 2"), HasSubstr("line 4: an OFFSET"));
    EXPECT_THAT(FaultOf("HIERARCHY\nROOT a\n{\nOFFSET 1 nan 2"), HasSubstr("an OFFSET"));
    EXPECT_THAT(FaultOf("HIERARCHY\nROOT a\n{\nCHANNELS 7"), HasSubstr("0 to 6"));
    EXPECT_THAT(FaultOf("HIERARCHY\nROOT a\n{\nCHANNELS 1 Wrotation"),
                HasSubstr("'Wrotation' is no channel"));
    EXPECT_THAT(FaultOf("HIERARCHY\nROOT a\n{\nCHANNELS 0\nFOO"), HasSubstr("'foo' is not known"));
    EXPECT_THAT(FaultOf("HIERARCHY\nROOT a\n{\n"), HasSubstr("does not end"));
    EXPECT_THAT(FaultOf("HIERARCHY\nROOT a\n{\nCHANNELS 1 Xposition CHANNELS 1 Xposition"),
                HasSubstr("two lists"));
    EXPECT_THAT(FaultOf("HIERARCHY\nROOT a\n{\nEnd Site\n{\nJOINT b"), HasSubstr("End Site"));
    const std::string one = "1 Xposition";
    EXPECT_THAT(FaultOf(Chain(one, one, "")), HasSubstr("'Frames:' expected"));
    EXPECT_THAT(FaultOf(Chain(one, one, "Frames: 0")), HasSubstr("below 1"));
    EXPECT_THAT(FaultOf(Chain(one, one, "Frames: 1\nFrame Time: 0")), HasSubstr("not above 0"));
    EXPECT_THAT(FaultOf(Chain(one, one, "Frames: 1\nFrame Time: -1")), HasSubstr("not above 0"));
    EXPECT_THAT(FaultOf(Chain(one, one, "Frames: 1\nFrame Time: 1\n")), HasSubstr("no frame"));
    EXPECT_THAT(FaultOf(Chain(one, one, "Frames: 1\nFrame Time: 1\n1")), HasSubstr("is cut"));
    EXPECT_THAT(FaultOf(Chain(one, one, "Frames: 1\nFrame Time: 1\n1 x")), HasSubstr("no number"));
    EXPECT_THAT(FaultOf(Chain("0", "0", "Frames: 1\nFrame Time: 1\n")), HasSubstr("has a channel"));
}

TEST(BvhFile, RefusesAHierarchyWithoutEnd) {
    std::string text = "HIERARCHY\nROOT a\n{\n";
    for (int i = 0; i < 100000; ++i) text += "JOINT a\n{\n";
    EXPECT_THAT(FaultOf(text), HasSubstr("too many joints"));
}

}  // namespace
