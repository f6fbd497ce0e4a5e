#pragma once

#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

namespace image {

/// What is known about the colors of an output, in the terms of the file formats.
struct ColorDescription {
    /// Value of the attribute "oiio:ColorSpace"; UNKNOWN_COLOR_SPACE (image/color_tags.h) for no color space,
    /// empty to keep all color metadata.
    std::string name;
    std::string interop_id;            ///< "lin_ap1_scene"; may be empty.
    std::vector<float> chromaticities; ///< x and y of red, green, blue and white, of linear colors; or empty.
    std::vector<int> cicp;             ///< Primaries, transfer, matrix and range of ITU-T H.273; or empty.
    std::vector<unsigned char> icc_profile; ///< For red, green and blue; may be empty.
    std::string dpx_transfer;               ///< By SMPTE ST 268, in OpenImageIO's words; may be empty.
    std::string dpx_colorimetric;           ///< Likewise.
};

/// Whether a file of `format` with a spec by `describe_colors` says which color space it is in.
bool states_color_space(const OIIO::ImageSpec& spec, const std::string& format);

/// Adds to a spec without stale metadata what files of `format` can say about these colors: the name in
/// "colorio:ColorSpace" of OpenEXR and PNG and in the user data of DPX, interop ID and chromaticities of
/// OpenEXR, transfer and colorimetric of DPX ("Undefined" when they are empty), cICP and the profile of PNG,
/// the profile of JPEG and TIFF. Attributes that are there already stay; gray images get no profile.
void describe_colors(const ColorDescription& colors, const std::string& format, OIIO::ImageSpec& spec);

} // namespace image
