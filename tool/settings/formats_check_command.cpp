#include <string>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "tool/console.h"
#include "tool/settings/formats_command.h"
#include "workflow/format_associations.h"
#include "workflow/nearest_names.h"
#include "workflow/published_names.h"
#include "workflow/session.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio formats check
  colorio formats check --config show.ocio)";

class FormatsCheckCommand : public Command {
public:
    explicit FormatsCheckCommand(CLI::App& program)
        : Command(program, "check", "Find the formats whose colour space a configuration lacks", EXAMPLES) {
        add_session_options(*options, session_options);
    }

    ExitCode run(Console& console) override {
        ColorSession session(session_options, console);
        warn_of_unused_mapping(session);
        const std::string where =
            fmt::format("{} with {}", describe_association_source(), session.get_source().get_name());
        if (ColorIOAutoDetection::get_instance()->check_mappings()) {
            console.print(fmt::format("Nothing is missing: {}.", where));
            return EXIT_CODE_DONE;
        }
        console.print(fmt::format("Colour spaces are missing: {}.", where));
        print_missing(console);
        return EXIT_CODE_FAILED;
    }

private:
    static void print_missing(Console& console) {
        std::vector<std::string> labels;
        for (const PublishedSpace& space : get_published_spaces())
            labels.push_back(space.label);
        for (const FormatAssociation& association : get_format_associations())
            if (!ColorIO::color_space_exists(association.color_space.c_str()))
                console.print(fmt::format("  {} ({}): '{}'{}", association.category,
                                          fmt::join(association.extensions, ", "), association.color_space,
                                          did_you_mean(association.color_space, labels)));
    }

    SessionOptions session_options;
};

} // namespace

std::unique_ptr<Command> make_formats_check_command(CLI::App& program) {
    return std::make_unique<FormatsCheckCommand>(program);
}

} // namespace tool
