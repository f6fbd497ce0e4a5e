#pragma once

#include <string>
#include <vector>

#include "colorio/color_io_converter.h"
#include "gl/gl_evaluator.h"

/// OpenGL of both dialects, and how exactly it interpolates in tables.
class ShaderRunners {
public:
    ShaderRunners();

    gl::GlEvaluator& get(ColorIOConverter::GlslVersion version) {
        return version == ColorIOConverter::GLSL_VERSION_CORE ? core : legacy;
    }
    /// The largest error that the driver made in the position between two entries of a table, in steps from
    /// entry to entry. 1 / 256 and less are usual on graphics cards.
    double get_position_error() const { return position_error; }

private:
    gl::GlEvaluator core;
    gl::GlEvaluator legacy;
    double position_error;
};

/// What a comparison of shader and CPU found over the probe pixels.
struct ShaderReport {
    std::size_t pixels = 0; ///< Compared: in the range of the table, and finite on the CPU.
    bool uses_table = false;
    double largest_error = 0;    ///< Of the shader against `convert_pixel`, relative to values above 1.
    std::string largest_place;   ///< "0.5 0.25 0.125: 0.4 on the GPU, 0.41 on the CPU"
    double largest_sampling = 0; ///< Of the driver's interpolation against that in double precision.
};

/// RGBA pixels from deep shadows to highlights, below 0, grays and saturated ones.
std::vector<float> make_probe_pixels();

/// Runs the shader of a configured converter on the probe pixels and expects
/// - alpha as it was,
/// - every look-up in the table as interpolation in double precision has it, but for the driver's precision,
/// - every pixel as `convert_pixel` has it, but for the error that the table's own entries allow at that
///   place, carried through what the shader does behind the look-up, and for roundings of floats.
ShaderReport prove_shader(ShaderRunners& runners, const ColorIOConverter& converter,
                          ColorIOConverter::GlslVersion version);

/// The text and LUT of a configured converter.
struct ShaderSource {
    std::string text;
    std::vector<float> table;
};
ShaderSource get_shader_source(const ColorIOConverter& converter, ColorIOConverter::GlslVersion version);
