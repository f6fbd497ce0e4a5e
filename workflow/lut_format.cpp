#include "workflow/lut_format.h"

#include <filesystem>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "diagnostics/failure.h"
#include "workflow/lut_texts.h"

namespace workflow {

namespace {

std::string write_cube(const std::vector<float>& lut, unsigned int edge) {
    return make_cube(lut, edge, "3D LUT");
}

constexpr LutFormat FORMATS[] = {
    {"cube", "iridas_cube", "resolve_cube", write_cube},
    {"csp", "cinespace", "cinespace", nullptr},
    {"clf", "Academy/ASC Common LUT Format", "Academy/ASC Common LUT Format", nullptr},
    {"3dl", "flame", nullptr, nullptr, true},
    {"spi3d", nullptr, nullptr, make_spi3d},
};

} // namespace

const LutFormat& find_lut_format(const std::string& path) {
    const std::string extension = std::filesystem::path(path).extension().string();
    for (const LutFormat& format : FORMATS)
        if (!extension.empty() && extension.substr(1) == format.extension)
            return format;
    diagnostics::fail(diagnostics::Code::USAGE,
                      fmt::format("cannot bake '{}': the format '{}' is not one of {}", path, extension,
                                  fmt::join(get_lut_extensions(), ", ")));
}

std::vector<std::string> get_lut_extensions() {
    std::vector<std::string> extensions;
    for (const LutFormat& format : FORMATS)
        extensions.emplace_back(format.extension);
    return extensions;
}

} // namespace workflow
