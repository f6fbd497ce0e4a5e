#pragma once

#include "xml/utf16.h"

namespace xml {

/// Bytes of the largest text that is read: counts and positions are 32-bit signed.
constexpr std::size_t MAX_TEXT = 0x7FFFFFFF;

/// Reads a whole regular file into a buffer from malloc that ends with four zero bytes not counted in its
/// length; the caller frees it. False, without a buffer, when the file cannot be opened and read (folders,
/// pipes and devices are refused), has more than MAX_TEXT bytes, or memory is short.
bool read_file(const char* path, OwnedText& file);

} // namespace xml
