#include <fmt/format.h>

#include "tool/command.h"
#include "tool/console.h"
#include "tool/json_output.h"
#include "workflow/format_associations.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio formats check
  colorio formats check --config show.ocio)";

class FormatsCheckCommand : public SessionCommand {
public:
    explicit FormatsCheckCommand(Options& program)
        : SessionCommand(program, "check", "Find formats whose color space is not in the OCIO config",
                         EXAMPLES) {
        add_session_options();
        add_json_option();
    }

    ExitCode run(Console& console) override {
        const ToolSession session(session_options, console);
        if (const auto warning = workflow::find_unused_mapping(session))
            console.report(*warning);
        const std::string associations = workflow::describe_association_source();
        const diagnostics::Diagnostics unknown = workflow::find_unknown_spaces();
        const std::string config = session.get_config_name();
        if (as_json) {
            Json list = Json::array();
            for (const diagnostics::Diagnostic& error : unknown)
                list.push(to_json(error));
            console.print_text(
                Json({{"associations", associations}, {"config", config}, {"unknown", list}}).format());
            return unknown.empty() ? EXIT_CODE_DONE : EXIT_CODE_FAILED;
        }
        console.print(unknown.empty()
                          ? fmt::format("All color spaces of {} exist in {}.", associations, config)
                          : fmt::format("Color spaces of {} that are missing in {}:", associations, config));
        if (console.writes_json_diagnostics())
            console.report(unknown);
        for (const diagnostics::Diagnostic& error : unknown)
            console.print(fmt::format("  {}{}{}", error.message, error.hint.empty() ? "" : "; ", error.hint));
        return unknown.empty() ? EXIT_CODE_DONE : EXIT_CODE_FAILED;
    }
};

} // namespace

const MakeCommand make_formats_check_command = make_command<FormatsCheckCommand>;

} // namespace tool
