#pragma once

#include <cstddef>
#include <vector>

#include "xml/xml_encoding.h"
#include "xml/xml_error.h"

namespace xml {

/// Enters the line and column of `offset` into `results`, walking from the start of `text` by characters.
/// The text may have been cut into strings since: a zero byte counts as the one-byte character it replaced,
/// and the line feeds replaced are those at `lost_line_feeds` (ascending offsets).
void find_position(const char* text, std::size_t offset, const XmlLengthTable& lengths,
                   const std::vector<std::size_t>& lost_line_feeds, XmlResults& results);

} // namespace xml
