#include "tool/report_command.h"

#include "colorio/color_io_inspection.h"
#include "tool/console.h"

namespace tool {

void ReportCommand::add_json_option() {
    options.add_flag("--json", as_json, "print JSON");
}

ExitCode ReportCommand::run(Console& console) {
    const ToolSession session(session_options, console, use);
    const ColorIOInspection::Batch batch;
    report_problems(session, console);
    if (as_json)
        console.print_text(to_json(session).format());
    else
        print(session, console);
    return EXIT_CODE_DONE;
}

} // namespace tool
