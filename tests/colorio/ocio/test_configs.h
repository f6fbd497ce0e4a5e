#pragma once

#include <string>

#include "colorio/ocio/config.h"
#include "colorio/ocio/transform.h"
#include "tests/support/temp_dir.h"

/// Configs shared by the tests of colorio/ocio.
namespace test_configs {

/// The display curves of the built-in configuration as 1D LUTs of 4101 samples over [-0.125, 1.125],
/// written to `folder` as "srgb.spi1d" and "cineon.spi1d".
void write_built_in_tables(const TempDir& folder);

/// "sRGB", "Cineon" (tables to the reference space) and "linear" (the reference space), each a view of the
/// display "Tavelion".
ocio::ConfigRcPtr create_built_in_like(const TempDir& folder);

/// "No CDL" and one color space per recorded correction, from the reference space.
ocio::ConfigRcPtr create_corrections();

/// A color space that goes through `transform` to the reference space; null makes it the reference space.
ocio::ColorSpaceRcPtr make_space(const char* name, const ocio::ConstTransformRcPtr& transform = {});

/// The transform that leads to a view of a display, as the library in use has it.
ocio::TransformRcPtr make_view_transform(const char* source, const char* display, const char* view);

/// What a small configuration file consists of, as YAML. The defaults make one that passes every check: two
/// color spaces, "lin" (the reference) and "srgb", and a view of the second.
struct ConfigText {
    std::string version = "1";
    std::string settings; ///< further top-level keys, each line ended
    std::string roles = "  default: lin\n";
    std::string displays = "  d:\n    - !<View> {name: v, colorspace: srgb}\n";
    std::string spaces; ///< further color spaces

    std::string str() const;
};

/// Writes the configuration to `folder` and loads it.
ocio::ConstConfigRcPtr load(const TempDir& folder, const std::string& text);

/// The message with which `call` throws ocio::Exception; "nothing thrown" when it does not.
template <typename Call>
std::string refusal_of(Call&& call) {
    try {
        call();
    } catch (const ocio::Exception& error) {
        return error.what();
    }
    return "nothing thrown";
}

} // namespace test_configs
