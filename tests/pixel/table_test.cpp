#include <cmath>
#include <limits>
#include <memory>

#include "every_target.h"
#include "samples.h"

using namespace pixel;
using namespace pixel_test;

namespace {

constexpr float INF = std::numeric_limits<float>::infinity();
const float NOT_A_NUMBER = std::nanf("");

class Tables : public EveryTarget {};
RUN_ON_EVERY_TARGET(Tables);

Table share(std::vector<float> values) {
    return std::make_shared<const std::vector<float>>(std::move(values));
}

Lut1D shared_curve(std::vector<float> values) {
    const std::size_t length = values.size();
    return {InputDomain::Unit, length, 1, share(std::move(values)), Direction::Forward};
}

TEST_P(Tables, EntriesAreHitExactly) {
    std::vector<float> entries;
    for (const float x : ramp(4101, -0.125f, 1.125f)) {
        entries.push_back(std::pow(std::fabs(x), 2.4f) - 0.01f);
    }
    const Single table(shared_curve(entries));
    for (const std::size_t i : {0, 1, 2, 1000, 2050, 4099, 4100}) {
        // 4100 * (i / 4100) may miss i by a rounding; the entry is reached within that.
        EXPECT_NEAR(table(static_cast<float>(i) / 4100.0f), entries[i], 3e-7) << i;
    }
    EXPECT_EQ(table(0.0f), entries.front());
    EXPECT_EQ(table(1.0f), entries.back());
}

TEST_P(Tables, ValuesBetweenEntriesAreInterpolatedLinearly) {
    const Single table(shared_curve({0.0f, 1.0f, 4.0f, 9.0f, 16.0f}));
    EXPECT_EQ(table(0.125f), 0.5f);
    EXPECT_EQ(table(0.3125f), 1.75f);
    EXPECT_EQ(table(0.9375f), 14.25f);
}

/// 0.1f * 3 - 0.3f is -2^-27, which a product rounded by itself would lose.
TEST_P(Tables, FusedArithmeticRoundsOnce) {
    Lut1D table = shared_curve({-0.3f, 2.7f});
    table.arithmetic = TableArithmetic::Fused;
    EXPECT_EQ(apply_gray(table, 0.1f), -0x1p-27f);
    EXPECT_EQ(apply_gray(table, 1.0f), 2.7f);
    EXPECT_EQ(apply_gray(table, NOT_A_NUMBER), -0.3f);
    table.arithmetic = TableArithmetic::Stepwise;
    EXPECT_NE(apply_gray(table, 0.1f), -0x1p-27f);
}

TEST_P(Tables, ValuesOutsideTakeTheEndsAndNanTheFirst) {
    const Single table(shared_curve({0.25f, 0.5f, 0.75f}));
    for (const float low : {-0.0f, -1e-40f, -1e30f, -INF, NOT_A_NUMBER}) {
        EXPECT_EQ(table(low), 0.25f);
    }
    for (const float high : {1.00000012f, 65504.0f, 3.4e38f, INF}) {
        EXPECT_EQ(table(high), 0.75f);
    }
}

TEST_P(Tables, EachChannelHasItsOwnCurve) {
    const Lut1D table{InputDomain::Unit, 2, 3, share({0, 1, 10, 20, 5, -5}), Direction::Forward};
    EXPECT_EQ(apply_one(table, {0.5f, 0.25f, 1.0f, -3.0f}), (Pixel{0.5f, 12.5f, -5.0f, -3.0f}));
}

TEST_P(Tables, AllLengthsFromTwoUp) {
    for (const std::size_t length : {2, 3, 4, 5, 17, 1024, 65536}) {
        const Single table(shared_curve(ramp(length, 0.0f, 2.0f)));
        for (const float x : ramp(97, 0.0f, 1.0f)) {
            EXPECT_NEAR(table(x), 2.0f * x, 3e-7) << length << ": " << x;
        }
    }
}

TEST_P(Tables, NanEntriesCountAsZeroAndInfiniteOnesAsTheLargestFloat) {
    const Single table(shared_curve({1.0f, NOT_A_NUMBER, 1.0f, INF, 1.0f}));
    EXPECT_EQ(table(0.25f), 0.0f);
    EXPECT_EQ(table(0.125f), 0.5f);
    EXPECT_EQ(table(0.75f), std::numeric_limits<float>::max());
    EXPECT_EQ(table(1.0f), 1.0f);
}

/// The value of a 16-bit float.
float half_value(std::size_t bits) {
    const float sign = bits & 0x8000 ? -1.0f : 1.0f;
    const int exponent = static_cast<int>((bits >> 10) & 31);
    const auto mantissa = static_cast<float>(bits & 1023);
    if (exponent == 31) {
        return mantissa == 0 ? sign * INF : NOT_A_NUMBER;
    }
    return sign * (exponent == 0 ? std::ldexp(mantissa, -24) : std::ldexp(1024 + mantissa, exponent - 25));
}

Lut1D half_table(float (*f)(float)) {
    std::vector<float> values(65536);
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = f(half_value(i));
    }
    return {InputDomain::Half, 65536, 1, share(std::move(values)), Direction::Forward};
}

TEST_P(Tables, HalfDomainReachesFromDenormalsToTheLargestHalf) {
    const Single twice(half_table([](float x) { return x * 2; }));
    for (const float x : {0.0f, 1e-8f, 6e-8f, 3.3e-6f, 6.1e-5f, 1e-3f, 0.18f, 1.0f, 1234.5f, 65503.0f}) {
        EXPECT_TRUE(is_near(twice(x), 2.0 * static_cast<double>(x))) << x;
        EXPECT_TRUE(is_near(twice(-x), -2.0 * static_cast<double>(x))) << -x;
    }
}

TEST_P(Tables, HalfDomainClampsToTheLargestHalf) {
    const Single negated(half_table([](float x) { return -x; }));
    for (const float x : {65504.0f, 65520.0f, 1e30f, INF}) {
        EXPECT_EQ(negated(x), -65504.0f);
        EXPECT_EQ(negated(-x), 65504.0f);
    }
}

TEST_P(Tables, HalfDomainTellsTheZerosApartAndHasEntriesForNan) {
    Lut1D marked{InputDomain::Half, 65536, 1, nullptr, Direction::Forward};
    std::vector<float> values(65536, 0.0f);
    values[0x0000] = 1.0f;
    values[0x8000] = 2.0f;
    values[0x7E00] = values[0x7E01] = 3.0f;
    values[0xFE00] = values[0xFE01] = 4.0f;
    marked.values = share(std::move(values));
    EXPECT_EQ(apply_gray(marked, 0.0f), 1.0f);
    EXPECT_EQ(apply_gray(marked, -0.0f), 2.0f);
    EXPECT_EQ(apply_gray(marked, NOT_A_NUMBER), 3.0f);
    EXPECT_EQ(apply_gray(marked, std::copysign(NOT_A_NUMBER, -1.0f)), 4.0f);
}

TEST(TableErrors, SizesThatDoNotFitAreRefused) {
    EXPECT_THROW(Program({Lut1D{InputDomain::Unit, 3, 1, share({0, 1}), Direction::Forward}}),
                 std::invalid_argument);
    EXPECT_THROW(Program({Lut1D{InputDomain::Unit, 1, 1, share({0}), Direction::Forward}}),
                 std::invalid_argument);
    EXPECT_THROW(Program({Lut1D{InputDomain::Unit, 2, 2, share({0, 1, 0, 1}), Direction::Forward}}),
                 std::invalid_argument);
    EXPECT_THROW(Program({Lut1D{InputDomain::Half, 2, 1, share({0, 1}), Direction::Forward}}),
                 std::invalid_argument);
    EXPECT_THROW(Program({Lut1D{InputDomain::Unit, 2, 1, nullptr, Direction::Forward}}),
                 std::invalid_argument);
}

} // namespace
