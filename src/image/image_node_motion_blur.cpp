#include "image/image_node_motion_blur.h"

#include <GL/glew.h>

#include <algorithm>
#include <string>
#include <vector>

#include "core/engine.h"
#include "core/node_pass.h"
#include "gpu/full_screen_quad.h"
#include "gpu/shader_program.h"

namespace {

constexpr int kSampleCounts[] = {4, 6, 8, 10, 12, 14, 16, 24, 32, 64};

std::vector<std::string> CountNames() {
    std::vector<std::string> names;
    for (const int count : kSampleCounts) names.push_back(std::to_string(count));
    return names;
}

// Puts back what the engine says about the present frame.
class SavedClock {
  public:
    explicit SavedClock(Engine& engine)
        : time(engine.time),
          engine_(engine),
          deltaTime_(engine.deltaTime),
          frameCost_(engine.frameCost),
          renderEnabled_(engine.renderEnabled) {}
    ~SavedClock() { restore(); }
    SavedClock(const SavedClock&) = delete;
    SavedClock& operator=(const SavedClock&) = delete;

    void restore() const {
        engine_.time = time;
        engine_.deltaTime = deltaTime_;
        engine_.frameCost = frameCost_;
        engine_.renderEnabled = renderEnabled_;
    }

    const float time;

  private:
    Engine& engine_;
    float deltaTime_, frameCost_;
    int renderEnabled_;
};

}  // namespace

ImageNode_MotionBlur::ImageNode_MotionBlur(Engine* owner, const std::string& nodeId)
    : ImageNode(owner, nodeId),
      program(MakeQuadProgram("moblurShader", "motion_blur.vert", "motion_blur.frag")),
      target_(*this) {
    setInputCount(1);
    inputNames[0] = "Image";
    engine->declareInt(this, "Samples", samples, 3, CountNames());
    engine->declareFloat(this, "Shutter", shutter, 0.001f, 1.0f, 4, 0.01f, true);
    setError(!program->linked);
    matrixLocation_ = program->UniformLocation("textureMatrix_Input[0]");
    program->Use();
    glUniform1i(program->UniformLocation("tex"), 0);
    ShaderProgram::Unuse();
}

ImageNode_MotionBlur::~ImageNode_MotionBlur() = default;

bool ImageNode_MotionBlur::canConnect(int port, const Node* source) const {
    return port == 0 && isImageSource(source);
}

int ImageNode_MotionBlur::sampleCount() const {
    constexpr auto kLast = static_cast<std::int32_t>(std::size(kSampleCounts)) - 1;
    return kSampleCounts[std::clamp(samples, 0, kLast)];
}

// The first picture, at full weight, replaces what was there; each later one takes its share of a
// running mean, so that in the end all weigh alike.
bool ImageNode_MotionBlur::update() {
    updated = true;
    if (getInput(0) == nullptr) return false;
    const SavedClock saved(*engine);
    const int count = sampleCount();
    bool ok = true;
    for (int i = 0; i < count && ok && engine->rerunsLeft > 0; ++i) {
        --engine->rerunsLeft;
        saved.restore();
        ok = runAt(saved.time - static_cast<float>(i) * shutter / static_cast<float>(count));
        if (engine->renderEnabled != 0) blendIn(i);
    }
    target_.end();
    return ok;
}

// Brings the input to another moment. All nodes count as not having run, also those of other parts
// of the graph: what they share with this input has to run again.
bool ImageNode_MotionBlur::runAt(float timeSeconds) {
    engine->time = timeSeconds;
    engine->updateAnimation();
    for (auto& [nodeId, node] : engine->nodes) {
        if (node) node->updated = false;
    }
    return Node::update();
}

// The product is not offered before the last picture is in: where the input shows this node's own
// picture, it is that of the last time in all of them.
void ImageNode_MotionBlur::blendIn(int index) {
    const NodePass pass(*this, "blend");
    const ImageNode* source = imageInput(0);
    if (index == 0) {
        target_.beginAside();
    } else {
        target_.resume();
    }
    // What was there counts nothing beside the first picture, even where it is no number. The
    // weight is set after the run, in which a motion blur behind this one sets its own.
    const float weight = 1.0f / static_cast<float>(index + 1);
    glBlendColor(weight, weight, weight, weight);
    if (index > 0) glEnable(GL_BLEND);
    glBlendFunc(GL_CONSTANT_COLOR, GL_ONE_MINUS_CONSTANT_COLOR);
    program->Use();
    glUniformMatrix4fv(matrixLocation_, 1, GL_FALSE, source->textureMatrix.m);
    if (source->images[0] != nullptr) {
        DrawImageQuad(*source->images[0]);
    } else {
        glActiveTexture(GL_TEXTURE0);
        glBindTexture(GL_TEXTURE_2D, 0);
        DrawFullScreenQuad();  // no picture is black
    }
    ShaderProgram::Unuse();
    glDisable(GL_BLEND);
    GL_FrameBuffer::Unbind();
}
