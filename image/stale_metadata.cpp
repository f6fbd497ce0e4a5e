#include "image/stale_metadata.h"

#include <fmt/format.h>

#include "diagnostics/failure.h"
#include "image/color_tags.h"

namespace image {

namespace {

/// Attributes that describe the old color space; readers that use them would show the new colors wrongly.
constexpr const char* COLOR_DESCRIPTIONS[] = {
    "ICCProfile",     "chromaticities", "adoptedNeutral", "acesImageContainerFlag",
    "whiteLuminance", "colorInteropID", "CICP",
};

/// Likewise, but every DPX file has them; their removal is not worth a note.
constexpr const char* DPX_DESCRIPTIONS[] = {
    "dpx:Transfer",   "dpx:Colorimetric", "dpx:LowQuantity", "dpx:HighQuantity",
    "dpx:BlackLevel", "dpx:BlackGain",    "dpx:BreakPoint",  "dpx:WhiteLevel",
};

/// How DPX stores code values.
constexpr const char* DPX_CODES[] = {"dpx:Packing", "dpx:LowData", "dpx:HighData"};

/// Attributes that were computed from the old pixels, or duplicate "oiio:ColorSpace".
constexpr const char* DERIVED[] = {
    "png:sRGB",         "oiio:Gamma",          "Exif:ColorSpace",    "Exif:Gamma",        "png:iCCP",
    "oiio:SHA-1",       "oiio:ConstantColor",  "oiio:ConstantAlpha", "oiio:AverageColor", "thumbnail_width",
    "thumbnail_height", "thumbnail_nchannels", "thumbnail_image",    OWN_COLOR_SPACE,
};

void remove_color_descriptions(OIIO::ImageSpec& spec, diagnostics::Diagnostics& notes) {
    std::string removed;
    for (const char* name : COLOR_DESCRIPTIONS)
        if (spec.find_attribute(name) != nullptr) {
            spec.erase_attribute(name);
            removed += std::string(removed.empty() ? "" : ", ") + name;
        }
    if (!removed.empty())
        notes.push_back(diagnostics::make_note(
            diagnostics::Code::METADATA_DROPPED,
            fmt::format("removed metadata of the old color space: {}", removed), removed));
    for (const char* name : DPX_DESCRIPTIONS)
        spec.erase_attribute(name);
    spec.erase_attribute("^ICC:.*");
    spec.erase_attribute("^ICCProfile:.*");
}

} // namespace

void remove_stale_color_metadata(OIIO::ImageSpec& spec, const std::string& color_space_tag, bool keeps_space,
                                 diagnostics::Diagnostics& notes) {
    if (color_space_tag.empty())
        return;
    if (!keeps_space)
        remove_color_descriptions(spec, notes);
    for (const char* name : DERIVED)
        spec.erase_attribute(name);
    set_dpx_color_space(spec, "");
    spec.attribute("oiio:ColorSpace", color_space_tag);
}

void remove_foreign_metadata(OIIO::ImageSpec& spec, const std::string& format, bool same_format,
                             bool same_depth) {
    if (format == "openexr") // OpenImageIO writes no profile, and reports each one on standard error
        spec.erase_attribute("^ICCProfile.*");
    if (!same_format) {
        spec.erase_attribute("compression");
        spec.erase_attribute("planarconfig");
    }
    if (!same_format || !same_depth)
        for (const char* name : DPX_CODES)
            spec.erase_attribute(name);
    if (!same_format || !same_depth || spec.get_int_attribute("oiio:BitsPerSample") < 8)
        spec.erase_attribute("oiio:BitsPerSample");
}

} // namespace image
