// Scenes of the hologram, of star fields, and of motion blur. They fit any place on the timeline.
#include <array>

#include "demo/tool/demo_scenes.h"

namespace demo_scenes {

namespace {

constexpr float kBeat = 0.5f;

struct Tint {
    float r, g, b;
};

// Stars of one depth: coloured dots, seen through a window that narrows as they come closer.
struct StarLayer {
    float count, seed, luma, variance;
    Tint tint;
    float from, to;  // width of the window, 1 is the whole sky
    float driftX, driftY;
};

std::string Stars(DemoBuilder& demo, const StarLayer& layer, float start, float stop,
                  KeyMode mode) {
    const std::string dots = demo.add("Random Dots");
    demo.set(dots, "Dots", layer.count);
    demo.set(dots, "Seed", layer.seed);
    demo.set(dots, "Max Luma", layer.luma);
    demo.set(dots, "Variance", layer.variance);
    demo.setColor(dots, "Color", layer.tint.r, layer.tint.g, layer.tint.b, 1);
    // The transform scales about the corner; these two places put the middle of the sky into the
    // middle of the screen at every scale.
    demo.setVec2(dots, "Position", -layer.driftX, -layer.driftY);
    demo.animate(dots, "Position", {{start, -layer.driftX}, {stop, layer.driftX, kKeyLinear}}, 0);
    demo.animate(dots, "Position", {{start, -layer.driftY}, {stop, layer.driftY, kKeyLinear}}, 1);
    const std::string moved = demo.add("Transform2D", {dots});
    demo.setVec2(moved, "Position", 1, 1);
    demo.set(moved, "Scale", layer.from);
    demo.animate(moved, "Scale", {{start, layer.from}, {stop, layer.to, mode}});
    return moved;
}

std::string StarLayers(DemoBuilder& demo, const std::vector<StarLayer>& layers, float start,
                       float stop, KeyMode mode) {
    std::vector<std::string> pictures;
    for (const StarLayer& layer : layers) {
        pictures.push_back(Stars(demo, layer, start, stop, mode));
    }
    const std::string stack = Layers(demo, pictures);
    demo.set(stack, "Mist", 0);
    return stack;
}

std::string Halo(DemoBuilder& demo, const std::string& picture, float radius, float intensity) {
    const std::string glow = demo.add("Glow", {picture});
    demo.set(glow, "Radius", radius);
    demo.set(glow, "Intensity", intensity);
    return glow;
}

// Each weight rises in its turn and stays; the last turn is the free orbit's.
void MorphThroughAll(DemoBuilder& demo, const std::string& hologram, float start, float stop) {
    constexpr int kPresets = 10;
    const float turn = (stop - start) / (kPresets + 1);
    for (int k = 0; k < kPresets; ++k) {
        const float from = start + turn * static_cast<float>(k);
        const std::string name = "Anim " + std::to_string(k);
        demo.animate(hologram, name.c_str(), {{start, 0}, {from, 0}, {from + turn * 0.8f, 1}});
    }
    const float last = start + turn * kPresets;
    demo.animate(hologram, "MetaballFX", {{start, 0}, {last, 0}, {last + turn * 0.6f, 1}});
}

}  // namespace

std::string Hologram(DemoBuilder& demo, float start, float stop) {
    const std::string camera = demo.add("OrbitCamera");
    demo.set(camera, "Global Speed", 0.22f);
    demo.set(camera, "Time Offset", -0.07f * start - 0.2f);  // in half turns
    demo.animate(camera, "Radius", {{start, 7}, {start + 3, 4.6f, kKeyEaseOut}, {stop, 3.6f}});
    demo.animate(camera, "Height", {{start, 1.6f}, {(start + stop) / 2, -0.8f}, {stop, 0.9f}});
    const std::string hologram = demo.add("HoloBall", {camera});
    demo.setColor(hologram, "Color", 0.25f, 0.8f, 1.0f, 1.0f);
    demo.set(hologram, "Edge", 1.2f);
    demo.set(hologram, "Scale", 1.1f);
    demo.pulse(hologram, "Brightness", start, stop, kBeat, 0.07f, 0.12f);
    MorphThroughAll(demo, hologram, start, stop);

    const std::string room =
        StarLayers(demo,
                   {{1500, 3, 3.0f, 0.1f, {0.5f, 0.6f, 1.0f}, 0.9f, 0.75f, 0.05f, 0.02f},
                    {300, 8, 20.0f, 0.5f, {0.7f, 0.4f, 1.0f}, 0.8f, 0.6f, 0.1f, 0.03f}},
                   start, stop, kKeyLinear);
    // The hologram is opaque black between its lines; the stars show through where it is dark.
    const std::string lines = demo.add("Luma To Alpha", {hologram});
    const std::string both = demo.add("Compose", {room, lines});
    return Halo(demo, both, 12, 0.8f);
}

std::string Starfield(DemoBuilder& demo, float start, float stop) {
    // Far brighter than white: what remains of a dot under the glow is its halo.
    const std::string sky =
        StarLayers(demo,
                   {{6000, 11, 2.5f, 0.05f, {0.6f, 0.75f, 1.1f}, 0.98f, 0.80f, 0.0f, 0.01f},
                    {1500, 23, 12.0f, 0.4f, {1.6f, 1.2f, 0.9f}, 0.95f, 0.62f, 0.01f, 0.01f},
                    {360, 37, 50.0f, 1.5f, {1.0f, 1.4f, 2.0f}, 0.92f, 0.42f, 0.02f, 0.0f},
                    {160, 51, 50.0f, 2.0f, {1.6f, 1.2f, 1.5f}, 0.90f, 0.30f, 0.03f, 0.01f}},
                   start, stop, kKeyEaseIn);
    return Halo(demo, sky, 14, 2.2f);
}

std::string MotionBlurred(DemoBuilder& demo, float start, float stop) {
    // Bright enough to show when they are drawn out into lines.
    const std::string sparks =
        StarLayers(demo,
                   {{2500, 71, 30.0f, 1.0f, {1.0f, 1.5f, 3.0f}, 1.0f, 0.50f, 0.0f, 0.0f},
                    {700, 83, 50.0f, 3.0f, {4.0f, 3.0f, 5.0f}, 1.0f, 0.20f, 0.0f, 0.0f},
                    {300, 97, 50.0f, 3.0f, {9.0f, 4.0f, 3.0f}, 1.0f, 0.12f, 0.0f, 0.0f}},
                   start, stop, kKeyEaseIn);
    const std::string ornament = Picture(demo, "mandala.png", true);
    demo.setChoice(ornament, "Scale", 1);                  // round, not stretched
    demo.setVec2(ornament, "Position", 0.7333f, 0.5259f);  // a square of 1024 in the middle
    const std::string wheel = demo.add("Lettering Overlay", {sparks, ornament});
    demo.set(wheel, "Glow", 0);
    demo.set(wheel, "Darken", 0);
    demo.setColor(wheel, "Tint", 0.75f, 0.65f, 0.9f, 1);
    demo.animate(wheel, "Rotation", {{start, 0}, {stop, 420, kKeyEaseIn}});
    demo.animate(wheel, "Scale", {{start, 0.5f}, {stop, 1.1f, kKeyEaseIn}});
    const std::string blurred = demo.add("MotionBlur", {wheel});
    demo.setChoice(blurred, "Samples", 4);  // twelve
    demo.set(blurred, "Shutter", 0.08f);
    return Halo(demo, blurred, 12, 0.5f);
}

}  // namespace demo_scenes
