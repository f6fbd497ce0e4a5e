#pragma once

#include <string_view>

namespace xml {

/// What the inside of an XML declaration holds, between "<?xml" and "?>".
struct DeclarationCheck {
    const char* fault = nullptr; ///< first character that does not fit; null when all does
    std::string_view encoding;   ///< declared encoding; empty without one
};

/// Checks against XML 1.0, production 23: the version, then perhaps the encoding, then perhaps standalone.
/// The two characters after `content` must be readable.
DeclarationCheck check_declaration(std::string_view content);

/// True for an encoding whose units are wider than a byte, which no text of bytes can have.
bool is_wide_encoding(std::string_view name);

} // namespace xml
