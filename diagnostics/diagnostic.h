#pragma once

#include <string>
#include <vector>

#include "diagnostics/code.h"

namespace diagnostics {

/// In ascending order.
enum class Severity { NOTE, WARNING, ERROR };

/// "note", "warning" or "error".
const char* get_name(Severity severity);

/// One error, warning or note, created where its cause is known. Plain data.
struct Diagnostic {
    Code code = Code::LIBRARY_FAILURE;   ///< The cause.
    Severity severity = Severity::ERROR; ///< How serious it is.
    /// Name of the color space, view, CDL, option and so on that it is about; may be empty.
    std::string subject;
    std::string file;        ///< Path of the file with the error, as it was opened; empty when there is none.
    unsigned int line = 0;   ///< In that file, from 1; 0 without a line.
    unsigned int column = 0; ///< In that line, from 1; 0 without a column.
    std::string message;     ///< One line without a final full stop: what is wrong, and why.
    std::string hint;        ///< What to do about it; may be empty.
};

/// Compares every field.
bool operator==(const Diagnostic& a, const Diagnostic& b);
/// Whether both are about the same error at the same place, however severe and in any words.
bool has_same_cause(const Diagnostic& a, const Diagnostic& b);

/// In the order in which they were reported.
using Diagnostics = std::vector<Diagnostic>;

/// The most severe one, the first of several; null for an empty list. Points into `list`.
const Diagnostic* find_worst(const Diagnostics& list);
/// Whether one of them has the severity ERROR.
bool has_error(const Diagnostics& list);

/// Adds those of `others` that are not in the list yet. One that differs in its severity alone is the same,
/// and becomes as severe as the more severe of both.
void add_new(Diagnostics& list, const Diagnostics& others);

/// A diagnostic, and how often it was reported.
struct CountedDiagnostic {
    Diagnostic diagnostic; ///< The diagnostic.
    unsigned int count;    ///< At least 1.
};

/// Each different diagnostic once, in the order of first occurrence.
std::vector<CountedDiagnostic> count_repeated(const Diagnostics& list);

/// Those of the list about `subject`, ignoring case; all of them where there is none.
Diagnostics select(const Diagnostics& list, const std::string& subject);

/// The message, after its position if it has a line: "grades.ccc:3:17: the element is not closed".
std::string format_located(const Diagnostic& diagnostic);
/// The same, and the hint after a semicolon if it has one.
std::string format_with_hint(const Diagnostic& diagnostic);

/// `text` as a message: runs of blanks and line ends become one blank, a final full stop is removed.
std::string flatten(const std::string& text);

} // namespace diagnostics
