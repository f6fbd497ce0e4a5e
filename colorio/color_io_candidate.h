#pragma once

#include <optional>

#include "colorio/color_io_export.h"
#include "diagnostics/diagnostic.h"
#include "host/core/core_string.h"

/// Judges files before they are put to use: nothing of the running module changes. For programs that keep
/// what they show when a new file cannot be used; hosts raise their events and let the module decide.
class COLORIO_API ColorIOCandidate {
public:
    /// Why a file cannot be used; nothing when it can.
    using Fault = std::optional<diagnostics::Diagnostic>;

    /// Loads and checks the OCIO config at `path`, as the module does when it is named.
    static Fault check_config_file(const CoreString& path);
    /// Loads and checks the OCIO config that the environment variable OCIO names.
    static Fault check_config_of_environment();
    /// Reads the ASC CDL file at `path`, as the module reads a CDL library. One readable color correction is
    /// enough.
    static Fault check_cdl_library(const CoreString& path);
};
