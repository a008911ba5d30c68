// The texts of the files below shaders/, put into the program by the build. Depends on nothing; any
// thread.
#pragma once

#include <iterator>
#include <span>
#include <string_view>

struct EmbeddedShaderFile {
    std::string_view path;  // relative to shaders/, "library/LensBlur.frag"
    std::string_view text;  // zero-terminated in memory
};

std::span<const EmbeddedShaderFile> EmbeddedShaders();

// The text of one file; empty when there is none of that path. The text is zero-terminated.
std::string_view EmbeddedShader(std::string_view path);
