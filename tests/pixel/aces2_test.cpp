#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <stdexcept>
#include <vector>

#include "every_target.h"
#include "pixel/aces2_tables.h"
#include "samples.h"

using namespace pixel;
using namespace pixel_test;

namespace {

class Aces2Functions : public EveryTarget {};
RUN_ON_EVERY_TARGET(Aces2Functions);

using Color = std::array<float, 3>;

struct Example {
    Color in, out;
};

constexpr Chromaticities REC709{0.64, 0.33, 0.30, 0.60, 0.15, 0.06, 0.3127, 0.3290},
    P3{0.680, 0.320, 0.265, 0.690, 0.150, 0.060, 0.3127, 0.3290},
    REC2020{0.708, 0.292, 0.170, 0.797, 0.131, 0.046, 0.3127, 0.3290};

std::vector<double> limits(double peak, const Chromaticities& primaries) {
    std::vector<double> parameters{peak};
    parameters.insert(parameters.end(), primaries.begin(), primaries.end());
    return parameters;
}

void expect_colors(const FixedFunction& function, const std::vector<Example>& examples) {
    const Single one(function);
    for (const Example& example : examples) {
        const Pixel actual = one({example.in[0], example.in[1], example.in[2], 0.5f});
        double largest = 0;
        for (const float v : example.out) {
            largest = std::max(largest, std::abs(static_cast<double>(v)));
        }
        for (std::size_t c = 0; c < 3; ++c) {
            EXPECT_NEAR(actual[c], example.out[c], 1e-6 + 1e-5 * largest)
                << c << " of " << example.in[0] << " " << example.in[1] << " " << example.in[2];
        }
        EXPECT_EQ(actual[3], 0.5f);
    }
}

// The expectations are results of OpenColorIO 2.5.1 on Debian (x86-64, glibc 2.43), without optimizations.

TEST_P(Aces2Functions, OutputTransformForSdr) {
    expect_colors({FixedStyle::AcesOutput20, limits(100, REC709), Direction::Forward},
                  {{{0.18f, 0.18f, 0.18f}, {0.0999990031f, 0.0999994054f, 0.0999992788f}},
                   {{0.5f, 0.2f, 0.05f}, {0.587758303f, 0.0812385231f, 0.0142229013f}},
                   {{0.05f, 0.1f, 2}, {-0.00306630321f, 0.0740603656f, 0.149046615f}},
                   {{10, 0.1f, 0.1f}, {1.16344094f, 0.209861875f, 0.224114269f}},
                   {{-0.1f, 0.3f, 0.02f}, {-0.00271572918f, 0.102064267f, 0.0516578853f}},
                   {{200, 150, 90}, {1.00203323f, 1.00203311f, 1.00203335f}}});
    expect_colors({FixedStyle::AcesOutput20, limits(100, REC709), Direction::Inverse},
                  {{{0.1f, 0.1f, 0.1f}, {0.180001125f, 0.180001095f, 0.18000102f}},
                   {{0.6f, 0.08f, 0.015f}, {0.508435845f, 0.200288549f, 0.0513960049f}},
                   {{0.02f, 0.3f, 0.9f}, {0.540712059f, 0.646406829f, 1.98654807f}},
                   {{0.97f, 0.9f, 0.2f}, {4.33342075f, 4.43548346f, 0.453327954f}},
                   {{0.5f, 0, 0.4f}, {0.543261349f, 0.114175014f, 0.703077078f}},
                   {{-0.1f, 0.3f, 0.02f}, {0.183796465f, 0.379841715f, 0.138447732f}}});
}

TEST_P(Aces2Functions, OutputTransformForHdr) {
    expect_colors({FixedStyle::AcesOutput20, limits(1000, P3), Direction::Forward},
                  {{{0.18f, 0.18f, 0.18f}, {0.145115077f, 0.145115703f, 0.14511548f}},
                   {{0.5f, 0.2f, 0.05f}, {0.824260056f, 0.148626938f, 0.039177984f}},
                   {{0.05f, 0.1f, 2}, {-0.0129707623f, 0.087758638f, 0.215027004f}},
                   {{10, 0.1f, 0.1f}, {10.9324217f, 0.00586207211f, 0.531639695f}},
                   {{200, 150, 90}, {9.81274223f, 9.72666168f, 9.66864204f}}});
    expect_colors({FixedStyle::AcesOutput20, limits(1000, P3), Direction::Inverse},
                  {{{0.25f, 0.25f, 0.25f}, {0.275686353f, 0.275686264f, 0.275686383f}},
                   {{1.5f, 0.199999988f, 0.0374999978f}, {0.831813693f, 0.268356621f, 0.0395811237f}},
                   {{0.049999997f, 0.75f, 2.25f}, {0.641887009f, 0.828947604f, 2.40739322f}},
                   {{2.42500019f, 2.25f, 0.5f}, {1.93277276f, 1.99425149f, 0.33917889f}},
                   {{1.25f, 0, 1}, {0.845852077f, 0.19571799f, 0.969913065f}}});
}

/// The search for hues steps back by one entry here.
TEST_P(Aces2Functions, OutputTransformForALargeGamut) {
    expect_colors({FixedStyle::AcesOutput20, limits(500, REC2020), Direction::Forward},
                  {{{0.5f, 0.2f, 0.05f}, {0.585921109f, 0.159757823f, 0.0358662717f}},
                   {{0.05f, 0.1f, 2}, {-0.0364691243f, 0.0652297512f, 0.328456759f}},
                   {{10, 0.1f, 0.1f}, {5.61085367f, 0.407412231f, 0.382678598f}},
                   {{-0.1f, 0.3f, 0.02f}, {-0.0337552205f, 0.14173004f, 0.0326115564f}}});
    expect_colors({FixedStyle::AcesOutput20, limits(500, REC2020), Direction::Inverse},
                  {{{0.6f, 0.08f, 0.015f}, {0.501906812f, 0.123478979f, 0.0247219317f}},
                   {{0.02f, 0.3f, 0.9f}, {0.252915919f, 0.410545647f, 1.02915525f}},
                   {{0.97f, 0.9f, 0.2f}, {0.928892732f, 0.923542678f, 0.175473839f}},
                   {{0.5f, 0, 0.4f}, {0.500693083f, 0.0773130357f, 0.485271871f}}});
}

/// Below 47 nit the table of hues does not rise, and the reference renderer's search decides.
TEST_P(Aces2Functions, OutputTransformForALowPeak) {
    expect_colors({FixedStyle::AcesOutput20, limits(20, REC709), Direction::Forward},
                  {{{0.18f, 0.18f, 0.18f}, {0.0675973967f, 0.0675974861f, 0.0675974637f}},
                   {{0.5f, 0.2f, 0.05f}, {0.217723638f, 0.0894691199f, 0.0587415248f}},
                   {{0.05f, 0.1f, 2}, {-0.000106754713f, 0.0123757515f, 0.0243533626f}},
                   {{10, 0.1f, 0.1f}, {0.200384244f, 0.194883227f, 0.194777742f}},
                   {{-0.1f, 0.3f, 0.02f}, {0.000152828521f, 0.00919131655f, 0.00483667245f}}});
    expect_colors({FixedStyle::AcesGamutCompression20, limits(20, REC709), Direction::Inverse},
                  {{{35, 20, 30}, {35.8802223f, 16.191227f, 30}},
                   {{60, 50, 120.5f}, {60, 0, 120.5f}},
                   {{20, 70, 359.5f}, {6.01166534f, 9.49583149f, 359.5f}}});
}

TEST_P(Aces2Functions, RgbToJmh) {
    const std::vector<double> parameters(REC709.begin(), REC709.end());
    expect_colors({FixedStyle::AcesRgbToJmh20, parameters, Direction::Forward},
                  {{{0.5f, 0.2f, 0.05f}, {51.6446342f, 26.5122414f, 56.1136551f}},
                   {{0.05f, 0.1f, 2}, {65.3812256f, 61.663372f, 275.081635f}},
                   {{10, 0.1f, 0.1f}, {146.262939f, 179.966095f, 25.3773441f}},
                   {{-0.1f, 0.3f, 0.02f}, {42.4231377f, 44.599411f, 153.224472f}},
                   {{-1, -1, -1}, {0, 0, 0}},
                   {{200, 150, 90}, {864.966797f, 97.2687302f, 73.0861816f}}});
    expect_colors({FixedStyle::AcesRgbToJmh20, parameters, Direction::Inverse},
                  {{{35, 20, 30}, {0.244273692f, 0.0706534684f, 0.0463714674f}},
                   {{60, 50, 120.5f}, {0.256100208f, 0.473023742f, -0.0392830968f}},
                   {{80, 30, 250}, {0.181425869f, 0.587596416f, 1.33376241f}},
                   {{20, 70, 359.5f}, {0.232843369f, -0.0381585807f, 0.0317229033f}},
                   {{95, 12, -60}, {0.920484245f, 0.806343436f, 1.17732275f}},
                   {{95, 12, 1020}, {0.920484245f, 0.806343436f, 1.17732275f}},
                   {{45, 0, 200}, {0.180523664f, 0.180523634f, 0.180523664f}}});
}

TEST_P(Aces2Functions, ToneScaleAndChromaCompression) {
    expect_colors({FixedStyle::AcesToneCompression20, {100}, Direction::Forward},
                  {{{35, 20, 30}, {24.6879711f, 19.0747356f, 30}},
                   {{60, 50, 120.5f}, {46.5886841f, 40.0816078f, 120.5f}},
                   {{80, 30, 250}, {59.7862053f, 16.933012f, 250}},
                   {{20, 70, 359.5f}, {9.9786005f, 26.7368031f, 359.5f}},
                   {{95, 12, -60}, {67.3935699f, 3.82896996f, 300}},
                   {{45, 0, 200}, {34.1309891f, 0, 200}}});
    expect_colors({FixedStyle::AcesToneCompression20, {1000}, Direction::Inverse},
                  {{{35, 20, 30}, {40.2547722f, 18.6838112f, 30}},
                   {{60, 50, 120.5f}, {61.3429718f, 50.3252411f, 120.5f}},
                   {{80, 30, 250}, {78.8214874f, 33.4738922f, 250}},
                   {{20, 70, 359.5f}, {27.6718178f, -68.0295792f, 359.5f}},
                   {{95, 12, -60}, {92.4799347f, 16.7850418f, 300}},
                   {{45, 0, 200}, {48.619381f, 0, 200}}});
}

TEST_P(Aces2Functions, GamutCompression) {
    expect_colors({FixedStyle::AcesGamutCompression20, limits(100, REC709), Direction::Forward},
                  {{{35, 20, 30}, {35, 20, 30}},
                   {{60, 50, 120.5f}, {60.2030678f, 40.0084381f, 120.5f}},
                   {{80, 30, 250}, {78.4990387f, 18.7045612f, 250}},
                   {{20, 70, 359.5f}, {22.3847351f, 34.5218887f, 359.5f}},
                   {{95, 12, -60}, {94.747406f, 5.00219297f, 300}},
                   {{-1, 12, 60}, {0, 0, 60}},
                   {{101, 12, 60}, {101, 0, 60}},
                   {{45, 0, 200}, {45, 0, 200}}});
    expect_colors({FixedStyle::AcesGamutCompression20, limits(1000, P3), Direction::Inverse},
                  {{{35, 20, 30}, {34.9999962f, 20, 30}},
                   {{20, 70, 359.5f}, {20.4472332f, 39.0614166f, 359.5f}},
                   {{95, 12, -60}, {95.0000076f, 12, 300}},
                   {{45, 0, 200}, {45, 0, 200}}});
}

TEST_P(Aces2Functions, BlackStaysBlack) {
    for (const auto style : {FixedStyle::AcesOutput20, FixedStyle::AcesGamutCompression20}) {
        for (const Direction direction : {Direction::Forward, Direction::Inverse}) {
            expect_colors({style, limits(100, REC709), direction},
                          {{{0, 0, 0}, {0, 0, 0}}, {{-0.0f, -0.0f, -0.0f}, {0, 0, 0}}});
        }
    }
    expect_colors({FixedStyle::AcesOutput20, limits(100, REC709), Direction::Inverse},
                  {{{-1, -1, -1}, {0, 0, 0}}, {{0.2f, -0.5f, -0.1f}, {0, 0, 0}}});
    expect_colors({FixedStyle::AcesToneCompression20, {100}, Direction::Inverse}, {{{0, 0, 0}, {0, 0, 0}}});
}

/// OpenColorIO 2.5.1 gives NaN here, where a rounding takes J above that of the peak luminance.
TEST_P(Aces2Functions, InverseIsFiniteBesideWhite) {
    const Pixel actual =
        apply_one(FixedFunction{FixedStyle::AcesOutput20, limits(100, REC709), Direction::Inverse},
                  {1.00000656f, 0.999997735f, 0.999997735f, 1});
    for (const float v : actual) {
        EXPECT_TRUE(std::isfinite(v));
    }
}

TEST_P(Aces2Functions, OutputTransformMakesNothingOfNaN) {
    const Single transform(FixedFunction{FixedStyle::AcesOutput20, limits(100, REC709), Direction::Forward});
    for (const float odd :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        const Pixel actual = transform({0.5f, odd, 0.5f, 1});
        EXPECT_TRUE(std::isnan(actual[0]) && std::isnan(actual[1]) && std::isnan(actual[2]));
        EXPECT_EQ(actual[3], 1);
    }
}

TEST(Aces2Tables, AreSharedAsLongAsTheyAreInUse) {
    auto first = share_aces2_gamut(100, REC709);
    EXPECT_EQ(share_aces2_gamut(100, REC709), first);
    EXPECT_NE(share_aces2_gamut(100, P3), first);
    EXPECT_NE(share_aces2_gamut(101, REC709), first);
    EXPECT_EQ(share_aces2_tone(100), share_aces2_tone(100)) << "each outlives the comparison";
    const std::weak_ptr<const Aces2> watched = first;
    first.reset();
    EXPECT_TRUE(watched.expired());
}

/// Those that a table for the tone curve alone does not have are not taken from it.
TEST(Aces2Tables, OfTheToneCurveAreSeparate) {
    const auto tone = share_aces2_tone(100);
    EXPECT_TRUE(tone->gamut.empty());
    EXPECT_FALSE(share_aces2_gamut(100, REC709)->gamut.empty());
}

TEST(Aces2Parameters, AreChecked) {
    const auto make = [](FixedStyle style, const std::vector<double>& parameters) {
        return Program({FixedFunction{style, parameters, Direction::Forward}});
    };
    EXPECT_THROW(make(FixedStyle::AcesToneCompression20, {0.5}), std::invalid_argument);
    EXPECT_THROW(make(FixedStyle::AcesToneCompression20, {10001}), std::invalid_argument);
    EXPECT_THROW(make(FixedStyle::AcesToneCompression20, {std::nan("")}), std::invalid_argument);
    EXPECT_THROW(make(FixedStyle::AcesToneCompression20, {100, 100}), std::invalid_argument);
    Chromaticities equal = REC709;
    equal[2] = equal[0];
    equal[3] = equal[1];
    EXPECT_THROW(make(FixedStyle::AcesOutput20, limits(100, equal)), std::invalid_argument);
    Chromaticities unknown = REC709;
    unknown[0] = std::nan("");
    EXPECT_THROW(make(FixedStyle::AcesOutput20, limits(100, unknown)), std::invalid_argument);
}

} // namespace
