#pragma once

#include <exception>
#include <string>

#include "diagnostics/failure.h"
#include "viewer/panels.h"

namespace viewer {

/// Makes a change; returns the error, or empty on success. Exceptions must not leave a frame that has begun:
/// Dear ImGui requires that it is finished.
template <class Change>
std::string find_refusal(const Change& change) {
    try {
        change();
    } catch (const std::exception& error) {
        return diagnostics::format_located(diagnostics::describe(error));
    }
    return "";
}

/// Makes a change for the user; an error is shown.
template <class Change>
void Panels::attempt(const Change& change) {
    fault = find_refusal(change);
}

} // namespace viewer
