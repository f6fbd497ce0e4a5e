#include "tool/tool_session.h"

#include "tool/console.h"

namespace tool {

std::string describe(const workflow::ConfigSource& source) {
    switch (source.kind) {
    case workflow::ConfigSource::FILE:
        return source.path + " (--config)";
    case workflow::ConfigSource::ENVIRONMENT:
        return source.path + " ($OCIO)";
    case workflow::ConfigSource::PREFERENCES:
        return source.path + " (preferences)";
    default:
        return source.get_name();
    }
}

workflow::SessionOptions make_options(const SessionChoice& choice, Console& console) {
    workflow::SessionOptions options = choice;
    if (choice.verbose)
        options.on_log = [&console](const std::string& message) { console.show_log(message); };
    return options;
}

void report_notices(const workflow::Session& session, const SessionChoice& choice, Console& console) {
    if (!choice.verbose) // the log contains them
        console.hold(session.get_notices());
}

ToolSession::ToolSession(const SessionChoice& choice, Console& console, workflow::PreferenceUse use)
    : Session(make_options(choice, console), use) {
    report_notices(*this, choice, console);
}

} // namespace tool
