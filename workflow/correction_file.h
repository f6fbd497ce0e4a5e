#pragma once

#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"
#include "workflow/correction.h"

namespace workflow {

/// All color corrections of a .cc, .ccc or .cdl document, at any depth, in document order. A missing SOPNode
/// or SatNode gives the identity values. Throws diagnostics::Failure when the file cannot be read, is not
/// well-formed (with line and column), has a missing or malformed number, or has no color correction. Numbers
/// out of the ASC CDL's range are returned.
std::vector<Correction> read_corrections(const std::string& path);

/// Adds a warning if the color correction, which was read from `path`, has ignored elements, and a note if
/// the file has others that could have been chosen by an id.
void add_correction_notes(const Correction& correction, const std::string& path,
                          diagnostics::Diagnostics& notes);

/// A color correction of a document, given as "FILE" or "FILE:ID".
struct CorrectionSource {
    std::string path;
    std::string id; ///< Empty for the first color correction of the file.
};

/// Parses "FILE" or "FILE:ID". All of `text` is the path if such a file exists; otherwise the path ends at
/// the last colon after which it names an existing file. Throws diagnostics::Failure when there is no such
/// file.
CorrectionSource parse_correction_source(const std::string& text);

/// Reads the color correction. Throws like `read_corrections`, and with the nearest ids as the hint when the
/// file has none with that id.
Correction read_correction(const CorrectionSource& source);

/// Reads the color correction. Throws like `read_correction`, and for a number that the ASC CDL does not
/// allow.
Correction read_valid_correction(const CorrectionSource& source);

} // namespace workflow
