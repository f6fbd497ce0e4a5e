#pragma once

#include <string>
#include <vector>

#include "manual/command_description.h"

namespace manual {

/// A manual page in roff.
struct ManPage {
    std::string name; ///< "colorio-cdl-write", of section 1.
    std::string text;
};

/// The pages of a program and of each of its commands. `version` is shown at the foot: "colorio 1.0".
std::vector<ManPage> make_man_pages(const CommandDescription& program, const std::string& version);

} // namespace manual
