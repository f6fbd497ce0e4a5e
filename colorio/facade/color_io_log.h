#pragma once

#include <utility>

#include "colorio/color_io_diagnostics.h"
#include "colorio/ocio/error.h"
#include "host/core/core_log.h"

/// Logs the parts as one message on the host's main handler; composes nothing when the handler does not
/// listen at that level. A message that cannot be composed or taken is lost: it changes no outcome.
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

/// How severe a message of a level is as a diagnostic.
inline diagnostics::Severity get_severity(CoreLogLevel level) {
    using diagnostics::Severity;
    return level == LOG_ERROR ? Severity::ERROR : level == LOG_WARNING ? Severity::WARNING : Severity::NOTE;
}

/// Reports a cause that the module itself knows, beside the line of the log.
void report(CoreLogLevel level, diagnostics::Code code, const CoreBasicString& subject,
            const std::string& message) noexcept;
/// The same for a cause that lies in the file at `path`.
void report_file(CoreLogLevel level, diagnostics::Code code, const CoreBasicString& path,
                 const std::string& message) noexcept;
/// Reports the cause of an exception.
void report_exception(CoreLogLevel level, const ocio::Exception& exception) noexcept;

/// Runs `action`; when OpenColorIO throws, runs `before_exception_line` (for messages of the caller's own),
/// logs OpenColorIO's words at `level`, reports the cause and returns false. Other exceptions pass.
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

/// The same for making or checking a configuration.
template <class Action>
bool log_config_errors(Action&& action) {
    return log_ocio_errors(LOG_ERROR, std::forward<Action>(action),
                           [] { log_message(LOG_ERROR, "Color Management: invalid OCIO configuration.\n"); });
}
