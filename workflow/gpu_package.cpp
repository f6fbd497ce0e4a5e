#include "workflow/gpu_package.h"

#include <exception>
#include <filesystem>

#include <fmt/format.h>

#include "colorio/color_io_converter.h"
#include "colorio/color_io_diagnostics.h"
#include "diagnostics/failure.h"
#include "workflow/lut_texts.h"
#include "workflow/text_file.h"

namespace workflow {

namespace {

constexpr char FILE_STEM[] = "OCIODisplay";

std::string describe_failure(const Conversion& conversion) {
    return fmt::format("cannot make a shader from '{}' to '{}'", conversion.get_source(),
                       conversion.get_destination());
}

GpuConversion make_gpu_stage(const Conversion& conversion, const Conversion::Stage& stage,
                             gl::GlProfile profile) {
    const auto version = profile == gl::GlProfile::CORE ? ColorIOConverter::GLSL_VERSION_CORE
                                                        : ColorIOConverter::GLSL_VERSION_LEGACY;
    CoreString text;
    CoreArray<float> lut;
    ColorIODiagnostics collector;
    bool is_made = false;
    try {
        is_made = stage.converter->get_gpu_shader_data(text, lut, version);
    } catch (const std::exception&) {
        // The module reported the reason.
    }
    if (!is_made)
        throw diagnostics::Failure(diagnostics::add_context(describe_failure(conversion), collector.take(),
                                                            diagnostics::Code::GPU_UNAVAILABLE));
    return {text.get_data(), {lut.begin(), lut.end()}, stage.converter->get_lut_3d_edge_size()};
}

} // namespace

std::vector<GpuConversion> get_gpu_stages(const Conversion& conversion, gl::GlProfile profile) {
    std::vector<GpuConversion> stages;
    for (const Conversion::Stage& stage : conversion.get_stages())
        stages.push_back(make_gpu_stage(conversion, stage, profile));
    return stages;
}

GpuConversion make_gpu_conversion(const Conversion& conversion, gl::GlProfile profile) {
    const std::string what = describe_failure(conversion);
    const std::vector<Conversion::Stage>& stages = conversion.get_stages();
    if (stages.empty())
        diagnostics::fail(diagnostics::Code::SHADER_IMPOSSIBLE,
                          what + ": source and destination are the same");
    if (stages.size() > 1)
        diagnostics::fail(diagnostics::Code::SHADER_IMPOSSIBLE,
                          fmt::format("{}: this conversion needs {} shaders", what, stages.size()));
    return get_gpu_stages(conversion, profile).front();
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
    write_text_file(stem + ".spi3d", make_spi3d(conversion.lut, conversion.edge));
    write_text_file(stem + ".cube", make_cube(conversion.lut, conversion.edge,
                                              fmt::format("The 3D LUT that {}.glsl samples", FILE_STEM)));
    return {stem + ".glsl", stem + ".spi3d", stem + ".cube"};
}

} // namespace workflow
