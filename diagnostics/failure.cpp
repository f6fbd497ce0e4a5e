#include "diagnostics/failure.h"

#include <new>

namespace diagnostics {

namespace {

Diagnostic make(Severity severity, Code code, std::string message, std::string subject) {
    Diagnostic diagnostic;
    diagnostic.code = code;
    diagnostic.severity = severity;
    diagnostic.message = std::move(message);
    diagnostic.subject = std::move(subject);
    return diagnostic;
}

Diagnostic make_about_file(Severity severity, Code code, std::string message, std::string path) {
    Diagnostic diagnostic = make(severity, code, std::move(message), {});
    diagnostic.file = std::move(path);
    return diagnostic;
}

} // namespace

Diagnostic make_error(Code code, std::string message, std::string subject) {
    return make(Severity::ERROR, code, std::move(message), std::move(subject));
}

Diagnostic make_file_error(Code code, std::string message, std::string path) {
    return make_about_file(Severity::ERROR, code, std::move(message), std::move(path));
}

Diagnostic make_warning(Code code, std::string message, std::string subject) {
    return make(Severity::WARNING, code, std::move(message), std::move(subject));
}

Diagnostic make_note(Code code, std::string message, std::string subject) {
    return make(Severity::NOTE, code, std::move(message), std::move(subject));
}

Diagnostic make_file_warning(Code code, std::string message, std::string path) {
    return make_about_file(Severity::WARNING, code, std::move(message), std::move(path));
}

Diagnostic make_file_note(Code code, std::string message, std::string path) {
    return make_about_file(Severity::NOTE, code, std::move(message), std::move(path));
}

Diagnostic add_context(const std::string& what, const Diagnostics& causes, Code otherwise) {
    const Diagnostic* cause = find_worst(causes);
    Diagnostic result = cause ? *cause : make_error(otherwise, "unknown reason");
    result.severity = Severity::ERROR;
    if (!what.empty())
        result.message = what + ": " + result.message;
    return result;
}

Diagnostic describe(const std::exception& exception) {
    if (const auto* failure = dynamic_cast<const Failure*>(&exception))
        return failure->get_worst();
    if (dynamic_cast<const std::bad_alloc*>(&exception))
        return make_error(Code::OUT_OF_MEMORY, "out of memory");
    return make_error(Code::LIBRARY_FAILURE, flatten(exception.what()));
}

Diagnostic with_hint(Diagnostic diagnostic, std::string hint) {
    diagnostic.hint = std::move(hint);
    return diagnostic;
}

void fail(Code code, std::string message, std::string hint) {
    throw Failure(with_hint(make_error(code, std::move(message)), std::move(hint)));
}

void fail_file(Code code, std::string message, std::string path) {
    throw Failure(make_file_error(code, std::move(message), std::move(path)));
}

} // namespace diagnostics
