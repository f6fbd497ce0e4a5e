#pragma once

#include <memory>
#include <string>

#include "diagnostics/diagnostic.h"
#include "workflow/color_step.h"
#include "workflow/published_names.h"

class ColorIOConverter;

namespace workflow {

class Session;

/// One conversion of the module.
struct ConversionStage {
    std::string title; ///< "Tavelion|sRGB to Tavelion|linear", "grades.ccc:shot_010 in Tavelion|linear".
    std::unique_ptr<ColorIOConverter> converter;
};

// All throw diagnostics::Failure with OpenColorIO's reason when the stage cannot be made. Color spaces are
// given by their labels; they may be inactive.

ConversionStage make_space_stage(const Session& session, const std::string& from, const std::string& to);
ConversionStage make_view_stage(const Session& session, const std::string& from, const PublishedView& view);
/// The same; the error is OpenColorIO's reason alone. Nothing is looked up by a linear search.
ConversionStage make_space_stage(const std::string& from, const std::string& to);
ConversionStage make_view_stage(const std::string& from, const PublishedView& view);
/// A named transform of the config by itself, inactive ones included.
ConversionStage make_named_transform_stage(const std::string& name, bool is_inverse);
/// A look of the config on pixels in `space`, which they stay in.
ConversionStage make_look_stage(const std::string& name, const std::string& space);
/// From what the view shows back to `to`.
ConversionStage make_inverse_view_stage(const Session& session, const PublishedView& view,
                                        const std::string& to);
/// A step on pixels in `space`. Adds a warning about elements of a CDL file that are ignored. Throws also for
/// unknown names, with the nearest ones, and for files that cannot be read. The stage has no
/// converter for the CDL that changes nothing.
ConversionStage make_step_stage(const Session& session, const ColorStep& step, const std::string& space,
                                diagnostics::Diagnostics& notes);

} // namespace workflow
