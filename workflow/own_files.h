#pragma once

#include <string>
#include <vector>

namespace workflow {

/// Files that custom color spaces and CDLs name, whatever config is active. The module lists the
/// corrections of the CDL library among those CDLs.
std::vector<std::string> get_own_files();

/// True when there are others than the CDL library.
bool has_own_files(const std::string& library_path);

} // namespace workflow
