#include "tool/report_command.h"

#include "tool/console.h"

namespace tool {

ExitCode ReportCommand::run(Console& console) {
    const ToolSession session(session_options, console, use);
    report_problems(session, console);
    if (as_json)
        console.print_text(to_json(session).format());
    else
        print(session, console);
    return EXIT_CODE_DONE;
}

} // namespace tool
