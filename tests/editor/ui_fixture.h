// What tests of the editor's drawing share: a hub that draws into a small target, the target's
// pixels, and a plain canvas that paints the same with loops.
#pragma once

#include <GL/glew.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include "editor/ui_master.h"
#include "gpu/gl_framebuffer.h"
#include "platform/debug_output.h"
#include "support/gl_fixture.h"
#include "support/temp_folder.h"

// RGBA floats, top row first.
struct Picture {
    int width = 0, height = 0;
    std::vector<Vec4> pixels;

    Picture(int w, int h, const Vec4& background)
        : width(w), height(h), pixels(static_cast<std::size_t>(w * h), background) {}
    Vec4& at(int x, int y) { return pixels[static_cast<std::size_t>(y * width + x)]; }
    const Vec4& at(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }

    // Source over, as the editor's blending does it: alpha too is multiplied by alpha.
    void blend(int x, int y, const Vec4& c) {
        if (x < 0 || y < 0 || x >= width || y >= height) return;
        if (clip && !clip(x, y)) return;
        Vec4& p = at(x, y);
        const auto mix = [&](float source, float old) { return source * c.a + old * (1 - c.a); };
        p = {mix(c.r, p.r), mix(c.g, p.g), mix(c.b, p.b), mix(c.a, p.a)};
    }
    void fill(int x, int y, int w, int h, const Vec4& c) {
        for (int row = y; row < y + h; ++row) {
            for (int column = x; column < x + w; ++column) blend(column, row, c);
        }
    }
    // The pixels of GL_LINE_STRIP round a rectangle of positive size.
    void outline(int x, int y, int w, int h, const Vec4& c) {
        fill(x, y, w, 1, c);
        fill(x + w - 1, y, 1, h, c);
        fill(x, y + h, w, 1, c);
        fill(x - 1, y, 1, h, c);
    }

    std::function<bool(int x, int y)> clip;
};

// A 16-bit float keeps 11 bits, and every blend rounds again.
constexpr double kBlendTolerance = 1.0 / 255;

inline double Difference(const Vec4& a, const Vec4& b) {
    const float most = std::max(std::max(std::fabs(a.r - b.r), std::fabs(a.g - b.g)),
                                std::max(std::fabs(a.b - b.b), std::fabs(a.a - b.a)));
    return static_cast<double>(most);
}

inline void ExpectSamePicture(const Picture& actual, const Picture& expected,
                              double tolerance = kBlendTolerance) {
    ASSERT_EQ(actual.width, expected.width);
    ASSERT_EQ(actual.height, expected.height);
    int told = 0;
    for (int y = 0; y < actual.height; ++y) {
        for (int x = 0; x < actual.width; ++x) {
            const Vec4 &a = actual.at(x, y), &e = expected.at(x, y);
            if (Difference(a, e) <= tolerance) continue;
            if (++told > 5) continue;
            ADD_FAILURE() << "pixel " << x << ", " << y << " is " << a.r << " " << a.g << " " << a.b
                          << " " << a.a << " and not " << e.r << " " << e.g << " " << e.b << " "
                          << e.a;
        }
    }
    EXPECT_EQ(told, 0) << "pixels that differ";
}

class UiTest : public GlTest {
  protected:
    void SetUp() override {
        GlTest::SetUp();
        if (HasFatalFailure()) return;
        const char* fonts = std::getenv("VORN_TEST_FONTS");
        ASSERT_NE(fonts, nullptr) << "VORN_TEST_FONTS names the folder of the fonts";
        const WorkingFolder folder(std::filesystem::path(fonts).parent_path());
        const DebugCapture silent;
        ASSERT_TRUE(master.Init());
        useSize(96, 64);
    }

    void useSize(int w, int h) {
        master.width = w;
        master.height = h;
        target = std::make_unique<GL_FrameBuffer>(w, h, 1, 16, GL_RGBA, TargetDepth::None,
                                                  TargetWrap::Border);
    }

    void begin(const Vec4& background = {0, 0, 0, 0}) {
        target->Bind();
        target->SelectDrawBuffers();
        glClearColor(background.r, background.g, background.b, background.a);
        glClear(GL_COLOR_BUFFER_BIT);
        master.BeginFrame();
    }

    Picture end() {
        master.Flush();
        glDisable(GL_BLEND);
        GL_FrameBuffer::Unbind();
        Picture picture(target->width, target->height, {});
        const std::vector<float> floats = ReadTarget(*target);
        for (int y = 0; y < picture.height; ++y) {
            for (int x = 0; x < picture.width; ++x) {
                const std::size_t bottomUp = static_cast<std::size_t>(picture.height - 1 - y);
                const float* p = &floats[(bottomUp * static_cast<std::size_t>(picture.width) +
                                          static_cast<std::size_t>(x)) *
                                         4];
                picture.at(x, y) = {p[0], p[1], p[2], p[3]};
            }
        }
        return picture;
    }

    Picture blank(const Vec4& background = {0, 0, 0, 0}) const {
        return {target->width, target->height, background};
    }

    UI_Master master;
    std::unique_ptr<GL_FrameBuffer> target;
};
