#include "demo/tool/film_scenes.h"

#include <cmath>
#include <fstream>
#include <iterator>
#include <system_error>
#include <vector>

#include "image/parallax_scene.h"
#include "scene_json.h"

namespace fs = std::filesystem;

namespace {

// The node's own glow differs from slot to slot (weak in the third and fourth, strong from the
// fifth on), so that the intensities here bring the signs to about one brightness. With a larger
// radius the taps of the blur stand so far apart that thin tubes leave stripes.
constexpr FilmShot kShots[] = {
    {"01_roofs", 4, 0.6f, 1.0f},       {"02_street", 2, 0.7f, 0.8f}, {"03_window", 2, 0.7f, 2.0f},
    {"04_room", 4, 0.8f, 1.5f},        {"05_mast", 2, 0.7f, 0.6f},   {"06_viaduct", 2, 0.7f, 0.5f},
    {"07_compartment", 2, 0.7f, 0.5f}, {"08_forest", 2, 0.7f, 0.5f}, {"09_balloons", 2, 0.7f, 0.5f},
    {"10_lighthouse", 2, 0.8f, 0.6f},  {"11_orbit", 2, 0.7f, 0.6f},  {"12_sunrise", 2, 0.8f, 0.12f},
    {"13_cinema", 4, 0.7f, 0.35f},
};

bool ReadText(const fs::path& path, std::string& text) {
    std::ifstream stream(path, std::ios::binary);
    text.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    return stream.good() || stream.eof();
}

bool WriteBytes(const fs::path& path, std::span<const std::uint8_t> bytes) {
    std::ofstream stream(path, std::ios::binary);
    stream.write(reinterpret_cast<const char*>(bytes.data()),
                 static_cast<std::streamsize>(bytes.size()));
    stream.close();
    return !stream.fail();
}

bool MakeScene(const FilmShot& shot, const fs::path& descriptions, const fs::path& folder,
               std::string& fault) {
    const fs::path source = descriptions / (std::string(shot.name) + ".json");
    std::string text;
    if (!ReadText(source, text) || text.empty()) {
        fault = source.string() + ": cannot be read";
        return false;
    }
    SceneDescription scene;
    if (!ParseSceneJson(text, scene, fault)) {
        fault = source.string() + ": " + fault;
        return false;
    }
    if (std::fabs(scene.lengthSeconds - shot.seconds) > 1e-6) {
        fault = source.string() + ": is not as long as its shot";
        return false;
    }
    const std::vector<ParallaxRecord> records = SampleScene(scene);
    const fs::path target = folder / (std::string(shot.name) + ".scn");
    if (WriteBytes(target, ParallaxSceneBytes(records))) return true;
    fault = target.string() + ": cannot be written";
    return false;
}

}  // namespace

std::span<const FilmShot> FilmShots() {
    return kShots;
}

bool MakeFilmScenes(const fs::path& descriptions, const fs::path& folder, std::string& fault) {
    std::error_code failure;
    fs::create_directories(folder, failure);
    if (failure) {
        fault = folder.string() + ": " + failure.message();
        return false;
    }
    for (const FilmShot& shot : kShots) {
        if (!MakeScene(shot, descriptions, folder, fault)) return false;
    }
    return true;
}
