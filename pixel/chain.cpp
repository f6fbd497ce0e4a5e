#include "pixel/chain.h"

#include <stdexcept>
#include <utility>

#include "pixel/compile.h"
#include "pixel/describe.h"
#include "pixel/image.h"
#include "pixel/simplify.h"

namespace pixel {

struct Program::Impl {
    OpChain given;
    OpChain simplified;
    std::vector<Stage> stages;
    std::vector<PixelFunction> pixel_steps;

    explicit Impl(OpChain chain)
        : given(std::move(chain)), simplified(simplify(given)), stages(compile(simplified)) {
        pixel_steps.reserve(stages.size());
        for (const Stage& stage : stages) {
            pixel_steps.push_back(pixel_step(stage));
        }
    }
    void run_steps(float* rgba) const {
        for (const PixelFunction& step : pixel_steps) {
            step(rgba);
        }
    }

    // The steps refer to the stages.
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;
};

Program::Program(OpChain chain) : impl_(std::make_unique<const Impl>(std::move(chain))) {}
Program::~Program() = default;
Program::Program(Program&&) noexcept = default;
Program& Program::operator=(Program&&) noexcept = default;

bool Program::is_identity() const {
    return impl_->stages.empty();
}

void Program::apply_packed(float* data, std::size_t width, std::size_t height, std::size_t channels) const {
    PackedLayout layout;
    layout.width = width;
    layout.height = height;
    layout.channels = channels;
    apply_packed(data, layout);
}

void Program::apply_packed(float* data, const PackedLayout& layout) const {
    PackedLayout tight = layout;
    if (tight.pixel_stride == 0) {
        tight.pixel_stride = static_cast<std::ptrdiff_t>(tight.channels);
    }
    if (tight.row_stride == 0) {
        tight.row_stride = tight.pixel_stride * static_cast<std::ptrdiff_t>(tight.width);
    }
    if (tight.channels < 3 || tight.pixel_stride < static_cast<std::ptrdiff_t>(tight.channels)) {
        throw std::invalid_argument("packed pixels have at least 3 channels, and strides that hold them");
    }
    if (!is_identity() && tight.width > 0 && tight.height > 0) {
        run_packed(impl_->stages, data, tight);
    }
}

void Program::apply_planar(float* r, float* g, float* b, float* a, std::size_t width, std::size_t height,
                           std::ptrdiff_t row_stride) const {
    if (is_identity() || width == 0 || height == 0) {
        return;
    }
    float* const planes[4] = {r, g, b, a};
    run_planar(impl_->stages, planes, width, height,
               row_stride == 0 ? static_cast<std::ptrdiff_t>(width) : row_stride);
}

void Program::apply_pixel(float* rgba) const {
    impl_->run_steps(rgba);
}

PixelFunction Program::pixel_function() const {
    if (impl_->pixel_steps.size() == 1) {
        return impl_->pixel_steps.front();
    }
    return {[](const void* impl, float* rgba) { static_cast<const Impl*>(impl)->run_steps(rgba); },
            impl_.get()};
}

Description Program::describe() const {
    Description out;
    for (const Op& op : impl_->given) {
        out.given.push_back(describe_op(op));
    }
    for (const Op& op : impl_->simplified) {
        out.simplified.push_back(describe_op(op));
    }
    return out;
}

std::vector<TraceStep> Program::trace(const std::array<float, 4>& rgba) const {
    std::vector<TraceStep> steps;
    std::array<float, 4> value = rgba;
    for (const Op& op : impl_->simplified) {
        Program({op}).apply_pixel(value.data());
        steps.push_back({describe_op(op), value});
    }
    return steps;
}

} // namespace pixel
