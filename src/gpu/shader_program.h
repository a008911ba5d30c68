// One OpenGL program: compiles, binds attributes by their place in a list and fragment outputs by
// the names "frag[0]", "frag[1]" ..., links, and tells on the debug channel what happened. The
// thread that owns the OpenGL context.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

class ShaderProgram {
  public:
    // `name` is used in messages only. A null source leaves its stage out; `reservedStage` is not
    // read. Entry i of `attributes` gets location i. A failed program keeps `linked` false and
    // `errorLog` with the driver's words.
    ShaderProgram(std::string_view name, const char* vertexSource, const char* reservedStage,
                  const char* fragmentSource, const std::vector<std::string>& attributes,
                  int fragmentOutputCount);
    ~ShaderProgram();
    ShaderProgram(const ShaderProgram&) = delete;
    ShaderProgram& operator=(const ShaderProgram&) = delete;

    void Use() const;
    static void Unuse();
    // Location of a uniform, -1 when the program has none of that name; no GL call after the first
    // question for a name.
    int UniformLocation(const std::string& name) const;

    std::uint32_t program = 0;
    bool linked = true;
    const std::string& errorLog() const { return errorLog_; }

  private:
    bool compileStage(std::string_view name, std::uint32_t stage, const char* source);
    bool link(std::string_view name);

    struct NamedLocation {
        std::string name;
        int location;
    };
    mutable std::vector<NamedLocation> locations_;
    std::vector<std::uint32_t> shaders_;
    std::string errorLog_;
};

// Program of two embedded files, "composeComb.vert" and so on, with the attributes of 2-D passes
// ("vertex", "uv") and one output.
std::vector<std::string> QuadAttributes();
