#include "colorio/color_io_diagnostics.h"

#include <new>
#include <utility>

namespace {

thread_local ColorIODiagnostics* innermost = nullptr;

} // namespace

ColorIODiagnostics::ColorIODiagnostics() : outer(std::exchange(innermost, this)) {}

ColorIODiagnostics::~ColorIODiagnostics() {
    innermost = outer;
}

diagnostics::Diagnostics ColorIODiagnostics::take() {
    return std::exchange(collected, {});
}

void ColorIODiagnostics::report(const diagnostics::Diagnostic& diagnostic) noexcept {
    if (!innermost)
        return;
    try {
        innermost->collected.push_back(diagnostic);
    } catch (const std::bad_alloc&) {
        // The failure itself was reported and logged; only its description is lost.
    }
}
