// The film of the demo: every description is made into a scene and looked at as the camera will
// see it, with the pictures that the build has painted.
#include "demo/tool/film_scenes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "image/image_node_2d_parallax_renderer.h"
#include "image/parallax_scene.h"
#include "pictures.h"
#include "platform/picture_decoder.h"
#include "scene_json.h"
#include "support/temp_folder.h"

namespace {

namespace fs = std::filesystem;

constexpr int kDodgeMode = 27;
constexpr std::size_t kDodgeSlot = 11;
constexpr float kFrameWidth = 1920, kFrameHeight = 1080;

bool contains(const std::string& name, const char* part) {
    return name.find(part) != std::string::npos;
}

fs::path demoFolder() {
    const char* folder = std::getenv("VORN_DEMO");
    return folder == nullptr ? fs::path() : fs::path(folder);
}

struct Film {
    std::vector<std::vector<ParallaxRecord>> scenes;
    std::string fault;
};

// All shots, made from the descriptions as the build makes them.
const Film& film() {
    static const Film made = [] {
        Film result;
        const TempFolder folder;
        const fs::path sources = fs::path(VORN_SOURCE_DIR) / "demo" / "film";
        if (!MakeFilmScenes(sources, folder.path(), result.fault)) return result;
        for (const FilmShot& shot : FilmShots()) {
            std::ifstream stream(folder.path() / (std::string(shot.name) + ".scn"),
                                 std::ios::binary);
            const std::vector<char> bytes((std::istreambuf_iterator<char>(stream)), {});
            std::string fault;
            result.scenes.push_back(ReadParallaxScene(
                {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}, fault));
            if (!fault.empty()) result.fault = shot.name + (": " + fault);
        }
        return result;
    }();
    return made;
}

const std::vector<ParallaxRecord>& sceneOf(std::size_t slot) {
    static const std::vector<ParallaxRecord> none;
    return slot < film().scenes.size() ? film().scenes[slot] : none;
}

std::string pictureOf(const ParallaxRecord& record) {
    return contains(record.name, "Solid") ? "black.png" : record.name;
}

// How much of what is behind it a pixel hides, 0 to 1; light that is screened counts by its
// brightness.
class Cover {
  public:
    Cover(const DecodedPicture& picture, bool isScreened)
        : width_(static_cast<int>(picture.width)), height_(static_cast<int>(picture.height)) {
        const std::size_t count =
            static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
        values_.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint8_t* pixel = picture.pixels.get() + i * picture.channels;
            const int alpha = picture.channels == 4 ? pixel[3] : 255;
            const int light = std::max({pixel[0], pixel[1], pixel[2]}) * alpha / 255;
            values_.push_back(static_cast<std::uint8_t>(isScreened ? light : alpha));
        }
    }

    float at(float u, float v) const {
        const int x = std::clamp(static_cast<int>(u * static_cast<float>(width_)), 0, width_ - 1);
        const int y = std::clamp(static_cast<int>(v * static_cast<float>(height_)), 0, height_ - 1);
        return static_cast<float>(
                   values_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                           static_cast<std::size_t>(x)]) /
               255.0f;
    }

  private:
    int width_, height_;
    std::vector<std::uint8_t> values_;
};

// A layer as the camera sees it at one moment, in pixels of the frame.
struct Seen {
    const ParallaxRecord* record;
    const Cover* cover;
    float x0, y0, x1, y1, opacity;

    bool isPaint() const { return record->mode == 2; }
    float coverAt(float x, float y) const {
        const float u = (x - x0) / (x1 - x0), v = (y - y0) / (y1 - y0);
        if (!(u >= 0 && u <= 1 && v >= 0 && v <= 1)) return 0;
        return cover->at(u, v) * opacity;
    }
};

// The pictures of one scene, for as long as it is looked at.
class Stage {
  public:
    explicit Stage(std::size_t slot) : scene_(sceneOf(slot)) {
        for (const ParallaxRecord& record : scene_) {
            const bool isScreened = record.mode != 2;
            const auto key = std::make_pair(pictureOf(record), isScreened);
            if (covers_.contains(key)) continue;
            const fs::path path = demoFolder() / "Graphics" / key.first;
            std::string reason;
            const auto picture = DecodePicture(path.string(), &reason);
            if (!picture) {
                faults.push_back(key.first + ": " + reason);
                continue;
            }
            covers_.emplace(key, Cover(*picture, isScreened));
        }
    }

    // Front first.
    std::vector<Seen> at(float seconds) const {
        std::vector<Seen> layers;
        for (const ParallaxRecord& record : scene_) {
            const auto place = ParallaxPlaceAt(record.keys, seconds, 1.0f);
            const auto cover = covers_.find(std::make_pair(pictureOf(record), record.mode != 2));
            if (!place || cover == covers_.end()) continue;
            const auto x = [](float clip) { return (clip + 1) * kFrameWidth / 2; };
            const auto y = [](float clip) { return (clip + 1) * kFrameHeight / 2; };
            layers.push_back({&record, &cover->second, x(place->x0), y(place->y0), x(place->x1),
                              y(place->y1), place->opacity});
        }
        return layers;
    }

    std::vector<std::string> faults;

  private:
    const std::vector<ParallaxRecord>& scene_;
    std::map<std::pair<std::string, bool>, Cover> covers_;
};

// What the paint of the first `count` layers hides at a point, 0 to 1.
float hiddenAt(const std::vector<Seen>& layers, std::size_t count, float x, float y) {
    float open = 1;
    for (std::size_t i = 0; i < count && open > 0.001f; ++i) {
        if (layers[i].isPaint()) open *= 1 - layers[i].coverAt(x, y);
    }
    return 1 - open;
}

// Objects that are rectangles by nature, curtains, whose edge is their hem, and water, whose edge
// is the horizon.
bool endsInAStraightEdge(const std::string& name) {
    return contains(name, "Screen-Mask") || contains(name, "room-glass") ||
           contains(name, "curtain") || contains(name, "lake") || contains(name, "Solid");
}

// The share of a picture's border that stands in the frame as a visible straight edge.
float visibleBorder(const std::vector<Seen>& layers, std::size_t index) {
    constexpr int kPoints = 60;
    constexpr float kVisible = 0.14f;
    const Seen& layer = layers[index];
    int seen = 0;
    for (int i = 0; i < 4 * kPoints; ++i) {
        const float along = (static_cast<float>(i % kPoints) + 0.5f) / kPoints;
        const int side = i / kPoints;
        const float u = side == 0 ? 0.0005f : side == 1 ? 0.9995f : along;
        const float v = side == 2 ? 0.0005f : side == 3 ? 0.9995f : along;
        const float x = layer.x0 + (layer.x1 - layer.x0) * u;
        const float y = layer.y0 + (layer.y1 - layer.y0) * v;
        if (!(x > 1 && x < kFrameWidth - 1 && y > 1 && y < kFrameHeight - 1)) continue;
        const float shown = layer.coverAt(x, y) * (1 - hiddenAt(layers, index, x, y));
        if (shown > kVisible) ++seen;
    }
    return static_cast<float>(seen) / (4 * kPoints);
}

class FilmScene : public testing::TestWithParam<std::size_t> {
  protected:
    const FilmShot& shot() const { return FilmShots()[GetParam()]; }
    const std::vector<ParallaxRecord>& scene() const { return sceneOf(GetParam()); }
};

std::vector<std::size_t> slots() {
    std::vector<std::size_t> all;
    for (std::size_t i = 0; i < FilmShots().size(); ++i) all.push_back(i);
    return all;
}

}  // namespace

TEST(Film, EveryDescriptionIsMadeIntoAScene) {
    EXPECT_EQ(film().fault, "");
    EXPECT_EQ(film().scenes.size(), FilmShots().size());
    EXPECT_GE(FilmShots().size(), 12u);
}

TEST(Film, ShotsAreWholeBarsAndFillThirtyTwoSeconds) {
    float seconds = 0;
    for (const FilmShot& shot : FilmShots()) {
        EXPECT_EQ(std::fmod(shot.seconds, 2.0f), 0.0f) << shot.name;
        seconds += shot.seconds;
    }
    EXPECT_EQ(seconds, 32.0f);
}

TEST(Film, OnlyTheTwelfthShotDodges) {
    for (std::size_t slot = 0; slot < FilmShots().size(); ++slot) {
        const auto& scene = sceneOf(slot);
        const auto dodges = std::count_if(scene.begin(), scene.end(), [](const auto& record) {
            return record.mode == kDodgeMode;
        });
        EXPECT_EQ(dodges, slot == kDodgeSlot ? 1 : 0) << FilmShots()[slot].name;
    }
}

TEST(Film, DodgedLightCoversTheFrameAndChanges) {
    for (const ParallaxRecord& record : sceneOf(kDodgeSlot)) {
        if (record.mode != kDodgeMode) continue;
        float low = 1, high = 0;
        for (const ParallaxKey& key : record.keys) {
            // The glow mask of the frame is read through the layer's own rectangle.
            EXPECT_EQ(key.left, 0);
            EXPECT_EQ(key.top, 0);
            EXPECT_EQ(key.right, kFrameWidth);
            EXPECT_EQ(key.bottom, kFrameHeight);
            low = std::min(low, key.opacity);
            high = std::max(high, key.opacity);
        }
        EXPECT_GT(high - low, 0.5f);
    }
}

TEST(Film, SignsGlowInMostShotsAndLivePicturesRunOnScreensInSome) {
    int neon = 0, masks = 0;
    for (const auto& scene : film().scenes) {
        neon += std::any_of(scene.begin(), scene.end(),
                            [](const auto& r) { return contains(r.name, "Neon"); });
        masks += std::any_of(scene.begin(), scene.end(),
                             [](const auto& r) { return IsParallaxMask(r.name); });
    }
    EXPECT_GE(neon, 10);
    EXPECT_GE(masks, 4);
}

TEST(Film, SharesItsPicturesBetweenShots) {
    std::map<std::string, int> uses;
    for (const auto& scene : film().scenes) {
        std::set<std::string> names;
        for (const ParallaxRecord& record : scene) names.insert(pictureOf(record));
        for (const std::string& name : names) ++uses[name];
    }
    const auto shared =
        std::count_if(uses.begin(), uses.end(), [](const auto& use) { return use.second > 1; });
    EXPECT_GE(shared, 15);
    EXPECT_LE(uses.size(), 160u);
}

TEST(Film, EveryPaintedPictureOfTheFilmIsUsed) {
    std::set<std::string> used;
    for (const auto& scene : film().scenes) {
        for (const ParallaxRecord& record : scene) used.insert(pictureOf(record));
    }
    for (const std::string& name : PictureNames()) {
        if (!name.starts_with("film/")) continue;
        EXPECT_TRUE(used.contains(name)) << name;
    }
}

TEST(Film, SaysWhichDescriptionIsMissing) {
    const TempFolder folder;
    std::string fault;
    EXPECT_FALSE(MakeFilmScenes(folder.path() / "nothing", folder.path() / "out", fault));
    EXPECT_TRUE(contains(fault, FilmShots()[0].name)) << fault;
}

TEST_P(FilmScene, HasTenToFortyLayers) {
    EXPECT_GE(scene().size(), 10u);
    EXPECT_LE(scene().size(), 40u);
}

TEST_P(FilmScene, NamesOnlyPicturesThatAreThere) {
    ASSERT_FALSE(demoFolder().empty()) << "VORN_DEMO names no folder";
    const Stage stage(GetParam());
    EXPECT_TRUE(stage.faults.empty()) << stage.faults.front();
    const std::vector<std::string> painted = PictureNames();
    for (const ParallaxRecord& record : scene()) {
        EXPECT_NE(std::find(painted.begin(), painted.end(), pictureOf(record)), painted.end())
            << record.name;
    }
}

TEST_P(FilmScene, MovesWithAKeyForEachSixtieth) {
    const auto frames = static_cast<std::size_t>(std::lround(shot().seconds * 60)) + 1;
    std::size_t moving = 0;
    for (const ParallaxRecord& record : scene()) {
        if (record.keys.size() == 1) continue;
        ++moving;
        ASSERT_EQ(record.keys.size(), frames) << record.name;
        for (std::size_t i = 0; i < frames; ++i) {
            EXPECT_EQ(record.keys[i].frame, i) << record.name;
            EXPECT_FLOAT_EQ(record.keys[i].time, static_cast<float>(i) / 60.0f) << record.name;
        }
    }
    // The camera moves, and so do all layers that have a depth.
    EXPECT_GE(moving, 8u);
}

TEST_P(FilmScene, IsSeenByACameraThatMovesThroughManyDepths) {
    const fs::path source =
        fs::path(VORN_SOURCE_DIR) / "demo" / "film" / (std::string(shot().name) + ".json");
    std::ifstream stream(source, std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(stream)), {});
    SceneDescription description;
    std::string fault;
    ASSERT_TRUE(ParseSceneJson(text, description, fault)) << fault;
    ASSERT_GE(description.camera.size(), 2u);
    const SceneCameraKey& from = description.camera.front();
    const SceneCameraKey& to = description.camera.back();
    EXPECT_EQ(from.time, 0);
    EXPECT_EQ(to.time, shot().seconds);
    EXPECT_GE(std::fabs(to.z - from.z), 0.1);
    EXPECT_TRUE(to.x != from.x || to.y != from.y);
    std::set<double> depths;
    for (const SceneLayer& layer : description.layers) depths.insert(layer.depth);
    EXPECT_GE(depths.size(), 8u);
}

TEST_P(FilmScene, LeavesNoPointOfTheFrameBare) {
    ASSERT_FALSE(demoFolder().empty()) << "VORN_DEMO names no folder";
    const Stage stage(GetParam());
    for (float seconds = 0; seconds <= shot().seconds; seconds += 0.25f) {
        const std::vector<Seen> layers = stage.at(seconds);
        for (float y = 4; y < kFrameHeight; y += 67) {
            for (float x = 4; x < kFrameWidth; x += 68) {
                // Dithered opaque paint is within a level of opaque.
                ASSERT_GT(hiddenAt(layers, layers.size(), x, y), 0.99f)
                    << seconds << " s at " << x << ", " << y;
            }
        }
    }
}

TEST_P(FilmScene, ShowsNoBorderOfAPicture) {
    ASSERT_FALSE(demoFolder().empty()) << "VORN_DEMO names no folder";
    const Stage stage(GetParam());
    std::set<std::string> borders;
    for (float seconds = 0; seconds <= shot().seconds; seconds += 0.25f) {
        const std::vector<Seen> layers = stage.at(seconds);
        for (std::size_t i = 0; i < layers.size(); ++i) {
            if (endsInAStraightEdge(layers[i].record->name)) continue;
            // A few points may be a thing that is cut off on purpose, such as the foot of a post.
            if (visibleBorder(layers, i) > 0.02f) borders.insert(layers[i].record->name);
        }
    }
    for (const std::string& name : borders) ADD_FAILURE() << name;
}

INSTANTIATE_TEST_SUITE_P(Shots, FilmScene, testing::ValuesIn(slots()), [](const auto& slot) {
    std::string name = FilmShots()[slot.param].name;
    std::erase(name, '_');
    return name;
});
