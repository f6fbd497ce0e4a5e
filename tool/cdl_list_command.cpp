#include <string>

#include "tool/command.h"
#include "tool/console.h"
#include "tool/correction_cells.h"
#include "tool/json_output.h"
#include "tool/text_table.h"
#include "workflow/correction_file.h"
#include "workflow/correction_text.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio cdl list grades.ccc
  colorio cdl list shot.cdl --json)";

class CdlListCommand : public Command {
public:
    explicit CdlListCommand(Options& program)
        : Command(program, "list", "List the color corrections of a .cc, .ccc or .cdl file", EXAMPLES) {
        options.add("file", path, "file to read").required();
        options.add_flag("--json", as_json, "print JSON");
    }

    ExitCode run(Console& console) override {
        const std::vector<workflow::Correction> corrections = workflow::read_corrections(path);
        for (const workflow::Correction& correction : corrections)
            report_unread_elements(correction, console);
        if (as_json)
            print_json(corrections, console);
        else
            print_table(corrections, console);
        return EXIT_CODE_DONE;
    }

private:
    static void print_table(const std::vector<workflow::Correction>& corrections, Console& console) {
        std::vector<std::string> titles = CORRECTION_TITLES;
        titles.insert(titles.begin(), "#");
        TextTable table(titles);
        for (const workflow::Correction& correction : corrections) {
            std::vector<std::string> cells = make_cells(correction);
            cells.insert(cells.begin(), std::to_string(table.count_rows()));
            table.add_row(cells);
        }
        table.print(console);
    }

    void print_json(const std::vector<workflow::Correction>& corrections, Console& console) const {
        Json list = Json::array();
        for (const workflow::Correction& correction : corrections) {
            Json item = {{"position", list.size()}, {"id", correction.id}};
            item.update(numbers_to_json(correction));
            list.push(item);
        }
        console.print_text(Json({{"file", path}, {"corrections", list}}).format());
    }

    std::string path;
    bool as_json = false;
};

} // namespace

std::unique_ptr<Command> make_cdl_list_command(Options& program) {
    return std::make_unique<CdlListCommand>(program);
}

} // namespace tool
