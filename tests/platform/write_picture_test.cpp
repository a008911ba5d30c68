#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/picture_decoder.h"
#include "support/exr_files.h"
#include "support/picture_files.h"
#include "support/temp_folder.h"

class WritePicture : public ::testing::Test {
  protected:
    TempFolder folder_;
    WorkingFolder inside_{folder_.path()};
};

TEST_F(WritePicture, PutsPngFilesOnTheDiskThatReadBackExactly) {
    for (const std::uint32_t channels : {3u, 4u}) {
        const auto pixels = NoisePixels(61, 35, channels);
        ASSERT_TRUE(WritePng("shot.png", 61, 35, channels, pixels.data()));
        const auto picture = DecodePicture("shot.png", nullptr);
        ASSERT_TRUE(picture);
        EXPECT_EQ(picture->width, 61u);
        EXPECT_EQ(picture->height, 35u);
        ASSERT_EQ(picture->channels, channels);
        EXPECT_TRUE(std::equal(pixels.begin(), pixels.end(), picture->pixels.get()));
    }
}

TEST_F(WritePicture, PutsFloatsIntoExrFilesAsTheyAre) {
    constexpr int kWidth = 5;
    constexpr int kHeight = 3;
    std::vector<float> rgba;
    for (int i = 0; i < kWidth * kHeight * 4; ++i) rgba.push_back(0.1f * static_cast<float>(i - 9));
    ASSERT_TRUE(WriteExr("shot.exr", kWidth, kHeight, rgba.data()));

    const ExrPicture picture = ReadExr("shot.exr");
    EXPECT_EQ(picture.width, kWidth);
    EXPECT_EQ(picture.height, kHeight);
    EXPECT_EQ(picture.rgba, rgba);
}

TEST_F(WritePicture, SaysWhenItCannot) {
    const std::vector<std::uint8_t> pixels(16);
    const std::vector<float> floats(16);
    EXPECT_FALSE(WritePng("missing\\shot.png", 2, 2, 4, pixels.data()));
    EXPECT_FALSE(WriteExr("missing\\shot.exr", 2, 2, floats.data()));
    EXPECT_FALSE(WritePng("shot.png", 0, 2, 3, pixels.data()));
    EXPECT_FALSE(WriteExr("shot.exr", 2, 0, floats.data()));
    EXPECT_FALSE(WritePng("shot.png", 2, 2, 1, pixels.data()));
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}
