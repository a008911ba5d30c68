// Which PNG files are read with their data unpacked beforehand, and that they give the same pixels.
#include "platform/stored_png.h"

#include <gtest/gtest.h>
#include <libdeflate.h>
#include <png.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/picture_decoder.h"
#include "support/picture_files.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kWidth = 37;
constexpr std::uint32_t kHeight = 23;

struct Chunk {
    std::string type;
    Bytes data;
};

std::uint32_t NumberAt(const Bytes& bytes, std::size_t at) {
    return std::uint32_t{bytes[at]} << 24 | std::uint32_t{bytes[at + 1]} << 16 |
           std::uint32_t{bytes[at + 2]} << 8 | bytes[at + 3];
}

void Append(Bytes& bytes, std::uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes.push_back(static_cast<std::uint8_t>(number >> shift));
    }
}

std::vector<Chunk> ChunksOf(const FileContent& file) {
    std::vector<Chunk> chunks;
    for (std::size_t at = 8; at < file.size();) {
        const auto type = file.begin() + static_cast<std::ptrdiff_t>(at + 4);
        const auto size = static_cast<std::ptrdiff_t>(NumberAt(file, at));
        chunks.push_back({{type, type + 4}, {type + 4, type + 4 + size}});
        at += 12 + static_cast<std::size_t>(size);
    }
    return chunks;
}

FileContent FileOf(const std::vector<Chunk>& chunks) {
    FileContent file = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    for (const Chunk& chunk : chunks) {
        Append(file, static_cast<std::uint32_t>(chunk.data.size()));
        const std::size_t summed = file.size();
        file.insert(file.end(), chunk.type.begin(), chunk.type.end());
        file.insert(file.end(), chunk.data.begin(), chunk.data.end());
        Append(file, PngCheckSum(std::span(file).subspan(summed)));
    }
    return file;
}

// A file of RGB whose rows, filters' numbers included, are given.
FileContent FileWithRows(const Bytes& rows) {
    Bytes header;
    Append(header, kWidth);
    Append(header, kHeight);
    header.insert(header.end(), {8, 2, 0, 0, 0});
    libdeflate_compressor* const packer = libdeflate_alloc_compressor(6);
    Bytes packed(libdeflate_zlib_compress_bound(packer, rows.size()));
    packed.resize(
        libdeflate_zlib_compress(packer, rows.data(), rows.size(), packed.data(), packed.size()));
    libdeflate_free_compressor(packer);
    return FileOf({{"IHDR", header}, {"IDAT", packed}, {"IEND", {}}});
}

constexpr std::size_t kRowsSize = std::size_t{kHeight} * (3 * kWidth + 1);

FileContent RgbaFile(const PngKind& kind = {.colorType = 6, .dataChunk = 500}) {
    return MakePng(kWidth, kHeight, kind, NoisePixels(kWidth, kHeight, 4));
}

std::vector<Chunk> RgbaChunks() {
    return ChunksOf(RgbaFile());
}

bool IsTaken(const FileContent& file) {
    return StoredPng::from(file).has_value();
}

Bytes Decoded(const FileContent& file) {
    const auto picture = DecodePictureBytes(file.data(), file.size(), nullptr);
    if (!picture) return {};
    const std::uint8_t* const first = picture->pixels.get();
    return {first, first + std::size_t{picture->width} * picture->height * picture->channels};
}

void ExpectTaken(const FileContent& file, const Bytes& pixels) {
    EXPECT_TRUE(IsTaken(file));
    EXPECT_TRUE(Decoded(file) == pixels) << "the pixels differ";
}

void ExpectLeftAndRefused(const FileContent& file) {
    EXPECT_FALSE(IsTaken(file));
    EXPECT_TRUE(Decoded(file).empty());
}

}  // namespace

TEST(StoredPng, GivesThePixelsOfEveryFilterSizeAndLengthOfChunks) {
    // The largest takes several stored blocks.
    constexpr std::uint32_t kSizes[][2] = {{1, 1}, {1, 50}, {70, 1}, {kWidth, kHeight}, {301, 207}};
    for (const auto& [width, height] : kSizes) {
        for (const int colorType : {2, 6}) {
            const auto pixels = NoisePixels(width, height, colorType == 2 ? 3 : 4);
            for (const int filters : {PNG_FILTER_NONE, PNG_FILTER_SUB, PNG_FILTER_UP,
                                      PNG_FILTER_AVG, PNG_FILTER_PAETH, PNG_ALL_FILTERS}) {
                for (const std::uint32_t chunk : {100u, 8192u, 1u << 20}) {
                    SCOPED_TRACE(testing::Message() << width << " x " << height << " kind "
                                                    << colorType << " filters " << filters);
                    const PngKind kind = {
                        .colorType = colorType, .filters = filters, .dataChunk = chunk};
                    ExpectTaken(MakePng(width, height, kind, pixels), pixels);
                }
            }
        }
    }
}

TEST(StoredPng, IsAFileThatEndsWithItsLastChunk) {
    const FileContent file = RgbaFile();
    auto png = StoredPng::from(file);
    ASSERT_TRUE(png);
    // Head with the file's own header, packed data's head, one stored block, sums and "IEND".
    constexpr std::size_t kSize = 33 + 8 + 2 + 5 + kHeight * (4 * kWidth + 1) + 4 + 4 + 12;
    Bytes all(kSize);
    ASSERT_TRUE(png->read(all.data(), 40));
    ASSERT_TRUE(png->read(all.data() + 40, kSize - 40));
    EXPECT_TRUE(std::equal(file.begin(), file.begin() + 33, all.begin()));
    EXPECT_EQ(std::string(all.end() - 8, all.end() - 4), "IEND");
    std::uint8_t more = 0;
    EXPECT_TRUE(png->read(&more, 0));
    EXPECT_FALSE(png->read(&more, 1));
}

TEST(StoredPng, LooksPastChunksThatMayBeLeftOut) {
    const auto pixels = NoisePixels(kWidth, kHeight, 4);
    std::vector<Chunk> chunks = RgbaChunks();
    chunks.insert(chunks.begin() + 1, {"teXt", {1, 2, 3}});
    chunks.insert(chunks.end() - 1, {"tIME", {}});
    ExpectTaken(FileOf(chunks), pixels);
    FileContent longer = RgbaFile();
    longer.insert(longer.end(), {1, 2, 3});
    ExpectTaken(longer, pixels);
}

TEST(StoredPng, LeavesKindsThatAreNotPlain) {
    EXPECT_FALSE(IsTaken(RgbaFile({.colorType = 6, .interlaced = true})));
    const auto one = NoisePixels(kWidth, kHeight, 1);
    EXPECT_FALSE(IsTaken(MakePng(kWidth, kHeight, {.colorType = 3}, one)));
    EXPECT_FALSE(IsTaken(MakePng(kWidth, kHeight, {.colorType = 0}, one)));
    EXPECT_FALSE(IsTaken(
        MakePng(kWidth, kHeight, {.colorType = 6, .bits = 16}, NoisePixels(kWidth, kHeight, 8))));
    EXPECT_FALSE(IsTaken({}));
    std::vector<Chunk> palette = RgbaChunks();
    palette.insert(palette.begin() + 1, {"PLTE", {1, 2, 3}});
    EXPECT_FALSE(IsTaken(FileOf(palette)));
    EXPECT_TRUE(Decoded(FileOf(palette)) == NoisePixels(kWidth, kHeight, 4));
}

TEST(StoredPng, LeavesFilesWhoseSumsAreWrong) {
    const FileContent file = RgbaFile();
    std::size_t at = 8;
    for (const Chunk& chunk : ChunksOf(file)) {
        FileContent changed = file;
        changed[at + 8 + chunk.data.size()] ^= 1;
        SCOPED_TRACE(chunk.type);
        ExpectLeftAndRefused(changed);
        at += 12 + chunk.data.size();
    }
    std::vector<Chunk> chunks = RgbaChunks();
    chunks[chunks.size() - 2].data.back() ^= 1;  // the sum of what was packed
    ExpectLeftAndRefused(FileOf(chunks));
}

TEST(StoredPng, LeavesFilesWhoseChunksAreOutOfOrder) {
    const std::vector<Chunk> chunks = RgbaChunks();
    ASSERT_GT(chunks.size(), 4u);
    std::vector<Chunk> parted = chunks;
    parted.insert(parted.begin() + 2, {"tIME", {}});
    ExpectLeftAndRefused(FileOf(parted));
    std::vector<Chunk> late = chunks;  // what comes behind the first chunk of data is too late
    late.insert(late.begin() + 1, {{"IDAT", {}}, {"tIME", {}}});
    ExpectLeftAndRefused(FileOf(late));
    std::vector<Chunk> unknown = chunks;
    unknown.insert(unknown.begin() + 1, {"TEXT", {}});
    ExpectLeftAndRefused(FileOf(unknown));
    std::vector<Chunk> endless = chunks;
    endless.pop_back();
    ExpectLeftAndRefused(FileOf(endless));
    ExpectLeftAndRefused(FileOf({chunks.front(), chunks.back()}));
    ExpectLeftAndRefused(FileOf({chunks.begin() + 1, chunks.end()}));
}

TEST(StoredPng, LeavesDataOfAnotherLength) {
    ASSERT_TRUE(IsTaken(FileWithRows(Bytes(kRowsSize))));
    ExpectLeftAndRefused(FileWithRows(Bytes(kRowsSize - 1)));
    const FileContent longer = FileWithRows(Bytes(kRowsSize + 1));
    EXPECT_FALSE(IsTaken(longer));
    EXPECT_EQ(Decoded(longer).size(), std::size_t{kWidth} * kHeight * 3);
}

// The first rows come again after more than 256 bytes, which the declared window does not reach.
TEST(StoredPng, LeavesDataWhoseWindowIsDeclaredTooSmall) {
    Bytes rows(kRowsSize);
    const Bytes noise = NoisePixels(3 * kWidth, 4, 1);
    for (std::size_t y = 0; y < kHeight; ++y) {
        const auto from = noise.begin() + static_cast<std::ptrdiff_t>(y % 4 * 3 * kWidth);
        std::copy(from, from + 3 * kWidth,
                  rows.begin() + static_cast<std::ptrdiff_t>(y * (3 * kWidth + 1) + 1));
    }
    std::vector<Chunk> chunks = ChunksOf(FileWithRows(rows));
    ASSERT_TRUE(IsTaken(FileOf(chunks)));
    Bytes& packed = chunks[1].data;
    for (int window = 0; window < 7; ++window) {
        const int method = 8 | window << 4;
        packed[0] = static_cast<std::uint8_t>(method);
        packed[1] = static_cast<std::uint8_t>(31 - method * 256 % 31);  // so that 31 divides both
        const bool isEnough = kRowsSize <= std::size_t{256} << window;
        EXPECT_EQ(IsTaken(FileOf(chunks)), isEnough) << window;
        EXPECT_EQ(Decoded(FileOf(chunks)).empty(), window == 0) << window;
    }
}

TEST(StoredPng, RefusesAFilterThatThereIsNot) {
    Bytes rows(kRowsSize);
    rows[3 * kWidth + 1] = 5;
    std::string reason;
    const FileContent file = FileWithRows(rows);
    EXPECT_TRUE(IsTaken(file));
    EXPECT_FALSE(DecodePictureBytes(file.data(), file.size(), &reason));
    EXPECT_FALSE(reason.empty());
}
