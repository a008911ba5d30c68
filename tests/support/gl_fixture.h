// An OpenGL context for tests: one offscreen window for the whole test program, made on first use.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

class GL_FrameBuffer;

// Tests of this fixture run with a current context, and fail when they leave a GL error behind.
class GlTest : public ::testing::Test {
  protected:
    static void SetUpTestSuite();
    void SetUp() override;
    void TearDown() override;

  private:
    std::size_t errorsBefore_ = 0;
};

// RGBA floats of one attachment, bottom row first: width * height * 4.
std::vector<float> ReadTarget(const GL_FrameBuffer& target, int attachment = 0);
