#include "support/broken_shaders.h"

#include <GL/glew.h>

#include <utility>

namespace {

PFNGLSHADERSOURCEPROC driversShaderSource = nullptr;
std::string wantedText, otherText;
int brokenCount = 0, sparedCount = 0;

std::string SourceText(GLsizei count, const GLchar* const* parts, const GLint* lengths) {
    std::string text;
    for (GLsizei i = 0; i < count; ++i) {
        if (lengths != nullptr && lengths[i] >= 0) {
            text.append(parts[i], static_cast<std::size_t>(lengths[i]));
        } else {
            text.append(parts[i]);
        }
    }
    return text;
}

bool IsWanted(const std::string& source) {
    const auto has = [&](const std::string& text) {
        return source.find(text) != std::string::npos;
    };
    return has(wantedText) && (otherText.empty() || !has(otherText));
}

void GLAPIENTRY BreakingShaderSource(GLuint shader, GLsizei count, const GLchar* const* parts,
                                     const GLint* lengths) {
    const bool wanted = IsWanted(SourceText(count, parts, lengths));
    const bool spared = wanted && sparedCount > 0;
    if (spared) --sparedCount;
    if (!wanted || spared) {
        driversShaderSource(shader, count, parts, lengths);
        return;
    }
    ++brokenCount;
    const GLchar* nonsense = "#version 330 core\nnonsense\n";
    driversShaderSource(shader, 1, &nonsense, nullptr);
}

}  // namespace

BrokenShaders::BrokenShaders(std::string with, std::string without, int spared) {
    wantedText = std::move(with);
    otherText = std::move(without);
    brokenCount = 0;
    sparedCount = spared;
    driversShaderSource = std::exchange(__glewShaderSource, &BreakingShaderSource);
}

BrokenShaders::~BrokenShaders() {
    __glewShaderSource = driversShaderSource;
}

int BrokenShaders::count() const {
    return brokenCount;
}
