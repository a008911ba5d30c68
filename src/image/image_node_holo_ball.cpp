#include "image/image_node_holo_ball.h"

#include <GL/glew.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "core/engine.h"
#include "core/node_pass.h"
#include "core/transform3d_node.h"
#include "gpu/full_screen_quad.h"
#include "gpu/shader_program.h"

namespace {

constexpr float kHalfAngle = 0.5235988f;  // radians: a field of view of 60 degrees
constexpr float kAspect = 1.777f;
constexpr float kSliceDimension = 20.0f;
constexpr float kLightDimension = 60.0f;
constexpr float kThreshold = 1.0f;
constexpr float kSlabHalfSize = 5.0f;
constexpr float kWallHalfSize = 15.0f;
constexpr float kWallHeight = 5.0f;
constexpr float kFirstSlice = -10.0f, kLastSlice = 10.0f, kSliceStep = 0.5f;
constexpr float kDepthScale = 0.2f;  // from the slice's z to its place in space

std::unique_ptr<GL_FrameBuffer> MakeSliceTarget(int size) {
    return std::make_unique<GL_FrameBuffer>(size, size, 1, 16, GL_RGBA, TargetDepth::None,
                                            TargetWrap::Border);
}

Mat4 ProjectionMatrix() {
    Mat4 projection;  // near 0.5, far 100
    Mat4Perspective(projection, std::tan(kHalfAngle), kAspect, -1.0100503f, -1.0050251f);
    return projection;
}

// The outline of a slice is the wider the farther it lies from the middle, most of all at the back.
float EdgeFactor(float z) {
    return z < 0.0f ? 1.0f - z / 5.0f : z / 20.0f + 1.0f;
}

}  // namespace

ImageNode_HoloBall::ImageNode_HoloBall(Engine* owner, const std::string& nodeId)
    : ImageNode(owner, nodeId),
      frames(HoloPresets()),
      sliceLarge(MakeSliceTarget(1024)),
      sliceSmall(MakeSliceTarget(512)),
      holoShader(MakeQuadProgram("holoShader", "holo_slice.vert", "holo_slice.frag")),
      holoLightShader(MakeQuadProgram("holoLightShader", "holo_slice.vert", "holo_light.frag")),
      composeHolo(MakeQuadProgram("composeHolo", "holo_compose.vert", "holo_compose.frag")),
      composeWallHolo(MakeQuadProgram("composeWallHolo", "holo_wall.vert", "holo_wall.frag")),
      target_(std::make_shared<GL_FrameBuffer>(kFrameWidth, kFrameHeight, 1, 16, GL_RGBA,
                                               TargetDepth::None, TargetWrap::Repeat)) {
    setInputCount(1);
    inputNames[0] = "Camera";
    images[0] = target_;
    declareParameters();
    setError(!holoShader->linked || !holoLightShader->linked || !composeHolo->linked ||
             !composeWallHolo->linked);
    findLocations();
    setConstantUniforms();
}

ImageNode_HoloBall::~ImageNode_HoloBall() = default;

void ImageNode_HoloBall::declareParameters() {
    const auto number = [&](const std::string& name, float& member, float min, float max,
                            float defaultValue) {
        engine->declareFloat(this, name, member, min, max, 2, defaultValue, true);
    };
    engine->declareVec4(this, "Color", color, {1, 1, 1, 1});
    number("Edge", edge, 0.1f, 20, 1);
    number("Brightness", brightness, 0, 20, 0.1f);
    number("Scale", scale, 0, 20, 1);
    number("UV Repeat", uvRepeat, 0, 100, 1);
    number("MetaballFX", metaballFX, 0, 1, 0);
    number("resize", resize, 0, 1, 0);
    for (std::size_t i = 0; i < std::size(anim); ++i) {
        number("Anim " + std::to_string(i), anim[i], 0, 1, 0);
    }
}

void ImageNode_HoloBall::findLocations() {
    const auto field = [](const ShaderProgram& program, const char* balls) {
        const auto find = [&](const char* name) { return program.UniformLocation(name); };
        return FieldLocations{find("part"), find("pixel"), find("layerCenter"), find(balls)};
    };
    sliceLocations_ = field(*holoShader, "balls");
    lightLocations_ = field(*holoLightShader, "lballs");
    const auto compose = [](const ShaderProgram& program) {
        const auto find = [&](const char* name) { return program.UniformLocation(name); };
        return ComposeLocations{find("part"),       find("layerCenter"), find("edgeStep"),
                                find("brightness"), find("color"),       find("viewMatrix"),
                                find("scaleHolo")};
    };
    composeLocations_ = compose(*composeHolo);
    wallLocations_ = compose(*composeWallHolo);
}

void ImageNode_HoloBall::setConstantUniforms() const {
    const auto number = [](const ShaderProgram& program, const char* name, float value) {
        program.Use();
        glUniform1f(program.UniformLocation(name), value);
    };
    number(*holoShader, "dimension", kSliceDimension);
    number(*holoShader, "threshold", kThreshold);
    number(*holoLightShader, "dimension", kLightDimension);
    number(*composeHolo, "halfSize", kSlabHalfSize);
    number(*composeWallHolo, "halfSize", kWallHalfSize);
    for (const auto* program : {composeHolo.get(), composeWallHolo.get()}) {
        program->Use();
        glUniform1i(program->UniformLocation("slide"), 0);
        glUniformMatrix4fv(program->UniformLocation("projectionMatrix"), 1, GL_FALSE,
                           ProjectionMatrix().m);
    }
    ShaderProgram::Unuse();
}

bool ImageNode_HoloBall::canConnect(int port, const Node* source) const {
    return port == 0 && source != nullptr && source->getType() == kTransform3DNode;
}

HoloFrame ImageNode_HoloBall::currentFrame() const {
    const HoloFrame orbit = HoloOrbit(engine->time, metaballFX);
    HoloFrame present = frames[0], next;
    for (std::size_t k = 0; k < std::size(anim); ++k) {
        Morph(next, present, frames[k + 1], anim[k]);
        present = next;
    }
    Morph(next, present, orbit, metaballFX);
    return next;
}

Mat4 ImageNode_HoloBall::viewMatrix() const {
    if (const Node* camera = getInput(0)) {
        return static_cast<const Transform3DNode*>(camera)->matrix;
    }
    Mat4 view;
    Mat4LookAt(view, {0, 0, 1.5f}, {0, 0, -1}, {0, 1, 0});
    return view;
}

float ImageNode_HoloBall::pixelSize() const {
    return resize > 0.5f ? 0.00195312f : 0.000976562f;
}

bool ImageNode_HoloBall::process() {
    if (engine->renderEnabled == 0) return true;
    const HoloFrame frame = currentFrame();
    const Mat4 view = viewMatrix();
    target_->Bind();
    target_->SelectDrawBuffers();
    target_->SetViewport();
    glClear(GL_COLOR_BUFFER_BIT);  // to whatever colour stands
    GL_FrameBuffer::Unbind();
    setBalls(frame);
    setView(*composeWallHolo, wallLocations_, view);
    setView(*composeHolo, composeLocations_, view);
    drawWalls();
    drawSlices(frame, view);
    ShaderProgram::Unuse();
    Mat4Scale(textureMatrix, {uvRepeat, uvRepeat, 1.0f});
    return true;
}

void ImageNode_HoloBall::setBalls(const HoloFrame& frame) const {
    const float* balls = &frame.balls[0].x;
    // The exact size of a texel, so that places in the field do not depend on the part drawn.
    const float texel = 1.0f / static_cast<float>(sliceTarget().width);
    const auto give = [&](const ShaderProgram& program, const FieldLocations& locations) {
        program.Use();
        glUniform4fv(locations.balls, MAX_BALLS, balls);
        glUniform1f(locations.pixel, texel);
    };
    give(*holoShader, sliceLocations_);
    give(*holoLightShader, lightLocations_);
}

void ImageNode_HoloBall::setView(const ShaderProgram& program, const ComposeLocations& locations,
                                 const Mat4& view) const {
    program.Use();
    glUniformMatrix4fv(locations.viewMatrix, 1, GL_FALSE, view.m);
    glUniform4fv(locations.color, 1, color);
    glUniform1f(locations.brightness, brightness);
    glUniform1f(locations.scaleHolo, scale);
}

void ImageNode_HoloBall::fill(const ShaderProgram& program, const FieldLocations& locations,
                              const Vec3& center, const SlicePart& part) const {
    program.Use();
    glUniform3f(locations.layerCenter, center.x, center.y, center.z);
    glUniform4f(locations.part, part.left, part.low, part.right, part.high);
    sliceTarget().Fill();
}

void ImageNode_HoloBall::fillSlice(float z, const SlicePart& part) const {
    fill(*holoShader, sliceLocations_, {0, 0, z}, part);
}

void ImageNode_HoloBall::fillLight(const Vec3& center) const {
    fill(*holoLightShader, lightLocations_, center, {});
}

void ImageNode_HoloBall::drawWalls() const {
    const NodePass pass(*this, "walls");
    for (const float y : {kWallHeight, -kWallHeight}) {
        const Vec3 center = {0, y, 0};
        fillLight(center);
        composeIntoProduct(*composeWallHolo, wallLocations_, center);
    }
}

void ImageNode_HoloBall::drawSlices(const HoloFrame& frame, const Mat4& view) const {
    const NodePass pass(*this, "slices");
    const HoloExtent extent(frame, kSliceDimension);
    Mat4 screen;
    Mat4Multiply(ProjectionMatrix(), screen, view);
    for (float z = kFirstSlice; z <= kLastSlice; z += kSliceStep) {
        drawSlice(z, skipUnseen ? extent.above(kThreshold, z) : SlicePart{}, screen);
    }
}

// A slice without anything in it adds nothing to the product.
void ImageNode_HoloBall::drawSlice(float z, const SlicePart& seen, const Mat4& screen) const {
    const float edgeStep = EdgeFactor(z) * edge * pixelSize();
    const float texel = 1.0f / static_cast<float>(sliceTarget().width);
    const float reach = std::fabs(edgeStep) + texel;  // how far the filter sees
    const SlicePart outlined = seen.grown(reach);
    const float depth = z * kDepthScale;
    if (skipUnseen && (seen.isEmpty() || !isInView(outlined, depth, screen))) return;
    fillSlice(z, outlined.grown(reach + texel));
    composeHolo->Use();
    glUniform1f(composeLocations_.edgeStep, edgeStep);
    glUniform4f(composeLocations_.part, outlined.left, outlined.low, outlined.right, outlined.high);
    composeIntoProduct(*composeHolo, composeLocations_, {0, 0, depth});
}

// False when all corners lie beyond one side of the view.
bool ImageNode_HoloBall::isInView(const SlicePart& part, float depth, const Mat4& screen) const {
    int beyond[6] = {};
    for (const float u : {part.left, part.right}) {
        for (const float v : {part.low, part.high}) {
            const float x = (2.0f * u - 1.0f) * kSlabHalfSize * scale;
            const float y = (1.0f - 2.0f * v) * kSlabHalfSize * scale;
            const Vec3 place = Mat4TransformPoint(screen, {x, y, depth});
            const float w = screen[3] * x + screen[7] * y + screen[11] * depth + screen[15];
            beyond[0] += place.x > w;
            beyond[1] += place.x < -w;
            beyond[2] += place.y > w;
            beyond[3] += place.y < -w;
            beyond[4] += place.z > w;
            beyond[5] += place.z < -w;
        }
    }
    return std::find(std::begin(beyond), std::end(beyond), 4) == std::end(beyond);
}

void ImageNode_HoloBall::composeIntoProduct(const ShaderProgram& program,
                                            const ComposeLocations& locations,
                                            const Vec3& center) const {
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_COLOR);
    target_->Bind();
    target_->SelectDrawBuffers();
    target_->SetViewport();
    program.Use();
    glUniform3f(locations.layerCenter, center.x, center.y, center.z);
    sliceTarget().BindTexture(0, GL_TEXTURE0);
    DrawFullScreenQuad();
    sliceTarget().UnbindTextures(GL_TEXTURE0);
    GL_FrameBuffer::Unbind();
    glDisable(GL_BLEND);
}
