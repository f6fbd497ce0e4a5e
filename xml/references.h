#pragma once

#include <array>
#include <cstddef>
#include <string_view>

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

/// What becomes of a text besides its line ends, which turn into line feeds.
struct DecodingRules {
    bool references;       ///< references are replaced; one that is wrong stays as it is
    bool blanks_to_spaces; ///< every blank turns into a space, as in an attribute value
};

/// A zero-terminated decoded copy of [begin, end) in the document; null when memory is short.
char* decode(Document& document, const char* begin, const char* end, DecodingRules rules);

} // namespace xml
