#include "xml/clear_tags.h"

#include <cstring>

namespace xml {

const std::array<ClearTag, 4> CLEAR_TAGS = {{
    {"<![CDATA[", 9, "]]>", 3},
    {"<!DOCTYPE", 9, ">", 1},
    {"<!--", 4, "-->", 3},
    {"<PRE>", 5, "</PRE>", 6},
}};

const ClearTag* find_clear_tag(const char* at) {
    for (const ClearTag& tag : CLEAR_TAGS) {
        if (std::strncmp(at + 1, tag.open + 1, tag.open_length - 1) == 0)
            return &tag;
    }
    return nullptr;
}

} // namespace xml
