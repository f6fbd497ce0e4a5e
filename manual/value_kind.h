#pragma once

#include <string>

#include "manual/command_description.h"

namespace manual {

/// What the value of an option or argument is.
enum class ValueKind {
    OTHER, ///< A number, a new name: nothing can be offered.
    CHOICE,
    FILE,
    FOLDER,
    COLOR_SPACE, ///< Or a role.
    VIEW,
    DISPLAY,
    LOOKS, ///< Comma-separated; "-" before a name.
    NAMED_TRANSFORM,
    CDL, ///< Published, or a file.
    FORMAT,
    CUSTOM_SPACE,
    PREFERENCE
};

/// The kind of value of an option of the command "convert" or "cdl add".
ValueKind get_value_kind(const std::string& command, const OptionDescription& option);

} // namespace manual
