#include <cmath>
#include <limits>
#include <memory>

#include "every_target.h"
#include "samples.h"

using namespace pixel;
using namespace pixel_test;

namespace {

class Cubes : public EveryTarget {};
RUN_ON_EVERY_TARGET(Cubes);

/// A 3D LUT of edge 2 with red in its corners' first, green in their second, blue in their third bit.
Lut3D corners(CubeInterpolation interpolation, CubeOrder order) {
    std::vector<float> rgb;
    for (int i = 0; i < 8; ++i) {
        const bool slow = i & 4, middle = i & 2, fast = i & 1;
        const bool red = order == CubeOrder::RedFastest ? fast : slow;
        const bool blue = order == CubeOrder::RedFastest ? slow : fast;
        // A function that is not linear: r * g, g * b, r + g + b.
        rgb.push_back(red && middle ? 1.0f : 0.0f);
        rgb.push_back(middle && blue ? 1.0f : 0.0f);
        rgb.push_back(static_cast<float>(red + middle + blue));
    }
    return {2, order, interpolation, std::make_shared<const std::vector<float>>(rgb)};
}

TEST_P(Cubes, TrilinearInterpolatesProductsAsProducts) {
    for (const CubeOrder order : {CubeOrder::RedFastest, CubeOrder::BlueFastest}) {
        const Pixel out = apply_one(corners(CubeInterpolation::Trilinear, order), {0.25f, 0.5f, 0.75f, 9.0f});
        EXPECT_EQ(out, (Pixel{0.125f, 0.375f, 1.5f, 9.0f}));
    }
}

TEST_P(Cubes, TetrahedralInterpolatesProductsAsMinima) {
    for (const CubeOrder order : {CubeOrder::RedFastest, CubeOrder::BlueFastest}) {
        const Single cube(corners(CubeInterpolation::Tetrahedral, order));
        // On the path through the corners r * g is min(r, g) in each of the six tetrahedra.
        for (const Pixel& in : {Pixel{0.25f, 0.5f, 0.75f, 1.0f}, Pixel{0.75f, 0.5f, 0.25f, 1.0f},
                                Pixel{0.5f, 0.25f, 0.75f, 1.0f}, Pixel{0.5f, 0.75f, 0.25f, 1.0f},
                                Pixel{0.25f, 0.75f, 0.5f, 1.0f}, Pixel{0.75f, 0.25f, 0.5f, 1.0f},
                                Pixel{0.5f, 0.5f, 0.5f, 1.0f}}) {
            const Pixel out = cube(in);
            EXPECT_EQ(out[0], std::min(in[0], in[1]));
            EXPECT_EQ(out[1], std::min(in[1], in[2]));
            EXPECT_EQ(out[2], in[0] + in[1] + in[2]);
        }
    }
}

Lut3D identity(std::size_t edge, CubeInterpolation interpolation) {
    std::vector<float> rgb;
    const auto last = static_cast<float>(edge - 1);
    for (std::size_t b = 0; b < edge; ++b) {
        for (std::size_t g = 0; g < edge; ++g) {
            for (std::size_t r = 0; r < edge; ++r) {
                for (const std::size_t v : {r, g, b}) {
                    rgb.push_back(static_cast<float>(v) / last);
                }
            }
        }
    }
    return {edge, CubeOrder::RedFastest, interpolation, std::make_shared<const std::vector<float>>(rgb)};
}

TEST_P(Cubes, IdentityOfAnyEdgeKeepsColorsOfTheUnitCube) {
    for (const std::size_t edge : {2, 3, 17, 33}) {
        for (const auto interpolation : {CubeInterpolation::Trilinear, CubeInterpolation::Tetrahedral}) {
            const Single cube(identity(edge, interpolation));
            for (const Pixel& in : mixed_pixels(300, 7)) {
                const Pixel out = cube(in);
                for (std::size_t c = 0; c < 3; ++c) {
                    const float clamped = in[c] > 0 ? std::min(in[c], 1.0f) : 0.0f; // NaN counts as 0
                    EXPECT_NEAR(out[c], clamped, 2e-7) << in[c];
                }
            }
        }
    }
}

TEST_P(Cubes, InfiniteEntriesCountAsTheLargestFloatAndNanAsZero) {
    Lut3D cube = identity(2, CubeInterpolation::Trilinear);
    std::vector<float> rgb = *cube.rgb;
    rgb[0] = std::numeric_limits<float>::infinity();
    rgb[1] = std::nanf("");
    cube.rgb = std::make_shared<const std::vector<float>>(rgb);
    const Pixel out = apply_one(cube, {0.0f, 0.0f, 0.0f, 1.0f});
    EXPECT_EQ(out[0], std::numeric_limits<float>::max());
    EXPECT_EQ(out[1], 0.0f);
}

TEST(CubeErrors, SizesThatDoNotFitAreRefused) {
    Lut3D cube = identity(3, CubeInterpolation::Trilinear);
    cube.edge = 4;
    EXPECT_THROW(Program({cube}), std::invalid_argument);
    cube.edge = 1;
    EXPECT_THROW(Program({cube}), std::invalid_argument);
    cube.rgb = nullptr;
    EXPECT_THROW(Program({cube}), std::invalid_argument);
}

} // namespace
