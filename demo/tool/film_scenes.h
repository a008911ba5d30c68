// The shots of the demo's film: what they are called, how long each is, and the making of their
// .scn files from the readable descriptions in demo/film. Any thread.
#pragma once

#include <filesystem>
#include <span>
#include <string>

struct FilmShot {
    const char* name;  // of the description and of the .scn file, without suffix
    float seconds;     // on the music's grid: whole bars
    float glowRadius, glowIntensity;
};

// In the order of the story; the slot of a shot is its place here.
std::span<const FilmShot> FilmShots();

// Samples every shot's description in `descriptions` into NAME.scn in `folder`, which is made when
// it is not there. False at the first that fails; `fault` then names the file and the reason.
bool MakeFilmScenes(const std::filesystem::path& descriptions, const std::filesystem::path& folder,
                    std::string& fault);
