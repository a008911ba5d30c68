// The puppet's dance on a stage of light, in which its hand draws in the air. The dance is a minute
// of capture that begins at second 150 of the demo; it fits seconds 168 to 200.
#include <algorithm>
#include <array>
#include <cmath>

#include "demo/tool/dance_figures.h"
#include "demo/tool/demo_scenes.h"

namespace demo_scenes {

namespace {

constexpr const char* kTakeStart = "-150";
// The take's middle stands over the origin; this puts the row of figures there instead.
constexpr float kPuppetX = 0.2f;
// Between the two rows of figures the first is drawn into the floor.
constexpr float kFirstRowGone = 186.0f;
constexpr int kRowLength = 4;

struct Tint {
    float r, g, b;
};
constexpr Tint kCyan = {0.14f, 0.72f, 1.0f}, kMagenta = {1.0f, 0.12f, 0.55f};
constexpr Tint kGold = {1.0f, 0.62f, 0.18f}, kViolet = {0.55f, 0.24f, 1.0f};
constexpr std::array<Tint, 8> kFigureTints = {kCyan,   kMagenta, kGold, kViolet,
                                              kViolet, kCyan,    kGold, kMagenta};

struct Pictures {
    std::string shell, mask, lamp, floor, room;
};

// A picture that goes round a model: past its edge it begins again, without the seam that a border
// would leave.
std::string Wrap(DemoBuilder& demo, const char* file) {
    const std::string picture = Picture(demo, file, false);
    demo.setFlag(picture, "Repeat", true);
    return picture;
}

// A value that is led from one end of a shot to the other, and jumps at the cut to the next.
struct Shot {
    float start, from, to;
};

void lead(DemoBuilder& demo, const std::string& id, const char* name,
          const std::vector<Shot>& shots, float stop) {
    constexpr float kFrame = 0.005f;
    std::vector<DemoKey> keys;
    for (std::size_t i = 0; i < shots.size(); ++i) {
        const float end = i + 1 < shots.size() ? shots[i + 1].start : stop;
        keys.push_back({shots[i].start, shots[i].from, kKeyLinear});
        keys.push_back({end - kFrame, shots[i].to, kKeyLinear});
    }
    demo.animate(id, name, keys);
}

std::string Surface(DemoBuilder& demo, const std::string& diffuse, const std::string& light,
                    float diffuseAmount, float lightAmount, const Tint& tint) {
    const std::string material = demo.add("Material", {diffuse, light});
    demo.set(material, "Diffuse", diffuseAmount);
    demo.set(material, "Illumination", lightAmount);
    demo.setColor(material, "Illum Color", tint.r, tint.g, tint.b, 1);
    return material;
}

// --- the puppet

std::string Puppet(DemoBuilder& demo, const char* model) {
    const std::string puppet = demo.add("Kinect2Puppet");
    demo.setText(puppet, "Kinect File", ".\\data\\dance_take.cap");
    demo.setText(puppet, "Model File", std::string(".\\data\\") + model);
    demo.setText(puppet, "Smoothing", "0");
    demo.setText(puppet, "Start Time", kTakeStart);
    demo.set(puppet, "off. Torso", 0);
    demo.set(puppet, "Translate.X", kPuppetX);
    demo.set(puppet, "Rotat-e.Y", 180);
    return puppet;
}

// On while the hand draws.
void lightHand(DemoBuilder& demo, const std::string& dress, float brightness) {
    std::vector<DemoKey> keys;
    for (const dance::DrawnFigure& drawn : dance::kDrawnFigures) {
        const auto start = static_cast<float>(drawn.startSeconds);
        const auto stop = static_cast<float>(drawn.stopSeconds);
        keys.push_back({start - 0.25f, 0, kKeyLinear});
        keys.push_back({start, brightness, kKeyEaseIn});
        keys.push_back({stop, brightness, kKeyLinear});
        keys.push_back({stop + 0.4f, 0, kKeyEaseOut});
    }
    demo.animate(dress, "Handlight", keys);
}

std::string DressedBody(DemoBuilder& demo, const std::string& puppet, const Pictures& pictures,
                        float start, float stop, float brightness) {
    const std::string dress =
        demo.add("LightScreenEffect", {puppet, pictures.mask, pictures.shell});
    demo.set(dress, "Reflection", 1.25f * brightness);
    demo.set(dress, "Fresnel", 0.42f);
    demo.setColor(dress, "Illum Color", 0.55f, 0.8f, 1, 1);
    demo.set(dress, "Saturation", 1.5f);
    demo.set(dress, "Randomize", 0.8f);
    demo.animate(dress, "Random Phase", {{start, 0}, {stop, 16, kKeyLinear}});
    demo.pulse(dress, "Illumination", start, stop, 0.5f, 0.1f * brightness, 0.75f * brightness);
    lightHand(demo, dress, 5 * brightness);
    return dress;
}

std::string DressedLamps(DemoBuilder& demo, const std::string& puppet, const Pictures& pictures,
                         float start, float stop, float brightness) {
    const std::string dress =
        demo.add("LightScreenEffect", {puppet, pictures.lamp, pictures.shell});
    demo.set(dress, "Reflection", 0);
    demo.setColor(dress, "Illum Color", 0.5f, 0.72f, 1.1f, 1);
    demo.set(dress, "Saturation", 1.7f);
    demo.set(dress, "Randomize", 0.6f);
    demo.animate(dress, "Random Phase", {{start, 0}, {stop, 12, kKeyLinear}});
    demo.pulse(dress, "Illumination", start, stop, 0.5f, 0.9f * brightness, 1.8f * brightness);
    lightHand(demo, dress, 2.5f * brightness);
    return dress;
}

// --- what the hand draws

std::string Line(DemoBuilder& demo, const std::string& puppet, const std::string& material,
                 int from, int to) {
    const std::string line = demo.add("HandLine", {material, puppet});
    demo.setText(line, "From", std::to_string(from));
    demo.setText(line, "To", std::to_string(to));
    return line;
}

void drawIntoFloor(DemoBuilder& demo, const std::string& row, float start) {
    demo.animate(row, "Scale",
                 {{start, 1}, {kFirstRowGone - 0.5f, 1}, {kFirstRowGone, 0, kKeyEaseIn}});
}

// Four figures, each in its colour.
std::string Row(DemoBuilder& demo, const std::string& puppet, const Pictures& pictures, int first) {
    const std::string row = demo.add("Combine Geometry");
    for (int i = 0; i < kRowLength; ++i) {
        const Tint& tint = kFigureTints[static_cast<std::size_t>(first + i)];
        const std::string material = Surface(demo, pictures.lamp, pictures.lamp, 0, 1.7f, tint);
        demo.link(Line(demo, puppet, material, first + i, first + i + 1), row, i);
    }
    return row;
}

// --- the stage

std::string Model(DemoBuilder& demo, const char* file, const std::string& material) {
    const std::string model = demo.add("ObjReader");
    if (!material.empty()) demo.link(material, model, 0);
    demo.setText(model, "Filename", std::string(".\\data\\") + file);
    return model;
}

std::string StageLights(DemoBuilder& demo, const Pictures& pictures, float start, float stop,
                        float brightness) {
    const std::string lights = demo.add(
        "Randomize Material", {Model(demo, "stage_lights.obj", ""), pictures.lamp, pictures.shell});
    demo.setText(lights, "Count", "23");
    demo.set(lights, "Reflection", 0);
    demo.setColor(lights, "Illum Color", 0.75f, 0.45f, 1, 1);
    demo.set(lights, "Saturation", 1.7f);
    demo.set(lights, "Randomize", 0.85f);
    demo.animate(lights, "Random Phase", {{start, 0}, {stop, 30, kKeyLinear}});
    demo.pulse(lights, "Illumination", start, stop, 0.5f, 0.2f * brightness, 0.7f * brightness);
    return lights;
}

std::string Floor(DemoBuilder& demo, const Pictures& pictures) {
    const std::string material =
        Surface(demo, pictures.floor, pictures.floor, 1.6f, 0.0f, {1, 1, 1});
    demo.set(material, "Reflection", 0.25f);
    demo.set(material, "Ref. Fresnel", 4);
    demo.setChoice(material, "Blend", 1);  // half of it is what it mirrors
    const std::string floor = demo.add("3DPrimitive", {material});
    demo.set(floor, "Rotate.X", 270);
    demo.set(floor, "Scale X", 9);
    demo.set(floor, "Scale Y", 9);
    return floor;
}

// Turned upside down, so that it looks like the mirror of what stands on the floor: half a turn,
// and every coordinate negated.
std::string Mirror(DemoBuilder& demo, const std::vector<std::string>& sources) {
    const std::string mirror = demo.add("Combine Geometry");
    int port = 0;
    for (const std::string& source : sources) demo.link(source, mirror, port++);
    demo.set(mirror, "Rotate.Y", 180);
    demo.set(mirror, "Scale", -1);
    return mirror;
}

std::string Scenery(DemoBuilder& demo, const Pictures& pictures, float start, float stop) {
    constexpr float kMirrored = 0.4f;  // of the light in the floor
    const std::string body = Puppet(demo, "puppet.obj");
    const std::string lamps = Puppet(demo, "puppet_lamps.obj");
    const std::string frames =
        Model(demo, "stage_frames.obj",
              Surface(demo, pictures.shell, pictures.lamp, 0.22f, 0, {1, 1, 1}));
    const std::string firstRow = Row(demo, body, pictures, 0);
    drawIntoFloor(demo, firstRow, start);
    const std::string secondRow = Row(demo, body, pictures, kRowLength);

    const std::string pale =
        Surface(demo, pictures.lamp, pictures.lamp, 0, 0.6f, {0.6f, 0.6f, 1.0f});
    const std::string firstPale =
        demo.add("Combine Geometry", {Line(demo, body, pale, 0, kRowLength)});
    drawIntoFloor(demo, firstPale, start);
    const std::string mirror =
        Mirror(demo, {DressedBody(demo, body, pictures, start, stop, kMirrored),
                      DressedLamps(demo, lamps, pictures, start, stop, kMirrored),
                      StageLights(demo, pictures, start, stop, kMirrored), frames, firstPale,
                      Line(demo, body, pale, kRowLength, 2 * kRowLength)});
    const std::string stage =
        demo.add("Combine Geometry",
                 {StageLights(demo, pictures, start, stop, 1), frames, Floor(demo, pictures)});
    return demo.add("Combine Geometry", {DressedBody(demo, body, pictures, start, stop, 1),
                                         DressedLamps(demo, lamps, pictures, start, stop, 1),
                                         firstRow, secondRow, stage, mirror});
}

// --- the cameras

// Circles at `speed` radians a second and faces the stage from `angle` at a second.
std::string Camera(DemoBuilder& demo, float speed, float seconds, float angle) {
    constexpr float kPi = 3.1415927f;
    const std::string camera = demo.add("OrbitCamera");
    demo.set(camera, "Global Speed", speed);
    demo.set(camera, "Time Offset", std::remainder((angle - speed * seconds) / kPi, 2.0f));
    demo.set(camera, "Wiggle", 0.04f);
    demo.set(camera, "WiggleSpeed", 0.9f);
    return camera;
}

std::string Render(DemoBuilder& demo, const std::string& scenery, const std::string& camera,
                   const Pictures& pictures) {
    const std::string render = demo.add("3DRender_RAD", {scenery, camera, pictures.room});
    demo.setColor(render, "Background", 0.004f, 0.005f, 0.014f, 1);
    demo.set(render, "GI:Ambiance", 0);
    demo.setFlag(render, "AO:Enable", true);
    demo.set(render, "AO:Radius", 0.35f);
    demo.set(render, "AO:Intensity", 2.5f);
    return render;
}

// Faces the figures; they read best from here.
std::string FrontView(DemoBuilder& demo, const std::string& scenery, const Pictures& pictures,
                      float start, float stop) {
    const std::string camera = Camera(demo, 0.02f, 184, 0);
    lead(demo, camera, "Radius",
         {{start, 3.4f, 3.4f},
          {170, 3.5f, 2.8f},
          {176, 2.8f, 3.1f},
          {180, 4.0f, 3.7f},
          {182, 3.0f, 3.4f},
          {188, 3.3f, 2.8f},
          {192, 2.9f, 3.2f},
          {194, 2.7f, 3.0f},
          {196, 3.4f, 2.9f},
          {198, 3.9f, 4.4f}},
         stop);
    lead(demo, camera, "Pan",
         {{start, 1, 1},
          {170, 1.2f, 1.0f},
          {176, 0.5f, 0.4f},
          {180, 0.25f, 0.05f},
          {182, -0.8f, -1.0f},
          {188, -1.1f, -0.7f},
          {192, -0.3f, 0.1f},
          {194, 0.4f, 0.5f},
          {196, 1.1f, 1.0f},
          {198, 0.45f, 0.3f}},
         stop);
    lead(demo, camera, "Height",
         {{start, 1.4f, 1.4f},
          {170, 1.7f, 1.4f},
          {176, 0.8f, 0.9f},
          {180, 1.6f, 2.0f},
          {182, 0.6f, 0.6f},
          {188, 1.8f, 1.5f},
          {192, 0.9f, 0.8f},
          {194, 0.5f, 0.6f},
          {196, 1.5f, 1.3f},
          {198, 1.2f, 1.5f}},
         stop);
    demo.set(camera, "Target Height", 1.02f);
    const std::string render = Render(demo, scenery, camera, pictures);
    demo.set(render, "FOV", 45);
    return render;
}

// Goes all the way round.
std::string OrbitView(DemoBuilder& demo, const std::string& scenery, const Pictures& pictures,
                      float start, float stop) {
    const std::string camera = Camera(demo, 0.3f, 178, 0.2f);
    lead(demo, camera, "Radius",
         {{start, 3.6f, 2.8f}, {174, 3.0f, 2.7f}, {178, 2.9f, 2.6f}, {186, 3.6f, 2.9f}}, stop);
    lead(demo, camera, "Height",
         {{start, 0.4f, 0.7f}, {174, 1.3f, 1.6f}, {178, 1.9f, 1.6f}, {186, 1.9f, 0.9f}}, stop);
    lead(demo, camera, "Pan",
         {{start, -0.6f, -1.0f}, {174, 0.1f, 0.2f}, {178, 0.0f, 0.0f}, {186, 0.8f, 0.8f}}, stop);
    demo.set(camera, "Target Height", 1.05f);
    const std::string render = Render(demo, scenery, camera, pictures);
    demo.set(render, "FOV", 50);
    return render;
}

}  // namespace

std::string Dance(DemoBuilder& demo, float start, float stop) {
    const Pictures pictures = {Wrap(demo, "stage_shell.png"), Wrap(demo, "stage_mask.png"),
                               Wrap(demo, "stage_lamp.png"), Wrap(demo, "stage_floor.png"),
                               Wrap(demo, "stage_room.png")};
    const std::string scenery = Scenery(demo, pictures, start, stop);
    const std::string front = FrontView(demo, scenery, pictures, start, stop);
    const std::string orbit = OrbitView(demo, scenery, pictures, start, stop);

    const std::string cuts = Cuts(demo, {{start, orbit},
                                         {170, front},
                                         {174, orbit},
                                         {176, front},
                                         {178, orbit},
                                         {180, front},
                                         {186, orbit},
                                         {188, front}});
    const std::string glow = demo.add("Soft Glow", {cuts});
    demo.set(glow, "Threshold", 0.5f);
    demo.set(glow, "Strength", 0.9f);
    demo.set(glow, "Radius", 44);
    return glow;
}

}  // namespace demo_scenes
