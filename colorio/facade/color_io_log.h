#pragma once

#include <utility>

#include "colorio/color_io_diagnostics.h"
#include "colorio/ocio/error.h"
#include "host/core/core_log.h"

/// Logs the parts as one message on the host's main handler; builds nothing when the handler's level is
/// lower. A message that cannot be built or logged is lost without affecting the result.
template <class... Parts>
void log_message(CoreLogLevel level, const Parts&... parts) noexcept {
    try {
        CoreLogHandler& handler = CoreLogHandler::get_main_log_handler();
        if (handler.get_level() < level)
            return;
        CoreLogStream stream("");
        (stream << ... << parts);
        handler.log(level, stream);
    } catch (...) {
    }
}

/// The severity of a diagnostic for a message of that level.
inline diagnostics::Severity get_severity(CoreLogLevel level) {
    using diagnostics::Severity;
    return level == LOG_ERROR ? Severity::ERROR : level == LOG_WARNING ? Severity::WARNING : Severity::NOTE;
}

/// Reports a diagnostic for a cause found by the module itself; the log line is written separately.
void report(CoreLogLevel level, diagnostics::Code code, const CoreBasicString& subject,
            const std::string& message) noexcept;
/// The same for a cause in the file at `path`.
void report_file(CoreLogLevel level, diagnostics::Code code, const CoreBasicString& path,
                 const std::string& message, const CoreBasicString& subject = CoreString()) noexcept;
/// Reports why the file at `path` cannot be opened, which is about `subject`; `missing` is the code for a
/// file that does not exist.
void report_unreadable(CoreLogLevel level, diagnostics::Code missing, const CoreBasicString& subject,
                       const CoreBasicString& path) noexcept;
/// Throws the exception being handled, one of OpenColorIO, with a cause about `subject`. `code` stands in
/// where OpenColorIO gave only words. What the log shows stays.
[[noreturn]] void rethrow_about(const CoreBasicString& subject, diagnostics::Code code);
/// Reports the cause of an exception.
void report_exception(CoreLogLevel level, const ocio::Exception& exception) noexcept;

/// Runs `action`; when OpenColorIO throws, runs `before_exception_line` (for the caller's messages), logs
/// OpenColorIO's message at `level`, reports the cause and returns false. Other exceptions pass.
template <class Action, class Preface>
bool log_ocio_errors(CoreLogLevel level, Action&& action, Preface&& before_exception_line) {
    try {
        std::forward<Action>(action)();
        return true;
    } catch (const ocio::Exception& exception) {
        before_exception_line();
        log_message(level, "OCIO exception: ", exception.what(), "\n");
        report_exception(level, exception);
        return false;
    }
}

template <class Action>
bool log_ocio_errors(CoreLogLevel level, Action&& action) {
    return log_ocio_errors(level, std::forward<Action>(action), [] {});
}

/// The same for loading or checking a config.
template <class Action>
bool log_config_errors(Action&& action) {
    return log_ocio_errors(LOG_ERROR, std::forward<Action>(action),
                           [] { log_message(LOG_ERROR, "Color Management: invalid OCIO configuration.\n"); });
}
