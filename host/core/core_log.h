#pragma once

#include "host/core/core_string.h"
#include "host/host_export.h"

/// Levels of the host log, most urgent first.
enum CoreLogLevel : unsigned int { LOG_ERROR = 1, LOG_WARNING = 2, LOG_INFO = 3 };

/// One message under construction: a prefix followed by what is streamed into it.
class HOST_API CoreLogStream {
public:
    explicit CoreLogStream(const CoreBasicString& prefix);

    CoreLogStream& operator<<(const char* text);
    CoreLogStream& operator<<(const CoreBasicString& text);
    CoreLogStream& operator<<(char character);
    CoreLogStream& operator<<(unsigned int number);

    const CoreString& get_text() const { return text; }

private:
    CoreString text;
};

/// Receives the messages of the application. Messages above the handler's level are not to be built at all:
/// callers compare `get_level()` first.
class HOST_API CoreLogHandler {
public:
    virtual ~CoreLogHandler();

    /// Highest level that this handler wants: 0 nothing, 1 errors, 2 and warnings, 3 and information.
    unsigned int get_level() const { return level; }
    void set_level(unsigned int new_level) { level = new_level; }

    /// Takes one complete message, its line end included.
    virtual void log(unsigned int level, const CoreLogStream& stream) = 0;

    /// The handler that the whole application logs to; there always is one.
    static CoreLogHandler& get_main_log_handler();
    /// Replaces the main handler (null: back to the host's own) and returns the replaced one. Not owned.
    static CoreLogHandler* set_main_log_handler(CoreLogHandler* handler);

private:
    unsigned int level = LOG_WARNING;
};
