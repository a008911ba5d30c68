// Makes the content of the shipped demo.
//   vorn_make_demo pictures FOLDER
//   vorn_make_demo models FOLDER
//   vorn_make_demo music FILE.ogg
//   vorn_make_demo film DESCRIPTIONS FOLDER
//   vorn_make_demo project SCRIPTS FONTS FOLDER
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "app/session.h"
#include "demo/tool/dance_capture.h"
#include "demo/tool/demo_project.h"
#include "demo/tool/film_scenes.h"
#include "demo/tool/puppet_model.h"
#include "demo/tool/stage_model.h"
#include "models.h"
#include "music.h"
#include "pictures.h"
#include "platform/debug_output.h"

namespace fs = std::filesystem;

namespace {

int Fail(const std::string& what) {
    std::fprintf(stderr, "vorn_make_demo: %s\n", what.c_str());
    return 1;
}

int MakePictures(const fs::path& folder) {
    std::error_code ignored;
    fs::create_directories(folder, ignored);
    std::string error;
    return PaintPictures(folder, error) ? 0 : Fail(error);
}

int MakeMusic(const fs::path& file) {
    std::error_code ignored;
    fs::create_directories(file.parent_path(), ignored);
    std::string error;
    return SynthesiseMusic(file, error) ? 0 : Fail(error);
}

int MakeModels(const fs::path& folder) {
    std::error_code ignored;
    fs::create_directories(folder, ignored);
    std::string error;
    const bool made = BuildModels(folder, error) && WritePuppet(folder, error) &&
                      WriteStage(folder, error) && WriteDance(folder, error);
    return made ? 0 : Fail(error);
}

int MakeFilm(const fs::path& descriptions, const fs::path& folder) {
    std::string fault;
    return MakeFilmScenes(descriptions, folder, fault) ? 0 : Fail(fault);
}

bool CopyFolder(const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::remove_all(to, error);
    fs::create_directories(to, error);
    fs::copy(from, to, error);
    return !error;
}

// The project is built in a session of its own, in the demo's folder, by the engine's operations.
int MakeProject(const fs::path& scripts, const fs::path& fonts, const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (!CopyFolder(scripts, folder / "Scripts")) return Fail("the scripts cannot be copied");
    if (!CopyFolder(fonts, folder / "fonts")) return Fail("the fonts cannot be copied");
    fs::current_path(folder, error);
    if (error) return Fail(folder.string() + ": no such folder");

    const DebugCapture quiet;
    std::string reason;
    int exitCode = 0;
    const auto session = Session::Start(WindowKind::Offscreen, reason, exitCode);
    if (session == nullptr) return Fail("OpenGL: " + reason);
    const std::vector<std::string> faults = BuildDemoProject(*session->engine);
    for (const std::string& fault : faults) Fail(fault);
    if (!session->engine->save("demo.vorn")) return Fail("demo.vorn cannot be written");
    return faults.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words.size() == 2 && words[0] == "pictures") return MakePictures(words[1]);
    if (words.size() == 2 && words[0] == "models") return MakeModels(words[1]);
    if (words.size() == 2 && words[0] == "music") return MakeMusic(words[1]);
    if (words.size() == 3 && words[0] == "film") return MakeFilm(words[1], words[2]);
    if (words.size() == 4 && words[0] == "project") {
        return MakeProject(fs::absolute(words[1]), fs::absolute(words[2]), fs::absolute(words[3]));
    }
    return Fail(
        "needs pictures FOLDER, models FOLDER, music FILE.ogg, film DESCRIPTIONS FOLDER, or "
        "project "
        "SCRIPTS FONTS FOLDER");
}
