#include <string>

#include <fmt/format.h>

#include "tool/command.h"
#include "tool/console.h"
#include "tool/correction_rows.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio cdl show warm.cc
  colorio cdl show grades.ccc:shot_010 --json)";

class CdlShowCommand : public Command {
public:
    explicit CdlShowCommand(Options& program)
        : Command(program, "show", "Show one color correction with its descriptions", EXAMPLES) {
        options.add("file", source, "color correction to show: FILE (the first one) or FILE:ID").required();
        add_json_option();
    }

    ExitCode run(Console& console) override {
        const workflow::CorrectionSource named = workflow::parse_correction_source(source);
        const workflow::Correction correction = workflow::read_correction(named);
        diagnostics::Diagnostics warnings;
        add_correction_notes(correction, named.path, warnings);
        console.report(warnings);
        if (as_json) {
            Json answer = {{"id", correction.id}, {"descriptions", correction.descriptions}};
            console.print_text(answer.update(make_correction_rows().make_object(correction)).format());
            return EXIT_CODE_DONE;
        }
        console.print_heading(correction.id.empty() ? "(without id)" : correction.id);
        for (const std::string& description : correction.descriptions)
            console.print("  " + description);
        console.print(fmt::format("  slope       {}", workflow::format_triple(correction.slope)));
        console.print(fmt::format("  offset      {}", workflow::format_triple(correction.offset)));
        console.print(fmt::format("  power       {}", workflow::format_triple(correction.power)));
        console.print(fmt::format("  saturation  {}", workflow::format_number(correction.saturation)));
        return EXIT_CODE_DONE;
    }

private:
    std::string source;
};

} // namespace

const MakeCommand make_cdl_show_command = make_command<CdlShowCommand>;

} // namespace tool
