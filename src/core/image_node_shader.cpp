#include "core/image_node_shader.h"

#include <GL/glew.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "core/engine.h"
#include "core/script_faults.h"
#include "gpu/embedded_shaders.h"
#include "gpu/full_screen_quad.h"
#include "gpu/gl_debug.h"
#include "gpu/shader_program.h"
#include "platform/debug_output.h"

namespace {

// A float cut to an integer; what no integer holds becomes the nearest one, and no number 0.
int Truncated(float value) {
    if (std::isnan(value)) return 0;
    if (value >= 2147483648.0f) return 2147483647;
    if (value <= -2147483648.0f) return -2147483647 - 1;
    return static_cast<int>(value);
}

}  // namespace

ImageNode_Shader::ImageNode_Shader(Engine* owner, const std::string& nodeId,
                                   const NodeScript& nodeScript)
    : ImageNode(owner, nodeId),
      script(nodeScript),
      declaredParams_(nodeScript.params),
      target_(*this) {
    setInputCount(static_cast<int>(script.inputNames.size()));
    inputNames = script.inputNames;
    declareParams();

    program = MakeProgram(script);
    if (!program->linked) {
        refuseScript(program->errorLog());
        ReportBadFile(script.fileName, CompileFault(program->errorLog()));
    }
    findLocations();
}

ImageNode_Shader::~ImageNode_Shader() = default;

// Empty lines before the source, which may stand even before "#version", give its lines the numbers
// that they have in the file.
std::unique_ptr<ShaderProgram> ImageNode_Shader::MakeProgram(const NodeScript& nodeScript) {
    const auto linesBefore = static_cast<std::size_t>(std::max(nodeScript.sourceLine - 1, 0));
    const std::string source = std::string(linesBefore, '\n') + nodeScript.source;
    return std::make_unique<ShaderProgram>(nodeScript.name,
                                           EmbeddedShader("script_node.vert").data(), nullptr,
                                           source.c_str(), QuadAttributes(), 1);
}

void ImageNode_Shader::declareParams() {
    for (ShaderParam& p : script.params) {
        switch (p.type) {
            case kParamBool:
                engine->declareBool(this, p.label.c_str(), p.flagValue, p.flagDefault);
                break;
            case kParamFloat:
                engine->declareFloat(this, p.label, p.value, p.min, p.max, 3, p.defaultValue,
                                     p.animatable);
                break;
            case kParamInt:
                engine->declareFloat(this, p.label, p.value, p.min, p.max, 0, p.defaultValue, true);
                break;
            case kParamOption:
                engine->declareInt(this, p.label.c_str(), p.optionValue, p.optionValue, p.options);
                break;
            case kParamDirection:
                engine->declareVec2(this, p.label.c_str(), p.direction, p.direction, true);
                engine->valuesOf(this).back()->flag = true;
                break;
            case kParamPosition:
                engine->declareVec2(this, p.label.c_str(), p.position, p.position, false);
                break;
            case kParamColor:
                engine->declareVec4(this, p.label.c_str(), p.color, p.color);
                break;
            default:
                break;
        }
    }
}

void ImageNode_Shader::findLocations() {
    const auto find = [&](const std::string& name) {
        return program->linked ? program->UniformLocation(name) : -1;
    };
    frameLocations_ = {find("textureMatrix"), find("ng_time"), find("ng_aspectRatio"),
                       find("ng_sampleSize")};
    inputLocations_.clear();
    paramLocations_.clear();
    for (std::size_t port = 0; port < inputNames.size(); ++port) {
        inputLocations_.push_back(
            {find("textureMatrix_Input[" + std::to_string(port) + "]"), find(inputNames[port])});
    }
    for (const ShaderParam& param : script.params) paramLocations_.push_back(find(param.label));
}

bool ImageNode_Shader::canConnect(int, const Node* source) const {
    return isImageSource(source);
}

bool ImageNode_Shader::process() {
    if (engine->renderEnabled == 0 || !program->linked) return true;
    program->Use();
    setFrameUniforms();
    for (std::size_t port = 0; port < inputs.size(); ++port) setInput(port);
    for (std::size_t i = 0; i < script.params.size(); ++i) {
        setParam(script.params[i], paramLocations_[i]);
    }
    ShaderProgram::Unuse();
    return true;
}

void ImageNode_Shader::setFrameUniforms() {
    const auto width = static_cast<float>(target_.front().width);
    const auto height = static_cast<float>(target_.front().height);
    glUniformMatrix4fv(frameLocations_.textureMatrix, 1, GL_FALSE, textureMatrix.m);
    glUniform1f(frameLocations_.time, engine->time);
    glUniform1f(frameLocations_.aspectRatio, width / height);
    glUniform2f(frameLocations_.sampleSize, static_cast<float>(1.0 / width),
                static_cast<float>(1.0 / height));
}

void ImageNode_Shader::setInput(std::size_t port) {
    const InputLocations& locations = inputLocations_[port];
    const GLenum unit = GL_TEXTURE0 + static_cast<GLenum>(port);
    const ImageNode* source = imageInput(static_cast<int>(port));
    const Mat4 identity;
    glUniformMatrix4fv(locations.matrix, 1, GL_FALSE,
                       source == nullptr ? identity.m : source->textureMatrix.m);
    const auto kind =
        port < script.inputKinds.size() ? static_cast<std::size_t>(script.inputKinds[port]) : 0;
    const GL_Image* image = source == nullptr ? nullptr : source->images[kind].get();
    if (image != nullptr) {
        image->BindTextures(unit);
    } else {
        glActiveTexture(unit);
        glBindTexture(GL_TEXTURE_2D, 0);
    }
    glUniform1i(locations.sampler, static_cast<GLint>(port));
}

void ImageNode_Shader::setParam(const ShaderParam& param, int location) {
    switch (param.type) {
        case kParamBool:
            glUniform1i(location, param.flagValue ? 1 : 0);
            break;
        case kParamFloat:
            glUniform1f(location, param.value);
            break;
        case kParamInt:
            glUniform1i(location, Truncated(param.value));
            break;
        case kParamOption:
            glUniform1i(location, param.optionValue);
            break;
        case kParamDirection:
            glUniform2fv(location, 1, param.direction);
            break;
        case kParamPosition:
            glUniform2fv(location, 1, param.position);
            break;
        case kParamColor:
            glUniform4fv(location, 1, param.color);
            break;
        default:
            break;
    }
}

bool ImageNode_Shader::postProcess() {
    if (engine->renderEnabled == 0 || !program->linked) return true;
    const GlDebugGroup group(id);
    target_.begin();
    program->Use();
    DrawFullScreenQuad();
    ShaderProgram::Unuse();
    target_.end();
    return true;
}
