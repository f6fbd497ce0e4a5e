#include "workflow/gpu_package.h"

#include <exception>
#include <filesystem>
#include <iterator>

#include <fmt/format.h>

#include "colorio/color_io_converter.h"
#include "colorio/color_io_diagnostics.h"
#include "diagnostics/failure.h"
#include "workflow/text_file.h"

namespace workflow {

namespace {

constexpr char FILE_STEM[] = "OCIODisplay";

/// A .cube file lists the colors in the order of the 3D LUT, red fastest.
std::string to_cube(const GpuConversion& conversion) {
    std::string text =
        fmt::format("# The 3D LUT that {}.glsl samples\nLUT_3D_SIZE {}\n", FILE_STEM, conversion.edge);
    for (std::size_t i = 0; i + 2 < conversion.lut.size(); i += 3)
        fmt::format_to(std::back_inserter(text), "{} {} {}\n", conversion.lut[i], conversion.lut[i + 1],
                       conversion.lut[i + 2]);
    return text;
}

/// A row of an .spi3d file starts with the position of its color; by convention blue runs fastest.
std::string to_spi3d(const GpuConversion& conversion) {
    const unsigned int edge = conversion.edge;
    std::string text = fmt::format("SPILUT 1.0\n3 3\n{0} {0} {0}\n", edge);
    for (unsigned int red = 0; red < edge; ++red)
        for (unsigned int green = 0; green < edge; ++green)
            for (unsigned int blue = 0; blue < edge; ++blue) {
                const float* value = conversion.lut.data() + 3 * ((blue * edge + green) * edge + red);
                fmt::format_to(std::back_inserter(text), "{} {} {} {} {} {}\n", red, green, blue, value[0],
                               value[1], value[2]);
            }
    return text;
}

} // namespace

GpuConversion make_gpu_conversion(const Conversion& conversion, gl::GlProfile profile) {
    const std::vector<Conversion::Stage>& stages = conversion.get_stages();
    CoreString text;
    CoreArray<float> lut;
    const auto version = profile == gl::GlProfile::CORE ? ColorIOConverter::GLSL_VERSION_CORE
                                                        : ColorIOConverter::GLSL_VERSION_LEGACY;
    const std::string what = fmt::format("cannot make a shader from '{}' to '{}'", conversion.get_source(),
                                         conversion.get_destination());
    if (stages.empty())
        diagnostics::fail(diagnostics::Code::GPU_UNAVAILABLE, what + ": source and destination are the same");
    if (stages.size() > 1)
        diagnostics::fail(diagnostics::Code::GPU_UNAVAILABLE,
                          fmt::format("{}: this conversion needs {} shaders", what, stages.size()));
    ColorIODiagnostics collector;
    bool is_made = false;
    try {
        is_made = stages.front().converter->get_gpu_shader_data(text, lut, version);
    } catch (const std::exception&) {
        // The module reported the reason.
    }
    if (!is_made)
        throw diagnostics::Failure(
            diagnostics::add_context(what, collector.take(), diagnostics::Code::GPU_UNAVAILABLE));
    return {text.get_data(), {lut.begin(), lut.end()}, stages.front().converter->get_lut_3d_edge_size()};
}

std::vector<std::string> write_gpu_conversion(const GpuConversion& conversion, const std::string& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        diagnostics::fail_file(diagnostics::Code::FILE_UNWRITABLE,
                               fmt::format("cannot create the folder '{}': {}", folder, error.message()),
                               folder);
    const std::string stem = (std::filesystem::path(folder) / FILE_STEM).string();
    write_text_file(stem + ".glsl", conversion.text);
    write_text_file(stem + ".spi3d", to_spi3d(conversion));
    write_text_file(stem + ".cube", to_cube(conversion));
    return {stem + ".glsl", stem + ".spi3d", stem + ".cube"};
}

} // namespace workflow
