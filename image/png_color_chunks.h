#pragma once

#include <cstdint>
#include <string>

#include <OpenImageIO/imageio.h>

namespace image {

/// Set for PNG files that state sRGB in a chunk, which OpenImageIO assumes of all others, too.
constexpr char PNG_SRGB_ATTRIBUTE[] = "png:sRGB";

/// Adds what the chunks of the PNG file at `path` say about its colors and OpenImageIO does not pass on:
/// PNG_SRGB_ATTRIBUTE, and "CICP" (four ints, as newer versions of OpenImageIO call it). Nothing for a
/// damaged file.
void add_png_color_chunks(const std::string& path, OIIO::ImageSpec& spec);

/// Where a PNG file may have a chunk about its colors: behind the header chunk.
inline constexpr std::int64_t PNG_COLOR_CHUNK_OFFSET = 33;

/// The chunk "cICP" for the attribute "CICP" of `spec`; empty when it has none.
std::string make_png_cicp_chunk(const OIIO::ImageSpec& spec);

} // namespace image
