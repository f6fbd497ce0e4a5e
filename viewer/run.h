#pragma once

#include <functional>
#include <string>
#include <vector>

#include "diagnostics/failure.h"
#include "viewer/screen.h"
#include "viewer/view_model.h"

namespace viewer {

/// What a run of the viewer shows, and where.
struct RunOptions {
    std::vector<std::string> images; ///< At least one; the first is shown.
    std::string space;               ///< Its color space; empty for that of the rule for files.
    std::string inverse_view;        ///< The view that it is the result of; empty for none.
    std::string cdl_library;         ///< ASC CDL file whose color corrections are listed; may be empty.
    std::vector<workflow::ColorStep> steps;
    float exposure = 0;                       ///< In stops.
    std::string views[ViewModel::SIDE_COUNT]; ///< Labels; empty for the default.
    std::string display;           ///< Of the first view, which is then named without it; empty for a label.
    std::string layout = "single"; ///< As `parse_layout` takes it.
    double zoom = 0;               ///< Screen pixels per image pixel; 0 to fit the window.
    std::string size = "1280x800"; ///< Of the window, as `parse_size` takes it.
    std::string screenshot;        ///< Image file to write; may be empty.
    std::string script;            ///< File with commands; may be empty.
    bool has_window = true;
};

/// What a run has to say.
struct RunOutput {
    std::function<void(const std::string& line)> print; ///< Takes a line of a script's output.
    std::function<void(const diagnostics::Diagnostic& warning)> warn;
    /// Called when the first image is chosen, before it is shown. May throw.
    std::function<void(const ViewModel& model)> started;
};

/// Size in pixels: "1280x720". Throws diagnostics::Failure for other texts and sides beyond 1 to 16384.
Screen::Size parse_size(const std::string& text);

/// Shows images until the window is closed, the script quits, or, without a window, everything is done.
/// Throws diagnostics::Failure, for a screenshot also when something other than what was asked for would be
/// shown. The code DISPLAY_MISSING means that no window can be opened.
void run(workflow::LiveConfig& live_config, const RunOptions& options, const RunOutput& output);

} // namespace viewer
