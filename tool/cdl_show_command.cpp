#include <string>

#include <fmt/format.h>

#include "tool/command.h"
#include "tool/console.h"
#include "tool/correction_cells.h"
#include "tool/json_output.h"
#include "workflow/correction_file.h"
#include "workflow/correction_text.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio cdl show warm.cc
  colorio cdl show grades.ccc:shot_010 --json)";

class CdlShowCommand : public Command {
public:
    explicit CdlShowCommand(Options& program)
        : Command(program, "show", "Show one color correction with its descriptions", EXAMPLES) {
        options.add("file", source, "color correction to show: FILE (the first one) or FILE:ID").required();
        options.add_flag("--json", as_json, "print JSON");
    }

    ExitCode run(Console& console) override {
        const workflow::Correction correction =
            workflow::read_correction(workflow::parse_correction_source(source));
        report_unread_elements(correction, console);
        if (as_json)
            print_json(correction, console);
        else
            print_lines(correction, console);
        return EXIT_CODE_DONE;
    }

private:
    static void print_lines(const workflow::Correction& correction, Console& console) {
        console.print_heading(correction.id.empty() ? "(without id)" : correction.id);
        for (const std::string& description : correction.descriptions)
            console.print("  " + description);
        console.print(fmt::format("  slope       {}", workflow::format_triple(correction.slope)));
        console.print(fmt::format("  offset      {}", workflow::format_triple(correction.offset)));
        console.print(fmt::format("  power       {}", workflow::format_triple(correction.power)));
        console.print(fmt::format("  saturation  {}", workflow::format_number(correction.saturation)));
    }

    static void print_json(const workflow::Correction& correction, Console& console) {
        Json answer = {{"id", correction.id}, {"descriptions", correction.descriptions}};
        answer.update(numbers_to_json(correction));
        console.print_text(Json(answer).format());
    }

    std::string source;
    bool as_json = false;
};

} // namespace

std::unique_ptr<Command> make_cdl_show_command(Options& program) {
    return std::make_unique<CdlShowCommand>(program);
}

} // namespace tool
