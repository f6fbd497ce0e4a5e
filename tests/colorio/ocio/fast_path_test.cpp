#include "colorio/ocio/processor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "tests/colorio/ocio/fast_path_guard.h"
#include "tests/colorio/ocio/test_configs.h"
#include "tests/data/golden_1x.h"

namespace {

constexpr long WIDTH = 100;
constexpr long HEIGHT = 50;
constexpr std::size_t PIXELS = WIDTH * HEIGHT;

double tolerance(float value) {
    return 2e-6 + 1e-5 * std::abs(static_cast<double>(value));
}

/// The recorded inputs, over and over.
std::vector<float> make_image(std::size_t channels) {
    std::vector<float> image(PIXELS * channels, 7.0f);
    for (std::size_t i = 0; i < PIXELS; ++i)
        std::copy_n(golden::INPUTS[i % golden::INPUT_COUNT], std::min<std::size_t>(channels, 4),
                    &image[i * channels]);
    return image;
}

void expect_recorded_values(const std::vector<float>& image, std::size_t channels, const golden::Pair& pair) {
    SCOPED_TRACE(std::string(pair.source) + " to " + pair.destination + ", " + std::to_string(channels) +
                 " channels");
    for (std::size_t i = 0; i < PIXELS; ++i) {
        const float* pixel = &image[i * channels];
        for (int channel = 0; channel < 3; ++channel) {
            const float expected = pair.outputs[i % golden::INPUT_COUNT][channel];
            if (std::isfinite(expected))
                ASSERT_NEAR(pixel[channel], expected, tolerance(expected)) << "pixel " << i;
            else
                ASSERT_EQ(pixel[channel], expected) << "pixel " << i;
        }
        for (std::size_t channel = 3; channel < channels; ++channel)
            ASSERT_EQ(pixel[channel], channel == 3 ? golden::INPUTS[i % golden::INPUT_COUNT][3] : 7.0f);
    }
}

void expect_recorded_images(const ocio::ConstConfigRcPtr& config, const golden::Pair& pair) {
    const auto processor = ocio::get_processor(config, pair.source, pair.destination);
    for (const std::size_t channels : {3u, 4u, 6u}) {
        std::vector<float> image = make_image(channels);
        processor->apply(ocio::PackedImageDesc{image.data(), WIDTH, HEIGHT, static_cast<long>(channels)});
        expect_recorded_values(image, channels, pair);
    }
}

void expect_recorded_planes(const ocio::ConstConfigRcPtr& config, const golden::Pair& pair) {
    const std::vector<float> packed = make_image(4);
    std::vector<float> planes(PIXELS * 4);
    for (std::size_t i = 0; i < planes.size(); ++i)
        planes[i % 4 * PIXELS + i / 4] = packed[i];
    float* first = planes.data();
    ocio::get_processor(config, pair.source, pair.destination)
        ->apply(ocio::PlanarImageDesc{first, first + PIXELS, first + 2 * PIXELS, first + 3 * PIXELS, WIDTH,
                                      HEIGHT});
    std::vector<float> again(PIXELS * 4);
    for (std::size_t i = 0; i < planes.size(); ++i)
        again[i] = planes[i % 4 * PIXELS + i / 4];
    expect_recorded_values(again, 4, pair);
}

/// A row at a time.
void expect_recorded_rows(const ocio::ConstConfigRcPtr& config, const golden::Pair& pair) {
    const auto processor = ocio::get_processor(config, pair.source, pair.destination);
    std::vector<float> image = make_image(4);
    for (long row = 0; row < HEIGHT; ++row)
        processor->apply(
            ocio::PackedImageDesc{&image[static_cast<std::size_t>(row * WIDTH) * 4], WIDTH, 1, 4});
    expect_recorded_values(image, 4, pair);
}

class FastPaths : public testing::TestWithParam<bool> {};

TEST_P(FastPaths, ImagesGiveWhatTheOldLibraryGave) {
    const FastPathGuard position(GetParam());
    const TempDir folder;
    const auto config = test_configs::create_built_in_like(folder);
    const auto corrections = test_configs::create_corrections();
    for (const golden::Pair& pair : golden::BUILT_IN_PAIRS) {
        expect_recorded_images(config, pair);
        expect_recorded_planes(config, pair);
        expect_recorded_rows(config, pair);
    }
    for (const golden::Pair& pair : golden::CORRECTION_PAIRS) {
        expect_recorded_images(corrections, pair);
        expect_recorded_planes(corrections, pair);
    }
}

INSTANTIATE_TEST_SUITE_P(OnAndOff, FastPaths, testing::Bool());

} // namespace
