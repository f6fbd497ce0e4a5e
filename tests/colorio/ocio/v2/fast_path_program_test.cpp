#include "colorio/ocio/v2/fast_path.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <utility>
#include <vector>

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
    EXPECT_TRUE(ocio::get_fast_path());
    EXPECT_TRUE(ocio::FastPath(make("sRGB", "linear")).program_for(WIDTH, HEIGHT));
    const FastPathGuard off(false);
    EXPECT_FALSE(ocio::FastPath(make("sRGB", "linear")).program_for(WIDTH, HEIGHT));
}

TEST_F(FastPathProgram, KeepsThePositionOfTheSwitchItWasMadeUnder) {
    const ocio::FastPath made_on(make("sRGB", "linear"));
    const FastPathGuard off(false);
    EXPECT_TRUE(made_on.program_for(WIDTH, HEIGHT));
}

TEST_F(FastPathProgram, IsMadeForAPictureThatIsWorthIt) {
    for (const auto& [width, height] : {std::pair(4095L, 1L), std::pair(1L, 4095L), std::pair(64L, 63L)})
        EXPECT_FALSE(ocio::FastPath(make("linear", "sRGB")).program_for(width, height)) << width;
    for (const auto& [width, height] : {std::pair(4096L, 1L), std::pair(1L, 4096L), std::pair(64L, 64L)})
        EXPECT_TRUE(ocio::FastPath(make("linear", "sRGB")).program_for(width, height)) << width;
    EXPECT_TRUE(ocio::FastPath(make("linear", "sRGB")).program_for(1L << 62, 4)) << "the product overflows";
}

TEST_F(FastPathProgram, IsMadeWhenManySmallPicturesAreWorthItTogether) {
    const ocio::FastPath fast_path(make("linear", "sRGB"));
    for (int line = 0; line < 2; ++line)
        EXPECT_FALSE(fast_path.program_for(1920, 1)) << line;
    EXPECT_TRUE(fast_path.program_for(1920, 1));
    EXPECT_TRUE(fast_path.program_for(1, 1)) << "once it is there, calls of any size have it";
}

TEST_F(FastPathProgram, IsMadeForThePixelsOfAllThreadsTogether) {
    const ocio::FastPath fast_path(make("linear", "sRGB"));
    std::atomic<int> left_to_library{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (int call = 0; call < 1024; ++call)
                left_to_library += fast_path.program_for(2, 1) ? 0 : 1;
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(left_to_library, 2047)
        << "the call that reaches the 4096th pixel is the first to have the program";
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
