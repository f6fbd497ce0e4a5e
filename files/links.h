#pragma once

#include <string>

#include "files/failure.h"

namespace files {

/// The path that `path` leads to by symbolic links; what it names need not exist. Links in the folders above
/// stay in the path. Fails with ELOOP where links lead in a circle.
Result<std::string> follow_links(const std::string& path);

/// The folder that holds `path`: what is in front of the last '/', or ".".
std::string get_folder(const std::string& path);

} // namespace files
