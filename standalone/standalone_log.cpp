#include "standalone/standalone_log.h"

#include <spdlog/logger.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/stdout_color_sinks.h>

#include "host/sys/sys_env.h"
#include "standalone/log_message.h"

namespace {

constexpr const char* CONSOLE_PATTERN = "%^[%l]%$ %v";
constexpr const char* FILE_PATTERN = "%Y-%m-%d %H:%M:%S.%e [%l] %v";

spdlog::level::level_enum to_spdlog(unsigned int level) {
    switch (level) {
    case LOG_ERROR:
        return spdlog::level::err;
    case LOG_WARNING:
        return spdlog::level::warn;
    case LOG_INFO:
        return spdlog::level::info;
    default:
        return spdlog::level::debug;
    }
}

std::shared_ptr<spdlog::sinks::sink> make_console_sink() {
    const bool plain = !sys_get_env("NO_COLOR").is_empty();
    auto sink = std::make_shared<spdlog::sinks::stderr_color_sink_mt>(plain ? spdlog::color_mode::never
                                                                            : spdlog::color_mode::automatic);
    sink->set_pattern(CONSOLE_PATTERN);
    return sink;
}

bool is_harmless(unsigned char character) {
    return (character >= 0x20 && character != 0x7F) || character == '\n' || character == '\t';
}

// The message without its final line end, which the sinks add themselves.
std::string printable(std::string_view message) {
    constexpr const char* DIGITS = "0123456789ABCDEF";
    if (!message.empty() && message.back() == '\n')
        message.remove_suffix(1);
    std::string text;
    for (const unsigned char character : message) {
        if (is_harmless(character))
            text += static_cast<char>(character);
        else
            text.append("\\x").append(1, DIGITS[character >> 4]).append(1, DIGITS[character & 15]);
    }
    return text;
}

} // namespace

struct StandaloneLog::State {
    spdlog::logger logger{"", make_console_sink()};
};

StandaloneLog::StandaloneLog() : state(std::make_unique<State>()) {
    state->logger.set_level(spdlog::level::trace);
    state->logger.flush_on(spdlog::level::trace);
}

StandaloneLog::~StandaloneLog() = default;

bool StandaloneLog::add_file(const CoreString& path) {
    try {
        auto sink = std::make_shared<spdlog::sinks::basic_file_sink_mt>(path.get_data());
        sink->set_pattern(FILE_PATTERN);
        state->logger.sinks().push_back(std::move(sink));
        return true;
    } catch (const spdlog::spdlog_ex& error) {
        log_message(*this, LOG_ERROR, "Log: ", error.what(), "\n");
        return false;
    }
}

void StandaloneLog::log(unsigned int level, const CoreLogStream& stream) {
    if (level <= get_level())
        state->logger.log(to_spdlog(level), printable(stream.get_text().view()));
}

StandaloneLog& StandaloneLog::get_default() {
    static auto* const handler = new StandaloneLog;
    return *handler;
}
