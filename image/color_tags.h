#pragma once

#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

namespace image {

/// This project's attribute for the name of the color space: what OpenImageIO stores of
/// "oiio:ColorSpace" depends on the format and the version.
constexpr char OWN_COLOR_SPACE[] = "colorio:ColorSpace";

/// What a file names as its color space that says that its colors are of no known one, as the Color Interop
/// Forum has it.
constexpr char UNKNOWN_COLOR_SPACE[] = "unknown";

/// One of the descriptions of its colors that an image file contains.
struct ColorTag {
    enum Kind {
        NAME,           ///< `text` is the name of a color space.
        INTEROP_ID,     ///< `text` is a color interop ID: "lin_ap1_scene".
        CICP,           ///< `numbers` are primaries, transfer, matrix and range of ITU-T H.273.
        ICC_PROFILE,    ///< `bytes` are a profile.
        SRGB,           ///< The file states sRGB.
        ACES_CONTAINER, ///< An OpenEXR file by SMPTE ST 2065-4: ACES2065-1.
        CHROMATICITIES, ///< `numbers` are x and y of red, green, blue and white, of linear pixels.
        DPX_TRANSFER    ///< `text` is the transfer characteristic of a DPX file: "Printing density".
    };

    Kind kind;
    std::string attribute; ///< For messages: "oiio:ColorSpace", "cICP", "ICC profile".
    std::string text;
    std::vector<double> numbers;
    std::vector<unsigned char> bytes;
    std::string colorimetric = {}; ///< Of DPX_TRANSFER, by the same file: "ITU-R 709-4".

    /// The file says that its color space is not known.
    bool states_unknown() const;
    /// For messages: "oiio:ColorSpace 'Cineon'", "chromaticities 0.64 0.33 ...".
    std::string describe() const;
};

/// All descriptions of its colors that an image file contains.
struct ColorTags {
    std::vector<ColorTag> tags; ///< The most specific one first.
    bool is_float = false;      ///< Its colors are floats, halfs included.

    /// Each tag for messages.
    std::vector<std::string> describe() const;
};

/// Records the name of the color space in the user data of a DPX file, unless those of another program are
/// there; an empty name removes it.
void set_dpx_color_space(OIIO::ImageSpec& spec, const std::string& name);

/// The tags in the header of one part of an image. What OpenImageIO assumes about a format, such as sRGB for
/// every PNG file, is not a tag.
ColorTags find_color_tags(const OIIO::ImageSpec& spec);

} // namespace image
