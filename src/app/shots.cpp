#include "app/shots.h"

#include <GL/glew.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "app/command_line.h"
#include "app/session.h"
#include "platform/picture_decoder.h"

namespace {

std::vector<float> ReadPicture(const GL_FrameBuffer& target) {
    std::vector<float> rgba(static_cast<std::size_t>(target.width) *
                            static_cast<std::size_t>(target.height) * 4);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, target.framebuffer);
    // Some drivers read back what was there before a clear that nothing was drawn after.
    glFinish();
    glReadBuffer(GL_COLOR_ATTACHMENT0);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, target.width, target.height, GL_RGBA, GL_FLOAT, rgba.data());
    glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
    return rgba;
}

// The target's colours are premultiplied, so over black they stand as they are.
std::vector<std::uint8_t> OverBlack(const std::vector<float>& rgba) {
    std::vector<std::uint8_t> rgb;
    rgb.reserve(rgba.size() / 4 * 3);
    for (std::size_t i = 0; i + 3 < rgba.size(); i += 4) {
        for (std::size_t c = 0; c < 3; ++c) {
            const float value = rgba[i + c];
            const float clamped = value > 0.0f ? std::min(value, 1.0f) : 0.0f;  // NaN is black
            rgb.push_back(static_cast<std::uint8_t>(std::lround(clamped * 255.0f)));
        }
    }
    return rgb;
}

}  // namespace

bool TakeShot(Session& session, const Shot& shot) {
    constexpr double kFrameSeconds = 1.0 / 60.0;
    session.runGraph(static_cast<float>(std::max(shot.seconds - kFrameSeconds, 0.0)));
    session.runGraph(static_cast<float>(shot.seconds));
    const GL_FrameBuffer& target = *session.ui->editorTarget;
    const std::vector<float> rgba = ReadPicture(target);
    const auto width = static_cast<std::uint32_t>(target.width);
    const auto height = static_cast<std::uint32_t>(target.height);
    if (shot.file.ends_with(".exr")) return WriteExr(shot.file, width, height, rgba.data());
    return WritePng(shot.file, width, height, 3, OverBlack(rgba).data());
}
