#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "platform/picture_decoder.h"
#include "support/picture_files.h"
#include "support/temp_folder.h"

namespace {

std::optional<DecodedPicture> Decode(const FileContent& file, std::string* reason = nullptr) {
    return DecodePictureBytes(file.data(), file.size(), reason);
}

std::vector<std::uint8_t> PixelsOf(const DecodedPicture& picture) {
    const std::uint8_t* const first = picture.pixels.get();
    return {first, first + std::size_t{picture.width} * picture.height * picture.channels};
}

void ExpectPicture(const FileContent& file, std::uint32_t width, std::uint32_t height,
                   std::uint32_t channels, const std::vector<std::uint8_t>& pixels) {
    std::string reason;
    const auto picture = Decode(file, &reason);
    ASSERT_TRUE(picture) << reason;
    EXPECT_EQ(picture->width, width);
    EXPECT_EQ(picture->height, height);
    ASSERT_EQ(picture->channels, channels);
    EXPECT_TRUE(PixelsOf(*picture) == pixels) << "the pixels differ";
}

void ExpectRefused(const FileContent& file) {
    std::string reason;
    EXPECT_FALSE(Decode(file, &reason));
    EXPECT_FALSE(reason.empty());
}

constexpr std::uint32_t kWidth = 37;
constexpr std::uint32_t kHeight = 23;

}  // namespace

TEST(DecodePng, GivesTheExactBytesOfRgbAndRgba) {
    const auto rgb = NoisePixels(kWidth, kHeight, 3);
    ExpectPicture(MakePng(kWidth, kHeight, {.colorType = 2}, rgb), kWidth, kHeight, 3, rgb);
    const auto rgba = NoisePixels(kWidth, kHeight, 4);
    ExpectPicture(MakePng(kWidth, kHeight, {.colorType = 6}, rgba), kWidth, kHeight, 4, rgba);
}

TEST(DecodePng, TakesInterlacedPictures) {
    for (const auto& [width, height] : {std::pair{37u, 23u}, {1u, 1u}, {3u, 9u}}) {
        const auto rgba = NoisePixels(width, height, 4);
        const PngKind kind = {.colorType = 6, .interlaced = true};
        ExpectPicture(MakePng(width, height, kind, rgba), width, height, 4, rgba);
    }
}

TEST(DecodePng, LeavesATransparentColourAsItIs) {
    const std::vector<std::uint8_t> rgb = {7, 7, 7, 1, 2, 3};
    ExpectPicture(MakePng(2, 1, {.colorType = 2, .transparentColor = true}, rgb), 2, 1, 3, rgb);
}

TEST(DecodePng, RefusesPaletteGreyAndSixteenBits) {
    const auto one = NoisePixels(kWidth, kHeight, 1);
    ExpectRefused(MakePng(kWidth, kHeight, {.colorType = 3}, one));
    ExpectRefused(MakePng(kWidth, kHeight, {.colorType = 0}, one));
    ExpectRefused(MakePng(kWidth, kHeight, {.colorType = 4}, NoisePixels(kWidth, kHeight, 2)));
    ExpectRefused(
        MakePng(kWidth, kHeight, {.colorType = 2, .bits = 16}, NoisePixels(kWidth, kHeight, 6)));
    ExpectRefused(
        MakePng(kWidth, kHeight, {.colorType = 6, .bits = 16}, NoisePixels(kWidth, kHeight, 8)));
}

TEST(DecodeJpeg, GivesTheColoursThatWereEncoded) {
    constexpr std::uint32_t kSide = 200;
    const auto rgb = SmoothPixels(kSide, kSide, 3);
    for (const bool progressive : {false, true}) {
        const auto picture = Decode(MakeJpeg(kSide, kSide, 3, rgb, progressive));
        ASSERT_TRUE(picture);
        EXPECT_EQ(picture->width, kSide);
        EXPECT_EQ(picture->height, kSide);
        ASSERT_EQ(picture->channels, 3u);
        const auto pixels = PixelsOf(*picture);
        int worst = 0;
        for (std::size_t i = 0; i < rgb.size(); ++i) {
            worst = std::max(worst, std::abs(int{rgb[i]} - int{pixels[i]}));
        }
        // Quality 95 quantises by up to a few steps, and colour is kept at half the size.
        EXPECT_LE(worst, 12);
    }
}

TEST(DecodeJpeg, RefusesGreyAndCmyk) {
    ExpectRefused(MakeJpeg(kWidth, kHeight, 1, NoisePixels(kWidth, kHeight, 1)));
    ExpectRefused(MakeJpeg(kWidth, kHeight, 4, NoisePixels(kWidth, kHeight, 4)));
}

TEST(DecodeTiff, GivesTheExactBytesOfEveryLayout) {
    for (const int samples : {3, 4}) {
        const auto pixels = NoisePixels(kWidth, kHeight, static_cast<std::uint32_t>(samples));
        for (const bool planar : {false, true}) {
            for (const bool tiled : {false, true}) {
                for (const int compression : {1, 5, 8, 32773}) {
                    SCOPED_TRACE(testing::Message()
                                 << samples << " samples, planar " << planar << ", tiled " << tiled
                                 << ", compression " << compression);
                    const TiffFields fields = {.samples = samples,
                                               .planar = planar,
                                               .tiled = tiled,
                                               .compression = compression};
                    ExpectPicture(MakeTiff(kWidth, kHeight, fields, pixels), kWidth, kHeight,
                                  static_cast<std::uint32_t>(samples), pixels);
                }
            }
        }
    }
}

TEST(DecodeTiff, TakesPicturesThatAreNearlyAllOneColour) {
    constexpr std::uint32_t kSide = 2000;
    const std::vector<std::uint8_t> white(kSide * kSide * 3, 255);
    for (const int compression : {5, 8, 32773}) {
        const FileContent file = MakeTiff(kSide, kSide, {.compression = compression}, white);
        ExpectPicture(file, kSide, kSide, 3, white);
    }
}

TEST(DecodeTiff, RefusesOtherKinds) {
    const auto one = NoisePixels(kWidth, kHeight, 1);
    ExpectRefused(MakeTiff(kWidth, kHeight, {.photometric = 1, .samples = 1}, one));
    ExpectRefused(MakeTiff(kWidth, kHeight, {.photometric = 3, .samples = 1}, one));
    const auto four = NoisePixels(kWidth, kHeight, 4);
    ExpectRefused(MakeTiff(kWidth, kHeight, {.photometric = 5, .samples = 4}, four));
    ExpectRefused(MakeTiff(kWidth, kHeight, {.samples = 4, .extraSample = 0}, four));
    ExpectRefused(MakeTiff(kWidth, kHeight, {.samples = 4, .extraSample = 1}, four));
    const auto deep = NoisePixels(kWidth, kHeight, 6);
    ExpectRefused(MakeTiff(kWidth, kHeight, {.bits = 16}, deep));
}

TEST(DecodeBmp, GivesTheExactBytesOf24Bits) {
    for (const std::uint32_t width : {1u, 2u, 3u, 4u, 37u}) {
        const auto rgb = NoisePixels(width, kHeight, 3);
        ExpectPicture(MakeBmp(width, kHeight, {}, rgb), width, kHeight, 3, rgb);
        ExpectPicture(MakeBmp(width, kHeight, {.topRowFirst = true}, rgb), width, kHeight, 3, rgb);
        ExpectPicture(MakeBmp(width, kHeight, {.headerSize = 12}, rgb), width, kHeight, 3, rgb);
        ExpectPicture(MakeBmp(width, kHeight, {.headerSize = 124}, rgb), width, kHeight, 3, rgb);
    }
}

TEST(DecodeBmp, TakesAlphaWhereAMaskTellsOfIt) {
    const auto rgba = NoisePixels(kWidth, kHeight, 4);
    BmpFields fields = {.bits = 32, .headerSize = 124, .compression = 3};
    ExpectPicture(MakeBmp(kWidth, kHeight, fields, rgba), kWidth, kHeight, 4, rgba);
    std::swap(fields.masks[0], fields.masks[3]);
    fields.headerSize = 56;
    ExpectPicture(MakeBmp(kWidth, kHeight, fields, rgba), kWidth, kHeight, 4, rgba);
}

TEST(DecodeBmp, Refuses32BitsWithoutAlphaAndOtherDepths) {
    const auto rgba = NoisePixels(kWidth, kHeight, 4);
    ExpectRefused(MakeBmp(kWidth, kHeight, {.bits = 32}, rgba));
    ExpectRefused(MakeBmp(kWidth, kHeight, {.bits = 32, .headerSize = 124}, rgba));
    FileContent noAlpha =
        MakeBmp(kWidth, kHeight, {.bits = 32, .headerSize = 124, .compression = 3}, rgba);
    std::fill_n(noAlpha.begin() + 14 + 52, 4, std::uint8_t{0});
    ExpectRefused(noAlpha);
    ExpectRefused(MakeBmp(kWidth, kHeight, {.bits = 8}, rgba));
    ExpectRefused(MakeBmp(kWidth, kHeight, {.bits = 16}, rgba));
    ExpectRefused(MakeBmp(kWidth, kHeight, {.compression = 1}, rgba));
}

TEST(DecodePicture, TellsFormatsByTheContentAndNotByTheName) {
    const TempFolder folder;
    const WorkingFolder inside(folder.path());
    const auto rgb = NoisePixels(kWidth, kHeight, 3);
    const FileContent file = MakePng(kWidth, kHeight, {}, rgb);
    folder.write("Graphics/Logo.jpg", {reinterpret_cast<const char*>(file.data()), file.size()});
    const auto picture = DecodePicture("graphics\\logo.JPG", nullptr);
    ASSERT_TRUE(picture);
    EXPECT_TRUE(PixelsOf(*picture) == rgb);
}

TEST(DecodePicture, GivesAReasonForFilesThatAreNotThereOrNoPictures) {
    const TempFolder folder;
    const WorkingFolder inside(folder.path());
    std::string reason;
    EXPECT_FALSE(DecodePicture("missing.png", &reason));
    EXPECT_EQ(reason, "the file cannot be read");
    EXPECT_FALSE(DecodePicture("", nullptr));
    folder.write("text.png", "no picture");
    EXPECT_FALSE(DecodePicture("text.png", &reason));
    EXPECT_EQ(reason, "not a PNG, JPEG, TIFF or BMP file");
    folder.write("empty.png", "");
    EXPECT_FALSE(DecodePicture("empty.png", &reason));
}
