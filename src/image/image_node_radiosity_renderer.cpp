#include "image/image_node_radiosity_renderer.h"

#include <GL/glew.h>

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "core/engine.h"
#include "core/geometry_node.h"
#include "core/node_pass.h"
#include "gpu/embedded_shaders.h"
#include "gpu/gl_framebuffer.h"
#include "gpu/shader_program.h"

namespace {

constexpr long kMaxGatherSamples = 4096;
// A disc of 15 pixels at radius 1, the top of the slider. The work grows with its square, and a
// project may hold any number.
constexpr float kMaxDofRadius = 4.0f;

std::unique_ptr<ShaderProgram> MakeGeometryProgram(const char* name, const std::string& fragment,
                                                   int outputs) {
    return std::make_unique<ShaderProgram>(
        name, EmbeddedShader("radiosity_geometry.vert").data(), nullptr, fragment.c_str(),
        std::vector<std::string>{"vertex", "normal", "texcoord"}, outputs);
}

std::unique_ptr<ShaderProgram> MakeScreenProgram(const char* name, const std::string& fragment) {
    return std::make_unique<ShaderProgram>(name, EmbeddedShader("radiosity_screen.vert").data(),
                                           nullptr, fragment.c_str(), QuadAttributes(), 1);
}

std::shared_ptr<GL_FrameBuffer> MakeTarget(int attachments) {
    return std::make_shared<GL_FrameBuffer>(kFrameWidth, kFrameHeight, attachments, 16, GL_RGBA,
                                            TargetDepth::Depth32, TargetWrap::Border);
}

void SetSamplers(const ShaderProgram& program, std::initializer_list<const char*> names) {
    program.Use();
    GLint unit = 0;
    for (const char* name : names) glUniform1i(program.UniformLocation(name), unit++);
}

void ClearColour(float r, float g, float b, float a) {
    glClearColor(r, g, b, a);
    glClear(GL_COLOR_BUFFER_BIT);
    glClearColor(0, 0, 0, 0);
}

void ClearTarget(const GL_FrameBuffer& target, float rgb, float a) {
    target.Bind();
    target.SelectDrawBuffers();
    ClearColour(rgb, rgb, rgb, a);
    GL_FrameBuffer::Unbind();
}

}  // namespace

int GatherSampleCount(const std::string& text) {
    return static_cast<int>(
        std::clamp(std::strtol(text.c_str(), nullptr, 10), 0L, kMaxGatherSamples));
}

ImageNode_RadiosityRenderer::ImageNode_RadiosityRenderer(Engine* owner, const std::string& nodeId)
    : ImageNode(owner, nodeId) {
    setInputCount(3);
    inputNames = {"Geometry", "Camera", "Environment"};
    declareParameters();
    makeTargets();
    makePrograms();
    setError(!programsLinked());
    setConstantUniforms();
    findLocations();
}

ImageNode_RadiosityRenderer::~ImageNode_RadiosityRenderer() = default;

void ImageNode_RadiosityRenderer::declareParameters() {
    const auto number = [&](const char* name, float& member, float min, float max, int decimals,
                            float defaultValue) {
        engine->declareFloat(this, name, member, min, max, decimals, defaultValue, true);
    };
    engine->declareVec4(this, "Background", background, {0, 0, 0, 1});
    number("FOV", fovDegrees, 0, 180, 2, 60);
    number("DOF", dofRadius, 0, 1, 2, 0);
    number("DOF CoC", dofCoC, -20, 20, 2, 0);
    engine->declareBool(this, "AO:Enable", aoEnable, false);
    number("AO:Intensity", aoIntensity, 0, 20, 2, 5);
    number("AO:Radius", aoRadius, 0, 10, 2, 1);
    number("AO:Bias", aoBias, 0.00001f, 0.01f, 4, 0.001f);
    number("AO:Scale", aoScale, 0, 10, 2, 2.5f);
    number("AO:Max Dist", aoMaxDistance, 0.001f, 40, 2, 10);
    engine->declareBool(this, "GI:Enable", giEnable, false);
    number("GI:Ambiance", giAmbiance, 0, 1, 2, 1);
    number("GI:Intensity", giIntensity, 0, 60, 2, 5);
    number("GI:Radius", giRadius, 0, 10, 2, 1);
    number("GI:Bias", giBias, 0.00001f, 0.01f, 4, 0.001f);
    number("GI:Scale", giScale, 0, 10, 2, 2.5f);
    number("GI:Max Dist", giMaxDistance, 0.001f, 40, 2, 10);
    engine->declareString(this, "GI:Samples", giSamples, "32");
}

void ImageNode_RadiosityRenderer::makeTargets() {
    prepareBuffer = MakeTarget(kPrepareAttachments);
    dofBuffer = MakeTarget(1);
    composeBuffer = MakeTarget(1);
    aoBuffer = MakeTarget(1);
    giBuffer = MakeTarget(1);
}

void ImageNode_RadiosityRenderer::makePrograms() {
    const auto text = [](std::string_view path) { return std::string(EmbeddedShader(path)); };
    prepareShader = MakeGeometryProgram("radiosityPrepare", text("radiosity_surface.frag"),
                                        kPrepareAttachments);
    prepareAdditiveShader = MakeGeometryProgram(
        "radiosityPrepareAdditive", ShaderVariant("radiosity_surface.frag", "ADDITIVE"), 1);
    composeShader = MakeScreenProgram("radiosityCompose", text("radiosity_compose.frag"));
    aoShader = MakeScreenProgram("aoShader", text("radiosity_spiral.frag"));
    giShader = MakeScreenProgram("giShader", ShaderVariant("radiosity_spiral.frag", "LIGHT"));
    dofShader = MakeScreenProgram("dofShader", text("radiosity_depth_of_field.frag"));
}

bool ImageNode_RadiosityRenderer::programsLinked() const {
    return prepareShader->linked && composeShader->linked && aoShader->linked && giShader->linked &&
           dofShader->linked;
}

void ImageNode_RadiosityRenderer::setConstantUniforms() const {
    for (const auto* program : {prepareShader.get(), prepareAdditiveShader.get()}) {
        SetSamplers(*program, {"diffuseTexture", "illuminationTexture", "reflectionTexture"});
    }
    SetSamplers(*composeShader, {"image", "aoData", "giData", "ilData", "refData"});
    SetSamplers(*aoShader, {"eyeSpaceNormal", "eyeSpacePosition"});
    SetSamplers(*giShader, {"eyeSpaceNormal", "eyeSpacePosition", "eyeSpaceIllumination"});
    SetSamplers(*dofShader, {"image", "position"});
    // Bottom and top change places: see PrepareAttachment.
    Mat4 projection;
    Mat4Ortho2D(projection, -1, 1, 1, -1);
    for (const auto* program :
         {composeShader.get(), aoShader.get(), giShader.get(), dofShader.get()}) {
        program->Use();
        glUniformMatrix4fv(program->UniformLocation("projectionMatrix"), 1, GL_FALSE, projection.m);
    }
    ShaderProgram::Unuse();
}

void ImageNode_RadiosityRenderer::findLocations() {
    const auto surface = [](const ShaderProgram& program) {
        const auto find = [&](const char* name) { return program.UniformLocation(name); };
        return SurfaceLocations{find("cameraMatrix"),          find("projectionMatrix"),
                                find("modelMatrix"),           find("diffuseIntensity"),
                                find("illuminationIntensity"), find("reflectionIntensity"),
                                find("reflectionFresnel"),     find("illuminationColor")};
    };
    prepareLocations_ = surface(*prepareShader);
    additiveLocations_ = surface(*prepareAdditiveShader);
    const auto spiral = [](const ShaderProgram& program, const std::string& prefix) {
        const auto find = [&](const char* name) { return program.UniformLocation(prefix + name); };
        return SpiralLocations{find("Intensity"),   find("Radius"),
                               find("Bias"),        find("Scale"),
                               find("MaxDistance"), program.UniformLocation("skipNeutral")};
    };
    aoLocations_ = spiral(*aoShader, "ao");
    giLocations_ = spiral(*giShader, "gi");
    giSampleCountLocation_ = giShader->UniformLocation("SAMPLE_COUNT");
    composeIntensityLocation_ = composeShader->UniformLocation("giIntensity");
    dofLocations_ = {dofShader->UniformLocation("Radius"), dofShader->UniformLocation("CoC"),
                     dofShader->UniformLocation("skipNeutral")};
}

bool ImageNode_RadiosityRenderer::canConnect(int port, const Node* source) const {
    if (source == nullptr) return false;
    switch (port) {
        case kGeometryPort:
            return GeometryNode::isGeometrySource(source);
        case kCameraPort:
            return source->getType() == kTransform3DNode;
        case kEnvironmentPort:
            return isImageSource(source);
        default:
            return false;
    }
}

bool ImageNode_RadiosityRenderer::process() {
    if (engine->renderEnabled == 0) return true;
    const GlDebugGroup group(id);
    glDisable(GL_BLEND);
    prepare();
    gatherLight();
    findOcclusion();
    compose();
    images[0] = composeBuffer;
    if (dofRadius > 0) {
        blurByDepth();
        images[0] = dofBuffer;
    }
    return true;
}

void ImageNode_RadiosityRenderer::gatherLight() const {
    const NodePass pass(*this, "light gather");
    // What the picture does not show need not be found.
    const bool shows = (giIntensity != 0 && giAmbiance != 0) || !skipNeutralWork;
    if (!giEnable || !shows) {
        ClearTarget(*giBuffer, 0, 1);
        return;
    }
    giShader->Use();
    prepareBuffer->BindTexture(kEyeNormal, GL_TEXTURE0);
    prepareBuffer->BindTexture(kEyePosition, GL_TEXTURE1);
    prepareBuffer->BindTexture(kIllumination, GL_TEXTURE2);
    glUniform1i(giSampleCountLocation_, GatherSampleCount(giSamples));
    setSpiral(giLocations_, {giIntensity, giRadius, giBias, giScale, giMaxDistance});
    giBuffer->Fill();
    prepareBuffer->UnbindTextures(GL_TEXTURE0);
    ShaderProgram::Unuse();
}

void ImageNode_RadiosityRenderer::findOcclusion() const {
    const NodePass pass(*this, "occlusion");
    if (!aoEnable || (aoIntensity == 0 && skipNeutralWork)) {
        ClearTarget(*aoBuffer, 1, 1);
        return;
    }
    aoShader->Use();
    prepareBuffer->BindTexture(kEyeNormal, GL_TEXTURE0);
    prepareBuffer->BindTexture(kEyePosition, GL_TEXTURE1);
    setSpiral(aoLocations_, {aoIntensity, aoRadius, aoBias, aoScale, aoMaxDistance});
    aoBuffer->Fill();
    prepareBuffer->UnbindTextures(GL_TEXTURE0);
    ShaderProgram::Unuse();
}

void ImageNode_RadiosityRenderer::setSpiral(const SpiralLocations& locations,
                                            const SpiralValues& values) const {
    glUniform1f(locations.intensity, values.intensity);
    glUniform1f(locations.radius, values.radius);
    glUniform1f(locations.bias, values.bias);
    glUniform1f(locations.scale, values.scale);
    glUniform1f(locations.maxDistance, values.maxDistance);
    glUniform1i(locations.skipNeutral, skipNeutralWork ? 1 : 0);
}

void ImageNode_RadiosityRenderer::compose() const {
    const NodePass pass(*this, "compose");
    ClearTarget(*composeBuffer, 0, 1);  // what a program that failed leaves there
    composeShader->Use();
    prepareBuffer->BindTexture(kColour, GL_TEXTURE0);
    aoBuffer->BindTexture(0, GL_TEXTURE1);
    giBuffer->BindTexture(0, GL_TEXTURE2);
    prepareBuffer->BindTexture(kIllumination, GL_TEXTURE3);
    prepareBuffer->BindTexture(kReflection, GL_TEXTURE4);
    glUniform1f(composeIntensityLocation_, giAmbiance);
    composeBuffer->Fill();
    prepareBuffer->UnbindTextures(GL_TEXTURE0);
    ShaderProgram::Unuse();
}

void ImageNode_RadiosityRenderer::blurByDepth() const {
    const NodePass pass(*this, "depth of field");
    dofShader->Use();
    glUniform1f(dofLocations_.radius, std::min(dofRadius, kMaxDofRadius));
    glUniform1f(dofLocations_.coc, dofCoC);
    glUniform1i(dofLocations_.skipNeutral, skipNeutralWork ? 1 : 0);
    composeBuffer->BindTexture(0, GL_TEXTURE0);
    prepareBuffer->BindTexture(kEyePosition, GL_TEXTURE1);
    dofBuffer->Fill();
    composeBuffer->UnbindTextures(GL_TEXTURE0);
    prepareBuffer->UnbindTextures(GL_TEXTURE0);
    ShaderProgram::Unuse();
}
