#pragma once

#include <optional>

#include "colorio/color_io_export.h"
#include "diagnostics/diagnostic.h"
#include "host/core/core_string.h"

/// Checks files before they are used; the running module does not change. For programs that keep their
/// current state when a new file is unusable; hosts raise their events and let the module decide. Main thread
/// only. Any other exception than OpenColorIO's is logged and returned as OUT_OF_MEMORY.
class COLORIO_API ColorIOCandidate {
public:
    /// Why a file cannot be used; empty when it can.
    using Error = std::optional<diagnostics::Diagnostic>;

    /// Loads and checks the OCIO config at `path`, as the module does.
    static Error check_config_file(const CoreString& path);
    /// The same for the OCIO config named by the environment variable OCIO.
    static Error check_config_of_environment();
    /// Reads the ASC CDL file at `path`, as the module reads a CDL library. One valid color correction is
    /// enough.
    static Error check_cdl_library(const CoreString& path);
    /// Sets line and column of an error whose file is an OCIO config where its subject is found there: a look
    /// that a list of looks names (LOOK_UNKNOWN), or the definition of a member of a cycle (CONFIG_CYCLE).
    static void locate_in_config(diagnostics::Diagnostic& error);
};
