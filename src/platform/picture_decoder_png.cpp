#include <png.h>

#include <algorithm>
#include <csetjmp>
#include <cstring>
#include <vector>

#include "platform/picture_formats.h"
#include "platform/stored_png.h"

namespace {

// All that must be released lives here, outside of the functions that libpng jumps out of.
struct PngJob {
    FileBytes file;
    std::optional<StoredPng> stored;  // read in place of the file
    std::size_t at = 0;
    png_structp png = nullptr;
    png_infop info = nullptr;
    std::vector<png_bytep> rows = {};  // only for interlaced pictures
    DecodedPicture& picture;
    std::string& reason;
    char failure[96] = "the PNG data is broken";

    ~PngJob() { png_destroy_read_struct(&png, &info, nullptr); }
};

void ReadBytes(png_structp png, png_bytep to, std::size_t count) {
    PngJob& job = *static_cast<PngJob*>(png_get_io_ptr(png));
    if (job.stored) {
        if (!job.stored->read(to, count)) png_error(png, "the data is cut short");
        return;
    }
    if (count > job.file.size() - job.at) png_error(png, "the file is cut short");
    std::memcpy(to, job.file.data() + job.at, count);
    job.at += count;
}

[[noreturn]] void OnError(png_structp png, png_const_charp text) {
    PngJob& job = *static_cast<PngJob*>(png_get_error_ptr(png));
    std::strncpy(job.failure, text, sizeof job.failure - 1);
    std::longjmp(png_jmpbuf(png), 1);
}

void OnWarning(png_structp, png_const_charp) {}

// What is stored has been compared with the file's sums, and is read in long pieces.
void ReadWithoutSums(png_structp png) {
    png_set_crc_action(png, PNG_CRC_QUIET_USE, PNG_CRC_QUIET_USE);
    png_set_option(png, PNG_IGNORE_ADLER32, PNG_OPTION_ON);
    constexpr png_size_t kPiece = 65536;
    png_set_compression_buffer_size(png, kPiece);
}

// Chunks that say nothing about the pixels: not even looked into.
void SkipOtherChunks(png_structp png) {
    static const png_byte kSkipped[] =
        "bKGD\0cHRM\0eXIf\0gAMA\0hIST\0iCCP\0iTXt\0oFFs\0pCAL\0pHYs\0"
        "sBIT\0sCAL\0sPLT\0sRGB\0sTER\0tEXt\0tIME\0tRNS\0zTXt";
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, nullptr, 0);
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, kSkipped, sizeof kSkipped / 5);
}

// Reads the header and takes the memory. No object with a destructor may live in here across a
// call of libpng.
bool ReadHeader(PngJob& job) {
    png_read_info(job.png, job.info);
    const png_byte colorType = png_get_color_type(job.png, job.info);
    if (png_get_bit_depth(job.png, job.info) != 8 ||
        (colorType != PNG_COLOR_TYPE_RGB && colorType != PNG_COLOR_TYPE_RGBA)) {
        job.reason = "only 8-bit RGB and RGBA PNG files are taken";
        return false;
    }
    if (job.stored) {
        job.stored->giveMemory(job.picture);
        return true;
    }
    return AllocatePicture(png_get_image_width(job.png, job.info),
                           png_get_image_height(job.png, job.info),
                           png_get_channels(job.png, job.info), job.file.size() * kDeflateRatio,
                           job.picture, job.reason);
}

void ReadRows(PngJob& job) {
    const std::size_t stride = std::size_t{job.picture.width} * job.picture.channels;
    std::uint8_t* const pixels = job.picture.pixels.get();
    if (png_get_interlace_type(job.png, job.info) == PNG_INTERLACE_NONE) {
        for (std::size_t y = 0; y < job.picture.height; ++y) {
            png_read_row(job.png, pixels + y * stride, nullptr);
        }
        return;
    }
    job.rows.resize(job.picture.height);
    for (std::size_t y = 0; y < job.rows.size(); ++y) job.rows[y] = pixels + y * stride;
    png_read_image(job.png, job.rows.data());
}

bool Run(PngJob& job) {
    if (setjmp(png_jmpbuf(job.png)) != 0) {
        job.reason = job.failure;
        return false;
    }
    png_set_read_fn(job.png, &job, ReadBytes);
    if (job.stored) ReadWithoutSums(job.png);
    SkipOtherChunks(job.png);
    if (!ReadHeader(job)) return false;
    ReadRows(job);
    png_read_end(job.png, nullptr);
    return true;
}

}  // namespace

bool DecodePng(FileBytes file, DecodedPicture& picture, std::string& reason) {
    PngJob job{.file = file, .stored = StoredPng::from(file), .picture = picture, .reason = reason};
    job.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &job, OnError, OnWarning);
    if (job.png != nullptr) job.info = png_create_info_struct(job.png);
    if (job.info == nullptr) {
        reason = "libpng cannot be used";
        return false;
    }
    return Run(job);
}
