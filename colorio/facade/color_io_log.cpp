#include "colorio/facade/color_io_log.h"

#include <string>

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
                 const std::string& message) noexcept {
    report_made(level, [&] { return diagnostics::make_file_error(code, message, std::string(path.view())); });
}

void report_exception(CoreLogLevel level, const ocio::Exception& exception) noexcept {
    report_made(level, [&] { return ocio::get_cause(exception); });
}
