// Paints pictures of the demo into a temporary folder and looks at the files: the program's reader
// takes 8-bit RGB and RGBA only, and a picture that is black or even all over shows nothing.
#include "pictures.h"

#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>

namespace {

namespace fs = std::filesystem;

constexpr int kPngRgb = 2, kPngRgba = 6;  // colour types as a PNG header gives them

struct Header {
    uint32_t width = 0, height = 0;
    int bits = 0, colourType = -1;
};

struct Pixels {
    int width = 0, height = 0;
    std::vector<unsigned char> rgba;

    const unsigned char* at(int x, int y) const {
        return &rgba[(static_cast<size_t>(y) * width + x) * 4];
    }
};

std::string readFile(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

uint32_t bigEndian(const std::string& bytes, size_t offset) {
    uint32_t value = 0;
    for (size_t i = 0; i < 4; ++i)
        value = value << 8 | static_cast<unsigned char>(bytes[offset + i]);
    return value;
}

Header readHeader(const fs::path& path) {
    constexpr size_t kHeaderEnd = 26;
    const std::string bytes = readFile(path);
    if (bytes.size() < kHeaderEnd || bytes.substr(1, 3) != "PNG") return {};
    return {bigEndian(bytes, 16), bigEndian(bytes, 20), bytes[24], bytes[25]};
}

Pixels readPixels(const fs::path& path) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str())) return {};
    image.format = PNG_FORMAT_RGBA;
    Pixels pixels{static_cast<int>(image.width), static_cast<int>(image.height), {}};
    pixels.rgba.resize(PNG_IMAGE_SIZE(image));
    if (!png_image_finish_read(&image, nullptr, pixels.rgba.data(), 0, nullptr)) return {};
    return pixels;
}

class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = (fs::temp_directory_path() / "vorn_pictures_XXXXXX").string();
        if (mkdtemp(name.data()) != nullptr) path = name;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    fs::path path;
};

// Mean difference of the channels of two columns (or rows, when `along` is y).
enum class Along { X, Y };

double meanStep(const Pixels& pixels, Along along, int from, int to) {
    const int count = along == Along::X ? pixels.height : pixels.width;
    double sum = 0;
    for (int i = 0; i < count; ++i) {
        const unsigned char* a = along == Along::X ? pixels.at(from, i) : pixels.at(i, from);
        const unsigned char* b = along == Along::X ? pixels.at(to, i) : pixels.at(i, to);
        for (int channel = 0; channel < 4; ++channel) sum += std::abs(a[channel] - b[channel]);
    }
    return sum / (4.0 * count);
}

// The largest step between neighbours inside the picture.
double largestStep(const Pixels& pixels, Along along) {
    const int count = along == Along::X ? pixels.width : pixels.height;
    double largest = 0;
    for (int i = 1; i < count; ++i) largest = std::max(largest, meanStep(pixels, along, i - 1, i));
    return largest;
}

double meanOfColumn(const Pixels& pixels, int x) {
    double sum = 0;
    for (int y = 0; y < pixels.height; ++y) {
        for (int channel = 0; channel < 3; ++channel) sum += pixels.at(x, y)[channel];
    }
    return sum / (3.0 * pixels.height);
}

Pixels paint(const std::string& name, const fs::path& folder) {
    std::string error;
    EXPECT_TRUE(PaintPicture(name, folder, error)) << error;
    return readPixels(folder / name);
}

struct Expected {
    const char* name;
    uint32_t width, height;
    int colourType;
};

std::ostream& operator<<(std::ostream& stream, const Expected& expected) {
    return stream << expected.name;
}

// One or more of each size and kind; painting all of them would take too long for a test.
constexpr std::array kExpected{
    Expected{"title.png", 1920, 1080, kPngRgba},
    Expected{"sun_grid.png", 1920, 1080, kPngRgb},
    Expected{"city_far.png", 1920, 1080, kPngRgba},
    Expected{"moon.png", 1024, 1024, kPngRgba},
    Expected{"mandala.png", 1024, 1024, kPngRgba},
    Expected{"tiles.png", 512, 512, kPngRgb},
    Expected{"wide_banner.png", 2048, 512, kPngRgb},
    Expected{"tall_poster.png", 720, 1280, kPngRgb},
    Expected{"vignette.png", 1920, 1080, kPngRgba},
    Expected{"forest.png", 1920, 1080, kPngRgba},
    Expected{"word_motion.png", 1920, 1080, kPngRgba},
    Expected{"stage_room.png", 1024, 512, kPngRgb},
    Expected{"stage_mask.png", 512, 512, kPngRgb},
    Expected{"film/roofs-sky.png", 1120, 640, kPngRgb},
    Expected{"film/Neon-vorn.png", 1000, 440, kPngRgba},
    Expected{"film/Neon Screen-Mask monitor.png", 752, 424, kPngRgba},
};

class DemoPicture : public testing::TestWithParam<Expected> {};

}  // namespace

TEST_P(DemoPicture, IsAnEightBitPngOfItsSizeAndKind) {
    const TemporaryFolder folder;
    std::string error;
    ASSERT_TRUE(PaintPicture(GetParam().name, folder.path, error)) << error;
    const Header header = readHeader(folder.path / GetParam().name);
    EXPECT_EQ(header.width, GetParam().width);
    EXPECT_EQ(header.height, GetParam().height);
    EXPECT_EQ(header.bits, 8);
    EXPECT_EQ(header.colourType, GetParam().colourType);
}

TEST_P(DemoPicture, ShowsSomething) {
    const TemporaryFolder folder;
    const Pixels pixels = paint(GetParam().name, folder.path);
    ASSERT_FALSE(pixels.rgba.empty());
    // A layer may be of one colour and show by its alpha alone, an opaque picture may not be dark.
    const bool layered = GetParam().colourType == kPngRgba;
    std::array<unsigned char, 4> low, high;
    low.fill(255);
    high.fill(0);
    for (size_t i = 0; i < pixels.rgba.size(); ++i) {
        low[i % 4] = std::min(low[i % 4], pixels.rgba[i]);
        high[i % 4] = std::max(high[i % 4], pixels.rgba[i]);
    }
    constexpr int kContrast = 128;
    if (layered) {
        EXPECT_EQ(low[3], 0) << "no clear pixel";
        EXPECT_GT(high[3], kContrast) << "nothing solid";
    } else {
        EXPECT_GT(std::max({high[0] - low[0], high[1] - low[1], high[2] - low[2]}), kContrast);
    }
}

INSTANTIATE_TEST_SUITE_P(Pictures, DemoPicture, testing::ValuesIn(kExpected),
                         [](const auto& picture) {
                             std::string name = fs::path(picture.param.name).stem().string();
                             std::erase_if(name, [](char sign) { return !std::isalnum(sign); });
                             return name;
                         });

TEST(DemoPictures, TilesRepeatWithoutASeamBothWays) {
    const TemporaryFolder folder;
    const Pixels tiles = paint("tiles.png", folder.path);
    ASSERT_EQ(tiles.width, 512);
    ASSERT_EQ(tiles.height, 512);
    // Across the seam the picture changes no more than between some neighbours inside it.
    EXPECT_LE(meanStep(tiles, Along::X, 511, 0), largestStep(tiles, Along::X));
    EXPECT_LE(meanStep(tiles, Along::Y, 511, 0), largestStep(tiles, Along::Y));
    // The measure tells a seam: columns and rows that do not meet differ by far more.
    EXPECT_GT(meanStep(tiles, Along::X, 100, 130), largestStep(tiles, Along::X));
    EXPECT_GT(meanStep(tiles, Along::Y, 100, 130), largestStep(tiles, Along::Y));
}

TEST(DemoPictures, TilesGlowAcrossTheirEdgesAsWithin) {
    const TemporaryFolder folder;
    const Pixels tiles = paint("tiles.png", folder.path);
    ASSERT_EQ(tiles.width, 512);
    // The pattern is made of cells of 64 pixels. Their borders differ by up to 2 levels by chance;
    // a glow that ends at the edge of the picture costs its border 12.
    constexpr double kTolerance = 5;
    EXPECT_NEAR(meanOfColumn(tiles, 0), meanOfColumn(tiles, 256), kTolerance);
    EXPECT_NEAR(meanOfColumn(tiles, 511), meanOfColumn(tiles, 255), kTolerance);
}

TEST(DemoPictures, CloudsRepeatSideways) {
    const TemporaryFolder folder;
    const Pixels clouds = paint("clouds.png", folder.path);
    ASSERT_EQ(clouds.width, 1920);
    EXPECT_LE(meanStep(clouds, Along::X, 1919, 0), largestStep(clouds, Along::X));
    EXPECT_GT(meanStep(clouds, Along::X, 1500, 0), largestStep(clouds, Along::X));
}

TEST(DemoPictures, RainGoesOnFromTheFootOfATileIntoItsHead) {
    const TemporaryFolder folder;
    const Pixels rain = paint("film/rain-far.png", folder.path);
    ASSERT_EQ(rain.height, 1080);
    const auto drops = [&](int firstRow) {
        int count = 0;
        for (int y = firstRow; y < firstRow + 8; ++y) {
            for (int x = 0; x < rain.width; ++x) count += rain.at(x, y)[3] > 16;
        }
        return count;
    };
    // Drops that begin above the head are there too, so that it is as full as the middle.
    EXPECT_GT(drops(0), 0.75 * drops(536));
}

TEST(DemoPictures, PaintTheSameBytesEachTime) {
    const TemporaryFolder first, second;
    paint("moon.png", first.path);
    paint("moon.png", second.path);
    const std::string bytes = readFile(first.path / "moon.png");
    EXPECT_FALSE(bytes.empty());
    EXPECT_EQ(bytes, readFile(second.path / "moon.png"));
}

TEST(DemoPictures, AreNamedAsTheProjectReadsThem) {
    const std::set<std::string> expected{
        "Loading.png",     "title.png",       "sky_night.png",   "mountains.png",
        "city_far.png",    "city_near.png",   "sun_grid.png",    "stars.png",
        "moon.png",        "clouds.png",      "forest.png",      "mandala.png",
        "tiles.png",       "wide_banner.png", "tall_poster.png", "displace_map.png",
        "vignette.png",    "light_leak.png",  "credits.png",     "end_card.png",
        "noise_mask.png",  "word_light.png",  "word_motion.png", "word_sound.png",
        "word_graph.png",  "word_play.png",   "hall_floor.png",  "hall_ceiling.png",
        "hall_left.png",   "hall_right.png",  "hall_ends.png",   "hall_columns.png",
        "hall_metal.png",  "hall_gold.png",   "hall_view.png",   "hall_sun.png",
        "studio.png",      "white.png",       "black.png",       "stage_room.png",
        "stage_shell.png", "stage_mask.png",  "stage_floor.png", "stage_lamp.png",
    };
    std::vector<std::string> names = PictureNames();
    const std::set<std::string> all(names.begin(), names.end());
    EXPECT_EQ(all.size(), names.size()) << "a name twice";
    std::erase_if(names, [](const std::string& name) { return name.starts_with("film/"); });
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()), expected);
}

TEST(DemoPictures, SayWhichFileCannotBeWritten) {
    const TemporaryFolder folder;
    const fs::path blocked = folder.path / "taken";
    std::ofstream(blocked) << "a file where the folder should be";
    std::string error;
    EXPECT_FALSE(PaintPictures(blocked, error));
    EXPECT_NE(error.find("taken"), std::string::npos) << error;
}

TEST(DemoPictures, SayWhichNameIsUnknown) {
    const TemporaryFolder folder;
    std::string error;
    EXPECT_FALSE(PaintPicture("nothing.png", folder.path, error));
    EXPECT_NE(error.find("nothing.png"), std::string::npos) << error;
    EXPECT_TRUE(fs::is_empty(folder.path));
}
