// The scenes of the demo that fly through one place, from the title to the end card.
#include "demo/tool/demo_scenes.h"

namespace demo_scenes {

std::string Title(DemoBuilder& demo, float start, float stop) {
    const float burst = stop - 4.0f;
    const std::string stars = demo.add("Starfield Warp");
    demo.set(stars, "Speed", 0.0f);
    demo.animate(stars, "Travel",
                 {{start, 0},
                  {start + 8, 3, kKeyEaseIn},
                  {stop - 2, 9, kKeyLinear},
                  {stop, 16, kKeyEaseIn}});
    demo.animate(stars, "Stretch", {{start, 0.1f}, {burst, 0.3f}, {stop, 1.0f, kKeyEaseIn}});
    demo.animate(stars, "Roll", {{start, -25}, {stop, 20}});
    // Still stars at first, then those that rush by.
    const std::string sky = demo.add("Cross Fade", {Starfield(demo, start, stop), stars});
    demo.animate(sky, "Mix", {{start, 0}, {start + 6, 0.3f}, {burst, 1}});
    const std::string title = Lettering(demo, sky, "title.png", start + 3.5f, stop - 0.5f);
    // Rays burst out of the word with the last bars.
    const std::string rays = demo.add("Radial Out Blur", {title});
    demo.set(rays, "Quality", 8);
    demo.animate(rays, "Length", {{start, 0}, {burst, 0}, {stop - 0.1f, 160, kKeyEaseIn}});
    demo.animate(rays, "Oooooze", {{start, 0}, {burst, 0}, {stop - 0.1f, 0.4f, kKeyEaseIn}});
    const std::string glow = demo.add("Soft Glow", {rays});
    demo.set(glow, "Threshold", 0.75f);
    demo.set(glow, "Strength", 0.5f);
    return glow;
}

std::string Corridor(DemoBuilder& demo, float start, float stop) {
    const std::string corridor = demo.add("Neon Corridor");
    demo.set(corridor, "Speed", 0.0f);
    demo.animate(corridor, "Travel",
                 {{start, 0}, {start + 4, 16, kKeyLinear}, {stop, 60, kKeyEaseIn}});
    demo.animate(corridor, "Roll",
                 {{start, 0}, {start + 2, 0}, {stop - 3, 30}, {stop, -60, kKeyEaseIn}});
    demo.pulse(corridor, "Pulse", start, stop, 0.5f, 0.0f, 0.8f);
    const std::string first =
        Lettering(demo, corridor, "word_light.png", start + 0.5f, start + 3.5f);
    const std::string second = Lettering(demo, first, "word_motion.png", start + 4, start + 7);
    // The cut out is a whip to the side.
    const std::string whip = demo.add("Directional Blur", {second});
    demo.setVec2(whip, "Direction", 1.0f, 0.15f);
    demo.set(whip, "Quality", 6);
    demo.animate(whip, "Length", {{start, 1}, {stop - 1, 1}, {stop, 180, kKeyEaseIn}});
    return whip;
}

std::string Skyline(DemoBuilder& demo, float start, float stop) {
    // A layer that slides against the others as the camera goes by.
    const auto slidingLayer = [&](const char* file, float scale, float from, float to) {
        const std::string reader = Picture(demo, file, true);
        demo.set(reader, "ScaleFac", scale);
        const float height = 0.5f - (scale - 1.0f) * 0.5f;
        demo.setVec2(reader, "Position", from, height);
        demo.animate(reader, "Position", {{start, from}, {stop, to, kKeyEaseOut}}, 0);
        return reader;
    };
    const std::string sky = Picture(demo, "sky_night.png", false);
    // The moon in its own proportions, on a slow rise.
    const std::string moonPicture = Picture(demo, "moon.png", true);
    demo.setChoice(moonPicture, "Scale", 1);
    demo.set(moonPicture, "ScaleFac", 0.42f);
    const std::string moon = demo.add("Transform2D", {moonPicture});
    demo.setVec2(moon, "Position", 1.18f, 0.62f);
    demo.animate(moon, "Position", {{start, 1.16f}, {stop, 1.20f, kKeyLinear}}, 0);
    demo.animate(moon, "Position", {{start, 0.66f}, {stop, 0.55f, kKeyEaseOut}}, 1);
    const std::string stack =
        Layers(demo, {sky, moon, slidingLayer("mountains.png", 1.06f, 0.49f, 0.45f),
                      slidingLayer("city_far.png", 1.12f, 0.49f, 0.40f),
                      slidingLayer("city_near.png", 1.25f, 0.49f, 0.28f)});
    demo.set(stack, "Ripple", 0.6f);
    const std::string graded = demo.add("Color Correct", {stack});
    demo.set(graded, "Exp_B", 0.92f);
    demo.animate(graded, "Gamma",
                 {{start, 2.2f}, {start + 1, 1.1f, kKeyEaseOut}, {stop, 1.0f, kKeyLinear}});
    const std::string glow = demo.add("Soft Glow", {graded});
    demo.set(glow, "Threshold", 0.5f);
    demo.pulse(glow, "Pulse", start, stop, 1.0f, 0.0f, 0.6f);
    return glow;
}

std::string Tunnel(DemoBuilder& demo, float start, float stop) {
    const float middle = (start + stop) * 0.5f;
    const std::string tunnel = demo.add("Ring Tunnel");
    demo.set(tunnel, "Speed", 0.0f);
    demo.animate(tunnel, "Travel", {{start, 0}, {middle, 9, kKeyLinear}, {stop, 24, kKeyEaseIn}});
    demo.animate(tunnel, "Twist", {{start, 0.3f}, {middle, 1.4f}, {stop, -1.6f, kKeyEaseIn}});
    demo.pulse(tunnel, "Pulse", start, stop, 0.5f, 0.0f, 1.0f);
    // Digital faults on the snare, their black taken out.
    const std::string faults = demo.add("Digital Glitch");
    demo.set(faults, "StripCount", 0.5f);
    demo.set(faults, "BlockCount", 0.6f);
    demo.pulse(faults, "Intensity", start + 0.5f, stop, 1.0f, 0.0f, 0.7f);
    demo.animate(faults, "RandOffset", {{start, 0}, {stop, 7.3f, kKeyLinear}}, 0);
    const std::string keyed = demo.add("Luma To Alpha", {faults});
    return demo.add("Compose", {tunnel, keyed});
}

std::string Temple(DemoBuilder& demo, float start, float stop) {
    const float middle = (start + stop) * 0.5f;
    const std::string temple = demo.add("Fractal Temple");
    demo.set(temple, "Speed", 0);
    demo.animate(temple, "Travel", {{start, 0}, {stop, 5, kKeyLinear}});
    demo.animate(temple, "Turn", {{start, -30}, {stop, 20}});
    demo.animate(temple, "Fold", {{start, 0.2f}, {middle, 0.45f}, {stop, 0.3f}});
    demo.pulse(temple, "Pulse", start, stop, 0.5f, 0.0f, 0.9f);
    // Out of focus at first, then sharp.
    const std::string lens = demo.add("Lens Blur", {temple});
    demo.set(lens, "Accuracy", 45);
    demo.animate(lens, "Radius", {{start, 1.2f}, {start + 1, 0, kKeyEaseOut}});
    return Lettering(demo, lens, "word_graph.png", start + 1, stop - 0.5f);
}

std::string NorthernLights(DemoBuilder& demo, float start, float stop) {
    const std::string aurora = demo.add("Aurora");
    demo.animate(aurora, "Brightness",
                 {{start, 0.6f}, {start + 2, 1.1f, kKeyEaseOut}, {stop, 1.5f}});
    demo.pulse(aurora, "Pulse", start, stop, 2.0f, 0.0f, 0.5f);
    const std::string trees = Picture(demo, "forest.png", true);
    demo.set(trees, "ScaleFac", 1.05f);
    demo.setVec2(trees, "Position", 0.5f, 0.45f);
    demo.animate(trees, "Position", {{start, 0.5f}, {stop, 0.485f, kKeyLinear}}, 0);
    const std::string land = Layers(demo, {aurora, trees});
    return Lettering(demo, land, "word_sound.png", start + 0.5f, stop - 0.25f);
}

std::string Ending(DemoBuilder& demo, float start, float stop) {
    const float fade = start + 14.5f;
    const std::string flight = demo.add("Dusk Flight");
    demo.set(flight, "Speed", 0);
    demo.animate(flight, "Travel", {{start, 0}, {fade + 1.5f, 22, kKeyEaseOut}});
    demo.animate(flight, "Bank", {{start, -12}, {start + 6, 8}, {fade + 1.5f, 0}});
    const std::string credits = Lettering(demo, flight, "credits.png", start + 3, fade);
    // The last bars: stars, the end card, and the grain of a film that runs out.
    const std::string stars = Picture(demo, "stars.png", false);
    demo.set(stars, "ScaleFac", 1.1f);
    demo.animate(stars, "Position", {{fade, 0.5f}, {stop, 0.41f, kKeyLinear}}, 0);
    const std::string card = Lettering(demo, stars, "end_card.png", fade + 2, stop - 0.5f);
    const std::string grain = demo.add("Simple Noise");
    demo.setColor(grain, "Color", 0.06f, 0.05f, 0.08f, 0.0f);
    demo.animate(grain, "Seed", {{fade, 0}, {stop, 240, kKeyLinear}});
    const std::string film = demo.add("Compose", {card, grain});
    const std::string iris = demo.add("Wipe", {credits, film});
    demo.setChoice(iris, "Shape", 1);
    demo.animate(iris, "Progress", {{start, 0}, {fade, 0}, {fade + 2, 1}});
    return iris;
}

}  // namespace demo_scenes
