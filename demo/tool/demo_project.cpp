#include "demo/tool/demo_project.h"

#include <utility>

#include "core/engine.h"
#include "demo/tool/demo_builder.h"
#include "demo/tool/demo_scenes.h"

namespace {

using Scene = std::string (*)(DemoBuilder&);

// The scenes and the second from which each is on show: the starts of the music's sections, and
// the middle of the long ones.
constexpr std::pair<float, Scene> kScenes[] = {
    {0.0f, demo_scenes::Title},           {16.0f, demo_scenes::Corridor},
    {32.0f, demo_scenes::Skyline},        {48.0f, demo_scenes::Tunnel},
    {64.0f, demo_scenes::NorthernLights}, {80.0f, demo_scenes::Temple},
    {112.0f, demo_scenes::Bridge},        {144.0f, demo_scenes::Grid},
    {160.0f, demo_scenes::Climax},        {208.0f, demo_scenes::Ending},
};

void SetProject(Engine& engine) {
    engine.projectName = "demo";
    engine.projectFolder = ".";
    engine.musicFile = ".\\data\\music.ogg";
    engine.dataFolder = ".\\data\\";
    engine.lengthText = "230";
}

}  // namespace

std::vector<std::string> BuildDemoProject(Engine& engine) {
    SetProject(engine);
    DemoBuilder demo(engine);
    const std::string sequencer = demo.add("Sequencer");
    int port = 0;
    for (const auto& [seconds, scene] : kScenes) {
        demo.link(scene(demo), sequencer, port);
        demo.setText(sequencer, ("Start 0" + std::to_string(port)).c_str(),
                     std::to_string(static_cast<int>(seconds * 1000.0f)));
        ++port;
    }
    const std::string punch = demo.add("Beat Punch", {sequencer});
    demo.set(punch, "AutoPulse", 0.0f);
    demo.animate(punch, "Pulse", {{0, 0}});
    const std::string finish = demo.add("Film Finish", {punch});
    demo.animate(finish, "Fade", {{0, 1}, {3, 0, kKeyEaseOut}, {227, 0}, {229.8f, 1, kKeyEaseIn}});
    demo.add("Viewer", {finish});
    return demo.faults();
}
