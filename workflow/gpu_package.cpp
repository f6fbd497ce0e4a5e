#include "workflow/gpu_package.h"

#include <filesystem>
#include <iterator>

#include <fmt/format.h>

#include "colorio/color_io_converter.h"
#include "tool/exit_code.h"
#include "workflow/text_file.h"

namespace tool {

namespace {

constexpr char FILE_STEM[] = "OCIODisplay";

/// The rows of a .cube file follow each other like the table's, red fastest.
std::string to_cube(const GpuConversion& conversion) {
    std::string text =
        fmt::format("# The table that {}.glsl samples\nLUT_3D_SIZE {}\n", FILE_STEM, conversion.edge);
    for (std::size_t i = 0; i + 2 < conversion.table.size(); i += 3)
        fmt::format_to(std::back_inserter(text), "{} {} {}\n", conversion.table[i], conversion.table[i + 1],
                       conversion.table[i + 2]);
    return text;
}

/// A row of an .spi3d file names its place in the cube; by custom blue runs fastest.
std::string to_spi3d(const GpuConversion& conversion) {
    const unsigned int edge = conversion.edge;
    std::string text = fmt::format("SPILUT 1.0\n3 3\n{0} {0} {0}\n", edge);
    for (unsigned int red = 0; red < edge; ++red)
        for (unsigned int green = 0; green < edge; ++green)
            for (unsigned int blue = 0; blue < edge; ++blue) {
                const float* value = conversion.table.data() + 3 * ((blue * edge + green) * edge + red);
                fmt::format_to(std::back_inserter(text), "{} {} {} {} {} {}\n", red, green, blue, value[0],
                               value[1], value[2]);
            }
    return text;
}

} // namespace

GpuConversion make_gpu_conversion(const ColorConversion& conversion, GlProfile profile) {
    const ColorIOConverter& converter = conversion.get_converter();
    CoreString text;
    CoreArray<float> table;
    const auto version = profile == GlProfile::CORE ? ColorIOConverter::GLSL_VERSION_CORE
                                                    : ColorIOConverter::GLSL_VERSION_LEGACY;
    if (!converter.get_gpu_shader_data(text, table, version))
        throw CommandError(fmt::format("there is nothing to convert from '{}' to '{}'",
                                       conversion.get_source(), conversion.get_target()));
    return {text.get_data(), {table.begin(), table.end()}, converter.get_lut_3d_edge_size()};
}

std::vector<std::string> write_gpu_conversion(const GpuConversion& conversion, const std::string& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        throw CommandError(fmt::format("cannot make the folder '{}': {}", folder, error.message()));
    const std::string stem = (std::filesystem::path(folder) / FILE_STEM).string();
    write_text_file(stem + ".glsl", conversion.text);
    write_text_file(stem + ".spi3d", to_spi3d(conversion));
    write_text_file(stem + ".cube", to_cube(conversion));
    return {stem + ".glsl", stem + ".spi3d", stem + ".cube"};
}

} // namespace tool
