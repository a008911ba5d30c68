// The second half of the demo: from the temple to the end card.
#include <array>

#include "demo/tool/demo_scenes.h"

namespace demo_scenes {

namespace {

// Ten pictures at most, each from its second on.
std::string Cuts(DemoBuilder& demo, const std::vector<std::pair<float, std::string>>& scenes) {
    const std::string sequencer = demo.add("Sequencer");
    int port = 0;
    for (const auto& [seconds, scene] : scenes) {
        demo.link(scene, sequencer, port);
        const std::string name = "Start 0" + std::to_string(port);
        demo.setText(sequencer, name.c_str(), std::to_string(static_cast<int>(seconds * 1000.0f)));
        ++port;
    }
    return sequencer;
}

std::string Mandala(DemoBuilder& demo, float start, float stop) {
    const std::string kaleidoscope =
        demo.add("Kaleidoscope",
                 {Layers(demo, {demo.add("Silk Plasma"), Picture(demo, "mandala.png", true)})});
    demo.animate(kaleidoscope, "Rotation", {{start, -60}, {stop, 120}});
    demo.animate(kaleidoscope, "Zoom", {{start, 1.8f}, {stop, 0.7f, kKeyEaseOut}});
    demo.pulse(kaleidoscope, "Pulse", start, stop, 0.5f, 0.0f, 0.7f);
    return kaleidoscope;
}

std::string TileTunnel(DemoBuilder& demo, float start, float stop) {
    const std::string tiles = Picture(demo, "tiles.png", false);
    demo.setFlag(tiles, "Repeat", true);
    const std::string tunnel = demo.add("Picture Tunnel", {tiles});
    demo.set(tunnel, "Copies", 3);
    demo.set(tunnel, "Speed", 0);
    demo.animate(tunnel, "Travel", {{start, 0}, {stop, 12, kKeyEaseIn}});
    demo.animate(tunnel, "Twist", {{start, 0}, {stop, 1.5f}});
    demo.pulse(tunnel, "Pulse", start, stop, 0.5f, 0.0f, 0.8f);
    return tunnel;
}

}  // namespace

std::string Temple(DemoBuilder& demo) {
    const std::string temple = demo.add("Fractal Temple");
    demo.set(temple, "Speed", 0);
    demo.animate(temple, "Travel", {{80, 0}, {96, 9, kKeyLinear}});
    demo.animate(temple, "Turn", {{80, -30}, {96, 45}});
    demo.animate(temple, "Fold", {{80, 0.2f}, {88, 0.45f}, {96, 0.3f}});
    demo.pulse(temple, "Pulse", 80, 96, 0.5f, 0.0f, 0.9f);
    // Out of focus at first, then sharp.
    const std::string lens = demo.add("Lens Blur", {temple});
    demo.set(lens, "Accuracy", 45);
    demo.animate(lens, "Radius", {{80, 1.2f}, {83, 0, kKeyEaseOut}});
    const std::string named = Lettering(demo, lens, "word_graph.png", 84, 90);
    const std::string tunnel = TileTunnel(demo, 96, 104);
    const std::string split = demo.add("Chromatic Abberation", {Mandala(demo, 104, 112)});
    demo.pulse(split, "Factor", 104, 112, 0.5f, 0.05f, 0.5f);
    return Cuts(demo, {{80.0f, named}, {96.0f, tunnel}, {104.0f, split}});
}

std::string Bridge(DemoBuilder& demo) {
    const std::string liquid = demo.add("Liquid Light");
    demo.animate(liquid, "Spread", {{112, 0.2f}, {128, 0.9f}});
    demo.pulse(liquid, "Pulse", 112, 128, 1.0f, 0.0f, 0.6f);
    const std::string julia = demo.add("Julia Bloom");
    demo.animate(julia, "Zoom", {{126, 0.8f}, {136, 2.5f}});
    demo.animate(julia, "Rotation", {{126, 0}, {136, 70, kKeyLinear}});
    const std::string melt = demo.add("Cross Fade", {liquid, julia});
    demo.animate(melt, "Mix", {{112, 0}, {126, 0}, {130, 1}});
    const std::string lights = demo.add("Bokeh Lights");
    demo.animate(lights, "Size", {{134, 1.6f}, {144, 0.8f, kKeyEaseOut}});
    const std::string wipe = demo.add("Wipe", {melt, lights});
    demo.setChoice(wipe, "Shape", 5);
    demo.animate(wipe, "Progress", {{112, 0}, {134, 0}, {138, 1}});
    return Lettering(demo, wipe, "word_play.png", 138.5f, 143.5f);
}

std::string Grid(DemoBuilder& demo) {
    const std::string grid = demo.add("Neon Grid");
    demo.set(grid, "Speed", 0);
    demo.animate(grid, "Travel", {{144, 0}, {152, 30, kKeyLinear}, {160, 110, kKeyEaseIn}});
    demo.animate(grid, "SunHeight", {{144, -0.4f}, {156, 0.36f, kKeyEaseOut}});
    demo.pulse(grid, "Pulse", 144, 160, 0.5f, 0.0f, 0.8f);
    const std::string banner = Picture(demo, "wide_banner.png", false);
    demo.setChoice(banner, "Scale", 1);
    demo.set(banner, "ScaleFac", 0.7f);
    demo.setVec2(banner, "Position", 1.6f, 0.55f);
    demo.animate(banner, "Position", {{146, 1.55f}, {159, -0.3f, kKeyLinear}}, 0);
    const std::string keyed = demo.add("Luma To Alpha", {banner});
    return demo.add("Compose", {grid, keyed});
}

std::string Climax(DemoBuilder& demo) {
    // The city melts in noise.
    const std::string noise = demo.add("Perlin Noise 3D");
    demo.animate(noise, "Phase", {{160, 0}, {168, 3, kKeyLinear}});
    const std::string city =
        Layers(demo, {Picture(demo, "sky_night.png", false), Picture(demo, "mountains.png", true),
                      Picture(demo, "city_far.png", true), Picture(demo, "city_near.png", true)});
    const std::string melted = demo.add("Displace 2D", {city, noise});
    demo.pulse(melted, "Distort_H", 160, 168, 0.5f, 0.02f, 0.3f);
    demo.pulse(melted, "Distort_V", 160, 168, 1.0f, 0.0f, 0.2f);

    const std::string truchet = demo.add("Truchet Flow");
    demo.animate(truchet, "Scale", {{168, 9}, {176, 4, kKeyEaseOut}});
    demo.pulse(truchet, "Pulse", 168, 176, 0.5f, 0.0f, 1.0f);

    const std::string cells = demo.add("Glass Cells");
    demo.animate(cells, "Scale", {{176, 3}, {184, 9, kKeyEaseIn}});
    demo.pulse(cells, "Pulse", 176, 184, 0.5f, 0.0f, 1.0f);

    // A word that leaves a trail: the node reads its own picture of the frame before.
    const std::string word = demo.add("Lettering Overlay", {"", Picture(demo, "title.png", true)});
    demo.animate(word, "Rotation", {{184, -20}, {192, 20}});
    demo.animate(word, "Scale", {{184, 1.6f}, {192, 0.5f}});
    const std::string trail = demo.add("Zoom Feedback", {word});
    demo.link(trail, trail, 1);
    demo.animate(trail, "HueShift", {{184, 2}, {192, 12, kKeyLinear}});

    const std::string tunnel = TileTunnel(demo, 192, 200);
    const std::string split = demo.add("Chromatic Abberation", {tunnel});
    demo.pulse(split, "Factor", 192, 200, 0.5f, 0.05f, 0.6f);
    return Cuts(demo, {{160.0f, melted},
                       {168.0f, truchet},
                       {176.0f, cells},
                       {184.0f, trail},
                       {192.0f, split},
                       {200.0f, Mandala(demo, 200, 208)}});
}

std::string Ending(DemoBuilder& demo) {
    const std::string flight = demo.add("Dusk Flight");
    demo.set(flight, "Speed", 0);
    demo.animate(flight, "Travel", {{208, 0}, {224, 22, kKeyEaseOut}});
    demo.animate(flight, "Bank", {{208, -12}, {214, 8}, {224, 0}});
    const std::string credits = Lettering(demo, flight, "credits.png", 211, 222.5f);
    // The last bars: stars, the end card, and the grain of a film that runs out.
    const std::string stars = Picture(demo, "stars.png", false);
    demo.set(stars, "ScaleFac", 1.1f);
    demo.animate(stars, "Position", {{222, 0.5f}, {230, 0.41f, kKeyLinear}}, 0);
    const std::string card = Lettering(demo, stars, "end_card.png", 224.5f, 229.5f);
    const std::string grain = demo.add("Simple Noise");
    demo.setColor(grain, "Color", 0.06f, 0.05f, 0.08f, 0.0f);
    demo.animate(grain, "Seed", {{222, 0}, {230, 240, kKeyLinear}});
    const std::string film = demo.add("Compose", {card, grain});
    const std::string iris = demo.add("Wipe", {credits, film});
    demo.setChoice(iris, "Shape", 1);
    demo.animate(iris, "Progress", {{208, 0}, {222.5f, 0}, {224.5f, 1}});
    return iris;
}

}  // namespace demo_scenes
