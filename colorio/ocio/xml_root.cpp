#include "colorio/ocio/xml_root.h"

#include <algorithm>
#include <fstream>

namespace ocio {

namespace {

constexpr std::size_t MAX_PROLOGUE = 64 * 1024;
constexpr char BLANKS[] = " \t\r\n";
constexpr char NAME_END[] = " \t\r\n/>=";

bool starts_with(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

/// The text after the first `end`, or nothing.
std::string_view after(std::string_view text, std::string_view end) {
    const std::size_t at = text.find(end);
    return at == std::string_view::npos ? std::string_view() : text.substr(at + end.size());
}

std::string read_prologue(const std::string& path) {
    std::string head(MAX_PROLOGUE, '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(file.gcount()));
    return head;
}

/// What follows the "<" of the outermost element; empty if there is none.
std::string_view find_root(std::string_view rest) {
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
            return rest.substr(1);
    }
}

} // namespace

std::string xml_root_name(const std::string& path) {
    const std::string head = read_prologue(path);
    const std::string_view root = find_root(head);
    return std::string(root.substr(0, root.find_first_of(NAME_END)));
}

std::string xml_root_attribute(const std::string& path, std::string_view name) {
    const std::string head = read_prologue(path);
    std::string_view rest = find_root(head);
    rest.remove_prefix(std::min(rest.find_first_of(NAME_END), rest.size()));
    while (true) {
        rest.remove_prefix(std::min(rest.find_first_not_of(BLANKS), rest.size()));
        const std::string_view found = rest.substr(0, rest.find_first_of(NAME_END));
        const std::size_t open = rest.find_first_of("\"'>");
        if (found.empty() || open == rest.npos || rest[open] == '>')
            return {};
        const std::size_t close = rest.find(rest[open], open + 1);
        if (close == rest.npos)
            return {};
        if (found == name)
            return std::string(rest.substr(open + 1, close - open - 1));
        rest.remove_prefix(close + 1);
    }
}

} // namespace ocio
