#pragma once

#include "host/core/core_string.h"
#include "host/host_export.h"

/// Levels of the host log, most urgent first.
enum CoreLogLevel : unsigned int { LOG_ERROR = 1, LOG_WARNING = 2, LOG_INFO = 3 };

/// One message under construction: a prefix followed by what is streamed into it.
class HOST_API CoreLogStream {
public:
    /// Starts the message with `prefix`.
    explicit CoreLogStream(const CoreBasicString& prefix);

    CoreLogStream& operator<<(const char* text);            ///< Null appends nothing.
    CoreLogStream& operator<<(const CoreBasicString& text); ///< Appends the text.
    CoreLogStream& operator<<(char character);              ///< Appends one character.
    CoreLogStream& operator<<(unsigned int number);         ///< Appends decimal digits.

    /// The message so far.
    const CoreString& get_text() const { return text; }

private:
    CoreString text;
};

/// Receives the messages of the application. Callers compare `get_level()` first and do not build messages
/// above the handler's level.
class HOST_API CoreLogHandler {
public:
    virtual ~CoreLogHandler();

    /// Highest level that this handler takes: 0 none, 1 errors, 2 also warnings, 3 also information (default:
    /// 2).
    unsigned int get_level() const { return level; }
    /// See `get_level`.
    void set_level(unsigned int new_level) { level = new_level; }

    /// Takes one complete message, including its line end.
    virtual void log(unsigned int level, const CoreLogStream& stream) = 0;

    /// The handler of the whole application; there is always one.
    static CoreLogHandler& get_main_log_handler();
    /// Replaces the main handler (null: the host's default one) and returns the replaced one. Not owned; must
    /// live until it is replaced.
    static CoreLogHandler* set_main_log_handler(CoreLogHandler* handler);

private:
    unsigned int level = LOG_WARNING;
};
