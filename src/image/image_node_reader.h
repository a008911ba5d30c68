// Reads one picture file and offers it, with a texture matrix that fits it into the frame. The file
// is read again when its name or one of the two flags changes, within process. Main thread, with
// the OpenGL context.
#pragma once

#include <cstdint>
#include <future>
#include <memory>
#include <string>

#include "core/image_node.h"

class ImageNode_Reader : public ImageNode {
  public:
    enum ScaleMode : std::int32_t { kFit = 0, kReference1080p = 1, kStretch = 2 };

    ImageNode_Reader(Engine* owner, const std::string& nodeId);

    bool canConnect(int port, const Node* source) const override;
    void prepareLoad(TaskPool& pool) override;
    bool process() override;

    float position[2];
    std::int32_t scaleMode;
    float scaleFac;
    bool repeat;
    bool lastRepeat = false;
    bool preMultiply;
    bool lastPreMultiply = false;
    std::string filename;
    std::string lastFilename;

  private:
    // A picture as it comes from its file, and what it was asked for with.
    struct PictureFile {
        std::string name;
        bool preMultiplied = false;
        std::uint32_t width = 0, height = 0, channels = 0;
        std::unique_ptr<std::uint8_t[]> pixels;  // null where there is no picture
        std::string reason;                      // why there is none
    };
    static PictureFile readPicture(const std::string& name, bool preMultiply);
    bool needsLoad() const;
    PictureFile takePicture();
    void load();

    std::future<PictureFile> ahead_;  // being decoded on another thread, for the load pass
};

// The fit of a picture of `width` by `height` into the 16:9 frame, diagonal in texture space. An
// exactly square picture in FIT mode is multiplied by the factor where all others are divided by
// it, and STRETCH ignores it: both are wanted.
Mat4 ReaderFitMatrix(std::int32_t scaleMode, int width, int height, float scaleFac);
