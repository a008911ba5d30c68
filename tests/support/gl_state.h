// What OpenGL holds at present, for tests that look at it.
#pragma once

#include <GL/glew.h>

#include <string>

#include "gpu/gl_image.h"

inline GLint GlInteger(GLenum what) {
    GLint value = -1;
    glGetIntegerv(what, &value);
    return value;
}

inline GLint TextureOnUnit(int unit) {
    glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
    return GlInteger(GL_TEXTURE_BINDING_2D);
}

// Such as GL_TEXTURE_WRAP_S.
inline GLint TextureParameter(const GL_Image& image, GLenum what, int index = 0) {
    GLint value = -1;
    image.BindTexture(index, GL_TEXTURE0);
    glGetTexParameteriv(GL_TEXTURE_2D, what, &value);
    image.UnbindTextures(GL_TEXTURE0);
    return value;
}

// Of the largest level, such as GL_TEXTURE_INTERNAL_FORMAT.
inline GLint TextureLevelParameter(const GL_Image& image, GLenum what, int index = 0) {
    GLint value = -1;
    image.BindTexture(index, GL_TEXTURE0);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, what, &value);
    image.UnbindTextures(GL_TEXTURE0);
    return value;
}

// What a pass has left: programs, targets, blending, and textures on the units 0 to 4. Empty when
// nothing is.
inline std::string LeftBehind() {
    std::string left;
    if (GlInteger(GL_CURRENT_PROGRAM) != 0) left += " program";
    if (GlInteger(GL_DRAW_FRAMEBUFFER_BINDING) != 0) left += " target";
    if (GlInteger(GL_READ_FRAMEBUFFER_BINDING) != 0) left += " source";
    if (glIsEnabled(GL_BLEND) == GL_TRUE) left += " blending";
    for (int unit = 0; unit < 5; ++unit) {
        if (TextureOnUnit(unit) != 0) left += " unit " + std::to_string(unit);
    }
    return left;
}
