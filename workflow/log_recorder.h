#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "host/core/core_log.h"

namespace tool {

class Console;

/// One message that the module logged, without its line end.
struct LoggedMessage {
    unsigned int level; ///< CoreLogLevel.
    std::string text;
};

/// A text that was logged, once or several times.
struct CountedMessage {
    LoggedMessage message; ///< Its level is the gravest that the text had.
    unsigned int count;
};

/// Each text once, in the order of their first coming.
std::vector<CountedMessage> count_messages(const std::vector<LoggedMessage>& messages);

/// "error", "warning" or "information".
const char* get_level_name(unsigned int level);

/// The main log handler while it lives: keeps every message of the module and of OpenColorIO, so that a
/// command can say why something failed, and shows each at once to a user who asked for all of them.
class LogRecorder : public CoreLogHandler {
public:
    LogRecorder(Console& console, bool verbose);
    ~LogRecorder() override;
    LogRecorder(const LogRecorder&) = delete;
    LogRecorder& operator=(const LogRecorder&) = delete;

    void log(unsigned int level, const CoreLogStream& stream) override;

    /// True when there is an error among the messages that were not taken yet.
    bool has_error();
    /// The messages since the last call.
    std::vector<LoggedMessage> take_messages();

private:
    Console& console;
    const bool verbose;
    CoreLogHandler* replaced;
    std::mutex mutex;
    std::vector<LoggedMessage> messages;
};

} // namespace tool
