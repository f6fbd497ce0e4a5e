#pragma once

#include <string>
#include <vector>

namespace workflow {

/// One thing to do to colors on their way through a conversion.
struct ColorStep {
    enum Kind {
        CDL,             ///< FILE, FILE:ID or the name of a published CDL; in scene-linear.
        LOOKS,           ///< A list of looks: "film, -warm"; each in its process space.
        NAMED_TRANSFORM, ///< A named transform of the config, on the result of the conversion.
        LUT              ///< A LUT or transform file, on the result of the conversion.
    };

    Kind kind;
    std::string name;
    bool is_inverse = false; ///< Apply the inverse.

    /// True for a step that is applied in scene-linear, before the conversion to the destination.
    bool is_scene_linear() const { return kind == CDL || kind == LOOKS; }
};

/// True when one of the steps is applied in scene-linear.
bool has_scene_linear_step(const std::vector<ColorStep>& steps);

/// For messages: "CDL", "looks".
const char* get_kind_name(ColorStep::Kind kind);

} // namespace workflow
