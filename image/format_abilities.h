#pragma once

#include <string>

#include <OpenImageIO/imageio.h>

namespace image {

/// How a file format stores color of pixels with alpha.
enum class AlphaConvention {
    ASSOCIATED, ///< Color is multiplied by alpha.
    STRAIGHT,   ///< Color is not multiplied by alpha.
    EITHER      ///< Stated in the file.
};

/// What a file format supports, as OpenImageIO reports it.
struct FormatAbilities {
    std::string name; ///< OpenImageIO's name of the format, for example "openexr".
    AlphaConvention alpha_convention;
    bool has_alpha;
    bool has_any_channels;    ///< Other channels than color and alpha, with names.
    bool has_gray;            ///< Images of one channel.
    bool has_gray_alpha;      ///< Images of gray and alpha.
    bool has_channel_formats; ///< A type for each channel.
    bool has_windows;         ///< A data window that differs from the display window.
    bool has_negative_origin; ///< Windows that start left of or above the origin.
    bool has_subimages;
    bool has_levels;        ///< Mipmap levels of a subimage.
    bool appends_subimages; ///< Subimages can be added one by one; else all specs are needed first.
    bool has_tiles;
    bool has_deep; ///< Pixels with several samples.
};

/// Throws diagnostics::Failure when an image of `channels` channels cannot be written to `path`, whose format
/// has `abilities`. OpenImageIO ends the process for some of them.
void check_channel_count(int channels, const FormatAbilities& abilities, const std::string& path);

/// The abilities of the format of `path`, which is selected by its extension. Throws diagnostics::Failure for
/// an unknown extension.
FormatAbilities get_format_abilities(const std::string& path);

} // namespace image
