#pragma once

#include <exception>
#include <string>

#include "diagnostics/failure.h"
#include "viewer/panels.h"

namespace viewer {

/// Makes a change, and answers why it was not made; empty when it was. No exception may leave a frame that
/// has begun: the panels' library would find it unfinished.
template <class Change>
std::string find_refusal(const Change& change) {
    try {
        change();
    } catch (const std::exception& error) {
        return diagnostics::format_located(diagnostics::describe(error));
    }
    return "";
}

/// Makes a change that the user asked for; a refusal is shown.
template <class Change>
void Panels::attempt(const Change& change) {
    fault = find_refusal(change);
}

} // namespace viewer
