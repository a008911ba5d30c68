// The writers of picture_decoder.h: a file is made in memory first, then put in place in one step.
#include <ImfArray.h>
#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfIO.h>
#include <ImfOutputFile.h>
#include <png.h>

#include <algorithm>
#include <csetjmp>
#include <cstring>
#include <exception>
#include <vector>

#include "platform/files.h"
#include "platform/picture_decoder.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

void AppendPngBytes(png_structp png, png_bytep from, std::size_t count) {
    Bytes& file = *static_cast<Bytes*>(png_get_io_ptr(png));
    file.insert(file.end(), from, from + count);
}

void FlushNothing(png_structp) {}

struct PngWriter {
    png_structp png = nullptr;
    png_infop info = nullptr;
    ~PngWriter() { png_destroy_write_struct(&png, &info); }
};

// No object with a destructor may live in here: libpng jumps out on errors.
bool EncodePng(PngWriter& writer, std::uint32_t width, std::uint32_t height, std::uint32_t channels,
               const std::uint8_t* pixels, Bytes& file) {
    if (setjmp(png_jmpbuf(writer.png)) != 0) return false;
    png_set_write_fn(writer.png, &file, AppendPngBytes, FlushNothing);
    // Sequences of shots should not wait for the last percent of compression.
    constexpr int kQuickLevel = 3;
    png_set_compression_level(writer.png, kQuickLevel);
    png_set_filter(writer.png, PNG_FILTER_TYPE_BASE, PNG_FILTER_SUB);
    png_set_IHDR(writer.png, writer.info, width, height, 8,
                 channels == 3 ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(writer.png, writer.info);
    for (std::size_t y = 0; y < height; ++y) {
        png_write_row(writer.png, pixels + y * width * channels);
    }
    png_write_end(writer.png, nullptr);
    return true;
}

// Collects what OpenEXR writes; it goes back to fill in the table of its lines.
class ExrMemory final : public Imf::OStream {
  public:
    ExrMemory() : Imf::OStream("memory") {}

    void write(const char bytes[], int count) override {
        const std::size_t end = at_ + static_cast<std::size_t>(count);
        if (end > file_.size()) file_.resize(end);
        std::memcpy(file_.data() + at_, bytes, static_cast<std::size_t>(count));
        at_ = end;
    }
    std::uint64_t tellp() override { return at_; }
    void seekp(std::uint64_t position) override { at_ = position; }

    const Bytes& file() const { return file_; }

  private:
    Bytes file_;
    std::size_t at_ = 0;
};

void EncodeExr(ExrMemory& memory, std::uint32_t width, std::uint32_t height, const float* rgba) {
    Imf::Header header(static_cast<int>(width), static_cast<int>(height));
    header.compression() = Imf::ZIP_COMPRESSION;
    Imf::FrameBuffer pixels;
    constexpr const char* kChannels[] = {"R", "G", "B", "A"};
    for (std::size_t i = 0; i < std::size(kChannels); ++i) {
        header.channels().insert(kChannels[i], Imf::Channel(Imf::FLOAT));
        char* const first = reinterpret_cast<char*>(const_cast<float*>(rgba + i));
        constexpr std::size_t kPixelBytes = 4 * sizeof(float);
        pixels.insert(kChannels[i],
                      Imf::Slice(Imf::FLOAT, first, kPixelBytes, kPixelBytes * width));
    }
    Imf::OutputFile file(memory, header);
    file.setFrameBuffer(pixels);
    file.writePixels(static_cast<int>(height));
}

}  // namespace

bool WritePng(std::string_view windowsName, std::uint32_t width, std::uint32_t height,
              std::uint32_t channels, const std::uint8_t* pixels) {
    if (width == 0 || height == 0 || (channels != 3 && channels != 4)) return false;
    Bytes file;
    PngWriter writer;
    writer.png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    if (writer.png != nullptr) writer.info = png_create_info_struct(writer.png);
    if (writer.info == nullptr) return false;
    return EncodePng(writer, width, height, channels, pixels, file) &&
           WriteFileAtomically(windowsName, file);
}

bool WriteExr(std::string_view windowsName, std::uint32_t width, std::uint32_t height,
              const float* rgba) {
    if (width == 0 || height == 0) return false;
    try {
        ExrMemory memory;
        EncodeExr(memory, width, height, rgba);
        return WriteFileAtomically(windowsName, memory.file());
    } catch (const std::exception&) {
        return false;
    }
}
