#include "tool/tool_session.h"

#include "tool/console.h"

namespace tool {

workflow::SessionOptions make_options(const SessionChoice& choice, Console& console) {
    workflow::SessionOptions options = choice;
    if (choice.verbose)
        options.on_log = [&console](const std::string& message) { console.show_log(message); };
    return options;
}

ToolSession::ToolSession(const SessionChoice& choice, Console& console, workflow::PreferenceUse use)
    : Session(make_options(choice, console), use) {
    if (!choice.verbose) // the log contains them
        console.report(get_notices());
}

} // namespace tool
