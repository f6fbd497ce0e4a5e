#pragma once

#include <string>

#include <OpenImageIO/imageio.h>

namespace image {

// An image file can record how it was made: a fingerprint of the conversion and of what it was made from.
// OpenEXR and PNG files have it in the attribute "colorio:fingerprint"; TIFF, JPEG and DPX files, which have
// no room for other attributes, in "Software": "colorio FINGERPRINT". Other formats cannot keep it.

/// Whether files of this format, by OpenImageIO's name, can record it.
bool can_record_conversion(const std::string& format);

/// Sets the fingerprint; removes that of an earlier conversion. An empty one, and any for a format that
/// cannot keep it, is not set.
void record_conversion(OIIO::ImageSpec& spec, const std::string& format, const std::string& fingerprint);

/// The fingerprint in the header of a file; empty if it has none.
std::string get_recorded_conversion(const OIIO::ImageSpec& spec, const std::string& format);

} // namespace image
