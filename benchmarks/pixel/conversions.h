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

/// The conversions that images spend their time in: the built-in tables and their inverses, a CDL of either
/// configuration version, 3D tables, and the plain operations of camera encodings.
const std::vector<Conversion>& conversions();

/// Flags of the exact path, and of the one that the library takes by default.
library::ConstCPUProcessorRcPtr lossless(const library::ConstProcessorRcPtr& processor);
library::ConstCPUProcessorRcPtr by_default(const library::ConstProcessorRcPtr& processor);

/// The same conversion on the vector path.
std::shared_ptr<const pixel::Program> program_of(const Conversion& conversion);

} // namespace pixel_bench
