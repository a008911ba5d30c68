#include "gpu/shader_program.h"

#include <GL/glew.h>

#include "gpu/embedded_shaders.h"
#include "gpu/gl_debug.h"
#include "platform/debug_output.h"

namespace {

// The driver's words without the terminator that its length counts.
template <typename GetParameter, typename GetLog>
std::string InfoLog(std::uint32_t object, GetParameter getParameter, GetLog getLog) {
    GLint length = 0;
    getParameter(object, GL_INFO_LOG_LENGTH, &length);
    if (length <= 0) return {};
    std::string log(static_cast<std::size_t>(length), '\0');
    GLsizei written = 0;
    getLog(object, length, &written, log.data());
    log.resize(static_cast<std::size_t>(written));
    return log;
}

// A program that puts every vertex outside the clip volume. It stands in for one that failed, so
// that its owner draws as always, without GL errors and without a mark on the target.
std::uint32_t MakeStandIn() {
    const char* source =
        "#version 330 core\nvoid main() { gl_Position = vec4(2.0, 2.0, 2.0, 1.0); }\n";
    const std::uint32_t shader = glCreateShader(GL_VERTEX_SHADER);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    const std::uint32_t program = glCreateProgram();
    glAttachShader(program, shader);
    glLinkProgram(program);
    glDetachShader(program, shader);
    glDeleteShader(shader);
    return program;
}

}  // namespace

ShaderProgram::ShaderProgram(std::string_view name, const char* vertexSource,
                             [[maybe_unused]] const char* reservedStage, const char* fragmentSource,
                             const std::vector<std::string>& attributes, int fragmentOutputCount)
    : program(glCreateProgram()) {
    const std::uint32_t shaders[] = {compileStage(name, GL_VERTEX_SHADER, vertexSource),
                                     compileStage(name, GL_FRAGMENT_SHADER, fragmentSource)};
    if (linked) {
        bindNames(attributes, fragmentOutputCount);
        linked = link(name);
    }
    for (const std::uint32_t shader : shaders) {
        if (shader == 0) continue;
        if (ownsProgram_) glDetachShader(program, shader);
        glDeleteShader(shader);
    }
    if (!linked) standIn_ = MakeStandIn();
}

ShaderProgram::~ShaderProgram() {
    if (ownsProgram_) glDeleteProgram(program);
    if (standIn_ != 0) glDeleteProgram(standIn_);
}

// The attached shader, 0 for a stage that is left out or fails.
std::uint32_t ShaderProgram::compileStage(std::string_view name, std::uint32_t stage,
                                          const char* source) {
    if (source == nullptr) return 0;
    const std::uint32_t shader = glCreateShader(stage);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    GLint status = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &status);
    if (status == 1) {
        glAttachShader(program, shader);
        return shader;
    }
    const std::string log = InfoLog(shader, glGetShaderiv, glGetShaderInfoLog);
    DebugFault(name);
    DebugFault(log);
    errorLog_ += log;
    glDeleteShader(shader);
    linked = false;
    return 0;
}

void ShaderProgram::bindNames(const std::vector<std::string>& attributes,
                              int fragmentOutputCount) const {
    std::uint32_t location = 0;
    for (const std::string& attribute : attributes) {
        glBindAttribLocation(program, location++, attribute.c_str());
    }
    for (int i = 0; i < fragmentOutputCount; ++i) {
        const std::string output = "frag[" + std::to_string(i) + "]";
        glBindFragDataLocation(program, static_cast<std::uint32_t>(i), output.c_str());
    }
}

bool ShaderProgram::link(std::string_view name) {
    glLinkProgram(program);
    GLint status = 0;
    glGetProgramiv(program, GL_LINK_STATUS, &status);
    if (status == 1) {
        DebugOutput(name);
        DebugOutput(" Successfully linked.\n");
        LabelGlObject(GL_PROGRAM, program, name);
        return true;
    }
    const std::string log = InfoLog(program, glGetProgramiv, glGetProgramInfoLog);
    DebugFault(name);
    DebugFault(log);
    errorLog_ += log;
    glDeleteProgram(program);
    ownsProgram_ = false;
    return false;
}

void ShaderProgram::Use() const {
    glUseProgram(linked ? program : standIn_);
}

void ShaderProgram::Unuse() {
    glUseProgram(0);
}

int ShaderProgram::UniformLocation(std::string_view name) const {
    if (!linked) return -1;
    for (const NamedLocation& known : locations_) {
        if (known.name == name) return known.location;
    }
    std::string text(name);
    const int location = glGetUniformLocation(program, text.c_str());
    locations_.push_back({std::move(text), location});
    return location;
}

std::vector<std::string> QuadAttributes() {
    return {"vertex", "uv"};
}

std::unique_ptr<ShaderProgram> MakeQuadProgram(std::string_view name, std::string_view vertexPath,
                                               std::string_view fragmentPath) {
    return std::make_unique<ShaderProgram>(name, EmbeddedShader(vertexPath).data(), nullptr,
                                           EmbeddedShader(fragmentPath).data(), QuadAttributes(),
                                           1);
}

std::string ShaderVariant(std::string_view path, std::string_view define) {
    std::string text(EmbeddedShader(path));
    text.insert(text.find('\n') + 1, "#define " + std::string(define) + "\n#line 2\n");
    return text;
}
