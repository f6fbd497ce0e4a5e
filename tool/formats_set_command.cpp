#include <string>

#include <fmt/format.h>

#include "colorio/color_io_auto_detection.h"
#include "tool/formats_change.h"
#include "tool/formats_command.h"
#include "tool/tool_session.h"
#include "workflow/format_associations.h"
#include "workflow/name_resolution.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio formats set Targa --space linear
  colorio formats set Jpeg --extensions jpg,jpeg,jfif
  colorio formats set default --space ACEScg --config aces.ocio)";

class FormatsSetCommand : public Command {
public:
    explicit FormatsSetCommand(Options& program)
        : Command(program, "set", "Change the color space or extensions of a format", EXAMPLES) {
        options.add("category", category, "format to change, as listed by 'colorio formats'").required();
        options.add("--space", color_space, "color space of files of this format");
        options.add("--extensions", extensions, "new list of file extensions, comma-separated");
        add_config_option(options, session_options);
        add_preference_options(options, session_options);
    }

    ExitCode run(Console& console) override {
        if (color_space.empty() && extensions.empty())
            throw UsageError("nothing to change: --space or --extensions is required");
        if (!extensions.empty() && workflow::is_fallback_category(category))
            throw UsageError(
                fmt::format("cannot change the extensions of '{}': it applies to files of all other "
                            "formats",
                            category));
        ToolSession session(session_options, console, workflow::PreferenceUse::CHANGE);
        change(session);
        finish_format_change(session, category, console);
        return EXIT_CODE_DONE;
    }

private:
    void change(const workflow::Session& session) const {
        ColorIOAutoDetection& detection = *ColorIOAutoDetection::get_instance();
        const unsigned int row = workflow::find_category(category);
        if (!extensions.empty())
            detection.set_extension_from_file_format(row, workflow::normalize_extensions(extensions).c_str());
        if (!color_space.empty())
            detection.set_default_color_space_from_file_format(
                row, workflow::resolve_color_space(session, color_space).label.c_str());
    }

    SessionChoice session_options;
    std::string category;
    std::string color_space;
    std::string extensions;
};

} // namespace

std::unique_ptr<Command> make_formats_set_command(Options& program) {
    return std::make_unique<FormatsSetCommand>(program);
}

} // namespace tool
