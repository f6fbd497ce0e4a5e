#include <string>

#include <fmt/format.h>

#include "tool/command.h"
#include "tool/console.h"
#include "tool/option_hints.h"
#include "workflow/correction_text.h"
#include "workflow/custom_records.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio cdl add warm --values 1.1,1,0.9/0,0,0/1,1,1/1
  colorio cdl add shot grades.ccc:shot_010

A CDL added from a file is a reference to it: later edits of the file take effect.)";

class CdlAddCommand : public SessionCommand {
public:
    explicit CdlAddCommand(Options& program)
        : SessionCommand(program, "add", "Add a CDL to the preferences", EXAMPLES) {
        options.add("name", name, "name of the CDL").required();
        const Option file =
            options.add("file", source, "color correction in a .cc, .ccc or .cdl file: FILE or FILE:ID");
        options
            .add("--values", values, "numbers instead of a file; red,green,blue for the first three",
                 "SLOPE/OFFSET/POWER/SATURATION")
            .excludes(file);
        add_preference_options();
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
        const workflow::Correction added = workflow::make_correction(record);
        console.print(fmt::format("{}: {}", added.id, workflow::format_numbers(added)));
        return EXIT_CODE_DONE;
    }

private:
    std::string name;
    std::string source;
    std::string values;
};

} // namespace

const MakeCommand make_cdl_add_command = make_command<CdlAddCommand>;

} // namespace tool
