#include "colorio/ocio/v2/evaluator.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <utility>

#include "colorio/ocio/processor_checks.h"
#include "colorio/ocio/table_inverse.h"
#include "colorio/ocio/v2/pixel_bridge.h"

namespace ocio {

namespace {

/// OpenColorIO's image descriptions take at most this many channels.
constexpr long MAX_LIBRARY_CHANNELS = 4;

std::size_t to_size(long count) {
    return static_cast<std::size_t>(count);
}

} // namespace

Evaluator::Evaluator(const library::ConstProcessorRcPtr& processor, library::OptimizationFlags optimization) {
    if (get_fast_path())
        make_program(
            processor->getOptimizedProcessor(library::BIT_DEPTH_F32, library::BIT_DEPTH_F32, optimization));
    else
        why_not_ = "the SIMD code is switched off";
    // Not of an optimized processor: OpenColorIO can refuse to copy operations that it has merged itself.
    if (!program_) {
        require_invertible_tables(*processor);
        cpu_ = processor->getOptimizedCPUProcessor(optimization);
    }
    no_op_ = program_ ? program_->is_identity() : cpu_->isNoOp();
}

void Evaluator::make_program(const library::ConstProcessorRcPtr& optimized) {
    try {
        if (std::optional<pixel::OpChain> chain =
                translate_operations(*optimized->createGroupTransform(), why_not_))
            program_ = std::make_unique<const pixel::Program>(*std::move(chain));
    } catch (const std::exception& error) {
        // OpenColorIO computes operations that the SIMD code does not support, and LUTs for which memory is
        // short.
        why_not_ = error.what();
    }
}

void Evaluator::apply(const PackedImageDesc& image) const {
    if (no_op_)
        return;
    require_pixels(image.width, image.height, image.data && image.channels >= 3);
    if (program_) {
        program_->apply_packed(image.data, to_size(image.width), to_size(image.height),
                               to_size(image.channels));
        return;
    }
    const long channels = std::min(image.channels, MAX_LIBRARY_CHANNELS);
    const auto channel_stride = static_cast<ptrdiff_t>(sizeof(float));
    const ptrdiff_t x_stride = image.channels * channel_stride;
    library::PackedImageDesc pixels(image.data, image.width, image.height, channels, library::BIT_DEPTH_F32,
                                    channel_stride, x_stride, image.width * x_stride);
    cpu_->apply(pixels);
}

void Evaluator::apply(const PlanarImageDesc& image) const {
    if (no_op_)
        return;
    require_pixels(image.width, image.height, image.red && image.green && image.blue);
    if (program_) {
        program_->apply_planar(image.red, image.green, image.blue, image.alpha, to_size(image.width),
                               to_size(image.height));
        return;
    }
    library::PlanarImageDesc planes(image.red, image.green, image.blue, image.alpha, image.width,
                                    image.height);
    cpu_->apply(planes);
}

PixelFunction Evaluator::get_pixel_function() const {
    if (no_op_)
        return {[](const void*, float*) {}, nullptr};
    if (program_) {
        const pixel::PixelFunction function = program_->pixel_function();
        return {function.kernel, function.context};
    }
    return {
        [](const void* cpu, float* rgba) { static_cast<const library::CPUProcessor*>(cpu)->applyRGBA(rgba); },
        cpu_.get()};
}

} // namespace ocio
