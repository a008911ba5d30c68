#include "models.h"

#include <array>

namespace {

struct Entry {
    std::string_view name;
    models::ObjModel (*build)();
};

constexpr std::array kEntries{
    Entry{"hall_floor.obj", models::hallFloor},
    Entry{"hall_ceiling.obj", models::hallCeiling},
    Entry{"hall_left.obj", models::hallLeftWall},
    Entry{"hall_right.obj", models::hallRightWall},
    Entry{"hall_ends.obj", models::hallEndWalls},
    Entry{"hall_columns.obj", models::hallColumns},
    Entry{"hall_metal.obj", models::hallMetal},
    Entry{"hall_arches_rose.obj", models::hallArchesRose},
    Entry{"hall_arches_blue.obj", models::hallArchesBlue},
    Entry{"hall_windows.obj", models::hallWindows},
    Entry{"hall_sun.obj", models::hallSun},
    Entry{"hall_strips.obj", models::hallStrips},
    Entry{"hall_lamps.obj", models::hallLamps},
    Entry{"knot.obj", models::knot},
    Entry{"gem.obj", models::gem},
    Entry{"star.obj", models::star},
    Entry{"spheres.obj", models::spheres},
    Entry{"vase.obj", models::vase},
    Entry{"crystal.obj", models::crystal},
    Entry{"shard.obj", models::shard},
    Entry{"ring.obj", models::ring},
};

}  // namespace

bool BuildModels(const std::filesystem::path& folder, std::string& error) {
    for (const Entry& entry : kEntries) {
        if (!entry.build().write(folder / entry.name, error)) return false;
    }
    return true;
}

std::vector<std::string> ModelNames() {
    std::vector<std::string> names;
    for (const Entry& entry : kEntries) names.emplace_back(entry.name);
    return names;
}

std::string ModelText(std::string_view name) {
    for (const Entry& entry : kEntries) {
        if (entry.name == name) return entry.build().text();
    }
    return "";
}
