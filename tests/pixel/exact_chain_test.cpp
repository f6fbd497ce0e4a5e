#include "exact_chain.h"

#include <cmath>

#include "all_operations.h"
#include "every_target.h"

using namespace pixel;
using namespace pixel_test;

namespace {

TEST(ExactChain, KnownValues) {
    const Pixel in{0.25f, 0.5f, 2.0f, 1.0f};
    EXPECT_EQ(evaluate_exactly({}, in), (ExactPixel{0.25, 0.5, 2, 1}));
    const Matrix swap{{0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1}, {0, 0.125, 0, 0}};
    const Exponent square{{2, 2, 2, 1}, Negatives::Mirror, Direction::Forward};
    EXPECT_EQ(evaluate_exactly({swap, square}, in), (ExactPixel{0.25, 0.140625, 16, 1}));
    EXPECT_EQ(evaluate_exactly({Log{2, Direction::Forward}}, in), (ExactPixel{-2, -1, 1, 1}));
    const Cdl grade{{1, 1, 1}, {0, 0, 0}, {1, 1, 1}, 0, CdlStyle::Clamped, Direction::Forward};
    const double luma = 0.2126 * 0.25 + 0.7152 * 0.5 + 0.0722;
    EXPECT_NEAR(evaluate_exactly({grade}, in)[2], luma, 1e-15);
}

/// Two independent ways to the same values.
class ExactAgreement : public EveryTarget {};
RUN_ON_EVERY_TARGET(ExactAgreement);

/// Values as images have them, and the awkward ones without those that overflow.
std::vector<Pixel> pixels() {
    std::vector<Pixel> out;
    for (const float v : ramp(300, -0.3f, 1.4f)) {
        out.push_back({v, 1.1f - v, 0.7f * v, 0.5f});
    }
    for (const float v : awkward_values()) {
        if (!std::isfinite(v) || std::fabs(v) < 1e6f) {
            out.push_back({v, v, v, 1.0f});
        }
    }
    return out;
}

/// As near as the rounding of a position among 100 noisy entries lets a float be.
bool is_close(float value, double exact) {
    return is_near(value, exact) ||
           std::fabs(static_cast<double>(value) - exact) <= 2e-5 * (1 + std::fabs(exact));
}

TEST_P(ExactAgreement, EveryOperationIsCloseToItsValueInDoublePrecision) {
    for (const Op& op : all_operations()) {
        if (!has_exact_value(op)) {
            continue;
        }
        const Program program({op});
        for (const Pixel& in : pixels()) {
            Pixel out = in;
            program.apply_pixel(out.data());
            const ExactPixel exact = evaluate_exactly({op}, in);
            for (std::size_t c = 0; c < 4; ++c) {
                EXPECT_TRUE(is_close(out[c], exact[c])) << program.describe().given[0] << ": " << in[c]
                                                        << " gave " << out[c] << " for " << exact[c];
            }
        }
    }
}

} // namespace
