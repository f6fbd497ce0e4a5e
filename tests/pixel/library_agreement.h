#pragma once

#include <array>
#include <functional>

#include <gtest/gtest.h>

#include "colorio/ocio/types.h"
#include "samples.h"

namespace pixel_test {

namespace library = ocio::library;

/// The library's processor for a transform in a configuration of version 1 or 2.
library::ConstProcessorRcPtr processor_of(const library::ConstTransformRcPtr& transform, int version = 2);

/// The library's own CPU path, without loss.
library::ConstCPUProcessorRcPtr lossless(const library::ConstProcessorRcPtr& processor);

/// Red, green and blue in double precision.
using Exact = std::function<std::array<double, 3>(const Pixel&)>;

/// Runs awkward and random pixels through the library and through pixel/, there on every instruction set that
/// this processor has. Success when every value differs by
/// at most 1e-6 of the library's or 1e-7, or, where `exact` is given, lies no farther from the exact value
/// than the library's.
testing::AssertionResult agrees(const library::ConstProcessorRcPtr& processor, const Exact& exact = nullptr);
testing::AssertionResult agrees(const library::ConstTransformRcPtr& transform, int version = 2,
                                const Exact& exact = nullptr);

} // namespace pixel_test
