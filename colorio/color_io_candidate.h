#pragma once

#include <optional>

#include "colorio/color_io_export.h"
#include "diagnostics/diagnostic.h"
#include "host/core/core_string.h"

/// Checks files before they are used; the running module does not change. For programs that keep their
/// current state when a new file is unusable; hosts raise their events and let the module decide. Main thread
/// only. Failures for other reasons than the file, such as a shortage of memory, are logged and not returned.
class COLORIO_API ColorIOCandidate {
public:
    /// Why a file cannot be used; empty when it can.
    using Fault = std::optional<diagnostics::Diagnostic>;

    /// Loads and checks the OCIO config at `path`, as the module does.
    static Fault check_config_file(const CoreString& path);
    /// The same for the OCIO config named by the environment variable OCIO.
    static Fault check_config_of_environment();
    /// Reads the ASC CDL file at `path`, as the module reads a CDL library. One valid color correction is
    /// enough.
    static Fault check_cdl_library(const CoreString& path);
};
