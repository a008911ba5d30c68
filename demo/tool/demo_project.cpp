#include "demo/tool/demo_project.h"

#include <span>
#include <string>
#include <vector>

#include "core/engine.h"
#include "demo/tool/demo_builder.h"
#include "demo/tool/demo_scenes.h"

namespace {

using namespace demo_scenes;

// A scene and the second from which it is on show.
struct Cut {
    float start;
    Scene scene;
};

constexpr float kEnd = 230.0f;
constexpr Cut kIntro[] = {{0.0f, Title}};
constexpr Cut kBuild[] = {{16.0f, Corridor}, {24.0f, Skyline}};
constexpr Cut kMainA[] = {{32.0f, Tunnel}, {38.0f, MotionBlurred}, {46.0f, Temple}, {52.0f, Rain}};
constexpr Cut kBreak[] = {{64.0f, Film}};
constexpr Cut kMainB[] = {
    {96.0f, TileTunnel}, {100.0f, Mandala}, {104.0f, Truchet}, {108.0f, Cells}};
constexpr Cut kBridge[] = {
    {112.0f, Interior}, {132.0f, NorthernLights}, {136.0f, Lights}, {140.0f, Trail}};
constexpr Cut kSecondBuild[] = {{144.0f, Hologram}};
constexpr Cut kClimax[] = {{160.0f, MeltingCity}, {164.0f, Grid}, {168.0f, Dance}, {200.0f, Blob}};
constexpr Cut kOutro[] = {{208.0f, Ending}};
// A section of the music each; every one but the first begins where its first scene does.
constexpr std::span<const Cut> kSections[] = {kIntro,  kBuild,       kMainA,  kBreak, kMainB,
                                              kBridge, kSecondBuild, kClimax, kOutro};

std::string Section(DemoBuilder& demo, std::span<const Cut> cuts, float stop) {
    std::vector<std::pair<float, std::string>> pictures;
    for (std::size_t i = 0; i < cuts.size(); ++i) {
        const float next = i + 1 < cuts.size() ? cuts[i + 1].start : stop;
        pictures.emplace_back(cuts[i].start, cuts[i].scene(demo, cuts[i].start, next));
    }
    return pictures.size() == 1 ? pictures.front().second : Cuts(demo, pictures);
}

std::string WholeDemo(DemoBuilder& demo) {
    std::vector<std::pair<float, std::string>> sections;
    for (std::size_t i = 0; i < std::size(kSections); ++i) {
        const float next = i + 1 < std::size(kSections) ? kSections[i + 1].front().start : kEnd;
        sections.emplace_back(kSections[i].front().start, Section(demo, kSections[i], next));
    }
    return Cuts(demo, sections);
}

void SetProject(Engine& engine) {
    engine.projectName = "demo";
    engine.projectFolder = ".";
    engine.musicFile = ".\\data\\music.ogg";
    engine.dataFolder = ".\\data\\";
    engine.lengthText = std::to_string(static_cast<int>(kEnd));
}

}  // namespace

std::vector<std::string> BuildDemoProject(Engine& engine) {
    SetProject(engine);
    DemoBuilder demo(engine);
    const std::string punch = demo.add("Beat Punch", {WholeDemo(demo)});
    demo.set(punch, "AutoPulse", 0.0f);
    demo.animate(punch, "Pulse", {{0, 0}});
    const std::string finish = demo.add("Film Finish", {punch});
    demo.animate(finish, "Fade", {{0, 1}, {3, 0, kKeyEaseOut}, {227, 0}, {229.8f, 1, kKeyEaseIn}});
    demo.add("Viewer", {finish});
    return demo.faults();
}
