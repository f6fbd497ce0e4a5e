#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace image {

// The layout of a chunk: Portable Network Graphics, third edition, 5.3.

/// Its length and type.
inline constexpr std::size_t PNG_HEADER_BYTES = 8;
inline constexpr std::size_t PNG_NUMBER_BYTES = 4;

using PngNumber = std::array<char, PNG_NUMBER_BYTES>;

/// The number that begins at `bytes`, the most significant byte first.
std::uint32_t get_png_number(const char* bytes);
PngNumber make_png_number(std::uint32_t number);
/// The checksum of a chunk, by its type and data.
PngNumber make_png_checksum(std::string_view type_and_data);

} // namespace image
