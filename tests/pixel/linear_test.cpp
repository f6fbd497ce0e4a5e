#include <cmath>
#include <limits>

#include "every_target.h"
#include "samples.h"

using namespace pixel;
using namespace pixel_test;

namespace {

constexpr float INF = std::numeric_limits<float>::infinity();
const float NOT_A_NUMBER = std::nanf("");

const Matrix FULL{{1.2, -0.3, 0.17, 0.25, 0.01, 0.9, 0.12, -0.5, -0.5, 0.33, 1.1, 0.75, 0.1, 0.2, -0.3, 0.9},
                  {0.1, -0.2, 0.03, 0.5}};

class LinearOperations : public EveryTarget {};
RUN_ON_EVERY_TARGET(LinearOperations);

TEST_P(LinearOperations, MatrixMixesAllFourChannelsAndAddsTheOffset) {
    const Pixel in{0.2f, 0.4f, 0.8f, 0.5f};
    const Pixel out = apply_one(FULL, in);
    for (std::size_t row = 0; row < 4; ++row) {
        double expected = FULL.offset[row];
        for (std::size_t k = 0; k < 4; ++k) {
            expected += FULL.m[4 * row + k] * static_cast<double>(in[k]);
        }
        EXPECT_TRUE(is_near(out[row], expected)) << row << ": " << out[row] << " for " << expected;
    }
}

TEST_P(LinearOperations, MatrixRoundsEveryProductAndSum) {
    // In exact arithmetic red is 2^-24; the sum of the first two products loses it.
    const Matrix canceling{{1, 1, -1, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}, {}};
    EXPECT_EQ(apply_one(canceling, {1.0f, 0x1p-24f, 1.0f, 1.0f})[0], 0.0f);
}

TEST_P(LinearOperations, DiagonalMatrixLeavesAlphaAlone) {
    const Matrix scale{{2, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1}, {0.25, 0, 1, 0}};
    EXPECT_EQ(apply_one(scale, {1.0f, 3.0f, 0.75f, -7.5f}), (Pixel{2.25f, 1.5f, 0.25f, -7.5f}));
}

TEST_P(LinearOperations, InfinityInOneChannelSpoilsAllOfAMatrixAndNoneOfADiagonal) {
    const Pixel mixed = apply_one(FULL, {INF, 0.5f, 0.5f, 1.0f});
    EXPECT_EQ(mixed[0], INF);
    EXPECT_EQ(mixed[2], -INF);
    const Matrix scale{{2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1}, {}};
    EXPECT_EQ(apply_one(scale, {INF, 0.5f, -INF, 1.0f}), (Pixel{INF, 1.0f, -INF, 1.0f}));
}

TEST_P(LinearOperations, RangeScalesAndClampsColorOnly) {
    const Range range{0.25, 0.75, -1.0, 3.0};
    EXPECT_EQ(apply_one(range, {0.25f, 0.5f, 0.75f, 9.0f}), (Pixel{-1.0f, 1.0f, 3.0f, 9.0f}));
    EXPECT_EQ(apply_one(range, {-5.0f, 5.0f, INF, -9.0f}), (Pixel{-1.0f, 3.0f, 3.0f, -9.0f}));
}

TEST_P(LinearOperations, ClampOnOneSideLeavesTheOther) {
    const Range floor{0.5, std::nullopt, 0.5, std::nullopt};
    EXPECT_EQ(apply_one(floor, {-1.0f, 0.25f, 1e30f, 0.0f}), (Pixel{0.5f, 0.5f, 1e30f, 0.0f}));
    const Range ceiling{std::nullopt, 0.5, std::nullopt, 0.5};
    EXPECT_EQ(apply_one(ceiling, {-INF, 0.25f, 1e30f, 0.0f}), (Pixel{-INF, 0.25f, 0.5f, 0.0f}));
}

TEST_P(LinearOperations, NanGoesToTheLowerBoundOrElseToTheUpper) {
    EXPECT_EQ(apply_gray(Range{0.25, 0.75, 0.25, 0.75}, NOT_A_NUMBER), 0.25f);
    EXPECT_EQ(apply_gray(Range{0.5, std::nullopt, 0.5, std::nullopt}, NOT_A_NUMBER), 0.5f);
    EXPECT_EQ(apply_gray(Range{std::nullopt, 0.5, std::nullopt, 0.5}, NOT_A_NUMBER), 0.5f);
}

TEST(LinearOperationErrors, RangeWithoutAFullPairOfBoundsIsRefused) {
    EXPECT_THROW(Program({Range{0.5, std::nullopt, std::nullopt, std::nullopt}}), std::invalid_argument);
    EXPECT_THROW(Program({Range{}}), std::invalid_argument);
    EXPECT_THROW(Program({Range{0.5, 0.5, 0.0, 1.0}}), std::invalid_argument);
    EXPECT_THROW(Program({Range{0.5, std::nullopt, 0.25, std::nullopt}}), std::invalid_argument);
}

} // namespace
