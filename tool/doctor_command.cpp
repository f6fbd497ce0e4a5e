#include <algorithm>

#include <fmt/format.h>

#include "tool/command.h"
#include "tool/console.h"
#include "tool/image_setup.h"
#include "tool/json_output.h"
#include "tool/option_hints.h"
#include "tool/text_table.h"
#include "tool/versions.h"
#include "workflow/setup_check.h"

namespace tool {

namespace {

using workflow::SetupItem;
using workflow::SetupReport;
using workflow::SetupSection;

constexpr char EXAMPLES[] = R"(  colorio doctor
  colorio doctor --config show.ocio --json

Broken parts are reported with a hint; the exit code is 1 if one of them is an error.)";

/// Adds the sections to those of the same name.
void merge(SetupReport& report, const SetupReport& others) {
    for (const SetupSection& other : others) {
        const auto same = std::find_if(report.begin(), report.end(), [&](const SetupSection& section) {
            return section.name == other.name;
        });
        if (same == report.end())
            report.push_back(other);
        else
            same->items.insert(same->items.end(), other.items.begin(), other.items.end());
    }
}

SetupReport examine(const workflow::SessionOptions& options) {
    SetupReport report = {{"libraries", {{"colorio", get_version(), {}}}}};
    merge(report, workflow::examine_setup(options));
    merge(report, examine_image_libraries());
    return report;
}

void print_item(const SetupItem& item, Console& console) {
    console.print(fmt::format("  {:<24}{}", item.name, item.value));
    if (!item.problem)
        return;
    if (console.writes_json_diagnostics())
        return console.report(*item.problem);
    console.print(fmt::format("    {}: {}", get_name(item.problem->severity), format_located(*item.problem)));
    if (!item.problem->hint.empty())
        console.print("    hint: " + item.problem->hint);
}

class DoctorCommand : public SessionCommand {
public:
    explicit DoctorCommand(Options& program)
        : SessionCommand(
              program, "doctor",
              "Report versions, hardware, folders, environment, preferences and config, and what is "
              "wrong with them",
              EXAMPLES) {
        add_session_options();
        add_json_option();
    }

    ExitCode run(Console& console) override {
        const SetupReport report = examine(make_options(session_options, console));
        const diagnostics::Diagnostics problems = get_problems(report);
        if (as_json)
            console.print_text(to_json(report).set("ok", !has_error(problems)).format());
        else
            print(report, problems.size(), console);
        return has_error(problems) ? EXIT_CODE_FAILED : EXIT_CODE_DONE;
    }

private:
    static void print(const SetupReport& report, std::size_t problems, Console& console) {
        for (const SetupSection& section : report) {
            console.print_heading(section.name);
            for (const SetupItem& item : section.items)
                print_item(item, console);
        }
        console.print(problems == 0 ? "No problems." : fmt::format("{}.", count_things(problems, "problem")));
    }

    static Json to_json(const SetupReport& report) {
        Json answer = Json::object();
        for (const SetupSection& section : report) {
            Json items = Json::array();
            for (const SetupItem& item : section.items)
                items.push({{"name", item.name},
                            {"value", item.value},
                            {"problem", item.problem ? tool::to_json(*item.problem) : Json()}});
            answer.set(section.name, items);
        }
        return answer;
    }
};

} // namespace

const MakeCommand make_doctor_command = make_command<DoctorCommand>;

} // namespace tool
