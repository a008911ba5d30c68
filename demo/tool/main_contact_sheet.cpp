// Renders twelve pictures spread over a demo, and one sheet with all of them.
//   vorn_contact_sheet PROJECT.vorn FOLDER
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "app/command_line.h"
#include "app/session.h"
#include "app/shots.h"
#include "platform/debug_output.h"
#include "platform/picture_decoder.h"

namespace fs = std::filesystem;

namespace {

constexpr int kPictures = 12;
constexpr int kColumns = 4;
constexpr double kDemoSeconds = 230.0;
constexpr std::uint32_t kShrink = 3;  // a picture's side is this much smaller on the sheet

// Averages squares of kShrink pixels into place (column, row) of the sheet.
void PasteShrunk(const DecodedPicture& picture, std::vector<std::uint8_t>& sheet,
                 std::uint32_t sheetWidth, std::uint32_t left, std::uint32_t top) {
    for (std::uint32_t y = 0; y < picture.height / kShrink; ++y) {
        for (std::uint32_t x = 0; x < picture.width / kShrink; ++x) {
            for (std::uint32_t c = 0; c < 3; ++c) {
                std::uint32_t sum = 0;
                for (std::uint32_t i = 0; i < kShrink * kShrink; ++i) {
                    const std::uint32_t px = x * kShrink + i % kShrink;
                    const std::uint32_t py = y * kShrink + i / kShrink;
                    sum +=
                        picture.pixels[(static_cast<std::size_t>(py) * picture.width + px) * 3 + c];
                }
                const std::size_t place =
                    (static_cast<std::size_t>(top + y) * sheetWidth + left + x) * 3 + c;
                sheet[place] = static_cast<std::uint8_t>(sum / (kShrink * kShrink));
            }
        }
    }
}

bool WriteSheet(const std::vector<std::string>& files, const std::string& sheetFile) {
    std::vector<std::uint8_t> sheet;
    std::uint32_t width = 0, height = 0;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const std::optional<DecodedPicture> picture = DecodePicture(files[i], nullptr);
        if (!picture || picture->channels != 3) return false;
        const std::uint32_t cellWidth = picture->width / kShrink;
        const std::uint32_t cellHeight = picture->height / kShrink;
        if (sheet.empty()) {
            width = cellWidth * kColumns;
            height = cellHeight * (kPictures / kColumns);
            sheet.resize(static_cast<std::size_t>(width) * height * 3);
        }
        const auto place = static_cast<std::uint32_t>(i);
        PasteShrunk(*picture, sheet, width, place % kColumns * cellWidth,
                    place / kColumns * cellHeight);
    }
    return WritePng(sheetFile, width, height, 3, sheet.data());
}

int Fail(const std::string& what) {
    std::fprintf(stderr, "vorn_contact_sheet: %s\n", what.c_str());
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) return Fail("needs PROJECT.vorn and FOLDER");
    const fs::path project = fs::absolute(argv[1]);
    const fs::path folder = fs::absolute(argv[2]);
    std::error_code error;
    fs::create_directories(folder, error);
    fs::current_path(project.parent_path(), error);
    if (error) return Fail(project.string() + ": no such folder");

    const DebugCapture quiet;
    std::string reason;
    int exitCode = 0;
    const auto session = Session::Start(WindowKind::Offscreen, reason, exitCode);
    if (session == nullptr) return Fail("OpenGL: " + reason);
    if (!session->engine->load(project.filename().string(), true, "")) {
        return Fail(project.string() + ": is not a project");
    }
    std::vector<std::string> files;
    for (int i = 0; i < kPictures; ++i) {
        Shot shot;
        shot.seconds = kDemoSeconds * (i + 0.5) / kPictures;
        char name[32];
        std::snprintf(name, sizeof name, "shot-%02d.png", i + 1);
        shot.file = (folder / name).string();
        std::printf("\rPicture %d of %d, at %.0f seconds ... ", i + 1, kPictures, shot.seconds);
        std::fflush(stdout);
        if (!TakeShot(*session, shot)) return Fail(shot.file + ": cannot be written");
        files.push_back(shot.file);
    }
    const std::string sheet = (folder / "contact-sheet.png").string();
    if (!WriteSheet(files, sheet)) return Fail(sheet + ": cannot be written");
    std::printf("\r%d pictures and contact-sheet.png are in %s\n", kPictures, argv[2]);
    return 0;
}
