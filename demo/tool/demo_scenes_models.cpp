// The scenes of the demo that are rendered from models: the hall with its rack focus, the rain of
// crystals, and the mirror balls.
#include <cmath>
#include <cstdlib>
#include <span>

#include "demo/tool/demo_scenes.h"

namespace demo_scenes {

namespace {

constexpr float kPi = 3.14159265f;
// A jump takes so little that no frame is likely to fall into it.
constexpr float kJumpSeconds = 0.0005f;

// A picture that is laid on models, again and again.
std::string Texture(DemoBuilder& demo, const char* file) {
    const std::string reader = Picture(demo, file, false);
    demo.setFlag(reader, "Repeat", true);
    return reader;
}

struct Gloss {
    float reflection, fresnel;
};

// A surface that only its picture and its surroundings light.
std::string Surface(DemoBuilder& demo, const std::string& picture, const Gloss& gloss,
                    float diffuse = 1) {
    const std::string material = demo.add("Material", {picture, picture});
    demo.set(material, "Diffuse", diffuse);
    demo.set(material, "Reflection", gloss.reflection);
    demo.set(material, "Ref. Fresnel", gloss.fresnel);
    return material;
}

struct Tint {
    float r, g, b;
};
constexpr Tint kRose{1.0f, 0.20f, 0.62f}, kBlue{0.22f, 0.75f, 1.0f}, kAmber{1.0f, 0.58f, 0.24f},
    kLilac{0.80f, 0.70f, 1.0f}, kPlain{1, 1, 1};

// A lamp: all of its light is its own.
std::string Lamp(DemoBuilder& demo, const std::string& picture, const Tint& tint, float strength) {
    const std::string material = demo.add("Material", {picture, picture});
    demo.set(material, "Diffuse", 0);
    demo.set(material, "Illumination", strength);
    demo.setColor(material, "Illum Color", tint.r, tint.g, tint.b, 1);
    return material;
}

std::string Model(DemoBuilder& demo, const std::string& file, const std::string& material) {
    const std::string reader = demo.add("ObjReader", {material});
    demo.setText(reader, "Filename", ".\\data\\" + file);
    return reader;
}

void Place(DemoBuilder& demo, const std::string& model, float x, float y, float z) {
    demo.set(model, "Translate.X", x);
    demo.set(model, "Translate.Y", y);
    demo.set(model, "Translate.Z", z);
}

// Any number of models as one.
std::string Group(DemoBuilder& demo, const std::vector<std::string>& models) {
    constexpr std::size_t kPorts = 6;
    std::vector<std::string> groups;
    for (std::size_t i = 0; i < models.size(); ++i) {
        if (i % kPorts == 0) groups.push_back(demo.add("Combine Geometry"));
        demo.link(models[i], groups.back(), static_cast<int>(i % kPorts));
    }
    return groups.size() == 1 ? groups.front() : Group(demo, groups);
}

// Turns of a camera, in half turns: `from` at `start`, drifting by `perSecond`.
struct Orbit {
    float from, perSecond;
};

std::string Camera(DemoBuilder& demo, float start, const Orbit& orbit) {
    const std::string camera = demo.add("OrbitCamera");
    demo.set(camera, "Global Speed", orbit.perSecond * kPi);
    // The node counts from the demo's beginning.
    demo.set(camera, "Time Offset", std::remainder(orbit.from - orbit.perSecond * start, 2.0f));
    demo.set(camera, "Wiggle", 0.02f);
    demo.set(camera, "WiggleSpeed", 0.7f);
    return camera;
}

// A value's way through a shot.
struct Move {
    float from, to;
};
struct Shot {
    Move radius, height, targetHeight, pan;
    Move turn;  // of what is looked at, degrees about y
};

// The keys of one value through shots of one length, with jumps between them.
void AnimateShots(DemoBuilder& demo, const std::string& id, const char* name,
                  std::span<const Shot> shots, Move Shot::*value, float start, float stop) {
    const float length = (stop - start) / static_cast<float>(shots.size());
    std::vector<DemoKey> keys;
    for (std::size_t i = 0; i < shots.size(); ++i) {
        const float from = start + length * static_cast<float>(i);
        const Move& move = shots[i].*value;
        const float jump = i + 1 < shots.size() ? kJumpSeconds : 0;
        keys.push_back({from, move.from, kKeyLinear});
        keys.push_back({from + length - jump, move.to, kKeyCosine});
    }
    demo.animate(id, name, keys);
}

// Whole turns, in keys that stay between 0 and 360 degrees; backwards when negative.
void Spin(DemoBuilder& demo, const std::string& id, const char* name, int turns, float start,
          float stop) {
    const float length = (stop - start) / static_cast<float>(std::abs(turns));
    std::vector<DemoKey> keys;
    for (int turn = 0; turn < std::abs(turns); ++turn) {
        const float from = start + length * static_cast<float>(turn);
        keys.push_back({from, turns > 0 ? 0.0f : 360.0f, kKeyLinear});
        keys.push_back({from + length - kJumpSeconds, turns > 0 ? 360.0f : 0.0f, kKeyLinear});
    }
    demo.animate(id, name, keys);
}

std::string ShotCamera(DemoBuilder& demo, const Orbit& orbit, std::span<const Shot> shots,
                       float start, float stop) {
    const std::string camera = Camera(demo, start, orbit);
    AnimateShots(demo, camera, "Radius", shots, &Shot::radius, start, stop);
    AnimateShots(demo, camera, "Height", shots, &Shot::height, start, stop);
    AnimateShots(demo, camera, "Target Height", shots, &Shot::targetHeight, start, stop);
    AnimateShots(demo, camera, "Pan", shots, &Shot::pan, start, stop);
    return camera;
}

// --- the hall

struct Hall {
    std::string all;
    std::string arches[2];
    std::string lamps;
    std::string balls;
};

Hall BuildHall(DemoBuilder& demo) {
    const std::string white = Texture(demo, "white.png");
    const std::string metalPicture = Texture(demo, "hall_metal.png");
    const std::string metal = Surface(demo, metalPicture, {0.5f, 2.2f});
    const std::string gold = Surface(demo, Texture(demo, "hall_gold.png"), {1.0f, 0.9f}, 1.2f);
    const std::string chrome = Surface(demo, metalPicture, {1.0f, 0.35f}, 0.5f);
    const auto shell = [&](const char* picture, const char* file, const Gloss& gloss) {
        return Model(demo, file, Surface(demo, Texture(demo, picture), gloss));
    };
    Hall hall;
    std::vector<std::string> parts{
        shell("hall_floor.png", "hall_floor.obj", {0.45f, 4.0f}),
        shell("hall_ceiling.png", "hall_ceiling.obj", {0.0f, 4.0f}),
        shell("hall_left.png", "hall_left.obj", {0.0f, 4.0f}),
        shell("hall_right.png", "hall_right.obj", {0.0f, 4.0f}),
        shell("hall_ends.png", "hall_ends.obj", {0.0f, 4.0f}),
        shell("hall_columns.png", "hall_columns.obj", {0.2f, 3.0f}),
        Model(demo, "hall_metal.obj", metal),
    };
    // --- what shines
    hall.arches[0] = Lamp(demo, white, kRose, 1);
    hall.arches[1] = Lamp(demo, white, kBlue, 1);
    hall.lamps = Lamp(demo, white, kAmber, 0.6f);
    parts.push_back(Model(demo, "hall_arches_rose.obj", hall.arches[0]));
    parts.push_back(Model(demo, "hall_arches_blue.obj", hall.arches[1]));
    parts.push_back(Model(demo, "hall_lamps.obj", hall.lamps));
    parts.push_back(Model(demo, "hall_strips.obj", Lamp(demo, white, kLilac, 0.6f)));
    parts.push_back(
        Model(demo, "hall_windows.obj", Lamp(demo, Texture(demo, "hall_view.png"), kPlain, 0.5f)));
    parts.push_back(
        Model(demo, "hall_sun.obj", Lamp(demo, Texture(demo, "hall_sun.png"), kPlain, 0.55f)));
    // --- what is on show
    const std::string knot = Model(demo, "knot.obj", gold);
    demo.set(knot, "Scale", 0.95f);
    Place(demo, knot, 0, -0.12f, 0);
    parts.push_back(knot);
    const std::string gem = Model(demo, "gem.obj", chrome);
    demo.set(gem, "Scale", 0.7f);
    Place(demo, gem, -3.3f, 0.0f, -3.4f);
    const std::string star = Model(demo, "star.obj", chrome);
    Place(demo, star, 3.3f, 0.0f, -3.4f);
    const std::string vase = Model(demo, "vase.obj", gold);
    Place(demo, vase, 3.3f, -0.55f, 3.4f);
    const std::string other = Model(demo, "star.obj", gold);
    Place(demo, other, -3.3f, 0.0f, 3.4f);
    parts.insert(parts.end(), {gem, star, vase, other});
    hall.balls =
        demo.add("Randomize Material", {Model(demo, "spheres.obj", metal), white, metalPicture});
    demo.setText(hall.balls, "Count", "13");
    demo.setColor(hall.balls, "Illum Color", 1.0f, 0.55f, 0.85f, 1);
    demo.set(hall.balls, "Illumination", 0.6f);
    demo.set(hall.balls, "Illu%", 0.35f);
    demo.set(hall.balls, "Saturation", 1.9f);
    demo.set(hall.balls, "Randomize", 0.85f);
    demo.set(hall.balls, "Reflection", 0.9f);
    demo.set(hall.balls, "Fresnel", 0.1f);
    parts.push_back(hall.balls);
    hall.all = Group(demo, parts);
    return hall;
}

// The renderer with the demo's surroundings, occlusion on.
std::string Renderer(DemoBuilder& demo, const std::string& geometry, const std::string& camera,
                     float fov) {
    const std::string renderer =
        demo.add("3DRender_RAD", {geometry, camera, Texture(demo, "studio.png")});
    demo.set(renderer, "FOV", fov);
    return renderer;
}

void SetOcclusion(DemoBuilder& demo, const std::string& renderer) {
    demo.setFlag(renderer, "AO:Enable", true);
    demo.set(renderer, "AO:Intensity", 3.5f);
    demo.set(renderer, "AO:Radius", 1.0f);
    demo.set(renderer, "AO:Scale", 1.4f);
    // Places are kept in half floats; at the far wall their steps would show as a pattern.
    demo.set(renderer, "AO:Bias", 0.01f);
    demo.set(renderer, "AO:Max Dist", 3.0f);
}

void SetGathering(DemoBuilder& demo, const std::string& renderer) {
    demo.setFlag(renderer, "GI:Enable", true);
    demo.set(renderer, "GI:Ambiance", 0.45f);
    demo.set(renderer, "GI:Intensity", 55.0f);
    demo.set(renderer, "GI:Radius", 4.0f);
    demo.set(renderer, "GI:Scale", 0.25f);
    demo.set(renderer, "GI:Max Dist", 12.0f);
    demo.setText(renderer, "GI:Samples", "12");
}

}  // namespace

std::string Interior(DemoBuilder& demo, float start, float stop) {
    constexpr Shot kShots[] = {
        {{9.4f, 8.2f}, {1.3f, 0.0f}, {0.7f, 0.3f}, {-0.4f, 0.3f}, {4, 0}},
        {{6.9f, 6.6f}, {-1.15f, -1.0f}, {-0.5f, -0.25f}, {-0.15f, 0.15f}, {0, 0}},
        {{5.6f, 4.6f}, {0.9f, 0.1f}, {0.1f, 0.3f}, {0.7f, -0.4f}, {250, 285}},
        {{4.8f, 6.2f}, {-0.6f, 1.2f}, {0.2f, 0.2f}, {-0.6f, 0.3f}, {112, 75}},
    };
    const Hall hall = BuildHall(demo);
    const std::string camera = ShotCamera(demo, {0, 0}, kShots, start, stop);
    AnimateShots(demo, hall.all, "Rotate.Y", kShots, &Shot::turn, start, stop);
    const float length = (stop - start) / static_cast<float>(std::size(kShots));
    // The neon answers the drum, arch against arch.
    demo.pulse(hall.arches[0], "Illumination", start, stop, 1.0f, 0.55f, 1.2f);
    demo.pulse(hall.arches[1], "Illumination", start + 0.5f, stop, 1.0f, 0.55f, 1.2f);
    demo.animate(hall.balls, "Random Phase", {{start, 0}, {stop, 1.5f, kKeyLinear}});

    const std::string renderer = Renderer(demo, hall.all, camera, 46);
    SetOcclusion(demo, renderer);
    SetGathering(demo, renderer);
    // The focus goes from the balls at the camera's feet to the sun at the far wall.
    const float rack = start + length, sharp = rack + length;
    demo.animate(renderer, "DOF",
                 {{start, 0.15f, kKeyLinear},
                  {rack - kJumpSeconds, 0.15f, kKeyLinear},
                  {rack, 0.5f, kKeyLinear},
                  {sharp - kJumpSeconds, 0.5f, kKeyLinear},
                  {sharp, 0.3f, kKeyLinear},
                  {stop, 0.3f, kKeyLinear}});
    demo.animate(renderer, "DOF CoC",
                 {{start, 6, kKeyLinear},
                  {rack - kJumpSeconds, 5, kKeyLinear},
                  {rack, 1.4f, kKeyLinear},
                  {rack + length * 0.35f, 1.6f},
                  {rack + length * 0.75f, 15},
                  {sharp - kJumpSeconds, 16, kKeyLinear},
                  {sharp, 5.5f, kKeyLinear},
                  {stop, 7.0f, kKeyLinear}});
    const std::string glow = demo.add("Soft Glow", {renderer});
    demo.set(glow, "Threshold", 0.55f);
    demo.set(glow, "Strength", 0.9f);
    demo.set(glow, "Radius", 48);
    return glow;
}

std::string Rain(DemoBuilder& demo, float start, float stop) {
    const std::string white = Texture(demo, "white.png");
    const std::string dark = Texture(demo, "hall_metal.png");
    struct Kind {
        const char* model;
        const char* count;
        const char* speed;
        Tint tint;
        float glow;
        Gloss gloss;
        int turns, tumbles;
    };
    const Kind kinds[] = {
        {"crystal.obj", "150", "1.0", kBlue, 0.18f, {1.4f, 0.4f}, 3, 1},
        {"star.obj", "70", "0.8", kRose, 0.22f, {1.3f, 0.5f}, -2, 1},
        {"shard.obj", "180", "1.2", kAmber, 0.42f, {0.9f, 0.8f}, 4, -2},
    };
    std::vector<std::string> rains;
    for (const Kind& kind : kinds) {
        const std::string material = demo.add("Material", {dark, white});
        demo.set(material, "Diffuse", 0.5f);
        demo.set(material, "Illumination", kind.glow);
        demo.setColor(material, "Illum Color", kind.tint.r, kind.tint.g, kind.tint.b, 1);
        demo.set(material, "Reflection", kind.gloss.reflection);
        demo.set(material, "Ref. Fresnel", kind.gloss.fresnel);
        const std::string model = Model(demo, kind.model, material);
        Spin(demo, model, "Rotate.Y", kind.turns, start, stop);
        Spin(demo, model, "Rotate.Z", kind.tumbles, start, stop);
        // A copy keeps its object's own material only: the group hands it the model's.
        const std::string rain = demo.add("FallingModel", {Group(demo, {model})});
        demo.setText(rain, "Count", kind.count);
        demo.setText(rain, "Speed", kind.speed);
        demo.set(rain, "Time Alive", 4);
        demo.set(rain, "Area", 8);
        demo.set(rain, "Translate.Y", 6);
        // All rains fall at the same places: each is turned by a quarter more.
        demo.set(rain, "Rotate.Y", 90.0f * static_cast<float>(rains.size()));
        rains.push_back(rain);
    }
    constexpr Shot shots[] = {{{10.6f, 9.4f}, {-1.2f, 1.4f}, {0.6f, -0.4f}, {0, 0}, {0, 0}}};
    const std::string camera = ShotCamera(demo, {-0.1f, 0.015f}, shots, start, stop);
    const std::string renderer = Renderer(demo, Group(demo, rains), camera, 62);
    demo.setColor(renderer, "Background", 0, 0, 0, 0);
    demo.set(renderer, "GI:Ambiance", 0);
    demo.set(renderer, "DOF", 0.3f);
    demo.set(renderer, "DOF CoC", 7);
    const std::string mountains = Picture(demo, "mountains.png", true);
    demo.setVec2(mountains, "Position", 0.5f, 0.66f);
    const std::string sky = Layers(demo, {Picture(demo, "sky_night.png", false), mountains});
    const std::string glow = demo.add("Soft Glow", {demo.add("Compose", {sky, renderer})});
    demo.set(glow, "Threshold", 0.6f);
    return glow;
}

std::string Blob(DemoBuilder& demo, float start, float stop) {
    const std::string dark = Texture(demo, "hall_metal.png");
    const std::string white = Texture(demo, "white.png");
    const std::string chrome = Surface(demo, dark, {1.0f, 0.1f}, 0.3f);
    std::vector<std::string> parts;
    const auto ball = [&](float scale) {
        const std::string mesher = demo.add("Particle Mesher", {chrome});
        demo.pulse(mesher, "Scale", start, stop, 0.5f, scale, scale * 1.12f);
        parts.push_back(mesher);
        return mesher;
    };
    ball(0.75f);
    // Moons on their ways.
    for (int i = 0; i < 6; ++i) {
        const std::string moon = ball(0.14f + 0.03f * static_cast<float>(i % 3));
        const float first = static_cast<float>(i) / 3 * kPi;
        std::vector<DemoKey> x, y, z;
        for (int step = 0; step <= 16; ++step) {
            const float way = static_cast<float>(step) / 16, angle = first + way * kPi * 1.5f;
            const float seconds = start + (stop - start) * way;
            x.push_back({seconds, 2.6f * std::cos(angle), kKeyLinear});
            y.push_back({seconds, 0.7f * std::sin(angle * 2 + static_cast<float>(i)), kKeyLinear});
            z.push_back({seconds, 2.6f * std::sin(angle), kKeyLinear});
        }
        demo.animate(moon, "Translate.X", x);
        demo.animate(moon, "Translate.Y", y);
        demo.animate(moon, "Translate.Z", z);
    }
    // Rings of light in each other, as of an old instrument.
    const Tint tints[] = {kRose, kBlue, kAmber};
    for (int i = 0; i < 3; ++i) {
        const std::string lamp = Lamp(demo, white, tints[i], 1);
        demo.pulse(lamp, "Illumination", start, stop, 0.5f, 0.42f, 0.85f);
        const std::string ring = Model(demo, "ring.obj", lamp);
        const auto turn = static_cast<float>(i);
        demo.set(ring, "Scale", 1.5f + 0.35f * turn);
        demo.animate(ring, "Rotate.X",
                     {{start, 60 - 70 * turn}, {stop, 150 + 60 * turn, kKeyLinear}});
        demo.animate(ring, "Rotate.Z", {{start, 25 * turn}, {stop, 120 - 100 * turn, kKeyLinear}});
        parts.push_back(ring);
    }
    constexpr Shot shots[] = {{{6.2f, 4.6f}, {0.8f, -0.3f}, {0, 0}, {0, 0}, {0, 0}}};
    const std::string camera = ShotCamera(demo, {-0.05f, 0.0125f}, shots, start, stop);
    const std::string renderer = Renderer(demo, Group(demo, parts), camera, 50);
    demo.setColor(renderer, "Background", 0, 0, 0, 0);
    demo.set(renderer, "GI:Ambiance", 0);
    const std::string stars = Picture(demo, "stars.png", false);
    const std::string glow = demo.add("Soft Glow", {demo.add("Compose", {stars, renderer})});
    demo.set(glow, "Threshold", 0.6f);
    demo.pulse(glow, "Pulse", start, stop, 0.5f, 0.0f, 0.8f);
    return glow;
}

}  // namespace demo_scenes
