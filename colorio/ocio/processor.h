#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "colorio/ocio/explanation.h"
#include "colorio/ocio/transform.h"
#include "colorio/ocio/types.h"

namespace ocio {

/// Interleaved float pixels: `channels` per pixel, rows without padding, row by row.
struct PackedImageDesc {
    float* data;
    long width;
    long height;
    long channels; ///< 3 or more; the first three are red, green, blue, the fourth alpha; others are
                   ///< unchanged.
};

/// One float plane per channel; `alpha` may be null.
struct PlanarImageDesc {
    float* red;
    float* green;
    float* blue;
    float* alpha;
    long width;
    long height;
};

enum GpuLanguage { GPU_LANGUAGE_GLSL_1_0, GPU_LANGUAGE_GLSL_1_3 };

/// What the shader text is generated for.
struct GpuShaderDesc {
    GpuLanguage language;
    const char* function_name;
    int lut_3d_edge_len; ///< The 3D LUT has edge_len^3 RGB floats; 2 or more.
};

/// Converts a single color of four floats in place, without further decisions. Valid as long as its
/// processor.
struct PixelFunction {
    void (*convert)(const void* context, float* rgba) = nullptr;
    const void* context = nullptr;

    void operator()(float* rgba) const { convert(context, rgba); }
};

/// One conversion; immutable and shared, so that several threads may apply it at once.
class Processor {
public:
    virtual ~Processor() = default;

    virtual bool is_no_op() const = 0;
    /// Converts an image in place. Throws when it has no pixels or fewer than three channels, unless the
    /// conversion does nothing.
    virtual void apply(const PackedImageDesc& image) const = 0;
    virtual void apply(const PlanarImageDesc& image) const = 0;
    /// Converts one pixel of four floats: red, green, blue, alpha.
    virtual void apply_rgba(float* pixel) const = 0;
    /// `apply_rgba` for callers that convert many single colors; decisions are made in advance.
    virtual PixelFunction get_pixel_function() const = 0;

    /// A function `vec4 NAME(in vec4 inPixel, const sampler3D lut3d)` that converts one pixel; it samples
    /// `lut3d` once if it needs the 3D LUT, as "= texture3D(lut3d, ...)".
    virtual std::string get_gpu_shader_text(const GpuShaderDesc& desc) const = 0;
    /// Fills lut[edge^3 * 3] for that text, red fastest; all zeros when the text does not need it.
    virtual void get_gpu_lut_3d(float* lut, const GpuShaderDesc& desc) const = 0;

    /// Paths of the LUT and CDL files that the conversion was made of; relative ones as the library opened
    /// them, from the working folder of the process or within an archive.
    virtual std::vector<std::string> get_files() const = 0;
    /// The library's digest of the operations with all their numbers; the same in every run, but not with
    /// every version of the library.
    virtual std::string get_digest() const = 0;

    /// The operations, what computes them, and `rgba` after each.
    virtual Explanation explain(const std::array<float, 4>& rgba) const = 0;
};

using ConstProcessorRcPtr = std::shared_ptr<const Processor>;

/// Whether processors made from now on may convert pixels with this project's SIMD code where it gives
/// OpenColorIO's results (the default), or always with OpenColorIO itself. Ignored with OpenColorIO 1.x,
/// which converts all of them.
void set_fast_path(bool enabled);
bool get_fast_path();
/// Instruction set of that code on this computer; empty with OpenColorIO 1.x.
const char* get_vector_target();

/// Conversion between two color spaces or roles. Throws when a name is unknown, a file is missing or damaged,
/// or the transforms of the config form a cycle (the message names its members).
ConstProcessorRcPtr get_processor(const ConstConfigRcPtr& config, const char* source,
                                  const char* destination);
/// Conversion from a color space to a view of a display.
ConstProcessorRcPtr get_processor(const ConstConfigRcPtr& config, const DisplayTransform& transform);
/// A transform by itself, applied forwards. Throws like the others.
ConstProcessorRcPtr get_processor(const ConstConfigRcPtr& config, const ConstTransformRcPtr& transform);

} // namespace ocio
