#pragma once

#include <string>

#include "diagnostics/diagnostic.h"
#include "files/failure.h"

namespace files {

/// The one translation of failed file accesses: an error about the file with the code for a missing, an
/// irregular, a too large, an unreadable or an unwritable file, and the message "cannot read 'PATH': REASON".
diagnostics::Diagnostic to_diagnostic(const Failure& failure);

/// The reason of that message: "no such file", "it is a folder", otherwise the system's words.
std::string get_reason(const Failure& failure);

} // namespace files
