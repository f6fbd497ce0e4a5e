#include "tool/view_command.h"

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/gl_threads.h"

namespace tool {

ExitCode ViewCommand::run(Console& console) {
    viewer::parse_size(wanted.size); // before the config is loaded
    take_steps(request);
    check_views();
    if (no_window && wanted.script.empty() && wanted.screenshot.empty())
        throw UsageError("--no-window needs --script or --screenshot");
    wanted.steps = request.steps;
    wanted.has_window = !no_window;
    limit_gl_threads();
    workflow::LiveConfig live_config(make_options(session_options, console));
    report_notices(live_config.get_session(), session_options, console);
    viewer::run(live_config, wanted,
                {[&](const std::string& line) { console.print(line); },
                 [&](const diagnostics::Diagnostic& warning) { console.report(warning); },
                 [&](const viewer::ViewModel& model) { report_source(model, console); }});
    return EXIT_CODE_DONE;
}

void ViewCommand::check_views() const {
    if (!wanted.space.empty() && !wanted.inverse_view.empty())
        throw UsageError("--from and --inverse-view cannot be combined");
    if (!wanted.display.empty() && wanted.views[viewer::ViewModel::FIRST].empty())
        throw UsageError("--display needs --view");
}

void ViewCommand::report_source(const viewer::ViewModel& model, Console& console) const {
    console.release();
    const std::string& path = wanted.images.front();
    const viewer::ColorSettings settings = model.get_settings(viewer::ViewModel::FIRST);
    if (!wanted.space.empty() || !wanted.inverse_view.empty()) {
        console.report(diagnostics::make_note(
            diagnostics::Code::COLOR_SPACE_CHOSEN,
            fmt::format("{}: {} ({})", path, settings.describe_source(), model.get_space_reason())));
        if (source_choice.explains)
            print_decision("source",
                           fmt::format("{}, from {}", settings.describe_source(),
                                       wanted.inverse_view.empty() ? "--from" : "--inverse-view"),
                           console);
        return;
    }
    const workflow::FileSpace& found = model.get_file_space();
    report_source_space(path, found, source_choice, console);
    if (!source_choice.explains)
        return;
    print_decision("source", fmt::format("{}, {}", found.color_space, model.get_space_reason()), console);
    print_source_steps(found, console);
}

} // namespace tool
