#include "tool/versions.h"

#include <fmt/format.h>

#include "colorio/color_io_evaluation.h"

namespace tool {

std::string get_version() {
    return COLORIO_VERSION;
}

std::vector<std::pair<std::string, std::string>> get_versions_at_build() {
    return {{"OpenImageIO", BUILT_WITH_OPENIMAGEIO},
            {"Little CMS", BUILT_WITH_LCMS2},
            {"zlib", BUILT_WITH_ZLIB},
            {"GLFW", BUILT_WITH_GLFW},
            {"Dear ImGui", BUILT_WITH_IMGUI}};
}

std::string format_versions() {
    std::string text =
        fmt::format("colorio {}\nOpenColorIO {}", get_version(), ColorIOEvaluation::get_library_version());
    for (const auto& [library, version] : get_versions_at_build())
        text += fmt::format("\n{} {} (at build time)", library, version);
    return text;
}

} // namespace tool
