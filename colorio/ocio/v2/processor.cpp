#include "colorio/ocio/processor.h"

#include <algorithm>

#include "colorio/ocio/guarded.h"
#include "colorio/ocio/v2/conversion_check.h"

namespace ocio {

namespace {

/// Gives the numbers of the 1.x library: without optimisation a CDL of power 1 would clamp negatives, with
/// the default one inverse LUTs lose precision.
constexpr auto OPTIMIZATION = static_cast<library::OptimizationFlags>(
    library::OPTIMIZATION_LOSSLESS | library::OPTIMIZATION_NO_DYNAMIC_PROPERTIES);

/// The library's image descriptions take at most this many channels.
constexpr long MAX_LIBRARY_CHANNELS = 4;

class LibraryProcessor final : public Processor {
public:
    explicit LibraryProcessor(library::ConstProcessorRcPtr processor)
        : processor_(std::move(processor)), cpu_(processor_->getOptimizedCPUProcessor(OPTIMIZATION)),
          no_op_(cpu_->isNoOp()) {}

    bool is_no_op() const override { return no_op_; }

    void apply(const PackedImageDesc& image) const override {
        if (no_op_)
            return;
        const long channels = std::min(image.channels, MAX_LIBRARY_CHANNELS);
        const auto channel_stride = static_cast<ptrdiff_t>(sizeof(float));
        const ptrdiff_t x_stride = image.channels * channel_stride;
        library::PackedImageDesc pixels(image.data, image.width, image.height, channels, BIT_DEPTH_F32,
                                        channel_stride, x_stride, image.width * x_stride);
        cpu_->apply(pixels);
    }

    void apply(const PlanarImageDesc& image) const override {
        if (no_op_)
            return;
        library::PlanarImageDesc planes(image.red, image.green, image.blue, image.alpha, image.width,
                                        image.height);
        cpu_->apply(planes);
    }

    void apply_rgba(float* pixel) const override {
        if (!no_op_)
            cpu_->applyRGBA(pixel);
    }

    std::string get_gpu_shader_text(const GpuShaderDesc&) const override {
        throw Exception("the GPU shader text is not available yet");
    }

    void get_gpu_lut_3d(float*, const GpuShaderDesc&) const override {
        throw Exception("the GPU table is not available yet");
    }

private:
    library::ConstProcessorRcPtr processor_;
    library::ConstCPUProcessorRcPtr cpu_;
    bool no_op_;
};

/// The name itself, or the default role where a configuration without strict parsing does not know it.
const char* known_name(const ConstConfigRcPtr& config, const char* name) {
    const bool known = config->getColorSpace(name) || config->getNamedTransform(name);
    return known || config->isStrictParsingEnabled() ? name : ROLE_DEFAULT;
}

} // namespace

ConstProcessorRcPtr get_processor(const ConstConfigRcPtr& config, const char* source,
                                  const char* destination) {
    return guarded([&] {
        const library::ColorSpaceTransformRcPtr conversion = library::ColorSpaceTransform::Create();
        conversion->setSrc(known_name(config, source));
        conversion->setDst(known_name(config, destination));
        check_conversion(config, conversion);
        return std::make_shared<const LibraryProcessor>(
            config->getProcessor(conversion->getSrc(), conversion->getDst()));
    });
}

ConstProcessorRcPtr get_processor(const ConstConfigRcPtr& config, const DisplayTransform& transform) {
    return guarded([&] {
        const library::DisplayViewTransformRcPtr conversion = library::DisplayViewTransform::Create();
        conversion->setSrc(known_name(config, transform.input_color_space_name));
        conversion->setDisplay(transform.display);
        conversion->setView(transform.view);
        check_conversion(config, conversion);
        return std::make_shared<const LibraryProcessor>(config->getProcessor(conversion));
    });
}

} // namespace ocio
