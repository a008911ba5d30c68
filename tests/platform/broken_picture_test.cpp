#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <span>
#include <string>
#include <vector>

#include "platform/picture_decoder.h"
#include "support/picture_files.h"

namespace {

bool Decodes(const FileContent& file, std::size_t size) {
    // A block of exactly this size, so that the sanitizer sees a read past its end.
    const std::vector<std::uint8_t> exact(file.begin(),
                                          file.begin() + static_cast<std::ptrdiff_t>(size));
    return DecodePictureBytes(exact.data(), exact.size(), nullptr).has_value();
}

struct Sample {
    const char* name;
    FileContent file;
};

std::vector<Sample> Samples() {
    constexpr std::uint32_t kWidth = 33;
    constexpr std::uint32_t kHeight = 21;
    const auto rgb = NoisePixels(kWidth, kHeight, 3);
    const auto rgba = NoisePixels(kWidth, kHeight, 4);
    return {
        {"png", MakePng(kWidth, kHeight, {}, rgb)},
        {"interlaced png", MakePng(kWidth, kHeight, {.colorType = 6, .interlaced = true}, rgba)},
        {"jpeg", MakeJpeg(kWidth, kHeight, 3, rgb)},
        {"progressive jpeg", MakeJpeg(kWidth, kHeight, 3, rgb, true)},
        {"tiff", MakeTiff(kWidth, kHeight, {}, rgb)},
        {"tiled lzw tiff", MakeTiff(kWidth, kHeight, {.tiled = true, .compression = 5}, rgb)},
        {"planar deflate tiff",
         MakeTiff(kWidth, kHeight, {.samples = 4, .planar = true, .compression = 8}, rgba)},
        {"bmp", MakeBmp(kWidth, kHeight, {}, rgb)},
        {"alpha bmp",
         MakeBmp(kWidth, kHeight, {.bits = 32, .headerSize = 124, .compression = 3}, rgba)},
    };
}

// Writes a number at a place of a file, most significant byte first.
void Poke(FileContent& file, std::size_t at, std::uint32_t value, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i) {
        file[at + i] = static_cast<std::uint8_t>(value >> (8 * (bytes - 1 - i)));
    }
}

void FixPngHeaderSum(FileContent& file) {
    constexpr std::size_t kTypeAt = 12;
    constexpr std::size_t kTypeAndData = 17;
    Poke(file, kTypeAt + kTypeAndData, PngCheckSum(std::span(file).subspan(kTypeAt, kTypeAndData)),
         4);
}

constexpr const char* kTooLarge = "the picture is too large";
constexpr const char* kTooShort = "the file is too short for the size that it tells";

// Leaves the process hardly any memory beyond what it has.
void LimitMemory() {
#ifndef __SANITIZE_ADDRESS__  // the sanitizer itself needs an address space without limit
    std::ifstream status("/proc/self/statm");
    rlim_t pages = 0;
    status >> pages;
    constexpr rlim_t kLittle = 64 << 20;
    const rlim_t limit = pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + kLittle;
    const rlimit both = {.rlim_cur = limit, .rlim_max = limit};
    setrlimit(RLIMIT_AS, &both);
#endif
}

// The reason why a file is refused, as long as hardly any memory can be had; "decoded" when it is
// not refused. In a child process, which the limit ends with.
std::string ReasonInLittleMemory(const FileContent& file) {
    int ends[2];
    if (pipe(ends) != 0) return "no pipe";
    const pid_t child = fork();
    if (child == 0) {
        LimitMemory();
        std::string reason;
        if (DecodePictureBytes(file.data(), file.size(), &reason)) reason = "decoded";
        const ssize_t written = write(ends[1], reason.data(), reason.size());
        _exit(written < 0 ? 1 : 0);
    }
    close(ends[1]);
    char text[200];
    const ssize_t size = read(ends[0], text, sizeof text);
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return {text, static_cast<std::size_t>(std::max<ssize_t>(size, 0))};
}

}  // namespace

TEST(BrokenPictures, AreRefusedWhereverTheyAreCutShort) {
    for (const Sample& sample : Samples()) {
        SCOPED_TRACE(sample.name);
        ASSERT_TRUE(Decodes(sample.file, sample.file.size()));
        std::size_t decoded = 0;
        for (std::size_t size = 0; size < sample.file.size(); ++size) {
            decoded += Decodes(sample.file, size) ? 1 : 0;
        }
        EXPECT_EQ(decoded, 0u);
    }
}

TEST(BrokenPictures, DoNoHarmWithAnyByteChanged) {
    std::uint32_t random = 5;
    for (const Sample& sample : Samples()) {
        for (std::size_t at = 0; at < sample.file.size(); ++at) {
            random = random * 1664525 + 1013904223;
            FileContent changed = sample.file;
            changed[at] = static_cast<std::uint8_t>(random >> 24);
            Decodes(changed, changed.size());
            changed[at] = 0xFF;
            Decodes(changed, changed.size());
        }
    }
}

TEST(BrokenPictures, AreRefusedWhenTheyAreNoiseBehindASignature) {
    const std::vector<std::vector<std::uint8_t>> signatures = {
        {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'},
        {0xFF, 0xD8, 0xFF},
        {'I', 'I', 42, 0},
        {'M', 'M', 0, 42},
        {'B', 'M'},
        {}};
    for (std::uint32_t seed = 0; seed < 200; ++seed) {
        for (const auto& signature : signatures) {
            FileContent file = NoisePixels(100, 10, 1, seed);
            std::copy(signature.begin(), signature.end(), file.begin());
            EXPECT_FALSE(Decodes(file, file.size()));
        }
    }
}

TEST(BrokenPictures, TakeNoMemoryForASizeThatTheFileCannotHold) {
    const auto rgb = NoisePixels(16, 16, 3);
    FileContent png = MakePng(16, 16, {}, rgb);
    Poke(png, 16, 60000, 4);
    Poke(png, 20, 60000, 4);
    FixPngHeaderSum(png);
    FileContent widePng = MakePng(16, 16, {}, rgb);
    Poke(widePng, 16, 16000, 4);
    Poke(widePng, 20, 16000, 4);
    FixPngHeaderSum(widePng);

    FileContent jpeg = MakeJpeg(16, 16, 3, rgb);
    for (std::size_t i = 0; i + 8 < jpeg.size(); ++i) {
        if (jpeg[i] == 0xFF && jpeg[i + 1] == 0xC0) {
            Poke(jpeg, i + 5, 16000, 2);
            Poke(jpeg, i + 7, 16000, 2);
            break;
        }
    }
    FileContent bmp = MakeBmp(16, 16, {}, rgb);
    Poke(bmp, 18, 0x803E0000, 4);  // 16000, least significant byte first
    Poke(bmp, 22, 0x803E0000, 4);

    EXPECT_EQ(ReasonInLittleMemory(png), kTooLarge);
    for (const FileContent& file : {widePng, jpeg, bmp}) {
        EXPECT_EQ(ReasonInLittleMemory(file), kTooShort);
    }
}

TEST(BrokenPictures, TakeNoMemoryForHugeTiffSizes) {
    const auto rgb = NoisePixels(16, 16, 3);
    for (const TiffFields& fields : {TiffFields{}, {.tiled = true}, {.compression = 5}}) {
        const FileContent tiff = MakeTiff(16, 16, fields, rgb);
        // Each number 16 of the file could be a side of the picture or of a tile.
        std::size_t tooShort = 0;
        for (std::size_t i = 8; i + 1 < tiff.size(); ++i) {
            if (tiff[i] != 16 || tiff[i + 1] != 0) continue;
            FileContent changed = tiff;
            changed[i] = 0x00;
            changed[i + 1] = 0x7D;  // 32000
            const std::string reason = ReasonInLittleMemory(changed);
            EXPECT_NE(reason, "not enough memory");
            tooShort += reason == kTooShort ? 1 : 0;
        }
        EXPECT_GE(tooShort, fields.compression == 1 ? 2u : 0u);
    }
}

TEST(BrokenPictures, DoNotHangOnManyScans) {
    // A progressive JPEG whose last scan is there again and again.
    const auto rgb = SmoothPixels(512, 512, 3);
    const FileContent jpeg = MakeJpeg(512, 512, 3, rgb, true);
    std::size_t lastScan = 0;
    for (std::size_t i = 0; i + 1 < jpeg.size(); ++i) {
        if (jpeg[i] == 0xFF && jpeg[i + 1] == 0xDA) lastScan = i;
    }
    const FileContent scan(jpeg.begin() + static_cast<std::ptrdiff_t>(lastScan), jpeg.end() - 2);
    FileContent many(jpeg.begin(), jpeg.end() - 2);
    for (int i = 0; i < 3000; ++i) many.insert(many.end(), scan.begin(), scan.end());
    many.push_back(0xFF);
    many.push_back(0xD9);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(Decodes(many, many.size()));
    // 200 scans of this size take well under a second; 3000 would take far longer.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}
