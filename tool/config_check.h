#pragma once

#include <string>
#include <vector>

#include "tool/failure_reason.h"
#include "tool/log_recorder.h"

namespace tool {

class ColorSession;

/// A colour space or a view that does not work.
struct CheckFailure {
    enum Subject { COLOR_SPACE, VIEW };

    Subject subject;
    std::string name;                    ///< Label.
    std::vector<std::string> directions; ///< "to linear", "from linear"; empty for a view.
    FailureReason reason;
};

/// What trying a whole configuration showed.
struct CheckReport {
    std::string scene_linear; ///< Label of the colour space that all others were tried with.
    unsigned int spaces_tried = 0;
    unsigned int views_tried = 0;
    std::vector<CheckFailure> failures;
};

/// Makes the conversions of every colour space to scene-linear and back, and of scene-linear to every view.
CheckReport check_config(ColorSession& session);

} // namespace tool
