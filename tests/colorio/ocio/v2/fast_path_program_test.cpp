#include "colorio/ocio/v2/fast_path.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "tests/colorio/library_differences.h"
#include "tests/colorio/ocio/fast_path_guard.h"
#include "tests/colorio/ocio/test_configs.h"

namespace {

constexpr long WIDTH = 100;
constexpr long HEIGHT = 50;

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
    SKIP_WHERE_LISTED();
    EXPECT_TRUE(ocio::get_fast_path());
    EXPECT_TRUE(ocio::FastPath(make("sRGB", "linear")).program_for(WIDTH, HEIGHT));
    const FastPathGuard off(false);
    EXPECT_FALSE(ocio::FastPath(make("sRGB", "linear")).program_for(WIDTH, HEIGHT));
}

TEST_F(FastPathProgram, KeepsThePositionOfTheSwitchItWasMadeUnder) {
    SKIP_WHERE_LISTED();
    const ocio::FastPath made_on(make("sRGB", "linear"));
    const FastPathGuard off(false);
    EXPECT_TRUE(made_on.program_for(WIDTH, HEIGHT));
}

TEST_F(FastPathProgram, IsForPicturesThatAreWorthIt) {
    SKIP_WHERE_LISTED();
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
    SKIP_WHERE_LISTED();
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
