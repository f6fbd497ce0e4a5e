#pragma once

#include <string>

#include <OpenImageIO/imageio.h>

namespace image {

/// How a file format keeps color beside alpha.
enum class AlphaConvention {
    ASSOCIATED, ///< Color is multiplied by alpha.
    STRAIGHT,   ///< Color is not multiplied by alpha.
    EITHER      ///< The file says which.
};

/// What a format can keep of an image.
struct FormatAbilities {
    std::string name; ///< OpenImageIO's name of the format, for example "openexr".
    AlphaConvention alpha_convention;
    bool has_alpha;
    bool has_any_channels;    ///< More than color and alpha, by name.
    bool has_channel_formats; ///< A type for each channel.
    bool has_windows;         ///< A data window apart from the display window.
    bool has_negative_origin; ///< Windows that start left of or above the origin.
    bool has_subimages;
    bool has_levels;        ///< Levels of resolution under one subimage.
    bool appends_subimages; ///< Subimages need not be told of in advance.
    bool has_tiles;
};

/// Asks the format that will write `path`, told by the extension. Throws diagnostics::Failure when there is
/// none.
FormatAbilities get_format_abilities(const std::string& path);

} // namespace image
