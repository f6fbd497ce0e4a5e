#include <algorithm>
#include <string>

#include <fmt/format.h>

#include "colorio/color_io_auto_detection.h"
#include "tool/settings/formats_change.h"
#include "tool/settings/formats_command.h"
#include "workflow/format_associations.h"
#include "workflow/name_resolution.h"
#include "workflow/session.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio formats add Camera --extensions dng,cr2 --space linear
  colorio formats add Scan --extensions dpx --space Cineon)";

class FormatsAddCommand : public Command {
public:
    explicit FormatsAddCommand(CLI::App& program)
        : Command(program, "add", "Add a format with its extensions and colour space", EXAMPLES) {
        options->add_option("category", category, "Name of the format")->required();
        options->add_option("--extensions", extensions, "Its extensions, with commas between")->required();
        options->add_option("--space", color_space, "Colour space that its files are in")->required();
        add_config_option(*options, session_options);
        add_preference_options(*options, session_options);
    }

    ExitCode run(Console& console) override {
        const std::string extension_list = normalize_extensions(extensions);
        if (category.empty())
            throw UsageError("a format needs a name");
        ColorSession session(session_options, console, PreferenceUse::CHANGE);
        const auto known = get_format_associations();
        if (std::any_of(known.begin(), known.end(),
                        [&](const FormatAssociation& one) { return one.category == category; }))
            throw CommandError(
                fmt::format("there is a category '{}'; change it with 'colorio formats set'", category));
        const std::string label = resolve_color_space(color_space, session.get_source().get_name()).label;
        ColorIOAutoDetection::get_instance()->add_file_format(category.c_str(), extension_list.c_str(),
                                                              label.c_str());
        finish_format_change(session, category, console);
        return EXIT_CODE_DONE;
    }

private:
    SessionOptions session_options;
    std::string category;
    std::string extensions;
    std::string color_space;
};

} // namespace

std::unique_ptr<Command> make_formats_add_command(CLI::App& program) {
    return std::make_unique<FormatsAddCommand>(program);
}

} // namespace tool
