#pragma once

#include <array>
#include <cstddef>

namespace xml {

/// A section that is kept verbatim between its two tags.
struct ClearTag {
    const char* open;         ///< "<!--"
    std::size_t open_length;  ///< Bytes.
    const char* close;        ///< "-->"
    std::size_t close_length; ///< Bytes.
};

/// Positions in CLEAR_TAGS.
enum ClearTagIndex : unsigned char { CDATA, DOCUMENT_TYPE, COMMENT, PREFORMATTED };

/// In the order in which they are tried.
extern const std::array<ClearTag, 4> CLEAR_TAGS;

/// The entry whose open tag begins at `at` (the byte there counts as '<'); null when none does. The text must
/// be zero-terminated.
const ClearTag* find_clear_tag(const char* at);

} // namespace xml
