#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

#include "pixel/chain.h"

// This program replaces the global allocation functions to count their calls. They are not inlined:
// optimizing compilers would then warn that what new returns is given to free.

namespace {

std::atomic<long> allocations{0};

} // namespace

[[gnu::noinline]] void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size > 0 ? size : 1)) {
        return memory;
    }
    throw std::bad_alloc();
}

[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++allocations;
    return std::malloc(size > 0 ? size : 1);
}

[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

using namespace pixel;

Table ramp_entries(std::size_t count) {
    std::vector<float> values(count);
    for (std::size_t i = 0; i < count; ++i) {
        values[i] = static_cast<float>(i) / static_cast<float>(count);
    }
    return std::make_shared<const std::vector<float>>(std::move(values));
}

const Rgbm ONE{1, 1, 1, 1}, SOME{1.1, 0.9, 1, 1.2};

RgbCurve curve(GradingStyle style, Direction direction) {
    const std::vector<ControlPoint> points{{0, 0.1f, 0}, {0.5f, 0.6f, 0}, {1, 1, 0}};
    return {style, false, {points, points, points, points}, direction};
}

const std::vector<ControlPoint> RISING{{0, 0, 0}, {0.5f, 0.6f, 0}, {1, 1, 0}},
    GAIN{{0.1f, 1.1f, 0}, {0.6f, 0.9f, 0}};
const std::array<std::vector<ControlPoint>, 8> HUE_CURVES{RISING, GAIN,   GAIN, GAIN,
                                                          RISING, RISING, GAIN, GAIN};

OpChain all_kinds() {
    return {
        FixedFunction{FixedStyle::AcesGamutCompression13,
                      {1.147, 1.264, 1.312, 0.815, 0.803, 0.880, 1.2},
                      Direction::Forward},
        curve(GradingStyle::Log, Direction::Forward),
        curve(GradingStyle::Linear, Direction::Inverse),
        ExposureContrast{ExposureStyle::Video, 1, 1.1, 1, 0.18, 0.088, 0.435, Direction::Forward},
        GradingPrimary{GradingStyle::Log, ONE, SOME, SOME, ONE, ONE, ONE, ONE, 1.2, 0, 0, 1, 0, 2, false,
                       Direction::Forward},
        HueCurve{GradingStyle::Linear, true, HUE_CURVES, Direction::Inverse},
        FixedFunction{FixedStyle::AcesOutput20,
                      {100, 0.64, 0.33, 0.30, 0.60, 0.15, 0.06, 0.3127, 0.3290},
                      Direction::Inverse},
        GradingTone{GradingStyle::Log,
                    {SOME, 0.4, 0.4},
                    {SOME, 0.5, 0},
                    {SOME, 0.4, 0.6},
                    {SOME, 0.3, 1},
                    {SOME, 0.4, 0.5},
                    1.2,
                    Direction::Forward},
        Lut1D{InputDomain::Unit, 64, 1, ramp_entries(64), Direction::Forward, TableArithmetic::Stepwise,
              true},
        Lut3D{5, CubeOrder::RedFastest, CubeInterpolation::Trilinear, ramp_entries(375),
              TableArithmetic::Stepwise, Direction::Inverse},
        Matrix{{1, 0.5, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}, {}},
        Cdl{{1, 2, 1}, {0, 0, 0}, {2, 1, 1}, 0.5, CdlStyle::Clamped, Direction::Forward},
        Exponent{{2, 2, 2, 1}, Negatives::Clamp, Direction::Forward},
        LinearToeCurve{{2, 2, 2, 1}, {0.1, 0.1, 0.1, 0}, Negatives::Linear, Direction::Inverse},
        Log{2, Direction::Inverse},
        Lut1D{InputDomain::Unit, 64, 1, ramp_entries(64), Direction::Forward},
        Lut1D{InputDomain::Unit, 64, 1, ramp_entries(64), Direction::Inverse},
        Lut1D{InputDomain::Half, 65536, 1, ramp_entries(65536), Direction::Forward},
        Lut1D{InputDomain::Half, 65536, 1, ramp_entries(65536), Direction::Inverse},
        Lut3D{5, CubeOrder::RedFastest, CubeInterpolation::Trilinear, ramp_entries(375)},
        Lut3D{5, CubeOrder::RedFastest, CubeInterpolation::Tetrahedral, ramp_entries(375)},
        Range{0.1, 0.9, 0.0, 1.0},
    };
}

TEST(Allocations, CountHere) {
    const long before = allocations;
    const std::vector<float> memory(10);
    EXPECT_GT(allocations, before);
}

TEST(Allocations, AreNoneWhilePixelsAreConverted) {
    const Program program(all_kinds());
    constexpr std::size_t WIDTH = 700, HEIGHT = 3, SIZE = WIDTH * HEIGHT;
    std::vector<float> pixels(7 * SIZE, 0.25f);
    float* p = pixels.data();
    const long before = allocations;
    program.apply_pixel(p);
    program.apply_packed(p, WIDTH, HEIGHT, 4);
    program.apply_packed(p, WIDTH, HEIGHT, 7);
    program.apply_packed(p, PackedLayout{WIDTH - 1, HEIGHT, 3, 0, 3 * WIDTH});
    program.apply_planar(p, p + SIZE, p + 2 * SIZE, p + 3 * SIZE, WIDTH, HEIGHT);
    EXPECT_EQ(allocations, before);
}

} // namespace
