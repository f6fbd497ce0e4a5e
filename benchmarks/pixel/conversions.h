#pragma once

#include <memory>
#include <vector>

#include "colorio/ocio/types.h"
#include "pixel/chain.h"

namespace pixel_bench {

namespace library = ocio::library;

/// The two color spaces of each conversion's configuration.
constexpr char SOURCE[] = "source";
constexpr char DESTINATION[] = "destination";

struct Conversion {
    const char* name;
    library::ConstConfigRcPtr config;
    library::ConstProcessorRcPtr processor; ///< from SOURCE to DESTINATION
};

/// The most frequent conversions of images: the built-in LUTs and their inverses, a CDL of either config
/// version, 3D LUTs, and the plain operations of camera encodings.
const std::vector<Conversion>& conversions();

/// Flags for exact results, and OpenColorIO's default flags.
library::ConstCPUProcessorRcPtr lossless(const library::ConstProcessorRcPtr& processor);
library::ConstCPUProcessorRcPtr by_default(const library::ConstProcessorRcPtr& processor);

/// The same conversion with the SIMD code.
std::shared_ptr<const pixel::Program> program_of(const Conversion& conversion);

} // namespace pixel_bench
