#include "conformance/check.h"
#include "host/core/core_log.h"

namespace conformance {

namespace {

class Recorder : public CoreLogHandler {
public:
    void log(unsigned int message_level, const CoreLogStream& stream) override {
        text += std::to_string(message_level) + ":" + stream.get_text().get_data();
    }
    std::string text;
};

void check_stream(Findings& findings) {
    CoreLogStream stream("prefix ");
    const char* const null = nullptr;
    stream << "text" << ' ' << CoreString("string") << '/' << 120u << null << "\n";
    findings.expect_text(stream.get_text().view(), "prefix text string/120\n", "the message");
}

void check_levels(Findings& findings) {
    Recorder recorder;
    findings.expect_number(recorder.get_level(), LOG_WARNING, "the level of a new handler");
    recorder.set_level(LOG_INFO);
    findings.expect_number(recorder.get_level(), LOG_INFO, "the level that was set");
}

void check_main_handler(Findings& findings) {
    CoreLogHandler* const first = &CoreLogHandler::get_main_log_handler();
    Recorder recorder;
    findings.expect(CoreLogHandler::set_main_log_handler(&recorder) == first,
                    "set_main_log_handler returns the replaced handler");
    CoreLogStream stream("");
    stream << "message\n";
    CoreLogHandler& current = CoreLogHandler::get_main_log_handler();
    findings.expect(&current == &recorder, "get_main_log_handler returns the handler that was set");
    if (&current == &recorder)
        current.log(LOG_ERROR, stream);
    findings.expect_text(recorder.text, "1:message\n", "what the handler receives");
    CoreLogHandler::set_main_log_handler(nullptr);
    findings.expect(&CoreLogHandler::get_main_log_handler() == first,
                    "without a handler of the application there is the default one again");
}

} // namespace

Checks list_log_checks() {
    return {
        {"log.stream", "a message is its prefix followed by everything streamed into it",
         "messages are incomplete", check_stream},
        {"log.levels", "a handler takes errors and warnings until its level is set",
         "messages are missing, or built although nobody reads them", check_levels},
        {"log.main-handler", "there is always one main handler, and the application can replace it",
         "the module's messages do not reach the log, or it crashes at its first message",
         check_main_handler},
    };
}

} // namespace conformance
