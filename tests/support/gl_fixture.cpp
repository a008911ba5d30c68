#include "support/gl_fixture.h"

#include <GL/glew.h>

#include <memory>
#include <string>

#include "gpu/gl_debug.h"
#include "gpu/gl_framebuffer.h"
#include "platform/window.h"

namespace {

Window* SharedWindow(std::string& reason) {
    static std::string failure;
    // Never closed: the driver stays loaded, so that the leak check can tell its blocks from ours.
    static Window* const window = MakeWindow(WindowKind::Offscreen, failure).release();
    reason = failure;
    return window;
}

}  // namespace

void GlTest::SetUpTestSuite() {
    std::string reason;
    if (SharedWindow(reason) == nullptr) return;
    InstallGlDebugMessages();
}

void GlTest::SetUp() {
    std::string reason;
    ASSERT_NE(SharedWindow(reason), nullptr) << reason;
    errorsBefore_ = GlErrorCount();
}

void GlTest::TearDown() {
    EXPECT_EQ(GlErrorCount(), errorsBefore_) << "the test left OpenGL errors behind";
}

std::vector<float> ReadTarget(const GL_FrameBuffer& target, int attachment) {
    std::vector<float> pixels(static_cast<std::size_t>(target.width) *
                              static_cast<std::size_t>(target.height) * 4);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, target.framebuffer);
    glReadBuffer(GL_COLOR_ATTACHMENT0 + static_cast<GLenum>(attachment));
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glFinish();  // Mesa's software renderer does not wait for a clear that nothing followed
    glReadPixels(0, 0, target.width, target.height, GL_RGBA, GL_FLOAT, pixels.data());
    glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
    return pixels;
}
