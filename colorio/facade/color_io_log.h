#pragma once

#include <utility>

#include "colorio/ocio/types.h"
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

/// Runs `action`; when the colour library throws, runs `before_exception_line` (for messages of the caller's
/// own), logs the library's words at `level` and returns false. Other exceptions pass.
template <class Action, class Preface>
bool log_ocio_errors(CoreLogLevel level, Action&& action, Preface&& before_exception_line) {
    try {
        std::forward<Action>(action)();
        return true;
    } catch (const ocio::Exception& exception) {
        before_exception_line();
        log_message(level, "OCIO exception: ", exception.what(), "\n");
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
