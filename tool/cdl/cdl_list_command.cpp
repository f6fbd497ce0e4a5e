#include <string>

#include <nlohmann/json.hpp>

#include "tool/cdl/cdl_command.h"
#include "tool/cdl/correction_text.h"
#include "tool/console.h"
#include "tool/json_output.h"
#include "tool/text_table.h"
#include "workflow/cdl/correction_file.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio cdl list grades.ccc
  colorio cdl list shot.cdl --json)";

class CdlListCommand : public Command {
public:
    explicit CdlListCommand(CLI::App& program)
        : Command(program, "list", "List the corrections of a .cc, .ccc or .cdl file", EXAMPLES) {
        options->add_option("file", path, "File to read")->required();
        options->add_flag("--json", as_json, "Write JSON");
    }

    ExitCode run(Console& console) override {
        const std::vector<Correction> corrections = read_corrections(path);
        for (const Correction& correction : corrections)
            warn_of_unread_elements(correction, console);
        if (as_json)
            print_json(corrections, console);
        else
            print_table(corrections, console);
        return EXIT_CODE_DONE;
    }

private:
    static void print_table(const std::vector<Correction>& corrections, Console& console) {
        std::vector<std::string> titles = CORRECTION_TITLES;
        titles.insert(titles.begin(), "#");
        TextTable table(titles);
        for (const Correction& correction : corrections) {
            std::vector<std::string> cells = make_cells(correction);
            cells.insert(cells.begin(), std::to_string(table.count_rows()));
            table.add_row(cells);
        }
        table.print(console);
    }

    void print_json(const std::vector<Correction>& corrections, Console& console) const {
        auto list = nlohmann::ordered_json::array();
        for (const Correction& correction : corrections) {
            nlohmann::ordered_json item = {{"position", list.size()}, {"id", correction.id}};
            item.update(numbers_to_json(correction));
            list.push_back(item);
        }
        console.print(format_json({{"file", path}, {"corrections", list}}));
    }

    std::string path;
    bool as_json = false;
};

} // namespace

std::unique_ptr<Command> make_cdl_list_command(CLI::App& program) {
    return std::make_unique<CdlListCommand>(program);
}

} // namespace tool
