#include "xml/text_position.h"

#include <algorithm>

namespace xml {

void find_position(const char* text, std::size_t offset, const XmlLengthTable& lengths,
                   const std::vector<std::size_t>& lost_line_feeds, XmlResults& results) {
    results.line = 1;
    results.column = 1;
    auto lost = lost_line_feeds.begin();
    for (std::size_t at = 0; at < offset;) {
        while (lost != lost_line_feeds.end() && *lost < at)
            ++lost;
        const bool is_lost = lost != lost_line_feeds.end() && *lost == at;
        if (is_lost || text[at] == '\n') {
            ++results.line;
            results.column = 1;
        } else {
            ++results.column;
        }
        at += std::max<std::size_t>(lengths[static_cast<unsigned char>(text[at])], 1);
    }
}

} // namespace xml
