#include <string>

#include "tool/command.h"
#include "tool/formats_change.h"
#include "tool/option_hints.h"
#include "workflow/format_associations.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio formats add Camera --extensions dng,cr2 --space linear
  colorio formats add Scan --extensions dpx --space Cineon)";

class FormatsAddCommand : public SessionCommand {
public:
    explicit FormatsAddCommand(Options& program)
        : SessionCommand(program, "add", "Add a format with its extensions and color space", EXAMPLES) {
        options.add("category", category, "name of the format").required();
        options.add("--extensions", extensions, "file extensions, comma-separated", "LIST").required();
        options.add("--space", color_space, "color space of files of this format").required();
        add_config_option();
        add_preference_options();
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
    std::string category;
    std::string extensions;
    std::string color_space;
};

} // namespace

const MakeCommand make_formats_add_command = make_command<FormatsAddCommand>;

} // namespace tool
