// What several scenes of the demo are built with.
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

// A sequencer takes up its times in the frame after the first; until then it runs the picture of
// its last port. The first picture stands there once more, so that a scene whose sequencer is new
// shows its first picture and not one that was never drawn.
std::string Cuts(DemoBuilder& demo, const std::vector<std::pair<float, std::string>>& pictures) {
    constexpr const char* kNever = "1000000000";
    const std::string sequencer = demo.add("Sequencer");
    const auto show = [&](std::size_t port, const std::string& picture, const std::string& start) {
        demo.link(picture, sequencer, static_cast<int>(port));
        demo.setText(sequencer, ("Start 0" + std::to_string(port)).c_str(), start);
    };
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        const auto& [seconds, picture] = pictures[i];
        show(i, picture, std::to_string(static_cast<int>(seconds * 1000.0f)));
    }
    show(pictures.size(), pictures.front().second, kNever);
    return sequencer;
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

}  // namespace demo_scenes
