#include "image/image_node_glow.h"

#include <GL/glew.h>

#include "core/engine.h"
#include "core/node_pass.h"
#include "gpu/full_screen_quad.h"
#include "gpu/shader_program.h"

namespace {

// A pixel of the full frame, although the blur's targets have half its size.
constexpr Vec2 kSampleSize = {0.000520833f, 0.000925926f};

std::unique_ptr<GL_FrameBuffer> MakeHalfTarget() {
    return std::make_unique<GL_FrameBuffer>(kFrameWidth / 2, kFrameHeight / 2, 1, 16, GL_RGBA,
                                            TargetDepth::None, TargetWrap::Border);
}

}  // namespace

ImageNode_Glow::ImageNode_Glow(Engine* owner, const std::string& nodeId)
    : ImageNode(owner, nodeId),
      blurTargetX(MakeHalfTarget()),
      blurTargetY(MakeHalfTarget()),
      composeProgram(MakeQuadProgram("glowCompose", "blur.vert", "glow_compose.frag")),
      target_(*this) {
    setInputCount(2);
    inputNames = {"Input", "Mask"};
    engine->declareFloat(this, "Radius", radius, 0, 1000, 2, 10, true);
    engine->declareFloat(this, "Intensity", intensity, 0, 10, 2, 1, true);
    engine->declareFloat(this, "Mask", maskAmount, 0, 1, 2, 0, true);
    setError(!blur.linked() || !composeProgram->linked);

    const auto find = [&](const char* name) { return composeProgram->UniformLocation(name); };
    matrixLocation_ = find("textureMatrix_Input[0]");
    intensityLocation_ = find("blurIntensity");
    composeProgram->Use();
    glUniform1i(find("image"), 0);
    glUniform1i(find("blurImage"), 1);
    // Bottom and top change places, as in the two passes of the blur.
    Mat4 projection;
    Mat4Ortho2D(projection, -1, 1, 1, -1);
    glUniformMatrix4fv(find("projectionMatrix"), 1, GL_FALSE, projection.m);
    ShaderProgram::Unuse();
}

ImageNode_Glow::~ImageNode_Glow() = default;

bool ImageNode_Glow::canConnect(int port, const Node* source) const {
    return (port == kInputPort || port == kMaskPort) && isImageSource(source);
}

DirectionalBlur::Input ImageNode_Glow::inputOn(Port port) const {
    const ImageNode* source = imageInput(port);
    if (source == nullptr) return {};
    return {source->images[0].get(), 0, source->textureMatrix};
}

bool ImageNode_Glow::process() {
    if (engine->renderEnabled == 0) return true;
    glDisable(GL_BLEND);
    DirectionalBlur::Input source = inputOn(kInputPort);
    if (source.image != nullptr) inputMatrix_ = source.textureMatrix;
    source.textureMatrix = inputMatrix_;
    blurBothWays(source);
    compose(source);
    return true;
}

// The second pass reads the first one's target through the matrix of the input again, as it always
// has: a moved or scaled input has its halo moved and scaled once more.
void ImageNode_Glow::blurBothWays(const DirectionalBlur::Input& source) {
    const NodePass pass(*this, "blur");
    const DirectionalBlur::Input mask = inputOn(kMaskPort);
    blur.fill(*blurTargetX, source, mask, {kSampleSize, {1, 0}, radius, maskAmount});
    blur.fill(*blurTargetY, {blurTargetX.get(), 0, source.textureMatrix}, mask,
              {kSampleSize, {0, 1}, radius, maskAmount});
}

void ImageNode_Glow::compose(const DirectionalBlur::Input& source) {
    const NodePass pass(*this, "compose");
    target_.begin();
    composeProgram->Use();
    glUniformMatrix4fv(matrixLocation_, 1, GL_FALSE, source.textureMatrix.m);
    glUniform1f(intensityLocation_, intensity);
    blurTargetY->BindTexture(0, GL_TEXTURE1);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, source.image == nullptr ? 0 : source.image->textures[0]);
    DrawFullScreenQuad();
    blurTargetY->UnbindTextures(GL_TEXTURE1);
    blurTargetY->UnbindTextures(GL_TEXTURE0);
    ShaderProgram::Unuse();
    target_.end();
}
