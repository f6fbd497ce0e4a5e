#pragma once

#include <string>
#include <vector>

#include "diagnostics/code.h"

namespace diagnostics {

enum class Severity { NOTE, WARNING, ERROR };

/// "note", "warning" or "error".
const char* get_name(Severity severity);

/// One thing that is wrong, said where its cause is known. Plain data: copied, compared and kept freely.
struct Diagnostic {
    Code code = Code::LIBRARY_FAILURE;
    Severity severity = Severity::ERROR;
    std::string
        subject;      ///< What it is about: the name of a color space, a view, a CDL, an option; else empty.
    std::string file; ///< Path of the file at fault, as it was opened; empty when there is none.
    unsigned int line = 0;   ///< In that file, from 1; 0 when the cause has no line.
    unsigned int column = 0; ///< In that line, from 1; 0 when the cause has no column.
    std::string message;     ///< One line without a final full stop: what is wrong, and why.
    std::string hint;        ///< What to do about it; empty when that is not known.
};

bool operator==(const Diagnostic& a, const Diagnostic& b);

using Diagnostics = std::vector<Diagnostic>;

/// The most severe of them, the first one among equals; null for an empty list.
const Diagnostic* find_worst(const Diagnostics& list);
bool has_error(const Diagnostics& list);

/// "grades.ccc:3:17: the element is not closed": the message behind its place in a file, where it has a line.
std::string format_located(const Diagnostic& diagnostic);

/// `text` in one line, as messages are: runs of blanks and line ends become one blank, a final full stop
/// goes.
std::string flatten(const std::string& text);

} // namespace diagnostics
