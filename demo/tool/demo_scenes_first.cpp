// The first half of the demo: from the title to the northern lights.
#include "demo/tool/demo_scenes.h"

namespace demo_scenes {

std::string Picture(DemoBuilder& demo, const char* file, bool hasAlpha) {
    const std::string reader = demo.add("Reader");
    demo.setText(reader, "Filename", std::string(".\\Graphics\\") + file);
    demo.setFlag(reader, "PreMultiply", hasAlpha);
    return reader;
}

std::string Layers(DemoBuilder& demo, const std::vector<std::string>& pictures) {
    const std::string stack = demo.add("Layer Stack");
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        demo.link(pictures[i], stack, static_cast<int>(i));
    }
    demo.set(stack, "Layers", static_cast<float>(pictures.size()));
    return stack;
}

std::string Lettering(DemoBuilder& demo, const std::string& picture, const char* file, float start,
                      float stop) {
    const std::string shown = demo.add("Time Switch Image", {Picture(demo, file, true)});
    demo.setText(shown, "Start A", std::to_string(start));
    demo.setText(shown, "Stop A", std::to_string(stop));
    const std::string overlay = demo.add("Lettering Overlay", {picture, shown});
    demo.set(overlay, "Glow", 0.3f);
    demo.animate(overlay, "Reveal",
                 {{start, 0.0f}, {start + 1.5f, 1.0f, kKeyEaseOut}, {stop, 1.0f, kKeyLinear}});
    demo.animate(overlay, "Opacity",
                 {{start, 0.0f},
                  {start + 0.5f, 1.0f, kKeyLinear},
                  {stop - 0.75f, 1.0f},
                  {stop, 0.0f, kKeyEaseIn}});
    demo.animate(overlay, "Scale", {{start, 1.08f}, {stop, 0.96f, kKeyEaseOut}});
    return overlay;
}

std::string Title(DemoBuilder& demo) {
    const std::string stars = demo.add("Starfield Warp");
    demo.set(stars, "Speed", 0.0f);
    demo.animate(stars, "Travel",
                 {{0, 0}, {8, 3, kKeyEaseIn}, {14, 9, kKeyLinear}, {16, 16, kKeyEaseIn}});
    demo.animate(stars, "Stretch", {{0, 0.1f}, {12, 0.3f}, {16, 1.0f, kKeyEaseIn}});
    demo.animate(stars, "Roll", {{0, -25}, {16, 20}});
    const std::string title = Lettering(demo, stars, "title.png", 3.5f, 15.5f);
    // Rays burst out of the word with the last bars.
    const std::string rays = demo.add("Radial Out Blur", {title});
    demo.set(rays, "Quality", 8);
    demo.animate(rays, "Length", {{0, 0}, {12, 0}, {15.9f, 160, kKeyEaseIn}});
    demo.animate(rays, "Oooooze", {{0, 0}, {12, 0}, {15.9f, 0.4f, kKeyEaseIn}});
    const std::string glow = demo.add("Soft Glow", {rays});
    demo.set(glow, "Threshold", 0.75f);
    demo.set(glow, "Strength", 0.5f);
    return glow;
}

std::string Corridor(DemoBuilder& demo) {
    const std::string corridor = demo.add("Neon Corridor");
    demo.set(corridor, "Speed", 0.0f);
    demo.animate(corridor, "Travel", {{16, 0}, {24, 26, kKeyLinear}, {32, 95, kKeyEaseIn}});
    demo.animate(corridor, "Roll", {{16, 0}, {20, 0}, {26, 35}, {32, -90, kKeyEaseIn}});
    demo.pulse(corridor, "Pulse", 16, 32, 0.5f, 0.0f, 0.8f);
    const std::string first = Lettering(demo, corridor, "word_light.png", 18, 22);
    const std::string second = Lettering(demo, first, "word_motion.png", 24, 28);
    // The cut to the drop is a whip to the side.
    const std::string whip = demo.add("Directional Blur", {second});
    demo.setVec2(whip, "Direction", 1.0f, 0.15f);
    demo.set(whip, "Quality", 6);
    demo.animate(whip, "Length", {{16, 1}, {31, 1}, {32, 180, kKeyEaseIn}});
    return whip;
}

namespace {

// A layer of the skyline that slides against the others as the camera goes by.
std::string SlidingLayer(DemoBuilder& demo, const char* file, float scale, float from, float to) {
    const std::string reader = Picture(demo, file, true);
    demo.set(reader, "ScaleFac", scale);
    const float height = 0.5f - (scale - 1.0f) * 0.5f;
    demo.setVec2(reader, "Position", from, height);
    demo.animate(reader, "Position", {{32, from}, {48, to, kKeyEaseOut}}, 0);
    return reader;
}

}  // namespace

std::string Skyline(DemoBuilder& demo) {
    const std::string sky = Picture(demo, "sky_night.png", false);
    // The moon in its own proportions, on a slow rise.
    const std::string moonPicture = Picture(demo, "moon.png", true);
    demo.setChoice(moonPicture, "Scale", 1);
    demo.set(moonPicture, "ScaleFac", 0.42f);
    const std::string moon = demo.add("Transform2D", {moonPicture});
    demo.setVec2(moon, "Position", 1.18f, 0.62f);
    demo.animate(moon, "Position", {{32, 1.16f}, {48, 1.20f, kKeyLinear}}, 0);
    demo.animate(moon, "Position", {{32, 0.66f}, {48, 0.55f, kKeyEaseOut}}, 1);
    const std::string stack =
        Layers(demo, {sky, moon, SlidingLayer(demo, "mountains.png", 1.06f, 0.49f, 0.45f),
                      SlidingLayer(demo, "city_far.png", 1.12f, 0.49f, 0.40f),
                      SlidingLayer(demo, "city_near.png", 1.25f, 0.49f, 0.28f)});
    demo.set(stack, "Ripple", 0.6f);
    const std::string graded = demo.add("Color Correct", {stack});
    demo.set(graded, "Exp_B", 0.92f);
    demo.animate(graded, "Gamma", {{32, 2.2f}, {33, 1.1f, kKeyEaseOut}, {48, 1.0f, kKeyLinear}});
    const std::string glow = demo.add("Soft Glow", {graded});
    demo.set(glow, "Threshold", 0.5f);
    demo.pulse(glow, "Pulse", 32, 48, 1.0f, 0.0f, 0.6f);
    return glow;
}

std::string Tunnel(DemoBuilder& demo) {
    const std::string tunnel = demo.add("Ring Tunnel");
    demo.set(tunnel, "Speed", 0.0f);
    demo.animate(tunnel, "Travel", {{48, 0}, {56, 14, kKeyLinear}, {64, 36, kKeyEaseIn}});
    demo.animate(tunnel, "Twist", {{48, 0.3f}, {56, 1.4f}, {64, -1.6f, kKeyEaseIn}});
    demo.pulse(tunnel, "Pulse", 48, 64, 0.5f, 0.0f, 1.0f);
    // Digital faults on the snare, their black taken out.
    const std::string faults = demo.add("Digital Glitch");
    demo.set(faults, "StripCount", 0.5f);
    demo.set(faults, "BlockCount", 0.6f);
    demo.pulse(faults, "Intensity", 48.5f, 64, 1.0f, 0.0f, 0.7f);
    demo.animate(faults, "RandOffset", {{48, 0}, {64, 7.3f, kKeyLinear}}, 0);
    const std::string keyed = demo.add("Luma To Alpha", {faults});
    return demo.add("Compose", {tunnel, keyed});
}

std::string NorthernLights(DemoBuilder& demo) {
    const std::string aurora = demo.add("Aurora");
    demo.animate(aurora, "Brightness", {{64, 0.2f}, {68, 1.0f, kKeyEaseOut}, {80, 1.5f}});
    demo.pulse(aurora, "Pulse", 64, 80, 2.0f, 0.0f, 0.5f);
    const std::string trees = Picture(demo, "forest.png", true);
    demo.set(trees, "ScaleFac", 1.05f);
    demo.setVec2(trees, "Position", 0.5f, 0.45f);
    demo.animate(trees, "Position", {{64, 0.5f}, {80, 0.455f, kKeyLinear}}, 0);
    const std::string land = Layers(demo, {aurora, trees});
    return Lettering(demo, land, "word_sound.png", 68, 76);
}

}  // namespace demo_scenes
