#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "colorio/ocio/sanity_check.h"
#include "colorio/ocio/v2/pixel_bridge.h"
#include "rounding_agreement.h"

using namespace pixel_test;

namespace {

constexpr std::size_t PIXELS = 6000;

bool is_finite(const Pixel& pixel) {
    return std::all_of(pixel.begin(), pixel.end(), [](float v) { return std::isfinite(v); });
}

/// Ordinary, awkward and huge colors of scenes, without NaN and infinity.
std::vector<Pixel> scene_colors() {
    std::vector<Pixel> pixels = mixed_pixels(PIXELS, 41);
    pixels.erase(std::remove_if(pixels.begin(), pixels.end(), [](const Pixel& p) { return !is_finite(p); }),
                 pixels.end());
    std::mt19937 generator(43);
    std::uniform_real_distribution<float> linear(-1, 100), stops(-16, 8), part(0.98f, 1.02f);
    for (std::size_t i = 0; i < PIXELS; ++i) {
        const float gray = std::exp2(stops(generator));
        pixels.push_back({linear(generator), linear(generator), linear(generator), 1});
        pixels.push_back(
            {std::exp2(stops(generator)), std::exp2(stops(generator)), std::exp2(stops(generator)), 1});
        pixels.push_back({gray * part(generator), gray * part(generator), gray * part(generator), 1});
    }
    return pixels;
}

/// Colors of displays up to `peak`.
std::vector<Pixel> display_colors(float peak) {
    std::mt19937 generator(47);
    std::uniform_real_distribution<float> value(0.001f, 0.999f);
    std::vector<Pixel> pixels;
    for (std::size_t i = 0; i < 3 * PIXELS; ++i) {
        pixels.push_back({peak * value(generator), peak * value(generator), peak * value(generator), 1});
    }
    return pixels;
}

/// The inverse magnifies roundings near white and near the boundary of the gamut: functions of one unit in
/// the last place move 2 to 5 % of the pixels beyond the tolerance, and single ones by 2e-3.
void expect_inverse(const RoundingDifference& found, const std::string& words) {
    EXPECT_EQ(found.not_numbers, 0u) << words;
    EXPECT_LE(found.beyond, found.pixels / 1000) << words << ": " << found.words;
    EXPECT_LE(found.largest, 200) << words << ": " << found.words;
}

void expect_forward(const RoundingDifference& found, const std::string& words) {
    EXPECT_EQ(found.not_numbers, 0u) << words;
    EXPECT_EQ(found.beyond, 0u) << words << ": " << found.words;
}

constexpr double REC709[] = {0.64, 0.33, 0.30, 0.60, 0.15, 0.06, 0.3127, 0.3290};
constexpr double P3_D60[] = {0.680, 0.320, 0.265, 0.690, 0.150, 0.060, 0.32168, 0.33767};
constexpr double REC2020[] = {0.708, 0.292, 0.170, 0.797, 0.131, 0.046, 0.3127, 0.3290};

library::ConstProcessorRcPtr function(library::FixedFunctionStyle style,
                                      const std::vector<double>& parameters,
                                      library::TransformDirection direction) {
    const auto transform =
        library::FixedFunctionTransform::Create(style, parameters.data(), parameters.size());
    transform->setDirection(direction);
    return processor_of(transform);
}

std::vector<double> limits(double peak, const double (&primaries)[8]) {
    std::vector<double> parameters{peak};
    parameters.insert(parameters.end(), primaries, primaries + 8);
    return parameters;
}

TEST(LibraryAces2Agreement, OutputTransforms) {
    for (const auto& [peak, primaries] :
         {std::pair(100.0, &REC709), std::pair(225.0, &P3_D60), std::pair(500.0, &REC2020),
          std::pair(4000.0, &REC2020), std::pair(20.0, &REC709), std::pair(10000.0, &REC2020)}) {
        const auto parameters = limits(peak, *primaries);
        constexpr auto STYLE = library::FIXED_FUNCTION_ACES_OUTPUT_TRANSFORM_20;
        const std::string words = "peak luminance " + std::to_string(peak);
        const RoundingDifference forward =
            rounding_difference(function(STYLE, parameters, library::TRANSFORM_DIR_FORWARD), scene_colors());
        // Below 47 nit the table of hues jumps, so that the last place of a hue can decide about much.
        if (peak < 47) {
            EXPECT_LE(forward.beyond, forward.pixels / 5000) << words << ": " << forward.words;
            EXPECT_LE(forward.largest, 200) << words << ": " << forward.words;
        } else {
            expect_forward(forward, words);
        }
        const auto inverse = function(STYLE, parameters, library::TRANSFORM_DIR_INVERSE);
        expect_inverse(rounding_difference(inverse, display_colors(static_cast<float>(peak) / 100)), words);
        EXPECT_EQ(rounding_difference(inverse, scene_colors()).not_numbers, 0u) << words;
    }
}

/// J, M and hue up to and beyond the limits.
std::vector<Pixel> appearances(float max_j) {
    std::mt19937 generator(53);
    std::uniform_real_distribution<float> j(0, 1.1f * max_j), m(0, 0.8f * max_j), hue(-400, 800);
    std::vector<Pixel> pixels;
    for (std::size_t i = 0; i < PIXELS; ++i) {
        pixels.push_back({j(generator), m(generator), hue(generator), 1});
        pixels.push_back({j(generator), m(generator), std::floor(hue(generator)), 1});
    }
    return pixels;
}

TEST(LibraryAces2Agreement, Parts) {
    constexpr auto FORWARD = library::TRANSFORM_DIR_FORWARD, INVERSE = library::TRANSFORM_DIR_INVERSE;
    for (const auto& [peak, max_j] : {std::pair(100.0, 100.0f), std::pair(1000.0, 283.0f)}) {
        const std::string words = "peak luminance " + std::to_string(peak);
        constexpr auto TONE = library::FIXED_FUNCTION_ACES_TONESCALE_COMPRESS_20;
        expect_forward(rounding_difference(function(TONE, {peak}, FORWARD), appearances(max_j)), words);
        expect_inverse(rounding_difference(function(TONE, {peak}, INVERSE), appearances(0.9f * max_j)),
                       words);
        constexpr auto GAMUT = library::FIXED_FUNCTION_ACES_GAMUT_COMPRESS_20;
        const auto parameters = limits(peak, REC709);
        expect_forward(rounding_difference(function(GAMUT, parameters, FORWARD), appearances(max_j)), words);
        expect_inverse(rounding_difference(function(GAMUT, parameters, INVERSE), appearances(0.9f * max_j)),
                       words);
    }
    constexpr auto JMH = library::FIXED_FUNCTION_ACES_RGB_TO_JMH_20;
    const std::vector<double> primaries(REC709, REC709 + 8);
    expect_forward(rounding_difference(function(JMH, primaries, FORWARD), display_colors(1)), "RGB to JMh");
    expect_forward(rounding_difference(function(JMH, primaries, INVERSE), appearances(100)), "JMh to RGB");
}

void print(const char* direction, const RoundingDifference& found) {
    std::printf("%s: %zu pixels, %zu equal, %zu beyond the tolerance, largest %.3g of it\n", direction,
                found.pixels, found.equal, found.beyond, found.largest);
}

TEST(LibraryAces2Agreement, EveryViewOfTheBuiltInConfigs) {
    RoundingDifference forward, inverse;
    std::size_t views = 0;
    const auto& registry = library::BuiltinConfigRegistry::Get();
    for (std::size_t i = 0; i < registry.getNumBuiltinConfigs(); ++i) {
        const std::string name = registry.getBuiltinConfigName(i);
        const auto config = library::Config::CreateFromBuiltinConfig(name.c_str());
        for (const ocio::DisplayViews& display : ocio::every_display(config)) {
            for (const std::string& view : display.views) {
                const auto processor = [&](library::TransformDirection direction) {
                    return config->getProcessor(library::ROLE_SCENE_LINEAR, display.name.c_str(),
                                                view.c_str(), direction);
                };
                const auto chain = ocio::translate(processor(library::TRANSFORM_DIR_FORWARD), nullptr);
                if (!chain || !has_rounded_steps(*chain)) {
                    continue;
                }
                const std::string words = name + ", " + display.name + ", " + view;
                const RoundingDifference there =
                    rounding_difference(processor(library::TRANSFORM_DIR_FORWARD), scene_colors());
                // Encodings such as PQ magnify differences near black.
                EXPECT_EQ(there.not_numbers, 0u) << words;
                EXPECT_LE(there.beyond, there.pixels / 5000) << words << ": " << there.words;
                EXPECT_LE(there.largest, 10) << words << ": " << there.words;
                forward.join(there);
                ++views;
                const RoundingDifference back =
                    rounding_difference(processor(library::TRANSFORM_DIR_INVERSE), display_colors(1));
                expect_inverse(back, words + ", inverse");
                inverse.join(back);
            }
        }
    }
    EXPECT_GT(views, 0u);
    std::printf("%zu views\n", views);
    print("forward", forward);
    print("inverse", inverse);
}

} // namespace
