#include "host/core/core_log.h"

#include <atomic>

#include "standalone/standalone_log.h"

namespace {

std::atomic<CoreLogHandler*> chosen_handler{nullptr};

} // namespace

CoreLogStream::CoreLogStream(const CoreBasicString& prefix) : text(prefix) {}

CoreLogStream& CoreLogStream::operator<<(const char* characters) {
    text += CoreBasicString(characters);
    return *this;
}

CoreLogStream& CoreLogStream::operator<<(const CoreBasicString& other) {
    text += other;
    return *this;
}

CoreLogStream& CoreLogStream::operator<<(char character) {
    text += character;
    return *this;
}

CoreLogStream& CoreLogStream::operator<<(unsigned int number) {
    text += CoreString::from_unsigned(number);
    return *this;
}

CoreLogHandler::~CoreLogHandler() = default;

CoreLogHandler& CoreLogHandler::get_main_log_handler() {
    CoreLogHandler* handler = chosen_handler;
    return handler ? *handler : StandaloneLog::get_default();
}

CoreLogHandler* CoreLogHandler::set_main_log_handler(CoreLogHandler* handler) {
    CoreLogHandler* replaced = chosen_handler.exchange(handler);
    return replaced ? replaced : &StandaloneLog::get_default();
}
