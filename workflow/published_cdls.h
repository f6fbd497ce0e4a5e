#pragma once

#include <string>
#include <vector>

#include "workflow/correction.h"

namespace workflow {

class Session;

/// A CDL of the running module.
struct PublishedCdl {
    Correction correction; ///< Its id is the name that the module publishes.
    std::string file;      ///< Path of its CDL file; empty when the numbers were given directly.
    std::string file_id;   ///< Id of the color correction in that file; may be empty.
    bool is_builtin;
};

/// The published CDLs in the module's order, with the numbers of the last time their files were read.
std::vector<PublishedCdl> get_published_cdls(const Session& session);

/// Where the numbers come from: "grades.ccc:shot_010", or "built in"; empty for numbers given directly.
std::string describe_source(const PublishedCdl& cdl);

} // namespace workflow
