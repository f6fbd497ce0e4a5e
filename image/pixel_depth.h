#pragma once

#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

namespace image {

/// How a file stores its colors.
struct PixelDepth {
    OIIO::TypeDesc type = OIIO::TypeUnknown;
    int bits = 0; ///< 10 or 12, of uint16, where the file stores fewer bits than the type has; else 0.

    bool is_known() const { return type != OIIO::TypeUnknown; }
    /// "uint8", "uint10", "half"; "unknown" for one that is not known.
    std::string get_name() const;
    /// Largest code value of 8, 10 and 12 bits; 0 for other depths.
    int get_few_codes() const;
};
bool operator==(const PixelDepth& a, const PixelDepth& b);

/// The depth that is called uint8, uint10, uint12, uint16, half or float. Throws diagnostics::Failure for
/// other names.
PixelDepth parse_depth(const std::string& name);

/// The depth of a file of `format` with that spec.
PixelDepth get_depth(const OIIO::ImageSpec& spec, const std::string& format);

/// What a file of `format` stores for colors of `type` when the user asks for no depth: 10 bits for floats in
/// DPX, which few programs read as floats. Unknown to leave it to OpenImageIO, which takes `type` or the
/// nearest.
PixelDepth get_usual_depth(OIIO::TypeDesc type, const std::string& format);

/// The type that stands for `type` in the format. OpenImageIO says that it writes halfs to FITS, but then
/// writes a file that is too short, and drops a bit of uint16: both become floats.
OIIO::TypeDesc get_storable_type(OIIO::TypeDesc type, const std::string& format);

/// Makes the writer of `format` store colors of `spec`, whose type is that of the depth, in `depth.bits`.
void set_bits(const PixelDepth& depth, OIIO::ImageSpec& spec);

/// The depths that files of `format` can have, by their names; empty for rare formats.
std::vector<std::string> get_depth_names(const std::string& format);

/// Throws diagnostics::Failure about the file at `path` when `format` does not support the depth, with those
/// that it supports. Does nothing for a depth that is not known and for rare formats.
void check_depth(const PixelDepth& depth, const std::string& format, const std::string& path);

} // namespace image
