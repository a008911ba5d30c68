#include "support/exr_files.h"

#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfInputFile.h>

ExrPicture ReadExr(const std::string& path) {
    Imf::InputFile file(path.c_str());
    const auto window = file.header().dataWindow();
    ExrPicture picture;
    picture.width = window.max.x - window.min.x + 1;
    picture.height = window.max.y - window.min.y + 1;
    const std::size_t columns = static_cast<std::size_t>(picture.width);
    std::vector<float> rgba(columns * static_cast<std::size_t>(picture.height) * 4);
    Imf::FrameBuffer frame;
    const char* const names[] = {"R", "G", "B", "A"};
    for (std::size_t i = 0; i < 4; ++i) {
        const Imf::Channel* channel = file.header().channels().findChannel(names[i]);
        if (channel == nullptr || channel->type != Imf::FLOAT) return picture;
        constexpr std::size_t kPixelBytes = 4 * sizeof(float);
        frame.insert(names[i], Imf::Slice(Imf::FLOAT, reinterpret_cast<char*>(rgba.data() + i),
                                          kPixelBytes, kPixelBytes * columns));
    }
    file.setFrameBuffer(frame);
    file.readPixels(window.min.y, window.max.y);
    picture.rgba = std::move(rgba);
    return picture;
}
