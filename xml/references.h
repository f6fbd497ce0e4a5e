#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "xml/characters.h"
#include "xml/document.h"
#include "xml/xml_error.h"

namespace xml {

/// A predefined entity.
struct Entity {
    std::string_view reference; ///< "&amp;"
    char character;             ///< '&'
};

/// The five predefined entities, in the order in which they are tried.
constexpr std::array<Entity, 5> ENTITIES = {{
    {"&amp;", '&'},
    {"&lt;", '<'},
    {"&gt;", '>'},
    {"&quot;", '"'},
    {"&apos;", '\''},
}};

/// A reference in a text and the byte that replaces it.
struct Reference {
    XmlError error;     ///< NONE, UNKNOWN_ENTITY or CHARACTER_CODE_ABOVE_255.
    std::size_t length; ///< Bytes of the reference.
    char byte;          ///< Its replacement.
};

/// Reads the reference at the ampersand `at` of a zero-terminated text. Entity names match ignoring case; a
/// character reference is replaced by one byte, the zero byte when it has no digits.
Reference read_reference(const char* at);

/// How a text is decoded, besides its line ends, which become line feeds. The bytes that belong to a
/// character by the length table are copied unchanged.
struct DecodingRules {
    const CharacterTable& characters;
    bool blanks_to_spaces; ///< every blank becomes a space, as in an attribute value
};

/// A zero-terminated copy of [begin, end) in the document's storage with its references replaced; invalid
/// ones are unchanged. Null when memory is short.
char* decode(Document& document, const char* begin, const char* end, const DecodingRules& rules);

} // namespace xml
