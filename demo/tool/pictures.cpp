#include "pictures.h"

#include <array>
#include <system_error>

#include "pictures_film.h"
#include "pictures_layer.h"
#include "pictures_painters.h"
#include "pictures_png.h"

namespace {

using pictures::Layer;

using Entry = pictures::PictureEntry;

constexpr auto kRgb = pictures::PngColour::Rgb;
constexpr auto kRgba = pictures::PngColour::Rgba;

constexpr std::array kEntries{
    Entry{"Loading.png", kRgb, pictures::paintLoading},
    Entry{"title.png", kRgba, pictures::paintTitle},
    Entry{"sky_night.png", kRgb, pictures::paintSkyNight},
    Entry{"mountains.png", kRgba, pictures::paintMountains},
    Entry{"city_far.png", kRgba, pictures::paintCityFar},
    Entry{"city_near.png", kRgba, pictures::paintCityNear},
    Entry{"sun_grid.png", kRgb, pictures::paintSunGrid},
    Entry{"stars.png", kRgb, pictures::paintStars},
    Entry{"moon.png", kRgba, pictures::paintMoon},
    Entry{"clouds.png", kRgba, pictures::paintClouds},
    Entry{"forest.png", kRgba, pictures::paintForest},
    Entry{"mandala.png", kRgba, pictures::paintMandala},
    Entry{"tiles.png", kRgb, pictures::paintTiles},
    Entry{"wide_banner.png", kRgb, pictures::paintWideBanner},
    Entry{"tall_poster.png", kRgb, pictures::paintTallPoster},
    Entry{"displace_map.png", kRgb, pictures::paintDisplaceMap},
    Entry{"vignette.png", kRgba, pictures::paintVignette},
    Entry{"light_leak.png", kRgb, pictures::paintLightLeak},
    Entry{"credits.png", kRgba, pictures::paintCredits},
    Entry{"end_card.png", kRgba, pictures::paintEndCard},
    Entry{"noise_mask.png", kRgb, pictures::paintNoiseMask},
    Entry{"stage_room.png", kRgb, pictures::paintStageRoom},
    Entry{"stage_shell.png", kRgb, pictures::paintStageShell},
    Entry{"stage_mask.png", kRgb, pictures::paintStageMask},
    Entry{"stage_floor.png", kRgb, pictures::paintStageFloor},
    Entry{"stage_lamp.png", kRgb, pictures::paintStageLamp},
    Entry{"hall_floor.png", kRgb, pictures::paintHallFloor},
    Entry{"hall_ceiling.png", kRgb, pictures::paintHallCeiling},
    Entry{"hall_left.png", kRgb, pictures::paintHallLeft},
    Entry{"hall_right.png", kRgb, pictures::paintHallRight},
    Entry{"hall_ends.png", kRgb, pictures::paintHallEnds},
    Entry{"hall_columns.png", kRgb, pictures::paintHallColumns},
    Entry{"hall_metal.png", kRgb, pictures::paintHallMetal},
    Entry{"hall_gold.png", kRgb, pictures::paintHallGold},
    Entry{"hall_view.png", kRgb, pictures::paintHallView},
    Entry{"hall_sun.png", kRgb, pictures::paintHallSun},
    Entry{"studio.png", kRgb, pictures::paintStudio},
    Entry{"white.png", kRgb, pictures::paintWhite},
    Entry{"word_light.png", kRgba, pictures::paintWordLight},
    Entry{"word_motion.png", kRgba, pictures::paintWordMotion},
    Entry{"word_sound.png", kRgba, pictures::paintWordSound},
    Entry{"word_graph.png", kRgba, pictures::paintWordGraph},
    Entry{"word_play.png", kRgba, pictures::paintWordPlay},
};

// Every picture, the film's after the others.
std::vector<Entry> allEntries() {
    std::vector<Entry> entries(kEntries.begin(), kEntries.end());
    for (const auto& part :
         {pictures::filmLights(), pictures::filmRoofs(), pictures::filmStreet(),
          pictures::filmSigns(), pictures::filmHouse(), pictures::filmRoom(), pictures::filmTrain(),
          pictures::filmForest(), pictures::filmSea(), pictures::filmSpace(),
          pictures::filmSunrise(), pictures::filmCinema()}) {
        entries.insert(entries.end(), part.begin(), part.end());
    }
    return entries;
}

bool paintEntry(const Entry& entry, const std::filesystem::path& folder, std::string& error) {
    std::error_code failure;
    std::filesystem::create_directories((folder / entry.name).parent_path(), failure);
    if (failure) {
        error = folder.string() + ": " + failure.message();
        return false;
    }
    return pictures::writePng(folder / entry.name, entry.paint(), entry.colour, error);
}

}  // namespace

bool PaintPictures(const std::filesystem::path& folder, std::string& error) {
    for (const Entry& entry : allEntries()) {
        if (!paintEntry(entry, folder, error)) return false;
    }
    return true;
}

bool PaintPicture(std::string_view name, const std::filesystem::path& folder, std::string& error) {
    for (const Entry& entry : allEntries()) {
        if (entry.name == name) return paintEntry(entry, folder, error);
    }
    error = std::string(name) + ": no picture of this name";
    return false;
}

std::vector<std::string> PictureNames() {
    std::vector<std::string> names;
    for (const Entry& entry : allEntries()) names.emplace_back(entry.name);
    return names;
}
