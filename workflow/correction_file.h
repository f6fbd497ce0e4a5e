#pragma once

#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"
#include "workflow/correction.h"

namespace workflow {

/// The corrections of a .cc, .ccc or .cdl document in its order, wherever they stand in it. Numbers that a
/// document leaves out as a whole (SOPNode, SatNode) change nothing. Throws diagnostics::Failure with line
/// and column of malformed XML, with the correction whose numbers are wrong, and when there is no correction.
std::vector<Correction> read_corrections(const std::string& path);

/// Adds a warning where the correction has elements that are ignored.
void add_unread_elements(const Correction& correction, diagnostics::Diagnostics& notes);

/// Which correction of which document "FILE" or "FILE:ID" means.
struct CorrectionSource {
    std::string path;
    std::string id; ///< Empty when none is named.
};

/// Reads `text` as a path as it stands, if there is such a file, otherwise up to the last colon in front of
/// which a file's path ends. Throws diagnostics::Failure when that names no file.
CorrectionSource parse_correction_source(const std::string& text);

/// The correction that the source names, or the first one. Throws like `read_corrections`, and with the
/// nearest ids when there is none of that id.
Correction read_correction(const CorrectionSource& source);

/// The same, to be applied. Throws also for a number that the ASC CDL does not allow.
Correction read_valid_correction(const CorrectionSource& source);

} // namespace workflow
