#include "workflow/log_recorder.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "tool/console.h"

namespace tool {

const char* get_level_name(unsigned int level) {
    switch (level) {
    case LOG_ERROR:
        return "error";
    case LOG_WARNING:
        return "warning";
    default:
        return "information";
    }
}

std::vector<CountedMessage> count_messages(const std::vector<LoggedMessage>& messages) {
    std::vector<CountedMessage> counted;
    std::unordered_map<std::string, std::size_t> places;
    for (const LoggedMessage& message : messages) {
        const auto [place, is_new] = places.emplace(message.text, counted.size());
        if (is_new)
            counted.push_back({message, 0});
        CountedMessage& known = counted[place->second];
        known.message.level = std::min(known.message.level, message.level);
        ++known.count;
    }
    return counted;
}

LogRecorder::LogRecorder(Console& console, bool verbose) : console(console), verbose(verbose) {
    set_level(LOG_INFO);
    replaced = set_main_log_handler(this);
}

LogRecorder::~LogRecorder() {
    set_main_log_handler(replaced);
}

void LogRecorder::log(unsigned int level, const CoreLogStream& stream) {
    std::string text = stream.get_text().get_data();
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    if (verbose)
        console.note(text);
    std::lock_guard<std::mutex> lock(mutex);
    messages.push_back({level, std::move(text)});
}

bool LogRecorder::has_error() {
    std::lock_guard<std::mutex> lock(mutex);
    return std::any_of(messages.begin(), messages.end(),
                       [](const LoggedMessage& message) { return message.level == LOG_ERROR; });
}

std::vector<LoggedMessage> LogRecorder::take_messages() {
    std::lock_guard<std::mutex> lock(mutex);
    return std::exchange(messages, {});
}

} // namespace tool
