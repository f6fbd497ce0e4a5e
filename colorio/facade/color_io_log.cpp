#include "colorio/facade/color_io_log.h"

#include <cerrno>
#include <string>

#include "files/diagnosis.h"
#include "files/input_file.h"

namespace {

/// A diagnostic that cannot be built is lost without affecting the result.
template <class Make>
void report_made(CoreLogLevel level, Make&& make) noexcept {
    try {
        diagnostics::Diagnostic diagnostic = make();
        diagnostic.severity = get_severity(level);
        ColorIODiagnostics::report(diagnostic);
    } catch (...) {
    }
}

} // namespace

void report(CoreLogLevel level, diagnostics::Code code, const CoreBasicString& subject,
            const std::string& message) noexcept {
    report_made(level, [&] { return diagnostics::make_error(code, message, std::string(subject.view())); });
}

void report_file(CoreLogLevel level, diagnostics::Code code, const CoreBasicString& path,
                 const std::string& message, const CoreBasicString& subject) noexcept {
    report_made(level, [&] {
        diagnostics::Diagnostic cause = diagnostics::make_file_error(code, message, std::string(path.view()));
        cause.subject = subject.view();
        return cause;
    });
}

void report_unreadable(CoreLogLevel level, diagnostics::Code missing, const CoreBasicString& subject,
                       const CoreBasicString& path) noexcept {
    report_made(level, [&] {
        const std::string name(path.view());
        const auto opened = files::open_for_reading(name);
        diagnostics::Diagnostic cause = files::to_diagnostic(
            opened ? files::make_failure(name, files::Operation::READ, ENOENT) : opened.get_failure());
        if (cause.code == diagnostics::Code::FILE_MISSING)
            cause.code = missing;
        cause.subject = subject.view();
        return cause;
    });
}

void rethrow_about(const CoreBasicString& subject, diagnostics::Code code) {
    try {
        throw;
    } catch (const ocio::Exception& exception) {
        diagnostics::Diagnostic cause = ocio::get_cause(exception);
        cause.subject = subject.view();
        if (cause.code == diagnostics::Code::LIBRARY_FAILURE)
            cause.code = code;
        throw ocio::Error(std::move(cause), exception.what());
    }
}

void report_exception(CoreLogLevel level, const ocio::Exception& exception) noexcept {
    report_made(level, [&] { return ocio::get_cause(exception); });
}
