#include <cmath>
#include <cstring>
#include <memory>

#include "every_target.h"
#include "samples.h"

using namespace pixel;
using namespace pixel_test;

namespace {

Matrix diagonal(std::array<double, 4> scale, std::array<double, 4> offset) {
    return {{scale[0], 0, 0, 0, 0, scale[1], 0, 0, 0, 0, scale[2], 0, 0, 0, 0, scale[3]}, offset};
}

Table square_entries(std::size_t count) {
    std::vector<float> values;
    for (const float x : ramp(count, 0.0f, 1.0f)) {
        values.push_back(x * x);
    }
    return std::make_shared<const std::vector<float>>(std::move(values));
}

Lut1D table(Direction direction) {
    return {InputDomain::Unit, 300, 1, square_entries(300), direction};
}

/// A stage that takes in a neighbor must give, bit for bit, what the two give one after the other.
class Fusion : public EveryTarget {
protected:
    static void expect_the_same_as_one_by_one(const OpChain& chain) {
        std::vector<Pixel> together = mixed_pixels(700, 5), apart = together;
        Program(chain).apply_packed(together[0].data(), together.size(), 1, 4);
        for (const Op& op : chain) {
            Program({op}).apply_packed(apart[0].data(), apart.size(), 1, 4);
        }
        for (std::size_t i = 0; i < together.size(); ++i) {
            for (std::size_t c = 0; c < 4; ++c) {
                ASSERT_TRUE(within_units(together[i][c], apart[i][c], 0))
                    << "pixel " << i << ", channel " << c << ": " << together[i][c] << " and " << apart[i][c];
                ASSERT_EQ(std::signbit(together[i][c]), std::signbit(apart[i][c])) << "pixel " << i;
            }
        }
    }

    const Matrix color_only_ = diagonal({0.8, 1, 1.25, 1}, {0.1, 0, -0.2, 0});
    const Matrix alpha_too_ = diagonal({0.8, 0.9, 1.25, 0.5}, {0.1, 0.2, -0.2, 0.25});
};
RUN_ON_EVERY_TARGET(Fusion);

TEST_P(Fusion, OfAMatrixBeforeATable) {
    expect_the_same_as_one_by_one({color_only_, table(Direction::Forward)});
    expect_the_same_as_one_by_one({alpha_too_, table(Direction::Forward)});
}

TEST_P(Fusion, OfAMatrixAfterAnInverseTable) {
    expect_the_same_as_one_by_one({table(Direction::Inverse), color_only_});
    expect_the_same_as_one_by_one({table(Direction::Inverse), alpha_too_});
}

TEST_P(Fusion, OfAMatrixBetweenTheTwo) {
    expect_the_same_as_one_by_one({table(Direction::Inverse), color_only_, table(Direction::Forward)});
}

TEST_P(Fusion, LeavesAMatrixWhereNothingTakesItIn) {
    expect_the_same_as_one_by_one({table(Direction::Forward), color_only_, table(Direction::Inverse)});
    expect_the_same_as_one_by_one({color_only_, table(Direction::Inverse)});
}

TEST_P(Fusion, OfAMatrixBeforeAnExponent) {
    for (const auto style : {Negatives::Clamp, Negatives::Mirror, Negatives::PassThrough}) {
        // With the exponent 1 in a channel, that channel is left out of all but the clamping style.
        for (const double green : {1.0, 0.45}) {
            const Exponent exponent{{2.2, green, 7.5, 1}, style, Direction::Forward};
            expect_the_same_as_one_by_one({color_only_, exponent});
            expect_the_same_as_one_by_one({alpha_too_, exponent});
        }
    }
}

} // namespace
