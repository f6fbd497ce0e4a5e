#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "xml/characters.h"
#include "xml/document.h"
#include "xml/xml_error.h"

namespace xml {

struct Entity {
    std::string_view reference;
    char character;
};

/// The five entities, in the order in which they are looked for.
constexpr std::array<Entity, 5> ENTITIES = {{
    {"&amp;", '&'},
    {"&lt;", '<'},
    {"&gt;", '>'},
    {"&quot;", '"'},
    {"&apos;", '\''},
}};

/// One reference and the byte it stands for.
struct Reference {
    XmlError error;
    std::size_t length;
    char byte;
};

/// Reads the reference at the ampersand `at` of a zero-terminated text. Entity names match ignoring case; a
/// character reference stands for one byte, the zero byte when it has no digits.
Reference read_reference(const char* at);

/// What becomes of a text besides its line ends, which turn into line feeds. The bytes that the length table
/// counts to one character are copied whole, whatever they are.
struct DecodingRules {
    const CharacterTable& characters;
    bool blanks_to_spaces; ///< every blank turns into a space, as in an attribute value
};

/// A zero-terminated copy of [begin, end) in the document with its references replaced; one that is wrong
/// stays as it is. Null when memory is short.
char* decode(Document& document, const char* begin, const char* end, const DecodingRules& rules);

} // namespace xml
