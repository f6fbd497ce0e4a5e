#include <gtest/gtest.h>

#include "pixel/simplify.h"

#include <memory>

#include "samples.h"

using namespace pixel;
using namespace pixel_test;

namespace {

const Matrix UNIT{{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}, {}};

Matrix scaling(double factor, double offset) {
    Matrix m = UNIT;
    m.m[0] = m.m[5] = m.m[10] = factor;
    m.offset = {offset, offset, offset, 0};
    return m;
}

Range clamp(std::optional<double> low, std::optional<double> high) {
    return {low, high, low, high};
}

Lut1D table(Direction direction, InputDomain domain = InputDomain::Unit) {
    const std::size_t length = domain == InputDomain::Half ? 65536 : 2;
    return {domain, length, 1, std::make_shared<const std::vector<float>>(ramp(length, 0.25f, 0.75f)),
            direction};
}

TEST(Simplify, IdentitiesAreDropped) {
    EXPECT_TRUE(simplify({}).empty());
    EXPECT_TRUE(simplify({UNIT}).empty());
    EXPECT_TRUE(simplify({Exponent{{1, 1, 1, 1}, Negatives::Mirror, Direction::Inverse}}).empty());
    EXPECT_TRUE(simplify({LinearToeCurve{{1, 1, 1, 1}, {0, 0, 0, 0}, Negatives::Linear, Direction::Forward}})
                    .empty());
    EXPECT_TRUE(
        simplify({Cdl{{1, 1, 1}, {0, 0, 0}, {1, 1, 1}, 1, CdlStyle::Unclamped, Direction::Forward}}).empty());
}

TEST(Simplify, NeutralGradingsAreDropped) {
    const Rgbm one{1, 1, 1, 1}, zero{0, 0, 0, 0};
    const std::vector<ControlPoint> straight{{0, 0, 0}, {0.5f, 0.5f, 0}, {1, 1, 0}};
    const GradingPrimary primary{
        GradingStyle::Linear, zero, one, one, zero, zero, zero, one, 1, 0.18, 0, 1, -1e300, 1e300, false,
        Direction::Forward};
    GradingPrimary clamped = primary, saturated = primary, forgotten = primary;
    clamped.clamp_white = 1;
    saturated.saturation = forgotten.saturation = 1.5;
    forgotten.one_stops_all = true;
    EXPECT_TRUE(simplify({primary}).empty());
    EXPECT_TRUE(simplify({forgotten}).empty());
    EXPECT_EQ(simplify({clamped, saturated}).size(), 2u);
    EXPECT_TRUE(
        simplify({RgbCurve{GradingStyle::Linear, false, {straight, straight, straight, straight}, {}}})
            .empty());
    const std::vector<ControlPoint> level{{0, 1, 0}, {1, 1, 0}}, none{{0, 0, 0}, {1, 0, 0}};
    HueCurve hues{
        GradingStyle::Log, true, {straight, level, level, level, straight, straight, level, none}, {}};
    EXPECT_TRUE(simplify({hues}).empty());
    hues.curve[7] = level;
    EXPECT_EQ(simplify({hues}).size(), 1u);
    EXPECT_TRUE(simplify({ExposureContrast{ExposureStyle::Video, 0, 1, 1, 0.18, 0.088, 0.435, {}}}).empty());
    EXPECT_TRUE(simplify({GradingTone{GradingStyle::Linear,
                                      {one, 0, 4},
                                      {one, 2, -7},
                                      {one, 0, 8},
                                      {one, -2, 9},
                                      {one, 0, 8},
                                      1,
                                      {}}})
                    .empty());
}

TEST(Simplify, OperationsThatClampAreNoIdentities) {
    EXPECT_EQ(simplify({Exponent{{1, 1, 1, 1}, Negatives::Clamp, Direction::Forward}}).size(), 1u);
    EXPECT_EQ(
        simplify({Cdl{{1, 1, 1}, {0, 0, 0}, {1, 1, 1}, 1, CdlStyle::Clamped, Direction::Forward}}).size(),
        1u);
}

TEST(Simplify, NeighboringMatricesAreMultipliedInTheirOrder) {
    const OpChain merged = simplify({scaling(2, 1), scaling(4, 0.5), UNIT});
    ASSERT_EQ(merged.size(), 1u);
    const auto& m = std::get<Matrix>(merged[0]);
    EXPECT_EQ(m.m[0], 8);
    EXPECT_EQ(m.offset[0], 4.5);
    EXPECT_EQ(m.offset[3], 0);
}

TEST(Simplify, MatricesThatUndoEachOtherVanish) {
    EXPECT_TRUE(simplify({scaling(2, 1), scaling(0.5, -0.5)}).empty());
    EXPECT_EQ(simplify({Log{2, Direction::Forward}, scaling(2, 1), scaling(0.5, -0.5)}).size(), 1u);
}

TEST(Simplify, WhatAVanishedPairSeparatedIsJoined) {
    const OpChain merged = simplify({clamp(0.0, 0.5), scaling(2, 1), scaling(0.5, -0.5), clamp(0.25, 1.0)});
    ASSERT_EQ(merged.size(), 1u);
    EXPECT_EQ(std::get<Range>(merged[0]).min_out, 0.25);
    EXPECT_EQ(std::get<Range>(merged[0]).max_out, 0.5);
}

TEST(Simplify, ClampsAreJoinedOnlyWhereNanFollowsToo) {
    EXPECT_EQ(simplify({clamp(0.0, 0.75), clamp(0.25, 0.5)}).size(), 1u);
    EXPECT_EQ(simplify({clamp(0.0, std::nullopt), clamp(std::nullopt, 0.5)}).size(), 1u);
    EXPECT_EQ(simplify({clamp(std::nullopt, 0.5), clamp(0.0, std::nullopt)}).size(), 2u);
    for (const OpChain& chain : {OpChain{clamp(0.0, 0.75), clamp(0.25, 0.5)},
                                 OpChain{clamp(0.0, std::nullopt), clamp(std::nullopt, 0.5)}}) {
        for (const float x : awkward_values()) {
            EXPECT_EQ(apply_gray(std::get<Range>(simplify(chain)[0]), x),
                      apply_gray(chain[1], apply_gray(chain[0], x)))
                << x;
        }
    }
}

TEST(Simplify, ClampToTheUnitIntervalIsLeftToATableThatClamps) {
    EXPECT_EQ(simplify({clamp(0.0, 1.0), table(Direction::Forward)}).size(), 1u);
    EXPECT_EQ(simplify({clamp(0.0, 1.0), table(Direction::Inverse)}).size(), 2u);
    EXPECT_EQ(simplify({clamp(0.0, 1.0), table(Direction::Forward, InputDomain::Half)}).size(), 2u);
    EXPECT_EQ(simplify({clamp(0.0, 0.9), table(Direction::Forward)}).size(), 2u);
}

TEST(Simplify, CurvesAreNotComposed) {
    EXPECT_EQ(simplify({table(Direction::Forward), table(Direction::Inverse)}).size(), 2u);
    EXPECT_EQ(simplify({Log{2, Direction::Forward}, Log{2, Direction::Inverse}}).size(), 2u);
}

} // namespace
