#pragma once

#include <exception>
#include <string>

#include "viewer/panels.h"
#include "workflow/failure_reason.h"

namespace tool {

/// Makes a change, and answers why it was not made; empty when it was. No exception may leave a frame that
/// has begun: the panels' library would find it unfinished.
template <class Change>
std::string find_refusal(const Change& change) {
    try {
        change();
    } catch (const std::exception& error) {
        return explain_exception(error);
    }
    return "";
}

/// Makes a change that the user asked for; a refusal is shown.
template <class Change>
void Panels::attempt(const Change& change) {
    fault = find_refusal(change);
}

} // namespace tool
