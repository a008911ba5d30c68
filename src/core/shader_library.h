// The fragment shaders that node scripts may name instead of carrying a source of their own.
#pragma once

#include <map>
#include <string>

// Name to source text; filled once by buildShaderLibrary.
extern std::map<std::string, std::string> shaderLibrary;

// Fills the table; before any script is parsed.
void buildShaderLibrary();
