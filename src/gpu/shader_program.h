// One OpenGL program: compiles, binds attributes by their place in a list and fragment outputs by
// the names "frag[0]", "frag[1]" ..., links, and tells on the debug channel what happened. The
// thread that owns the OpenGL context.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class ShaderProgram {
  public:
    // `name` is used in messages only. A null source leaves its stage out; `reservedStage` is not
    // read. Entry i of `attributes` gets location i. A failed program has `linked` false and keeps
    // the driver's words in `errorLog`; whatever is drawn with it leaves the target as it was.
    ShaderProgram(std::string_view name, const char* vertexSource, const char* reservedStage,
                  const char* fragmentSource, const std::vector<std::string>& attributes,
                  int fragmentOutputCount);
    ~ShaderProgram();
    ShaderProgram(const ShaderProgram&) = delete;
    ShaderProgram& operator=(const ShaderProgram&) = delete;

    void Use() const;
    static void Unuse();
    // Location of a uniform, -1 when the program has none of that name or has failed; no GL call
    // after the first question for a name.
    int UniformLocation(std::string_view name) const;

    std::uint32_t program = 0;
    bool linked = true;
    const std::string& errorLog() const { return errorLog_; }

  private:
    std::uint32_t compileStage(std::string_view name, std::uint32_t stage, const char* source);
    void bindNames(const std::vector<std::string>& attributes, int fragmentOutputCount) const;
    bool link(std::string_view name);

    struct NamedLocation {
        std::string name;
        int location;
    };
    mutable std::vector<NamedLocation> locations_;
    std::string errorLog_;
    bool ownsProgram_ = true;    // false once a failed link has deleted it
    std::uint32_t standIn_ = 0;  // what a failed program uses: it draws nothing
};

// The attributes of 2-D passes: "vertex", "uv".
std::vector<std::string> QuadAttributes();
// A program for 2-D passes from two files below shaders/, with one output.
std::unique_ptr<ShaderProgram> MakeQuadProgram(std::string_view name, std::string_view vertexPath,
                                               std::string_view fragmentPath);
// The text of a file below shaders/ with `define` set; its lines keep their numbers.
std::string ShaderVariant(std::string_view path, std::string_view define);
