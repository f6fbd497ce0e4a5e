#include "image/half_codec.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

namespace {

constexpr unsigned int HALF_COUNT = 65536;

/// IEEE 754 binary16: sign, five bits of exponent, ten of fraction.
double value_of(unsigned int half) {
    const double sign = (half & 0x8000) != 0 ? -1.0 : 1.0;
    const int exponent = static_cast<int>(half >> 10 & 31);
    const unsigned int fraction = half & 1023;
    if (exponent == 31)
        return fraction != 0 ? std::numeric_limits<double>::quiet_NaN()
                             : sign * std::numeric_limits<double>::infinity();
    return exponent == 0 ? sign * std::ldexp(fraction, -24)
                         : sign * std::ldexp(1024 + fraction, exponent - 25);
}

std::vector<std::uint16_t> all_halfs() {
    std::vector<std::uint16_t> halfs;
    for (unsigned int half = 0; half < HALF_COUNT; ++half)
        halfs.push_back(static_cast<std::uint16_t>(half));
    return halfs;
}

std::uint16_t encode(double value) {
    // Nine copies, so that both the vectors and the rest behind them take part.
    const std::vector<float> floats(9, static_cast<float>(value));
    std::vector<std::uint16_t> halfs(9);
    image::encode_halfs(floats.data(), halfs.data(), 9);
    EXPECT_EQ(halfs, std::vector<std::uint16_t>(9, halfs[0])) << value;
    return halfs[0];
}

TEST(Halfs, DecodeToTheirExactValues) {
    const std::vector<std::uint16_t> halfs = all_halfs();
    std::vector<float> floats(HALF_COUNT);
    image::decode_halfs(halfs.data(), floats.data(), HALF_COUNT);
    for (unsigned int half = 0; half < HALF_COUNT; ++half) {
        const double expected = value_of(half);
        if (std::isnan(expected))
            EXPECT_TRUE(std::isnan(floats[half])) << half;
        else
            EXPECT_EQ(floats[half], expected) << half;
    }
}

TEST(Halfs, SurviveBeingDecodedAndEncoded) {
    const std::vector<std::uint16_t> halfs = all_halfs();
    std::vector<float> floats(HALF_COUNT);
    std::vector<std::uint16_t> back(HALF_COUNT);
    image::decode_halfs(halfs.data(), floats.data(), HALF_COUNT);
    image::encode_halfs(floats.data(), back.data(), HALF_COUNT);
    for (unsigned int half = 0; half < HALF_COUNT; ++half) {
        if (std::isnan(value_of(half)))
            EXPECT_TRUE(std::isnan(value_of(back[half]))) << half;
        else
            EXPECT_EQ(back[half], half);
    }
}

TEST(Halfs, RoundToTheNearestAndToEvenInTheMiddle) {
    EXPECT_EQ(encode(1.0), 0x3C00);
    EXPECT_EQ(encode(1.0 + 0.49 / 1024), 0x3C00);
    EXPECT_EQ(encode(1.0 + 0.51 / 1024), 0x3C01);
    EXPECT_EQ(encode(1.0 + 0.5 / 1024), 0x3C00) << "in the middle, the lower one is even";
    EXPECT_EQ(encode(1.0 + 1.5 / 1024), 0x3C02) << "in the middle, the upper one is even";
}

TEST(Halfs, BecomeInfiniteBeyondTheirRange) {
    EXPECT_EQ(encode(65504), 0x7BFF);
    EXPECT_EQ(encode(65519.0), 0x7BFF);
    EXPECT_EQ(encode(65520.0), 0x7C00);
    EXPECT_EQ(encode(-1e30), 0xFC00);
    EXPECT_EQ(encode(std::numeric_limits<double>::infinity()), 0x7C00);
}

TEST(Halfs, KeepTinyValues) {
    EXPECT_EQ(encode(std::ldexp(1.0, -24)), 1);
    EXPECT_EQ(encode(std::ldexp(1.0, -26)), 0);
    EXPECT_EQ(encode(-0.0), 0x8000);
}

} // namespace
