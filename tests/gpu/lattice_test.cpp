#include "tests/gpu/lattice.h"

#include <cmath>
#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::DoubleNear;
using testing::ElementsAre;

constexpr int EDGE = 32;

/// Table of a function of the position on the axes, 0 to 1.
Lattice tabulate(const std::function<Lattice::Rgb(double, double, double)>& function) {
    std::vector<float> table;
    for (int b = 0; b < EDGE; ++b)
        for (int g = 0; g < EDGE; ++g)
            for (int r = 0; r < EDGE; ++r)
                for (double value : function(r / (EDGE - 1.0), g / (EDGE - 1.0), b / (EDGE - 1.0)))
                    table.push_back(static_cast<float>(value));
    return {table, EDGE};
}

/// Texture coordinate of a position on an axis.
double coordinate(double position) {
    return (position * (EDGE - 1) + 0.5) / EDGE;
}

TEST(LatticeOfATest, GivesALinearFunctionExactly) {
    const Lattice lattice = tabulate([](double r, double g, double b) {
        return Lattice::Rgb{r, 2 * g - b, r + g + b};
    });
    const Lattice::Rgb at = {coordinate(0.3), coordinate(0.55), coordinate(0.99)};
    EXPECT_THAT(lattice.sample(at),
                ElementsAre(DoubleNear(0.3, 1e-6), DoubleNear(0.11, 1e-6), DoubleNear(1.84, 1e-6)));
    for (double bound : lattice.get_error_bound(at))
        EXPECT_LT(bound, 1e-6);
}

/// What `function` has at a position, against what its table has, in shares of what the table allows.
double get_share(const Lattice& lattice, const std::function<Lattice::Rgb(double, double, double)>& function,
                 double r, double g, double b) {
    const Lattice::Rgb at = {coordinate(r), coordinate(g), coordinate(b)};
    const Lattice::Rgb exact = function(r, g, b), sampled = lattice.sample(at),
                       bound = lattice.get_error_bound(at);
    double largest = 0;
    for (size_t channel = 0; channel < 3; ++channel)
        if (const double error = std::abs(exact[channel] - sampled[channel]); error > 1e-6)
            largest = std::max(largest, error / bound[channel]);
    return largest;
}

TEST(LatticeOfATest, BoundsTheErrorOfSmoothAndOfBentFunctions) {
    const double bend_in_the_middle = 12.5 / (EDGE - 1), bend_at_the_end = 0.3 / (EDGE - 1);
    const auto function = [&](double r, double g, double b) {
        return Lattice::Rgb{r * r * g, std::max(0.0, g - bend_in_the_middle),
                            std::exp(b) * std::max(r, bend_at_the_end)};
    };
    const Lattice lattice = tabulate(function);
    for (int i = 0; i < 2000; ++i)
        ASSERT_LE(get_share(lattice, function, std::fmod(i * 0.61803398875, 1),
                            std::fmod(i * 0.7548776662, 1), std::fmod(i * 0.5698402910, 1)),
                  1 + 1e-3)
            << i;
    EXPECT_NEAR(get_share(lattice, function, 0.5, bend_in_the_middle, 0.5), 1, 1e-3)
        << "the bound is not larger than necessary";
    EXPECT_LE(get_share(lattice, function, bend_at_the_end, 0.5, 0.5), 1 + 1e-3);
    EXPECT_GT(get_share(lattice, function, bend_at_the_end, 0.5, 0.5), 0.5);
}

TEST(LatticeOfATest, CoversFromTheFirstEntryToTheLast) {
    const Lattice lattice = tabulate([](double r, double, double) { return Lattice::Rgb{r, r, r}; });
    EXPECT_TRUE(lattice.covers({0.5 / EDGE, 0.5, 1 - 0.5 / EDGE}));
    EXPECT_FALSE(lattice.covers({0.4 / EDGE, 0.5, 0.5}));
    EXPECT_FALSE(lattice.covers({0.5, 0.5, 1 - 0.4 / EDGE}));
}

} // namespace
