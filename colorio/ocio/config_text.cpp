#include "colorio/ocio/config_text.h"

#include <fstream>
#include <iterator>
#include <string_view>

namespace ocio {

std::optional<std::string> read_config_text(const std::string& path) {
    constexpr std::string_view ARCHIVE_MARK = "PK";
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return std::nullopt;
    std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    return text.compare(0, ARCHIVE_MARK.size(), ARCHIVE_MARK) == 0 ? std::nullopt : std::optional(text);
}

} // namespace ocio
