#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <random>

#include "every_target.h"
#include "samples.h"

using namespace pixel;
using namespace pixel_test;

namespace {

constexpr float INF = std::numeric_limits<float>::infinity();

class InverseTables : public EveryTarget {};
RUN_ON_EVERY_TARGET(InverseTables);

Lut1D inverse_of(std::vector<float> values) {
    const std::size_t length = values.size();
    return {InputDomain::Unit, length, 1, std::make_shared<const std::vector<float>>(std::move(values)),
            Direction::Inverse};
}

std::vector<float> sampled(std::size_t length, const std::function<double(double)>& f) {
    std::vector<float> values;
    for (std::size_t i = 0; i < length; ++i) {
        values.push_back(static_cast<float>(f(static_cast<double>(i) / static_cast<double>(length - 1))));
    }
    return values;
}

/// Position of a value in a rising table, in double precision, by a plain scan.
double scanned_position(const std::vector<float>& rising, float value) {
    const std::size_t last = rising.size() - 1;
    if (value <= rising[0]) {
        std::size_t i = 0;
        while (i < last && rising[i + 1] == rising[i]) {
            ++i;
        }
        return static_cast<double>(i) / static_cast<double>(last);
    }
    std::size_t above = 1;
    while (above < last && rising[above] < value) {
        ++above;
    }
    const double low = rising[above - 1], high = rising[above];
    const double part = std::min(1.0, (static_cast<double>(value) - low) / (high - low));
    return (static_cast<double>(above - 1) + part) / static_cast<double>(last);
}

void expect_scanned_positions(const std::vector<float>& rising, const std::vector<float>& values) {
    const Single inverse(inverse_of(rising));
    for (const float v : values) {
        EXPECT_TRUE(is_near(inverse(v), scanned_position(rising, v))) << v;
    }
}

/// The sRGB decoding function (IEC 61966-2-1) and the Cineon 10-bit log curve over code values -0.125
/// to 1.125.
double srgb(double position) {
    const double x = position * 1.25 - 0.125;
    return x >= 0.04045 ? std::pow((x + 0.055) / 1.055, 2.4) : x / 12.92;
}
double cineon(double position) {
    const double black = std::pow(10.0, (95 - 685) / 300.0);
    return (std::pow(10.0, (1023 * (position * 1.25 - 0.125) - 685) / 300) - black) / (1 - black);
}

TEST_P(InverseTables, SrgbAndCineonAreFoundWhereAScanFindsThem) {
    std::vector<float> values = random_values(600, 3);
    const std::vector<float> dark = ramp(300, -0.02f, 0.02f), bright = ramp(300, 0.5f, 40.0f);
    values.insert(values.end(), dark.begin(), dark.end());
    values.insert(values.end(), bright.begin(), bright.end());
    expect_scanned_positions(sampled(4101, srgb), values);
    expect_scanned_positions(sampled(4101, cineon), values);
}

TEST_P(InverseTables, EntriesGiveTheirOwnPositions) {
    for (const auto& curve : {srgb, cineon}) {
        const std::vector<float> entries = sampled(4101, curve);
        const Single inverse(inverse_of(entries));
        for (std::size_t i = 0; i < entries.size(); i += 7) {
            EXPECT_TRUE(within_units(inverse(entries[i]), static_cast<float>(i) / 4100.0f, 1)) << i;
        }
    }
}

TEST_P(InverseTables, SteepPowersAndTinySpacingsAreFoundToo) {
    expect_scanned_positions(sampled(1024, [](double x) { return std::pow(x, 6); }), ramp(500, 0.0f, 1.0f));
    expect_scanned_positions(sampled(1024, [](double x) { return std::pow(x, 6); }), ramp(500, 0.0f, 1e-9f));
    expect_scanned_positions(sampled(33, [](double x) { return 1e30 * x - 3e29; }), random_values(500, 9));
    expect_scanned_positions(sampled(65536, [](double x) { return x * x; }), ramp(300, -0.1f, 1.1f));
}

TEST_P(InverseTables, IrregularTablesAreFoundToo) {
    std::mt19937 generator(4);
    std::exponential_distribution<float> step(1.0f);
    std::vector<float> rising(777);
    float reached = -2.0f;
    for (float& v : rising) {
        v = reached += step(generator) * (generator() % 8 == 0 ? 1.0f : 1e-4f);
    }
    expect_scanned_positions(rising, ramp(1000, rising.front(), rising.back()));
}

TEST_P(InverseTables, FlatStretchesGiveTheirLowerEndForTheirOwnValue) {
    const std::vector<float> stairs{0.0f, 0.0f, 0.25f, 0.5f, 0.5f, 0.5f, 0.75f, 1.0f, 1.0f};
    expect_scanned_positions(stairs,
                             {-1.0f, 0.0f, 0.125f, 0.25f, 0.4f, 0.5f, 0.50000006f, 0.6f, 0.75f, 0.9f});
    const Single inverse(inverse_of(stairs));
    EXPECT_EQ(inverse(0.0f), 0.125f); // flat ends are cut off
    EXPECT_EQ(inverse(1.0f), 0.875f);
    EXPECT_EQ(inverse(2.0f), 0.875f);
    EXPECT_EQ(inverse(0.5f), 0.375f);
    EXPECT_EQ(inverse(0.625f), 0.6875f);
}

TEST_P(InverseTables, FallingTablesAreInverted) {
    const Single inverse(inverse_of({1.0f, 0.5f, 0.25f, -1.0f}));
    EXPECT_FLOAT_EQ(inverse(0.75f), 0.5f / 3);
    EXPECT_FLOAT_EQ(inverse(-0.375f), 2.5f / 3);
    EXPECT_EQ(inverse(5.0f), 0.0f);
    EXPECT_EQ(inverse(-INF), 1.0f);
}

TEST_P(InverseTables, EntriesAgainstTheDirectionAreLevelled) {
    const Single inverse(inverse_of({0.0f, 0.5f, 0.25f, 1.0f})); // as 0, 0.5, 0.5, 1
    EXPECT_FLOAT_EQ(inverse(0.25f), 0.5f / 3);
    EXPECT_FLOAT_EQ(inverse(0.5f), 1.0f / 3);
    EXPECT_FLOAT_EQ(inverse(0.75f), 2.5f / 3);
}

TEST_P(InverseTables, NanStaysNanUnlessTheTableIsConstant) {
    EXPECT_TRUE(std::isnan(apply_gray(inverse_of({0.0f, 1.0f}), std::nanf(""))));
    const Single constant(inverse_of({0.5f, 0.5f, 0.5f}));
    EXPECT_EQ(constant(std::nanf("")), 0.0f);
    EXPECT_EQ(constant(7.0f), 0.0f);
}

TEST_P(InverseTables, LargestFloatsAreNoObstacle) {
    const Single inverse(inverse_of({-3.4e38f, 0.0f, 3.4e38f}));
    EXPECT_EQ(inverse(-1.7e38f), 0.25f);
    EXPECT_EQ(inverse(0.0f), 0.5f);
    EXPECT_EQ(inverse(3.4028235e38f), 1.0f);
}

/// Numbers of the 16-bit floats by their bits; NaN and infinity stand in for themselves as 0.
Lut1D inverse_over_halves(const std::function<double(double)>& f) {
    std::vector<float> values(65536);
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double sign = i & 0x8000 ? -1 : 1;
        const int exponent = static_cast<int>((i >> 10) & 31);
        const auto mantissa = static_cast<double>(i & 1023);
        const double number = exponent == 0    ? std::ldexp(mantissa, -24)
                              : exponent == 31 ? 0
                                               : std::ldexp(1024 + mantissa, exponent - 25);
        values[i] = static_cast<float>(f(sign * number));
    }
    return {InputDomain::Half, values.size(), 1,
            std::make_shared<const std::vector<float>>(std::move(values)), Direction::Inverse};
}

TEST_P(InverseTables, CurvesOverTheHalfFloatsAreInvertedOnBothSidesOfZero) {
    const Single cube_root(inverse_over_halves([](double x) { return x * x * x; }));
    for (const float x : {0x1p-12f, 0.0009765625f, 0.1875f, 1.0f, 7.25f, 36.0f}) {
        EXPECT_NEAR(cube_root(x * x * x), x, 1e-6 * static_cast<double>(x)) << x;
        EXPECT_NEAR(cube_root(-x * x * x), -x, 1e-6 * static_cast<double>(x)) << x;
    }
    EXPECT_EQ(cube_root(3e38f), 65504.0f);
    EXPECT_EQ(cube_root(-INF), -65504.0f);
    EXPECT_TRUE(std::isnan(cube_root(std::nanf(""))));
}

TEST_P(InverseTables, CurvesOverTheHalfFloatsMayFall) {
    const Single inverse(inverse_over_halves([](double x) { return 1 - 2 * x; }));
    EXPECT_EQ(inverse(0.5f), 0.25f);
    EXPECT_EQ(inverse(2.0f), -0.5f);
    EXPECT_EQ(inverse(-131007.0f), 65504.0f);
}

TEST_P(InverseTables, FlatNegativesOfACurveOverTheHalfFloatsGiveZero) {
    const Single square(inverse_over_halves([](double x) { return x > 0 ? std::sqrt(x) : 0.0; }));
    EXPECT_EQ(square(-1.0f), 0.0f);
    EXPECT_EQ(square(0.0f), 0.0f);
    EXPECT_NEAR(square(0.5f), 0.25f, 1e-7);
}

TEST_P(InverseTables, TheFirstEntryOfACurveOverTheHalfFloatsIsFound) {
    const Single inverse(
        inverse_over_halves([](double x) { return x > 0 ? 0.5 + std::pow(x, 0.125) : 0.5; }));
    EXPECT_EQ(inverse(0.5f), 0.0f);
    EXPECT_EQ(inverse(0.25f), 0.0f);
    EXPECT_EQ(inverse(1.5f), 1.0f);
}

TEST(InverseTableErrors, NanAndInfinityHaveNoInverse) {
    EXPECT_THROW(Program({inverse_of({0.0f, std::nanf(""), 1.0f})}), std::invalid_argument);
    EXPECT_THROW(Program({inverse_of({0.0f, INF})}), std::invalid_argument);
}

} // namespace
