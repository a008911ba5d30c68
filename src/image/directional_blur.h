// The one directional blur of the system, a fragment pass over a whole target: Glow and the
// parallax renderer run it twice, across and down. It takes only the taps that can touch the
// picture; where the source has a transparent border, that is a small part of a long blur, and the
// result is the same bit for bit. Main thread, with the OpenGL context.
#pragma once

#include <limits>
#include <memory>

#include "gpu/gl_framebuffer.h"
#include "gpu/math_types.h"

class ShaderProgram;

class DirectionalBlur {
  public:
    // A picture that the pass reads, and the matrix that its texture coordinates go through. Null
    // is opaque black everywhere.
    struct Input {
        const GL_Image* image = nullptr;
        int attachment = 0;
        Mat4 textureMatrix = {};
    };
    struct Settings {
        Vec2 sampleSize;       // a pixel, in texture coordinates
        Vec2 direction;        // in pixels for each unit of the length
        float length = 0;      // 10 reaches over 20 pixels to either side: it grows with its square
        float maskAmount = 0;  // 0 to 1: how far the mask's red weights the source
    };

    DirectionalBlur();
    ~DirectionalBlur();

    // False when a program did not compile; the pass then leaves its target as it is.
    bool linked() const;
    // Fills the target, upside down: two passes are upright again. Blending is as it stands. Units
    // 0 and 1 hold nothing afterwards.
    void fill(const GL_FrameBuffer& target, const Input& source, const Input& mask,
              const Settings& settings);

    // Off only to measure and to prove that the result does not depend on it.
    bool boundTaps = true;
    // The target gets the number of taps that each pixel takes, in place of the blur.
    bool showTaps = false;

  private:
    struct Pass;  // one program and its locations

    // The sum of the weights of all taps, in the order in which they are taken, and their number.
    struct Weights {
        float length = std::numeric_limits<float>::quiet_NaN();  // none yet
        float sum = 0;
        int taps = 0;
    };
    const Weights& weightsOf(float length);
    void setSettings(const Pass& pass, const Input& source, const Input& mask,
                     const Settings& settings);

    std::unique_ptr<Pass> plain_, withMipmaps_;
    Weights weights_;
};
