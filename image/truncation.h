#pragma once

#include <string>

namespace image {

/// True when the image file at `path` ends before its pixels do, or its headers have no position for some of
/// them: for OpenEXR, PNG, TIFF, JPEG and DPX files, by OpenImageIO's name of the `format`.
/// Reads headers and tables of positions, no pixels, so that thousands of files can be checked in a second;
/// find_damage reads more. True also for files that cannot be read. Safe with any bytes.
bool is_truncated(const std::string& path, const std::string& format);

/// True when the headers of a TIFF or DPX file place pixels behind its end, which OpenImageIO reads as zeros;
/// it reports that of other formats itself. Strips of a TIFF may be without a position: those are zeros. True
/// also for files that cannot be read. Safe with any bytes.
bool lacks_pixels(const std::string& path, const std::string& format);

} // namespace image
