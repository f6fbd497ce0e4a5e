#include <string>

#include "tool/command.h"
#include "tool/formats_change.h"
#include "workflow/format_associations.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio formats set Targa --space linear
  colorio formats set Jpeg --extensions jpg,jpeg,jfif
  colorio formats set default --space ACEScg --config aces.ocio)";

class FormatsSetCommand : public SessionCommand {
public:
    explicit FormatsSetCommand(Options& program)
        : SessionCommand(program, "set", "Change the color space or extensions of a format", EXAMPLES) {
        options.add("category", category, "format to change, as listed by 'colorio formats'").required();
        options.add("--space", color_space, "color space of files of this format");
        options.add("--extensions", extensions, "new list of file extensions, comma-separated", "LIST");
        add_config_option();
        add_preference_options();
    }

    ExitCode run(Console& console) override {
        if (color_space.empty() && extensions.empty())
            throw UsageError("nothing to change: --space or --extensions is required");
        ToolSession session(session_options, console, workflow::PreferenceUse::CHANGE);
        workflow::change_format(session, category, extensions, color_space);
        finish_format_change(session, category, console);
        return EXIT_CODE_DONE;
    }

private:
    std::string category;
    std::string color_space;
    std::string extensions;
};

} // namespace

const MakeCommand make_formats_set_command = make_command<FormatsSetCommand>;

} // namespace tool
