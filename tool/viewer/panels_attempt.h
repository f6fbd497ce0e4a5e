#pragma once

#include "tool/exit_code.h"
#include "tool/viewer/panels.h"

namespace tool {

/// Makes a change that the user asked for; a refusal is shown.
template <class Change>
void Panels::attempt(const Change& change) {
    try {
        change();
        fault.clear();
    } catch (const CommandError& error) {
        fault = error.what();
    }
}

} // namespace tool
