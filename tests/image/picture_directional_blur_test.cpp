// The blur against the plain loop over all of its taps, bit for bit, and both against the formula
// in double precision.
#include <GL/glew.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "gpu/embedded_shaders.h"
#include "gpu/full_screen_quad.h"
#include "gpu/gl_mem_texture.h"
#include "gpu/shader_program.h"
#include "image/blur_formula.h"
#include "image/directional_blur.h"
#include "support/gl_fixture.h"
#include "support/reference_picture.h"

namespace {

using Input = DirectionalBlur::Input;
using Settings = DirectionalBlur::Settings;

constexpr int kWidth = 160;
constexpr int kHeight = 90;
constexpr Vec2 kSampleSize = {0.000520833f, 0.000925926f};
constexpr float kLengths[] = {0, 0.5f, 1, 3, 10, 54, 54.321f, 700, 1000};

// Every tap, one after the other, with weights summed on the way.
constexpr const char* kPlainLoop = R"glsl(#version 330 core
in vec2 texcoord_Input[2];
out vec4 frag[1];
uniform vec2 ng_sampleSize;
uniform sampler2D Source;
uniform sampler2D Intensity;
uniform vec2 Direction;
uniform float Length;
uniform float Mask;

void main() {
    float l = max(1.0, Length);
    float Quality = 1.0 + Length / 10.0;
    vec4 color = vec4(0.0);
    float weight = 0.0;
    for (float f = -l; f <= l; f += 0.75) {
        float w = pow(1.0 - abs(f) / l, 2.0);
        vec2 tc = Direction * f * ng_sampleSize * min(1.0, Length) * Quality;
        vec4 intensity = mix(vec4(1.0), texture(Intensity, texcoord_Input[1] + tc), Mask);
        color += texture(Source, texcoord_Input[0] + tc) * w * intensity.x;
        weight += w;
    }
    if (weight > 0.0)
        frag[0] = color / weight;
}
)glsl";

// Values of all sizes up to 4, so that sums of different order show.
ReferencePicture Noise(int width, int height, unsigned seed) {
    return {width, height, [seed](int x, int y) -> Vec4 {
                const auto value = [&](unsigned channel) {
                    unsigned mixed = static_cast<unsigned>(x) * 7919u +
                                     static_cast<unsigned>(y) * 104729u + seed * 31u +
                                     channel * 611u;
                    mixed = (mixed ^ (mixed >> 13)) * 2654435761u;
                    return static_cast<float>(mixed >> 16 & 1023) / 256;
                };
                return {value(0), value(1) / 16, value(2), value(3) / 4};
            }};
}

Mat4 Placed(float scaleX, float scaleY, float x, float y, float degrees = 0) {
    Mat4 turned, scaled, result, place;
    Mat4ComposeTRS(turned, {0, 0, 0}, {0, 0, degrees}, 1);
    Mat4Scale(scaled, {scaleX, scaleY, 1});
    Mat4Translation(place, {x, y, 0});
    Mat4 both;
    Mat4Multiply(Mat4Multiply(place, both, turned), result, scaled);
    return result;
}

class DirectionalBlurPass : public GlTest {
  protected:
    static Settings along(float x, float y, float length, float mask = 0) {
        return {kSampleSize, {x, y}, length, mask};
    }

    std::vector<float> blurred(const Input& source, const Input& mask, const Settings& settings) {
        blur.fill(target, source, mask, settings);
        return ReadTarget(target);
    }

    std::vector<float> plain(const Input& source, const Input& mask, const Settings& s) {
        const auto at = [&](const char* name) { return loop.UniformLocation(name); };
        loop.Use();
        Mat4 flip;
        Mat4Ortho2D(flip, -1, 1, 1, -1);
        glUniformMatrix4fv(at("projectionMatrix"), 1, GL_FALSE, flip.m);
        glUniformMatrix4fv(at("textureMatrix_Input[0]"), 1, GL_FALSE, source.textureMatrix.m);
        glUniformMatrix4fv(at("textureMatrix_Input[1]"), 1, GL_FALSE, mask.textureMatrix.m);
        glUniform2f(at("ng_sampleSize"), s.sampleSize.x, s.sampleSize.y);
        glUniform2f(at("Direction"), s.direction.x, s.direction.y);
        glUniform1f(at("Length"), s.length);
        glUniform1f(at("Mask"), s.maskAmount);
        glUniform1i(at("Source"), 0);
        glUniform1i(at("Intensity"), 1);
        if (mask.image != nullptr) mask.image->BindTexture(mask.attachment, GL_TEXTURE1);
        if (source.image != nullptr) source.image->BindTexture(source.attachment, GL_TEXTURE0);
        target.Fill();
        for (const GLenum unit : {GL_TEXTURE1, GL_TEXTURE0}) {
            glActiveTexture(unit);
            glBindTexture(GL_TEXTURE_2D, 0);
        }
        ShaderProgram::Unuse();
        return ReadTarget(target);
    }

    // The share of all taps that the pass takes, over the whole target.
    double takenShare(const Input& source, const Input& mask, const Settings& settings) {
        double sums[2] = {0, 0};
        blur.showTaps = true;
        for (const bool bound : {false, true}) {
            blur.boundTaps = bound;
            const std::vector<float> taps = blurred(source, mask, settings);
            for (std::size_t i = 0; i < taps.size(); i += 4)
                sums[bound] += static_cast<double>(taps[i]);
        }
        blur.showTaps = false;
        return sums[1] / sums[0];
    }

    void expectPlain(const Input& source, const Input& mask, const Settings& settings) {
        const std::vector<float> expected = plain(source, mask, settings);
        const std::vector<float> actual = blurred(source, mask, settings);
        std::size_t differing = 0;
        for (std::size_t i = 0; i < expected.size(); ++i) {
            const bool bothNone = std::isnan(expected[i]) && std::isnan(actual[i]);
            differing += !(bothNone || expected[i] == actual[i]);
        }
        EXPECT_EQ(differing, 0u) << "of " << expected.size() << " numbers, length "
                                 << settings.length << " along " << settings.direction.x << ", "
                                 << settings.direction.y;
    }

    // Bit for bit the pass without bounds. The plain loop finds the level of each tap from
    // coordinates that were rounded after the tap's offset was added: a few numbers differ, by a
    // step of a half float.
    void expectPlainWithMipmaps(const Input& source, const Input& mask, const Settings& settings) {
        const std::vector<float> expected = plain(source, mask, settings);
        const std::vector<float> actual = blurred(source, mask, settings);
        blur.boundTaps = false;
        EXPECT_EQ(blurred(source, mask, settings), actual) << "length " << settings.length;
        blur.boundTaps = true;
        for (std::size_t i = 0; i < expected.size(); ++i) {
            ASSERT_NEAR(actual[i], expected[i], std::fabs(expected[i]) / 1024 + 6e-8f);
        }
    }

    // The target against the formula. The pass turns its picture upside down.
    void expectFormula(const ReferencePicture& picture, const ReferencePicture& maskPicture,
                       const Settings& settings) {
        const auto source = picture.upload(), mask = maskPicture.upload();
        const std::vector<float> pixels = blurred({source.get()}, {mask.get()}, settings);
        int wrong = 0;
        for (int y = 0; y < kHeight; y += 3) {
            for (int x = 0; x < kWidth; x += 3) {
                const double u = (x + 0.5) / kWidth, v = 1 - (y + 0.5) / kHeight;
                const Sample expected = BlurFormula(SampledFrom(picture), SampledFrom(maskPicture),
                                                    u, v, u, v, settings);
                for (std::size_t c = 0; c < 4; ++c) {
                    const auto actual = static_cast<double>(
                        pixels[static_cast<std::size_t>(y * kWidth + x) * 4 + c]);
                    // A half float of 11 bits, cut or rounded, and single precision inside.
                    const double tolerance =
                        std::fabs(expected.rgba[c]) / 1024 + 1e-5 + expected.error;
                    wrong += !(std::fabs(actual - expected.rgba[c]) <= tolerance);
                }
            }
        }
        EXPECT_EQ(wrong, 0) << "length " << settings.length;
    }

    DirectionalBlur blur;
    GL_FrameBuffer target{kWidth, kHeight, 1, 16, GL_RGBA, TargetDepth::None, TargetWrap::Border};
    ShaderProgram loop{
        "plainLoop", EmbeddedShader("blur.vert").data(), nullptr, kPlainLoop, QuadAttributes(), 1};
    std::shared_ptr<GL_FrameBuffer> noise = Noise(384, 216, 1).upload();
    std::shared_ptr<GL_FrameBuffer> veil = Noise(192, 108, 2).upload();
};

// The same bytes of noise as a picture with mipmaps.
std::unique_ptr<GL_MemTexture> BytePicture(GLenum format, GLenum wrap) {
    std::vector<std::uint8_t> bytes;
    unsigned state = 5;
    const int channels = format == GL_RGBA ? 4 : 3;
    for (int i = 0; i < 400 * 300 * channels; ++i) {
        state = state * 1664525u + 1013904223u;
        bytes.push_back(static_cast<std::uint8_t>(state >> 24));
    }
    return std::make_unique<GL_MemTexture>(400, 300, format, wrap, wrap, bytes.data());
}

void SetWrap(const GL_Image& image, GLenum wrap) {
    image.BindTexture(0, GL_TEXTURE0);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, static_cast<GLint>(wrap));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, static_cast<GLint>(wrap));
    image.UnbindTextures(GL_TEXTURE0);
}

}  // namespace

TEST_F(DirectionalBlurPass, IsTheFormulaAtAllLengths) {
    const ReferencePicture waves = ReferencePicture::Waves(64, 36, 3);
    const ReferencePicture cover = ReferencePicture::Waves(32, 18, 4);
    ASSERT_TRUE(blur.linked());
    for (const float length : kLengths) {
        expectFormula(waves, cover, along(1, 0, length));
        expectFormula(waves, cover, along(0, 1, length, 1));
        if (length < 100) expectFormula(waves, cover, along(0.6f, -0.8f, length, 0.375f));
    }
}

TEST_F(DirectionalBlurPass, IsThePlainLoopBitForBitAtAllLengths) {
    for (const float length : kLengths) {
        expectPlain({noise.get()}, {}, along(1, 0, length));
        expectPlain({noise.get()}, {}, along(0, 1, length));
        expectPlain({noise.get()}, {veil.get()}, along(0, 1, length, 1));
    }
    expectPlain({noise.get()}, {}, along(1, 0, 3780.77f));
    expectPlain({noise.get()}, {}, along(1, 0, -20));
}

TEST_F(DirectionalBlurPass, MayBeginWithTheLengthMinusOne) {
    expectFormula(ReferencePicture::Waves(64, 36, 3), ReferencePicture::Waves(32, 18, 4),
                  along(1, 0, -1));
}

TEST_F(DirectionalBlurPass, IsThePlainLoopThroughAnyMatrix) {
    const Mat4 matrices[] = {Placed(1.3f, 0.7f, -0.2f, 0.3f), Placed(1, 1, 0.4f, -0.1f, 33),
                             Placed(-2, 1.5f, 1.6f, -0.4f),   Placed(0.1f, 0.1f, 2, 0.5f),
                             Placed(0, 0, 0.25f, 0.75f),      Placed(300, 300, -100, -200)};
    for (const Mat4& matrix : matrices) {
        for (const float length : {0.5f, 12.0f, 200.0f}) {
            expectPlain({noise.get(), 0, matrix}, {}, along(1, 0, length));
            expectPlain({noise.get(), 0, matrix}, {veil.get(), 0, Placed(2, 2, -0.6f, 0)},
                        along(-0.3f, 1.7f, length, 0.5f));
        }
    }
}

TEST_F(DirectionalBlurPass, TakesFiftyTimesFewerTapsOfLongBlurs) {
    for (const float length : {700.0f, 1000.0f}) {
        for (const Vec2 direction : {Vec2{1, 0}, Vec2{0, 1}}) {
            const Settings settings = along(direction.x, direction.y, length, 1);
            EXPECT_LT(takenShare({noise.get()}, {veil.get()}, settings), 1.0 / 50);
            EXPECT_GT(takenShare({noise.get()}, {veil.get()}, settings), 1.0 / 250);
        }
    }
}

TEST_F(DirectionalBlurPass, TakesEveryTapOfPicturesThatGoOnOutside) {
    for (const GLenum wrap : {GL_REPEAT, GL_CLAMP_TO_EDGE}) {
        SetWrap(*noise, wrap);
        noise->hasBorder = false;
        for (const float length : {3.0f, 54.0f, 700.0f}) {
            expectPlain({noise.get()}, {veil.get()}, along(1, 0, length, 0.5f));
        }
        EXPECT_EQ(takenShare({noise.get()}, {}, along(1, 0, 54)), 1.0);
    }
}

TEST_F(DirectionalBlurPass, TakesEveryTapWhereTheMaskGoesOnOutside) {
    SetWrap(*veil, GL_REPEAT);
    veil->hasBorder = false;
    expectPlain({noise.get()}, {veil.get()}, along(1, 0, 200, 1));
    EXPECT_EQ(takenShare({noise.get()}, {veil.get()}, along(1, 0, 54, 1)), 1.0);
}

// Zero times a mask that is no number is no number.
TEST_F(DirectionalBlurPass, KeepsTapsThatOnlyTheMaskTouches) {
    const ReferencePicture glare(64, 36, [](int x, int) -> Vec4 {
        return {x == 5 ? std::numeric_limits<float>::infinity() : 0.5f, 0, 0, 1};
    });
    const auto infinite = glare.upload();
    for (const float length : {10.0f, 60.0f, 300.0f}) {
        expectPlain({noise.get(), 0, Placed(3, 3, -1, -1)}, {infinite.get()},
                    along(1, 0, length, 1));
    }
}

TEST_F(DirectionalBlurPass, IsThePlainLoopForPicturesWithMipmaps) {
    const auto clear = BytePicture(GL_RGBA, GL_CLAMP_TO_BORDER);
    const auto opaque = BytePicture(GL_RGB, GL_CLAMP_TO_BORDER);
    const auto repeated = BytePicture(GL_RGBA, GL_REPEAT);
    for (const Mat4& matrix : {Mat4{}, Placed(6, 5, -2, -2), Placed(40, 40, -20, -20)}) {
        for (const float length : {3.0f, 54.0f, 300.0f}) {
            expectPlainWithMipmaps({clear.get(), 0, matrix}, {}, along(1, 0, length));
            expectPlainWithMipmaps({opaque.get(), 0, matrix}, {clear.get()},
                                   along(0, 1, length, 1));
            expectPlainWithMipmaps({noise.get(), 0, matrix}, {repeated.get()},
                                   along(0, 1, length, 1));
        }
    }
    EXPECT_LT(takenShare({clear.get()}, {}, along(1, 0, 1000)), 1.0 / 50);
    EXPECT_EQ(takenShare({opaque.get()}, {}, along(1, 0, 54)), 1.0);
}

TEST_F(DirectionalBlurPass, TakesThePictureItIsTold) {
    GL_FrameBuffer two(8, 8, 2, 16, GL_RGBA, TargetDepth::None, TargetWrap::Border);
    two.Bind();
    two.SelectDrawBuffers();
    const float red[] = {1, 0, 0, 1}, half[] = {0.5f, 0, 0, 1};
    glClearBufferfv(GL_COLOR, 0, red);
    glClearBufferfv(GL_COLOR, 1, half);
    GL_FrameBuffer::Unbind();
    const auto middle = [&](const Input& from, const Input& weighted, float amount) {
        const auto pixels = blurred(from, weighted, along(1, 0, 3, amount));
        return pixels[(kHeight / 2 * kWidth + kWidth / 2) * 4];
    };
    EXPECT_EQ(middle({&two, 0}, {}, 0), 1.0f);
    EXPECT_EQ(middle({&two, 1}, {}, 0), 0.5f);
    EXPECT_EQ(middle({&two, 0}, {&two, 1}, 1), 0.5f);
}

TEST_F(DirectionalBlurPass, OfNothingIsOpaqueBlackAndDarkUnderAnEmptyMask) {
    for (const float amount : {0.0f, 0.25f, 1.0f}) {
        const auto pixels = blurred({}, {}, along(1, 0, 30, amount));
        EXPECT_EQ(pixels[0], 0.0f);
        // A half float, and the sum of the weights in single precision.
        EXPECT_NEAR(pixels[3], 1 - amount, 0.0005);
        expectPlain({}, {}, along(1, 0, 30, amount));
        expectPlain({noise.get()}, {}, along(1, 0, 30, amount));
    }
}

TEST_F(DirectionalBlurPass, EndsForAnyLengthAndAmount) {
    constexpr float kNone = std::numeric_limits<float>::quiet_NaN();
    constexpr float kEndless = std::numeric_limits<float>::infinity();
    for (const float length : {kNone, kEndless, -kEndless, 1e30f, 70000.0f, 1e6f}) {
        blurred({noise.get()}, {veil.get()}, along(1, 0, length, 1));
    }
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 4, 4);
    for (const float amount : {kNone, kEndless}) {
        blurred({noise.get()}, {veil.get()}, along(1, 0, kEndless, amount));
    }
    glDisable(GL_SCISSOR_TEST);
    const auto pixels = blurred({noise.get()}, {}, along(1, 0, kNone));
    const auto still = blurred({noise.get()}, {}, along(1, 0, 0));
    EXPECT_EQ(pixels, still);
}
