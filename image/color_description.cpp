#include "image/color_description.h"

#include "image/color_tags.h"

namespace image {

namespace {

bool has(const OIIO::ImageSpec& spec, const char* name) {
    return spec.find_attribute(name) != nullptr;
}

template <class Value>
void add_array(const char* name, OIIO::TypeDesc::BASETYPE type, const std::vector<Value>& values,
               OIIO::ImageSpec& spec) {
    if (!values.empty() && !has(spec, name))
        spec.attribute(name, OIIO::TypeDesc(type, static_cast<int>(values.size())), values.data());
}

/// Whether files of this format keep attributes of any name.
bool has_own_attributes(const std::string& format) {
    return format == "openexr" || format == "png";
}

void add_profile(const ColorDescription& colors, OIIO::ImageSpec& spec) {
    if (spec.nchannels >= 3)
        add_array("ICCProfile", OIIO::TypeDesc::UINT8, colors.icc_profile, spec);
}

void add_dpx_field(const char* name, const std::string& value, OIIO::ImageSpec& spec) {
    if (!has(spec, name))
        spec.attribute(name, value.empty() ? "Undefined" : value);
}

} // namespace

bool states_color_space(const OIIO::ImageSpec& spec, const std::string& format) {
    const bool has_profile = (format == "jpeg" || format == "tiff") && has(spec, "ICCProfile");
    return has_own_attributes(format) || format == "dpx" || has_profile;
}

void describe_colors(const ColorDescription& colors, const std::string& format, OIIO::ImageSpec& spec) {
    if (has_own_attributes(format) && !colors.name.empty())
        spec.attribute(OWN_COLOR_SPACE, colors.name);
    if (format == "openexr") {
        if (!colors.interop_id.empty() && !has(spec, "colorInteropID"))
            spec.attribute("colorInteropID", colors.interop_id);
        add_array("chromaticities", OIIO::TypeDesc::FLOAT, colors.chromaticities, spec);
    }
    if (format == "dpx") {
        add_dpx_field("dpx:Transfer", colors.dpx_transfer, spec);
        add_dpx_field("dpx:Colorimetric", colors.dpx_colorimetric, spec);
        set_dpx_color_space(spec, colors.name);
        spec.erase_attribute("oiio:ColorSpace"); // by which newer versions of OpenImageIO change the transfer
    }
    if (has(spec, "CICP") || has(spec, "ICCProfile"))
        return;
    if (format == "png")
        add_array("CICP", OIIO::TypeDesc::INT32, colors.cicp, spec);
    if (format == "png" || format == "jpeg" || format == "tiff")
        add_profile(colors, spec);
}

} // namespace image
