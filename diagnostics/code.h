#pragma once

#include <string_view>

namespace diagnostics {

/// The causes of diagnostics. Their names (`get_name`) are stable: programs compare them.
enum class Code {
    // files
    FILE_MISSING,
    FILE_NOT_REGULAR,
    FILE_UNREADABLE,
    FILE_UNWRITABLE,
    FILE_TOO_LARGE,
    // configs
    CONFIG_MISSING,
    CONFIG_INVALID,
    CONFIG_NEWER,
    CONFIG_CYCLE,
    CONFIG_TOO_COMPLEX,
    CONFIG_VARIABLE,
    CONFIG_BUILTIN,
    // parts of a config
    LUT_MISSING,
    LUT_DAMAGED,
    LUT_UNWRITABLE,
    LUT_INEXACT,
    MATRIX_SINGULAR,
    COLOR_SPACE_UNKNOWN,
    VIEW_UNKNOWN,
    LOOK_UNKNOWN,
    NAMED_TRANSFORM_UNKNOWN,
    VIEW_TRANSFORM_UNKNOWN,
    ROLE_UNKNOWN,
    NAME_DUPLICATE,
    CUSTOM_COLOR_SPACE_INVALID,
    CONVERSION_IMPOSSIBLE,
    // CDLs
    CDL_UNKNOWN,
    CDL_INVALID,
    CDL_ID_MISSING,
    CDL_ID_REPEATED,
    XML_MALFORMED,
    // format associations
    MAPPING_MALFORMED,
    MAPPING_ENTRY_INVALID,
    MAPPING_COLOR_SPACE_UNKNOWN,
    FORMAT_UNKNOWN,
    // preferences
    PREFERENCES_INVALID,
    HOME_MISSING,
    // images
    IMAGE_UNREADABLE,
    IMAGE_UNWRITABLE,
    IMAGE_UNSUPPORTED,
    LAYER_UNKNOWN,
    FRAMES_MISSING,
    // operations that succeeded with a result that users may not expect: the codes of notes and some warnings
    NAME_SUBSTITUTED,
    COLOR_SPACE_CHOSEN,
    COLOR_SPACE_ASSUMED,
    COLOR_SPACE_INACTIVE,
    REFERENCE_CHANGED,
    COLORS_UNCHANGED,
    IMAGE_ADAPTED,
    CHANNELS_DROPPED,
    METADATA_DROPPED,
    CDL_CHOSEN,
    CDL_COPIED,
    CDL_ROUNDED,
    CDL_ELEMENT_IGNORED,
    FORMAT_SHADOWED,
    TEMPORARY_FOLDER,
    PREFERENCE_CHANGED,
    // everything else
    USAGE,
    USAGE_REFUSED,
    SCRIPT_FAILED,
    DISPLAY_MISSING,
    GPU_UNAVAILABLE,
    GPU_LIMIT,
    SHADER_INVALID,
    SHADER_IMPOSSIBLE,
    OUT_OF_MEMORY,
    MEMORY_EXCEEDED,
    SYSTEM_FAILURE,
    LIBRARY_FAILURE,
};

/// A code, its name and its meaning.
struct CodeInfo {
    Code code;                ///< The code.
    std::string_view name;    ///< "lut-missing".
    std::string_view meaning; ///< One sentence for the documentation.
};

/// A range of codes, for range-based loops.
struct CodeTable {
    const CodeInfo* first; ///< The first one.
    const CodeInfo* last;  ///< One past the last one.
    /// The same as `first`.
    const CodeInfo* begin() const { return first; }
    /// The same as `last`.
    const CodeInfo* end() const { return last; }
};

/// Every code once, in the order of the enumeration.
CodeTable get_codes();

/// The stable name of a code, "lut-missing".
std::string_view get_name(Code code);

} // namespace diagnostics
