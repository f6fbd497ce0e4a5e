#include "colorio/ocio/error.h"

namespace ocio {

namespace {

using diagnostics::Code;
using diagnostics::Diagnostic;

} // namespace

void throw_error(Code code, std::string message, std::string subject) {
    throw Error(diagnostics::make_error(code, std::move(message), std::move(subject)));
}

void throw_file_error(Code code, std::string message, std::string path, unsigned int line) {
    Diagnostic cause = diagnostics::make_file_error(code, std::move(message), std::move(path));
    cause.line = line;
    throw Error(std::move(cause));
}

Diagnostic get_cause(const Exception& exception) {
    if (const auto* error = dynamic_cast<const Error*>(&exception))
        return error->get_cause();
    return diagnostics::make_error(Code::LIBRARY_FAILURE, diagnostics::flatten(exception.what()));
}

void rethrow_about_file(Code code, const std::string& path) {
    try {
        throw;
    } catch (const Error&) {
        throw;
    } catch (const std::exception& exception) {
        throw Error(diagnostics::make_file_error(code, diagnostics::flatten(exception.what()), path),
                    exception.what());
    }
}

} // namespace ocio
