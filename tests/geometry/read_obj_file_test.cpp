#include "geometry/read_obj_file.h"

#include <gmock/gmock.h>

#include <cmath>
#include <random>
#include <string>

#include "platform/debug_output.h"
#include "support/temp_folder.h"

namespace {

using namespace std::string_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// Three corners of a triangle, three normals and three places on a picture.
const std::string kCorners =
    "v 1 2 3\nv 4 5 6\nv 7 8 9\n"
    "vn 1 0 0\nvn 0 1 0\nvn 0 0 1\n"
    "vt 0.25 0.5\nvt 0.75 0\nvt 1 1\n";
const std::string kFace = "f 1/1/1 2/2/2 3/3/3\n";

struct Read {
    explicit Read(const std::string& text, std::uint32_t flags = 0)
        : fault(ReadObjText(text, objects, flags)) {}

    std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& [name, vertices] : objects) result.push_back(name);
        return result;
    }
    const std::vector<MeshVertex>& vertices(const std::string& name) const {
        static const std::vector<MeshVertex> kNone;
        const auto* list = objects.find(name);
        return list == nullptr ? kNone : *list;
    }
    std::size_t count(const std::string& name) const { return vertices(name).size(); }

    ObjObjects objects;
    std::string fault;
};

std::vector<float> Floats(const MeshVertex& v) {
    return {v.position.x, v.position.y, v.position.z, v.normal.x,
            v.normal.y,   v.normal.z,   v.uv.x,       v.uv.y};
}

struct Bounds {
    double min[3] = {1e9, 1e9, 1e9}, max[3] = {-1e9, -1e9, -1e9};
    double extent(int axis) const { return max[axis] - min[axis]; }
    double centre(int axis) const { return (max[axis] + min[axis]) / 2; }
};

Bounds BoundsOf(const std::vector<MeshVertex>& vertices) {
    Bounds box;
    for (const MeshVertex& v : vertices) {
        const double p[3] = {static_cast<double>(v.position.x), static_cast<double>(v.position.y),
                             static_cast<double>(v.position.z)};
        for (int i = 0; i < 3; ++i) {
            box.min[i] = std::min(box.min[i], p[i]);
            box.max[i] = std::max(box.max[i], p[i]);
        }
    }
    return box;
}

// Objects a and b of random triangles, b five to the right.
std::string TwoClouds() {
    std::mt19937 random(7);
    const auto number = [&](double low, double high) {
        return std::to_string(low + (high - low) * static_cast<double>(random()) / 4294967295.0);
    };
    std::string text;
    for (int i = 0; i < 60; ++i) {
        const double shift = i < 30 ? 0 : 5;
        text += "v " + number(shift - 1, shift + 2) + " " + number(3, 4) + " " + number(-9, -8);
        text += "\nvn " + number(-1, 1) + " " + number(-1, 1) + " " + number(-1, 1) + "\n";
    }
    for (int i = 0; i < 60; i += 3) {
        if (i % 30 == 0) text += i == 0 ? "o a\n" : "o b\n";
        text += "f";
        for (int k = 1; k <= 3; ++k)
            text += " " + std::to_string(i + k) + "//" + std::to_string(i + k);
        text += "\n";
    }
    return text;
}

TEST(ReadObj, GivesEveryCornerItsPositionNormalAndUv) {
    const Read read(kCorners + "o thing\nf 1/3/2 2/2/3 3/1/1\n");
    EXPECT_THAT(read.names(), ElementsAre("thing"));
    ASSERT_EQ(read.count("thing"), 3u);
    EXPECT_THAT(Floats(read.vertices("thing")[0]), ElementsAre(1, 2, 3, 0, 1, 0, 1, 1));
    EXPECT_THAT(Floats(read.vertices("thing")[1]), ElementsAre(4, 5, 6, 0, 0, 1, 0.75f, 0));
    EXPECT_THAT(Floats(read.vertices("thing")[2]), ElementsAre(7, 8, 9, 1, 0, 0, 0.25f, 0.5f));
    EXPECT_EQ(read.fault, "");
}

TEST(ReadObj, FacesBeforeAnyObjectMakeOneNamedDefault) {
    EXPECT_THAT(Read(kCorners + kFace + kFace).names(), ElementsAre("default"));
}

TEST(ReadObj, ANameThatComesAgainAddsToTheSameObject) {
    const Read read(kCorners + "o body\n" + kFace + "o head\n" + kFace + "o body\n" + kFace);
    EXPECT_THAT(read.names(), ElementsAre("body", "head"));
    EXPECT_EQ(read.count("body"), 6u);
    EXPECT_EQ(read.count("head"), 3u);
}

TEST(ReadObj, ObjectsStandInTheOrderOfTheirFirstFaces) {
    const Read read(kCorners + "o empty\no z\n" + kFace + "o a\n" + kFace + "o z\n" + kFace);
    EXPECT_THAT(read.names(), ElementsAre("z", "a"));
}

TEST(ReadObj, FacesMayStandBeforeWhatTheyName) {
    EXPECT_EQ(Read(kFace + kCorners).count("default"), 3u);
}

TEST(ReadObj, CarriageReturnsChangeNothing) {
    std::string text = "# comment\nmtllib x.mtl\no body\n" + kCorners + kFace + "o b\n" + kFace;
    const Read unix(text);
    for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) {
        text.insert(at, 1, '\r');
    }
    const Read windows(text);
    EXPECT_EQ(windows.names(), unix.names());
    ASSERT_EQ(windows.count("body"), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(Floats(windows.vertices("body")[i]), Floats(unix.vertices("body")[i]));
    }
}

TEST(ReadObj, WithoutTextureCoordinatesAllAreZero) {
    const std::string text = "v 1 2 3\nv 4 5 6\nv 7 8 9\nvn 1 0 0\n";
    for (const char* face : {"f 1/7/1 2/8/1 3/9/1\n", "f 1//1 2//1 3//1\n"}) {
        const Read read(text + face);
        ASSERT_EQ(read.count("default"), 3u) << face;
        EXPECT_THAT(Floats(read.vertices("default")[2]), ElementsAre(7, 8, 9, 1, 0, 0, 0, 0));
    }
}

TEST(ReadObj, CommentsLibrariesAndGroupsAreSkippedToTheirLinesEnd) {
    const Read read("# o a\nmtllib o b v 5 5 5\n" + kCorners + "o c\ng o d\n" + kFace +
                    "usemtl red\ns off\n" + kFace + "#");
    EXPECT_THAT(read.names(), ElementsAre("c"));
    EXPECT_EQ(read.count("c"), 6u);
}

TEST(ReadObj, AHashWithoutASpaceIsNoComment) {
    const Read read(kCorners + "#comment o fromComment\n" + kFace + "#o other\n" + kFace);
    EXPECT_THAT(read.names(), ElementsAre("fromComment"));
    EXPECT_EQ(read.count("fromComment"), 6u);
}

TEST(ReadObj, KeywordsAreWholeWordsOfTheirCase) {
    const Read read(kCorners + "V 1 1 1\nvx\nO big\nface " + kFace + "vv f2 fg");
    EXPECT_THAT(read.names(), ElementsAre("default"));
    // "vx" is passed over by itself; the "o" behind it takes the next word as a name.
    EXPECT_THAT(Read(kCorners + "vx o\nname\n" + kFace).names(), ElementsAre("name"));
}

TEST(ReadObj, AMissingNumberIsZeroAndTheNextWordIsReadAsAWord) {
    const Read read("v 1 x y\nv 2 3\nv 4 5 6\n" + kFace + "vn 0 0 1\nvn 0 0 1\nvn 0 0 1\n");
    ASSERT_EQ(read.count("default"), 3u);
    EXPECT_EQ(read.vertices("default")[0].position.x, 1.0f);
    EXPECT_EQ(read.vertices("default")[0].position.y, 0.0f);
    // The third number of the second line is looked for behind it and not found at the "v".
    EXPECT_THAT(Floats(read.vertices("default")[1]), ElementsAre(2, 3, 0, 0, 0, 1, 0, 0));
    EXPECT_THAT(Floats(read.vertices("default")[2]), ElementsAre(4, 5, 6, 0, 0, 1, 0, 0));
}

TEST(ReadObj, AnObjectNameIsOneWord) {
    EXPECT_THAT(Read(kCorners + "o left arm\n" + kFace).names(), ElementsAre("left"));
    // The word may come lines later.
    EXPECT_THAT(Read(kCorners + "o\n\n\nlate\n" + kFace).names(), ElementsAre("late"));
    EXPECT_THAT(Read(kCorners + "o a\0b\n"s + kFace).names(), ElementsAre("a"));
}

TEST(ReadObj, AVeryLongWordIsReadWhole) {
    const std::string name(100000, 'n');
    EXPECT_THAT(Read(kCorners + "o " + name + "\n" + kFace).names(), ElementsAre(name));
}

TEST(ReadObj, OnlyThreeCornersOfAQuadAreTaken) {
    const Read read(kCorners + "f 1/1/1 2/2/2 3/3/3 1/1/1\n" + kFace);
    EXPECT_EQ(read.count("default"), 6u);
    EXPECT_EQ(read.fault, "");
}

TEST(ReadObj, LeavesOutTrianglesWithAnIndexOutOfRange) {
    for (const char* face :
         {"f 4/1/1 2/2/2 3/3/3\n", "f 0/1/1 2/2/2 3/3/3\n", "f 1/1/1 2/4/2 3/3/3\n",
          "f 1/1/1 2/2/2 3/3/4\n", "f -1/-1/-1 -2/-2/-2 -3/-3/-3\n",
          "f 1/1/4294967297 2/2/2 3/3/3\n", "f 1//1 2//2 3//3\n", "f 1/0/1 2/2/2 3/3/3\n"}) {
        const Read read(kCorners + face + kFace);
        EXPECT_EQ(read.count("default"), 3u) << face;
        EXPECT_EQ(read.fault, "1 of its 2 triangles are left out: an index is out of range");
    }
    EXPECT_EQ(Read("v 1 1 1\nv 1 1 1\nv 1 1 1\n" + kFace).count("default"), 0u) << "no normals";
}

TEST(ReadObj, AnObjectWithoutATriangleThatIsWholeIsNone) {
    const Read read(kCorners + "o bad\nf 9/9/9 9/9/9 9/9/9\no good\n" + kFace);
    EXPECT_THAT(read.names(), ElementsAre("good"));
    EXPECT_THAT(Read("").names(), IsEmpty());
}

TEST(ReadObj, AFaceThatTheFileBreaksOffInIsLeftOut) {
    EXPECT_EQ(Read(kCorners + kFace + "f 1/1/1 2/2").count("default"), 3u);
    EXPECT_EQ(Read(kCorners + "f 1/1/1 2/2/2 3/3/3").count("default"), 3u) << "only no line feed";
}

TEST(ReadObj, HoldsAHundredThousandObjects) {
    std::string text = kCorners;
    for (int i = 0; i < 100000; ++i) text += "o part" + std::to_string(i) + "\n" + kFace;
    const Read read(text);
    ASSERT_EQ(read.objects.size(), 100000u);
    EXPECT_EQ(read.objects.begin()->first, "part0");
    EXPECT_EQ(read.count("part99999"), 3u);
}

TEST(ReadObj, CentresTheWholeFile) {
    const Read plain(TwoClouds()), centred(TwoClouds(), kObjCentre);
    const Bounds a = BoundsOf(plain.vertices("a")), b = BoundsOf(plain.vertices("b"));
    const double centreX = (a.min[0] + b.max[0]) / 2;
    const MeshVertex& before = plain.vertices("b")[4];
    const MeshVertex& after = centred.vertices("b")[4];
    // One rounding of the centre and one of the difference, at numbers below 16.
    EXPECT_NEAR(static_cast<double>(after.position.x),
                static_cast<double>(before.position.x) - centreX, 4e-6);
    EXPECT_EQ(after.normal.y, before.normal.y);
}

TEST(ReadObj, CentredAndNormalisedFilesFitAUnitCubeAroundTheOrigin) {
    const Read read(TwoClouds(), kObjCentre | kObjNormalise);
    std::vector<MeshVertex> all = read.vertices("a");
    all.insert(all.end(), read.vertices("b").begin(), read.vertices("b").end());
    const Bounds box = BoundsOf(all);
    EXPECT_GT(box.extent(0), box.extent(1));
    // Roundings of numbers below 10, divided by an extent of about 8.
    EXPECT_NEAR(box.extent(0), 1, 1e-6);
    for (int axis = 0; axis < 3; ++axis) EXPECT_NEAR(box.centre(axis), 0, 1e-6);
}

TEST(ReadObj, NormalisingAloneKeepsTheCentre) {
    const Read plain(TwoClouds()), read(TwoClouds(), kObjNormalise);
    const Bounds a = BoundsOf(plain.vertices("a")), b = BoundsOf(plain.vertices("b"));
    const double extent = b.max[0] - a.min[0], centre = (b.max[0] + a.min[0]) / 2;
    for (std::size_t i = 0; i < plain.count("a"); ++i) {
        const double x = static_cast<double>(plain.vertices("a")[i].position.x);
        // Four roundings of numbers below 8.
        EXPECT_NEAR(static_cast<double>(read.vertices("a")[i].position.x),
                    (x - centre) / extent + centre, 2e-6);
    }
}

TEST(ReadObj, TheBoxStartsAtItsFixedBounds) {
    // Nothing lies below 999999, so that the box has this lower corner.
    const std::string far = "v 2000001 0 0\nv 2000001 0 0\nv 2000001 0 0\nvn 1 0 0\n";
    const Read read(far + "f 1/1/1 2/1/1 3/1/1\n", kObjCentre);
    EXPECT_EQ(read.vertices("default")[0].position.x, 2000001.0f - 1500000.0f);
}

TEST(ReadObj, TheBoxEndsAtItsFixedBounds) {
    // Nothing lies above -999999, so that the box has this upper corner.
    const std::string far = "v -2000001 0 0\nv -2000001 0 0\nv -2000001 0 0\nvn 1 0 0\n";
    const Read read(far + "f 1/1/1 2/1/1 3/1/1\n", kObjCentre);
    EXPECT_EQ(read.vertices("default")[0].position.x, -2000001.0f + 1500000.0f);
}

TEST(ReadObj, APointWithoutExtentNormalisesToNoNumberAndNoFault) {
    const Read read("v 1 1 1\nvn 1 0 0\nf 1/1/1 1/1/1 1/1/1\n", kObjCentre | kObjNormalise);
    EXPECT_TRUE(std::isnan(read.vertices("default")[0].position.x));
    EXPECT_EQ(read.fault, "");
}

TEST(ReadObj, RecentresEachObject) {
    const Read plain(TwoClouds()), read(TwoClouds(), kObjRecentreObjects);
    for (const char* name : {"a", "b"}) {
        const Bounds before = BoundsOf(plain.vertices(name)), after = BoundsOf(read.vertices(name));
        for (int axis = 0; axis < 3; ++axis) {
            // One rounding of the centre and one of the difference, at numbers below 16.
            EXPECT_NEAR(after.centre(axis), 0, 4e-6) << name;
            EXPECT_NEAR(after.extent(axis), before.extent(axis), 4e-6) << name;
        }
    }
}

TEST(ReadObj, UnwrapsEachObjectAroundItsAxis) {
    const Read read(TwoClouds(), kObjUnwrap);
    for (const char* name : {"a", "b"}) {
        const Bounds box = BoundsOf(read.vertices(name));
        for (const MeshVertex& v : read.vertices(name)) {
            const double nx = static_cast<double>(v.normal.x), nz = static_cast<double>(v.normal.z);
            const double angle = std::acos(nx / std::hypot(nx, nz));
            // acos is steep at its ends: a rounding of 6e-8 there is an angle of 3.5e-4.
            EXPECT_NEAR(static_cast<double>(v.uv.x), 0.5 + angle / (2 * M_PI), 6e-5);
            EXPECT_GE(v.uv.x, 0.5f);
            EXPECT_LE(v.uv.x, 1.0f);
            const double y = static_cast<double>(v.position.y);
            // Differences of numbers below 4, divided by an extent near 1.
            EXPECT_NEAR(static_cast<double>(v.uv.y), (y - box.min[1]) / box.extent(1), 2e-6);
        }
    }
}

TEST(ReadObj, BothSidesOfTheCylinderHaveTheSameU) {
    const std::string text =
        "v 0 0 0\nv 0 1 0\nv 1 0 0\nvn 0 0 1\nvn 0 0 -1\nvn 1 0 0\nvn -1 0 0\nvn 0 1 0\n"
        "f 1/0/1 2/0/2 3/0/3\nf 1/0/4 2/0/5 3/0/5\n";
    const Read read(text, kObjUnwrap);
    const auto& list = read.vertices("default");
    ASSERT_EQ(list.size(), 6u);
    EXPECT_EQ(list[0].uv.x, 0.75f);
    EXPECT_EQ(list[1].uv.x, 0.75f);
    EXPECT_EQ(list[2].uv.x, 0.5f);
    EXPECT_EQ(list[3].uv.x, 1.0f);
    EXPECT_TRUE(std::isnan(list[4].uv.x)) << "a normal along the axis has no angle";
}

// A torso whose y goes from 10 to 20.
const std::string kTorso =
    "v 0 10 0\nv 4 20 1\nv 1 12 8\nvn 1 0 0\no TORSO_Group1\nf 1/1/1 2/1/1 3/1/1\n";

TEST(ReadObj, TheTorsoIsRecentredOnItsOwnBoxThatIsFixed) {
    const DebugCapture debug;
    const Read read(kTorso, kObjRecentreObjects);
    EXPECT_EQ(debug.text(), "0.000000, 10.000000, 0.000000\n4.000000, 20.000000, 8.000000\n");
    EXPECT_EQ(debug.messages().size(), 2u);
    const Vec3 p = read.vertices("TORSO_Group1")[0].position;
    // Single precision of numbers below 32.
    EXPECT_NEAR(static_cast<double>(p.x), (2.109777 - 2.1097519) / 2, 2e-7);
    EXPECT_NEAR(static_cast<double>(p.y), 10 - (11.589649 + 18.196655) / 2, 2e-6);
    EXPECT_NEAR(static_cast<double>(p.z), (1.795015 - 1.133334) / 2, 2e-7);
}

TEST(ReadObj, TheTorsoIsUnwrappedInAFixedBox) {
    const DebugCapture debug;
    const Read read(kTorso, kObjUnwrap);
    EXPECT_EQ(debug.text(), "");
    // Single precision of a quotient of about 2.
    EXPECT_NEAR(static_cast<double>(read.vertices("TORSO_Group1")[0].uv.y),
                (10 + 3.303503) / 6.607006, 3e-7);
    std::string other = kTorso;
    other.replace(other.find("TORSO_Group1"), 12, "TORSO_Group2");
    EXPECT_EQ(Read(other, kObjUnwrap).vertices("TORSO_Group2")[0].uv.y, 0.0f);
}

TEST(ReadObj, TheTorsoIsUnwrappedAfterItIsRecentred) {
    const DebugCapture debug;
    const Read read(kTorso, kObjRecentreObjects | kObjUnwrap);
    const double centre = (11.589649 + 18.196655) / 2;
    // Single precision of numbers below 1, from differences of numbers below 32.
    EXPECT_NEAR(static_cast<double>(read.vertices("TORSO_Group1")[0].uv.y),
                (10 - centre + 3.303503) / 6.607006, 5e-7);
}

TEST(ReadObjFile, ReadsAFileByItsWindowsName) {
    const TempFolder folder;
    folder.write("models/Cube.OBJ", kCorners + kFace);
    ObjObjects objects;
    EXPECT_TRUE(ReadObjFile(folder.path().string() + "\\MODELS\\cube.obj", objects, 0));
    EXPECT_EQ(objects.size(), 1u);
}

TEST(ReadObjFile, ReportsAMissingFileInOneLine) {
    const DebugCapture debug;
    ObjObjects objects;
    const std::size_t before = BadFileCount();
    EXPECT_FALSE(ReadObjFile("nowhere\\cube.obj", objects, 0));
    EXPECT_EQ(debug.text(), "nowhere\\cube.obj: the file cannot be read\n");
    EXPECT_EQ(BadFileCount(), before + 1);
}

TEST(ReadObjFile, AnEmptyNameIsNoFault) {
    const DebugCapture debug;
    ObjObjects objects;
    EXPECT_FALSE(ReadObjFile("", objects, 0));
    EXPECT_EQ(debug.text(), "");
}

TEST(ReadObjFile, ReportsIndicesOutOfRangeOnceForAFile) {
    const TempFolder folder;
    folder.write("a.obj", kCorners + kFace + "f 9/9/9 9/9/9 9/9/9\nf 1/1/1 2/2/2 7/7/7\n");
    const std::string name = folder.file("a.obj");
    const DebugCapture debug;
    ObjObjects objects;
    EXPECT_TRUE(ReadObjFile(name, objects, 0));
    EXPECT_EQ(debug.text(),
              name + ": 2 of its 3 triangles are left out: an index is out of range\n");
    EXPECT_EQ(debug.messages().size(), 1u);
}

TEST(ReadObjFile, TellsTheFaultInsteadOfReportingItWhenAskedTo) {
    const DebugCapture debug;
    ObjObjects objects;
    std::string fault;
    EXPECT_FALSE(ReadObjFile("nowhere.obj", objects, 0, &fault));
    EXPECT_THAT(fault, HasSubstr("cannot be read"));
    EXPECT_EQ(debug.text(), "");
}

TEST(ReadObjFile, AFolderIsNoFile) {
    const TempFolder folder;
    const DebugCapture debug;
    ObjObjects objects;
    EXPECT_FALSE(ReadObjFile(folder.path().string(), objects, 0));
    EXPECT_THAT(debug.text(), HasSubstr("cannot be read"));
}

}  // namespace
