#include <cmath>
#include <limits>
#include <utility>

#include "every_target.h"
#include "samples.h"

using namespace pixel;
using namespace pixel_test;

namespace {

constexpr float INF = std::numeric_limits<float>::infinity();
const float NOT_A_NUMBER = std::nanf("");

class Curves : public EveryTarget {};
RUN_ON_EVERY_TARGET(Curves);

Exponent exponent(double value, Negatives style, Direction direction = Direction::Forward) {
    return {{value, value, value, 1.0}, style, direction};
}

double powf_exactly(float base, float power) {
    return std::pow(static_cast<double>(base), static_cast<double>(power));
}

TEST_P(Curves, PowersOfAllMagnitudesAreRoundedCorrectlyToOneUnit) {
    for (const double power : {0.1, 1 / 2.4, 0.5, 1.2, 2.0, 2.2, 5.9, 7.0, 30.0}) {
        const Single raise(exponent(power, Negatives::Clamp));
        for (const float x : random_values(500, 11)) {
            if (x <= 0) {
                continue;
            }
            const auto expected = static_cast<float>(powf_exactly(x, static_cast<float>(power)));
            EXPECT_TRUE(within_units(raise(x), expected, 1)) << x << " ^ " << power;
        }
    }
}

TEST_P(Curves, PowersOfSpecialValues) {
    const Exponent square_root = exponent(0.5, Negatives::Clamp);
    EXPECT_EQ(apply_gray(square_root, 0.0f), 0.0f);
    EXPECT_EQ(apply_gray(square_root, 1.0f), 1.0f);
    EXPECT_EQ(apply_gray(square_root, INF), INF);
    EXPECT_EQ(apply_gray(square_root, NOT_A_NUMBER), 0.0f);
    EXPECT_EQ(apply_gray(square_root, 1.40129846e-45f), 3.74339207e-23f); // sqrt(2^-149)
    EXPECT_EQ(apply_gray(exponent(3, Negatives::Clamp), 1e30f), INF);
    EXPECT_EQ(apply_gray(exponent(3, Negatives::Clamp), 1e-30f), 0.0f);
    EXPECT_EQ(apply_gray(exponent(-1, Negatives::Clamp), 0.0f), INF);
    EXPECT_EQ(apply_gray(exponent(-1, Negatives::Clamp), INF), 0.0f);
    EXPECT_EQ(apply_gray(exponent(-1, Negatives::Clamp), 4.0f), 0.25f);
    EXPECT_EQ(apply_gray(exponent(0, Negatives::Mirror), NOT_A_NUMBER), 1.0f);
}

TEST_P(Curves, ResultsMayBeDenormal) {
    EXPECT_EQ(apply_gray(exponent(2, Negatives::Clamp), 0x1p-70f), 0x1p-140f);
    EXPECT_EQ(apply_gray(Log{2, Direction::Inverse}, -149.0f), 0x1p-149f);
    EXPECT_EQ(apply_gray(Log{2, Direction::Inverse}, -151.0f), 0.0f);
}

TEST_P(Curves, NegativesFollowTheStyle) {
    EXPECT_EQ(apply_gray(exponent(2, Negatives::Clamp), -3.0f), 0.0f);
    EXPECT_EQ(apply_gray(exponent(2, Negatives::Mirror), -3.0f), -9.0f);
    EXPECT_EQ(apply_gray(exponent(2, Negatives::PassThrough), -3.0f), -3.0f);
    EXPECT_TRUE(std::isnan(apply_gray(exponent(2, Negatives::Mirror), NOT_A_NUMBER)));
    EXPECT_TRUE(std::isnan(apply_gray(exponent(2, Negatives::PassThrough), NOT_A_NUMBER)));
}

TEST_P(Curves, ClampedExponentClampsAlphaToo) {
    const Pixel out = apply_one(exponent(2, Negatives::Clamp), {2.0f, 3.0f, 4.0f, -0.5f});
    EXPECT_EQ(out, (Pixel{4.0f, 9.0f, 16.0f, 0.0f}));
    EXPECT_EQ(apply_one(exponent(2, Negatives::Mirror), {2.0f, 3.0f, 4.0f, -0.5f})[3], -0.5f);
}

TEST_P(Curves, InverseExponentTakesTheReciprocal) {
    EXPECT_EQ(apply_gray(exponent(2, Negatives::Clamp, Direction::Inverse), 9.0f), 3.0f);
}

/// IEC 61966-2-1 with the continuous toe that offset 0.055 and gamma 2.4 define.
TEST_P(Curves, LinearToeCurveIsTheSrgbCurve) {
    const LinearToeCurve curve{
        {2.4, 2.4, 2.4, 1}, {0.055, 0.055, 0.055, 0}, Negatives::Linear, Direction::Forward};
    LinearToeCurve inverse = curve;
    inverse.direction = Direction::Inverse;
    const Single decode(curve), encode(inverse);
    const double knee = 0.055 / 1.4, slope = std::pow((knee + 0.055) / 1.055, 2.4) / knee;
    for (const float x : ramp(1000, -0.5f, 4.0f)) {
        const double in = static_cast<double>(x);
        const double linear = in > knee ? std::pow((in + 0.055) / 1.055, 2.4) : in * slope;
        EXPECT_TRUE(is_near(decode(x), linear)) << x;
        const double coded = in > knee * slope ? 1.055 * std::pow(in, 1 / 2.4) - 0.055 : in / slope;
        EXPECT_TRUE(is_near(encode(x), coded)) << x;
    }
}

TEST_P(Curves, MirroredToeCurveIsOdd) {
    const LinearToeCurve mirrored{
        {2.4, 2.4, 2.4, 1}, {0.055, 0.055, 0.055, 0}, Negatives::Mirror, Direction::Forward};
    for (const float x : {0.01f, 0.5f, 3.0f, 1e10f}) {
        EXPECT_EQ(apply_gray(mirrored, -x), -apply_gray(mirrored, x));
    }
}

TEST_P(Curves, OpaqueAlphaStaysOpaqueUnderAToeCurve) {
    const LinearToeCurve decode{
        {2.4, 2.4, 2.4, 1}, {0.055, 0.055, 0.055, 0}, Negatives::Linear, Direction::Forward};
    EXPECT_EQ(apply_one(decode, {0.5f, 0.5f, 0.5f, 1.0f})[3], 1.0f);
}

TEST_P(Curves, LogarithmsOfAllMagnitudes) {
    for (const double base : {2.0, 10.0, 2.5}) {
        const Single log(Log{base, Direction::Forward});
        for (const float x : random_values(400, 21)) {
            const double floored = x > 1.17549435e-38f ? static_cast<double>(x) : 1.1754943508222875e-38;
            EXPECT_TRUE(is_near(log(x), std::log(floored) / std::log(base))) << x << " to base " << base;
        }
    }
}

TEST_P(Curves, LogarithmIsExactAtPowersOfTwoAndFlooredBelow) {
    const Single lg2(Log{2, Direction::Forward});
    for (int k = -126; k < 128; ++k) {
        EXPECT_EQ(lg2(std::ldexp(1.0f, k)), static_cast<float>(k));
    }
    for (const float low : {0.0f, -1.0f, 1e-40f, -INF, NOT_A_NUMBER}) {
        EXPECT_EQ(lg2(low), -126.0f);
    }
    EXPECT_EQ(lg2(INF), INF);
}

TEST_P(Curves, ExponentialsKeepTheirRelativePrecision) {
    const Single exp2(Log{2, Direction::Inverse});
    for (const float x : ramp(400, -140.0f, 127.9f)) {
        EXPECT_TRUE(within_units(exp2(x), static_cast<float>(std::exp2(static_cast<double>(x))), 1)) << x;
    }
    EXPECT_EQ(exp2(128.0f), INF);
    EXPECT_EQ(exp2(3e38f), INF);
    EXPECT_EQ(exp2(-INF), 0.0f);
    EXPECT_TRUE(std::isnan(exp2(NOT_A_NUMBER)));
}

/// A camera curve: logarithmic above 0.01, a tangent line below.
const LogAffine CAMERA{10,
                       {0.25, 0.25, 0.25},
                       {0.39, 0.39, 0.39},
                       {5.5, 5.5, 5.5},
                       {0.05, 0.05, 0.05},
                       {{0.01, 0.01, 0.01}},
                       std::nullopt,
                       Direction::Forward};

double camera(double x) {
    const double at_break = 5.5 * 0.01 + 0.05;
    const double tangent = 0.25 * 5.5 / (at_break * std::log(10.0));
    const double value_at_break = 0.25 * std::log10(at_break) + 0.39;
    return x < 0.01 ? value_at_break + tangent * (x - 0.01) : 0.25 * std::log10(5.5 * x + 0.05) + 0.39;
}

TEST_P(Curves, CameraLogHasALineBelowTheBreak) {
    const Single log(CAMERA);
    for (const float x : ramp(300, -0.2f, 4.0f)) {
        EXPECT_NEAR(log(x), camera(static_cast<double>(x)), 3e-7) << x;
    }
}

TEST_P(Curves, CameraLogIsUndoneByItsInverse) {
    LogAffine inverse = CAMERA;
    inverse.direction = Direction::Inverse;
    const Single undo(inverse);
    for (const float x : ramp(300, -0.2f, 4.0f)) {
        const auto coded = static_cast<float>(camera(static_cast<double>(x)));
        EXPECT_NEAR(undo(coded), x, 4e-6) << x;
    }
}

TEST_P(Curves, GivenLinearSlopeReplacesTheTangent) {
    LogAffine steep = CAMERA;
    steep.linear_slope = {{2.0, 4.0, 8.0}};
    const Pixel low = apply_one(steep, {-1.0f, -1.0f, -1.0f, 0.5f}),
                high = apply_one(steep, {-2.0f, -2.0f, -2.0f, 0.5f});
    EXPECT_FLOAT_EQ(low[0] - high[0], 2.0f);
    EXPECT_FLOAT_EQ(low[1] - high[1], 4.0f);
    EXPECT_FLOAT_EQ(low[2] - high[2], 8.0f);
    EXPECT_EQ(low[3], 0.5f);
}

TEST(CurveErrors, ImpossibleParametersAreRefused) {
    EXPECT_THROW(Program({Log{1, Direction::Forward}}), std::invalid_argument);
    EXPECT_THROW(Program({Log{-2, Direction::Forward}}), std::invalid_argument);
    EXPECT_THROW(Program({exponent(0, Negatives::Clamp, Direction::Inverse)}), std::invalid_argument);
    EXPECT_THROW(Program({exponent(2, Negatives::Linear)}), std::invalid_argument);
}

} // namespace
