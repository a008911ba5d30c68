// The film: thirteen shots of layered pictures under one camera, cut on the bars, with a picture
// that the graph makes live on the screens inside them.
#include <algorithm>

#include "demo/tool/demo_scenes.h"
#include "demo/tool/film_scenes.h"

namespace demo_scenes {

namespace {

// Steps are two keys this far apart.
constexpr float kCutSeconds = 1.0f / 120.0f;

// What runs on the screens of the film.
std::string LivePicture(DemoBuilder& demo, float start, float stop) {
    const std::string tunnel = demo.add("Ring Tunnel");
    demo.set(tunnel, "Speed", 0.0f);
    demo.set(tunnel, "AutoPulse", 0.0f);
    demo.animate(tunnel, "Travel", {{start, 0}, {stop, 48, kKeyLinear}});
    demo.animate(tunnel, "Twist", {{start, -1.2f}, {stop, 1.6f}});
    demo.pulse(tunnel, "Pulse", start, stop, 0.5f, 0.0f, 0.9f);
    return tunnel;
}

// One value for each shot, with a step at every cut.
std::vector<DemoKey> Steps(float start, float FilmShot::*value) {
    std::vector<DemoKey> keys;
    float from = start;
    for (const FilmShot& shot : FilmShots()) {
        keys.push_back({from, shot.*value, kKeyLinear});
        from += shot.seconds;
        keys.push_back({from - kCutSeconds, shot.*value, kKeyLinear});
    }
    return keys;
}

}  // namespace

std::string Film(DemoBuilder& demo, float start, float stop) {
    const std::string film = demo.add("2D Parallax Engine", {LivePicture(demo, start, stop)});
    float from = start;
    int slot = 1;
    for (const FilmShot& shot : FilmShots()) {
        const std::string number = std::to_string(slot++);
        demo.setText(film, (".scn File " + number).c_str(),
                     std::string(".\\data\\film\\") + shot.name + ".scn");
        demo.set(film, ("Start Time " + number).c_str(), std::min(from, stop));
        from += shot.seconds;
    }
    demo.set(film, "FX Intensity", 1.0f);
    demo.animate(film, "Glow:Radius", Steps(start, &FilmShot::glowRadius));
    demo.animate(film, "GlowIntensity", Steps(start, &FilmShot::glowIntensity));
    return film;
}

}  // namespace demo_scenes
