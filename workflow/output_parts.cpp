#include "workflow/output_parts.h"

#include <algorithm>

#include <fmt/format.h>

#include "diagnostics/file_failure.h"

namespace workflow {

namespace {

using Headers = std::vector<image::PartHeader>;

constexpr char CHROMATICITIES[] = "chromaticities";

bool is_tiled(const image::PartHeader& part) {
    return part.spec.tile_width > 0;
}

/// OpenImageIO writes all parts of an OpenEXR file like the first one: in tiles, or in scanlines.
bool untile_mixed_parts(Headers& headers, const image::FormatAbilities& abilities) {
    const bool has_levels = std::any_of(headers.begin(), headers.end(),
                                        [](const image::PartHeader& part) { return part.level > 0; });
    const auto tiled = std::count_if(headers.begin(), headers.end(), is_tiled);
    const bool are_mixed = tiled > 0 && tiled < static_cast<std::ptrdiff_t>(headers.size());
    if (abilities.appends_subimages || has_levels || !are_mixed)
        return false;
    for (image::PartHeader& part : headers)
        part.spec.tile_width = part.spec.tile_height = part.spec.tile_depth = 0;
    return true;
}

std::string get_chromaticities(const image::PartHeader& part) {
    const OIIO::ParamValue* value = part.spec.find_attribute(CHROMATICITIES);
    return value ? value->get_string() : "";
}

void copy_chromaticities(const OIIO::ImageSpec& from, OIIO::ImageSpec& to) {
    if (const OIIO::ParamValue* value = from.find_attribute(CHROMATICITIES))
        to.attribute(CHROMATICITIES, value->type(), value->data());
    else
        to.erase_attribute(CHROMATICITIES);
}

/// OpenEXR demands the same chromaticities in all parts. They mean nothing to parts of data, which get those
/// of the color. True when parts of color differ, and all lose them.
bool share_chromaticities(Headers& headers, const std::vector<bool>& are_data) {
    const image::PartHeader* color = nullptr;
    bool are_same = true;
    for (std::size_t i = 0; i < headers.size(); ++i) {
        if (are_data[i])
            continue;
        color = color ? color : &headers[i];
        are_same = are_same && get_chromaticities(headers[i]) == get_chromaticities(*color);
    }
    if (!color)
        return false;
    const OIIO::ImageSpec shared = are_same ? color->spec : OIIO::ImageSpec();
    for (image::PartHeader& part : headers)
        copy_chromaticities(shared, part.spec);
    return !are_same;
}

} // namespace

diagnostics::Diagnostics reconcile_parts(Headers& headers, const std::vector<bool>& are_data,
                                         const image::FormatAbilities& abilities) {
    diagnostics::Diagnostics notes;
    if (untile_mixed_parts(headers, abilities))
        notes.push_back(diagnostics::make_note(diagnostics::Code::IMAGE_ADAPTED,
                                               "OpenImageIO does not write tiles and scanlines to one file: "
                                               "all parts are written in scanlines"));
    if (share_chromaticities(headers, are_data))
        notes.push_back(diagnostics::make_note(
            diagnostics::Code::METADATA_DROPPED,
            "OpenEXR does not store different chromaticities in one file: no part has them",
            "chromaticities"));
    return notes;
}

void check_deep_parts(const Headers& headers, const image::FormatAbilities& abilities,
                      const std::string& input, const std::string& output) {
    const auto count = std::count_if(headers.begin(), headers.end(),
                                     [](const image::PartHeader& part) { return part.spec.deep; });
    if (count > 0 && !abilities.has_deep)
        diagnostics::fail_to_write(
            diagnostics::Code::IMAGE_UNSUPPORTED, output,
            fmt::format("{} does not support deep images; write an .exr file, or flatten '{}' first",
                        abilities.name, input));
    if (count > 0 && count < static_cast<std::ptrdiff_t>(headers.size()))
        diagnostics::fail_file(diagnostics::Code::IMAGE_UNSUPPORTED,
                               fmt::format("cannot convert '{}': it has deep and flat parts, which "
                                           "OpenImageIO does not write to one file",
                                           input),
                               input);
}

} // namespace workflow
