#include "colorio/ocio/xml_root.h"

#include <fstream>
#include <string_view>

namespace ocio {

namespace {

constexpr std::size_t MAX_PROLOGUE = 64 * 1024;

bool starts_with(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

/// The text after the first `end`, or nothing.
std::string_view after(std::string_view text, std::string_view end) {
    const std::size_t at = text.find(end);
    return at == std::string_view::npos ? std::string_view() : text.substr(at + end.size());
}

} // namespace

std::string xml_root_name(const std::string& path) {
    std::string head(MAX_PROLOGUE, '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(head.data(), static_cast<std::streamsize>(head.size()));
    std::string_view rest(head.data(), static_cast<std::size_t>(file.gcount()));
    while (true) {
        const std::size_t tag = rest.find('<');
        if (tag == std::string_view::npos)
            return {};
        rest.remove_prefix(tag);
        if (starts_with(rest, "<?"))
            rest = after(rest, "?>");
        else if (starts_with(rest, "<!--"))
            rest = after(rest, "-->");
        else if (starts_with(rest, "<!"))
            // Declarations inside a document type are skipped one by one.
            rest.remove_prefix(2);
        else
            return std::string(rest.substr(1, rest.find_first_of(" \t\r\n/>", 1) - 1));
    }
}

} // namespace ocio
