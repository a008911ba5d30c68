#include "image/image_node_reader.h"

#include <GL/glew.h>

#include <cstdint>
#include <memory>

#include "core/engine.h"
#include "gpu/gl_mem_texture.h"
#include "image/read_image_file.h"
#include "platform/debug_output.h"
#include "platform/task_pool.h"

namespace {

constexpr float kFrameAspect = 1.7777778f;

// 1 / x in double precision, rounded to single.
float Reciprocal(float x) {
    return static_cast<float>(1.0 / static_cast<double>(x));
}

}  // namespace

Mat4 ReaderFitMatrix(std::int32_t scaleMode, int width, int height, float scaleFac) {
    Mat4 fit;
    const float s = scaleFac;
    const float ratio = static_cast<float>(width) / static_cast<float>(height);
    fit[10] = 0.0f;
    if (scaleMode == ImageNode_Reader::kFit) {
        if (ratio > 1.0f) {
            fit[0] = 1.0f / s;
            fit[5] = (ratio / kFrameAspect) / s;
        } else if (ratio < 1.0f) {
            fit[0] = Reciprocal(ratio / kFrameAspect) / s;
            fit[5] = 1.0f / s;
        } else {
            fit[0] = s;
            fit[5] = s;
        }
    } else if (scaleMode == ImageNode_Reader::kReference1080p) {
        fit[0] = Reciprocal(static_cast<float>(width) / 1920.0f) / s;
        fit[5] = Reciprocal(static_cast<float>(height) / 1080.0f) / s;
    } else if (scaleMode != ImageNode_Reader::kStretch) {
        fit[10] = 1.0f;  // no such mode: the picture as it stands
    }
    return fit;
}

ImageNode_Reader::ImageNode_Reader(Engine* owner, const std::string& nodeId)
    : ImageNode(owner, nodeId) {
    engine->declareString(this, "Filename", filename, "");
    engine->declareInt(this, "Scale", scaleMode, kFit, {"FIT", "1080p REFERENCE", "STRETCH"});
    engine->declareVec2(this, "Position", position, {0.5f, 0.5f}, true);
    engine->declareFloat(this, "ScaleFac", scaleFac, 0.0001f, 10.0f, 4, 1.0f, true);
    engine->declareBool(this, "Repeat", repeat, false);
    engine->declareBool(this, "PreMultiply", preMultiply, false);
}

bool ImageNode_Reader::canConnect(int, const Node*) const {
    return false;
}

ImageNode_Reader::PictureFile ImageNode_Reader::readPicture(const std::string& name,
                                                            bool preMultiply) {
    PictureFile file;
    file.name = name;
    file.preMultiplied = preMultiply;
    ReadImageFile(name, file.width, file.height, file.channels, file.pixels, preMultiply,
                  &file.reason);
    return file;
}

bool ImageNode_Reader::needsLoad() const {
    return filename != lastFilename || repeat != lastRepeat || preMultiply != lastPreMultiply;
}

void ImageNode_Reader::prepareLoad(TaskPool& pool) {
    if (!needsLoad()) return;
    ahead_ = pool.run([name = filename, flag = preMultiply] { return readPicture(name, flag); });
}

// The picture that was decoded ahead, if it is the one that is wanted now.
ImageNode_Reader::PictureFile ImageNode_Reader::takePicture() {
    if (ahead_.valid()) {
        PictureFile file = ahead_.get();
        if (file.name == filename && file.preMultiplied == preMultiply) return file;
    }
    return readPicture(filename, preMultiply);
}

void ImageNode_Reader::load() {
    lastFilename = filename;
    lastRepeat = repeat;
    lastPreMultiply = preMultiply;
    images[0] = nullptr;

    const PictureFile file = takePicture();
    if (file.pixels == nullptr) {
        if (!file.name.empty()) ReportBadFile(file.name, file.reason);
        return;
    }
    const GLenum wrap = repeat ? GL_REPEAT : GL_CLAMP_TO_BORDER;
    images[0] = std::make_shared<GL_MemTexture>(
        static_cast<int>(file.width), static_cast<int>(file.height),
        file.channels == 3 ? GL_RGB : GL_RGBA, wrap, wrap, file.pixels.get());
}

bool ImageNode_Reader::process() {
    if (needsLoad()) load();
    setError(images[0] == nullptr);

    Mat4 fit;
    if (images[0] != nullptr) {
        fit = ReaderFitMatrix(scaleMode, images[0]->width, images[0]->height, scaleFac);
    }
    Mat4 place;
    Mat4Translation(place, {0.5f - position[0], 0.5f - position[1], 0.0f});
    Mat4Multiply(fit, textureMatrix, place);
    return true;
}
