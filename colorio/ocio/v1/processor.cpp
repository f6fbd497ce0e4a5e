#include "colorio/ocio/processor.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "colorio/ocio/config.h"
#include "colorio/ocio/conversion_check.h"
#include "colorio/ocio/error.h"
#include "colorio/ocio/failure_cause.h"
#include "colorio/ocio/gpu_contract.h"
#include "colorio/ocio/guarded.h"
#include "colorio/ocio/literal_paths.h"
#include "colorio/ocio/processor_checks.h"
#include "colorio/ocio/v1/file_editions.h"

namespace ocio {

namespace {

void describe(library::GpuShaderDesc& wanted, const GpuShaderDesc& desc) {
    wanted.setLanguage(desc.language == GPU_LANGUAGE_GLSL_1_3 ? library::GPU_LANGUAGE_GLSL_1_3
                                                              : library::GPU_LANGUAGE_GLSL_1_0);
    wanted.setFunctionName(desc.function_name);
    wanted.setLut3DEdgeLen(desc.lut_3d_edge_len);
}

/// Calls OpenColorIO, which defines this contract.
class LibraryProcessor final : public Processor {
public:
    explicit LibraryProcessor(library::ConstProcessorRcPtr processor)
        : processor_(std::move(processor)), no_op_(processor_->isNoOp()) {}

    bool is_no_op() const override { return no_op_; }

    void apply(const PackedImageDesc& image) const override {
        if (no_op_)
            return;
        require_pixels(image.width, image.height, image.data && image.channels >= 3);
        library::PackedImageDesc pixels(image.data, image.width, image.height, image.channels);
        processor_->apply(pixels);
    }

    void apply(const PlanarImageDesc& image) const override {
        if (no_op_)
            return;
        require_pixels(image.width, image.height, image.red && image.green && image.blue);
        library::PlanarImageDesc planes(image.red, image.green, image.blue, image.alpha, image.width,
                                        image.height);
        processor_->apply(planes);
    }

    void apply_rgba(float* pixel) const override {
        if (!no_op_)
            processor_->applyRGBA(pixel);
    }

    PixelFunction get_pixel_function() const override {
        if (no_op_)
            return {[](const void*, float*) {}, nullptr};
        return {[](const void* processor, float* rgba) {
                    static_cast<const library::Processor*>(processor)->applyRGBA(rgba);
                },
                processor_.get()};
    }

    std::string get_gpu_shader_text(const GpuShaderDesc& desc) const override {
        // Between color spaces with the same LUT OpenColorIO would write a text that clamps the pixel to the
        // LUT's range.
        if (no_op_)
            return shader_text(desc);
        library::GpuShaderDesc wanted;
        describe(wanted, desc);
        // The text is the processor's until it is asked for another.
        const std::lock_guard lock(shader_mutex_);
        return guarded([&] { return std::string(processor_->getGpuShaderText(wanted)); });
    }

    void get_gpu_lut_3d(float* lut, const GpuShaderDesc& desc) const override {
        if (no_op_) {
            const auto edge_len = static_cast<std::size_t>(desc.lut_3d_edge_len);
            std::fill_n(lut, edge_len * edge_len * edge_len * 3, 0.0f);
            return;
        }
        library::GpuShaderDesc wanted;
        describe(wanted, desc);
        const std::lock_guard lock(shader_mutex_);
        guarded([&] { processor_->getGpuLut3D(lut, wanted); });
    }

    std::vector<std::string> get_files() const override {
        return guarded([&] { return list_files(*processor_->getMetadata()); });
    }

    std::string get_digest() const override {
        return guarded([&] { return std::string(processor_->getCpuCacheID()); });
    }

    Explanation explain(const std::array<float, 4>& rgba) const override {
        Explanation explanation;
        if (no_op_)
            return explanation;
        explanation.path = EvaluationPath::Library;
        explanation.reason = "OpenColorIO 1.1 shows no operations";
        explanation.steps.push_back({"OpenColorIO", rgba});
        apply_rgba(explanation.steps.back().pixel.data());
        return explanation;
    }

private:
    library::ConstProcessorRcPtr processor_;
    bool no_op_;
    mutable std::mutex shader_mutex_;
};

/// Checks the conversion before OpenColorIO, and has edited files read again.
ConstProcessorRcPtr make_processor(const ConstConfigRcPtr& config, const ConstTransformRcPtr& conversion) {
    return with_cause(config, conversion, [&] {
        ConversionParts parts = check_conversion(config, conversion);
        const Conversion found = with_literal_paths({config, conversion}, parts);
        const Conversion current = with_current_editions(found, parts);
        return std::make_shared<const LibraryProcessor>(current.config->getProcessor(current.transform));
    });
}

/// OpenColorIO's own message leaves the name out.
void require_space(const ConstConfigRcPtr& config, const char* name) {
    if (!get_color_space(config, name))
        throw_error(diagnostics::Code::COLOR_SPACE_UNKNOWN, "unknown color space '" + std::string(name) + "'",
                    name);
}

} // namespace

ConstProcessorRcPtr get_processor(const ConstConfigRcPtr& config, const char* source,
                                  const char* destination) {
    return guarded([&] {
        require_space(config, source);
        require_space(config, destination);
        const library::ColorSpaceTransformRcPtr conversion = library::ColorSpaceTransform::Create();
        conversion->setSrc(source);
        conversion->setDst(destination);
        return make_processor(config, conversion);
    });
}

ConstProcessorRcPtr get_processor(const ConstConfigRcPtr& config, const DisplayTransform& transform) {
    return guarded([&] {
        require_space(config, transform.input_color_space_name);
        require_view(config, transform.display, transform.view);
        const library::DisplayTransformRcPtr conversion = library::DisplayTransform::Create();
        conversion->setInputColorSpaceName(transform.input_color_space_name);
        conversion->setDisplay(transform.display);
        conversion->setView(transform.view);
        return make_processor(config, conversion);
    });
}

ConstProcessorRcPtr get_processor(const ConstConfigRcPtr& config, const ConstTransformRcPtr& transform) {
    return guarded([&] { return make_processor(config, transform); });
}

const char* get_vector_target() {
    return "";
}

} // namespace ocio
