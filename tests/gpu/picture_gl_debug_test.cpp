#include "gpu/gl_debug.h"

#include <GL/glew.h>

#include "platform/debug_output.h"
#include "support/gl_fixture.h"

namespace {

// Makes errors on purpose.
class GlDebugTest : public GlTest {
  protected:
    void TearDown() override { GlErrorCount(); }
};

}  // namespace

TEST_F(GlDebugTest, CountsAnErrorOnce) {
    const DebugCapture silent;
    const std::size_t before = GlErrorCount();
    glBindFramebuffer(GL_NONE, 0);
    EXPECT_EQ(GlErrorCount(), before + 1);
    EXPECT_EQ(GlErrorCount(), before + 1) << "an error counts once";
}

TEST_F(GlDebugTest, TellsAnErrorOnTheDebugChannel) {
    if (!GLEW_KHR_debug) GTEST_SKIP() << "the driver has no KHR_debug";
    const DebugCapture capture;
    glBindFramebuffer(GL_NONE, 0);
    ASSERT_EQ(capture.messages().size(), 1u);
    EXPECT_EQ(capture.text().rfind("OpenGL: ", 0), 0u) << capture.text();
    EXPECT_EQ(capture.text().back(), '\n');
}

TEST_F(GlDebugTest, GroupsAreSilentAndBalanced) {
    const std::size_t before = GlErrorCount();
    const DebugCapture capture;
    {
        const GlDebugGroup outer("outer");
        const GlDebugGroup inner("inner");
    }
    EXPECT_TRUE(capture.messages().empty());
    EXPECT_EQ(GlErrorCount(), before);
}

TEST_F(GlDebugTest, CutsNamesThatTheDriverWouldRefuse) {
    const std::size_t before = GlErrorCount();
    const DebugCapture capture;
    const std::string name(100000, 'n');
    {
        const GlDebugGroup group(name);
        GLuint texture = 0;
        glGenTextures(1, &texture);
        glBindTexture(GL_TEXTURE_2D, texture);
        LabelGlObject(GL_TEXTURE, texture, name);
        glBindTexture(GL_TEXTURE_2D, 0);
        glDeleteTextures(1, &texture);
    }
    EXPECT_EQ(capture.text(), "");
    EXPECT_EQ(GlErrorCount(), before);
}
