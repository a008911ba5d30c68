#include <array>
#include <random>

#include "gpu/gl_mem_texture.h"
#include "gpu/shader_program.h"
#include "ui_fixture.h"

namespace {

constexpr Vec4 kBackground = {0.25f, 0.5f, 0.125f, 1};
constexpr Vec4 kRed = {1, 0, 0, 1};
constexpr Vec4 kThinBlue = {0, 0.25f, 1, 0.25f};

struct Point {
    double x, y;
};
using Triangle = std::array<Point, 3>;

// How many of the triangles cover the centre of a pixel; -1 when it lies so near an edge that the
// rasteriser, which works in 1/256 of a pixel, may decide either way.
int Coverage(const std::vector<Triangle>& triangles, int x, int y) {
    const Point p = {x + 0.5, y + 0.5};
    int count = 0;
    for (const Triangle& t : triangles) {
        double least = 1e9;
        const double area =
            (t[1].x - t[0].x) * (t[2].y - t[0].y) - (t[2].x - t[0].x) * (t[1].y - t[0].y);
        if (area == 0) continue;
        for (std::size_t i = 0; i < 3; ++i) {
            const Point &a = t[i], &b = t[(i + 1) % 3];
            const double length = std::hypot(b.x - a.x, b.y - a.y);
            const double side = (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
            least = std::min(least, (area > 0 ? side : -side) / length);
        }
        if (std::fabs(least) < 0.01) return -1;
        if (least > 0) ++count;
    }
    return count;
}

// A quad as two triangles whose common edge is left open, so that it hides nothing from the test.
void AddLine(std::vector<std::array<Point, 4>>& quads, Point a, Point b, double width) {
    const double length = std::hypot(b.x - a.x, b.y - a.y);
    const double nx = -(b.y - a.y) / length * width / 2, ny = (b.x - a.x) / length * width / 2;
    quads.push_back({Point{a.x + nx, a.y + ny}, Point{b.x + nx, b.y + ny},
                     Point{b.x - nx, b.y - ny}, Point{a.x - nx, a.y - ny}});
}

int QuadCoverage(const std::vector<std::array<Point, 4>>& quads, int x, int y) {
    int count = 0;
    for (const auto& quad : quads) {
        double least = 1e9;
        for (std::size_t i = 0; i < 4; ++i) {
            const Point &a = quad[i], &b = quad[(i + 1) % 4];
            const double side = (b.x - a.x) * (y + 0.5 - a.y) - (b.y - a.y) * (x + 0.5 - a.x);
            least = std::min(least, -side / std::hypot(b.x - a.x, b.y - a.y));
        }
        if (std::fabs(least) < 0.01) return -1;
        if (least > 0) ++count;
    }
    return count;
}

void ExpectCoverage(const Picture& actual, const std::function<int(int, int)>& coverage,
                    const Vec4& color) {
    int covered = 0, undecided = 0;
    for (int y = 0; y < actual.height; ++y) {
        for (int x = 0; x < actual.width; ++x) {
            const int count = coverage(x, y);
            if (count < 0) {
                ++undecided;
                continue;
            }
            Picture pixel(1, 1, kBackground);
            for (int i = 0; i < count; ++i) pixel.blend(0, 0, color);
            covered += count > 0 ? 1 : 0;
            EXPECT_LE(Difference(actual.at(x, y), pixel.at(0, 0)), kBlendTolerance)
                << x << ", " << y << " is covered " << count << " times";
        }
    }
    EXPECT_GT(covered, undecided) << "the comparison must say something";
}

GLint Get(GLenum name) {
    GLint value = -1;
    glGetIntegerv(name, &value);
    return value;
}

class UiDrawTest : public UiTest {
  protected:
    // The same outline as a line strip that OpenGL itself draws, counted by adding 1 a pixel.
    void drawLineStrip(float x, float y, float w, float h) {
        const char* vertex = R"(
#version 330 core
in vec4 vertex;
uniform vec2 size;
void main() {
    gl_Position = vec4(vertex.x * 2.0 / size.x - 1.0, 1.0 - vertex.y * 2.0 / size.y, 0.0, 1.0);
}
)";
        const char* fragment = R"(
#version 330 core
out vec4 frag[1];
void main() { frag[0] = vec4(1.0); }
)";
        const DebugCapture silent;
        const ShaderProgram program("strip", vertex, nullptr, fragment, {"vertex"}, 1);
        const float points[] = {x, y, x + w, y, x + w, y + h, x, y + h, x, y};
        GLuint array = 0, buffer = 0;
        glGenVertexArrays(1, &array);
        glBindVertexArray(array);
        glGenBuffers(1, &buffer);
        glBindBuffer(GL_ARRAY_BUFFER, buffer);
        glBufferData(GL_ARRAY_BUFFER, sizeof points, points, GL_STATIC_DRAW);
        glEnableVertexAttribArray(0);
        glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 8, nullptr);
        program.Use();
        glUniform2f(program.UniformLocation("size"), static_cast<float>(master.width),
                    static_cast<float>(master.height));
        glDrawArrays(GL_LINE_STRIP, 0, 5);
        ShaderProgram::Unuse();
        glBindVertexArray(0);
        glBindBuffer(GL_ARRAY_BUFFER, 0);
        glDeleteVertexArrays(1, &array);
        glDeleteBuffers(1, &buffer);
    }
};

}  // namespace

TEST_F(UiDrawTest, FillsExactlyThePixelsOfARectangle) {
    Picture expected = blank(kBackground);
    begin(kBackground);
    const int rects[][4] = {
        {3, 5, 10, 7}, {90, 60, 20, 20}, {-4, -3, 6, 5}, {50, 20, 0, 9}, {60, 30, 1, 1}};
    for (const auto& r : rects) {
        master.SetColor(kThinBlue);
        master.FillRect(r[0], r[1], r[2], r[3]);
        expected.fill(r[0], r[1], r[2], r[3], kThinBlue);
    }
    ExpectSamePicture(end(), expected);
}

TEST_F(UiDrawTest, FillsARectangleOfNegativeSizeBackwards) {
    Picture expected = blank();
    begin();
    master.SetColor(kRed);
    master.FillRect(30, 20, -10, -5);
    expected.fill(20, 15, 10, 5, kRed);
    ExpectSamePicture(end(), expected, 0);
}

TEST_F(UiDrawTest, DrawsLaterThingsOverEarlierOnes) {
    Picture expected = blank(kBackground);
    begin(kBackground);
    const Vec4 colors[] = {kRed, kThinBlue, {0, 1, 0, 0.5f}};
    for (int i = 0; i < 3; ++i) {
        master.SetColor(colors[i]);
        master.FillRect(10 + 5 * i, 10 + 3 * i, 20, 20);
        expected.fill(10 + 5 * i, 10 + 3 * i, 20, 20, colors[i]);
    }
    ExpectSamePicture(end(), expected);
    EXPECT_EQ(master.drawCalls(), 1);
}

TEST_F(UiDrawTest, OutlinesThePixelsOfARealLineStrip) {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> place(-10, 90), size(-30, 60);
    int sizes[40][4];
    for (auto& r : sizes) {
        for (int i = 0; i < 2; ++i) r[i] = place(random);
        for (int i = 2; i < 4; ++i) r[i] = size(random);
    }
    sizes[0][2] = 0;
    sizes[1][3] = 0;
    sizes[2][2] = sizes[2][3] = 0;
    for (const auto& r : sizes) {
        SCOPED_TRACE(testing::Message() << r[0] << ", " << r[1] << " " << r[2] << " by " << r[3]);
        begin();
        glBlendFunc(GL_ONE, GL_ONE);
        master.SetColor({1, 1, 1, 1});
        master.OutlineRect(r[0], r[1], r[2], r[3]);
        const Picture actual = end();
        begin();
        glBlendFunc(GL_ONE, GL_ONE);
        drawLineStrip(static_cast<float>(r[0]), static_cast<float>(r[1]), static_cast<float>(r[2]),
                      static_cast<float>(r[3]));
        ExpectSamePicture(actual, end(), 0);
    }
}

TEST_F(UiDrawTest, DrawsThickLinesWithHalfTheirWidthOnEachSide) {
    const struct {
        float width;
        int x1, y1, x2, y2;
    } lines[] = {{1.5f, 5, 5, 80, 9}, {4, 70, 50, 20, 12}, {2, 10, 30, 10, 60}, {1, 3, 60, 90, 48}};
    for (const auto& line : lines) {
        begin(kBackground);
        master.SetColor(kThinBlue);
        master.DrawThickLine(line.width, line.x1, line.y1, line.x2, line.y2);
        std::vector<std::array<Point, 4>> quads;
        AddLine(quads, {double(line.x1), double(line.y1)}, {double(line.x2), double(line.y2)},
                static_cast<double>(line.width));
        ExpectCoverage(
            end(), [&](int x, int y) { return QuadCoverage(quads, x, y); }, kThinBlue);
    }
}

TEST_F(UiDrawTest, DrawsSoftLinesThatFadeOverOnePixel) {
    const struct {
        float width;
        Vec2 from, to;
    } lines[] = {
        {2, {4, 30.5f}, {90, 30.5f}},
        {1, {4, 30}, {90, 30}},
        {3.2f, {10, 8}, {80, 50}},
        {0.5f, {70, 5}, {30, 60}},
    };
    for (const auto& line : lines) {
        const float dx = line.to.x - line.from.x, dy = line.to.y - line.from.y;
        const float length = std::sqrt(dx * dx + dy * dy);
        const Vec2 normal = {-dy / length, dx / length};
        begin();
        master.SetColor({0, 0.5f, 1, 1});
        master.DrawSoftLine(line.width, {line.from, normal}, {line.to, normal});
        const Picture picture = end();
        int inside = 0;
        for (int y = 0; y < picture.height; ++y) {
            for (int x = 0; x < picture.width; ++x) {
                const float px = static_cast<float>(x) + 0.5f - line.from.x;
                const float py = static_cast<float>(y) + 0.5f - line.from.y;
                const float along = (px * dx + py * dy) / length;
                const float away = std::fabs(px * normal.x + py * normal.y);
                // Whether a pixel on the end belongs to the line is up to the rasterizer.
                if (std::fabs(along) < 0.01f || std::fabs(along - length) < 0.01f) continue;
                const bool beside = along < 0 || along > length;
                const float expected =
                    beside ? 0 : std::clamp(line.width / 2 + 0.5f - away, 0.0f, 1.0f);
                // The width is counted in 256ths of a pixel, and so are the places of corners.
                ASSERT_NEAR(picture.at(x, y).b, expected, 3.0 / 256) << x << ", " << y;
                inside += expected > 0 ? 1 : 0;
            }
        }
        EXPECT_GT(inside, 60);
        EXPECT_EQ(master.drawCalls(), 1);
    }
}

TEST_F(UiDrawTest, DrawsAThinLevelLineOnOneRow) {
    begin();
    master.SetColor(kRed);
    master.DrawThickLine(1, 3, 30, 90, 30);
    const Picture picture = end();
    int rows = 0;
    for (int y = 0; y < picture.height; ++y) {
        int covered = 0;
        for (int x = 0; x < picture.width; ++x) covered += picture.at(x, y).r == 1 ? 1 : 0;
        if (covered == 0) continue;
        EXPECT_EQ(covered, 87);
        EXPECT_TRUE(y == 29 || y == 30) << "both rows touch the line alike: " << y;
        ++rows;
    }
    EXPECT_EQ(rows, 1);
}

TEST_F(UiDrawTest, DrawsNothingForALineWithoutLength) {
    begin();
    master.SetColor(kRed);
    master.DrawThickLine(5, 20, 20, 20, 20);
    ExpectSamePicture(end(), blank(), 0);
}

TEST_F(UiDrawTest, DrawsARingOfNinetyOnePixelWideChords) {
    std::vector<std::array<Point, 4>> quads;
    const auto at = [](int step) {
        const double angle = step * 2 * std::acos(-1.0) / 90;
        return Point{45 + 25 * std::cos(angle), 30 + 25 * std::sin(angle)};
    };
    for (int step = 0; step < 90; ++step) AddLine(quads, at(step), at(step + 1), 1);
    begin(kBackground);
    master.SetColor(kThinBlue);
    master.DrawRing(45, 30, 25);
    ExpectCoverage(
        end(), [&](int x, int y) { return QuadCoverage(quads, x, y); }, kThinBlue);
}

TEST_F(UiDrawTest, DrawsADiscOfNinetyTrianglesOfRadiusEight) {
    std::vector<Triangle> triangles;
    const auto at = [](int step) {
        const double angle = step * 2 * std::acos(-1.0) / 90;
        return Point{40 + 8 * std::cos(angle), 20 + 8 * std::sin(angle)};
    };
    for (int step = 0; step < 90; ++step)
        triangles.push_back({Point{40, 20}, at(step), at(step + 1)});
    begin(kBackground);
    master.SetColor(kThinBlue);
    master.DrawDisc(40, 20);
    ExpectCoverage(
        end(), [&](int x, int y) { return Coverage(triangles, x, y); }, kThinBlue);
}

TEST_F(UiDrawTest, ShowsTheFirstRowOfAPictureAtTheTop) {
    const DebugCapture silent;
    const std::uint8_t pixels[] = {255, 0, 0,   255, 0,   255, 0,   255,  // v = 0
                                   0,   0, 255, 255, 255, 255, 255, 255};
    const GL_MemTexture texture(2, 2, GL_RGBA, GL_CLAMP_TO_EDGE, GL_CLAMP_TO_EDGE, pixels);
    for (const bool flipV : {false, true}) {
        begin();
        texture.BindTextures(GL_TEXTURE0);
        master.SetColor({1, 0.5f, 1, 1});
        master.DrawTexturedRect(10, 20, 2, 2, flipV);
        texture.UnbindTextures(GL_TEXTURE0);
        Picture expected = blank();
        const int top = flipV ? 21 : 20, bottom = flipV ? 20 : 21;
        expected.at(10, top) = {1, 0, 0, 1};
        expected.at(11, top) = {0, 0.5f, 0, 1};
        expected.at(10, bottom) = {0, 0, 1, 1};
        expected.at(11, bottom) = {1, 0.5f, 1, 1};
        ExpectSamePicture(end(), expected);
    }
}

TEST_F(UiDrawTest, KeepsTheOrderOfPicturesAndRectangles) {
    const DebugCapture silent;
    const std::uint8_t white[] = {255, 255, 255, 255};
    const GL_MemTexture texture(1, 1, GL_RGBA, GL_REPEAT, GL_REPEAT, white);
    begin();
    master.SetColor(kRed);
    master.FillRect(10, 10, 20, 20);
    texture.BindTextures(GL_TEXTURE0);
    master.SetColor({0, 1, 0, 1});
    master.DrawTexturedRect(15, 15, 20, 20, false);
    texture.UnbindTextures(GL_TEXTURE0);
    master.SetColor(kThinBlue);
    master.FillRect(20, 20, 20, 20);
    Picture expected = blank();
    expected.fill(10, 10, 20, 20, kRed);
    expected.fill(15, 15, 20, 20, {0, 1, 0, 1});
    expected.fill(20, 20, 20, 20, kThinBlue);
    ExpectSamePicture(end(), expected);
    EXPECT_EQ(master.drawCalls(), 3);
}

TEST_F(UiDrawTest, DrawsOnlyInsideTheScissorRectangle) {
    Picture expected = blank();
    begin();
    master.SetColor(kRed);
    master.PushScissor(10, 10, 40, 30);  // from the bottom left
    master.FillRect(0, 0, 96, 64);
    expected.fill(10, 64 - 40, 40, 30, kRed);
    master.SetColor({0, 1, 0, 1});
    master.PushScissor(45, 20, 20, 10);  // not limited by the outer one
    master.FillRect(0, 0, 96, 64);
    expected.fill(45, 64 - 30, 20, 10, {0, 1, 0, 1});
    master.PopScissor();
    master.SetColor(kThinBlue);
    master.DrawThickLine(200, 48, 0, 48, 64);
    expected.fill(10, 64 - 40, 40, 30, kThinBlue);
    master.PopScissor();
    master.FillRect(90, 0, 6, 6);
    expected.fill(90, 0, 6, 6, kThinBlue);
    ExpectSamePicture(end(), expected);
    EXPECT_EQ(master.drawCalls(), 1) << "a scissor rectangle costs no draw call";
}

TEST_F(UiDrawTest, KeepsTheRectangleWhenAScissorSizeIsNegative) {
    Picture expected = blank();
    begin();
    master.SetColor(kRed);
    master.PushScissor(10, 10, 40, 30);
    master.PushScissor(0, 0, 5, -1);
    master.FillRect(0, 0, 96, 64);
    expected.fill(10, 64 - 40, 40, 30, kRed);
    ExpectSamePicture(end(), expected, 0);
}

TEST_F(UiDrawTest, DrawsAnyNumberOfRectangles) {
    begin();
    master.SetColor({1.0f / 64, 0, 0, 1});
    glBlendFunc(GL_ONE, GL_ONE);
    constexpr int kCount = 40000;
    for (int i = 0; i < kCount; ++i) master.FillRect(i % 96, i / 96 % 64, 1, 1);
    const Picture picture = end();
    float sum = 0;
    for (const Vec4& pixel : picture.pixels) sum += pixel.r * 64;
    EXPECT_EQ(sum, kCount) << "multiples of 1/64 are exact";
    EXPECT_EQ(master.drawCalls(), 3);
}

TEST_F(UiDrawTest, LeavesNothingOfItsOwnBound) {
    begin();
    glBindTexture(GL_TEXTURE_2D, 0);  // what the making of the target left
    master.SetColor(kRed);
    master.FillRect(0, 0, 5, 5);
    master.DrawText(5, 20, 12, kRed, "abc");
    master.Flush();
    EXPECT_EQ(Get(GL_CURRENT_PROGRAM), 0);
    EXPECT_EQ(Get(GL_VERTEX_ARRAY_BINDING), 0);
    EXPECT_EQ(Get(GL_ARRAY_BUFFER_BINDING), 0);
    EXPECT_EQ(Get(GL_ACTIVE_TEXTURE), GL_TEXTURE0);
    for (GLenum unit = 0; unit < 4; ++unit) {
        glActiveTexture(GL_TEXTURE0 + unit);
        EXPECT_EQ(Get(GL_TEXTURE_BINDING_2D), 0);
        EXPECT_EQ(Get(GL_TEXTURE_BINDING_BUFFER), 0);
    }
    glActiveTexture(GL_TEXTURE0);
    end();
}

TEST_F(UiDrawTest, BeginsAFrameWithBlendingAndTheWholeViewport) {
    glViewport(3, 3, 5, 5);
    glDisable(GL_BLEND);
    begin();
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_EQ(viewport[0], 0);
    EXPECT_EQ(viewport[2], master.width);
    EXPECT_EQ(viewport[3], master.height);
    EXPECT_TRUE(glIsEnabled(GL_BLEND));
    EXPECT_EQ(Get(GL_BLEND_SRC_RGB), GL_SRC_ALPHA);
    EXPECT_EQ(Get(GL_BLEND_DST_RGB), GL_ONE_MINUS_SRC_ALPHA);
    EXPECT_EQ(master.drawCalls(), 0);
    end();
}

TEST_F(UiDrawTest, InitGivesTheSizeOfTheScreenAndTheColors) {
    const DebugCapture silent;
    EXPECT_TRUE(master.Init());
    EXPECT_EQ(master.width, 1920);
    EXPECT_EQ(master.height, 1080);
    EXPECT_EQ(master.colorSlots[9].g, 0.7f);
    EXPECT_EQ(master.colorSlots[8].r, 0.25f);
    EXPECT_EQ(master.colorSlots[6].b, 0.6f);
    EXPECT_EQ(master.scissorLimits[0], -1000);
    EXPECT_EQ(master.scissorLimits[3], 999999);
    for (const Vec4& color : master.colorSlots) EXPECT_EQ(color.a, 1);
}
