#pragma once

#include "colorio/color_io_export.h"
#include "diagnostics/diagnostic.h"

/// Collects the module's errors, warnings and notes on this thread during its lifetime: one diagnostic per
/// cause, in addition to the log. Objects nest; the innermost one collects. For programs that explain
/// failures; hosts can read the log. Must be destroyed on the thread that made it, in reverse order of
/// construction.
class COLORIO_API ColorIODiagnostics {
public:
    /// Starts collecting.
    ColorIODiagnostics();
    ~ColorIODiagnostics();
    ColorIODiagnostics(const ColorIODiagnostics&) = delete;
    ColorIODiagnostics& operator=(const ColorIODiagnostics&) = delete;

    /// Diagnostics collected since the last call, in order.
    diagnostics::Diagnostics take();

    /// Adds a diagnostic to the innermost collector of this thread; ignored when there is none or memory is
    /// short.
    static void report(const diagnostics::Diagnostic& diagnostic) noexcept;

private:
    ColorIODiagnostics* const outer;
    diagnostics::Diagnostics collected;
};
