#pragma once

#include <cstdint>
#include <string>

/// Outcome of a parse or a write. The two warnings leave a tree behind; every other code but NONE does not.
/// The Base64 codes are never raised; they keep the numbering complete.
enum class XmlError : std::int32_t {
    NONE = 0,
    UNMATCHED_END_TAG_WARNING = 1,
    NO_TAG_FOUND_WARNING = 2,
    NO_DATA = 3,
    MISSING_START_TAG_NAME = 4,
    MISSING_END_TAG_NAME = 5,
    UNMATCHED_END_TAG = 6,
    UNMATCHED_CLEAR_TAG_END = 7,
    UNEXPECTED_TOKEN = 8,
    NO_ELEMENTS_FOUND = 9,
    FILE_NOT_FOUND = 10,
    FIRST_TAG_NOT_FOUND = 11,
    UNKNOWN_ENTITY = 12,
    CHARACTER_CODE_ABOVE_255 = 13,
    CONVERSION_FAILED = 14,
    CANNOT_OPEN_FOR_WRITING = 15,
    CANNOT_WRITE = 16,
    BASE64_LENGTH = 17,
    BASE64_CHARACTER = 18,
    BASE64_TRUNCATED = 19,
    BASE64_BUFFER_TOO_SMALL = 20,
};

/// Result of a parse. Line and column are 0 when there was no error or when the error has no position.
struct XmlResults {
    XmlError error = XmlError::NONE; ///< Error or first warning.
    std::int32_t line = 0;           ///< From 1.
    std::int32_t column = 0;         ///< From 1; counts characters, not bytes.
};

/// Fixed English text of a code; "Unknown" for a number outside 0 to 20.
const char* get_error_text(XmlError code);
/// The same without "Error: " or "Warning: " and without a final full stop or line end.
std::string get_error_reason(XmlError code);
