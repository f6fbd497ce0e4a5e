#pragma once

#include <string>
#include <vector>

#include "workflow/correction.h"

namespace workflow {

/// A CDL of the running module.
struct PublishedCdl {
    Correction correction; ///< Its id is the name that the module publishes.
    std::string file;      ///< Empty when the numbers were given directly.
    std::string file_id;
    bool is_builtin;
};

/// In the module's order. Those made from a file have the numbers that were read when they were made.
std::vector<PublishedCdl> get_published_cdls();

} // namespace workflow
