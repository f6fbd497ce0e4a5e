#include <string>

#include <fmt/format.h>

#include "tool/command.h"
#include "tool/console.h"
#include "tool/correction_cells.h"
#include "tool/option_hints.h"
#include "tool/tool_session.h"
#include "workflow/correction_text.h"
#include "workflow/custom_records.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio cdl add warm --values 1.1,1,0.9/0,0,0/1,1,1/1
  colorio cdl add shot grades.ccc:shot_010

A CDL added from a file is a reference to it: later edits of the file take effect.)";

class CdlAddCommand : public Command {
public:
    explicit CdlAddCommand(Options& program)
        : Command(program, "add", "Add a CDL to the preferences", EXAMPLES) {
        options.add("name", name, "name of the CDL").required();
        const Option file =
            options.add("file", source, "color correction in a .cc, .ccc or .cdl file: FILE or FILE:ID");
        options.add("--values", values, "numbers instead of a file; red,green,blue for the first three")
            .value("SLOPE/OFFSET/POWER/SATURATION")
            .excludes(file);
        add_preference_options(options, session_options);
        session_options.builtin_only = true;
    }

    ExitCode run(Console& console) override {
        if (source.empty() == values.empty())
            throw UsageError("a CDL needs a file or --values");
        if (name.empty())
            throw UsageError("a CDL needs a name");
        diagnostics::Diagnostics notes;
        const auto record = values.empty() ? workflow::make_custom_cdl(name, source, notes)
                                           : workflow::make_cdl_record(workflow::parse_numbers(values), name);
        console.report(notes);
        ToolSession session(session_options, console, workflow::PreferenceUse::CHANGE);
        hint_at(diagnostics::Code::NAME_DUPLICATE, "remove it with 'colorio cdl remove'",
                [&] { workflow::add_custom_cdl(session, record); });
        console.report(session.save_preferences());
        const std::vector<std::string> cells = make_cells(workflow::make_correction(record));
        console.print(fmt::format("{}: slope {}, offset {}, power {}, saturation {}", cells[0], cells[1],
                                  cells[2], cells[3], cells[4]));
        return EXIT_CODE_DONE;
    }

private:
    SessionChoice session_options;
    std::string name;
    std::string source;
    std::string values;
};

} // namespace

std::unique_ptr<Command> make_cdl_add_command(Options& program) {
    return std::make_unique<CdlAddCommand>(program);
}

} // namespace tool
