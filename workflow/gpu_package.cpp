#include "workflow/gpu_package.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <set>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "colorio/color_io_converter.h"
#include "diagnostics/failure.h"
#include "workflow/lut_texts.h"
#include "workflow/module_call.h"
#include "workflow/text_file.h"

namespace workflow {

namespace {

/// Name of the function, and of the files.
constexpr char FUNCTION[] = "OCIODisplay";

std::string describe_failure(const Conversion& conversion) {
    return fmt::format("cannot make a shader from '{}' to '{}'", conversion.get_source(),
                       conversion.get_destination());
}

/// One stage alone: a function with the name of the whole, and its LUT.
struct GpuStage {
    std::string text;
    GpuLut lut;
};

GpuStage make_gpu_stage(const Conversion& conversion, const Conversion::Stage& stage, gl::GlProfile profile) {
    const auto version = profile == gl::GlProfile::CORE ? ColorIOConverter::GLSL_VERSION_CORE
                                                        : ColorIOConverter::GLSL_VERSION_LEGACY;
    CoreString text;
    CoreArray<float> lut;
    require_success(describe_failure(conversion), diagnostics::Code::CONVERSION_IMPOSSIBLE,
                    [&] { return stage.converter->get_gpu_shader_data(text, lut, version); });
    return {text.get_data(), {{lut.begin(), lut.end()}, stage.converter->get_lut_3d_edge_size()}};
}

/// The names in GLSL text outside of functions that begin as OpenColorIO's names of its constants and
/// functions do. They are numbered within one stage.
std::set<std::string> find_global_names(const std::string& text) {
    constexpr std::string_view PREFIX = "ocio_";
    const auto is_of_name = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; };
    std::set<std::string> names;
    int depth = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text.compare(at, 2, "//") == 0)
            at = std::min(text.find('\n', at), text.size() - 1);
        depth += text[at] == '{' ? 1 : text[at] == '}' ? -1 : 0;
        if (!is_of_name(text[at]))
            continue;
        const std::size_t start = at;
        while (at + 1 < text.size() && is_of_name(text[at + 1]))
            ++at;
        if (depth == 0 && text.compare(start, PREFIX.size(), PREFIX) == 0)
            names.insert(text.substr(start, at + 1 - start));
    }
    return names;
}

/// The names that several stages define, and which must become unique.
std::set<std::string> find_shared_names(const std::vector<GpuStage>& stages) {
    std::set<std::string> known, shared = {FUNCTION};
    for (const GpuStage& stage : stages)
        for (const std::string& name : find_global_names(stage.text))
            if (!known.insert(name).second)
                shared.insert(name);
    return shared;
}

/// The functions of all stages, renamed to be unique, and a function that calls them in order.
std::string chain_stages(const std::vector<GpuStage>& stages, std::size_t exposure_position,
                         bool takes_gain) {
    const std::set<std::string> shared = find_shared_names(stages);
    std::string functions, parameters, calls;
    for (std::size_t i = 0; i <= stages.size(); ++i) {
        if (i == exposure_position && takes_gain)
            calls += "    color.rgb *= gain;\n";
        if (i == stages.size())
            break;
        std::string end;
        for (const std::string& name : shared) {
            functions += fmt::format("#define {0} {0}_{1}\n", name, i);
            end += fmt::format("#undef {}\n", name);
        }
        functions += fmt::format("{}\n{}\n", stages[i].text, end);
        parameters += fmt::format(", const sampler3D lut3d_{}", i);
        calls += fmt::format("    color = {0}_{1}(color, lut3d_{1});\n", FUNCTION, i);
    }
    if (takes_gain)
        parameters += ", in float gain";
    return fmt::format(
        "{}vec4 {}(in vec4 inPixel{}) {{\n    vec4 color = inPixel;\n{}    return color;\n}}\n", functions,
        FUNCTION, parameters, calls);
}

} // namespace

GpuConversion make_gpu_conversion(const Conversion& conversion, gl::GlProfile profile) {
    std::vector<GpuStage> stages;
    for (const Conversion::Stage& stage : conversion.get_stages())
        stages.push_back(make_gpu_stage(conversion, stage, profile));
    GpuConversion made;
    made.takes_gain = conversion.takes_exposure();
    made.text = stages.size() == 1 && !made.takes_gain
                    ? stages.front().text
                    : chain_stages(stages, conversion.get_exposure_position(), made.takes_gain);
    for (GpuStage& stage : stages)
        made.luts.push_back(std::move(stage.lut));
    return made;
}

std::vector<std::string> write_gpu_conversion(const GpuConversion& conversion, const std::string& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        diagnostics::fail_file(diagnostics::Code::FILE_UNWRITABLE,
                               fmt::format("cannot create the folder '{}': {}", folder, error.message()),
                               folder);
    const std::string stem = (std::filesystem::path(folder) / FUNCTION).string();
    std::vector<std::string> paths = {stem + ".glsl"};
    write_text_file(paths.back(), conversion.text);
    for (std::size_t i = 0; i < conversion.luts.size(); ++i) {
        const GpuLut& lut = conversion.luts[i];
        const std::string suffix = conversion.luts.size() == 1 ? "" : fmt::format("_{}", i);
        write_text_file(paths.emplace_back(stem + suffix + ".spi3d"), make_spi3d(lut.values, lut.edge));
        write_text_file(paths.emplace_back(stem + suffix + ".cube"),
                        make_cube(lut.values, lut.edge,
                                  fmt::format("The 3D LUT lut3d{} that {}.glsl samples", suffix, FUNCTION)));
    }
    return paths;
}

} // namespace workflow
