#pragma once

#include <cstddef>
#include <vector>

#include "xml/xml_encoding.h"
#include "xml/xml_error.h"

namespace xml {

/// Sets the line and column of `offset` in `results`, counting characters from the start of `text`. The text
/// may have been cut into strings since: a zero byte counts as the one-byte character that it replaced, and
/// `lost_line_feeds` has the offsets of replaced line feeds, ascending.
void find_position(const char* text, std::size_t offset, const XmlLengthTable& lengths,
                   const std::vector<std::size_t>& lost_line_feeds, XmlResults& results);

} // namespace xml
