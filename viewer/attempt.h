#pragma once

#include <exception>
#include <optional>

#include "diagnostics/failure.h"

namespace viewer {

/// Makes a change; returns the error, or nothing on success. For places that no exception must leave: Dear
/// ImGui requires that a frame that has begun is finished.
template <class Change>
std::optional<diagnostics::Diagnostic> find_error(const Change& change) {
    try {
        change();
    } catch (const std::exception& exception) {
        return diagnostics::describe(exception);
    }
    return std::nullopt;
}

} // namespace viewer
