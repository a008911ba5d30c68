#include "support/picture_files.h"

// clang-format off
#include <cstdio>
#include <jpeglib.h>
// clang-format on
#include <png.h>
#include <tiffio.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>

#include "support/temp_folder.h"

namespace {

void Append(FileContent& file, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) file.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

void AppendPng(png_structp png, png_bytep from, std::size_t count) {
    FileContent& file = *static_cast<FileContent*>(png_get_io_ptr(png));
    file.insert(file.end(), from, from + count);
}

std::vector<std::uint8_t> PlaneOf(const std::vector<std::uint8_t>& pixels, std::size_t channels,
                                  std::size_t channel) {
    std::vector<std::uint8_t> plane;
    for (std::size_t i = channel; i < pixels.size(); i += channels) plane.push_back(pixels[i]);
    return plane;
}

constexpr std::uint32_t kTileSide = 16;

// Writes one plane of `samples` bytes for each pixel.
void WritePlane(TIFF* tiff, std::uint32_t width, std::uint32_t height, std::uint32_t samples,
                std::uint16_t plane, bool tiled, const std::vector<std::uint8_t>& pixels) {
    if (!tiled) {
        for (std::uint32_t y = 0; y < height; ++y) {
            std::vector<std::uint8_t> row(pixels.begin() + y * width * samples,
                                          pixels.begin() + (y + 1) * width * samples);
            TIFFWriteScanline(tiff, row.data(), y, plane);
        }
        return;
    }
    for (std::uint32_t y = 0; y < height; y += kTileSide) {
        for (std::uint32_t x = 0; x < width; x += kTileSide) {
            std::vector<std::uint8_t> tile(kTileSide * kTileSide * samples);
            for (std::uint32_t row = 0; row < std::min(kTileSide, height - y); ++row) {
                const std::uint32_t bytes = std::min(kTileSide, width - x) * samples;
                std::copy_n(pixels.begin() + ((y + row) * width + x) * samples, bytes,
                            tile.begin() + row * kTileSide * samples);
            }
            TIFFWriteTile(tiff, tile.data(), x, y, 0, plane);
        }
    }
}

}  // namespace

std::vector<std::uint8_t> NoisePixels(std::uint32_t width, std::uint32_t height,
                                      std::uint32_t channels, std::uint32_t seed) {
    std::vector<std::uint8_t> pixels(std::size_t{width} * height * channels);
    for (std::uint8_t& value : pixels) {
        seed = seed * 1664525 + 1013904223;
        value = static_cast<std::uint8_t>(seed >> 24);
    }
    return pixels;
}

std::vector<std::uint8_t> SmoothPixels(std::uint32_t width, std::uint32_t height,
                                       std::uint32_t channels) {
    std::vector<std::uint8_t> pixels;
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            for (std::uint32_t c = 0; c < channels; ++c) {
                const double wave = std::sin(x * 0.011 * (c + 1)) + std::cos(y * 0.017 + c);
                pixels.push_back(static_cast<std::uint8_t>(128 + 60 * wave));
            }
        }
    }
    return pixels;
}

FileContent MakePng(std::uint32_t width, std::uint32_t height, const PngKind& kind,
                    const std::vector<std::uint8_t>& rows) {
    FileContent file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &file, AppendPng, [](png_structp) {});
    png_set_IHDR(png, info, width, height, kind.bits, kind.colorType,
                 kind.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (kind.colorType == PNG_COLOR_TYPE_PALETTE) {
        std::vector<png_color> palette(256, png_color{1, 2, 3});
        png_set_PLTE(png, info, palette.data(), 1 << kind.bits);
    }
    if (kind.transparentColor) {
        png_color_16 color = {};
        color.red = color.green = color.blue = 7;
        png_set_tRNS(png, info, nullptr, 0, &color);
    }
    if (kind.filters != 0) png_set_filter(png, PNG_FILTER_TYPE_BASE, kind.filters);
    if (kind.dataChunk != 0) png_set_compression_buffer_size(png, kind.dataChunk);
    png_write_info(png, info);
    std::vector<png_bytep> pointers;
    for (std::uint32_t y = 0; y < height; ++y) {
        pointers.push_back(const_cast<png_bytep>(rows.data()) + y * (rows.size() / height));
    }
    png_write_image(png, pointers.data());
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return file;
}

std::uint32_t PngCheckSum(std::span<const std::uint8_t> bytes) {
    std::uint32_t sum = 0xFFFFFFFF;
    for (const std::uint8_t byte : bytes) {
        sum ^= byte;
        for (int bit = 0; bit < 8; ++bit) sum = sum >> 1 ^ ((sum & 1) != 0 ? 0xEDB88320 : 0);
    }
    return ~sum;
}

FileContent MakeJpeg(std::uint32_t width, std::uint32_t height, int channels,
                     const std::vector<std::uint8_t>& pixels, bool progressive) {
    jpeg_compress_struct encoder = {};
    jpeg_error_mgr errors = {};
    encoder.err = jpeg_std_error(&errors);
    jpeg_create_compress(&encoder);
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&encoder, &bytes, &size);
    encoder.image_width = width;
    encoder.image_height = height;
    encoder.input_components = channels;
    encoder.in_color_space = channels == 1 ? JCS_GRAYSCALE : channels == 3 ? JCS_RGB : JCS_CMYK;
    jpeg_set_defaults(&encoder);
    jpeg_set_quality(&encoder, 95, TRUE);
    if (progressive) jpeg_simple_progression(&encoder);
    jpeg_start_compress(&encoder, TRUE);
    const std::size_t stride = pixels.size() / height;
    while (encoder.next_scanline < height) {
        auto* row = const_cast<JSAMPROW>(pixels.data()) + encoder.next_scanline * stride;
        jpeg_write_scanlines(&encoder, &row, 1);
    }
    jpeg_finish_compress(&encoder);
    jpeg_destroy_compress(&encoder);
    FileContent file(bytes, bytes + size);
    std::free(bytes);
    return file;
}

FileContent MakeTiff(std::uint32_t width, std::uint32_t height, const TiffFields& fields,
                     const std::vector<std::uint8_t>& pixels) {
    const TempFolder folder;
    TIFF* const tiff = TIFFOpen(folder.file("made.tif").c_str(), "w");
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, fields.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, fields.samples);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, fields.photometric);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, fields.compression);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG,
                 fields.planar ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
    if (fields.photometric == PHOTOMETRIC_RGB && fields.samples == 4) {
        const std::uint16_t extra = static_cast<std::uint16_t>(fields.extraSample);
        TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &extra);
    }
    if (fields.photometric == PHOTOMETRIC_PALETTE) {
        std::vector<std::uint16_t> map(256, 9);
        TIFFSetField(tiff, TIFFTAG_COLORMAP, map.data(), map.data(), map.data());
    }
    if (fields.tiled) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, kTileSide);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, kTileSide);
    } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 5);
    }
    const auto samples = static_cast<std::uint32_t>(fields.samples);
    if (fields.planar) {
        for (std::uint16_t plane = 0; plane < samples; ++plane) {
            WritePlane(tiff, width, height, 1, plane, fields.tiled,
                       PlaneOf(pixels, samples, plane));
        }
    } else {
        const auto bytes = samples * static_cast<std::uint32_t>(fields.bits) / 8;
        WritePlane(tiff, width, height, bytes, 0, fields.tiled, pixels);
    }
    TIFFClose(tiff);
    const std::string content = folder.read("made.tif");
    return {content.begin(), content.end()};
}

FileContent MakeBmp(std::uint32_t width, std::uint32_t height, const BmpFields& fields,
                    const std::vector<std::uint8_t>& pixels) {
    const std::uint32_t channels = fields.bits / 8;
    const std::uint32_t stride = (width * channels + 3) / 4 * 4;
    const std::uint32_t pixelsAt = 14 + fields.headerSize;
    FileContent file = {'B', 'M'};
    Append(file, pixelsAt + stride * height, 4);
    Append(file, 0, 4);
    Append(file, pixelsAt, 4);
    Append(file, fields.headerSize, 4);
    const int sizeBytes = fields.headerSize == 12 ? 2 : 4;
    Append(file, width, sizeBytes);
    Append(file, fields.topRowFirst ? 0 - height : height, sizeBytes);
    Append(file, 1, 2);
    Append(file, fields.bits, 2);
    if (fields.headerSize >= 40) {
        Append(file, fields.compression, 4);
        for (int i = 0; i < 5; ++i) Append(file, 0, 4);
    }
    for (std::size_t i = 0; i < 4 && file.size() < pixelsAt; ++i) Append(file, fields.masks[i], 4);
    file.resize(pixelsAt + stride * height);
    for (std::uint32_t y = 0; y < height; ++y) {
        const std::uint32_t row = fields.topRowFirst ? y : height - 1 - y;
        for (std::uint32_t x = 0; x < width; ++x) {
            for (std::uint32_t c = 0; c < channels; ++c) {
                const auto byte = static_cast<std::uint32_t>(std::countr_zero(fields.masks[c]) / 8);
                file[pixelsAt + row * stride + x * channels + byte] =
                    pixels[(y * width + x) * channels + c];
            }
        }
    }
    return file;
}
