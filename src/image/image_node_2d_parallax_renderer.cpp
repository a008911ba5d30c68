#include "image/image_node_2d_parallax_renderer.h"

#include <GL/glew.h>

#include <cmath>
#include <optional>

#include "core/engine.h"
#include "core/node_pass.h"
#include "gpu/embedded_shaders.h"
#include "gpu/full_screen_quad.h"
#include "gpu/gl_framebuffer.h"
#include "gpu/shader_program.h"
#include "image/directional_blur.h"

namespace {

constexpr std::int32_t kModeOver = 2, kModeDodge = 27;
// Dodge is only known in the scene of this slot; everywhere else such a layer is a screen.
constexpr std::size_t kDodgeSlot = 11;

enum Attachment { kColour = 0, kNeon = 1 };
// Units that the samplers of the layer programs read.
constexpr GLenum kImageUnit = GL_TEXTURE0, kNeonUnit = GL_TEXTURE1, kFxUnit = GL_TEXTURE2,
                 kBackgroundUnit = GL_TEXTURE3, kBackgroundNeonUnit = GL_TEXTURE4;

std::unique_ptr<GL_FrameBuffer> MakeTarget(int attachments) {
    return std::make_unique<GL_FrameBuffer>(kFrameWidth, kFrameHeight, attachments, 16, GL_RGBA,
                                            TargetDepth::None, TargetWrap::Border);
}

std::unique_ptr<ShaderProgram> MakeLayerProgram(const char* name, std::string_view fragmentPath) {
    return std::make_unique<ShaderProgram>(name, EmbeddedShader("parallax_layer.vert").data(),
                                           nullptr, EmbeddedShader(fragmentPath).data(),
                                           QuadAttributes(), 2);
}

void BeginTarget(const GL_FrameBuffer& target) {
    target.Bind();
    target.SelectDrawBuffers();
    target.SetViewport();
}

void BindOrClear(const GL_Image* image, GLenum unit) {
    if (image != nullptr) {
        image->BindTexture(0, unit);
        return;
    }
    glActiveTexture(unit);
    glBindTexture(GL_TEXTURE_2D, 0);
}

void CopyAttachments(const GL_FrameBuffer& from, const GL_FrameBuffer& to) {
    glBindFramebuffer(GL_READ_FRAMEBUFFER, from.framebuffer);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, to.framebuffer);
    for (const GLenum attachment : {kColour, kNeon}) {
        glReadBuffer(GL_COLOR_ATTACHMENT0 + attachment);
        glDrawBuffer(GL_COLOR_ATTACHMENT0 + attachment);
        glBlitFramebuffer(0, 0, kFrameWidth, kFrameHeight, 0, 0, kFrameWidth, kFrameHeight,
                          GL_COLOR_BUFFER_BIT, GL_NEAREST);
    }
    glReadBuffer(GL_COLOR_ATTACHMENT0);
    GL_FrameBuffer::Unbind();
}

bool IsFinite(const ParallaxPlace& place) {
    return std::isfinite(place.x0) && std::isfinite(place.y0) && std::isfinite(place.x1) &&
           std::isfinite(place.y1);
}

}  // namespace

ParallaxGlow ParallaxGlowOfSlot(std::size_t slot) {
    switch (slot) {
        case 0:
            return {70, 3};
        case 1:
            return {62.5f, 6.05f};
        case 2:
        case 3:
            return {54, 1.9f};
        default:
            return {54, 7.4f};
    }
}

ImageNode_2DParallaxRenderer::LayerProgram::LayerProgram(const ShaderProgram& program)
    : shader(program) {
    const auto find = [&](const char* name) { return program.UniformLocation(name); };
    rect = find("rect");
    textureMatrix = find("textureMatrix");
    alpha = find("alpha");
    neonIntensity = find("neonIntensity");
    maskedEffectIntensity = find("maskedEffectIntensity");
    program.Use();
    GLint unit = 0;
    for (const char* sampler : {"image", "neon", "maskedEffect", "background", "backgroundNeon"}) {
        glUniform1i(find(sampler), unit++);
    }
    const Mat4 identity;
    glUniformMatrix4fv(textureMatrix, 1, GL_FALSE, identity.m);
    ShaderProgram::Unuse();
}

ImageNode_2DParallaxRenderer::ImageNode_2DParallaxRenderer(Engine* owner, const std::string& nodeId)
    : ImageNode(owner, nodeId) {
    setInputCount(1);
    inputNames[0] = "Masked FX";
    declareParameters();
    loadedFiles.fill("NOINIT");
    makeTargets();
    makePrograms();
}

ImageNode_2DParallaxRenderer::~ImageNode_2DParallaxRenderer() = default;

void ImageNode_2DParallaxRenderer::declareParameters() {
    const auto number = [&](const std::string& name, float& member, float min, float max,
                            int decimals, float defaultValue) {
        engine->declareFloat(this, name, member, min, max, decimals, defaultValue, true);
    };
    number("Global Offset", globalOffset, -10, 10, 3, 0);
    number("Global Time Stretch", globalTimeStretch, 0, 2, 3, 1);
    number("Global Alpha", globalAlpha, 0, 1, 3, 1);
    number("FX Intensity", fxIntensity, 0, 1, 3, 0);
    number("Glow:Radius", glowRadius, 0, 1000, 2, 10);
    number("GlowIntensity", glowIntensity, 0, 10, 2, 1);
    number("Glow:Mask", glowMask, 0, 1, 2, 1);
    const auto numbered = [](const char* prefix, std::size_t slot) {
        return prefix + std::to_string(slot + 1);
    };
    for (std::size_t slot = 0; slot < kScenes; ++slot) {
        engine->declareString(this, numbered(".scn File ", slot).c_str(), scnFiles[slot], "");
        number(numbered("Start Time ", slot), scenes[slot].startTime, 0, 10000, 3, 0);
    }
    for (std::size_t slot = 0; slot < kScenes; ++slot) {
        number(numbered(".scn Time Offset ", slot), scenes[slot].timeOffset, -5, 5, 3, 0);
    }
    for (std::size_t slot = 0; slot < kScenes; ++slot) {
        number(numbered(".scn Time Stretch ", slot), scenes[slot].timeStretch, 0, 2, 3, 1);
    }
    engine->declareVec4(this, "Background", background, {0, 0, 0, 1});
}

void ImageNode_2DParallaxRenderer::makeTargets() {
    for (auto& buffer : layerBuffers) buffer = MakeTarget(2);
    blurBufferH = MakeTarget(1);
    blurBufferV = MakeTarget(1);
    resultBuffer = MakeTarget(1);
    // Nothing is shown until there is a scene.
    resultBuffer->Bind();
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    GL_FrameBuffer::Unbind();
    images[0] = resultBuffer;
}

void ImageNode_2DParallaxRenderer::makePrograms() {
    blurShader = std::make_unique<DirectionalBlur>();
    composeShader = MakeLayerProgram("composeShader", "parallax_compose.frag");
    composeDodgeShader = MakeLayerProgram("composeDodgeShader", "parallax_dodge.frag");
    composeProgram_ = std::make_unique<LayerProgram>(*composeShader);
    dodgeProgram_ = std::make_unique<LayerProgram>(*composeDodgeShader);
    setError(!composeShader->linked);
}

bool ImageNode_2DParallaxRenderer::canConnect(int port, const Node* source) const {
    return port == 0 && isImageSource(source);
}

std::size_t ImageNode_2DParallaxRenderer::sceneAt(float seconds) const {
    std::optional<std::size_t> current;
    for (std::size_t slot = 0; slot < kScenes; ++slot) {
        if (scenes[slot].layers.empty()) continue;
        if (!current || seconds > scenes[slot].startTime) current = slot;
        if (seconds <= scenes[slot].startTime) break;
    }
    return current.value_or(0);
}

bool ImageNode_2DParallaxRenderer::process() {
    loadChangedScenes();
    if (engine->renderEnabled == 0) return true;
    const GlDebugGroup group(id);
    const float seconds = (engine->time - globalOffset) * globalTimeStretch;
    const std::size_t slot = sceneAt(seconds);
    const ParallaxScene& scene = scenes[slot];
    if (scene.layers.empty()) return true;
    const float sceneSeconds = (seconds - scene.timeOffset - scene.startTime) * scene.timeStretch;
    const ParallaxGlow glow = ParallaxGlowOfSlot(slot);
    const DrawnLayers layers = drawLayers(slot, sceneSeconds);
    const float amount = glow.amount * glowIntensity;
    const bool glows = (amount != 0 && (layers.haveNeon || glowMask != 1)) || !skipNeutralWork;
    if (glows) blurGlow(layers.target, glow.lengthScale);
    compose(layers.target, glows, amount);
    return true;
}

// What changes from layer to layer.
struct ImageNode_2DParallaxRenderer::LayerPass {
    const LayerProgram* program;  // in use
    std::size_t target = 0;       // which of layerBuffers is drawn to
    const GL_Image* fxImage;      // may be null
    Mat4 fxMatrix;
    bool haveNeon = false;
};

ImageNode_2DParallaxRenderer::DrawnLayers ImageNode_2DParallaxRenderer::drawLayers(
    std::size_t slot, float sceneSeconds) const {
    const NodePass nodePass(*this, "layers");
    const ImageNode* fx = imageInput(0);
    LayerPass pass{composeProgram_.get(), 0, fx == nullptr ? nullptr : fx->images[0].get(),
                   fx == nullptr ? Mat4{} : fx->textureMatrix};
    glEnable(GL_BLEND);
    pass.program->shader.Use();
    BeginTarget(*layerBuffers[0]);
    // Both pictures begin with it, and the result is cleared to it too: it stays set.
    glClearColor(background[0], background[1], background[2], background[3]);
    glClear(GL_COLOR_BUFFER_BIT);
    pass.haveNeon = background[0] != 0 || background[1] != 0 || background[2] != 0;
    const std::vector<ParallaxLayer>& layers = scenes[slot].layers;
    for (auto layer = layers.rbegin(); layer != layers.rend(); ++layer) {
        const auto place = ParallaxPlaceAt(layer->keys, sceneSeconds, globalAlpha);
        if (!place || !IsFinite(*place)) continue;
        if (layer->mode == kModeDodge && slot == kDodgeSlot) {
            beginDodge(pass);
        } else {
            beginBlended(pass, layer->mode);
        }
        drawLayer(pass, *layer, *place);
    }
    for (const GLenum unit :
         {kBackgroundNeonUnit, kBackgroundUnit, kFxUnit, kNeonUnit, kImageUnit}) {
        BindOrClear(nullptr, unit);
    }
    ShaderProgram::Unuse();
    glDisable(GL_BLEND);
    GL_FrameBuffer::Unbind();
    return {*layerBuffers[pass.target], pass.haveNeon};
}

void ImageNode_2DParallaxRenderer::beginBlended(LayerPass& pass, std::int32_t mode) const {
    if (pass.program != composeProgram_.get()) {
        glEnable(GL_BLEND);
        pass.program = composeProgram_.get();
        pass.program->shader.Use();
        BindOrClear(nullptr, kBackgroundUnit);
        BindOrClear(nullptr, kBackgroundNeonUnit);
    }
    glBlendFunc(GL_ONE, mode == kModeOver ? GL_ONE_MINUS_SRC_ALPHA : GL_ONE_MINUS_SRC_COLOR);
}

// A program cannot read the target that it draws to: it goes on in a copy.
void ImageNode_2DParallaxRenderer::beginDodge(LayerPass& pass) const {
    const GL_FrameBuffer& behind = *layerBuffers[pass.target];
    pass.target = 1 - pass.target;
    glDisable(GL_BLEND);
    CopyAttachments(behind, *layerBuffers[pass.target]);
    BeginTarget(*layerBuffers[pass.target]);
    pass.program = dodgeProgram_.get();
    pass.program->shader.Use();
    behind.BindTexture(kColour, kBackgroundUnit);
    behind.BindTexture(kNeon, kBackgroundNeonUnit);
}

void ImageNode_2DParallaxRenderer::drawLayer(LayerPass& pass, const ParallaxLayer& layer,
                                             const ParallaxPlace& place) const {
    const LayerProgram& program = *pass.program;
    pass.haveNeon = pass.haveNeon || layer.neon != nullptr;
    const bool showsFx = layer.mask > 0 && pass.fxImage != nullptr;
    const Mat4 identity;
    glUniformMatrix4fv(program.textureMatrix, 1, GL_FALSE, showsFx ? pass.fxMatrix.m : identity.m);
    BindOrClear(layer.neon.get(), kNeonUnit);
    BindOrClear(showsFx ? pass.fxImage : nullptr, kFxUnit);
    BindOrClear(layer.image.get(), kImageUnit);
    glUniform1f(program.alpha, place.opacity);
    glUniform1f(program.neonIntensity, layer.neon != nullptr ? place.opacity : 0.0f);
    glUniform1f(program.maskedEffectIntensity,
                showsFx ? place.opacity * layer.mask * fxIntensity : 0.0f);
    glUniform4f(program.rect, place.x0, place.y0, place.x1, place.y1);
    DrawFullScreenQuad();
}

void ImageNode_2DParallaxRenderer::blurGlow(const GL_FrameBuffer& layers, float lengthScale) const {
    const NodePass nodePass(*this, "glow");
    const Vec2 pixel = {1.0f / 1920.0f, 1.0f / 1080.0f};
    const float length = lengthScale * glowRadius;
    const DirectionalBlur::Input neon = {&layers, kNeon, {}};
    blurShader->fill(*blurBufferH, {&layers, kColour, {}}, neon, {pixel, {1, 0}, length, glowMask});
    blurShader->fill(*blurBufferV, {blurBufferH.get(), 0, {}}, neon, {pixel, {0, 1}, length, 0});
}

void ImageNode_2DParallaxRenderer::compose(const GL_FrameBuffer& layers, bool glows,
                                           float glowAmount) const {
    const NodePass nodePass(*this, "compose");
    const LayerProgram& program = *composeProgram_;
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_COLOR);
    program.shader.Use();
    BeginTarget(*resultBuffer);
    glClear(GL_COLOR_BUFFER_BIT);
    // The matrix stays that of the last layer drawn with this program, a quirk that scenes show.
    glUniform4f(program.rect, -1, -1, 1, 1);
    glUniform1f(program.neonIntensity, 0);
    glUniform1f(program.maskedEffectIntensity, 0);
    glUniform1f(program.alpha, 1);
    DrawImageQuad(layers);
    if (glows) {
        glUniform1f(program.alpha, glowAmount);
        DrawImageQuad(*blurBufferV);
    }
    GL_FrameBuffer::Unbind();
    ShaderProgram::Unuse();
    glDisable(GL_BLEND);
}
