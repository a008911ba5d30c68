#include "gpu/gl_debug.h"

#include <GL/glew.h>

#include <algorithm>
#include <string>

#include "platform/debug_output.h"

namespace {

std::size_t errorCount = 0;
std::size_t toldSinceDrain = 0;  // errors that the driver told and glGetError may still hold

void GLAPIENTRY OnMessage(GLenum source, GLenum type, GLuint /*id*/, GLenum severity,
                          GLsizei length, const GLchar* message, const void* /*user*/) {
    if (source == GL_DEBUG_SOURCE_APPLICATION) return;
    if (source == GL_DEBUG_SOURCE_SHADER_COMPILER) return;  // ShaderProgram tells these itself
    if (type != GL_DEBUG_TYPE_ERROR && severity != GL_DEBUG_SEVERITY_HIGH) return;
    ++errorCount;
    if (type == GL_DEBUG_TYPE_ERROR) ++toldSinceDrain;
    std::string text = "OpenGL: ";
    if (length >= 0) {
        text.append(message, static_cast<std::size_t>(length));
    } else {
        text.append(message);
    }
    if (text.back() != '\n') text += '\n';
    DebugFault(text);
}

// Errors that glGetError holds; the driver keeps only a few, so the loop is short. The limit is for
// a context that is lost and answers with errors for ever.
std::size_t DrainErrors() {
    constexpr std::size_t kMostErrorsHeld = 64;
    std::size_t count = 0;
    while (count < kMostErrorsHeld && glGetError() != GL_NO_ERROR) ++count;
    return count;
}

// What is given to the driver of a name; a longer one would be an error.
GLsizei LengthOf(std::string_view name) {
    constexpr std::size_t kLongestName = 255;  // every driver takes this many characters
    return static_cast<GLsizei>(std::min(name.size(), kLongestName));
}

}  // namespace

void InstallGlDebugMessages() {
    if (!GLEW_KHR_debug || glDebugMessageCallback == nullptr) return;
    glEnable(GL_DEBUG_OUTPUT);
    glEnable(GL_DEBUG_OUTPUT_SYNCHRONOUS);
    glDebugMessageCallback(OnMessage, nullptr);
}

std::size_t GlErrorCount() {
    const std::size_t held = DrainErrors();
    errorCount += held - std::min(held, toldSinceDrain);
    toldSinceDrain = 0;
    return errorCount;
}

void LabelGlObject(std::uint32_t kind, std::uint32_t object, std::string_view label) {
    if (!GLEW_KHR_debug || glObjectLabel == nullptr) return;
    glObjectLabel(kind, object, LengthOf(label), label.data());
}

GlDebugGroup::GlDebugGroup(std::string_view name) {
    if (!GLEW_KHR_debug || glPushDebugGroup == nullptr) return;
    glPushDebugGroup(GL_DEBUG_SOURCE_APPLICATION, 0, LengthOf(name), name.data());
}

GlDebugGroup::~GlDebugGroup() {
    if (!GLEW_KHR_debug || glPopDebugGroup == nullptr) return;
    glPopDebugGroup();
}
