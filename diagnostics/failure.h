#pragma once

#include <exception>
#include <stdexcept>
#include <string>
#include <utility>

#include "diagnostics/diagnostic.h"

namespace diagnostics {

/// Ends what cannot go on: carries at least one diagnostic. `what()` is the worst one's message, and its hint
/// behind a semicolon.
class Failure : public std::runtime_error {
public:
    explicit Failure(Diagnostic reason) : Failure(Diagnostics{std::move(reason)}) {}
    /// `reasons` is not empty.
    explicit Failure(Diagnostics reasons)
        : std::runtime_error(get_text(*find_worst(reasons))), reasons(std::move(reasons)) {}

    const Diagnostics& get_diagnostics() const { return reasons; }
    const Diagnostic& get_worst() const { return *find_worst(reasons); }

private:
    static std::string get_text(const Diagnostic& reason) {
        return format_located(reason) + (reason.hint.empty() ? "" : "; " + reason.hint);
    }

    Diagnostics reasons;
};

/// An error about `subject`, which may be empty.
Diagnostic make_error(Code code, std::string message, std::string subject = {});
/// An error about the file at `path`.
Diagnostic make_file_error(Code code, std::string message, std::string path);
Diagnostic make_warning(Code code, std::string message, std::string subject = {});
Diagnostic make_note(Code code, std::string message, std::string subject = {});

/// The worst of `causes` as the reason why `what` failed: "cannot convert from 'a' to 'b': no LUT
/// 'film.cube'". Without causes, `what` alone under the code `otherwise`.
Diagnostic add_context(const std::string& what, const Diagnostics& causes, Code otherwise);

/// Of a Failure the worst diagnostic; of any other exception an error with its text; of a shortage of memory
/// one that says so.
Diagnostic describe(const std::exception& exception);

/// The same diagnostic with a hint.
Diagnostic with_hint(Diagnostic diagnostic, std::string hint);

/// Throws an error without a subject. `hint` may be empty.
[[noreturn]] void fail(Code code, std::string message, std::string hint = {});
/// Throws an error about the file at `path`.
[[noreturn]] void fail_file(Code code, std::string message, std::string path);

} // namespace diagnostics
