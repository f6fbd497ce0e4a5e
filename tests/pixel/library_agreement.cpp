#include "library_agreement.h"

#include <cmath>
#include <string>
#include <vector>

#include "colorio/ocio/v2/pixel_bridge.h"

namespace pixel_test {

namespace {

constexpr std::size_t PIXELS = 3000;

bool nearer(float ours, float theirs, double exact) {
    return std::fabs(static_cast<double>(ours) - exact) <= std::fabs(static_cast<double>(theirs) - exact);
}

} // namespace

library::ConstProcessorRcPtr processor_of(const library::ConstTransformRcPtr& transform, int version) {
    const library::ConfigRcPtr config = library::Config::CreateRaw()->createEditableCopy();
    config->setMajorVersion(static_cast<unsigned int>(version));
    return config->getProcessor(transform);
}

library::ConstCPUProcessorRcPtr lossless(const library::ConstProcessorRcPtr& processor) {
    return processor->getOptimizedCPUProcessor(static_cast<library::OptimizationFlags>(
        library::OPTIMIZATION_LOSSLESS | library::OPTIMIZATION_NO_DYNAMIC_PROPERTIES));
}

testing::AssertionResult agrees(const library::ConstProcessorRcPtr& processor, const Exact& exact) {
    std::string why_not;
    const auto chain = ocio::translate(processor, &why_not);
    if (!chain) {
        return testing::AssertionFailure() << "not taken: " << why_not;
    }
    const pixel::Program program(*chain);
    const std::vector<Pixel> in = mixed_pixels(PIXELS, 97);
    std::vector<Pixel> ours = in, theirs = in;
    program.apply_packed(ours[0].data(), PIXELS, 1, 4);
    library::PackedImageDesc image(theirs[0].data(), PIXELS, 1, 4);
    lossless(processor)->apply(image);
    for (std::size_t i = 0; i < PIXELS; ++i) {
        for (std::size_t c = 0; c < 4; ++c) {
            if (is_near(ours[i][c], static_cast<double>(theirs[i][c]))) {
                continue;
            }
            if (exact && c < 3 && nearer(ours[i][c], theirs[i][c], exact(in[i])[c])) {
                continue;
            }
            auto failure = testing::AssertionFailure();
            failure << "channel " << c << " of (" << in[i][0] << ", " << in[i][1] << ", " << in[i][2] << ", "
                    << in[i][3] << "): " << ours[i][c] << " for the library's " << theirs[i][c];
            for (const std::string& words : program.describe().simplified) {
                failure << "\n" << words;
            }
            return failure;
        }
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult agrees(const library::ConstTransformRcPtr& transform, int version,
                                const Exact& exact) {
    return agrees(processor_of(transform, version), exact);
}

} // namespace pixel_test
