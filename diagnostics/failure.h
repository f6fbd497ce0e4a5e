#pragma once

#include <exception>
#include <stdexcept>
#include <string>
#include <utility>

#include "diagnostics/diagnostic.h"

namespace diagnostics {

/// Exception with at least one diagnostic. `what()` is the message of the worst one, and after a semicolon
/// its hint.
class Failure : public std::runtime_error {
public:
    /// One diagnostic.
    explicit Failure(Diagnostic reason) : Failure(Diagnostics{std::move(reason)}) {}
    /// `reasons` must not be empty.
    explicit Failure(Diagnostics reasons)
        : std::runtime_error(format_with_hint(*find_worst(reasons))), reasons(std::move(reasons)) {}

    /// All of them; never empty.
    const Diagnostics& get_diagnostics() const { return reasons; }
    /// The most severe one, the first of several.
    const Diagnostic& get_worst() const { return *find_worst(reasons); }

private:
    Diagnostics reasons;
};

/// An error about `subject`, which may be empty.
Diagnostic make_error(Code code, std::string message, std::string subject = {});
/// An error about the file at `path`.
Diagnostic make_file_error(Code code, std::string message, std::string path);
/// A warning about `subject`, which may be empty.
Diagnostic make_warning(Code code, std::string message, std::string subject = {});
/// A warning about the file at `path`.
Diagnostic make_file_warning(Code code, std::string message, std::string path);
/// A note about `subject`, which may be empty.
Diagnostic make_note(Code code, std::string message, std::string subject = {});
/// A note about the file at `path`.
Diagnostic make_file_note(Code code, std::string message, std::string path);

/// The worst of `causes`, with `what` before its message: "cannot convert from 'a' to 'b': no LUT
/// 'film.cube'". Always an error. Without causes, an error with the code `otherwise` and an unknown reason.
Diagnostic add_context(const std::string& what, const Diagnostics& causes, Code otherwise);

/// The worst diagnostic of a Failure; OUT_OF_MEMORY for std::bad_alloc; for any other exception an error with
/// its text.
Diagnostic describe(const std::exception& exception);

/// The same diagnostic with a hint.
Diagnostic with_hint(Diagnostic diagnostic, std::string hint);

/// Throws an error without a subject. `hint` may be empty.
[[noreturn]] void fail(Code code, std::string message, std::string hint = {});
/// Throws an error about the file at `path`.
[[noreturn]] void fail_file(Code code, std::string message, std::string path);

} // namespace diagnostics
