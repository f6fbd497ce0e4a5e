#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tool {

/// The version of the tool.
std::string get_version();

/// Libraries that `colorio` does not load, and the versions that it was built with.
std::vector<std::pair<std::string, std::string>> get_versions_at_build();

/// What --version prints: the version of the tool and of the libraries in use, one per line.
std::string format_versions();

} // namespace tool
