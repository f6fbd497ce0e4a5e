#include <cstring>
#include <limits>
#include <memory>
#include <optional>

#include "all_operations.h"
#include "every_target.h"
#include "samples.h"

using namespace pixel;
using namespace pixel_test;

namespace {

Table entries(std::vector<float> values) {
    return std::make_shared<const std::vector<float>>(std::move(values));
}

Lut1D unit_table(std::vector<float> values, Direction direction) {
    const std::size_t length = values.size();
    return {InputDomain::Unit, length, 1, entries(std::move(values)), direction};
}

/// Every kind of power: none, 1, moderate, large and negative, one per channel.
std::vector<OpChain> every_power() {
    std::vector<OpChain> chains;
    for (const auto style : {Negatives::Clamp, Negatives::Mirror, Negatives::PassThrough}) {
        for (const std::array<double, 4>& value : {std::array<double, 4>{0, 1, 2.2, 7.5},
                                                   {-1, -0.25, 6, 6.0625},
                                                   {1, 1, 1, 1},
                                                   {40, 1e-3, 0, 2}}) {
            chains.push_back({Exponent{value, style, Direction::Forward}});
        }
    }
    for (const Direction direction : {Direction::Forward, Direction::Inverse}) {
        for (const auto style : {CdlStyle::Clamped, CdlStyle::Unclamped}) {
            chains.push_back({Cdl{{1.1, 0.9, 1.3}, {0.01, -0.2, 0.3}, {1.2, 0.8, 7}, 1.4, style, direction}});
            chains.push_back({Cdl{{1.1, 0.9, 1.3}, {0.01, -0.2, 0.3}, {1, 1, 1}, 0.3, style, direction}});
        }
        chains.push_back({LogAffine{10,
                                    {0.3, 0.4, 0.5},
                                    {0.5, 0.6, 0.7},
                                    {1.5, 2, 3},
                                    {0.01, 0.02, 0.03},
                                    std::nullopt,
                                    std::nullopt,
                                    direction}});
        chains.push_back({LogAffine{2,
                                    {0.3, 0.4, 0.5},
                                    {0.5, 0.6, 0.7},
                                    {1.5, 2, 3},
                                    {0.01, 0.02, 0.03},
                                    {{0.1, 0.2, 0.3}},
                                    {{0.7, 0.8, 0.9}},
                                    direction}});
    }
    return chains;
}

/// Scalings that a table or a power takes in, tables with several entries in a bucket, and bounds on one
/// side.
std::vector<OpChain> odd_chains() {
    const Matrix scaling{{1.25, 0, 0, 0, 0, 0.8, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}, {0.125, -0.25, 0, 0}};
    const Matrix alpha_too{{1.25, 0, 0, 0, 0, 0.8, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0.5}, {0.125, -0.25, 0, 0.25}};
    const std::vector<float> crowded{0.0f, 0.1f, 0.1000001f, 0.1000002f, 0.1000003f, 0.5f, 1000.0f};
    return {
        {scaling, unit_table({-0.5f, 0.25f, 1.5f, 0.75f}, Direction::Forward)},
        {scaling, Exponent{{2.2, 0.5, 3, 1}, Negatives::Mirror, Direction::Forward}},
        {alpha_too, Exponent{{2.2, 0.5, 3, 1}, Negatives::Clamp, Direction::Forward}},
        {unit_table(crowded, Direction::Inverse), scaling},
        {unit_table({1.0f, 0.75f, 0.75f, 0.5f, -2.0f}, Direction::Inverse)},
        {Range{std::nullopt, 0.9, std::nullopt, 0.9}},
        {alpha_too},
        {scaling, Matrix{{0, 1, 0, 0, 0, 0, 1, 0, 1, 0, 0, 0, 0, 0, 0.5, 0.5}, {}},
         Cdl{{1, 1, 1}, {}, {2, 2, 2}, 0.5, CdlStyle::Clamped, Direction::Forward},
         Log{2, Direction::Forward}, unit_table({0.0f, 0.5f, 0.75f}, Direction::Forward)},
    };
}

class SinglePixels : public EveryTarget {
protected:
    static void expect_the_bits_of_an_image(const OpChain& chain) {
        const Program program(chain);
        const std::vector<Pixel> in = mixed_pixels(1500, 71);
        std::vector<Pixel> image = in;
        program.apply_packed(image[0].data(), image.size(), 1, 4);
        for (std::size_t i = 0; i < in.size(); ++i) {
            Pixel alone = in[i];
            program.apply_pixel(alone.data());
            ASSERT_EQ(std::memcmp(alone.data(), image[i].data(), sizeof alone), 0)
                << program.describe().given[0] << ": (" << in[i][0] << ", " << in[i][1] << ", " << in[i][2]
                << ", " << in[i][3] << ") gave (" << alone[0] << ", " << alone[1] << ", " << alone[2] << ", "
                << alone[3] << ") alone and (" << image[i][0] << ", " << image[i][1] << ", " << image[i][2]
                << ", " << image[i][3] << ") in an image";
        }
    }
};
RUN_ON_EVERY_TARGET(SinglePixels);

TEST_P(SinglePixels, HaveTheBitsOfAnImageUnderEveryOperation) {
    for (const Op& op : all_operations()) {
        expect_the_bits_of_an_image({op});
    }
}

TEST_P(SinglePixels, HaveTheBitsOfAnImageUnderEveryPower) {
    for (const OpChain& chain : every_power()) {
        expect_the_bits_of_an_image(chain);
    }
}

TEST_P(SinglePixels, KeepTheLargestFloatUnderTheFirstPower) {
    constexpr float MOST = 3.4028235e38f;
    const Pixel in{MOST, MOST, MOST, MOST};
    for (const auto style : {Negatives::Clamp, Negatives::Mirror, Negatives::PassThrough}) {
        const Program program({Exponent{{1, 2, 1, 1}, style, Direction::Forward}});
        Pixel alone = in;
        program.apply_pixel(alone.data());
        EXPECT_EQ(alone, (Pixel{MOST, std::numeric_limits<float>::infinity(), MOST, MOST}));
    }
}

TEST_P(SinglePixels, HaveTheBitsOfAnImageUnderScaledAndCrowdedTables) {
    for (const OpChain& chain : odd_chains()) {
        expect_the_bits_of_an_image(chain);
    }
}

TEST_P(SinglePixels, NeedNoAlignmentAndLeaveTheirNeighborsAlone) {
    for (const Op& op : all_operations()) {
        float memory[6] = {7, 0.25f, 0.5f, 0.75f, 1, 9};
        Program({op}).apply_pixel(memory + 1);
        EXPECT_EQ(memory[0], 7.0f);
        EXPECT_EQ(memory[5], 9.0f);
    }
}

} // namespace
