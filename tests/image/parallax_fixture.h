// Scenes for tests of the parallax renderer: files made on the spot, and the whole chain from keys
// to the composed picture once more, in double precision, pixel by pixel.
#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "image/image_node_2d_parallax_renderer.h"
#include "image/parallax_scene.h"
#include "platform/debug_output.h"
#include "support/graph_fixture.h"
#include "support/picture_files.h"
#include "support/temp_folder.h"

using Rgba = std::array<double, 4>;

inline Rgba Mixed(const Rgba& a, const Rgba& b, double f) {
    Rgba result;
    for (std::size_t c = 0; c < 4; ++c) result[c] = a[c] * (1 - f) + b[c] * f;
    return result;
}

// A picture file of four channels, and what its premultiplied texels hold: slow waves, so that the
// 8 bits that a renderer keeps of a place between two texels change little.
struct LayerPicture {
    int width = 48, height = 27;
    std::vector<std::uint8_t> file;    // as in the PNG
    std::vector<std::uint8_t> texels;  // premultiplied

    explicit LayerPicture(int seed, int leastAlpha = 60) {
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) addTexel(x, y, seed, leastAlpha);
        }
    }
    static LayerPicture Plain(std::array<int, 4> rgba) {
        LayerPicture picture(0);
        picture.file.clear();
        picture.texels.clear();
        for (int i = 0; i < picture.width * picture.height; ++i) picture.add(rgba);
        return picture;
    }

    // Bilinear, the edge going on for ever outside.
    Rgba sample(double u, double v) const {
        const double x = u * width - 0.5, y = v * height - 0.5;
        const int left = static_cast<int>(std::floor(x)), top = static_cast<int>(std::floor(y));
        const Rgba upper = Mixed(at(left, top), at(left + 1, top), x - left);
        const Rgba lower = Mixed(at(left, top + 1), at(left + 1, top + 1), x - left);
        return Mixed(upper, lower, y - top);
    }

  private:
    void addTexel(int x, int y, int seed, int leastAlpha) {
        const auto wave = [&](int channel) {
            return 0.5 + 0.25 * std::sin(0.13 * x + 1.7 * channel + seed) +
                   0.25 * std::cos(0.17 * y - 0.9 * channel + 0.05 * x + 2 * seed);
        };
        add({static_cast<int>(255 * wave(0)), static_cast<int>(255 * wave(1)),
             static_cast<int>(255 * wave(2)),
             leastAlpha + static_cast<int>((255 - leastAlpha) * wave(3))});
    }
    void add(std::array<int, 4> rgba) {
        for (const int value : rgba) file.push_back(static_cast<std::uint8_t>(value));
        const float factor = static_cast<float>(rgba[3]) / 255.0f;
        for (std::size_t c = 0; c < 3; ++c) {
            texels.push_back(static_cast<std::uint8_t>(static_cast<float>(rgba[c]) * factor));
        }
        texels.push_back(static_cast<std::uint8_t>(rgba[3]));
    }
    Rgba at(int x, int y) const {
        const int index = std::clamp(y, 0, height - 1) * width + std::clamp(x, 0, width - 1);
        Rgba rgba;
        for (std::size_t c = 0; c < 4; ++c) {
            rgba[c] = texels[static_cast<std::size_t>(index) * 4 + c] / 255.0;
        }
        return rgba;
    }
};

// One layer as the reference sees it.
struct ReferenceLayer {
    std::string name;
    std::int32_t mode = 2;
    const LayerPicture* picture = nullptr;
    std::vector<ParallaxKey> keys;
    bool neon = false, mask = false;
};

inline ParallaxKey StillKey(float left, float top, float right, float bottom, float opacity = 1) {
    return {left, top, right, bottom, opacity, 0, 0};
}

// What the renderer computes, once more.
class ReferenceScene {
  public:
    struct Settings {
        double globalAlpha = 1, fxIntensity = 0;
        double glowRadius = 0, glowIntensity = 1, glowMask = 1;
        Rgba background = {0, 0, 0, 1};
        std::size_t slot = 0;
        double seconds = 0;  // of the scene
        const ReferencePicture* fx = nullptr;
        Mat4 fxMatrix;
    };
    // Colour and neon of a pixel.
    using Pair = std::array<Rgba, 2>;

    std::vector<ReferenceLayer> layers;  // front first
    Settings settings;

    // After all layers.
    Pair layersAt(int x, int y) const { return behind(0, x, y); }

    // The whole chain.
    Rgba resultAt(int x, int y) const {
        Rgba result = settings.background;
        screen(result, layersAt(x, y)[0], 1);
        const std::pair<double, double> glow = glowOfSlot();
        screen(result, blurredAt(x, y), glow.second * settings.glowIntensity);
        return result;
    }

  private:
    struct Place {
        double x0, y0, x1, y1, opacity;  // pixels
    };

    static void screen(Rgba& result, const Rgba& source, double factor) {
        for (std::size_t c = 0; c < 4; ++c) {
            const double s = source[c] * factor;
            result[c] = s + result[c] * (1 - s);
        }
    }

    // Length and strength of the glow.
    std::pair<double, double> glowOfSlot() const {
        if (settings.slot == 0) return {70, 3};
        if (settings.slot == 1) return {62.5, 6.05};
        if (settings.slot < 4) return {54, 1.9};
        return {54, 7.4};
    }

    std::optional<Place> placeOf(const ReferenceLayer& layer) const {
        const auto& keys = layer.keys;
        const int n = static_cast<int>(keys.size());
        const double t = settings.seconds;
        const int i = std::clamp(static_cast<int>(t * 60), 0, n - 1);
        int to = i;
        double f = 0;
        if (i > 0 && i < n - 1) {
            const auto time = [&](int k) {
                return static_cast<double>(keys[static_cast<std::size_t>(k)].time);
            };
            if (time(i - 1) <= t && t <= time(i + 1)) {
                f = (t - time(i - 1)) / (time(i + 1) - time(i - 1));
                to = i + 1;
            }
        }
        const ParallaxKey& a = keys[static_cast<std::size_t>(i)];
        const ParallaxKey& b = keys[static_cast<std::size_t>(to)];
        const auto mixed = [&](float from, float end) {
            return (1 - f) * static_cast<double>(from) + f * static_cast<double>(end);
        };
        const double opacity = mixed(a.opacity, b.opacity) * settings.globalAlpha;
        if (!(opacity > 0)) return std::nullopt;
        return Place{mixed(a.left, b.left), mixed(a.top, b.top), mixed(a.right, b.right),
                     mixed(a.bottom, b.bottom), opacity};
    }

    // The layers from `first` to the last one.
    Pair behind(std::size_t first, int x, int y) const {
        Pair pair = {settings.background, settings.background};
        for (std::size_t i = layers.size(); i-- > first;) addLayer(i, x, y, pair);
        return pair;
    }

    static double dodge(double base, double blend) {
        return blend == 1 ? blend : std::min(base / (1 - blend), 1.0);
    }

    void addLayer(std::size_t index, int x, int y, Pair& pair) const {
        const ReferenceLayer& layer = layers[index];
        const auto place = placeOf(layer);
        if (!place) return;
        const double u = (x + 0.5 - place->x0) / (place->x1 - place->x0);
        const double v = (y + 0.5 - place->y0) / (place->y1 - place->y0);
        if (u < 0 || u >= 1 || v < 0 || v >= 1) return;

        double tu = u, tv = v, effect = 0;
        Rgba fx = {0, 0, 0, 0};
        if (layer.mask && settings.fx != nullptr) {
            const auto& m = settings.fxMatrix.m;
            const auto d = [&](int i) { return static_cast<double>(m[i]); };
            tu = d(0) * u + d(4) * v + d(12);
            tv = d(1) * u + d(5) * v + d(13);
            effect = place->opacity * settings.fxIntensity;
        }
        Rgba col = layer.picture->sample(tu, tv);
        const Rgba ncol = layer.neon ? col : Rgba{0, 0, 0, 0};
        if (effect > 0) {
            const Sample sample = settings.fx->sample(tu, tv);
            for (std::size_t c = 0; c < 4; ++c) fx[c] = sample.rgba[c] * effect * col[3];
        }
        for (double& value : col) value *= place->opacity;

        const double neonIntensity = layer.neon ? place->opacity : 0;
        const double sum = ncol[0] + ncol[1] + ncol[2];
        if (layer.mode == 27 && settings.slot == 11) {
            for (std::size_t c = 0; c < 3; ++c) {
                col[c] = dodge(pair[0][c], col[c]) * col[3] + pair[0][c] * (1 - col[3]);
            }
            pair[0] = Mixed(col, fx, effect);
            const double glow = sum * neonIntensity / 3 * col[3];
            const Rgba base = neonBehind(index + 1, tu, tv);
            for (std::size_t c = 0; c < 3; ++c) {
                pair[1][c] = dodge(base[c], glow) * place->opacity + base[c] * (1 - place->opacity);
            }
            pair[1][3] = col[3];
            return;
        }
        const double glow = sum * std::max(neonIntensity, effect) / 3 * col[3];
        const Pair sources = {Mixed(col, fx, effect), Rgba{glow, glow, glow, col[3]}};
        for (std::size_t i = 0; i < 2; ++i) {
            for (std::size_t c = 0; c < 4; ++c) {
                const double keep = layer.mode == 2 ? 1 - sources[i][3] : 1 - sources[i][c];
                pair[i][c] = sources[i][c] + pair[i][c] * keep;
            }
        }
    }

    // The neon of the layers behind, at a place between pixels.
    Rgba neonBehind(std::size_t first, double u, double v) const {
        return sampled(u, v, [&](int x, int y) { return behind(first, x, y)[1]; });
    }

    // Bilinear, transparent black outside of the frame.
    static Rgba sampled(double u, double v, const std::function<Rgba(int, int)>& pixel) {
        const double x = u * kFrameWidth - 0.5, y = v * kFrameHeight - 0.5;
        const double left = std::floor(x + 1e-9), top = std::floor(y + 1e-9);
        const auto at = [&](double px, double py, double weight) {
            const bool inside = px >= 0 && py >= 0 && px < kFrameWidth && py < kFrameHeight;
            if (!inside || weight < 1e-8) return Rgba{0, 0, 0, 0};
            return pixel(static_cast<int>(px), static_cast<int>(py));
        };
        const double fx = x - left, fy = y - top;
        const Rgba upper = Mixed(at(left, top, 1 - fx), at(left + 1, top, fx), fx);
        if (fy < 1e-8) return upper;
        const Rgba lower = Mixed(at(left, top + 1, 1 - fx), at(left + 1, top + 1, fx), fx);
        return Mixed(upper, lower, fy);
    }

    // Sum over the taps; `tap` is given the offset in pixels and gives the weighted colour.
    Rgba blurred(const std::function<Rgba(double offset)>& tap) const {
        const double length = glowOfSlot().first * settings.glowRadius;
        const double l = std::max(1.0, length);
        Rgba sum = {0, 0, 0, 0};
        double weights = 0;
        for (double f = -l; f <= l; f += 0.75) {
            const double w = std::pow(1 - std::fabs(f) / l, 2);
            const Rgba color = tap(f * std::min(1.0, length) * (1 + length / 10));
            for (std::size_t c = 0; c < 4; ++c) sum[c] += color[c] * w;
            weights += w;
        }
        for (double& value : sum) value /= weights;
        return sum;
    }

    // Across, weighted by the neon.
    Rgba acrossAt(int x, int y) const {
        const auto known = across_.find({x, y});
        if (known != across_.end()) return known->second;
        const double v = (y + 0.5) / kFrameHeight;
        const Rgba result = blurred([&](double offset) {
            const double u = (x + 0.5 + offset) / kFrameWidth;
            Rgba color = sampled(u, v, [&](int px, int py) { return layersAt(px, py)[0]; });
            const Rgba neon = sampled(u, v, [&](int px, int py) { return layersAt(px, py)[1]; });
            for (double& value : color) {
                value *= 1 - settings.glowMask + settings.glowMask * neon[0];
            }
            return color;
        });
        return across_[{x, y}] = result;
    }

    // Both ways. The passes turn the picture over, so that the second one runs upwards.
    Rgba blurredAt(int x, int y) const {
        return blurred([&](double offset) {
            return sampled((x + 0.5) / kFrameWidth, (y + 0.5 - offset) / kFrameHeight,
                           [&](int px, int py) { return acrossAt(px, py); });
        });
    }

    mutable std::map<std::pair<int, int>, Rgba> across_;
};

class ParallaxTest : public GraphTest {
  protected:
    void writePicture(const std::string& name, const LayerPicture& picture) {
        const FileContent png =
            MakePng(static_cast<std::uint32_t>(picture.width),
                    static_cast<std::uint32_t>(picture.height), {.colorType = 6}, picture.file);
        folder.write("Graphics/" + name, std::string(png.begin(), png.end()));
    }
    void writeScene(const std::string& name, const std::vector<ParallaxRecord>& records) {
        const auto bytes = ParallaxSceneBytes(records);
        folder.write(name, std::string(bytes.begin(), bytes.end()));
    }
    // A record that stands still over a part of the frame.
    static ParallaxRecord still(const std::string& name, std::int32_t mode = 2,
                                const ParallaxKey& key = StillKey(0, 0, 1920, 1080)) {
        return {name, mode, {key}};
    }
    void setScene(std::size_t slot, const std::string& file, float startTime = 0) {
        node.scnFiles[slot] = file;
        node.scenes[slot].startTime = startTime;
    }
    // Takes in changed files, and tells what was said about it.
    std::string load() {
        const DebugCapture capture;
        engine.renderEnabled = 0;
        EXPECT_TRUE(node.process());
        engine.renderEnabled = 1;
        std::string text;
        for (const std::string& message : capture.messages()) {
            if (message.find("Texture Memory") == std::string::npos) text += message;
        }
        return text;
    }
    std::size_t layerCount(std::size_t slot = 0) const { return node.scenes[slot].layers.size(); }

    // Runs one frame; only the region of every target is drawn.
    void run(float seconds, const Region& region) {
        const DebugCapture quiet;
        engine.time = seconds;
        node.updated = false;
        glEnable(GL_SCISSOR_TEST);
        glScissor(region.x, region.y, region.width, region.height);
        node.pull();
        glDisable(GL_SCISSOR_TEST);
    }

    static RegionPixels readAttachment(const GL_FrameBuffer& target, int attachment,
                                       const Region& region) {
        RegionPixels pixels{region, {}};
        pixels.rgba.resize(static_cast<std::size_t>(region.width * region.height) * 4);
        glBindFramebuffer(GL_READ_FRAMEBUFFER, target.framebuffer);
        glReadBuffer(GL_COLOR_ATTACHMENT0 + static_cast<GLenum>(attachment));
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glFinish();
        glReadPixels(region.x, region.y, region.width, region.height, GL_RGBA, GL_FLOAT,
                     pixels.rgba.data());
        glReadBuffer(GL_COLOR_ATTACHMENT0);
        glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
        return pixels;
    }

    static int countWrong(const RegionPixels& pixels, int step, double tolerance,
                          const std::function<Rgba(int, int)>& expected) {
        int wrong = 0;
        const Region& region = pixels.region;
        for (int y = region.y; y < region.y + region.height; y += step) {
            for (int x = region.x; x < region.x + region.width; x += step) {
                const Rgba wanted = expected(x, y);
                for (std::size_t c = 0; c < 4; ++c) {
                    const auto actual = static_cast<double>(pixels.at(x, y)[c]);
                    const bool right = std::fabs(actual - wanted[c]) <= tolerance;
                    if (!right && ++wrong <= 3) {
                        ADD_FAILURE() << "at " << x << ", " << y << " channel " << c << ": "
                                      << actual << " for " << wanted[c];
                    }
                }
            }
        }
        return wrong;
    }

    // A renderer may mix the 8 bits of four texels in 8 bits, with 8 bits of the place between
    // them; half floats then keep 11 bits for each of a few layers.
    static constexpr double kLayerTolerance = 2.0 / 255;

    // Draws a part of the frame and compares both attachments of the layers.
    void expectLayers(const ReferenceScene& scene, float seconds,
                      const Region& region = {0, 300, kFrameWidth, 3}, int step = 1) {
        for (const int attachment : {0, 1}) {
            run(seconds, region);
            const RegionPixels pixels =
                readAttachment(*node.layerBuffers[lastTarget(scene)], attachment, region);
            EXPECT_EQ(countWrong(pixels, step, kLayerTolerance,
                                 [&](int x, int y) {
                                     return scene.layersAt(x,
                                                           y)[static_cast<std::size_t>(attachment)];
                                 }),
                      0)
                << "attachment " << attachment;
        }
    }

    // Every dodge changes the target.
    static std::size_t lastTarget(const ReferenceScene& scene) {
        std::size_t dodges = 0;
        for (const ReferenceLayer& layer : scene.layers) {
            dodges += layer.mode == 27 && scene.settings.slot == 11;
        }
        return dodges % 2;
    }

    // Writes the scene's file and pictures, and puts it into its slot.
    void use(const ReferenceScene& scene, const std::string& file = "scene.scn") {
        std::vector<ParallaxRecord> records;
        for (const ReferenceLayer& layer : scene.layers) {
            writePicture(layer.name, *layer.picture);
            records.push_back({layer.name, layer.mode, layer.keys});
        }
        writeScene(file, records);
        setScene(scene.settings.slot, file);
        EXPECT_EQ(load(), "");
        ASSERT_EQ(layerCount(scene.settings.slot), scene.layers.size());
        const auto& s = scene.settings;
        set(node, "Global Alpha", {static_cast<float>(s.globalAlpha)});
        set(node, "FX Intensity", {static_cast<float>(s.fxIntensity)});
        set(node, "Glow:Radius", {static_cast<float>(s.glowRadius)});
        set(node, "GlowIntensity", {static_cast<float>(s.glowIntensity)});
        set(node, "Glow:Mask", {static_cast<float>(s.glowMask)});
        set(node, "Background",
            {static_cast<float>(s.background[0]), static_cast<float>(s.background[1]),
             static_cast<float>(s.background[2]), static_cast<float>(s.background[3])});
    }

    TempFolder folder;
    WorkingFolder workingFolder{folder.path()};
    ImageNode_2DParallaxRenderer& node = add<ImageNode_2DParallaxRenderer>("parallax");
};
