#pragma once

#include <string>
#include <vector>

#include "colorio/color_io_manager.h"
#include "diagnostics/diagnostic.h"

namespace workflow {

class Session;

// Edits of the custom color spaces and CDLs in a session with PreferenceUse::CHANGE;
// Session::save_preferences saves them. All functions are called in the thread of the session.

/// A custom color space to add.
struct CustomSpaceRequest {
    std::string name;                   ///< Without a family.
    std::string lut;                    ///< LUT file from scene-linear; may be empty with `cdl`.
    std::string cdl;                    ///< FILE or FILE:ID of a color correction before it; may be empty.
    std::string depth = "32f";          ///< One of get_depth_names().
    std::string allocation = "uniform"; ///< Or "lg2".
    /// Numbers of the allocation: minimum and maximum, for "lg2" also an offset; empty for 0 to 1.
    std::vector<std::string> range;
};

/// The record of a custom color space. Throws diagnostics::Failure for an invalid name or range, and for
/// files that are missing or that the module cannot use.
ColorIOManager::ColorSpaceDef make_custom_space(const CustomSpaceRequest& request);

/// The record of a custom CDL that refers to a color correction, given as FILE or FILE:ID. Where the module
/// could not look it up, its numbers are copied, and a note is added. Throws diagnostics::Failure.
ColorIOManager::ColorDecisionListDef make_custom_cdl(const std::string& name, const std::string& source,
                                                     diagnostics::Diagnostics& notes);

// Throw diagnostics::Failure, NAME_DUPLICATE if the name exists in any case, and for a record that the module
// would store but cannot use. The session is then not to be saved.

void add_custom_space(Session& session, const ColorIOManager::ColorSpaceDef& record);
void add_custom_cdl(Session& session, const ColorIOManager::ColorDecisionListDef& record);

// Throw diagnostics::Failure, with the nearest names as the hint, if no custom color space or CDL has that
// name.

void remove_custom_space(Session& session, const std::string& name);
void remove_custom_cdl(Session& session, const std::string& name);

} // namespace workflow
