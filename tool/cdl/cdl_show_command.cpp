#include <string>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "tool/cdl/cdl_command.h"
#include "tool/cdl/correction_text.h"
#include "tool/console.h"
#include "tool/json_output.h"
#include "workflow/cdl/correction_file.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio cdl show warm.cc
  colorio cdl show grades.ccc:shot_010 --json)";

class CdlShowCommand : public Command {
public:
    explicit CdlShowCommand(CLI::App& program)
        : Command(program, "show", "Show one correction with its descriptions", EXAMPLES) {
        options->add_option("file", source, "FILE, for its first correction, or FILE:ID")->required();
        options->add_flag("--json", as_json, "Write JSON");
    }

    ExitCode run(Console& console) override {
        const Correction correction = read_correction(parse_correction_source(source));
        warn_of_unread_elements(correction, console);
        if (as_json)
            print_json(correction, console);
        else
            print_lines(correction, console);
        return EXIT_CODE_DONE;
    }

private:
    static void print_lines(const Correction& correction, Console& console) {
        console.print_heading(correction.id.empty() ? "(without id)" : correction.id);
        for (const std::string& description : correction.descriptions)
            console.print("  " + description);
        console.print(fmt::format("  slope       {}", format_triple(correction.slope)));
        console.print(fmt::format("  offset      {}", format_triple(correction.offset)));
        console.print(fmt::format("  power       {}", format_triple(correction.power)));
        console.print(fmt::format("  saturation  {}", format_number(correction.saturation)));
    }

    static void print_json(const Correction& correction, Console& console) {
        nlohmann::ordered_json answer = {{"id", correction.id}, {"descriptions", correction.descriptions}};
        answer.update(numbers_to_json(correction));
        console.print(format_json(answer));
    }

    std::string source;
    bool as_json = false;
};

} // namespace

std::unique_ptr<Command> make_cdl_show_command(CLI::App& program) {
    return std::make_unique<CdlShowCommand>(program);
}

} // namespace tool
