// Labels, groups and messages of KHR_debug, where the driver has it, and the count of GL errors
// that tests watch. The thread that owns the OpenGL context.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// Sends the driver's messages of high severity and errors to the debug channel and counts them.
void InstallGlDebugMessages();
// Errors counted so far, with what glGetError still holds.
std::size_t GlErrorCount();

// Names an object for graphics debuggers. `kind` is GL_PROGRAM, GL_TEXTURE, GL_FRAMEBUFFER ...; the
// object must have been bound once.
void LabelGlObject(std::uint32_t kind, std::uint32_t object, std::string_view label);

// A named span of GL commands, shown by graphics debuggers.
class GlDebugGroup {
  public:
    explicit GlDebugGroup(std::string_view name);
    ~GlDebugGroup();
    GlDebugGroup(const GlDebugGroup&) = delete;
    GlDebugGroup& operator=(const GlDebugGroup&) = delete;
};
