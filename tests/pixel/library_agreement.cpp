#include "library_agreement.h"

#include <cmath>
#include <string>
#include <vector>

#include "colorio/ocio/v2/pixel_bridge.h"
#include "every_target.h"

namespace pixel_test {

namespace {

constexpr std::size_t PIXELS = 3000;

bool nearer(float ours, float theirs, double exact) {
    return std::fabs(static_cast<double>(ours) - exact) <= std::fabs(static_cast<double>(theirs) - exact);
}

testing::AssertionResult same_pixels(const std::vector<Pixel>& in, const std::vector<Pixel>& ours,
                                     const std::vector<Pixel>& theirs, const Exact& exact) {
    for (std::size_t i = 0; i < in.size(); ++i) {
        for (std::size_t c = 0; c < 4; ++c) {
            if (is_near(ours[i][c], static_cast<double>(theirs[i][c])) ||
                (exact && c < 3 && nearer(ours[i][c], theirs[i][c], exact(in[i])[c]))) {
                continue;
            }
            return testing::AssertionFailure()
                   << "channel " << c << " of (" << in[i][0] << ", " << in[i][1] << ", " << in[i][2] << ", "
                   << in[i][3] << "): " << ours[i][c] << " for the library's " << theirs[i][c];
        }
    }
    return testing::AssertionSuccess();
}

std::string words_of(const pixel::Program& program) {
    std::string out;
    for (const std::string& words : program.describe().simplified) {
        out += "\n" + words;
    }
    return out;
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
    std::vector<Pixel> theirs = in;
    library::PackedImageDesc image(theirs[0].data(), PIXELS, 1, 4);
    lossless(processor)->apply(image);
    for (const std::int64_t target : vector_targets()) {
        const TargetGuard guard(target);
        std::vector<Pixel> ours = in;
        program.apply_packed(ours[0].data(), PIXELS, 1, 4);
        if (const auto result = same_pixels(in, ours, theirs, exact); !result) {
            return testing::AssertionFailure()
                   << target_name(target) << ", " << result.message() << words_of(program);
        }
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult agrees(const library::ConstTransformRcPtr& transform, int version,
                                const Exact& exact) {
    return agrees(processor_of(transform, version), exact);
}

} // namespace pixel_test
