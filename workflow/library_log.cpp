#include "workflow/library_log.h"

#include "colorio/ocio/library_log.h"
#include "host/core/core_log.h"

namespace tool {

namespace {

void log_library_message(ocio::LibraryLogLevel library_level, const std::string& text) {
    const CoreLogLevel level = library_level == ocio::LibraryLogLevel::WARNING ? LOG_WARNING : LOG_INFO;
    CoreLogHandler& handler = CoreLogHandler::get_main_log_handler();
    if (handler.get_level() < level)
        return;
    CoreLogStream stream("OpenColorIO: ");
    stream << text.c_str() << '\n';
    handler.log(level, stream);
}

} // namespace

LibraryLog::LibraryLog() {
    ocio::set_library_log_function(log_library_message);
}

LibraryLog::~LibraryLog() {
    ocio::set_library_log_function(nullptr);
}

} // namespace tool
