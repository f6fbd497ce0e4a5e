#include "workflow/log_forwarding.h"

#include <utility>

namespace workflow {

namespace {

/// Below the lowest level, so that no message is formatted.
constexpr unsigned int SILENT = 0;

} // namespace

LogForwarding::LogForwarding(Receive receive) : receive(std::move(receive)) {
    set_level(this->receive ? LOG_INFO : SILENT);
    replaced = set_main_log_handler(this);
}

LogForwarding::~LogForwarding() {
    set_main_log_handler(replaced);
}

void LogForwarding::log(unsigned int, const CoreLogStream& stream) {
    if (!receive)
        return;
    std::string text = stream.get_text().get_data();
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    receive(text);
}

} // namespace workflow
