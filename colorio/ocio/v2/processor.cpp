#include "colorio/ocio/processor.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

#include "colorio/ocio/config.h"
#include "colorio/ocio/conversion_check.h"
#include "colorio/ocio/failure_cause.h"
#include "colorio/ocio/gpu_contract.h"
#include "colorio/ocio/guarded.h"
#include "colorio/ocio/literal_paths.h"
#include "colorio/ocio/lookup_memo.h"
#include "colorio/ocio/processor_checks.h"
#include "colorio/ocio/v2/evaluator.h"
#include "colorio/ocio/v2/explain.h"
#include "colorio/ocio/v2/gpu_shader.h"
#include "colorio/ocio/v2/plain_conversion.h"
#include "colorio/ocio/v2/source_allocation.h"

namespace ocio {

namespace {

/// Gives the results of OpenColorIO 1.x: without optimization a CDL of power 1 would clamp negatives, with
/// the default optimization inverse LUTs lose precision.
constexpr auto OPTIMIZATION = static_cast<library::OptimizationFlags>(
    library::OPTIMIZATION_LOSSLESS | library::OPTIMIZATION_NO_DYNAMIC_PROPERTIES);

class LibraryProcessor final : public Processor {
public:
    LibraryProcessor(library::ConstProcessorRcPtr processor, SourceAllocation allocation)
        : processor_(std::move(processor)), evaluator_(processor_, OPTIMIZATION),
          source_(std::move(allocation)) {}

    bool is_no_op() const override { return evaluator_.is_no_op(); }
    void apply(const PackedImageDesc& image) const override { evaluator_.apply(image); }
    void apply(const PlanarImageDesc& image) const override { evaluator_.apply(image); }
    void apply_rgba(float* pixel) const override { evaluator_.apply_rgba(pixel); }

    PixelFunction get_pixel_function() const override { return evaluator_.get_pixel_function(); }

    std::string get_gpu_shader_text(const GpuShaderDesc& desc) const override {
        return gpu_shader(desc)->text;
    }

    void get_gpu_lut_3d(float* lut, const GpuShaderDesc& desc) const override {
        const auto edge_len = static_cast<std::size_t>(desc.lut_3d_edge_len);
        const std::shared_ptr<const GpuShader> shader = gpu_shader(desc);
        if (shader->lut.empty())
            std::fill_n(lut, edge_len * edge_len * edge_len * 3, 0.0f);
        else
            std::copy(shader->lut.begin(), shader->lut.end(), lut);
    }

    std::vector<std::string> get_files() const override {
        return guarded([&] { return list_files(*processor_->getProcessorMetadata()); });
    }

    std::string get_digest() const override {
        return guarded([&] { return std::string(processor_->getCacheID()); });
    }

    Explanation explain(const std::array<float, 4>& rgba) const override {
        return guarded([&] {
            return is_no_op() ? explain_nothing(processor_)
                              : ocio::explain(processor_, evaluator_, OPTIMIZATION, rgba);
        });
    }

private:
    using ShaderKey = std::tuple<GpuLanguage, std::string, int>;

    /// Text and LUT are asked for one after the other, and made together.
    std::shared_ptr<const GpuShader> gpu_shader(const GpuShaderDesc& desc) const {
        const ShaderKey key(desc.language, desc.function_name, desc.lut_3d_edge_len);
        const std::lock_guard lock(shader_mutex_);
        if (!last_shader_ || last_shader_key_ != key) {
            last_shader_ = std::make_shared<const GpuShader>(make_gpu_shader(desc));
            last_shader_key_ = key;
        }
        return last_shader_;
    }

    GpuShader make_gpu_shader(const GpuShaderDesc& desc) const {
        if (is_no_op())
            return {shader_text(desc), {}};
        if (std::optional<GpuShader> adapted = guarded([&] { return make_adapted_shader(desc); }))
            return *std::move(adapted);
        return baked_shader(*this, source_.allocation, desc);
    }

    /// Made of OpenColorIO's text; empty when that cannot be adapted.
    std::optional<GpuShader> make_adapted_shader(const GpuShaderDesc& desc) const {
        const library::ConstProcessorRcPtr optimized = processor_->getOptimizedProcessor(OPTIMIZATION);
        if (consists_of_luts(optimized))
            return std::nullopt;
        std::optional<GpuShader> adapted = adapted_shader(processor_, OPTIMIZATION, desc);
        const bool is_sound = adapted && (adapted->lut.empty() || has_sound_lut(optimized));
        return is_sound ? std::move(adapted) : std::nullopt;
    }

    /// OpenColorIO fills its LUTs with the results of the unoptimized operations, in which a CDL of power 1
    /// clamps negatives, and over the allocation in the config.
    bool has_sound_lut(const library::ConstProcessorRcPtr& optimized) const {
        return source_.stated && have_same_steps(processor_, optimized);
    }

    library::ConstProcessorRcPtr processor_;
    Evaluator evaluator_;
    SourceAllocation source_;
    mutable std::mutex shader_mutex_;
    mutable ShaderKey last_shader_key_;
    mutable std::shared_ptr<const GpuShader> last_shader_;
};

ConstProcessorRcPtr make_processor(const ConstConfigRcPtr& config, library::ConstProcessorRcPtr processor,
                                   const ConstColorSpaceRcPtr& source) {
    return std::make_shared<const LibraryProcessor>(std::move(processor), source_allocation(config, source));
}

/// Checks the conversion before OpenColorIO does, and finds its files.
Conversion checked(const ConstConfigRcPtr& config, const ConstTransformRcPtr& transform) {
    ConversionParts parts = check_conversion(config, transform);
    return with_literal_paths({config, transform}, parts);
}

library::ColorSpaceTransformRcPtr make_conversion(const char* source, const char* destination) {
    const library::ColorSpaceTransformRcPtr conversion = library::ColorSpaceTransform::Create();
    conversion->setSrc(source);
    conversion->setDst(destination);
    return conversion;
}

/// Checks a conversion, then OpenColorIO makes it.
ConstProcessorRcPtr make_checked(const ConstConfigRcPtr& config, const ConstTransformRcPtr& transform,
                                 const ConstColorSpaceRcPtr& source) {
    return with_cause(config, transform, [&] {
        const Conversion asked = checked(config, transform);
        return make_processor(config, asked.config->getProcessor(asked.transform), source);
    });
}

/// The name itself, or the default role where it is unknown in a config without strict parsing.
const char* known_name(const ConstConfigRcPtr& config, const char* name) {
    if (config->isStrictParsingEnabled() || find_space(config, name) || config->getNamedTransform(name))
        return name;
    return ROLE_DEFAULT;
}

} // namespace

ConstProcessorRcPtr get_processor(const ConstConfigRcPtr& config, const char* source,
                                  const char* destination) {
    return guarded([&] {
        const char* const from = known_name(config, source);
        const char* const to = known_name(config, destination);
        const ConstColorSpaceRcPtr source_space = find_space(config, from);
        const ConstColorSpaceRcPtr destination_space = find_space(config, to);
        const bool is_plain =
            source_space && destination_space && is_plain_conversion(*source_space, *destination_space);
        return with_cause(config, make_conversion(from, to), [&] {
            const ConstConfigRcPtr asked =
                is_plain ? config : checked(config, make_conversion(from, to)).config;
            return make_processor(config, asked->getProcessor(from, to), source_space);
        });
    });
}

ConstProcessorRcPtr get_processor(const ConstConfigRcPtr& config, const DisplayTransform& transform) {
    return guarded([&] {
        require_view(config, transform.display, transform.view);
        const library::DisplayViewTransformRcPtr conversion = library::DisplayViewTransform::Create();
        conversion->setSrc(known_name(config, transform.input_color_space_name));
        conversion->setDisplay(transform.display);
        conversion->setView(transform.view);
        return make_checked(config, conversion, find_space(config, conversion->getSrc()));
    });
}

ConstProcessorRcPtr get_processor(const ConstConfigRcPtr& config, const ConstTransformRcPtr& transform) {
    return guarded([&] { return make_checked(config, transform, nullptr); });
}

} // namespace ocio
