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

constexpr char EXAMPLES[] = R"(  colorio formats set Targa --space linear
  colorio formats set Jpeg --extensions jpg,jpeg,jfif
  colorio formats set default --space ACEScg --config aces.ocio)";

class FormatsSetCommand : public Command {
public:
    explicit FormatsSetCommand(CLI::App& program)
        : Command(program, "set", "Change a format's colour space or extensions", EXAMPLES) {
        options->add_option("category", category, "Format to change, as 'colorio formats' lists it")
            ->required();
        options->add_option("--space", color_space, "Colour space that its files are in");
        options->add_option("--extensions", extensions, "All its extensions, with commas between");
        add_config_option(*options, session_options);
        add_preference_options(*options, session_options);
    }

    ExitCode run(Console& console) override {
        if (color_space.empty() && extensions.empty())
            throw UsageError("say what to change, with --space or --extensions");
        if (!extensions.empty() && is_fallback_category(category))
            throw UsageError(fmt::format("'{}' stands for all extensions that no format lists", category));
        ColorSession session(session_options, console, PreferenceUse::CHANGE);
        change(session);
        finish_format_change(session, category, console);
        return EXIT_CODE_DONE;
    }

private:
    void change(const ColorSession& session) const {
        ColorIOAutoDetection& detection = *ColorIOAutoDetection::get_instance();
        const unsigned int row = find_category(category);
        if (!extensions.empty())
            detection.set_extension_from_file_format(row, normalize_extensions(extensions).c_str());
        if (!color_space.empty())
            detection.set_default_color_space_from_file_format(
                row, resolve_color_space(color_space, session.get_source().get_name()).label.c_str());
    }

    SessionOptions session_options;
    std::string category;
    std::string color_space;
    std::string extensions;
};

} // namespace

std::unique_ptr<Command> make_formats_set_command(CLI::App& program) {
    return std::make_unique<FormatsSetCommand>(program);
}

} // namespace tool
