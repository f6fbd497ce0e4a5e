#include "xml/xml_error.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace {

constexpr std::array<const char*, 21> ERROR_TEXTS = {
    "No error",
    "Warning: Unmatched end tag",
    "Warning: No XML tag found",
    "Error: No XML data",
    "Error: Missing start tag name",
    "Error: Missing end tag name",
    "Error: Unmatched end tag",
    "Error: Unmatched clear tag end",
    "Error: Unexpected token found",
    "Error: No elements found",
    "Error: File not found",
    "Error: First Tag not found",
    "Error: Unknown character entity",
    "Error: Character code above 255 is forbidden in MultiByte char mode.",
    "Error: unable to convert between WideChar and MultiByte chars",
    "Error: unable to open file for writing",
    "Error: cannot write into file",
    "Warning: Base64-string length is not a multiple of 4",
    "Error: Base64-string contains an illegal character",
    "Warning: Base64-string is truncated",
    "Error: Base64 decode output buffer is too small",
};

} // namespace

const char* get_error_text(XmlError code) {
    const auto index = static_cast<std::int32_t>(code);
    if (index < 0 || static_cast<std::size_t>(index) >= ERROR_TEXTS.size())
        return "Unknown";
    return ERROR_TEXTS[static_cast<std::size_t>(index)];
}

std::string get_error_reason(XmlError code) {
    std::string_view reason = get_error_text(code);
    for (const std::string_view kind : {"Error: ", "Warning: "})
        if (reason.substr(0, kind.size()) == kind)
            reason.remove_prefix(kind.size());
    while (!reason.empty() && (reason.back() == '.' || reason.back() == '\n'))
        reason.remove_suffix(1);
    return std::string(reason);
}
