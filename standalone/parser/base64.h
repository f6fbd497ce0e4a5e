#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Decodes padded base64 (RFC 4648, section 4); blanks and line ends between the characters are ignored.
/// Empty when `text` is not valid base64.
std::optional<std::string> decode_base64(std::string_view text);
