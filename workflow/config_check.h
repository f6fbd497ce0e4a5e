#pragma once

#include <optional>
#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"
#include "workflow/config_source.h"
#include "workflow/session_options.h"

namespace workflow {

/// Something in the config that does not work.
struct CheckFailure {
    enum Subject { COLOR_SPACE, VIEW, NAMED_TRANSFORM, INACTIVE_COLOR_SPACE, LOOK, VIEW_TRANSFORM };

    Subject subject = COLOR_SPACE;
    std::string name;                    ///< Label of a color space or view, name of the others.
    std::vector<std::string> directions; ///< "to linear", "from linear"; empty where there is only one.
    diagnostics::Diagnostic reason;
    /// For a view with a view transform or looks: "the view transform 'film' and the looks 'warm'". Else
    /// empty.
    std::string path;
};

/// "color space", "view" and so on.
const char* get_name(CheckFailure::Subject subject);
/// "view 'sRGB.Film', through the view transform 'film': no LUT 'film.cube'; ..." in one line.
std::string describe(const CheckFailure& failure);

/// Result of trying every conversion of a config.
struct CheckReport {
    std::string scene_linear; ///< Label of the color space that all others were tried with.
    unsigned int spaces_tried = 0;
    unsigned int views_tried = 0;
    unsigned int views_with_view_transform = 0; ///< Of those tried.
    unsigned int views_with_looks = 0;
    unsigned int views_with_named_transform = 0;
    unsigned int named_transforms_tried = 0;
    unsigned int inactive_spaces_tried = 0;
    unsigned int looks_tried = 0;
    unsigned int view_transforms_tried = 0;
    std::vector<CheckFailure> failures;
    /// Failures of what users cannot choose by itself: inactive color spaces, looks and view transforms. A
    /// view that needs one of them is in `failures`.
    std::vector<CheckFailure> notes;
};

/// One of the numbers of a report.
struct CheckCount {
    const char* name; ///< "spaces_tried".
    unsigned int CheckReport::*count;
};
/// All numbers of a report.
const std::vector<CheckCount>& get_check_counts();

/// What was tried and how many failures there are, in lines for people: "Views: 5 with a view transform, 2
/// with looks.".
std::vector<std::string> summarize(const CheckReport& report);

/// Configures the conversions of the active config: every color space to scene-linear and back, scene-linear
/// to every view, and named transforms, inactive color spaces, looks and view transforms. Needs an open
/// session. What fails is in the report, not thrown.
CheckReport check_config();

/// A config, with what was found while it was loaded and checked.
struct ConfigFindings {
    ConfigSource source;
    diagnostics::Diagnostics messages;              ///< Reported while the config was loaded.
    std::optional<diagnostics::Diagnostic> refusal; ///< Why the config was not loaded.
    CheckReport report;

    /// True if the config was loaded without errors, and everything in it works that users can choose:
    /// warnings and `report.notes` do not count.
    bool is_good() const { return !refusal && report.failures.empty() && !diagnostics::has_error(messages); }
};

/// Opens a session and checks its config. Throws diagnostics::Failure when a session cannot be opened for
/// another reason than its config.
ConfigFindings examine_config(const SessionOptions& options);

} // namespace workflow
