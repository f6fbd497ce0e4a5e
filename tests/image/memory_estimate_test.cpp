#include "image/memory_estimate.h"

#include <gtest/gtest.h>

namespace {

constexpr std::uint64_t PIXELS = 100 * 50;

OIIO::ImageSpec make_spec(OIIO::TypeDesc type) {
    OIIO::ImageSpec spec(100, 50, 4, type);
    spec.deep = true;
    return spec;
}

image::PartPlan make_plan(OIIO::TypeDesc type) {
    image::PartPlan plan;
    plan.spec = make_spec(type);
    return plan;
}

/// Of which 24 bytes and 4 pointers for each pixel.
constexpr std::uint64_t COUNTS = PIXELS * (24 + 4 * sizeof(void*));

TEST(MemoryEstimates, OfDeepPartsHaveFourCopiesOfTheSamples) {
    const OIIO::ImageSpec half = make_spec(OIIO::TypeHalf);
    EXPECT_EQ(image::estimate_deep_memory(half, 0, make_plan(OIIO::TypeHalf)), COUNTS);
    EXPECT_EQ(image::estimate_deep_memory(half, 8000000, make_plan(OIIO::TypeHalf)), COUNTS + 32000000);
    EXPECT_EQ(image::estimate_deep_memory(half, 8000000, make_plan(OIIO::TypeFloat)), COUNTS + 48000000)
        << "two of them are twice as large";
}

TEST(MemoryEstimates, OfDeepPartsAreLargeForSizesThatNoFileHas) {
    EXPECT_GT(
        image::estimate_deep_memory(make_spec(OIIO::TypeHalf), ~std::uint64_t{0}, make_plan(OIIO::TypeHalf)),
        std::uint64_t{1} << 62);
}

TEST(MemoryEstimates, OfAlphaCountItsWholePartWhileItIsRead) {
    const OIIO::ImageSpec spec(100, 50, 4, OIIO::TypeHalf);
    EXPECT_EQ(image::estimate_alpha_memory(spec, "openexr"), PIXELS * 4 * 2);
    EXPECT_EQ(image::estimate_alpha_memory(spec, "an unknown format"), PIXELS * 4 * 2 * 2);
    EXPECT_EQ(image::get_alpha_bytes(spec), PIXELS * 4);
}

} // namespace
