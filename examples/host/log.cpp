#include <atomic>
#include <cstdio>

#include "host/core/core_log.h"

CoreLogStream::CoreLogStream(const CoreBasicString& prefix) : text(prefix) {}
CoreLogStream& CoreLogStream::operator<<(const char* characters) {
    return *this << CoreBasicString(characters);
}
CoreLogStream& CoreLogStream::operator<<(const CoreBasicString& other) {
    text = text + other;
    return *this;
}
CoreLogStream& CoreLogStream::operator<<(char character) {
    text = text + character;
    return *this;
}
CoreLogStream& CoreLogStream::operator<<(unsigned int number) {
    return *this << CoreString::from_unsigned(number);
}

CoreLogHandler::~CoreLogHandler() = default;

namespace {

// The log of this host: one call of the C library for each message, so that those of several threads do not
// mix.
class ExampleLog : public CoreLogHandler {
    void log(unsigned int message_level, const CoreLogStream& stream) override {
        const char* const name = message_level == LOG_ERROR     ? "error"
                                 : message_level == LOG_WARNING ? "warning"
                                                                : "note";
        std::fprintf(stderr, "example_host: %s: %s", name, stream.get_text().get_data());
    }
};

CoreLogHandler& get_example_log() {
    static auto* const log = new ExampleLog; // never destroyed: used until the end
    return *log;
}

std::atomic<CoreLogHandler*> chosen{nullptr};

} // namespace

CoreLogHandler& CoreLogHandler::get_main_log_handler() {
    CoreLogHandler* const handler = chosen;
    return handler ? *handler : get_example_log();
}

CoreLogHandler* CoreLogHandler::set_main_log_handler(CoreLogHandler* handler) {
    CoreLogHandler* const replaced = chosen.exchange(handler);
    return replaced ? replaced : &get_example_log();
}
