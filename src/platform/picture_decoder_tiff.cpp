#include <tiffio.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "platform/picture_formats.h"

namespace {

// The best that the compressions below can do (LZW on one repeated byte), rounded up.
constexpr std::uint64_t kBestRatio = 1400;
constexpr std::uint64_t kLibraryOverhead = 1 << 20;

// A file in memory with libtiff's reading position.
struct TiffSource {
    FileBytes file;
    std::uint64_t at = 0;
};

tmsize_t ReadBytes(thandle_t handle, void* to, tmsize_t count) {
    TiffSource& source = *static_cast<TiffSource*>(handle);
    if (count <= 0 || source.at >= source.file.size()) return 0;
    const std::uint64_t left = source.file.size() - source.at;
    const std::size_t taken = std::min(left, static_cast<std::uint64_t>(count));
    std::memcpy(to, source.file.data() + source.at, taken);
    source.at += taken;
    return static_cast<tmsize_t>(taken);
}

tmsize_t WriteNothing(thandle_t, void*, tmsize_t) {
    return 0;
}

toff_t Seek(thandle_t handle, toff_t offset, int origin) {
    TiffSource& source = *static_cast<TiffSource*>(handle);
    if (origin == SEEK_CUR) offset += source.at;
    if (origin == SEEK_END) offset += source.file.size();
    source.at = offset;
    return offset;
}

int Close(thandle_t) {
    return 0;
}
toff_t FileSize(thandle_t handle) {
    return static_cast<TiffSource*>(handle)->file.size();
}

int IgnoreMessage(TIFF*, void*, const char*, const char*, va_list) {
    return 1;
}

struct TiffCloser {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using TiffHandle = std::unique_ptr<TIFF, TiffCloser>;

TiffHandle OpenTiff(TiffSource& source) {
    const std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions*)> options(
        TIFFOpenOptionsAlloc(), TIFFOpenOptionsFree);
    if (!options) return nullptr;
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), IgnoreMessage, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), IgnoreMessage, nullptr);
    const std::uint64_t most = source.file.size() * kBestRatio + kLibraryOverhead;
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), static_cast<tmsize_t>(most));
    // "m": never map the file; it is in memory already.
    return TiffHandle(TIFFClientOpenExt("picture", "rm", &source, ReadBytes, WriteNothing, Seek,
                                        Close, FileSize, nullptr, nullptr, options.get()));
}

// The fields that tell the kind of picture; a field that is missing has libtiff's default.
struct TiffKind {
    std::uint32_t width = 0, height = 0;
    std::uint16_t bits = 1, samples = 1, photometric = 0xFFFF, planes = PLANARCONFIG_CONTIG;
    std::uint16_t format = SAMPLEFORMAT_UINT, compression = COMPRESSION_NONE;
    std::uint16_t extra = 0;  // what the fourth sample is
};

TiffKind ReadKind(TIFF* tiff) {
    TiffKind kind;
    TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &kind.width);
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &kind.height);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_BITSPERSAMPLE, &kind.bits);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLESPERPIXEL, &kind.samples);
    TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &kind.photometric);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_PLANARCONFIG, &kind.planes);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLEFORMAT, &kind.format);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_COMPRESSION, &kind.compression);
    std::uint16_t extraCount = 0;
    std::uint16_t* extras = nullptr;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &extraCount, &extras);
    if (extraCount == 1 && extras != nullptr) kind.extra = extras[0];
    return kind;
}

bool TakenKind(const TiffKind& kind, std::string& reason) {
    const bool rgb = kind.samples == 3;
    const bool rgba = kind.samples == 4 && kind.extra == EXTRASAMPLE_UNASSALPHA;
    if (kind.photometric != PHOTOMETRIC_RGB || kind.bits != 8 || !(rgb || rgba) ||
        kind.format != SAMPLEFORMAT_UINT) {
        reason = "only 8-bit RGB and RGBA TIFF files are taken";
        return false;
    }
    switch (kind.compression) {
        case COMPRESSION_NONE:
        case COMPRESSION_PACKBITS:
        case COMPRESSION_LZW:
        case COMPRESSION_DEFLATE:
        case COMPRESSION_ADOBE_DEFLATE:
            return true;
        default:
            reason = "the TIFF file's compression is not taken";
            return false;
    }
}

// Copies `width` by `height` pixels of a block with `samples` bytes for each, whose rows have
// `blockWidth` pixels, to pixel (x, y), beginning with channel `channel`.
struct BlockPlace {
    std::uint32_t x = 0, y = 0, width = 0, height = 0, blockWidth = 0;
    std::uint32_t samples = 0, channel = 0;
};
void CopyBlock(const std::uint8_t* block, const BlockPlace& place, DecodedPicture& picture) {
    for (std::uint32_t row = 0; row < place.height; ++row) {
        const std::uint8_t* from = block + std::size_t{row} * place.blockWidth * place.samples;
        std::size_t pixel = (std::size_t{place.y} + row) * picture.width + place.x;
        std::uint8_t* to = picture.pixels.get() + pixel * picture.channels + place.channel;
        if (place.samples == picture.channels) {
            std::memcpy(to, from, std::size_t{place.width} * place.samples);
            continue;
        }
        for (std::uint32_t i = 0; i < place.width; ++i) {
            *to = *from++;
            to += picture.channels;
        }
    }
}

// Reads all blocks (strips, or tiles) of one plane. `samples`: bytes of a pixel in the plane.
class PlaneReader {
  public:
    PlaneReader(TIFF* tiff, std::uint32_t samples, DecodedPicture& picture)
        : tiff_(tiff), samples_(samples), picture_(picture) {}

    // Takes the memory for one block; false when the file cannot hold all the plane's blocks.
    bool prepare(std::uint64_t mostBytes) {
        tiled_ = TIFFIsTiled(tiff_) != 0;
        blockWidth_ = picture_.width;
        blockHeight_ = picture_.height;
        if (tiled_) {
            if (!TIFFGetField(tiff_, TIFFTAG_TILEWIDTH, &blockWidth_)) return false;
            if (!TIFFGetField(tiff_, TIFFTAG_TILELENGTH, &blockHeight_)) return false;
        } else {
            std::uint32_t rows = 0;
            TIFFGetFieldDefaulted(tiff_, TIFFTAG_ROWSPERSTRIP, &rows);
            blockHeight_ = std::min(blockHeight_, rows);
        }
        if (blockWidth_ == 0 || blockHeight_ == 0) return false;
        const std::uint64_t pixels = std::uint64_t{blockWidth_} * blockHeight_;
        if (pixels > mostBytes || blockCount() > mostBytes / pixels / samples_) return false;
        const tmsize_t told = tiled_ ? TIFFTileSize(tiff_) : TIFFStripSize(tiff_);
        if (told != static_cast<tmsize_t>(pixels * samples_)) return false;
        block_.resize(pixels * samples_);
        return true;
    }

    // `channel`: the plane's first channel; `sample`: its number for libtiff.
    bool read(std::uint32_t channel, std::uint16_t sample) {
        for (std::uint32_t y = 0; y < picture_.height; y += blockHeight_) {
            for (std::uint32_t x = 0; x < picture_.width; x += blockWidth_) {
                const BlockPlace place{.x = x,
                                       .y = y,
                                       .width = std::min(blockWidth_, picture_.width - x),
                                       .height = std::min(blockHeight_, picture_.height - y),
                                       .blockWidth = blockWidth_,
                                       .samples = samples_,
                                       .channel = channel};
                if (!readBlock(place, sample)) return false;
                CopyBlock(block_.data(), place, picture_);
            }
        }
        return true;
    }

  private:
    // Tiles are stored whole where they stick out of the picture; of strips only the last is short.
    std::uint64_t blockCount() const {
        const std::uint64_t across = (picture_.width + blockWidth_ - 1) / blockWidth_;
        const std::uint64_t down = picture_.height / blockHeight_;
        const bool rest = tiled_ && picture_.height % blockHeight_ != 0;
        return across * (rest ? down + 1 : down);
    }

    bool readBlock(const BlockPlace& place, std::uint16_t sample) {
        // The last strip holds only the rows that are left; tiles are always whole.
        const std::uint32_t rows = tiled_ ? blockHeight_ : place.height;
        const auto size = static_cast<tmsize_t>(std::uint64_t{blockWidth_} * rows * samples_);
        if (tiled_) {
            const std::uint32_t tile = TIFFComputeTile(tiff_, place.x, place.y, 0, sample);
            return TIFFReadEncodedTile(tiff_, tile, block_.data(), size) == size;
        }
        const std::uint32_t strip = TIFFComputeStrip(tiff_, place.y, sample);
        return TIFFReadEncodedStrip(tiff_, strip, block_.data(), size) == size;
    }

    TIFF* tiff_;
    std::uint32_t samples_;
    DecodedPicture& picture_;
    bool tiled_ = false;
    std::uint32_t blockWidth_ = 0, blockHeight_ = 0;
    std::vector<std::uint8_t> block_;
};

bool ReadPixels(TIFF* tiff, const TiffKind& kind, std::uint64_t mostBytes,
                DecodedPicture& picture) {
    const bool planar = kind.planes == PLANARCONFIG_SEPARATE;
    PlaneReader reader(tiff, planar ? 1 : kind.samples, picture);
    if (!reader.prepare(mostBytes)) return false;
    const std::uint16_t planes = planar ? kind.samples : 1;
    for (std::uint16_t plane = 0; plane < planes; ++plane) {
        if (!reader.read(plane, plane)) return false;
    }
    return true;
}

}  // namespace

bool DecodeTiff(FileBytes file, DecodedPicture& picture, std::string& reason) {
    TiffSource source{.file = file};
    const TiffHandle tiff = OpenTiff(source);
    if (!tiff) {
        reason = "the TIFF data is broken";
        return false;
    }
    const TiffKind kind = ReadKind(tiff.get());
    if (!TakenKind(kind, reason)) return false;
    const std::uint64_t ratio = kind.compression == COMPRESSION_NONE ? 1 : kBestRatio;
    const std::uint64_t mostBytes = file.size() * ratio;
    if (!AllocatePicture(kind.width, kind.height, kind.samples, mostBytes, picture, reason)) {
        return false;
    }
    if (!ReadPixels(tiff.get(), kind, mostBytes, picture)) {
        reason = "the TIFF data is broken";
        return false;
    }
    return true;
}
