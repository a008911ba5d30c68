// The short scenes of the demo, a bar or two each, for the fast parts of the music.
#include "demo/tool/demo_scenes.h"

namespace demo_scenes {

std::string TileTunnel(DemoBuilder& demo, float start, float stop) {
    const std::string tiles = Picture(demo, "tiles.png", false);
    demo.setFlag(tiles, "Repeat", true);
    const std::string tunnel = demo.add("Picture Tunnel", {tiles});
    demo.set(tunnel, "Copies", 3);
    demo.set(tunnel, "Speed", 0);
    demo.animate(tunnel, "Travel", {{start, 0}, {stop, 7, kKeyEaseIn}});
    demo.animate(tunnel, "Twist", {{start, 0}, {stop, 1.5f}});
    demo.pulse(tunnel, "Pulse", start, stop, 0.5f, 0.0f, 0.8f);
    const std::string split = demo.add("Chromatic Abberation", {tunnel});
    demo.pulse(split, "Factor", start, stop, 0.5f, 0.05f, 0.6f);
    return split;
}

std::string Mandala(DemoBuilder& demo, float start, float stop) {
    const std::string kaleidoscope =
        demo.add("Kaleidoscope",
                 {Layers(demo, {demo.add("Silk Plasma"), Picture(demo, "mandala.png", true)})});
    demo.animate(kaleidoscope, "Rotation", {{start, -45}, {stop, 60}});
    demo.animate(kaleidoscope, "Zoom", {{start, 1.8f}, {stop, 0.8f, kKeyEaseOut}});
    demo.pulse(kaleidoscope, "Pulse", start, stop, 0.5f, 0.0f, 0.7f);
    return kaleidoscope;
}

std::string Truchet(DemoBuilder& demo, float start, float stop) {
    const std::string truchet = demo.add("Truchet Flow");
    demo.animate(truchet, "Scale", {{start, 9}, {stop, 4, kKeyEaseOut}});
    demo.pulse(truchet, "Pulse", start, stop, 0.5f, 0.0f, 1.0f);
    return truchet;
}

std::string Cells(DemoBuilder& demo, float start, float stop) {
    const std::string cells = demo.add("Glass Cells");
    demo.animate(cells, "Scale", {{start, 3}, {stop, 9, kKeyEaseIn}});
    demo.pulse(cells, "Pulse", start, stop, 0.5f, 0.0f, 1.0f);
    return cells;
}

// Light that flows, melts into a flower of it, and goes out of focus.
std::string Lights(DemoBuilder& demo, float start, float stop) {
    const float step = (stop - start) / 3.0f;
    const std::string liquid = demo.add("Liquid Light");
    demo.animate(liquid, "Spread", {{start, 0.2f}, {start + step * 2, 0.9f}});
    demo.pulse(liquid, "Pulse", start, start + step * 2, 1.0f, 0.0f, 0.6f);
    const std::string julia = demo.add("Julia Bloom");
    demo.animate(julia, "Zoom", {{start + step, 0.8f}, {stop, 2.5f}});
    demo.animate(julia, "Rotation", {{start + step, 0}, {stop, 50, kKeyLinear}});
    const std::string melt = demo.add("Cross Fade", {liquid, julia});
    demo.animate(melt, "Mix", {{start, 0}, {start + step * 0.75f, 0}, {start + step * 1.25f, 1}});
    const std::string lights = demo.add("Bokeh Lights");
    demo.animate(lights, "Size", {{start + step, 1.6f}, {stop, 0.8f, kKeyEaseOut}});
    const std::string wipe = demo.add("Wipe", {melt, lights});
    demo.setChoice(wipe, "Shape", 5);
    demo.animate(wipe, "Progress",
                 {{start, 0}, {start + step * 1.75f, 0}, {stop - step * 0.5f, 1}});
    return wipe;
}

// A word that leaves a trail: the node reads its own picture of the frame before.
std::string Trail(DemoBuilder& demo, float start, float stop) {
    const std::string word = demo.add("Lettering Overlay", {"", Picture(demo, "title.png", true)});
    demo.animate(word, "Rotation", {{start, -20}, {stop, 20}});
    demo.animate(word, "Scale", {{start, 1.6f}, {stop, 0.5f}});
    const std::string trail = demo.add("Zoom Feedback", {word});
    demo.link(trail, trail, 1);
    demo.animate(trail, "HueShift", {{start, 2}, {stop, 12, kKeyLinear}});
    return trail;
}

// The city melts in noise.
std::string MeltingCity(DemoBuilder& demo, float start, float stop) {
    const std::string noise = demo.add("Perlin Noise 3D");
    demo.animate(noise, "Phase", {{start, 0}, {stop, 2, kKeyLinear}});
    const std::string city =
        Layers(demo, {Picture(demo, "sky_night.png", false), Picture(demo, "mountains.png", true),
                      Picture(demo, "city_far.png", true), Picture(demo, "city_near.png", true)});
    const std::string melted = demo.add("Displace 2D", {city, noise});
    demo.pulse(melted, "Distort_H", start, stop, 0.5f, 0.02f, 0.3f);
    demo.pulse(melted, "Distort_V", start, stop, 1.0f, 0.0f, 0.2f);
    return melted;
}

std::string Grid(DemoBuilder& demo, float start, float stop) {
    const float middle = (start + stop) * 0.5f;
    const std::string grid = demo.add("Neon Grid");
    demo.set(grid, "Speed", 0);
    demo.animate(grid, "Travel", {{start, 0}, {middle, 12, kKeyLinear}, {stop, 45, kKeyEaseIn}});
    demo.animate(grid, "SunHeight", {{start, -0.1f}, {stop, 0.36f, kKeyEaseOut}});
    demo.pulse(grid, "Pulse", start, stop, 0.5f, 0.0f, 0.8f);
    const std::string banner = Picture(demo, "wide_banner.png", false);
    demo.setChoice(banner, "Scale", 1);
    demo.set(banner, "ScaleFac", 0.7f);
    demo.setVec2(banner, "Position", 1.6f, 0.55f);
    demo.animate(banner, "Position", {{start, 1.15f}, {stop, -0.6f, kKeyLinear}}, 0);
    const std::string keyed = demo.add("Luma To Alpha", {banner});
    return demo.add("Compose", {grid, keyed});
}

}  // namespace demo_scenes
