#include "image/directional_blur.h"

#include <GL/glew.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "gpu/embedded_shaders.h"
#include "gpu/shader_program.h"

namespace {

constexpr float kStep = 0.75f;
// No project keeps the GPU busy for ever: lengths beyond this are cut. Up to it the steps are
// exact.
constexpr float kMostLength = 1048576.0f;
// The same where every tap is taken, for each pixel. Longer ones are for pictures with a border,
// whose taps are bounded.
constexpr float kMostPlainLength = 4096.0f;

int MostLevel(const GL_Image* image) {
    if (image == nullptr || !image->hasMipmaps) return 0;
    return static_cast<int>(std::log2(std::max({image->width, image->height, 1})));
}

// Where there is no picture at all, samples are opaque black.
bool IsClearOutside(const DirectionalBlur::Input& source) {
    return source.image != nullptr && source.image->hasBorder && source.image->hasAlpha;
}

// Outside the source a tap adds zero times what the mask says there: nothing, if that is a number.
// Within a mask's texels it may be none.
bool IsNumberOutside(const DirectionalBlur::Input& mask, float maskAmount) {
    return (mask.image == nullptr || mask.image->hasBorder) && std::isfinite(maskAmount);
}

void BindInput(const DirectionalBlur::Input& input, GLenum unit) {
    if (input.image != nullptr && input.attachment < input.image->textureCount) {
        input.image->BindTexture(input.attachment, unit);
        return;
    }
    glActiveTexture(unit);
    glBindTexture(GL_TEXTURE_2D, 0);
}

}  // namespace

struct DirectionalBlur::Pass {
    explicit Pass(const std::string& fragment);

    ShaderProgram program;
    int sourceMatrix, maskMatrix;
    int sampleSize, direction, length, mask;
    int fullWeight, tapCount, boundTaps, maskTouches, mostLevels, showTaps;
};

DirectionalBlur::Pass::Pass(const std::string& fragment)
    : program("blurShader", EmbeddedShader("blur.vert").data(), nullptr, fragment.c_str(),
              QuadAttributes(), 1) {
    const auto find = [&](const char* name) { return program.UniformLocation(name); };
    sourceMatrix = find("textureMatrix_Input[0]");
    maskMatrix = find("textureMatrix_Input[1]");
    sampleSize = find("ng_sampleSize");
    direction = find("Direction");
    length = find("Length");
    mask = find("Mask");
    fullWeight = find("fullWeight");
    tapCount = find("tapCount");
    boundTaps = find("boundTaps");
    maskTouches = find("maskTouches");
    mostLevels = find("mostLevels");
    showTaps = find("showTaps");
    program.Use();
    glUniform1i(find("Source"), 0);
    glUniform1i(find("Intensity"), 1);
    // Bottom and top change places.
    Mat4 projection;
    Mat4Ortho2D(projection, -1, 1, 1, -1);
    glUniformMatrix4fv(find("projectionMatrix"), 1, GL_FALSE, projection.m);
    ShaderProgram::Unuse();
}

DirectionalBlur::DirectionalBlur()
    : plain_(std::make_unique<Pass>(std::string(EmbeddedShader("blur.frag")))),
      withMipmaps_(std::make_unique<Pass>(ShaderVariant("blur.frag", "MIPMAPS"))) {}

DirectionalBlur::~DirectionalBlur() = default;

bool DirectionalBlur::linked() const {
    return plain_->program.linked && withMipmaps_->program.linked;
}

const DirectionalBlur::Weights& DirectionalBlur::weightsOf(float length) {
    if (length == weights_.length) return weights_;
    weights_ = {length, 0, 0};
    const float l = std::max(1.0f, length);
    for (float f = -l; f <= l; f += kStep) {
        const float part = 1.0f - std::fabs(f) / l;
        weights_.sum += part * part;
        ++weights_.taps;
    }
    return weights_;
}

void DirectionalBlur::fill(const GL_FrameBuffer& target, const Input& source, const Input& mask,
                           const Settings& settings) {
    const bool mipmaps = MostLevel(source.image) > 0 || MostLevel(mask.image) > 0;
    const Pass& pass = mipmaps ? *withMipmaps_ : *plain_;
    pass.program.Use();
    setSettings(pass, source, mask, settings);
    BindInput(mask, GL_TEXTURE1);
    BindInput(source, GL_TEXTURE0);
    target.Fill();
    BindInput({}, GL_TEXTURE1);
    BindInput({}, GL_TEXTURE0);
    ShaderProgram::Unuse();
}

void DirectionalBlur::setSettings(const Pass& pass, const Input& source, const Input& mask,
                                  const Settings& settings) {
    const bool bound =
        boundTaps && IsClearOutside(source) && IsNumberOutside(mask, settings.maskAmount);
    const float most = bound ? kMostLength : kMostPlainLength;
    const float length =
        std::isnan(settings.length) ? 0.0f : std::clamp(settings.length, -most, most);
    const Weights& weights = weightsOf(length);
    glUniformMatrix4fv(pass.sourceMatrix, 1, GL_FALSE, source.textureMatrix.m);
    glUniformMatrix4fv(pass.maskMatrix, 1, GL_FALSE, mask.textureMatrix.m);
    glUniform2f(pass.sampleSize, settings.sampleSize.x, settings.sampleSize.y);
    glUniform2f(pass.direction, settings.direction.x, settings.direction.y);
    glUniform1f(pass.length, length);
    glUniform1f(pass.mask, settings.maskAmount);
    glUniform1f(pass.fullWeight, weights.sum);
    glUniform1i(pass.tapCount, weights.taps);
    glUniform1i(pass.boundTaps, bound ? 1 : 0);
    glUniform1i(pass.maskTouches, mask.image != nullptr ? 1 : 0);
    glUniform1i(pass.showTaps, showTaps ? 1 : 0);
    glUniform2i(pass.mostLevels, MostLevel(source.image), MostLevel(mask.image));
}
