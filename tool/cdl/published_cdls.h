#pragma once

#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "workflow/cdl/correction.h"

namespace tool {

class Console;

/// A CDL of the running module.
struct PublishedCdl {
    Correction correction; ///< Named as the module publishes it.
    std::string file;      ///< Empty when its numbers stand for themselves.
    std::string file_id;
    bool is_builtin;
};

/// In the module's order. Those made from a file have the numbers that were read when they were made.
std::vector<PublishedCdl> get_published_cdls();

void print_cdls(Console& console);
nlohmann::ordered_json cdls_to_json();

} // namespace tool
