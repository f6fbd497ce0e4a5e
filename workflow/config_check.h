#pragma once

#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"

namespace workflow {

/// Something in the config that does not work.
struct CheckFailure {
    enum Subject { COLOR_SPACE, VIEW, NAMED_TRANSFORM, INACTIVE_COLOR_SPACE, LOOK, VIEW_TRANSFORM };

    Subject subject = COLOR_SPACE;
    std::string name;                    ///< Label of a color space or a view.
    std::vector<std::string> directions; ///< "to linear", "from linear"; empty where there is only one.
    diagnostics::Diagnostic reason;
    std::string path; ///< What leads to a view: "the view transform 'film' and the looks 'warm'"; else empty.
};

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
    /// What does not work and cannot be chosen by a user: inactive color spaces, looks and view transforms
    /// alone. Where a view needs one of them, the view is among the failures.
    std::vector<CheckFailure> notes;
};

/// Configures the conversions of the active config: every color space to scene-linear and back, scene-linear
/// to every view, and named transforms, inactive color spaces, looks and view transforms. Needs an open
/// session.
CheckReport check_config();

} // namespace workflow
