#include <array>
#include <cmath>
#include <stdexcept>
#include <utility>
#include <vector>

#include "every_target.h"
#include "samples.h"

using namespace pixel;
using namespace pixel_test;

namespace {

class FixedFunctions : public EveryTarget {};
RUN_ON_EVERY_TARGET(FixedFunctions);

using Color = std::array<float, 3>;

/// Within the seven digits that the expectations have.
void expect_color(const FixedFunction& function, const Color& in, const Color& out) {
    const Pixel actual = apply_one(function, {in[0], in[1], in[2], 0.5f});
    for (std::size_t c = 0; c < 3; ++c) {
        EXPECT_NEAR(actual[c], out[c], 2e-7 + 1e-6 * std::abs(static_cast<double>(out[c]))) << c;
    }
    EXPECT_EQ(actual[3], 0.5f);
}

void expect_both(FixedStyle style, const std::vector<double>& parameters, const Color& in,
                 const Color& forward, const Color& inverse) {
    expect_color({style, parameters, Direction::Forward}, in, forward);
    expect_color({style, parameters, Direction::Inverse}, in, inverse);
}

// The expectations are results of OpenColorIO 2.1.2.

TEST_P(FixedFunctions, AcesRedModifier) {
    expect_both(FixedStyle::AcesRedModifier03, {}, {0.8f, 0.2f, 0.1f}, {0.7074115f, 0.1867731f, 0.1f},
                {0.9072688f, 0.2153241f, 0.1f});
    expect_both(FixedStyle::AcesRedModifier10, {}, {0.8f, 0.2f, 0.1f}, {0.6868889f, 0.2f, 0.1f},
                {0.935822f, 0.2f, 0.1f});
}

TEST_P(FixedFunctions, AcesGlow) {
    expect_both(FixedStyle::AcesGlow03, {}, {0.12f, 0.03f, 0.05f}, {0.1233398f, 0.03083496f, 0.0513916f},
                {0.1165311f, 0.02913277f, 0.04855463f});
    expect_both(FixedStyle::AcesGlow10, {}, {0.12f, 0.03f, 0.05f}, {0.1211859f, 0.03029648f, 0.05049414f},
                {0.1187839f, 0.02969597f, 0.04949329f});
}

TEST_P(FixedFunctions, AcesDarkToDim) {
    expect_both(FixedStyle::AcesDarkToDim10, {}, {0.5f, 0.2f, 0.1f}, {0.5123042f, 0.2049217f, 0.1024608f},
                {0.4877628f, 0.1951051f, 0.09755257f});
}

TEST_P(FixedFunctions, AcesGamutCompression) {
    expect_both(FixedStyle::AcesGamutCompression13, {1.147, 1.264, 1.312, 0.815, 0.803, 0.880, 1.2},
                {0.5f, 0.02f, -0.03f}, {0.5f, 0.04210111f, 0.01466379f}, {0.5f, -0.0384171f, -0.02999997f});
}

TEST_P(FixedFunctions, HueSaturationValue) {
    expect_both(FixedStyle::RgbToHsv, {}, {0.9f, 0.3f, -0.2f}, {0.07575758f, 1.222222f, 0.7f},
                {-0.08235294f, -0.1176471f, -0.09647058f});
}

TEST_P(FixedFunctions, Luv) {
    expect_both(FixedStyle::XyzToLuv, {}, {0.3f, 0.4f, 0.2f}, {0.6946952f, -0.215995f, 0.4824303f},
                {0.08111528f, 0.06235906f, 0.02120562f});
}

/// ST 2084: 0.508 of the signal is 100 nit, 0.752 is 1000 nit, 1 is 10,000 nit.
TEST_P(FixedFunctions, Pq) {
    const FixedFunction encode{FixedStyle::LinearToPq, {}, Direction::Forward};
    EXPECT_NEAR(apply_gray(encode, 1), 0.508078421, 1e-6);
    EXPECT_NEAR(apply_gray(encode, 10), 0.751827096, 1e-6);
    EXPECT_NEAR(apply_gray(encode, -100), -1, 1e-6);
    EXPECT_NEAR(apply_gray(FixedFunction{FixedStyle::LinearToPq, {}, Direction::Inverse}, 0.508078421f), 1,
                1e-5);
}

/// ITU-R BT.2100: a square root up to a twelfth of the light, a logarithm above.
const std::vector<double> HYBRID_LOG_GAMMA{0,          1.0 / 12,   0.5, std::sqrt(3.0), 0, std::exp(1.0),
                                           0.17883277, 0.55991073, 12,  -0.28466892};

TEST_P(FixedFunctions, HybridLogGamma) {
    const Single encode(FixedFunction{FixedStyle::LinearToGammaLog, HYBRID_LOG_GAMMA, Direction::Forward});
    EXPECT_NEAR(encode(1), 1, 1e-6);
    EXPECT_NEAR(encode(1.0f / 12), 0.5, 1e-6);
    EXPECT_NEAR(encode(1.0f / 48), 0.25, 1e-6);
    EXPECT_NEAR(encode(-1), -1, 1e-6);
}

TEST_P(FixedFunctions, LogarithmsWithOtherPartsAreUndoneByTheirInverses) {
    const std::vector<double> double_log{10, 0.1, 0.5, 0.2, 0.3, 1, 0, 0.2, 0.5, 1, 0.5, 1, 0};
    for (const auto& [style, parameters] : {std::pair(FixedStyle::LinearToGammaLog, HYBRID_LOG_GAMMA),
                                            std::pair(FixedStyle::LinearToDoubleLog, double_log)}) {
        const Single forward(FixedFunction{style, parameters, Direction::Forward}),
            inverse(FixedFunction{style, parameters, Direction::Inverse});
        for (const float v : {0.05f, 0.75f, 2.0f, 8.0f}) {
            EXPECT_NEAR(inverse(forward(v)), v, 1e-5);
        }
    }
}

TEST(FixedFunctionParameters, AreCounted) {
    EXPECT_THROW(Program({FixedFunction{FixedStyle::Rec2100Surround, {}, Direction::Forward}}),
                 std::invalid_argument);
    EXPECT_THROW(Program({FixedFunction{FixedStyle::AcesGlow10, {1}, Direction::Forward}}),
                 std::invalid_argument);
}

} // namespace
