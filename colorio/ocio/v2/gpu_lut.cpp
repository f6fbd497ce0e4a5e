#include "colorio/ocio/v2/gpu_lut.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "colorio/ocio/error.h"
#include "colorio/ocio/gpu_contract.h"

namespace ocio {

namespace {

/// Digits of the numbers in the text, as OpenColorIO 1.x writes them.
constexpr int TEXT_DIGITS = 6;

std::string number(double value) {
    std::array<char, 32> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::general, TEXT_DIGITS);
    return std::string(digits.data(), end.ptr);
}

/// "vec3(v, v, v)"
std::string gray(double value) {
    const std::string v = number(value);
    return "vec3(" + v + ", " + v + ", " + v + ")";
}

/// "vec4(v, v, v, alpha)"
std::string gray_with_alpha(double value, const char* alpha) {
    const std::string v = number(value);
    return "vec4(" + v + ", " + v + ", " + v + ", " + alpha + ")";
}

/// An allocation with its defaults filled in.
class Fit {
public:
    explicit Fit(const GpuAllocation& allocation) : logarithmic_(allocation.kind == ALLOCATION_LG2) {
        if (!logarithmic_ && allocation.kind != ALLOCATION_UNIFORM)
            throw_error(diagnostics::Code::CONVERSION_IMPOSSIBLE,
                        "a color space of unknown allocation cannot be converted with a 3D LUT on the GPU");
        if (logarithmic_) {
            minimum_ = -10.0;
            maximum_ = 6.0;
        }
        const std::vector<float>& variables = allocation.variables;
        if (variables.size() >= 2) {
            minimum_ = variables[0];
            maximum_ = variables[1];
        }
        if (logarithmic_ && variables.size() >= 3)
            offset_ = variables[2];
        if (!std::isfinite(minimum_) || !std::isfinite(maximum_) || minimum_ == maximum_)
            throw_error(
                diagnostics::Code::CONVERSION_IMPOSSIBLE,
                "a color space whose allocation spans no range cannot be converted with a 3D LUT on the GPU");
    }

    /// From the color in `out_pixel` to [0, 1].
    std::string text() const {
        std::string text;
        if (logarithmic_) {
            // FLT_MIN instead of values without a logarithm, and 1 / ln 2 for the base.
            text += "out_pixel.rgb = max(" + gray(std::numeric_limits<float>::min()) + ", " + gray(1) +
                    " * out_pixel.rgb + " + gray(offset_) + ");\n";
            text +=
                "out_pixel.rgb = " + gray(1.0 / std::log(2.0)) + " * log(out_pixel.rgb) + " + gray(0) + ";\n";
        }
        const double scale = 1.0 / (maximum_ - minimum_);
        if (scale != 1.0)
            text += "out_pixel = " + gray_with_alpha(scale, "1") + " * out_pixel;\n";
        if (minimum_ != 0.0)
            text += "out_pixel = " + gray_with_alpha(-minimum_ * scale, "0") + " + out_pixel;\n";
        return text;
    }

    /// The value at a position of an axis of the LUT, in [0, 1]; in single precision, as in OpenColorIO 1.x.
    float value_at(float position) const {
        const auto range = static_cast<float>(maximum_ - minimum_);
        const float fitted = position * range + static_cast<float>(minimum_);
        return logarithmic_ ? std::exp2(fitted) - static_cast<float>(offset_) : fitted;
    }

private:
    bool logarithmic_;
    double minimum_ = 0.0;
    double maximum_ = 1.0;
    double offset_ = 0.0;
};

/// A texture's values lie at the centers of its texels.
std::string sampling_text(int edge_len) {
    const double scale = static_cast<double>(edge_len - 1) / edge_len;
    const double offset = 0.5 / edge_len;
    return "out_pixel.rgb = texture3D(lut3d, " + number(scale) + " * out_pixel.rgb + " + number(offset) +
           ").rgb;\n";
}

std::vector<float> make_nodes(const Fit& fit, int edge_len) {
    std::vector<float> axis;
    for (int i = 0; i < edge_len; ++i)
        axis.push_back(fit.value_at(static_cast<float>(i) / static_cast<float>(edge_len - 1)));
    std::vector<float> points;
    points.reserve(axis.size() * axis.size() * axis.size() * 3);
    for (const float blue : axis)
        for (const float green : axis)
            for (const float red : axis)
                points.insert(points.end(), {red, green, blue});
    return points;
}

} // namespace

GpuShader baked_shader(const Processor& processor, const GpuAllocation& allocation,
                       const GpuShaderDesc& desc) {
    const Fit fit(allocation);
    const long edge_len = desc.lut_3d_edge_len;
    GpuShader shader{shader_text(desc, fit.text() + sampling_text(desc.lut_3d_edge_len)),
                     make_nodes(fit, desc.lut_3d_edge_len)};
    processor.apply(PackedImageDesc{shader.lut.data(), edge_len * edge_len, edge_len, 3});
    return shader;
}

} // namespace ocio
