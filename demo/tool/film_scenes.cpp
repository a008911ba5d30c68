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
// fifth on), so that the intensities here bring the signs to about one brightness.
constexpr FilmShot kShots[] = {
    {"01_roofs", 4, 2.0f, 1.0f},       {"02_street", 2, 2.0f, 0.8f}, {"03_window", 2, 2.5f, 1.6f},
    {"04_room", 4, 3.0f, 1.3f},        {"05_mast", 2, 2.0f, 0.6f},   {"06_viaduct", 2, 2.0f, 0.55f},
    {"07_compartment", 2, 2.0f, 0.4f}, {"08_forest", 2, 2.0f, 0.4f}, {"09_balloons", 2, 2.0f, 0.4f},
    {"10_lighthouse", 2, 2.5f, 0.6f},  {"11_orbit", 2, 2.0f, 0.6f},  {"12_sunrise", 2, 3.0f, 0.15f},
    {"13_cinema", 4, 2.5f, 0.4f},
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
