#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "core/image_node_shader.h"
#include "image/image_node_reader.h"
#include "image/read_image_file.h"
#include "platform/debug_output.h"
#include "support/graph_fixture.h"
#include "support/picture_files.h"
#include "support/temp_folder.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// The nearest float, as every operation of single precision gives it.
float Single(double value) {
    return static_cast<float>(value);
}

double Double(float value) {
    return static_cast<double>(value);
}

// The diagonal's first two elements, each step in double precision and rounded where single
// precision rounds.
struct Fit {
    float x, y;
};

Fit ExpectedFit(int mode, int width, int height, float scaleFac) {
    const double s = Double(scaleFac);
    const float ratio = Single(static_cast<double>(width) / height);
    const float toFrame = Single(Double(ratio) / Double(1.7777778f));
    const auto divided = [s](float value) { return Single(Double(value) / s); };
    const auto reciprocal = [](float value) { return Single(1.0 / Double(value)); };
    if (mode == 2) return {1, 1};
    if (mode == 1) {
        return {divided(reciprocal(Single(width / 1920.0))),
                divided(reciprocal(Single(height / 1080.0)))};
    }
    if (width > height) return {divided(1), divided(toFrame)};
    if (width < height) return {divided(reciprocal(toFrame)), divided(1)};
    return {scaleFac, scaleFac};
}

// All elements of F * T, T a translation by 0.5 - position.
void ExpectMatrix(const Mat4& actual, const Fit& fit, float positionX, float positionY,
                  float element10) {
    const float tx = Single(0.5 - Double(positionX)), ty = Single(0.5 - Double(positionY));
    const float moved[2] = {Single(Double(fit.x) * Double(tx)), Single(Double(fit.y) * Double(ty))};
    const float expected[16] = {fit.x, 0, 0,         0, 0,        fit.y,    0, 0,
                                0,     0, element10, 0, moved[0], moved[1], 0, 1};
    for (int i = 0; i < 16; ++i) EXPECT_EQ(actual[i], expected[i]) << "element " << i;
}

class ReaderTest : public GraphTest {
  protected:
    void writePng(const std::string& name, int width, int height, int channels,
                  const std::vector<std::uint8_t>& pixels) {
        const PngKind kind = {.colorType = channels == 4 ? 6 : 2};
        writeFile(name, MakePng(static_cast<std::uint32_t>(width),
                                static_cast<std::uint32_t>(height), kind, pixels));
    }
    void writeFile(const std::string& name, const FileContent& content) {
        folder.write(name, std::string(content.begin(), content.end()));
    }
    void writePlainPng(const std::string& name, int width, int height, int channels = 3) {
        writePng(
            name, width, height, channels,
            std::vector<std::uint8_t>(static_cast<std::size_t>(width * height * channels), 128));
    }

    // Runs the reader; how often a picture was uploaded by it.
    int loadsOfRun() {
        const DebugCapture capture;
        EXPECT_TRUE(reader.process());
        const auto messages = capture.messages();
        return static_cast<int>(
            std::count_if(messages.begin(), messages.end(), [](const std::string& message) {
                return message.find("Texture Memory Consumed") != std::string::npos;
            }));
    }
    std::string linesOfRun() {
        const DebugCapture capture;
        EXPECT_TRUE(reader.process());
        return capture.text();
    }

    // Bytes of the picture as the GPU has them.
    static std::vector<std::uint8_t> texels(const GL_Image& image, GLenum format, int channels) {
        std::vector<std::uint8_t> bytes(
            static_cast<std::size_t>(image.width * image.height * channels));
        image.BindTexture(0, GL_TEXTURE0);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glGetTexImage(GL_TEXTURE_2D, 0, format, GL_UNSIGNED_BYTE, bytes.data());
        image.UnbindTextures(GL_TEXTURE0);
        return bytes;
    }

    // A node that shows the reader's picture through its matrix.
    ImageNode_Shader& addShow() {
        NodeScript script;
        parseScript(R"(Name "Show", "Test" Input 0, "Image", "color"
Source #version 330 core
uniform sampler2D Image;
in vec2 texcoord_Input[8];
out vec4 frag[1];
void main() { frag[0] = texture(Image, texcoord_Input[0]); })",
                    "show", script);
        auto& show = add<ImageNode_Shader>("show", script);
        EXPECT_FALSE(show.hasError);
        link(reader, show, 0);
        return show;
    }

    TempFolder folder;
    WorkingFolder workingFolder{folder.path()};
    ImageNode_Reader& reader = add<ImageNode_Reader>("reader");
};

}  // namespace

TEST(ReaderFit, IsTheSameAsInDoublePrecisionRoundedStepByStep) {
    constexpr int kSizes[][2] = {{1920, 1080}, {1080, 1920}, {64, 64},   {640, 480}, {3, 2},
                                 {2, 3},       {1, 8192},    {8192, 1},  {1, 1},     {1921, 1079},
                                 {333, 777},   {777, 333},   {500, 500}, {16, 9},    {1366, 768}};
    for (const auto& size : kSizes) {
        for (const float scaleFac : {1.0f, 2.0f, 0.3f, 0.0001f, 10.0f, 1.7f, 0.7777f}) {
            for (const int mode : {0, 1, 2}) {
                const Mat4 fit = ReaderFitMatrix(mode, size[0], size[1], scaleFac);
                ExpectMatrix(fit, ExpectedFit(mode, size[0], size[1], scaleFac), 0.5f, 0.5f, 0);
            }
        }
    }
}

TEST(ReaderFit, LeavesThePictureAsItIsInAModeThatIsNotThere) {
    ExpectMatrix(ReaderFitMatrix(3, 640, 480, 2), {1, 1}, 0.5f, 0.5f, 1);
    ExpectMatrix(ReaderFitMatrix(-1, 640, 480, 2), {1, 1}, 0.5f, 0.5f, 1);
}

TEST(ReaderFit, HalvesASquarePictureWhereItDoublesAWideOne) {
    EXPECT_EQ(ReaderFitMatrix(0, 64, 64, 2)[0], 2.0f);
    EXPECT_EQ(ReaderFitMatrix(0, 64, 64, 2)[5], 2.0f);
    EXPECT_EQ(ReaderFitMatrix(0, 64, 32, 2)[0], 0.5f);
}

TEST_F(ReaderTest, DeclaresItsParametersInOrder) {
    const auto values = engine.valuesOf(&reader);
    std::vector<std::string> names;
    std::vector<int> kinds;
    for (const Value_Object* value : values) {
        names.push_back(value->name);
        kinds.push_back(value->getType());
    }
    EXPECT_THAT(names,
                ElementsAre("Filename", "Scale", "Position", "ScaleFac", "Repeat", "PreMultiply"));
    EXPECT_THAT(kinds, ElementsAre(kValueString, kValueInt, kValueVec2, kValueFloat, kValueBool,
                                   kValueBool));
    EXPECT_THAT(dynamic_cast<const ValueInt&>(*values[1]).options,
                ElementsAre("FIT", "1080p REFERENCE", "STRETCH"));
    const auto& factor = dynamic_cast<const ValueFloat&>(*values[3]);
    EXPECT_EQ(factor.min, 0.0001f);
    EXPECT_EQ(factor.max, 10.0f);
    EXPECT_EQ(factor.decimals, 4);
    EXPECT_EQ(reader.filename, "");
    EXPECT_EQ(reader.scaleMode, 0);
    EXPECT_EQ(reader.scaleFac, 1.0f);
    EXPECT_THAT(reader.position, ElementsAre(0.5f, 0.5f));
    EXPECT_FALSE(reader.repeat);
    EXPECT_FALSE(reader.preMultiply);
    EXPECT_EQ(reader.inputCount, 0);
    EXPECT_FALSE(reader.canConnect(0, &reader));
}

TEST_F(ReaderTest, PlacesPicturesOfAnyShapeInAnyMode) {
    constexpr int kSizes[][2] = {{32, 32}, {48, 20}, {20, 48}};
    for (const auto& size : kSizes) {
        const std::string name = std::to_string(size[0]) + ".png";
        writePlainPng(name, size[0], size[1]);
        reader.filename = name;
        for (const int mode : {0, 1, 2}) {
            set(reader, "Scale", {static_cast<float>(mode)});
            set(reader, "Position", {0.3f, 0.85f});
            set(reader, "ScaleFac", {1.3f});
            loadsOfRun();
            EXPECT_FALSE(reader.hasError);
            ExpectMatrix(reader.textureMatrix, ExpectedFit(mode, size[0], size[1], 1.3f), 0.3f,
                         0.85f, 0);
        }
    }
}

TEST_F(ReaderTest, ShowsAFullHdPictureAsItIsInReferenceMode) {
    writePlainPng("hd.png", 1920, 1080);
    reader.filename = "hd.png";
    set(reader, "Scale", {1});
    EXPECT_EQ(loadsOfRun(), 1);
    ExpectMatrix(reader.textureMatrix, {1, 1}, 0.5f, 0.5f, 0);
}

TEST_F(ReaderTest, HasAnErrorAndOnlyItsPlaceWithoutAPicture) {
    set(reader, "Position", {0.25f, 0.75f});
    set(reader, "ScaleFac", {3});
    EXPECT_EQ(linesOfRun(), "");  // an empty name is no mistake
    EXPECT_TRUE(reader.hasError);
    EXPECT_EQ(reader.images[0], nullptr);
    ExpectMatrix(reader.textureMatrix, {1, 1}, 0.25f, 0.75f, 1);
}

TEST_F(ReaderTest, RefusesPaletteAndGreyPictures) {
    writeFile("palette.png", MakePng(4, 4, {.colorType = 3}, std::vector<std::uint8_t>(16, 1)));
    writeFile("grey.png", MakePng(4, 4, {.colorType = 0}, std::vector<std::uint8_t>(16, 9)));
    writePlainPng("good.png", 4, 4);
    for (const char* name : {"palette.png", "grey.png", "missing.png"}) {
        reader.filename = "good.png";
        EXPECT_EQ(loadsOfRun(), 1);
        reader.filename = name;
        const std::string line = linesOfRun();
        EXPECT_THAT(line, HasSubstr(name));
        EXPECT_EQ(std::count(line.begin(), line.end(), '\n'), 1);
        EXPECT_TRUE(reader.hasError);
        EXPECT_EQ(reader.images[0], nullptr);
        ExpectMatrix(reader.textureMatrix, {1, 1}, 0.5f, 0.5f, 1);
    }
}

TEST_F(ReaderTest, ReloadsForNameAndFlagsOnly) {
    writePlainPng("a.png", 4, 4);
    writePlainPng("b.png", 4, 8);
    reader.filename = "a.png";
    EXPECT_EQ(loadsOfRun(), 1);
    EXPECT_EQ(loadsOfRun(), 0);
    set(reader, "Position", {0.1f, 0.2f});
    set(reader, "Scale", {2});
    set(reader, "ScaleFac", {5});
    EXPECT_EQ(loadsOfRun(), 0);
    reader.repeat = true;
    EXPECT_EQ(loadsOfRun(), 1);
    reader.preMultiply = true;  // of three channels: nothing changes, and it is loaded all the same
    EXPECT_EQ(loadsOfRun(), 1);
    reader.filename = "b.png";
    EXPECT_EQ(loadsOfRun(), 1);
    EXPECT_EQ(reader.images[0]->height, 8);
    reader.repeat = false;
    reader.preMultiply = false;
    EXPECT_EQ(loadsOfRun(), 1);
    EXPECT_EQ(loadsOfRun(), 0);
}

TEST_F(ReaderTest, TriesAFailedFileAgainOnlyWhenAValueChanges) {
    reader.filename = "late.png";
    EXPECT_NE(linesOfRun(), "");
    writePlainPng("late.png", 4, 4);
    EXPECT_EQ(linesOfRun(), "");
    EXPECT_TRUE(reader.hasError);
    reader.repeat = true;
    EXPECT_EQ(loadsOfRun(), 1);
    EXPECT_FALSE(reader.hasError);
}

TEST_F(ReaderTest, LoadsWithTheGpuPassesOff) {
    writePlainPng("a.png", 4, 4);
    reader.filename = "a.png";
    engine.renderEnabled = 0;
    EXPECT_EQ(loadsOfRun(), 1);
}

TEST_F(ReaderTest, FindsAPictureByItsWindowsName) {
    folder.file("Graphics/x");
    writePlainPng("Graphics/Logo.png", 4, 4);
    reader.filename = ".\\graphics\\LOGO.PNG";
    EXPECT_EQ(loadsOfRun(), 1);
}

TEST_F(ReaderTest, HandsTheRowsOnFromTheTop) {
    const std::vector<std::uint8_t> pixels = NoisePixels(5, 3, 3);
    writePng("rgb.png", 5, 3, 3, pixels);
    reader.filename = "rgb.png";
    EXPECT_EQ(loadsOfRun(), 1);
    EXPECT_EQ(texels(*reader.images[0], GL_RGB, 3), pixels);
}

TEST_F(ReaderTest, MultipliesEveryColourByEveryAlphaAndCuts) {
    std::vector<std::uint8_t> pixels, expected;
    for (int alpha = 0; alpha < 256; ++alpha) {
        for (int colour = 0; colour < 256; ++colour) {
            const int rgb[3] = {colour, 255 - colour, colour / 2};
            const float factor = static_cast<float>(alpha) / 255.0f;
            for (const int c : rgb) {
                pixels.push_back(static_cast<std::uint8_t>(c));
                const volatile float product = static_cast<float>(c) * factor;
                expected.push_back(static_cast<std::uint8_t>(std::trunc(product)));
            }
            pixels.push_back(static_cast<std::uint8_t>(alpha));
            expected.push_back(static_cast<std::uint8_t>(alpha));
        }
    }
    writePng("rgba.png", 256, 256, 4, pixels);
    reader.filename = "rgba.png";
    EXPECT_EQ(loadsOfRun(), 1);
    EXPECT_EQ(texels(*reader.images[0], GL_RGBA, 4), pixels);
    reader.preMultiply = true;
    EXPECT_EQ(loadsOfRun(), 1);
    EXPECT_EQ(texels(*reader.images[0], GL_RGBA, 4), expected);
}

TEST_F(ReaderTest, LeavesThreeChannelsAloneWhenItMultiplies) {
    const std::vector<std::uint8_t> pixels = NoisePixels(6, 6, 3);
    writePng("rgb.png", 6, 6, 3, pixels);
    std::uint32_t width = 9, height = 9, channels = 9;
    std::unique_ptr<std::uint8_t[]> bytes;
    ReadImageFile("rgb.png", width, height, channels, bytes, true);
    ASSERT_NE(bytes, nullptr);
    EXPECT_THAT((std::vector<std::uint32_t>{width, height, channels}), ElementsAre(6, 6, 3));
    EXPECT_TRUE(std::equal(pixels.begin(), pixels.end(), bytes.get()));
}

TEST_F(ReaderTest, ClearsAllResultsOfAFailedRead) {
    std::uint32_t width = 9, height = 9, channels = 9;
    std::unique_ptr<std::uint8_t[]> bytes(new std::uint8_t[3]);
    ReadImageFile("none.png", width, height, channels, bytes, false);
    EXPECT_EQ(bytes, nullptr);
    EXPECT_THAT((std::vector<std::uint32_t>{width, height, channels}), ElementsAre(0, 0, 0));
}

// Left half red, right half green, moved a quarter of the frame to the right.
TEST_F(ReaderTest, ShowsTheBorderOutsideOfAPictureThatDoesNotRepeat) {
    std::vector<std::uint8_t> pixels;
    for (int i = 0; i < 64 * 36; ++i) {
        const bool left = i % 64 < 32;
        for (const int c : {left ? 255 : 0, left ? 0 : 255, 0, 255}) {
            pixels.push_back(static_cast<std::uint8_t>(c));
        }
    }
    writePng("halves.png", 64, 36, 4, pixels);
    reader.filename = "halves.png";
    set(reader, "Scale", {2});
    set(reader, "Position", {0.75f, 0.5f});
    const Region row = {0, 540, kFrameWidth, 1};
    const DebugCapture silent;
    ImageNode_Shader& show = addShow();
    const auto expectColours = [&](const Vec4& outside) {
        const RegionPixels shown = draw(show, row);
        // Well inside of each part, where all four texels are the same.
        const auto at = [&](int x) {
            const float* p = shown.at(x, 540);
            return std::vector<float>(p, p + 4);
        };
        EXPECT_THAT(at(200), ElementsAre(outside.r, outside.g, outside.b, outside.a));
        EXPECT_THAT(at(700), ElementsAre(1, 0, 0, 1));
        EXPECT_THAT(at(1600), ElementsAre(0, 1, 0, 1));
    };
    expectColours({0, 0, 0, 0});
    reader.repeat = true;
    reader.updated = false;
    expectColours({0, 1, 0, 1});
}
