#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "colorio/ocio/types.h"
#include "pixel/ops.h"
#include "samples.h"

namespace pixel_test {

namespace library = ocio::library;

/// The library's processor for a transform in a configuration of version 1 or 2.
library::ConstProcessorRcPtr processor_of(const library::ConstTransformRcPtr& transform, int version = 2);

/// The flags that the module's conversions run under.
constexpr auto LOSSLESS = static_cast<library::OptimizationFlags>(
    library::OPTIMIZATION_LOSSLESS | library::OPTIMIZATION_NO_DYNAMIC_PROPERTIES);

/// The library's own CPU path, without loss.
library::ConstCPUProcessorRcPtr lossless(const library::ConstProcessorRcPtr& processor);

/// How the values of pixel/ compare with the library's.
struct Agreement {
    std::size_t values = 0;
    /// Largest difference of those within the tolerance, as a share of it: of 1e-6 of the library's value, or
    /// of 1e-7 where that is more.
    double largest = 0;
    /// Values beyond the tolerance that lie nearer than the library's to the value in double precision, and
    /// no further from that than allowed; and how far the library's and ours are from it at most, in
    /// tolerances.
    std::size_t nearer = 0;
    double library_error = 0, own_error = 0;
    /// Values beyond the tolerance at the end of a chain each of whose operations is within it, or nearer, on
    /// the values that arrive there: the chain has magnified roundings. How many of them lie nearer to double
    /// precision than the library's, and the largest difference in tolerances.
    std::size_t magnified = 0, magnified_nearer = 0;
    double largest_magnified = 0;
    /// Values that are neither, and words for the first of them.
    std::size_t failures = 0;
    std::string first_failure;

    void join(const Agreement& other);
};

/// Runs pixels through the library and through the chain that is its translation, there on every instruction
/// set that this processor has. Pixels that get other bits alone, or in planes, than in a row are failures. A
/// value that differs from the library's may be off from double precision by `own_limit` tolerances, where
/// the library's is off by more.
Agreement compare(const library::ConstProcessorRcPtr& processor, const pixel::OpChain& chain,
                  const std::vector<Pixel>& in, double own_limit = 1);

/// The simplified operations, each on a separate line.
std::string words_of(const pixel::OpChain& chain);

/// Success when the chain is supported and no awkward or random pixel fails.
testing::AssertionResult agrees(const library::ConstProcessorRcPtr& processor, double own_limit = 1);
testing::AssertionResult agrees(const library::ConstTransformRcPtr& transform, int version = 2,
                                double own_limit = 1);

} // namespace pixel_test
