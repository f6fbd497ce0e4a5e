#pragma once

#include <string>
#include <vector>

#include "workflow/correction.h"

namespace workflow {

/// A CDL of the running module.
struct PublishedCdl {
    Correction correction; ///< Its id is the name that the module publishes.
    std::string file;      ///< Path of its CDL file; empty when the numbers were given directly.
    std::string file_id;   ///< Id of the color correction in a .ccc file; else empty.
    bool is_builtin;
};

/// The published CDLs in the module's order, with the numbers of the last time their files were read. Needs
/// an open session.
std::vector<PublishedCdl> get_published_cdls();

/// Where the numbers come from: "grades.ccc:shot_010", or "built in"; empty for numbers given directly.
std::string describe_source(const PublishedCdl& cdl);

} // namespace workflow
