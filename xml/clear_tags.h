#pragma once

#include <array>
#include <cstddef>

namespace xml {

/// A section that is kept verbatim between its two tags.
struct ClearTag {
    const char* open;
    std::size_t open_length;
    const char* close;
    std::size_t close_length;
};

/// Positions in CLEAR_TAGS.
enum ClearTagIndex : unsigned char { CDATA, DOCUMENT_TYPE, COMMENT, PREFORMATTED };

/// In the order in which they are looked for.
extern const std::array<ClearTag, 4> CLEAR_TAGS;

/// The table entry whose open tag begins at `at`, its '<' taken as read; null when none does. The text is
/// zero-terminated.
const ClearTag* find_clear_tag(const char* at);

} // namespace xml
