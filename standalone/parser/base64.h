#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The bytes that `text` stands for in base64 (RFC 4648, section 4), padded; blanks and line ends between its
/// characters do not count. Nothing when it is no such text.
std::optional<std::string> decode_base64(std::string_view text);
