// Loading of the scenes and their pictures.
#include <GL/glew.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "core/engine.h"
#include "gpu/gl_mem_texture.h"
#include "image/image_node_2d_parallax_renderer.h"
#include "platform/debug_output.h"
#include "platform/files.h"
#include "platform/task_pool.h"

namespace {

// Hundreds of layers with minutes of keys stay far below it.
constexpr std::uint64_t kMaxSceneBytes = 256u << 20;
// Pictures of the screen's size take 8 MB each while they wait. Many nodes may begin ahead of the
// load; in it, every thread has one to work on and one that waits.
constexpr std::size_t kPicturesBegunAhead = 8;
constexpr std::size_t kPicturesForEachThread = 2;

bool Contains(std::string_view name, std::string_view part) {
    return name.find(part) != std::string_view::npos;
}

// The file name of a layer's picture, which carries its flags.
std::string PictureName(const std::string& layerName) {
    return Contains(layerName, "Solid") ? "black.png" : layerName;
}

std::string GraphicsPath(const std::string& name) {
    return ".\\Graphics\\" + name;
}

std::shared_ptr<GL_Image> Upload(const PictureQueue::Picture& picture) {
    return std::make_shared<GL_MemTexture>(
        static_cast<int>(picture.width), static_cast<int>(picture.height),
        picture.channels == 3 ? GL_RGB : GL_RGBA, GL_CLAMP_TO_EDGE, GL_CLAMP_TO_EDGE,
        picture.pixels.get());
}

}  // namespace

bool IsParallaxMask(std::string_view name) {
    // The two that begin with "Scene_" are single pictures.
    constexpr std::string_view kMasks[] = {
        "Mask-Screen",  "screens-mask", "screen-mask",
        "Screen-Masks", "Screen-masks", "Scene_021_0008_Background",
        "Screen-Mask",  "Screen Mask",  "Scene_025_0005_Glow-green.png"};
    return std::any_of(std::begin(kMasks), std::end(kMasks),
                       [&](std::string_view mask) { return Contains(name, mask); });
}

ImageNode_2DParallaxRenderer::LoadPlan ImageNode_2DParallaxRenderer::makePlan() const {
    LoadPlan plan;
    std::set<std::string> paths;
    std::vector<PictureQueue::Wanted> wanted;
    for (std::size_t slot = 0; slot < kScenes; ++slot) {
        if (scnFiles[slot] == loadedFiles[slot]) continue;
        SceneFile& file = plan.files.emplace_back();
        file.slot = slot;
        file.path = scnFiles[slot];
        if (file.path.empty()) continue;
        const auto bytes = ReadWholeFile(file.path, kMaxSceneBytes);
        if (!bytes) continue;
        file.opened = true;
        file.records = ReadParallaxScene(*bytes, file.fault);
        std::erase_if(file.records,
                      [](const ParallaxRecord& record) { return record.keys.empty(); });
        for (ParallaxRecord& record : file.records) {
            record.name = PictureName(record.name);
            const std::string path = GraphicsPath(record.name), otherPath = path + "g";
            if (imageCache.contains(path) || !paths.insert(path).second) continue;
            wanted.push_back({path, imageCache.contains(otherPath) ? "" : otherPath});
        }
    }
    plan.pictures = PictureQueue(std::move(wanted));
    return plan;
}

// Was the plan made for just the files that are wanted now?
bool ImageNode_2DParallaxRenderer::isPlanned() const {
    if (plan_ == nullptr) return false;
    auto file = plan_->files.begin();
    for (std::size_t slot = 0; slot < kScenes; ++slot) {
        if (scnFiles[slot] == loadedFiles[slot]) continue;
        if (file == plan_->files.end() || file->slot != slot || file->path != scnFiles[slot]) {
            return false;
        }
        ++file;
    }
    return file == plan_->files.end();
}

std::size_t ImageNode_2DParallaxRenderer::countLoadSteps() {
    plan_ = std::make_unique<LoadPlan>(makePlan());
    return 1 + plan_->pictures.left();
}

void ImageNode_2DParallaxRenderer::prepareLoad(TaskPool& pool) {
    if (!isPlanned()) plan_ = std::make_unique<LoadPlan>(makePlan());
    plan_->pictures.decodeAhead(pool, kPicturesBegunAhead);
}

void ImageNode_2DParallaxRenderer::loadChangedScenes() {
    if (scnFiles == loadedFiles) return;
    if (!isPlanned()) plan_ = std::make_unique<LoadPlan>(makePlan());
    const std::unique_ptr<LoadPlan> plan = std::move(plan_);
    loadPictures(plan->pictures);
    for (SceneFile& file : plan->files) loadScene(file);
}

void ImageNode_2DParallaxRenderer::loadPictures(PictureQueue& pictures) {
    if (pictures.left() == 0) return;
    TaskPool pool;
    while (pictures.left() > 0) {
        pictures.decodeAhead(pool, kPicturesForEachThread * pool.threadCount());
        const PictureQueue::Picture picture = pictures.takeNext();
        if (picture.pixels != nullptr) {
            std::shared_ptr<GL_Image>& place = imageCache[picture.path];
            if (place == nullptr) place = Upload(picture);
        } else if (cachedLayerImage(picture.wanted.path) == nullptr) {
            ReportBadFile(picture.wanted.path, picture.reason);
        }
        engine->loadStepDone();
    }
}

// The picture under a path, or else under the same with a "g" put to it; null where there is none.
std::shared_ptr<GL_Image> ImageNode_2DParallaxRenderer::cachedLayerImage(
    const std::string& path) const {
    for (const std::string& name : {path, path + "g"}) {
        const auto found = imageCache.find(name);
        if (found != imageCache.end()) return found->second;
    }
    return nullptr;
}

void ImageNode_2DParallaxRenderer::loadScene(SceneFile& file) {
    loadedFiles[file.slot] = file.path;
    std::vector<ParallaxLayer>& layers = scenes[file.slot].layers;
    layers.clear();
    if (!file.opened && !file.path.empty()) ReportBadFile(file.path, "cannot be read");
    if (!file.fault.empty()) ReportBadFile(file.path, file.fault);
    for (ParallaxRecord& record : file.records) {
        ParallaxLayer layer;
        layer.image = cachedLayerImage(GraphicsPath(record.name));
        if (layer.image == nullptr) continue;
        if (Contains(record.name, "Neon")) layer.neon = layer.image;
        layer.mask = IsParallaxMask(record.name) ? 1.0f : 0.0f;
        layer.keys = std::move(record.keys);
        layer.mode = record.mode;
        layers.push_back(std::move(layer));
    }
}
