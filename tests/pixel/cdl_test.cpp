#include <algorithm>
#include <cmath>
#include <limits>

#include "every_target.h"
#include "samples.h"

using namespace pixel;
using namespace pixel_test;

namespace {

const Cdl GRADE{{1.1, 0.9, 1.05},    {0.01, -0.02, 0.03}, {1.2, 0.8, 1.1}, 1.3,
                CdlStyle::Unclamped, Direction::Forward};
constexpr double LUMA[3] = {0.2126, 0.7152, 0.0722};

class CdlOperation : public EveryTarget {};
RUN_ON_EVERY_TARGET(CdlOperation);

double clamp_if(bool clamp, double v) {
    return clamp ? std::min(std::max(v, 0.0), 1.0) : v;
}

/// ASC CDL v1.2, in double precision.
std::array<double, 3> grade(const Cdl& cdl, const Pixel& in) {
    const bool clamp = cdl.style == CdlStyle::Clamped;
    std::array<double, 3> v{};
    double luma = 0;
    for (std::size_t c = 0; c < 3; ++c) {
        v[c] = clamp_if(clamp, static_cast<double>(in[c]) * cdl.slope[c] + cdl.offset[c]);
        v[c] = v[c] >= 0 ? std::pow(v[c], cdl.power[c]) : v[c];
        luma += LUMA[c] * v[c];
    }
    for (double& x : v) {
        x = clamp_if(clamp, luma + cdl.saturation * (x - luma));
    }
    return v;
}

TEST_P(CdlOperation, SlopeOffsetPowerSaturationInThisOrder) {
    Cdl clamped = GRADE;
    clamped.style = CdlStyle::Clamped;
    for (const Pixel& in :
         {Pixel{0.2f, 0.4f, 0.8f, 0.5f}, Pixel{-0.2f, 1.4f, 0.1f, 1.0f}, Pixel{3.0f, 0.0f, 12.0f, 0.0f}}) {
        for (const Cdl& cdl : {GRADE, clamped}) {
            const Pixel out = apply_one(cdl, in);
            const auto expected = grade(cdl, in);
            for (std::size_t c = 0; c < 3; ++c) {
                EXPECT_NEAR(out[c], expected[c], 1e-6 * std::max(1.0, std::fabs(expected[c])));
            }
            EXPECT_EQ(out[3], in[3]);
        }
    }
}

TEST_P(CdlOperation, InverseUndoesTheForwardDirection) {
    Cdl inverse = GRADE;
    inverse.direction = Direction::Inverse;
    for (const Pixel& in : {Pixel{0.2f, 0.4f, 0.8f, 0.5f}, Pixel{0.05f, 0.9f, 0.3f, 1.0f}}) {
        const auto graded = grade(GRADE, in);
        const Pixel out = apply_one(inverse, {static_cast<float>(graded[0]), static_cast<float>(graded[1]),
                                              static_cast<float>(graded[2]), 0.25f});
        for (std::size_t c = 0; c < 3; ++c) {
            EXPECT_NEAR(out[c], in[c], 2e-6);
        }
        EXPECT_EQ(out[3], 0.25f);
    }
}

TEST_P(CdlOperation, NegativesPassThePowerOfTheUnclampedStyle) {
    const Cdl cube{{1, 1, 1}, {0, 0, 0}, {3, 3, 3}, 1, CdlStyle::Unclamped, Direction::Forward};
    EXPECT_EQ(apply_one(cube, {-2.0f, 2.0f, -0.5f, 1.0f}), (Pixel{-2.0f, 8.0f, -0.5f, 1.0f}));
}

TEST_P(CdlOperation, NanCountsAsZero) {
    const Cdl square{{1, 1, 1}, {0, 0, 0}, {2, 2, 2}, 1, CdlStyle::Unclamped, Direction::Forward};
    EXPECT_EQ(apply_one(square, {std::nanf(""), 2.0f, -std::nanf(""), 1.0f}),
              (Pixel{0.0f, 4.0f, 0.0f, 1.0f}));
    Cdl clamped = square;
    clamped.style = CdlStyle::Clamped;
    EXPECT_EQ(apply_one(clamped, {std::nanf(""), 2.0f, 0.5f, 1.0f}), (Pixel{0.0f, 1.0f, 0.25f, 1.0f}));
}

TEST_P(CdlOperation, SaturationZeroGivesGray) {
    const Cdl gray{{1, 1, 1}, {0, 0, 0}, {1, 1, 1}, 0, CdlStyle::Unclamped, Direction::Forward};
    const Pixel out = apply_one(gray, {1.0f, 0.5f, 0.25f, 1.0f});
    EXPECT_FLOAT_EQ(out[0], 0.2126f + 0.5f * 0.7152f + 0.25f * 0.0722f);
    EXPECT_EQ(out[0], out[1]);
    EXPECT_EQ(out[0], out[2]);
}

TEST_P(CdlOperation, SlopesNearZeroAreUndoneByAHundredAtMost) {
    const Cdl flat{{0, 1, 1}, {0, 0, 0}, {2, 2, 2}, 1, CdlStyle::Unclamped, Direction::Inverse};
    EXPECT_EQ(apply_one(flat, {0.25f, 0.25f, 0.25f, 1.0f}), (Pixel{50.0f, 0.5f, 0.5f, 1.0f}));
}

} // namespace
