#include <algorithm>
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

constexpr char EXAMPLES[] = R"(  colorio formats add Camera --extensions dng,cr2 --space linear
  colorio formats add Scan --extensions dpx --space Cineon)";

class FormatsAddCommand : public Command {
public:
    explicit FormatsAddCommand(Options& program)
        : Command(program, "add", "Add a format with its extensions and color space", EXAMPLES) {
        options.add("category", category, "name of the format").required();
        options.add("--extensions", extensions, "file extensions, comma-separated").required();
        options.add("--space", color_space, "color space of files of this format").required();
        add_config_option(options, session_options);
        add_preference_options(options, session_options);
    }

    ExitCode run(Console& console) override {
        const std::string extension_list = workflow::normalize_extensions(extensions);
        if (category.empty())
            throw UsageError("a format needs a name");
        ToolSession session(session_options, console, workflow::PreferenceUse::CHANGE);
        const auto known = workflow::get_format_associations();
        if (std::any_of(known.begin(), known.end(),
                        [&](const workflow::FormatAssociation& one) { return one.category == category; }))
            diagnostics::fail(diagnostics::Code::NAME_DUPLICATE,
                              fmt::format("a format named '{}' already exists", category),
                              "change it with 'colorio formats set'");
        const std::string label = workflow::resolve_color_space(session, color_space).label;
        ColorIOAutoDetection::get_instance()->add_file_format(category.c_str(), extension_list.c_str(),
                                                              label.c_str());
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
