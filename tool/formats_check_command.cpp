#include <string>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "colorio/color_io_auto_detection.h"
#include "tool/command.h"
#include "tool/console.h"
#include "tool/tool_session.h"
#include "workflow/format_associations.h"
#include "workflow/nearest_names.h"
#include "workflow/published_names.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio formats check
  colorio formats check --config show.ocio)";

class FormatsCheckCommand : public Command {
public:
    explicit FormatsCheckCommand(Options& program)
        : Command(program, "check", "Find formats whose color space is not in the OCIO config", EXAMPLES) {
        add_session_options(options, session_options);
    }

    ExitCode run(Console& console) override {
        const ToolSession session(session_options, console);
        if (const auto warning = workflow::find_unused_mapping(session))
            console.report(*warning);
        const std::string associations = workflow::describe_association_source();
        if (ColorIOAutoDetection::get_instance()->check_mappings()) {
            console.print(
                fmt::format("All color spaces of {} exist in {}.", associations, session.get_config_name()));
            return EXIT_CODE_DONE;
        }
        console.print(fmt::format("Color spaces of {} that are missing in {}:", associations,
                                  session.get_config_name()));
        print_missing(console);
        return EXIT_CODE_FAILED;
    }

private:
    static void print_missing(Console& console) {
        std::vector<std::string> labels;
        for (const workflow::PublishedSpace& space : workflow::get_published_spaces())
            labels.push_back(space.label);
        for (const workflow::FormatAssociation& association : workflow::get_format_associations())
            if (!workflow::has_color_space(association)) {
                const std::string hint = workflow::did_you_mean(association.color_space, labels);
                console.print(fmt::format("  {} ({}): '{}'{}{}", association.category,
                                          fmt::join(association.extensions, ", "), association.color_space,
                                          hint.empty() ? "" : "; ", hint));
            }
    }

    SessionChoice session_options;
};

} // namespace

std::unique_ptr<Command> make_formats_check_command(Options& program) {
    return std::make_unique<FormatsCheckCommand>(program);
}

} // namespace tool
