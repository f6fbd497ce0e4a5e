#pragma once

#include <exception>
#include <string>
#include <type_traits>

#include "colorio/color_io_diagnostics.h"
#include "diagnostics/failure.h"

namespace workflow {

/// Runs `call`, a call of the module that returns whether it succeeded. Otherwise throws diagnostics::Failure
/// with the worst reason that the module reported, after the result of `describe`, which may be empty;
/// without a reason the error has the code `otherwise`. Converters may also throw exceptions of OpenColorIO,
/// which they report.
template <class Describe, class Call, class = std::invoke_result_t<Describe>>
void require_success(const Describe& describe, diagnostics::Code otherwise, const Call& call) {
    ColorIODiagnostics collector;
    bool is_done = false;
    try {
        is_done = call();
    } catch (const diagnostics::Failure&) {
        throw;
    } catch (const std::exception&) {
        // The module reported why.
    }
    if (!is_done)
        throw diagnostics::Failure(diagnostics::add_context(describe(), collector.take(), otherwise));
}

/// The same with the text `what`.
template <class Call>
void require_success(const std::string& what, diagnostics::Code otherwise, const Call& call) {
    require_success([&] { return what; }, otherwise, call);
}

} // namespace workflow
