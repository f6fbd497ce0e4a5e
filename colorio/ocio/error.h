#pragma once

#include <string>
#include <utility>

#include "colorio/ocio/types.h"
#include "diagnostics/failure.h"

namespace ocio {

/// An exception with a diagnostic. Its text, which is logged, is the diagnostic's message or OpenColorIO's
/// message.
class Error : public Exception {
public:
    explicit Error(diagnostics::Diagnostic cause)
        : Exception(cause.message.c_str()), cause(std::move(cause)) {}
    Error(diagnostics::Diagnostic cause, const char* words) : Exception(words), cause(std::move(cause)) {}

    const diagnostics::Diagnostic& get_cause() const { return cause; }

private:
    diagnostics::Diagnostic cause;
};

[[noreturn]] void throw_error(diagnostics::Code code, std::string message, std::string subject = {});
/// `line` counts from 1; 0 for none.
[[noreturn]] void throw_file_error(diagnostics::Code code, std::string message, std::string path,
                                   unsigned int line = 0);

/// The diagnostic of an exception: its own if it has one, else OpenColorIO's message on one line.
diagnostics::Diagnostic get_cause(const Exception& exception);

/// Rethrows the exception being handled, with `code` and the file at `path` as its diagnostic if it has none.
/// To be called inside a catch block for std::exception.
[[noreturn]] void rethrow_about_file(diagnostics::Code code, const std::string& path);

} // namespace ocio
