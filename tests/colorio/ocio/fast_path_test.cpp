#include "colorio/ocio/v2/fast_path.h"

#include <gtest/gtest.h>

#include <cmath>
#include <thread>
#include <vector>

#include "colorio/ocio/processor.h"
#include "tests/colorio/ocio/test_configs.h"
#include "tests/data/golden_1x.h"

namespace {

constexpr long WIDTH = 100;
constexpr long HEIGHT = 50;
constexpr std::size_t PIXELS = WIDTH * HEIGHT;

/// Gives the switch its old position back.
class SwitchGuard {
public:
    explicit SwitchGuard(bool enabled) : before_(ocio::get_fast_path()) { ocio::set_fast_path(enabled); }
    ~SwitchGuard() { ocio::set_fast_path(before_); }
    SwitchGuard(const SwitchGuard&) = delete;
    SwitchGuard& operator=(const SwitchGuard&) = delete;

private:
    bool before_;
};

double tolerance(float value) {
    return 2e-6 + 1e-5 * std::abs(static_cast<double>(value));
}

/// The recorded inputs, over and over.
std::vector<float> make_picture(std::size_t channels) {
    std::vector<float> picture(PIXELS * channels, 7.0f);
    for (std::size_t i = 0; i < PIXELS; ++i)
        std::copy_n(golden::INPUTS[i % golden::INPUT_COUNT], std::min<std::size_t>(channels, 4),
                    &picture[i * channels]);
    return picture;
}

void expect_recorded_values(const std::vector<float>& picture, std::size_t channels,
                            const golden::Pair& pair) {
    SCOPED_TRACE(std::string(pair.source) + " to " + pair.destination + ", " + std::to_string(channels) +
                 " channels");
    for (std::size_t i = 0; i < PIXELS; ++i) {
        const float* pixel = &picture[i * channels];
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

void expect_recorded_pictures(const ocio::ConstConfigRcPtr& config, const golden::Pair& pair) {
    const auto processor = ocio::get_processor(config, pair.source, pair.destination);
    for (const std::size_t channels : {3u, 4u, 6u}) {
        std::vector<float> picture = make_picture(channels);
        processor->apply(ocio::PackedImageDesc{picture.data(), WIDTH, HEIGHT, static_cast<long>(channels)});
        expect_recorded_values(picture, channels, pair);
    }
}

void expect_recorded_planes(const ocio::ConstConfigRcPtr& config, const golden::Pair& pair) {
    const std::vector<float> packed = make_picture(4);
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

class FastPaths : public testing::TestWithParam<bool> {};

TEST_P(FastPaths, PicturesGiveWhatTheOldLibraryGave) {
    const SwitchGuard position(GetParam());
    const TempDir folder;
    const auto config = test_configs::create_built_in_like(folder);
    const auto corrections = test_configs::create_corrections();
    for (const golden::Pair& pair : golden::BUILT_IN_PAIRS) {
        expect_recorded_pictures(config, pair);
        expect_recorded_planes(config, pair);
    }
    for (const golden::Pair& pair : golden::CORRECTION_PAIRS) {
        expect_recorded_pictures(corrections, pair);
        expect_recorded_planes(corrections, pair);
    }
}

INSTANTIATE_TEST_SUITE_P(OnAndOff, FastPaths, testing::Bool());

/// The library's processor of a conversion of the built-in kind.
class FastPathProgram : public testing::Test {
protected:
    ocio::library::ConstProcessorRcPtr make(const char* source, const char* destination) {
        return config_->getProcessor(source, destination);
    }

    TempDir folder_;
    ocio::ConfigRcPtr config_ = test_configs::create_built_in_like(folder_);
};

TEST_F(FastPathProgram, IsOnUnlessSwitchedOff) {
    EXPECT_TRUE(ocio::get_fast_path());
    EXPECT_TRUE(ocio::FastPath(make("sRGB", "linear")).program_for(WIDTH, HEIGHT));
    const SwitchGuard off(false);
    EXPECT_FALSE(ocio::FastPath(make("sRGB", "linear")).program_for(WIDTH, HEIGHT));
}

TEST_F(FastPathProgram, KeepsThePositionOfTheSwitchItWasMadeUnder) {
    const ocio::FastPath made_on(make("sRGB", "linear"));
    const SwitchGuard off(false);
    EXPECT_TRUE(made_on.program_for(WIDTH, HEIGHT));
}

TEST_F(FastPathProgram, IsForPicturesThatAreWorthIt) {
    const ocio::FastPath fast_path(make("linear", "sRGB"));
    EXPECT_FALSE(fast_path.program_for(1, 1));
    EXPECT_FALSE(fast_path.program_for(4095, 1));
    EXPECT_FALSE(fast_path.program_for(1, 4095));
    EXPECT_TRUE(fast_path.program_for(64, 64));
    EXPECT_TRUE(fast_path.program_for(1L << 62, 4)) << "sizes whose product overflows";
}

TEST_F(FastPathProgram, IsAbsentForOperationsThatItDoesNotKnow) {
    const auto function =
        ocio::library::FixedFunctionTransform::Create(ocio::library::FIXED_FUNCTION_ACES_GLOW_10);
    EXPECT_FALSE(ocio::FastPath(config_->getProcessor(function)).program_for(WIDTH, HEIGHT));
}

TEST_F(FastPathProgram, IsMadeOnceForAllThreads) {
    const ocio::FastPath fast_path(make("linear", "sRGB"));
    std::vector<const pixel::Program*> seen(4);
    std::vector<std::thread> threads;
    for (auto& program : seen)
        threads.emplace_back([&] { program = fast_path.program_for(WIDTH, HEIGHT); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_TRUE(seen[0]);
    for (const auto* program : seen)
        EXPECT_EQ(program, seen[0]);
}

} // namespace
