#pragma once

#include "colorio/color_io_export.h"
#include "diagnostics/diagnostic.h"

/// Collects what goes wrong in the module on this thread while the object lives: one diagnostic for each
/// cause, beside the lines of the log. Objects nest, and the innermost one collects. For programs that
/// explain failures; hosts may read the log instead. Must be destroyed on the thread that made it, in reverse
/// order of making.
class COLORIO_API ColorIODiagnostics {
public:
    ColorIODiagnostics();
    ~ColorIODiagnostics();
    ColorIODiagnostics(const ColorIODiagnostics&) = delete;
    ColorIODiagnostics& operator=(const ColorIODiagnostics&) = delete;

    /// What was collected since the last call, in order.
    diagnostics::Diagnostics take();

    /// Hands a diagnostic to the innermost collector of this thread; drops it where there is none.
    static void report(const diagnostics::Diagnostic& diagnostic) noexcept;

private:
    ColorIODiagnostics* const outer;
    diagnostics::Diagnostics collected;
};
