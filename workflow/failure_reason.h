#pragma once

#include <exception>
#include <string>
#include <vector>

#include "workflow/log_recorder.h"

namespace tool {

/// What kind of thing is wrong, for programs that read the answer.
enum class FailureKind {
    MISSING_FILE,
    UNSET_VARIABLE, ///< A path names a context variable that has no value.
    BAD_FILE,
    NEWER_FILE, ///< Of a version that OpenColorIO does not know.
    CYCLE,
    NEWER_CONFIG,
    UNKNOWN_NAME,
    MEMORY,
    OTHER
};

struct FailureReason {
    FailureKind kind = FailureKind::OTHER;
    std::string text; ///< One sentence or two, in words that say what to do where that is known.
};

/// "missing file" and so on.
const char* get_kind_name(FailureKind kind);

/// Puts the colour library's words into ones to act on; words that are not known stay as they are.
FailureReason explain_library_message(const std::string& message);

/// What an exception says to the user: its own words, or that memory ran out.
std::string explain_exception(const std::exception& exception);

/// True for the colour library's own words, among what the module logs.
bool is_library_failure(const LoggedMessage& message);

/// The reason that the module's messages give for a failure: the colour library's own words where it threw,
/// otherwise the first error, else the last warning.
FailureReason find_failure_reason(const std::vector<LoggedMessage>& messages);
std::string explain_failure(const std::vector<LoggedMessage>& messages);

} // namespace tool
