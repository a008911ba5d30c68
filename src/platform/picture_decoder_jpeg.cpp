// clang-format off
#include <cstdio>
#include <jpeglib.h>
#include <jerror.h>
// clang-format on

#include <algorithm>
#include <csetjmp>

#include "platform/picture_formats.h"

namespace {

// Every block of 64 pixels takes at least one bit of the file.
constexpr std::uint64_t kPixelsOfAByte = 512;
// More scans than any encoder makes: a file that has them is made to be slow.
constexpr int kMostScans = 200;

// All that must be released lives here, outside of the functions that libjpeg jumps out of.
struct JpegJob {
    jpeg_decompress_struct decoder = {};
    jpeg_error_mgr errors = {};
    jpeg_progress_mgr progress = {};
    std::jmp_buf onFailure = {};
    FileBytes file;
    DecodedPicture& picture;
    std::string& reason;
    char failure[JMSG_LENGTH_MAX] = {};

    ~JpegJob() { jpeg_destroy_decompress(&decoder); }
};

[[noreturn]] void Fail(j_common_ptr decoder) {
    JpegJob& job = *static_cast<JpegJob*>(decoder->client_data);
    decoder->err->format_message(decoder, job.failure);
    std::longjmp(job.onFailure, 1);
}

// Lost data is a failure; a decoder's remarks on what it could still make out are not.
void OnMessage(j_common_ptr decoder, int level) {
    if (level != -1) return;
    switch (decoder->err->msg_code) {
        case JWRN_HIT_MARKER:
        case JWRN_HUFF_BAD_CODE:
        case JWRN_JPEG_EOF:
        case JWRN_MUST_RESYNC:
            Fail(decoder);
        default:
            break;
    }
}

void OnProgress(j_common_ptr decoder) {
    JpegJob& job = *static_cast<JpegJob*>(decoder->client_data);
    if (job.decoder.input_scan_number > kMostScans) ERREXIT(decoder, JERR_BAD_PROGRESSION);
}

bool TakenKind(const jpeg_decompress_struct& decoder) {
    return decoder.num_components == 3 && decoder.data_precision == 8 && !decoder.arith_code &&
           (decoder.jpeg_color_space == JCS_YCbCr || decoder.jpeg_color_space == JCS_RGB);
}

void ReadRows(JpegJob& job) {
    const std::size_t stride = std::size_t{job.picture.width} * job.picture.channels;
    constexpr JDIMENSION kRowsAtOnce = 16;
    JSAMPROW rows[kRowsAtOnce];
    while (job.decoder.output_scanline < job.decoder.output_height) {
        const JDIMENSION first = job.decoder.output_scanline;
        const JDIMENSION count = std::min(kRowsAtOnce, job.decoder.output_height - first);
        for (JDIMENSION i = 0; i < count; ++i) {
            rows[i] = job.picture.pixels.get() + (first + i) * stride;
        }
        jpeg_read_scanlines(&job.decoder, rows, count);
    }
}

bool Run(JpegJob& job) {
    if (setjmp(job.onFailure) != 0) {
        job.reason = job.failure;
        return false;
    }
    jpeg_create_decompress(&job.decoder);
    job.decoder.client_data = &job;
    job.decoder.progress = &job.progress;
    jpeg_mem_src(&job.decoder, job.file.data(), static_cast<unsigned long>(job.file.size()));
    jpeg_read_header(&job.decoder, TRUE);
    if (!TakenKind(job.decoder)) {
        job.reason = "only 8-bit colour JPEG files are taken";
        return false;
    }
    constexpr std::uint32_t kChannels = 3;
    job.decoder.out_color_space = JCS_RGB;
    if (!AllocatePicture(job.decoder.image_width, job.decoder.image_height, kChannels,
                         job.file.size() * kPixelsOfAByte * kChannels, job.picture, job.reason)) {
        return false;
    }
    jpeg_start_decompress(&job.decoder);
    ReadRows(job);
    jpeg_finish_decompress(&job.decoder);
    return true;
}

}  // namespace

bool DecodeJpeg(FileBytes file, DecodedPicture& picture, std::string& reason) {
    JpegJob job{.file = file, .picture = picture, .reason = reason};
    job.decoder.err = jpeg_std_error(&job.errors);
    job.decoder.client_data = &job;  // creating the decoder can fail, too
    job.errors.error_exit = Fail;
    job.errors.emit_message = OnMessage;
    job.progress.progress_monitor = OnProgress;
    return Run(job);
}
