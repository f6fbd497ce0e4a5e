#include <string>

#include "tool/command.h"
#include "tool/console.h"
#include "tool/correction_rows.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio cdl list grades.ccc
  colorio cdl list shot.cdl --json)";

class CdlListCommand : public Command {
public:
    explicit CdlListCommand(Options& program)
        : Command(program, "list", "List the color corrections of a .cc, .ccc or .cdl file", EXAMPLES) {
        options.add("file", path, "file to read").required();
        add_json_option();
    }

    ExitCode run(Console& console) override {
        const std::vector<workflow::Correction> corrections = workflow::read_corrections(path);
        diagnostics::Diagnostics warnings;
        for (const workflow::Correction& correction : corrections)
            add_correction_notes(correction, path, warnings);
        console.report(warnings);
        const RowModel<workflow::Correction> rows = make_correction_rows();
        if (as_json)
            console.print_text(
                Json({{"file", path}, {"corrections", rows.make_array(corrections)}}).format());
        else
            rows.make_table(corrections).print(console);
        return EXIT_CODE_DONE;
    }

private:
    std::string path;
};

} // namespace

const MakeCommand make_cdl_list_command = make_command<CdlListCommand>;

} // namespace tool
