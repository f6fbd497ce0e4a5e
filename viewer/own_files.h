#pragma once

#include <string>
#include <vector>

namespace tool {

/// Files that the user's own colour spaces and CDLs name, whatever the configuration. The module lists the
/// corrections of the CDL library among those CDLs.
std::vector<std::string> get_own_files();

/// True when there are others than the CDL library.
bool has_own_files(const std::string& library_path);

} // namespace tool
