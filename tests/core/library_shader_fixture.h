// What the tests of the shader library share: a node of a shipped script, its pictures, and the
// comparison of what it draws with a range of what it may draw.
#pragma once

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>

#include "core/image_node_shader.h"
#include "core/shader_library.h"
#include "gpu/shader_program.h"
#include "platform/files.h"
#include "support/graph_fixture.h"

// What a pixel may be. Half floats keep 11 bits, and a renderer may cut where it should round; the
// 1e-5 is for single precision inside the shader.
struct PixelRange {
    double low[4], high[4];

    static PixelRange about(const Sample& sample) {
        PixelRange range{};
        for (int c = 0; c < 4; ++c) {
            range.low[c] = sample.rgba[c] - sample.error;
            range.high[c] = sample.rgba[c] + sample.error;
        }
        return range;
    }
    bool holds(const float* pixel) const {
        for (int c = 0; c < 4; ++c) {
            const auto value = static_cast<double>(pixel[c]);
            if (!(value >= low[c] - rounding(low[c]) && value <= high[c] + rounding(high[c]))) {
                return false;
            }
        }
        return true;
    }
    static double rounding(double value) { return std::fabs(value) / 1024 + 1e-5; }
};

class LibraryShaderTest : public GraphTest {
  protected:
    // Spread over the whole frame and small enough for a software renderer.
    static constexpr Region kBand = {0, 506, kFrameWidth, 5};
    static constexpr Region kColumn = {700, 0, 6, kFrameHeight};
    static constexpr Region kCorner = {0, 0, 90, 60};
    static constexpr Region kFarCorner = {kFrameWidth - 90, kFrameHeight - 60, 90, 60};
    static constexpr Region kEverywhere[] = {kBand, kColumn, kCorner, kFarCorner};

    ImageNode_Shader& addScript(const std::string& scriptName, const std::string& id = "shader") {
        buildShaderLibrary();
        const std::string path =
            std::string(VORN_SOURCE_DIR) + "/demo/Scripts/" + scriptName + ".node";
        const auto bytes = ReadWholeFile(path, 1u << 20);
        NodeScript script;
        EXPECT_TRUE(bytes.has_value()) << path;
        if (bytes) {
            parseScript({reinterpret_cast<const char*>(bytes->data()), bytes->size()}, path,
                        script);
        }
        EXPECT_EQ(script.source, shaderLibrary[scriptName]);
        auto& node = add<ImageNode_Shader>(id, script);
        EXPECT_FALSE(node.hasError) << node.program->errorLog();
        return node;
    }

    PictureNode& addPicture(const std::string& id, const ReferencePicture& picture) {
        return add<PictureNode>(id, picture.upload());
    }

    // Compares the node's pixels in a region with what the reference allows at their coordinates;
    // where it returns false the pixel is not decided, which at most `undecidedShare` may be.
    using Reference = std::function<bool(double u, double v, PixelRange& range)>;
    static void expectPixels(ImageNode& node, const Region& region, const Reference& reference,
                             double undecidedShare = 0) {
        const RegionPixels pixels = draw(node, region);
        int wrong = 0, undecided = 0;
        for (int y = region.y; y < region.y + region.height; ++y) {
            for (int x = region.x; x < region.x + region.width; ++x) {
                PixelRange range{};
                if (!reference((x + 0.5) / kFrameWidth, (y + 0.5) / kFrameHeight, range)) {
                    ++undecided;
                    continue;
                }
                if (range.holds(pixels.at(x, y)) || ++wrong > 3) continue;
                tellPixel(x, y, pixels.at(x, y), range);
            }
        }
        EXPECT_EQ(wrong, 0) << "pixels of " << region.width * region.height;
        EXPECT_LE(undecided, undecidedShare * region.width * region.height);
    }

    void expectEverywhere(ImageNode& node, const Reference& reference, double undecidedShare = 0) {
        for (const Region& region : kEverywhere) {
            expectPixels(node, region, reference, undecidedShare);
        }
    }

  private:
    static void tellPixel(int x, int y, const float* pixel, const PixelRange& range) {
        for (int c = 0; c < 4; ++c) {
            ADD_FAILURE() << "pixel " << x << ", " << y << " channel " << c << " is " << pixel[c]
                          << ", allowed is " << range.low[c] << " to " << range.high[c];
        }
    }
};
