#pragma once

#include "host/core/core_log.h"

/// Streams `parts` into one message for `handler`; it is built only if the handler takes that level.
template <class... Parts>
void log_message(CoreLogHandler& handler, unsigned int level, const Parts&... parts) {
    if (handler.get_level() < level)
        return;
    CoreLogStream stream("");
    (stream << ... << parts);
    handler.log(level, stream);
}

/// The same for the main log handler.
template <class... Parts>
void log_message(unsigned int level, const Parts&... parts) {
    log_message(CoreLogHandler::get_main_log_handler(), level, parts...);
}
