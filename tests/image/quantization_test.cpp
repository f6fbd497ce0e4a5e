#include "image/quantization.h"

#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

namespace {

/// Pixels of `width` x `height` whose colors and alpha have one value.
std::vector<float> make_flat(unsigned int width, unsigned int height, float value) {
    return std::vector<float>(std::size_t{width} * height * 4, value);
}

TEST(Quantization, RoundsToTheNearestCodeValue) {
    for (const int codes : {1023, 4095})
        for (int code = 0; code < codes; ++code)
            for (const double offset : {-0.49, 0.0, 0.49}) {
                std::vector<float> pixel = make_flat(1, 1, static_cast<float>((code + offset) / codes));
                image::quantize({codes, false}, pixel.data(), 1, 1, 0, 0);
                for (const float value : pixel)
                    ASSERT_EQ(std::lround(value * codes), code) << offset;
            }
}

TEST(Quantization, ClampsAndMakesNanZero) {
    std::vector<float> pixel = {-1.0f, 7.0f, std::numeric_limits<float>::quiet_NaN(), 0.5f};
    image::quantize({1023, true}, pixel.data(), 1, 1, 0, 0);
    EXPECT_EQ(pixel[0], 0.0f);
    EXPECT_EQ(pixel[1], 1.0f);
    EXPECT_EQ(pixel[2], 0.0f);
    EXPECT_EQ(pixel[3], 512.0f / 1023) << "alpha is rounded";
}

TEST(Quantization, WithNoiseKeepsColorsThatAreCodeValues) {
    for (const int codes : {255, 1023})
        for (int code = 0; code <= codes; ++code) {
            std::vector<float> pixels =
                make_flat(64, 2, static_cast<float>(code) / static_cast<float>(codes));
            image::quantize({codes, true}, pixels.data(), 64, 2, code, 0);
            for (const float value : pixels)
                ASSERT_EQ(std::lround(value * codes), code);
        }
}

TEST(Quantization, WithNoiseMovesByLessThanACodeValueAndKeepsTheMean) {
    constexpr unsigned int SIDE = 256;
    for (const double value : {100.1, 100.25, 100.5, 100.9}) {
        std::vector<float> pixels = make_flat(SIDE, SIDE, static_cast<float>(value / 255));
        image::quantize({255, true}, pixels.data(), SIDE, SIDE, 0, 0);
        double sums[3] = {};
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            ASSERT_LT(std::fabs(pixels[i] * 255 - value), 1);
            if (i % 4 < 3)
                sums[i % 4] += pixels[i] * 255;
        }
        // The standard error of the mean of 65536 pixels is at most 0.5 / 256.
        for (const double sum : sums)
            EXPECT_NEAR(sum / (SIDE * SIDE), value, 4 * 0.5 / SIDE);
    }
}

TEST(Quantization, WithNoiseIsIndependentForTheColorsAndLeavesAlpha) {
    std::vector<float> pixels = make_flat(128, 128, 10.5f / 255);
    image::quantize({255, true}, pixels.data(), 128, 128, 0, 0);
    int equal[3] = {};
    for (std::size_t i = 0; i < pixels.size(); i += 4) {
        ASSERT_EQ(pixels[i + 3], 11.0f / 255);
        for (std::size_t c = 0; c < 3; ++c)
            equal[c] += pixels[i + c] == pixels[i + (c + 1) % 3];
    }
    for (const int count : equal) // half of them, with a standard error of 64
        EXPECT_NEAR(count, 128 * 128 / 2, 4 * 64);
}

TEST(Quantization, OfABandIsThatOfTheWhole) {
    const std::vector<float> before = make_flat(31, 17, 0.3f);
    std::vector<float> whole = before, bands = before;
    image::quantize({1023, true}, whole.data(), 31, 17, -5, 40);
    for (unsigned int row = 0; row < 17; ++row)
        image::quantize({1023, true}, bands.data() + row * 31 * 4, 31, 1, -5, 40 + static_cast<int>(row));
    EXPECT_EQ(whole, bands);
    EXPECT_NE(whole, before);
}

} // namespace
