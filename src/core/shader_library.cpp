#include "core/shader_library.h"

#include <string_view>

#include "gpu/embedded_shaders.h"

std::map<std::string, std::string> shaderLibrary;

void buildShaderLibrary() {
    constexpr std::string_view kFolder = "library/";
    constexpr std::string_view kEnding = ".frag";
    for (const EmbeddedShaderFile& file : EmbeddedShaders()) {
        if (!file.path.starts_with(kFolder) || !file.path.ends_with(kEnding)) continue;
        std::string_view name = file.path.substr(kFolder.size());
        name.remove_suffix(kEnding.size());
        shaderLibrary[std::string(name)] = std::string(file.text);
    }
}
