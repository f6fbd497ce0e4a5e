#pragma once

#include <string>
#include <vector>

#include "workflow/failure_reason.h"
#include "workflow/log_recorder.h"

namespace tool {

class ColorSession;

/// Something of the configuration that does not work.
struct CheckFailure {
    enum Subject { COLOR_SPACE, VIEW, NAMED_TRANSFORM, INACTIVE_COLOR_SPACE, LOOK, VIEW_TRANSFORM };

    Subject subject = COLOR_SPACE;
    std::string name;                    ///< Label of a colour space or a view.
    std::vector<std::string> directions; ///< "to linear", "from linear"; empty where there is but one.
    FailureReason reason;
    std::string way; ///< What leads to a view: "the view transform 'film' and the looks 'warm'"; else empty.
};

/// What trying a whole configuration showed.
struct CheckReport {
    std::string scene_linear; ///< Label of the colour space that all others were tried with.
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
    /// What does not work, but is out of a user's reach: inactive colour spaces, looks and view transforms by
    /// themselves. Where a view needs one of them, the view is among the failures.
    std::vector<CheckFailure> notices;
};

/// Makes the conversions of every colour space to scene-linear and back, of scene-linear to every view, and
/// those that the configuration holds besides.
CheckReport check_config(ColorSession& session);

} // namespace tool
