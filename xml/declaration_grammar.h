#pragma once

#include <string_view>

namespace xml {

/// Result of checking an XML declaration, the text between "<?xml" and "?>".
struct DeclarationCheck {
    const char* error = nullptr; ///< first invalid character; null for a valid declaration
    std::string_view encoding;   ///< declared encoding; empty without one
};

/// Checks against XML 1.0, production 23: the version, an optional encoding, an optional standalone.
/// The two characters after `content` must be readable.
DeclarationCheck check_declaration(std::string_view content);

/// True for an encoding with units wider than a byte, which is wrong for a text of bytes.
bool is_wide_encoding(std::string_view name);

} // namespace xml
