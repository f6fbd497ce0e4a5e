#include <string>

#include "tool/command.h"
#include "tool/formats_change.h"
#include "tool/option_hints.h"
#include "tool/tool_session.h"
#include "workflow/format_associations.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio formats add Camera --extensions dng,cr2 --space linear
  colorio formats add Scan --extensions dpx --space Cineon)";

class FormatsAddCommand : public Command {
public:
    explicit FormatsAddCommand(Options& program)
        : Command(program, "add", "Add a format with its extensions and color space", EXAMPLES) {
        options.add("category", category, "name of the format").required();
        options.add("--extensions", extensions, "file extensions, comma-separated").value("LIST").required();
        options.add("--space", color_space, "color space of files of this format").required();
        add_config_option(options, session_options);
        add_preference_options(options, session_options);
    }

    ExitCode run(Console& console) override {
        if (category.empty())
            throw UsageError("a format needs a name");
        ToolSession session(session_options, console, workflow::PreferenceUse::CHANGE);
        hint_at(diagnostics::Code::NAME_DUPLICATE, "change it with 'colorio formats set'",
                [&] { workflow::add_format(session, category, extensions, color_space); });
        finish_format_change(session, category, console);
        return EXIT_CODE_DONE;
    }

private:
    SessionChoice session_options;
    std::string category;
    std::string extensions;
    std::string color_space;
};

} // namespace

std::unique_ptr<Command> make_formats_add_command(Options& program) {
    return std::make_unique<FormatsAddCommand>(program);
}

} // namespace tool
